// Between the rules of the store's interface and EventKit's.
#pragma once

#import <EventKit/EventKit.h>
#include <optional>
#include <vector>

#include "eventkit/macos/ref.h"
#include "eventkit/types.h"

namespace ek::macos {

// Nothing for a rule that EventKit does not make; raises where EventKit does.
Ref<EKRecurrenceRule> ruleTo(const RecurrenceRule& rule);
RecurrenceRule ruleFrom(EKRecurrenceRule* rule);
std::vector<RecurrenceRule> rulesFrom(NSArray* rules);

}  // namespace ek::macos
