// Values and texts as they are printed.
#pragma once

#include <string>
#include <string_view>

#include "host/wrapper/value.h"

namespace fmhost {

// As FileMaker shows it; a carriage return is a line break.
std::string shown(const Value& value);
// {"type":"date","value":"2026-11-21"}
std::string asJson(const Value& value);
// {"type":"error","value":"..."}
std::string errorAsJson(std::string_view message);
// In quotation marks. Half a surrogate pair is escaped, everything else that can be is UTF-8.
std::string jsonText(std::u16string_view text);

}  // namespace fmhost
