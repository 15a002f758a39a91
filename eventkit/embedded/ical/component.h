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

namespace ek::ical {

// One content line.
class Line {
 public:
  // A new line, folded at 75 octets between UTF-8 characters when written. `value` is in its encoded form.
  static Line make(std::string_view name, std::string_view value,
                   const std::vector<std::pair<std::string, std::string>>& parameters = {});
  std::string_view name() const;         // as written
  bool is(std::string_view name) const;  // without regard to case
  std::string_view value() const;        // unfolded, still escaped
  // The first value of a parameter, without quotes, RFC 6868 carets decoded.
  std::optional<std::string> parameter(std::string_view name) const;
  // The same line with another value: name, parameters and their order stay.
  Line withValue(std::string_view value) const;
  // The same line with a parameter added, changed, or (nothing) removed.
  Line withParameter(std::string_view name, std::optional<std::string_view> value) const;
  std::size_t number() const;      // 1-based in the text that was parsed; 0 for a new line
  const std::string& raw() const;  // as it is written, folding and line break included
};

// BEGIN:NAME ... END:NAME with its lines and inner components in their order.
class Component {
 public:
  explicit Component(std::string_view name);  // empty, with CRLF line breaks
  Component(const Component&);
  Component(Component&&) noexcept;
  Component& operator=(Component);
  ~Component();

  std::string_view name() const;
  bool is(std::string_view name) const;

  const std::vector<Line>& lines() const;         // own properties only, in order
  const Line* find(std::string_view name) const;  // the first of that name, or null
  std::vector<const Line*> all(std::string_view name) const;
  // The unfolded value of the first property of that name.
  std::optional<std::string_view> value(std::string_view name) const;

  const std::vector<Component>& components() const;  // in order
  std::vector<Component>& components();              // for editing them in place

  // Replaces the first property of the line's name where it stands and removes further ones of that name;
  // without one it is put after the last property.
  void set(Line line);
  void add(Line line);                 // after the last property
  void remove(std::string_view name);  // all of that name
  void removeLine(std::size_t index);  // index into lines()
  void replaceLine(std::size_t index, Line line);
  void add(Component component);  // after everything else
  void removeComponent(std::size_t index);

  std::string text() const;  // BEGIN to END, last line break included
};

// Parses the text of one or several components. Broken lines inside are kept as they are (their name() is
// empty). An END that is missing or does not match closes what is open; `why` tells the first such thing.
std::vector<Component> parseComponents(std::string_view text, std::string* why = nullptr);

}  // namespace ek::ical
