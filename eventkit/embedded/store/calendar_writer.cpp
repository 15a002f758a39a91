#include "eventkit/embedded/store/calendar_writer.h"

#include <algorithm>

#include "eventkit/embedded/store/refusals.h"

namespace ek::embedded {

namespace {
constexpr auto kWriting = Database::Transaction::Kind::writing;
}  // namespace

bool saveCalendar(Records& records, Database& database, EmbeddedCalendar& calendar,
                  std::optional<Error>& error) {
  Database::Transaction writing(database, kWriting);
  CalendarTable table(database);
  const CalendarRow* found = records.calendars().findByIdentifier(calendar.calendarIdentifier());
  const std::optional<Source> source = calendar.source();
  if (!source) return refuse(error, ErrorCode::calendarHasNoSource);
  if (!calendar.isNew() && calendar.isSourceChanged())
    return refuse(error, ErrorCode::calendarSourceCannotBeModified);
  if (calendar.isImmutable() || (found != nullptr && found->isImmutable))
    return refuse(error, ErrorCode::calendarIsImmutable);
  const auto account = records.calendars().sourceRow(source->identifier);
  if (!account) return refuse(error, ErrorCode::calendarHasNoSource);
  const bool isChanged = calendar.isTitleChanged() || calendar.isColorChanged();
  if (found != nullptr && !isChanged) return true;

  CalendarRow row = found != nullptr ? *found : calendar.stored();
  row.source = *account;
  if (found == nullptr || calendar.isTitleChanged()) row.title = calendar.title().value_or("");
  if (found == nullptr || calendar.isColorChanged()) row.color = calendar.color();
  if (found != nullptr) {
    table.update(row);
  } else {
    row.isDefault = records.calendars().defaultFor(row.kind) == nullptr;
    table.insert(row);
  }
  writing.commit();
  calendar.becomeStored(row);
  return true;
}

bool removeCalendar(Records& records, Database& database, EmbeddedCalendar& calendar,
                    std::optional<Error>& error) {
  if (calendar.isNew()) return true;
  Database::Transaction writing(database, kWriting);
  const CalendarRow* row = records.calendars().findByIdentifier(calendar.calendarIdentifier());
  if (row == nullptr) return true;
  const bool isLast = std::ranges::count(records.calendars().all(), row->kind, &CalendarRow::kind) == 1;
  if (row->isImmutable || isLast) return refuse(error, ErrorCode::calendarIsImmutable);
  CalendarTable(database).erase(row->id);
  writing.commit();
  return true;
}

}  // namespace ek::embedded
