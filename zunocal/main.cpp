// zunocal: manages the embedded calendar store from the command line.
#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>

#include "eventkit/embedded/storage/database.h"
#include "zunocal/commands.h"

namespace {

using zunocal::Database;

constexpr int kFailure = 1;
constexpr int kWrongUsage = 2;

int complain(const char* reason) noexcept {
  std::fprintf(stderr, "zunocal: %s\n", reason);
  return kFailure;
}

int run(int argc, char** argv) {
  CLI::App app("Manages the calendar store of Zuno.", "zunocal");
  std::string store;
  bool asJson = false;
  app.add_option("--store", store, "The store's file, in place of $ZUNO_STORE or the user's own")
      ->type_name("FILE");
  app.add_flag("--json", asJson, "Print the answer as JSON");
  app.require_subcommand(1);
  app.fallthrough();

  std::function<int(Database&)> command;
  app.add_subcommand("list", "Show calendars and reminder lists")->callback([&] {
    command = [&](Database& database) { return zunocal::listCalendars(database, asJson); };
  });

  zunocal::ImportRequest request;
  CLI::App* imported =
      app.add_subcommand("import", "Bring iCalendar (.ics) and vCard (.vcf) files into the store");
  imported
      ->add_option("--calendar", request.title,
                   "Title of the calendar and the list, in place of the file's own")
      ->type_name("TITLE");
  CLI::Option* readOnly =
      imported->add_flag("--read-only", request.isReadOnly, "Let nobody change what is imported");
  imported
      ->add_flag("--subscribed", request.isSubscribed, "As a subscription, which nobody can change either")
      ->excludes(readOnly);
  imported->add_option("FILE|DIR", request.paths, "Files, or folders with such files")->required();
  imported->callback(
      [&] { command = [&](Database& database) { return zunocal::importFiles(database, request, asJson); }; });

  std::vector<std::string> titles;
  std::string file;
  CLI::App* exported = app.add_subcommand("export", "Write calendars as iCalendar");
  exported->add_option("--calendar", titles, "Only calendars and lists of this title")
      ->type_name("TITLE")
      ->take_all()
      ->expected(1)
      ->allow_extra_args(false);
  exported->add_option("-o,--output", file, "To this file and not to standard output")->type_name("FILE");
  exported->callback([&] {
    command = [&](Database& database) { return zunocal::exportCalendars(database, titles, file); };
  });

  app.add_subcommand("check", "Tell whether the store is sound")->callback([&] {
    command = [&](Database& database) { return zunocal::checkStore(database, asJson); };
  });

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& fault) {
    return app.exit(fault) == 0 ? 0 : kWrongUsage;
  }
  std::string why;
  const auto database = Database::open(store.empty() ? ek::embedded::defaultStorePath() : store, why);
  return database ? command(*database) : complain(why.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone shows as a failed write
  try {
    const int status = run(argc, argv);
    return std::fflush(stdout) == 0 ? status : complain("standard output cannot be written");
  } catch (const std::exception& exception) {
    return complain(exception.what());
  }
}
