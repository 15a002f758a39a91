// A plug-in with whims, to see what the host makes of them. Each function does what its name says.
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "FMWrapper/FMXCalcEngine.h"
#include "FMWrapper/FMXExtern.h"

FMX_ExternCallPtr gFMX_ExternCallPtr = nullptr;

namespace {

using fmx::errcode;
using Environment = fmx::ExprEnv;
using Arguments = fmx::DataVect;
using Result = fmx::Data;

void answer(Result& result, const char* text) {
  const fmx::TextUniquePtr answered;
  answered->Assign(text, fmx::Text::kEncoding_UTF8);
  result.SetAsText(*answered, result.GetLocale());
}

void answer(Result& result, fmx::int32 number) {
  const fmx::FixPtUniquePtr answered;
  answered->AssignInt(number);
  result.SetAsNumber(*answered);
}

std::string bytesOf(const fmx::Text& text) {
  std::string bytes(std::size_t{3} * text.GetSize(), '\0');
  bytes.resize(text.GetBytesEx(bytes.data(), static_cast<fmx::uint32>(bytes.size())));
  return bytes;
}

errcode nothing(short, const Environment&, const Arguments&, Result&) { return 0; }

errcode joined(short, const Environment&, const Arguments& arguments, Result& result) {
  std::string all = std::to_string(arguments.Size());
  for (fmx::uint32 i = 0; i < arguments.Size(); ++i) all += "|" + bytesOf(arguments.AtAsText(i));
  answer(result, all.c_str());
  return 0;
}

errcode typed(short, const Environment&, const Arguments& arguments, Result& result) {
  std::string types;
  for (fmx::uint32 i = 0; i < arguments.Size(); ++i) types += std::to_string(arguments.At(i).GetNativeType());
  answer(result, types.c_str());
  return 0;
}

errcode truncated(short, const Environment&, const Arguments& arguments, Result& result) {
  answer(result, arguments.AtAsNumber(0).AsLong());
  return 0;
}

// The argument, set again as the type that the second one names.
errcode echoed(short, const Environment&, const Arguments& arguments, Result& result) {
  const std::string type = bytesOf(arguments.AtAsText(1));
  if (type == "text") result.SetAsText(arguments.AtAsText(0), arguments.At(0).GetLocale());
  if (type == "number") result.SetAsNumber(arguments.AtAsNumber(0));
  if (type == "date") result.SetAsDate(arguments.AtAsDate(0));
  if (type == "time") result.SetAsTime(arguments.AtAsTime(0));
  if (type == "timestamp") result.SetAsTimeStamp(arguments.AtAsTimeStamp(0));
  return 0;
}

errcode partsOfTimestamp(short, const Environment&, const Arguments& arguments, Result& result) {
  const fmx::DateTime& moment = arguments.AtAsTimeStamp(0);
  std::string parts;
  for (const int part : {int{moment.GetYear()}, int{moment.GetMonth()}, int{moment.GetDay()},
                         int{moment.GetHour()}, int{moment.GetMinute()}, int{moment.GetSec()}}) {
    parts += (parts.empty() ? "" : " ") + std::to_string(part);
  }
  answer(result, parts.c_str());
  return 0;
}

errcode normalised(short, const Environment&, const Arguments& arguments, Result& result) {
  const auto number = [&](fmx::uint32 i) {
    return static_cast<fmx::int16>(arguments.AtAsNumber(i).AsLong());
  };
  const fmx::DateTimeUniquePtr moment;
  moment->SetNormalizedDate(number(0), number(1), number(2));
  moment->SetNormalizedTime(number(3), number(4), number(5));
  result.SetAsTimeStamp(*moment);
  return 0;
}

errcode session(short, const Environment& environment, const Arguments&, Result& result) {
  answer(result, static_cast<fmx::int32>(environment.SessionID()));
  return 0;
}

// Never deleted, but in reach: only the host's count shall tell.
std::array<fmx::Text*, 8> leaked{};
std::size_t leakedCount = 0;

errcode leaking(short, const Environment&, const Arguments&, Result& result) {
  leaked[leakedCount++ % leaked.size()] = fmx::TextUniquePtr().release();
  answer(result, "leaked");
  return 0;
}

errcode throwing(short, const Environment&, const Arguments& arguments, Result&) {
  if (bytesOf(arguments.AtAsText(0)) == "memory") throw std::bad_alloc();
  throw std::exception();
}

errcode failing(short, const Environment&, const Arguments& arguments, Result&) {
  return static_cast<errcode>(arguments.AtAsNumber(0).AsLong());
}

// Asks for what is not there.
errcode pastTheEnd(short, const Environment&, const Arguments& arguments, Result& result) {
  result.SetAsText(arguments.AtAsText(arguments.Size()), result.GetLocale());
  return 0;
}

constexpr const char* kStep =
    "<pluginstep><parameter type=\"target\" label=\"Results\" showinline=\"true\"/>"
    "<parameter type=\"calc\" showinline=\"true\" label=\"First\" datatype=\"text\" ID=\"0\"/>"
    "<parameter type=\"calc\" showinline=\"true\" label=\"First (Optional)\" datatype=\"timestamp\" "
    "ID=\"2\"/>"
    "<Parameter Type=\"List\" Label=\"Kind\" Default=\"7\" ID=\"1\"><Value ID=\"7\">Please Select</Value>"
    "<Value>Short &amp; sweet</Value></Parameter>"
    "<parameter type=\"bool\" label=\"Loud\" default=\"true\" ID=\"3\"/>"
    "<parameter type=\"calc\" label=\"Repeated\" ID=\"3\"/><parameter type=\"calc\" label=\"Far\" ID=\"10\"/>"
    "<parameter type=\"wheel\" label=\"Unknown\" ID=\"4\"/></pluginstep>";
constexpr const char* kStepWithoutTarget = "<PluginStep/>";

struct Row {
  short id;
  const char* prototype;
  short fewest, most;
  fmx::ExtPluginType function;
  const char* step;
};
constexpr Row kRows[] = {{1, "Test_Nothing", 0, 0, nothing, kStepWithoutTarget},
                         {2, "Test_Joined( values )", 0, -1, joined, kStep},
                         {3, "Test_Typed( values )", 1, 4, typed, nullptr},
                         {4, "Test_Truncated( number )", 1, 1, truncated, nullptr},
                         {5, "Test_Echoed( value ; type )", 2, 2, echoed, nullptr},
                         {6, "Test_PartsOfTimestamp( value )", 1, 1, partsOfTimestamp, nullptr},
                         {7, "Test_Normalised( m ; d ; y ; h ; min ; s )", 6, 6, normalised, nullptr},
                         {8, "Test_Session", 0, 0, session, nullptr},
                         {9, "Test_Leaking", 0, 0, leaking, nullptr},
                         {10, "Test_Throwing( what )", 1, 1, throwing, "no XML <"},
                         {11, "Test_Failing( code )", 1, 1, failing, nullptr},
                         {12, "Test_PastTheEnd", 0, 1, pastTheEnd, nullptr}};

void registerRow(const Row& row, int version) {
  const fmx::QuadCharUniquePtr plugin('T', 'e', 's', 't');
  const fmx::TextUniquePtr name, prototype, description, definition, parenthesis;
  prototype->Assign(row.prototype, fmx::Text::kEncoding_UTF8);
  name->SetText(*prototype);
  parenthesis->Assign("(");
  const fmx::uint32 end = name->Find(*parenthesis, 0);
  if (end != fmx::Text::kSize_Invalid) name->DeleteText(end);
  description->AssignWide(L"test|what it does");
  if (version < 56) {
    fmx::ExprEnv::RegisterExternalFunction(*plugin, row.id, *name, *prototype, row.fewest, row.most, 0xFF01,
                                           row.function);
  } else {
    fmx::ExprEnv::RegisterExternalFunctionEx(*plugin, row.id, *name, *prototype, *description, row.fewest,
                                             row.most, 0xFF01, row.function);
  }
  if (version < 57 || row.step == nullptr) return;
  definition->Assign(row.step, fmx::Text::kEncoding_UTF8);
  fmx::ExprEnv::RegisterScriptStep(*plugin, row.id, *name, *definition, *description, 0xFF01, row.function);
}

// What the host has to refuse whatever else happens.
void registerWrongly() {
  const fmx::QuadCharUniquePtr plugin('T', 'e', 's', 't'), stranger('E', 'l', 's', 'e');
  const fmx::TextUniquePtr name, empty;
  name->Assign("Test_Refused");
  fmx::ExprEnv::RegisterExternalFunction(*stranger, 90, *name, *name, 0, 0, 0xFF01, nothing);
  fmx::ExprEnv::RegisterExternalFunction(*plugin, 91, *empty, *name, 0, 0, 0xFF01, nothing);
  fmx::ExprEnv::RegisterExternalFunction(*plugin, 92, *name, *name, 2, 1, 0xFF01, nothing);
  if (gFMX_ExternCallPtr->extnVersion < 56) {
    fmx::ExprEnv::RegisterExternalFunctionEx(*plugin, 93, *name, *name, *empty, 0, 0, 0xFF01, nothing);
  }
  if (gFMX_ExternCallPtr->extnVersion < 57) {
    fmx::ExprEnv::RegisterScriptStep(*plugin, 94, *name, *name, *empty, 0xFF01, nothing);
  }
}

void initialise() {
  const int version = gFMX_ExternCallPtr->extnVersion;
  if (version < 50 || version > 255) {
    gFMX_ExternCallPtr->result = static_cast<FMX_PtrType>(kBadExtnVersion);
    return;
  }
  registerWrongly();
  for (const Row& row : kRows) registerRow(row, version);
  gFMX_ExternCallPtr->result = kCurrentExtnVersion;
}

void shutDown() {
  const fmx::QuadCharUniquePtr plugin('T', 'e', 's', 't');
  for (short id = 0; id < 20; ++id) fmx::ExprEnv::UnRegisterExternalFunction(*plugin, id);
}

void giveString() {
  constexpr struct {
    fmx::uint32 id;
    std::u16string_view text;
  } kTexts[] = {{kFMXT_NameStr, u"Whims"}, {kFMXT_OptionsStr, TEST_PLUGIN_OPTIONS}};
  for (const auto& [id, text] : kTexts) {
    if (id != gFMX_ExternCallPtr->parm1 || text.size() + 1 > gFMX_ExternCallPtr->parm3) continue;
    auto* const buffer = reinterpret_cast<char16_t*>(gFMX_ExternCallPtr->result);
    std::memcpy(buffer, text.data(), text.size() * sizeof(char16_t));
    buffer[text.size()] = 0;
  }
}

}  // namespace

__attribute__((visibility("default"))) void FMExternCallProc(FMX_ExternCallPtr record) {
  gFMX_ExternCallPtr = record;
  if (record->whichCall == kFMXT_Init) initialise();
  if (record->whichCall == kFMXT_Shutdown) shutDown();
  if (record->whichCall == kFMXT_GetString) giveString();
}
