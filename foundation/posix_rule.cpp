#include "foundation/posix_rule.h"

#include <algorithm>
#include <chrono>

namespace foundation {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

constexpr std::size_t kShortestName = 3;
constexpr std::string_view kUsualDates = ",M3.2.0,M11.1.0";  // where a rule names summer time but no dates

}  // namespace

class PosixRule::Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  bool atEnd() const { return text_.empty(); }
  bool startsOffset() const { return !text_.empty() && text_.front() != ','; }

  bool take(char expected) {
    if (text_.empty() || text_.front() != expected) return false;
    text_.remove_prefix(1);
    return true;
  }

  bool name(std::string& out) {
    const bool quoted = take('<');
    std::size_t length = 0;
    while (length < text_.size() && isNamePart(text_[length], quoted)) ++length;
    if (length < kShortestName) return false;
    out = text_.substr(0, length);
    text_.remove_prefix(length);
    return !quoted || take('>');
  }

  // "[+-]hh[:mm[:ss]]" as seconds.
  bool time(int mostHours, int& out) {
    const bool negative = take('-');
    if (!negative) take('+');
    int hours = 0, minutes = 0, seconds = 0;
    if (!number(0, mostHours, hours)) return false;
    if (take(':')) {
      if (!number(0, 59, minutes)) return false;
      if (take(':') && !number(0, 59, seconds)) return false;
    }
    out = hours * 3600 + minutes * 60 + seconds;
    if (negative) out = -out;
    return true;
  }

  // POSIX counts offsets west of Greenwich.
  bool offset(std::int32_t& out) {
    int west = 0;
    if (!time(24, west)) return false;
    out = -west;
    return true;
  }

  bool yearDay(YearDay& out) {
    if (take('J')) {
      out.kind = DayKind::julian;
      if (!number(1, 365, out.day)) return false;
    } else if (take('M')) {
      out.kind = DayKind::weekday;
      if (!number(1, 12, out.month) || !take('.') || !number(1, 5, out.week) || !take('.') ||
          !number(0, 6, out.day))
        return false;
    } else {
      out.kind = DayKind::zeroBased;
      if (!number(0, 365, out.day)) return false;
    }
    return !take('/') || time(167, out.time);
  }

 private:
  static bool isNamePart(char c, bool quoted) {
    return isLetter(c) || (quoted && (isDigit(c) || c == '+' || c == '-'));
  }

  bool number(int least, int most, int& out) {
    if (text_.empty() || !isDigit(text_.front())) return false;
    out = 0;
    while (!text_.empty() && isDigit(text_.front())) {
      out = out * 10 + (text_.front() - '0');
      if (out > most) return false;
      text_.remove_prefix(1);
    }
    return out >= least;
  }

  std::string_view text_;
};

std::optional<PosixRule> PosixRule::parse(std::string_view text) {
  PosixRule rule;
  Reader reader(text);
  if (!reader.name(rule.standard_.letters) || !reader.offset(rule.standard_.offset)) return std::nullopt;
  if (reader.atEnd()) return rule;
  rule.hasSummer_ = true;
  if (!reader.name(rule.summer_.letters)) return std::nullopt;
  rule.summer_.offset = rule.standard_.offset + 3600;
  if (reader.startsOffset() && !reader.offset(rule.summer_.offset)) return std::nullopt;
  if (reader.atEnd()) reader = Reader(kUsualDates);
  if (!reader.take(',') || !reader.yearDay(rule.toSummer_) || !reader.take(',') ||
      !reader.yearDay(rule.toStandard_) || !reader.atEnd())
    return std::nullopt;
  return rule;
}

std::int64_t PosixRule::secondsAt(const YearDay& day, int year) {
  using namespace std::chrono;
  const std::chrono::year y(year);
  sys_days date = y / January / 1;
  switch (day.kind) {
    case DayKind::julian:  // counts 29 February never
      date += days(day.day - 1 + (y.is_leap() && day.day >= 60 ? 1 : 0));
      break;
    case DayKind::zeroBased:
      date += days(day.day);
      break;
    case DayKind::weekday: {
      const std::chrono::month month(static_cast<unsigned>(day.month));
      const weekday wanted(static_cast<unsigned>(day.day));
      date = day.week == 5 ? sys_days(y / month / wanted[last])
                           : sys_days(y / month / wanted[static_cast<unsigned>(day.week)]);
      break;
    }
  }
  return std::chrono::seconds(date.time_since_epoch()).count() + day.time;
}

std::vector<PosixRule::Change> PosixRule::changes(int first, int last) const {
  std::vector<Change> all;
  if (!hasSummer_) return all;
  all.reserve(static_cast<std::size_t>(std::max(0, last - first + 1)) * 2);
  for (int year = first; year <= last; ++year) {
    all.push_back({secondsAt(toSummer_, year) - standard_.offset, true});
    all.push_back({secondsAt(toStandard_, year) - summer_.offset, false});
  }
  std::ranges::sort(all, [](const Change& a, const Change& b) {
    return a.at != b.at ? a.at < b.at : a.toSummer < b.toSummer;
  });
  std::vector<Change> kept;
  kept.reserve(all.size());
  for (const Change& change : all) {
    if (!kept.empty() && kept.back().at == change.at) kept.pop_back();
    if (kept.empty() || kept.back().toSummer != change.toSummer) kept.push_back(change);
  }
  return kept;
}

}  // namespace foundation
