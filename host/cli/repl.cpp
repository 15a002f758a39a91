// Calculations typed by a person: line editing, history and completion of function names.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <iostream>
#include <memory>
#include <unistd.h>

#include "foundation/text.h"
#include "host/calc/builtins.h"
#include "host/cli/commands.h"

namespace fmhost {
namespace {

struct FreeLine {
  void operator()(char* line) const noexcept { std::free(line); }
};
using Line = std::unique_ptr<char, FreeLine>;

// The library calls back without a context.
std::vector<std::string> completions;

bool startsWithIgnoringCase(const std::string& name, const char* start) {
  return strncasecmp(name.c_str(), start, std::strlen(start)) == 0;
}

char* nextCompletion(const char* start, int state) {
  static std::size_t next = 0;
  if (state == 0) next = 0;
  while (next < completions.size()) {
    const std::string& name = completions[next++];
    if (startsWithIgnoringCase(name, start)) return strdup(name.c_str());
  }
  return nullptr;
}

char** complete(const char* start, int, int) {
  rl_attempted_completion_over = 1;
  return rl_completion_matches(start, nextCompletion);
}

void prepareEditing(const Session& session) {
  static char breakCharacters[] = " \t\n\"()[];&+-*/^=<>$";
  for (const std::string_view name : builtinNames()) completions.emplace_back(name);
  for (const Registration& function : session.plugin().functions()) {
    completions.push_back(foundation::utf8FromUtf16(function.name));
  }
  std::ranges::sort(completions);
  rl_readline_name = "zunohost";
  rl_completer_word_break_characters = breakCharacters;
  rl_attempted_completion_function = complete;
  using_history();
}

}  // namespace

int readEvaluatePrint(Session& session, bool json) {
  if (isatty(STDIN_FILENO) == 0) return evaluateAll(session, {}, json);
  prepareEditing(session);
  std::cout << "Type a calculation; Tab completes names, Control-D ends.\n";
  while (const Line line{readline("zuno> ")}) {
    if (*line == '\0') continue;
    add_history(line.get());
    evaluateAndPrint(session, line.get(), json);
  }
  std::cout << '\n';
  return 0;
}

}  // namespace fmhost
