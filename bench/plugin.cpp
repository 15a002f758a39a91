#include "bench/plugin.h"

#include <cstdlib>
#include <ctime>
#include <memory>
#include <stdexcept>

#include "foundation/text.h"
#include "host/plugin.h"

namespace bench {
namespace {

std::unique_ptr<fmhost::Plugin> plugin;

fmx::errcode leaveUntouched(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) { return 0; }

fmx::errcode answerZero(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data& result) {
  result.SetAsNumber(*fmx::FixPtUniquePtr(0));
  return 0;
}

fmx::TextUniquePtr textOf(std::string_view utf8) {
  fmx::TextUniquePtr text;
  text->AssignWithLength(utf8.data(), static_cast<fmx::uint32>(utf8.size()), fmx::Text::kEncoding_UTF8);
  return text;
}

fmx::DateTimeUniquePtr localTime(Timestamp timestamp) {
  const std::time_t seconds = timestamp.seconds;
  std::tm fields{};
  localtime_r(&seconds, &fields);
  fmx::DateTimeUniquePtr time;
  time->SetNormalizedDate(static_cast<fmx::int16>(fields.tm_mon + 1), static_cast<fmx::int16>(fields.tm_mday),
                          static_cast<fmx::int16>(fields.tm_year + 1900));
  time->SetNormalizedTime(fields.tm_hour, static_cast<fmx::int16>(fields.tm_min),
                          static_cast<fmx::int16>(fields.tm_sec));
  return time;
}

// Puts a value into what the host hands over as one argument.
struct Assign {
  fmx::Data& data;
  void operator()(std::string_view text) const { data.SetAsText(*textOf(text), *fmx::LocaleUniquePtr()); }
  void operator()(int number) const { data.SetAsNumber(*fmx::FixPtUniquePtr(number)); }
  void operator()(Timestamp timestamp) const { data.SetAsTimeStamp(*localTime(timestamp)); }
};

// Under the plug-in's own ID: the host lets nobody else register while the plug-in is loaded.
void registerFunction(short id, std::string_view name, fmx::ExtPluginType pointer) {
  const fmhost::Text& options = plugin->options();
  const auto letter = [&options](std::size_t position) { return static_cast<char>(options[position]); };
  const fmx::QuadCharUniquePtr plugInId(letter(0), letter(1), letter(2), letter(3));
  constexpr fmx::uint32 kNoFlags = 0;
  if (fmx::ExprEnv::RegisterExternalFunction(*plugInId, id, *textOf(name), *textOf(name), 0, 0, kNoFlags,
                                             pointer) != 0)
    throw std::runtime_error(std::string(name) + " cannot be registered");
}

}  // namespace

void loadPlugin(const std::string& store) {
  if (plugin) return;
  setenv("ZUNO_STORE", store.c_str(), 1);
  plugin = std::make_unique<fmhost::Plugin>(ZUNO_BENCH_PLUGIN);
  registerFunction(1, "Untouched", leaveUntouched);
  registerFunction(2, "Zero", answerZero);
}

Function function(std::string_view name) {
  const fmhost::Registration* registration = plugin->function(foundation::utf16FromUtf8(name));
  if (registration == nullptr) throw std::runtime_error("no function " + std::string(name));
  return {registration->id, registration->function};
}

Call::Call(Function function, const std::vector<Value>& arguments) : function_(function) {
  for (const Value& value : arguments) {
    fmx::DataUniquePtr data;
    std::visit(Assign{*data}, value);
    arguments_->PushBack(*data);
  }
}

const fmx::ExprEnv& Call::environment() {
  static const fmx::ExprEnvUniquePtr environment;
  return *environment;
}

void Call::check() const {
  const bool hasText = result_->GetNativeType() == fmx::Data::kDTText;
  if (status_ == 0 && !(hasText && text() == "!!ERROR!!")) return;
  Call reason(function("Zuno_GetLastError"), {"Text"});
  reason.run();
  throw std::runtime_error("function " + std::to_string(function_.id) + ": " + reason.text());
}

long Call::number() const { return result_->GetAsNumber().AsLong(); }

std::string Call::text() const {
  const fmx::Text& text = result_->GetAsText();
  // Four bytes hold any UTF-16 unit, and the terminator needs one more.
  std::string utf8(std::size_t{text.GetSize()} * 4 + 1, '\0');
  text.GetBytes(utf8.data(), static_cast<fmx::uint32>(utf8.size()), 0, fmx::Text::kSize_End,
                fmx::Text::kEncoding_UTF8);
  utf8.resize(utf8.find('\0'));
  return utf8;
}

}  // namespace bench
