// Recurrence rules between the store's interface and RFC 5545.
#pragma once

#include <optional>

#include "eventkit/embedded/recurrence/rule.h"
#include "eventkit/embedded/storage/item_index.h"
#include "eventkit/types.h"

namespace ek::embedded {

// `start` is that of the item: what an end date without a zone of its own is meant in.
RecurrenceRule fromRule(const recurrence::Rule& rule, const std::optional<ZonedTime>& start);
recurrence::Rule toRule(const RecurrenceRule& rule, const ZonedTime& start);

// What the standard wants of UNTIL: a date for all-day items, else UTC, or no zone where the start has none.
recurrence::Until untilAt(Date lastInstant, const ZonedTime& start);
// The last instant that UNTIL includes.
Date lastInstantOf(const recurrence::Until& until, const std::optional<ZonedTime>& start);

// As ek::EventStore::recurrenceRule.
std::optional<RecurrenceRule> checkedRule(RecurrenceRule wanted);

}  // namespace ek::embedded
