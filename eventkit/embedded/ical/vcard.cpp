#include "eventkit/embedded/ical/vcard.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "eventkit/embedded/ical/component.h"
#include "eventkit/embedded/ical/values.h"
#include "foundation/text.h"

namespace ek::ical {

namespace {

// Places in an ADR and an N value.
enum AddressPart { kStreet = 2, kCity, kRegion, kCode, kCountry };
constexpr AddressPart kAddressOrder[] = {kStreet, kCity, kRegion, kCode, kCountry};
enum NamePart { kFamily, kGiven, kMiddle, kPrefix, kSuffix };
constexpr NamePart kNameOrder[] = {kPrefix, kGiven, kMiddle, kFamily, kSuffix};

constexpr int kNotPreferred = 101;  // PREF goes from 1, the most preferred, to 100

// An "=" that encodes nothing is what is left of a soft line break.
std::string fromQuotedPrintable(std::string_view text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '=') {
      decoded += text[at];
    } else if (const auto byte = hexByte(text.substr(at + 1, 2))) {
      decoded += *byte;
      at += 2;
    }
  }
  return decoded;
}

std::string trimmedText(std::string text) {
  constexpr const char* kBlanks = " \t\r\n";
  text.erase(text.find_last_not_of(kBlanks) + 1);
  text.erase(0, text.find_first_not_of(kBlanks));
  return text;
}

// Line breaks inside become ", ".
std::string onOneLine(const std::string& text) {
  std::string line;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    const std::string part = trimmedText(std::string(rest.substr(0, end)));
    if (!part.empty()) line += (line.empty() ? "" : ", ") + part;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return line;
}

// One property of a card.
struct Property {
  std::string name;   // without its group: "item1.ADR" is "ADR"
  std::string value;  // as written, soft line breaks of quoted-printable joined
  bool isQuotedPrintable = false;
  int preference = kNotPreferred;

  std::string decoded(std::string_view part) const {
    return trimmedText(decodeText(isQuotedPrintable ? fromQuotedPrintable(part) : part));
  }
  std::string text() const { return decoded(value); }
  std::vector<std::string> parts() const {
    std::vector<std::string> found;
    for (const std::string_view part : splitList(value, ';')) found.push_back(decoded(part));
    found.resize(std::max<std::size_t>(found.size(), kCountry + 1));
    return found;
  }
};

bool hasWord(std::string_view list, std::string_view word) {
  if (list.size() >= 2 && list.front() == '"' && list.back() == '"') list = list.substr(1, list.size() - 2);
  const std::vector<std::string_view> words = splitList(list);
  return std::ranges::any_of(words, [&](std::string_view one) { return equalNames(trimmed(one), word); });
}

// vCard 2.1 writes types and encodings without the parameter's name.
void readParameter(const Line::Parameter& parameter, Property& property) {
  const bool isBare = parameter.text.empty();
  const std::string_view text = isBare ? parameter.name : parameter.text;
  if (isBare || equalNames(parameter.name, "ENCODING"))
    property.isQuotedPrintable |= equalNames(text, "QUOTED-PRINTABLE");
  if (isBare || equalNames(parameter.name, "TYPE")) {
    if (hasWord(text, "PREF")) property.preference = 1;
  } else if (equalNames(parameter.name, "PREF")) {
    std::from_chars(text.data(), text.data() + text.size(), property.preference);
  }
}

std::string_view withoutLineBreak(std::string_view raw) {
  return raw.substr(0, raw.size() - lineBreakOf(raw).size());
}

std::vector<Property> propertiesOf(const Component& card) {
  std::vector<Property> properties;
  const std::vector<Line>& lines = card.lines();
  for (std::size_t at = 0; at < lines.size(); ++at) {
    Property property;
    const std::string_view name = lines[at].name();
    property.name = name.substr(name.rfind('.') + 1);
    for (const Line::Parameter& parameter : lines[at].parameters()) readParameter(parameter, property);
    property.value = lines[at].value();
    while (property.isQuotedPrintable && property.value.ends_with('=') && at + 1 < lines.size()) {
      property.value.pop_back();
      property.value += withoutLineBreak(lines[++at].raw());
    }
    properties.push_back(std::move(property));
  }
  return properties;
}

std::string addressFrom(const std::vector<std::string>& parts) {
  std::string address;
  for (const AddressPart part : kAddressOrder) {
    const std::string text = onOneLine(parts[part]);
    if (!text.empty()) address += (address.empty() ? "" : ", ") + text;
  }
  return address;
}

std::string nameFrom(const std::vector<std::string>& parts) {
  std::string name;
  for (const NamePart part : kNameOrder)
    if (!parts[part].empty()) name += (name.empty() ? "" : " ") + parts[part];
  return name;
}

std::string emailFrom(std::string address) {
  constexpr std::string_view kScheme = "mailto:";
  address = foundation::lowercased(address);
  if (address.starts_with(kScheme)) address.erase(0, kScheme.size());
  return address;
}

Contact contactOf(std::string_view text) {
  Contact contact;
  contact.text = text;
  std::string madeName;
  int preference = kNotPreferred + 1;
  for (const Property& property : propertiesOf(parseComponents(text).at(0))) {
    if (equalNames(property.name, "FN") && contact.name.empty()) {
      contact.name = property.text();
    } else if (equalNames(property.name, "N") && madeName.empty()) {
      madeName = nameFrom(property.parts());
    } else if (equalNames(property.name, "EMAIL")) {
      std::string email = emailFrom(property.text());
      if (!email.empty()) contact.emails.push_back(std::move(email));
    } else if (equalNames(property.name, "ADR") && property.preference < preference) {
      std::string address = addressFrom(property.parts());
      if (address.empty()) continue;
      contact.address = std::move(address);
      preference = property.preference;
    }
  }
  if (contact.name.empty()) contact.name = std::move(madeName);
  return contact;
}

// Finds where cards begin and end.
class Cards {
 public:
  Cards(std::string_view text, std::vector<Problem>& problems)
      : text_(text), scanner_(text), problems_(problems) {}

  std::vector<Contact> read() {
    for (RawLine line; scanner_.next(line);) {
      std::string_view name;
      const Marker marker = markerOf(line, name);
      const bool isOfCard = marker != Marker::none && equalNames(name, "VCARD");
      if (isOfCard && marker == Marker::begin) {
        begin(line);
      } else if (isOfCard && depth_ > 0) {
        if (--depth_ == 0) finish(offsetOf(line) + line.raw.size());
      } else if (depth_ == 0) {
        outside(line);
      }
      if (!line.isBlank())
        isAfterAgent_ = equalNames(line.content.substr(0, partsOf(line.content).nameLength), "AGENT");
    }
    if (depth_ > 0) finish(text_.size());
    return std::move(contacts_);
  }

 private:
  std::size_t offsetOf(const RawLine& line) const {
    return static_cast<std::size_t>(line.raw.data() - text_.data());
  }

  // vCard 2.1 has a card in a card, after AGENT; any other one says that an END is missing.
  void begin(const RawLine& line) {
    if (depth_ > 0 && isAfterAgent_) {
      ++depth_;
      return;
    }
    if (depth_ > 0) {
      problems_.push_back({beginLine_, "BEGIN:VCARD has no END; what there is of it is taken"});
      finish(offsetOf(line));
    }
    depth_ = 1;
    begin_ = offsetOf(line);
    beginLine_ = line.number;
    isInJunk_ = false;
  }

  void finish(std::size_t end) {
    contacts_.push_back(contactOf(text_.substr(begin_, end - begin_)));
    depth_ = 0;
  }

  void outside(const RawLine& line) {
    if (trimmed(line.content).empty() && !line.isFolded) return;
    if (!isInJunk_) problems_.push_back({line.number, "not part of a vCard"});
    isInJunk_ = true;
  }

  std::string_view text_;
  LineScanner scanner_;
  std::vector<Problem>& problems_;
  std::vector<Contact> contacts_;
  std::size_t depth_ = 0, begin_ = 0, beginLine_ = 0;
  bool isAfterAgent_ = false;
  bool isInJunk_ = false;
};

}  // namespace

std::vector<Contact> parseContacts(std::string_view text, std::vector<Problem>& problems) {
  return Cards(text, problems).read();
}

}  // namespace ek::ical
