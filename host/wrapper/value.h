// One value as FileMaker has it, and its readings as every other type. Behind the interface's opaque classes
// stand these: fmx::Text is a fmhost::Text, fmx::Data a fmhost::Value, and so on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/wrapper/date_time.h"
#include "host/wrapper/decimal.h"

namespace fmhost {

using Text = std::u16string;

struct Number {
  Decimal value;
  std::int32_t precision = 16;
  Presence presence = Presence::present;
};

struct Locale {
  std::int32_t kind = 1;  // the system's settings
};

struct QuadChar {
  std::uint8_t bytes[4] = {};

  friend bool operator==(const QuadChar&, const QuadChar&) = default;
};

struct Environment {
  std::uint64_t session = 1;
  std::uint64_t file = 1;
};

// Numbered as the interface numbers them.
enum class ValueType : std::int32_t {
  untouched = 0,
  text = 1,
  number = 2,
  date = 3,
  time = 4,
  timestamp = 5
};

// Readings are made when first asked for and kept, so that what they return stays good while the value does
// not change. One thread at a time, even for reading.
class Value {
 public:
  Value() = default;
  static Value ofText(Text text);
  static Value ofNumber(const Decimal& number);
  static Value ofNumber(const Number& number);
  static Value ofBoolean(bool truth) { return ofNumber(Decimal(truth ? 1 : 0)); }
  // A value of one of the three types.
  static Value ofDateTime(ValueType type, const DateTime& moment);
  // "?", what FileMaker shows where a calculation has no answer.
  static Value ofInvalid(ValueType type);

  // A text, in the memory that the value has. It may be the value's own reading.
  void become(const Text& text, const Locale& locale);
  // A value of one of the three types, with the locale that it has. The moment may be its own reading.
  void become(ValueType type, const DateTime& moment);

  ValueType type() const { return type_; }
  bool isEmpty() const { return asText().empty(); }

  const Text& asText() const;
  const Number& asNumber() const;
  const DateTime& asDate() const { return asDateTime(ValueType::date); }
  const DateTime& asTime() const { return asDateTime(ValueType::time); }
  const DateTime& asTimestamp() const { return asDateTime(ValueType::timestamp); }
  bool asBoolean() const;
  // The same value, held as another type.
  Value converted(ValueType type) const;

  const Locale& locale() const { return locale_; }
  void setLocale(const Locale& locale) { locale_ = locale; }

 private:
  static constexpr std::size_t kDateTimeTypes = 3;

  static unsigned bit(ValueType type) { return 1U << static_cast<unsigned>(type); }
  static std::size_t slot(ValueType type) {
    return static_cast<std::size_t>(type) - static_cast<std::size_t>(ValueType::date);
  }
  bool needsReading(ValueType type) const;

  const DateTime& asDateTime(ValueType type) const;
  Text textReading() const;
  Number numberReading() const;
  DateTime dateTimeReading(ValueType type) const;
  DateTime readingOfNumber(ValueType type) const;
  DateTime readingOfText(ValueType type) const;

  ValueType type_ = ValueType::untouched;
  Locale locale_;
  mutable unsigned read_ = 0;  // the types whose reading is made, the value's own included
  mutable Text text_;
  mutable Number number_;
  mutable DateTime moments_[kDateTimeTypes];
};

using Arguments = std::vector<Value>;

// ASCII only: number and date texts.
Text widened(std::string_view ascii);

}  // namespace fmhost
