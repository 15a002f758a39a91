#include "eventkit/embedded/storage/import_plan.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/content_lines.h"
#include "eventkit/embedded/ical/stream.h"
#include "eventkit/embedded/ical/values.h"
#include "eventkit/embedded/storage/css_color.h"
#include "eventkit/embedded/storage/identifier.h"
#include "eventkit/embedded/storage/import_text.h"
#include "foundation/text.h"

namespace ek::embedded {
namespace {

// These tell when a component was written rather than what it says.
constexpr std::array<std::string_view, 4> kPassingProperties = {"DTSTAMP", "CREATED", "LAST-MODIFIED",
                                                                "SEQUENCE"};

std::optional<EntityType> kindOf(std::string_view name) {
  if (ical::equalNames(name, "VEVENT")) return EntityType::event;
  if (ical::equalNames(name, "VTODO")) return EntityType::reminder;
  return std::nullopt;
}

std::uint64_t hashed(std::uint64_t seed, std::string_view text) {
  for (const char byte : text) seed = (seed ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  return seed;
}

void hashComponent(const ical::Component& component, std::array<std::uint64_t, 2>& hashes) {
  const auto add = [&](std::string_view text) {
    for (std::uint64_t& hash : hashes) hash = hashed(hash, text);
  };
  add(component.name());
  for (const ical::Line& line : component.lines()) {
    const auto isIt = [&](std::string_view name) { return line.is(name); };
    if (std::ranges::any_of(kPassingProperties, isIt)) continue;
    add(line.name());
    add(line.value());
    add("\n");
  }
  for (const ical::Component& inner : component.components()) hashComponent(inner, hashes);
}

// The same for the same content, so that a second import of the file finds what the first one made.
std::string uidFromContent(std::string_view text, unsigned copy) {
  std::array<std::uint64_t, 2> hashes = {0xcbf29ce484222325 + copy, 0x9ae16a3b2f90404f - copy};
  for (const ical::Component& component : ical::parseComponents(text)) hashComponent(component, hashes);
  std::array<std::uint8_t, 16> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<std::uint8_t>(hashes[i / 8] >> (8 * (i % 8)));
  return identifierFrom(bytes, 8);
}

// A title that scripts can write: they separate titles by line breaks.
std::string titleFrom(std::string_view encoded) {
  std::string title = ical::decodeText(encoded);
  std::ranges::replace(title, '\r', ' ');
  return title;
}

class Planner {
 public:
  Planner(const std::optional<std::string>& title, const std::string& stem, const SkipPart& skip)
      : title_(title), stem_(stem), skip_(skip) {}

  ImportPlan plan(std::string_view text) {
    bool isCalendar = false;
    ical::walkStream(text,
                     {.beginCalendar =
                          [&] {
                            isCalendar = true;
                            plan_.envelopes.emplace_back();
                          },
                      .piece = [&](const ical::Piece& piece) { take(piece); },
                      .endCalendar = [&] { finishEnvelope(); },
                      .problem = [&](const ical::Problem& problem) { skip_(problem.line, problem.reason); }});
    if (!isCalendar) skip_(1, "there is no calendar in this file");
    group();
    return std::move(plan_);
  }

 private:
  void take(const ical::Piece& piece) {
    ImportPlan::Envelope& envelope = plan_.envelopes.back();
    if (!piece.isComponent && envelope.places == 0) {
      envelope.header += piece.text;
      return;
    }
    const std::uint32_t place = envelope.places++;
    const auto kind = piece.isComponent ? kindOf(piece.name) : std::nullopt;
    if (!kind) {
      envelope.parts.push_back({piece.name, piece.text, piece.line, place, piece.isComponent});
      return;
    }
    envelope.hasItems = true;
    plan_.sources.push_back({.text = piece.text,
                             .line = piece.line,
                             .envelope = static_cast<std::uint32_t>(plan_.envelopes.size() - 1),
                             .place = place,
                             .kind = *kind});
  }

  void finishEnvelope() {
    ImportPlan::Envelope& envelope = plan_.envelopes.back();
    std::string lines = "BEGIN:VCALENDAR\r\n" + envelope.header;
    for (const ImportPlan::Part& part : envelope.parts)
      if (!part.isComponent) lines += part.text;
    const std::vector<ical::Component> parsed = ical::parseComponents(lines + "END:VCALENDAR\r\n");
    const ical::Component& calendar = parsed.front();
    const std::string own = titleFrom(calendar.value("X-WR-CALNAME").value_or(""));
    envelope.title = titleIndex(title_ ? *title_ : own.empty() ? stem_ : own);
    envelope.ordinal = used_[envelope.title]++;
    for (const char* name : {"X-APPLE-CALENDAR-COLOR", "COLOR"})
      if (const auto value = calendar.value(name); value && !envelope.color)
        envelope.color = colorFrom(*value);
  }

  std::uint32_t titleIndex(const std::string& title) {
    const auto [known, isNew] = titles_.try_emplace(title, static_cast<std::uint32_t>(plan_.titles.size()));
    if (isNew) {
      plan_.titles.push_back(title);
      used_.push_back(0);
    }
    return known->second;
  }

  void group() {
    for (std::uint32_t index = 0; index < plan_.sources.size(); ++index) {
      ImportPlan::Source& source = plan_.sources[index];
      std::string uid = uidIn(source.text);
      const bool isMade = uid.empty();
      if (isMade) uid = freshUid(source.text);
      const Key key{2 * plan_.envelopes[source.envelope].title + static_cast<std::uint32_t>(source.kind),
                    uid};
      if (const auto known = byKey_.find(key); known != byKey_.end()) {
        ImportPlan::Group& same = plan_.groups[known->second];
        plan_.sources[same.last].next = index + 1;
        same.last = index;
        continue;
      }
      const std::string& kept = plan_.uids.emplace_back(std::move(uid));
      byKey_.emplace(Key{key.calendar, kept}, plan_.groups.size());
      plan_.groups.push_back({.uid = kept, .first = index, .last = index, .isMadeUid = isMade});
    }
  }

  std::string freshUid(std::string_view text) {
    for (unsigned copy = 0;; ++copy) {
      std::string uid = uidFromContent(text, copy);
      if (made_.insert(uid).second) return uid;
    }
  }

  struct Key {
    std::uint32_t calendar;
    std::string_view uid;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const {
      return std::hash<std::string_view>()(key.uid) * 31 + key.calendar;
    }
  };

  const std::optional<std::string>& title_;
  const std::string& stem_;
  const SkipPart& skip_;
  ImportPlan plan_;
  std::unordered_map<std::string, std::uint32_t> titles_;
  std::vector<std::uint32_t> used_;  // VCALENDARs so far, by title
  std::unordered_map<Key, std::size_t, KeyHash> byKey_;
  std::unordered_set<std::string> made_;
};

}  // namespace

ImportPlan planImport(std::string_view text, const std::optional<std::string>& title, const std::string& stem,
                      const SkipPart& skip) {
  return Planner(title, stem, skip).plan(text);
}

}  // namespace ek::embedded
