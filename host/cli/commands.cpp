#include "host/cli/commands.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <system_error>

#include "foundation/text.h"
#include "host/output.h"
#include "host/script/script_runner.h"

namespace fmhost {
namespace {

std::string argumentCounts(const Registration& function) {
  if (function.mostArguments == -1) return fmt::format("{} or more", function.fewestArguments);
  if (function.mostArguments == function.fewestArguments) return fmt::format("{}", function.fewestArguments);
  return fmt::format("{} to {}", function.fewestArguments, function.mostArguments);
}

bool hasStep(const Plugin& plugin, const Registration& function) {
  return std::ranges::find(plugin.steps(), function.id, &Registration::id) != plugin.steps().end();
}

std::string asJson(const Plugin& plugin, const Registration& function) {
  return fmt::format(R"({{"id":{},"name":{},"prototype":{},"description":{},"min":{},"max":{},"step":{}}})",
                     function.id, jsonText(function.name), jsonText(function.prototype),
                     jsonText(function.description), function.fewestArguments, function.mostArguments,
                     hasStep(plugin, function));
}

// Behind the words for type-ahead, which nobody reads.
std::string readableDescription(const Registration& function) {
  const std::u16string_view description = function.description;
  return foundation::utf8FromUtf16(description.substr(description.find(u'|') + 1));
}

void print(const Plugin& plugin, const Registration& function) {
  fmt::print("{:>5}  {}\n       {}; arguments: {}{}\n", function.id,
             foundation::utf8FromUtf16(function.prototype), foundation::utf8FromUtf16(function.name),
             argumentCounts(function), hasStep(plugin, function) ? "; also a script step" : "");
  if (!function.description.empty()) fmt::print("       {}\n", readableDescription(function));
}

// Nothing, and the reason, for a file that cannot be read.
std::optional<std::string> contentsOf(const std::string& file, std::string& why) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) {  // opens like a file
    why = std::strerror(EISDIR);
    return std::nullopt;
  }
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (stream.is_open() && !stream.bad()) return text;
  why = std::strerror(errno);
  return std::nullopt;
}

bool isBlank(const std::string& line) { return line.find_first_not_of(" \t\r") == std::string::npos; }

}  // namespace

int listFunctions(const Plugin& plugin, bool json) {
  if (!json) {
    for (const Registration& function : plugin.functions()) print(plugin, function);
    return 0;
  }
  std::string rows;
  for (const Registration& function : plugin.functions()) {
    rows += (rows.empty() ? "\n  " : ",\n  ") + asJson(plugin, function);
  }
  fmt::print("[{}\n]\n", rows);
  return 0;
}

bool evaluateAndPrint(Session& session, const std::string& calculation, bool json) {
  try {
    const Value value = session.evaluate(foundation::utf16FromUtf8(calculation));
    std::cout << (json ? fmhost::asJson(value) : shown(value)) << std::endl;
    return true;
  } catch (const CalculationError& fault) {
    if (json) {
      std::cout << errorAsJson(fault.what()) << std::endl;
    } else {
      std::cerr << fault.what() << std::endl;
    }
    return false;
  }
}

int evaluateAll(Session& session, const std::vector<std::string>& calculations, bool json) {
  int status = 0;
  const auto evaluate = [&](const std::string& calculation) {
    if (!evaluateAndPrint(session, calculation, json)) status = 1;
  };
  const bool fromInput = calculations.empty() || (calculations.size() == 1 && calculations.front() == "-");
  if (!fromInput) {
    std::ranges::for_each(calculations, evaluate);
    return status;
  }
  for (std::string line; std::getline(std::cin, line);) {
    if (!isBlank(line)) evaluate(line);
  }
  return status;
}

int runScriptFile(Session& session, const std::string& file, const std::string& parameter) {
  std::string why;
  const std::optional<std::string> text = contentsOf(file, why);
  if (!text) {
    std::cerr << "zunohost: the script " << file << " cannot be read: " << why << '\n';
    return 1;
  }
  try {
    const Script script = readScript(file, foundation::utf16FromUtf8(*text), session);
    runScript(script, session, Value::ofText(foundation::utf16FromUtf8(parameter)),
              [](const std::string& title, const std::string& message) {
                std::cout << title << ": " << message << std::endl;
              });
    return 0;
  } catch (const ScriptError& fault) {
    std::cerr << fault.what() << '\n';
    return 1;
  }
}

}  // namespace fmhost
