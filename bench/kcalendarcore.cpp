// KCalendarCore, the calendar library of KDE's programs.
#include <KCalendarCore/ICalFormat>
#include <KCalendarCore/MemoryCalendar>
#include <KCalendarCore/OccurrenceIterator>
#include <QDateTime>
#include <QString>
#include <QTimeZone>
#include <stdexcept>

#include "bench/contender.h"

namespace bench {
namespace {

class KCalendarCoreCalendar : public Contender {
 public:
  explicit KCalendarCoreCalendar(const std::string& icsFile)
      : calendar_(new KCalendarCore::MemoryCalendar(QTimeZone::systemTimeZone())) {
    if (!KCalendarCore::ICalFormat().load(calendar_, QString::fromStdString(icsFile)))
      throw std::runtime_error(icsFile + ": KCalendarCore cannot load it");
  }

  std::size_t count(Window window) override {
    // The iterator's end belongs to its range.
    KCalendarCore::OccurrenceIterator occurrence(*calendar_, timeOf(window.from), timeOf(window.to - 1));
    std::size_t found = 0;
    while (occurrence.hasNext()) {
      occurrence.next();
      ++found;
    }
    return found;
  }

 private:
  static QDateTime timeOf(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds, QTimeZone::systemTimeZone());
  }

  KCalendarCore::MemoryCalendar::Ptr calendar_;
};

}  // namespace

std::unique_ptr<Contender> openKCalendarCore(const std::string& icsFile) {
  return std::make_unique<KCalendarCoreCalendar>(icsFile);
}

}  // namespace bench
