// zunohost: a host for the plug-in where there is no FileMaker.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "host/cli/commands.h"

namespace {

constexpr int kFailure = 1;
constexpr int kWrongUsage = 2;

struct Options {
  std::string plugin;
  std::string store;
  int extensionVersion = kCurrentExtnVersion;
  bool json = false;
  std::vector<std::string> calculations;
  std::string script;
  std::string parameter;
};

struct Commands {
  CLI::App* functions;
  CLI::App* eval;
  CLI::App* run;
  CLI::App* repl;
};

Commands declare(CLI::App& app, Options& options) {
  app.fallthrough();
  app.require_subcommand(1);
  app.add_option("--plugin", options.plugin, "The plug-in; Zuno.fmx beside this program if not given")
      ->option_text("FILE");
  app.add_option("--store", options.store, "The plug-in's calendar store")->option_text("FILE");
  app.add_option("--extension-version", options.extensionVersion, "The interface version to speak")
      ->option_text("N")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  app.add_flag("--json", options.json, "Print JSON");

  Commands commands{};
  commands.functions = app.add_subcommand("functions", "List the functions that the plug-in registers");
  commands.eval = app.add_subcommand("eval", "Evaluate calculations in one session, in order");
  commands.eval->add_option("calculation", options.calculations,
                            "Calculations; none or - for one a line from standard input");
  commands.run = app.add_subcommand("run", "Run a script");
  commands.run->add_option("script", options.script, "The script's file")->required();
  commands.run->add_option("parameter", options.parameter, "The script's parameter");
  commands.repl = app.add_subcommand("repl", "Evaluate calculations as they are typed");
  return commands;
}

int perform(const Commands& commands, const Options& options, const fmhost::Plugin& plugin) {
  fmhost::Session session(plugin);
  if (commands.functions->parsed()) return fmhost::listFunctions(plugin, options.json);
  if (commands.eval->parsed()) return fmhost::evaluateAll(session, options.calculations, options.json);
  if (commands.run->parsed()) return fmhost::runScriptFile(session, options.script, options.parameter);
  return fmhost::readEvaluatePrint(session, options.json);
}

int loadAndPerform(const Commands& commands, const Options& options) {
  if (!options.store.empty()) setenv("ZUNO_STORE", options.store.c_str(), 1);
  fmhost::Plugin plugin(options.plugin.empty() ? fmhost::findPlugin("Zuno.fmx") : options.plugin.c_str(),
                        options.extensionVersion);
  const int status = perform(commands, options, plugin);
  plugin.shutDown();
  const std::string leaked = fmhost::Plugin::standIn().describeLiveObjects();
  if (leaked.empty()) return status;
  std::cerr << "zunohost: the plug-in has not deleted what it made of the host's objects: " << leaked << '\n';
  return kFailure;
}

int runProgram(int argc, char** argv) {
  CLI::App app("Loads the Zuno plug-in as FileMaker does, evaluates calculations and runs scripts.",
               "zunohost");
  Options options;
  const Commands commands = declare(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& fault) {
    return app.exit(fault) == 0 ? 0 : kWrongUsage;
  }
  return loadAndPerform(commands, options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return runProgram(argc, argv);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "zunohost: %s\n", fault.what());
    return kFailure;
  }
}
