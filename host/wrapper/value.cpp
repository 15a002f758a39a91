#include "host/wrapper/value.h"

namespace fmhost {

Text widened(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

Value Value::ofText(Text text) {
  Value value;
  value.type_ = ValueType::text;
  value.text_ = std::move(text);
  value.read_ = bit(ValueType::text);
  return value;
}

Value Value::ofNumber(const Decimal& number) { return ofNumber(Number{number}); }

Value Value::ofNumber(const Number& number) {
  Value value;
  value.type_ = ValueType::number;
  value.number_ = number;
  value.read_ = bit(ValueType::number);
  return value;
}

Value Value::ofDateTime(ValueType type, const DateTime& moment) {
  Value value;
  value.become(type, moment);
  return value;
}

Value Value::ofInvalid(ValueType type) {
  if (type == ValueType::text) return ofText(u"?");
  if (type == ValueType::number) return ofNumber(Number{.presence = Presence::invalid});
  return ofDateTime(type, kInvalidDateTime);
}

void Value::become(const Text& text, const Locale& locale) {
  text_ = text;
  locale_ = locale;
  type_ = ValueType::text;
  read_ = bit(ValueType::text);
}

void Value::become(ValueType type, const DateTime& moment) {
  moments_[slot(type)] = moment;
  type_ = type;
  read_ = bit(type);
}

bool Value::needsReading(ValueType type) const {
  if ((read_ & bit(type)) != 0) return false;
  read_ |= bit(type);
  return true;
}

const Text& Value::asText() const {
  if (needsReading(ValueType::text)) text_ = textReading();
  return text_;
}

const Number& Value::asNumber() const {
  if (needsReading(ValueType::number)) number_ = numberReading();
  return number_;
}

const DateTime& Value::asDateTime(ValueType type) const {
  DateTime& moment = moments_[slot(type)];
  if (needsReading(type)) moment = dateTimeReading(type);
  return moment;
}

bool Value::asBoolean() const {
  const Number& number = asNumber();
  return number.presence == Presence::present && !number.value.isZero();
}

Value Value::converted(ValueType type) const {
  Value value;
  switch (type) {
    case ValueType::untouched:
      break;
    case ValueType::text:
      value = ofText(asText());
      break;
    case ValueType::number:
      value = ofNumber(asNumber());
      break;
    case ValueType::date:
    case ValueType::time:
    case ValueType::timestamp:
      value = ofDateTime(type, asDateTime(type));
      break;
  }
  value.locale_ = locale_;
  return value;
}

Text Value::textReading() const {
  switch (type_) {
    case ValueType::number:
      if (number_.presence == Presence::absent) return {};
      return number_.presence == Presence::present ? widened(number_.value.toString()) : u"?";
    case ValueType::date:
      return widened(dateText(asDate()));
    case ValueType::time:
      return widened(timeText(asTime()));
    case ValueType::timestamp:
      return widened(timestampText(asTimestamp()));
    default:
      return {};
  }
}

Number Value::numberReading() const {
  if (type_ == ValueType::text) {
    const auto number = Decimal::fromText(text_);
    return number ? Number{*number} : Number{.presence = Presence::absent};
  }
  if (type_ == ValueType::untouched) return {.presence = Presence::absent};
  const DateTime& moment = asDateTime(type_);
  if (!moment.isPresent()) return {.presence = moment.presence};
  if (type_ == ValueType::date) return {Decimal(moment.day)};
  return {type_ == ValueType::time ? secondsOf(moment) : moment.secondsOfEra()};
}

DateTime Value::dateTimeReading(ValueType type) const {
  if (type_ == ValueType::text) return readingOfText(type);
  if (type_ == ValueType::number) return readingOfNumber(type);
  if (type_ == ValueType::untouched) return {};
  const DateTime& moment = asDateTime(type_);
  if (!moment.isPresent()) return moment;
  if (type == ValueType::timestamp) return moment.normalised();
  if (type == ValueType::date) return dateFromDayNumber(moment.normalised().day);
  return timeFromMicroseconds(moment.microseconds);
}

DateTime Value::readingOfNumber(ValueType type) const {
  if (number_.presence != Presence::present) return {.presence = number_.presence};
  if (type == ValueType::date) return dateFromDayNumber(number_.value.truncated());
  return type == ValueType::time ? timeFromSeconds(number_.value) : timestampFromSeconds(number_.value);
}

DateTime Value::readingOfText(ValueType type) const {
  if (type == ValueType::date) return parseDate(text_);
  return type == ValueType::time ? parseTime(text_) : parseTimestamp(text_);
}

}  // namespace fmhost
