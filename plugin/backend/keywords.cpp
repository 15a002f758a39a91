#include "plugin/backend/keywords.h"

namespace zuno {

namespace {

constexpr KeywordRow<ItemType> kItemTypes[] = {
    {"event", ItemType::event},
    {"task", ItemType::reminder},  // the older word; scripts use both
    {"reminder", ItemType::reminder},
    {"calendar", ItemType::calendar},
    {"reminderlist", ItemType::reminderList},
    {"alarm", ItemType::alarm},
    {"attendee", ItemType::attendee},
    {"recurrencerule", ItemType::recurrenceRule},
};

}  // namespace

std::optional<ItemType> itemTypeFrom(TextArgument keyword) {
  const ItemType* type = find(kItemTypes, Keyword(keyword));
  return type ? std::optional(*type) : std::nullopt;
}

bool isTrue(const Value& value) { return Keyword(plainTextOf(value)) == "true"; }

}  // namespace zuno
