#include <iterator>
#include <string>

#include "plugin/backend/keywords.h"
#include "plugin/functions/call.h"
#include "plugin/shell/external_functions.h"
#include "plugin/shell/kept_objects.h"
#include "plugin/shell/plugin_error.h"

namespace zuno {

namespace {

constexpr const char kShortVersion[] = "3.0.1.0";
constexpr const char kLongVersion[] = "Zunomat 3.0.1.0";

bool isShort(const fmx::Text& asked) {
  const fmx::TextUniquePtr word;
  word->SetText(asked);
  word->Uppercase();
  const fmx::TextUniquePtr wanted;
  wanted->AssignWide(L"SHORT");
  return *word == *wanted;
}

std::string lastErrorText() {
  if (g_sharedFunctions != nullptr) {
    if (std::optional<std::string> text = g_sharedFunctions->getLastErrorString()) return *text;
  }
  return error ? error->getError() : std::string();
}

}  // namespace

// Without an argument the short version; with one the long version, unless it asks for the short one.
fmx::errcode Zuno_Version(short /*functionId*/, const fmx::ExprEnv& environment,
                          const fmx::DataVect& arguments, fmx::Data& result) {
  return runInSession(environment, result, [&] {
    ClearError();
    fmx::Text& version = textForResult(std::size(kLongVersion));
    if (arguments.Size() == 0) {
      const fmx::LocaleUniquePtr locale(fmx::Locale::kType_System);
      version.Assign(kShortVersion);
      result.SetAsText(version, *locale);
      return;
    }
    version.Assign(isShort(arguments.AtAsText(0)) ? kShortVersion : kLongVersion);
    result.SetAsText(version, arguments.At(0).GetLocale());
  });
}

// Reports the error of the call before and leaves it. Any word but "text" asks for its number.
fmx::errcode Zuno_GetLastError(short /*functionId*/, const fmx::ExprEnv& environment,
                               const fmx::DataVect& arguments, fmx::Data& result) {
  return runInSession(environment, result, [&] {
    const Keyword form = Arguments(arguments).keyword(0);
    if (!form.isNone() && !(form == "text"))
      return assignNumber(static_cast<std::int32_t>(g_llasterror), result);
    const std::string said = lastErrorText();
    fmx::Text& message = textForResult(said.size());
    message.Assign(said.c_str());
    result.SetAsText(message, result.GetLocale());
  });
}

}  // namespace zuno
