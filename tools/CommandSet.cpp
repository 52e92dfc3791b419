// SPDX-License-Identifier: Apache-2.0
#include "CommandSet.h"

#include <charconv>
#include <system_error>
#include <utility>

namespace platen::tool {

namespace {

constexpr const char* kEpilog =
    "Exit status:\n"
    "  0  done\n"
    "  1  the printer or the server refused; the job was canceled or aborted; none of the named\n"
    "     attributes is there; a key path leads to nothing; a file could not be read or written;\n"
    "     what was read, from a file or a printer, is not an IPP message; standard output could\n"
    "     not be written\n"
    "  2  the command line makes no sense: an unknown option, a missing argument, a URI that is\n"
    "     none; nothing was sent\n"
    "  3  no answer: the host is unknown, the connection was refused or lost, or nothing came in\n"
    "     time\n"
    "  129, 130, 143  SIGHUP, Ctrl-C (SIGINT) or SIGTERM ended the command\n";

CLI::App& addTo(CLI::App& parent, const char* name, const char* description) {
  return *parent.add_subcommand(name, description)->group("Commands");
}

}  // namespace

CLI::App& CommandSet::add(const char* name, const char* description, Action action,
                          const std::string& notes, CLI::App* parent) {
  CLI::App& command = addTo(parent == nullptr ? app_ : *parent, name, description);
  command.callback([this, action = std::move(action)] { chosen_ = action; });
  command.allow_extras(false);  // which it would have from its family
  command.footer(notes + (notes.empty() ? "" : "\n") + kEpilog);
  return command;
}

CLI::App& CommandSet::addFamily(const char* name, const char* description) {
  CLI::App& family = addTo(app_, name, description);
  family.require_subcommand(0, 1);  // what is missing or too much is told by who reads the line
  family.allow_extras();
  family.footer(kEpilog);
  return family;
}

std::string exitStatusNotes() { return kEpilog; }

std::optional<double> numberIn(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  const bool isNumber = error == std::errc() && rest == end && number >= 0;
  return isNumber ? std::optional(number) : std::nullopt;
}

std::string checkNumber(const std::string& text) {
  return numberIn(text) ? "" : "\"" + text + "\" is not a number from 0 on";
}

void addTimeout(CLI::App& command, double& seconds) {
  command
      .add_option("--timeout", seconds,
                  "Give up when nothing came or went for so long (default: 60; 0: never)")
      ->type_name("SECONDS")
      ->check(&checkNumber);
}

void addWidth(CLI::App& command, std::optional<std::size_t>& columns) {
  command
      .add_option("--width", columns,
                  "Break lines at this width; 0: never (default: the terminal's width)")
      ->type_name("COLUMNS")
      ->check(&checkNumber);
}

void addJson(CLI::App& command, bool& json) {
  command.add_flag("--json", json, "Write JSON, for scripts");
}

void addServerOptions(CLI::App& command, ServerOptions& options) {
  command.add_option("--server", options.server, "The print server (default: localhost:631)")
      ->type_name("HOST[:PORT]");
  addTimeout(command, options.timeout);
  addJson(command, options.json);
}

void addWord(CLI::App& command, const char* name, std::string& word, const char* description) {
  command.add_option(name, word, description)->required();
}

void addChoice(CLI::App& command, const char* yes, const char* no, std::optional<bool>& choice,
               const char* ifYes, const char* ifNo) {
  auto* const flag = command.add_flag_callback(
      yes, [&choice] { choice = true; }, ifYes);
  command
      .add_flag_callback(
          no, [&choice] { choice = false; }, ifNo)
      ->excludes(flag);
}

CLI::Option* addList(CLI::App& command, const char* name, std::vector<std::string>& list,
                     const char* type, const char* description) {
  // One word each time: what follows is no part of the list.
  return command.add_option(name, list, description)
      ->type_name(type)
      ->delimiter(',')
      ->expected(1)
      ->take_all();
}

CLI::Option* addNumber(CLI::App& command, const char* name, std::optional<std::int32_t>& number,
                       std::int32_t least, const char* type, const char* description) {
  const auto check = [least](const std::string& text) {
    std::int32_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    const bool isNumber = error == std::errc() && rest == end && value >= least;
    return isNumber
               ? ""
               : "\"" + text + "\" is not a whole number from " + std::to_string(least) + " on";
  };
  return command.add_option(name, number, description)->type_name(type)->check(check);
}

}  // namespace platen::tool
