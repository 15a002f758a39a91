#include "host/script/script_lines.h"

#include <algorithm>

#include "host/script/script.h"

namespace fmhost {
namespace {

constexpr std::u16string_view kBlanks = u" \t\r\n\u00A0\uFEFF";

// Walks over calculations: what stands in quotation marks or comments is no bracket and no semicolon.
class Walker {
 public:
  explicit Walker(std::u16string_view text) : text_(text) {}

  bool atEnd() const { return position_ >= text_.size(); }
  std::size_t position() const { return position_; }

  // Takes the next character that has a meaning of its own; NUL for one that has none.
  char16_t next() {
    const std::u16string_view rest = text_.substr(position_);
    if (rest.front() == u'"') return skipTo(endOfText());
    if (rest.starts_with(u"/*")) return skipTo(text_.find(u"*/", position_ + 2), 2);
    if (rest.starts_with(u"//")) return skipTo(text_.find_first_of(u"\r\n", position_));
    ++position_;
    return rest.front();
  }

 private:
  std::size_t endOfText() const {
    std::size_t at = position_ + 1;
    while (at < text_.size() && text_[at] != u'"') at += text_[at] == u'\\' ? 2 : 1;
    return at + 1;
  }
  char16_t skipTo(std::size_t end, std::size_t further = 0) {
    position_ = end >= text_.size() ? text_.size() : end + further;
    return u'\0';
  }

  std::u16string_view text_;
  std::size_t position_ = 0;
};

int opening(char16_t c) {
  if (c == u'(' || c == u'[') return 1;
  return c == u')' || c == u']' ? -1 : 0;
}

bool staysOpen(std::u16string_view text) {
  int depth = 0;
  for (Walker walker(text); !walker.atEnd();) depth += opening(walker.next());
  return depth > 0;
}

std::vector<std::u16string> parameters(std::u16string_view inner) {
  std::vector<std::u16string> all;
  int depth = 0;
  std::size_t start = 0;
  const auto add = [&](std::size_t end) {
    all.emplace_back(withoutBlanks(inner.substr(start, end - start)));
    start = end + 1;
  };
  for (Walker walker(inner); !walker.atEnd();) {
    const char16_t c = walker.next();
    depth += opening(c);
    if (c == u';' && depth == 0) add(walker.position() - 1);
  }
  if (!withoutBlanks(inner.substr(std::min(start, inner.size()))).empty()) add(inner.size());
  return all;
}

bool isNoStep(std::u16string_view line) {
  return line.empty() || line.starts_with(u'#') || line.starts_with(u"//");
}

std::u16string_view takeLine(std::u16string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of(u"\r\n"), rest.size());
  const std::u16string_view line = rest.substr(0, end);
  rest.remove_prefix(end);
  if (!rest.empty()) rest.remove_prefix(rest.starts_with(u"\r\n") ? 2 : 1);
  return line;
}

}  // namespace

std::u16string_view withoutBlanks(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<ScriptLine> scriptLines(const std::string& scriptName, std::u16string_view text) {
  std::vector<ScriptLine> lines;
  std::size_t number = 0;
  while (!text.empty()) {
    const std::size_t firstNumber = ++number;
    std::u16string step(withoutBlanks(takeLine(text)));
    if (isNoStep(step)) continue;
    for (; staysOpen(step) && !text.empty(); ++number) step.append(u"\n").append(takeLine(text));
    const std::u16string_view whole = withoutBlanks(step);
    const std::size_t bracket = whole.find(u'[');
    ScriptLine line{.number = firstNumber, .name = std::u16string(withoutBlanks(whole.substr(0, bracket)))};
    if (bracket != std::u16string_view::npos) {
      if (whole.back() != u']') throw ScriptError(scriptName, firstNumber, "the step has no closing bracket");
      line.hasBrackets = true;
      line.parameters = parameters(whole.substr(bracket + 1, whole.size() - bracket - 2));
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace fmhost
