#include "eventkit/embedded/ical/component.h"

#include <algorithm>
#include <array>

#include "eventkit/embedded/ical/source_text.h"

namespace ek::ical {

namespace {

// Most events have fewer lines than this; it saves the vector from growing step by step.
constexpr std::size_t kUsualLines = 16;

bool endsWithLineBreak(std::string_view text) {
  return !text.empty() && (text.back() == '\n' || text.back() == '\r');
}

}  // namespace

// Builds components while it goes through a text.
class ComponentReader {
 public:
  ComponentReader(std::string_view text, std::string* why) : why_(why) {
    text_ = std::make_shared<SourceText>();
    text_->raw = text;
  }

  std::vector<Component> read() {
    LineScanner scanner(text_->raw);
    for (RawLine line; scanner.next(line);) take(line);
    if (nesting_.depth() > 0) complain("END:" + std::string(nesting_.innermost()) + " is missing");
    if (roots_.empty()) complain("there is no component");
    return std::move(roots_);
  }

 private:
  void take(const RawLine& line) {
    std::string_view name;
    const Marker marker = markerOf(line, name);
    if (marker == Marker::begin && begin(line, name)) return;
    if (marker == Marker::end && end(line, name)) return;
    if (nesting_.depth() > 0) addLine(line);
  }

  bool begin(const RawLine& line, std::string_view name) {
    if (const std::size_t ended = nesting_.endedByBegin(name); ended > 0) {
      complain(nesting_.innermost(), " has no END", line);
      nesting_.close(ended);
    }
    if (!nesting_.open(name)) return false;
    const std::size_t depth = nesting_.depth();
    std::vector<Component>& siblings = depth == 1 ? roots_ : open_[depth - 2]->components_;
    Component& component = siblings.emplace_back(Component());
    component.text_ = text_;
    component.name_ = name;
    component.begin_ = line.raw;
    if (depth > 1) component.linesBefore_ = open_[depth - 2]->lines_.size();
    component.lines_.reserve(kUsualLines);
    open_[depth - 1] = &component;
    return true;
  }

  bool end(const RawLine& line, std::string_view name) {
    const std::size_t ended = nesting_.endedByEnd(name);
    if (ended == 0) return false;
    Component& component = *open_[nesting_.depth() - ended];
    if (ended > 1 || !component.is(name)) complain(nesting_.innermost(), " has no END of its own", line);
    component.end_ = line.raw;
    nesting_.close(ended);
    return true;
  }

  void addLine(const RawLine& raw) {
    Line& line = open_[nesting_.depth() - 1]->lines_.emplace_back(Line());
    line.text_ = text_;
    line.raw_ = raw.raw;
    line.content_ = raw.isFolded ? unfolded(raw) : raw.content;
    line.parts_ = partsOf(line.content_);
    line.number_ = raw.number;
  }

  // All unfolded lines together are no longer than the text, so that one reservation keeps them in place.
  std::string_view unfolded(const RawLine& line) {
    std::string& all = text_->unfolded;
    if (all.capacity() < text_->raw.size())
      all.reserve(text_->raw.size() - static_cast<std::size_t>(line.raw.data() - text_->raw.data()));
    const std::size_t begin = all.size();
    unfold(line.raw, all);
    return std::string_view(all).substr(begin);
  }

  void complain(std::string reason) {
    if (why_ && why_->empty()) *why_ = std::move(reason);
  }
  void complain(std::string_view name, std::string_view what, const RawLine& line) {
    if (why_ && why_->empty())
      *why_ = std::string(name).append(what) + " (line " + std::to_string(line.number) + ")";
  }

  std::shared_ptr<SourceText> text_;
  std::string* why_;
  std::vector<Component> roots_;
  Nesting nesting_;
  // A component stays where it is while it is open: only the innermost one's list grows.
  std::array<Component*, Nesting::kDeepest> open_{};
};

std::vector<Component> parseComponents(std::string_view text, std::string* why) {
  if (why) why->clear();
  return ComponentReader(text, why).read();
}

Component::Component(std::string_view name) {
  const std::string begin = "BEGIN:" + std::string(name) + "\r\n";
  auto text = std::make_shared<SourceText>();
  text->raw = begin + "END:" + std::string(name) + "\r\n";
  const std::string_view all = text->raw;
  begin_ = all.substr(0, begin.size());
  end_ = all.substr(begin.size());
  name_ = begin_.substr(begin_.find(':') + 1, name.size());
  text_ = std::move(text);
}

Component::Component(const Component&) = default;
Component::Component(Component&&) noexcept = default;
Component::~Component() = default;

Component& Component::operator=(Component other) noexcept {
  text_.swap(other.text_);
  std::swap(name_, other.name_);
  std::swap(begin_, other.begin_);
  std::swap(end_, other.end_);
  lines_.swap(other.lines_);
  components_.swap(other.components_);
  std::swap(linesBefore_, other.linesBefore_);
  return *this;
}

const Line* Component::find(std::string_view name) const {
  const auto found = std::ranges::find_if(lines_, [&](const Line& line) { return line.is(name); });
  return found == lines_.end() ? nullptr : &*found;
}

std::vector<const Line*> Component::all(std::string_view name) const {
  std::vector<const Line*> found;
  for (const Line& line : lines_)
    if (line.is(name)) found.push_back(&line);
  return found;
}

std::optional<std::string_view> Component::value(std::string_view name) const {
  const Line* line = find(name);
  return line ? std::optional(line->value()) : std::nullopt;
}

void Component::set(Line line) {
  const auto isNamesake = [&](const Line& other) { return other.is(line.name()); };
  const auto first = std::ranges::find_if(lines_, isNamesake);
  if (first == lines_.end()) return add(std::move(line));
  const auto index = static_cast<std::size_t>(first - lines_.begin());
  removeLines(line.name(), index + 1);
  replaceLine(index, std::move(line));
}

void Component::add(Line line) {
  std::size_t index = lines_.size();
  while (index > 0 && lines_[index - 1].name().empty()) --index;
  insertLine(index, std::move(line));
}

void Component::remove(std::string_view name) { removeLines(name, 0); }

// One pass for any number of lines, which hostile calendars have.
void Component::removeLines(std::string_view names, std::size_t from) {
  const std::string name(names);  // it may be part of what is removed
  std::vector<std::size_t> newIndex;
  newIndex.reserve(lines_.size() + 1);
  std::size_t kept = 0;
  for (std::size_t at = 0; at < lines_.size(); ++at) {
    newIndex.push_back(kept);
    if (at >= from && lines_[at].is(name)) continue;
    if (kept != at) lines_[kept] = std::move(lines_[at]);
    ++kept;
  }
  newIndex.push_back(kept);
  if (kept == lines_.size()) return;
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(kept), lines_.end());
  for (Component& inner : components_)
    inner.linesBefore_ = newIndex[std::min(inner.linesBefore_, newIndex.size() - 1)];
}

void Component::removeLine(std::size_t index) {
  lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index));
  for (Component& inner : components_)
    if (inner.linesBefore_ > index) --inner.linesBefore_;
}

void Component::replaceLine(std::size_t index, Line line) {
  lines_[index] = withOwnLineBreak(std::move(line));
}

void Component::insertLine(std::size_t index, Line line) {
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(index), withOwnLineBreak(std::move(line)));
  for (Component& inner : components_)
    if (inner.linesBefore_ >= index) ++inner.linesBefore_;
}

void Component::add(Component component) {
  component.linesBefore_ = lines_.size();
  components_.push_back(std::move(component));
}

void Component::removeComponent(std::size_t index) {
  components_.erase(components_.begin() + static_cast<std::ptrdiff_t>(index));
}

std::string_view Component::lineBreak() const {
  const std::string_view own = lineBreakOf(begin_);
  return own.empty() || own == "\r\r\n" ? "\r\n" : own;
}

Line Component::withOwnLineBreak(Line line) const {
  const bool isNew = line.number_ == 0;
  if (isNew && lineBreakOf(line.raw_) != lineBreak())
    return Line::fromContent(std::string(line.content_), lineBreak());
  return line;
}

void Component::appendTo(std::string& out, bool mayLackEnd) const {
  const auto append = [&](std::string_view raw) {
    if (!endsWithLineBreak(out) && !out.empty()) out += lineBreak();
    out += raw;
  };
  append(begin_);
  std::size_t written = 0;
  const auto appendLinesUpTo = [&](std::size_t end) {
    for (; written < end; ++written) append(lines_[written].raw());
  };
  for (const Component& inner : components_) {
    appendLinesUpTo(std::min(inner.linesBefore_, lines_.size()));
    const bool isLast = &inner == &components_.back() && written == lines_.size();
    inner.appendTo(out, isLast && !end_.empty());
  }
  appendLinesUpTo(lines_.size());
  if (!end_.empty()) append(end_);
  if (end_.empty() && !mayLackEnd) append("END:" + std::string(name_));
  if (!endsWithLineBreak(out)) out += lineBreak();
}

std::string Component::text() const {
  std::string out;
  if (text_) out.reserve(text_->raw.size());
  appendTo(out, false);
  return out;
}

}  // namespace ek::ical
