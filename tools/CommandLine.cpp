// SPDX-License-Identifier: Apache-2.0
#include "CommandLine.h"

#include <algorithm>
#include <memory>
#include <ostream>

#include "CommandSet.h"
#include "Interrupt.h"

namespace platen::tool {

namespace {

constexpr const char* kDescription =
    "Speaks the Internet Printing Protocol: asks printers, prints files, looks after the queues,\n"
    "jobs and subscriptions of print servers, shows and compares messages.";

constexpr const char* kNotes =
    "\nplaten diff has a status of its own where something differs; see platen diff --help.\n"
    "platen COMMAND --help tells of the arguments and options of a command.\n";

constexpr const char* kNoCommand = "a command is missing";

// Help without the library's remarks on types and checks: the descriptions say what matters.
class PlainFormatter : public CLI::Formatter {
 public:
  PlainFormatter() {
    label("SUBCOMMAND", "COMMAND");
    label("Positionals", "Arguments");
  }

  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_positional() || option->get_type_size() == 0 ? ""
                                                                    : " " + option->get_type_name();
  }
};

Failure badUsage(const std::string& reason, const std::string& command) {
  return {ExitStatus::usage, reason + " (see " + command + " --help)"};
}

// In one line, where the library has two.
std::string reasonOf(const CLI::ParseError& error) {
  std::string text = error.what();
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

// How the command is called that the line got to: "platen queue add".
std::string chosenName(const CLI::App& app) {
  const auto chosen = app.get_subcommands();
  return app.get_name() + (chosen.empty() ? "" : " " + chosenName(*chosen.front()));
}

// `name` is how the app is called: "platen", "platen queue".
void requireCommand(const CLI::App& app, const std::string& name) {
  if (const auto extras = app.remaining(); !extras.empty()) {
    const std::string of = app.get_parent() == nullptr ? "" : " of " + name;
    throw badUsage("\"" + extras.front() + "\" is neither a command" + of + " nor an option", name);
  }
  const auto chosen = app.get_subcommands();
  if (!chosen.empty()) {
    return requireCommand(*chosen.front(), name + " " + chosen.front()->get_name());
  }
  if (!app.get_subcommands(nullptr).empty()) {  // there are some to choose from
    throw badUsage(kNoCommand, name);
  }
}

}  // namespace

void runCommandLine(int argc, const char* const* argv, std::ostream& out) {
  CLI::App app(kDescription, "platen");
  app.formatter(std::make_shared<PlainFormatter>());
  app.require_subcommand(0, 1);  // that there is one is checked below, with a better message
  app.footer(exitStatusNotes() + kNotes);
  app.set_version_flag("--version", "platen " PLATEN_VERSION, "Print the version and exit");
  CommandSet commands(app);
  addPrinterCommands(commands);
  addQueueCommands(commands);
  addJobCommands(commands);
  addSubscriptionCommands(commands);
  app.allow_extras();  // of its own, not of the commands; they are checked below
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& asked) {  // for help or the version
    app.exit(asked, out, out);
    return;
  } catch (const CLI::ParseError& error) {
    throw badUsage(reasonOf(error), chosenName(app));
  }
  requireCommand(app, app.get_name());
  commands.chosen()(out);
}

}  // namespace platen::tool
