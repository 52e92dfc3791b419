// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What the commands are put together with. Each family of commands adds its own; the options live
/// as long as the action that they are for.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Server.h"

namespace platen::tool {

/// The commands that the command line knows.
///
/// Threads: one thread at a time.
class CommandSet {
 public:
  using Action = std::function<void(std::ostream& out)>;

  explicit CommandSet(CLI::App& app) : app_(app) {}

  /// Adds a command, or a command of `parent`. `notes` stand under its help. The reference lives as
  /// long as the app.
  CLI::App& add(const char* name, const char* description, Action action,
                const std::string& notes = "", CLI::App* parent = nullptr);
  /// The same for an action on options, `Act(options, out)`, which `bind` binds to the command.
  template <class Options, class Bind>
  CLI::App& add(const char* name, const char* description,
                void (*act)(const Options& options, std::ostream& out), Bind bind,
                const std::string& notes = "", CLI::App* parent = nullptr) {
    auto options = std::make_shared<Options>();
    const Action action = [options, act](std::ostream& out) { act(*options, out); };
    CLI::App& command = add(name, description, action, notes, parent);
    bind(command, *options);
    return command;
  }
  /// Adds a command that only has commands of its own. That one of them is there, and nothing that
  /// is none of them, is left to whoever reads the line.
  CLI::App& addFamily(const char* name, const char* description);

  /// What was chosen; nothing when no command was.
  [[nodiscard]] const Action& chosen() const noexcept { return chosen_; }

 private:
  CLI::App& app_;
  Action chosen_;
};

/// The exit statuses, for the end of each help.
std::string exitStatusNotes();

/// What a QUEUE is, for the notes.
inline constexpr const char* kQueueNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI. With a URI,\n"
    "--server does not count.\n";
/// The same for commands that can do without one.
inline constexpr const char* kQueueOrServerNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI. With a URI,\n"
    "--server does not count; without a QUEUE, the server as a whole is meant.\n";

// Options that many commands have.

void addTimeout(CLI::App& command, double& seconds);
void addWidth(CLI::App& command, std::optional<std::size_t>& columns);
void addJson(CLI::App& command, bool& json);
/// --server, --timeout and --json.
void addServerOptions(CLI::App& command, ServerOptions& options);
/// A positional argument that has to be there.
void addWord(CLI::App& command, const char* name, std::string& word, const char* description);
/// A flag and its opposite, of which neither may be there: --shared, --not-shared.
void addChoice(CLI::App& command, const char* yes, const char* no, std::optional<bool>& choice,
               const char* ifYes, const char* ifNo);
/// Values with commas between them.
CLI::Option* addList(CLI::App& command, const char* name, std::vector<std::string>& list,
                     const char* type, const char* description);

/// A number from `least` on.
CLI::Option* addNumber(CLI::App& command, const char* name, std::optional<std::int32_t>& number,
                       std::int32_t least, const char* type, const char* description);

/// The number from 0 on that is all of the text.
std::optional<double> numberIn(const std::string& text);
/// What is wrong with the text of a number from 0 on; "" when nothing is.
std::string checkNumber(const std::string& text);

// The families.

void addPrinterCommands(CommandSet& commands);
void addQueueCommands(CommandSet& commands);
void addJobCommands(CommandSet& commands);
void addSubscriptionCommands(CommandSet& commands);

}  // namespace platen::tool
