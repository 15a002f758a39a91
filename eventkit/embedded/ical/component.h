// iCalendar text (RFC 5545) as the store keeps it: read without loss and edited in place. What is not
// touched is written again byte for byte: order, folding, case, unknown properties and parameters.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "eventkit/embedded/ical/content_lines.h"

namespace ek::ical {

// The bytes that lines and components are views into; shared by all that came from one text.
struct SourceText;

// One content line. A value: copies share the text, and a line outlives the component that it was in.
class Line {
 public:
  // A new line, folded at 75 octets between UTF-8 characters when written. `value` is in its encoded form;
  // a line break in it, which no line can hold, becomes `\n`.
  static Line make(std::string_view name, std::string_view value,
                   const std::vector<std::pair<std::string, std::string>>& parameters = {});
  std::string_view name() const { return content_.substr(0, parts_.nameLength); }  // as written
  bool is(std::string_view name) const;                                            // without regard to case
  std::string_view value() const;  // unfolded, still escaped; of a broken line all of it
  // The first value of a parameter, without quotes, RFC 6868 carets decoded: a line break as decodeText has
  // it.
  std::optional<std::string> parameter(std::string_view name) const;
  // The same with carets as they are written: costs no allocation.
  std::optional<std::string_view> rawParameter(std::string_view name) const;
  struct Parameter {
    std::string_view name, text;  // text: after "=", as written; empty for a bare name (vCard 2.1)
  };
  std::vector<Parameter> parameters() const;
  // The same line with another value: name, parameters and their order stay.
  Line withValue(std::string_view value) const;
  // The same line with a parameter added, changed, or (nothing) removed.
  Line withParameter(std::string_view name, std::optional<std::string_view> value) const;
  std::size_t number() const { return number_; }  // 1-based in the text that was parsed; 0 for a new line
  std::string_view raw() const { return raw_; }   // as it is written, folding and line break included

 private:
  friend class Component;
  friend class ComponentReader;
  Line() = default;
  static Line fromContent(std::string content, std::string_view lineBreak);
  std::string_view head() const;  // name and parameters, up to the colon

  std::shared_ptr<const SourceText> text_;
  std::string_view raw_;
  std::string_view content_;
  LineParts parts_;
  std::size_t number_ = 0;
};

// BEGIN:NAME ... END:NAME with its lines and inner components in their order.
class Component {
 public:
  explicit Component(std::string_view name);  // empty, with CRLF line breaks
  Component(const Component&);
  Component(Component&&) noexcept;
  Component& operator=(Component) noexcept;
  ~Component();

  std::string_view name() const { return name_; }
  bool is(std::string_view name) const { return equalNames(name_, name); }

  const std::vector<Line>& lines() const { return lines_; }  // own properties only, in order
  const Line* find(std::string_view name) const;             // the first of that name, or null
  std::vector<const Line*> all(std::string_view name) const;
  // The unfolded value of the first property of that name.
  std::optional<std::string_view> value(std::string_view name) const;

  const std::vector<Component>& components() const { return components_; }  // in order
  std::vector<Component>& components() { return components_; }              // for editing them in place

  // Replaces the first property of the line's name where it stands and removes further ones of that name;
  // without one it is put after the last property. New lines get the line break that the component uses.
  void set(Line line);
  void add(Line line);                 // after the last property
  void remove(std::string_view name);  // all of that name
  void removeLine(std::size_t index);  // index into lines()
  void replaceLine(std::size_t index, Line line);
  void add(Component component);  // after everything else
  void removeComponent(std::size_t index);

  // BEGIN to END, last line break included. An END that was missing in the parsed text is written, except
  // where the END of an outer component that was there stands in its place.
  std::string text() const;

 private:
  friend class ComponentReader;
  Component() = default;
  std::string_view lineBreak() const;
  Line withOwnLineBreak(Line line) const;
  void insertLine(std::size_t index, Line line);
  void removeLines(std::string_view names, std::size_t from);
  void appendTo(std::string& out, bool mayLackEnd) const;

  std::shared_ptr<const SourceText> text_;
  std::string_view name_;
  std::string_view begin_;  // the BEGIN and END lines as written; end_ is empty where it was missing
  std::string_view end_;
  std::vector<Line> lines_;
  std::vector<Component> components_;
  std::size_t linesBefore_ = 0;  // how many of the outer component's lines stand before this one
};

// Parses the text of one or several components. Broken lines inside are kept as they are (their name() is
// empty). An END that is missing or does not match closes what is open; `why` tells the first such thing.
// What stands outside of components is left out.
std::vector<Component> parseComponents(std::string_view text, std::string* why = nullptr);

}  // namespace ek::ical
