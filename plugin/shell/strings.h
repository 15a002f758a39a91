// The plug-in's localised strings, by number: key "Zuno N" of the table "Zuno".
#pragma once

#include <cstdint>

#include "FMWrapper/FMXExtern.h"
#include "FMWrapper/FMXText.h"

namespace zuno {

// Answers the host's message for a string; the buffer holds `capacity` units. The options string (131) has
// the key 1.
void Do_GetString(FMX_Strings stringID, FMX_UInt32 spare, FMX_Int32 capacity, FMX_Unichar* buffer);
// The string as a host text, empty when there is none; up to its first "(" when stripped.
void Do_GetString(FMX_Strings stringID, fmx::Text& text, bool strip);

// Loads a string, a 0 unit after it. The number of units before that, or 0 with the buffer untouched when
// there is no such string or it is longer than capacity - 2 units.
std::int64_t Sub_OSXLoadString(FMX_Strings stringID, FMX_Unichar* buffer, std::int64_t capacity);

}  // namespace zuno
