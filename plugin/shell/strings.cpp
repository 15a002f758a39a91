#include "plugin/shell/strings.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "foundation/bundle.h"

namespace zuno {

namespace {

constexpr FMX_Strings kOptionsKey = 1;

// The help address is loaded twice in a row; the second time changes nothing.
void loadForHost(FMX_Strings stringID, FMX_Unichar* buffer, std::int64_t capacity) {
  if (stringID == kFMXT_HelpURLStr) Sub_OSXLoadString(stringID, buffer, capacity);
  Sub_OSXLoadString(stringID == kFMXT_OptionsStr ? kOptionsKey : stringID, buffer, capacity);
}

}  // namespace

void Do_GetString(FMX_Strings stringID, FMX_UInt32 /*spare*/, FMX_Int32 capacity, FMX_Unichar* buffer) {
  loadForHost(stringID, buffer, capacity);
}

void Do_GetString(FMX_Strings stringID, fmx::Text& text, bool strip) {
  std::array<FMX_Unichar, 1024> buffer{};
  loadForHost(stringID, buffer.data(), buffer.size());
  text.AssignUnicode(buffer.data());
  if (!strip) return;
  const fmx::TextUniquePtr parenthesis;
  parenthesis->Assign("(");
  const fmx::uint32 found = text.Find(*parenthesis, 0);
  if (found != fmx::Text::kSize_Invalid) text.DeleteText(found);
}

std::int64_t Sub_OSXLoadString(FMX_Strings stringID, FMX_Unichar* buffer, std::int64_t capacity) {
  if (buffer == nullptr || capacity < 2) return 0;
  const std::optional<std::u16string> text =
      foundation::localizedString(gFMX_ExternCallPtr->instanceID, "Zuno " + std::to_string(stringID), "Zuno");
  if (!text) return 0;
  const auto length = static_cast<std::int64_t>(text->size());
  if (length >= capacity - 1) return 0;
  *std::copy(text->begin(), text->end(), buffer) = 0;
  return length;
}

}  // namespace zuno
