// The conditions of a query, as the bridge keeps them until the query is run.
#pragma once

#import <EventKit/EventKit.h>
#include <optional>
#include <variant>

#include "eventkit/macos/ref.h"
#include "eventkit/types.h"

namespace ek::macos {

struct EventConditions {
  Date from;
  Date to;
  Ref<NSArray> calendars;
};

// Events stay conditions, since one platform query does not reach far enough; reminders are a query as is.
struct EventKitPredicate final : Predicate {
  EventKitPredicate(Ref<EKEventStore> owner, std::variant<EventConditions, Ref<NSPredicate>> query)
      : store(std::move(owner)), conditions(std::move(query)) {}

  Ref<EKEventStore> store;
  std::variant<EventConditions, Ref<NSPredicate>> conditions;
};

}  // namespace ek::macos
