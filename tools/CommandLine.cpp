// SPDX-License-Identifier: Apache-2.0
#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <functional>
#include <memory>
#include <ostream>
#include <system_error>

#include "Commands.h"

namespace platen::tool {

namespace {

constexpr const char* kDescription =
    "Speaks the Internet Printing Protocol: asks printers, prints files, shows messages.";

constexpr const char* kEpilog =
    "Exit status:\n"
    "  0  done\n"
    "  1  the printer refused, the job was canceled or aborted, a file could not be read,\n"
    "     or what was read is not an IPP message\n"
    "  2  the command line makes no sense\n"
    "  3  no answer: host unknown, connection refused or lost, time-out\n";

constexpr const char* kUnderDump =
    "Without --request and --response, a message is taken for a request when there is a\n"
    "printer-uri, job-uri, system-uri or requesting-user-name among its operation attributes, or\n"
    "when its code is not that of a status; else for a response.\n\n";

constexpr const char* kUnderAttributes =
    "A NAME is the name of an attribute or of a group of them (job-template, printer-description,\n"
    "all). In a NAME * stands for any characters and ? for one; quote it.\n\n";

// Help without the library's remarks on types and checks: the descriptions say what matters.
class PlainFormatter : public CLI::Formatter {
 public:
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_positional() || option->get_type_size() == 0 ? ""
                                                                    : " " + option->get_type_name();
  }
};

Failure badUsage(const std::string& reason) {
  return {ExitStatus::usage, reason + " (see platen --help)"};
}

std::string checkNumber(const std::string& text) {
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  const bool isNumber = error == std::errc() && rest == end && number >= 0;
  return isNumber ? "" : "\"" + text + "\" is not a number from 0 on";
}

class CommandLine {
 public:
  explicit CommandLine(std::ostream& out) : out_(out) {
    app_.formatter(std::make_shared<PlainFormatter>());
    app_.require_subcommand(0, 1);  // that there is one is checked with a better message
    app_.footer(kEpilog);
    app_.set_version_flag("--version", "platen " PLATEN_VERSION, "Print the version and exit");
    addAttributes();
    addPrint();
    addDump();
    app_.allow_extras();  // of its own, not of the commands; they are checked below
  }

  void run(int argc, const char* const* argv) {
    try {
      app_.parse(argc, argv);
    } catch (const CLI::Success& asked) {  // for help or the version
      app_.exit(asked, out_, out_);
      return;
    } catch (const CLI::ParseError& error) {
      throw badUsage(error.what());
    }
    if (const auto extras = app_.remaining(); !extras.empty()) {
      throw badUsage("\"" + extras.front() + "\" is neither a command nor an option");
    }
    if (!chosen_) {
      throw badUsage("a command is missing");
    }
    chosen_();
  }

 private:
  CLI::App* addCommand(const char* name, const char* description, std::function<void()> action) {
    CLI::App* command = app_.add_subcommand(name, description);
    command->callback([this, action = std::move(action)] { chosen_ = action; });
    return command;
  }

  static void addTimeout(CLI::App& command, double& seconds) {
    command
        .add_option("--timeout", seconds,
                    "Give up after so long without an octet (default 60; 0: never)")
        ->type_name("SECONDS")
        ->check(&checkNumber);
  }

  static void addWidth(CLI::App& command, std::optional<std::size_t>& columns) {
    command
        .add_option("--width", columns,
                    "Break lines there; 0: never (default: the terminal's width)")
        ->type_name("COLUMNS")
        ->check(&checkNumber);
  }

  void addAttributes() {
    CLI::App& command = *addCommand("attributes", "Show what a printer says about itself",
                                    [this] { showAttributes(attributes_, out_); });
    command.add_option("URI", attributes_.uri, "The printer, for example ipp://host/ipp/print")
        ->required();
    command.add_option("NAME", attributes_.names, "Only these attributes");
    addTimeout(command, attributes_.timeout);
    addWidth(command, attributes_.width);
    command.footer(std::string(kUnderAttributes) + kEpilog);
  }

  void addPrint() {
    CLI::App& command = *addCommand("print", "Print a file", [this] { printFile(print_, out_); });
    command.add_option("URI", print_.uri, "The printer, for example ipp://host/ipp/print")
        ->required();
    command.add_option("FILE", print_.file, "The document; - is standard input")->required();
    command.add_option("--format", print_.format, "What it is (default: by its first octets)")
        ->type_name("MIME");
    command.add_option("--name", print_.name, "What to call the job (default: as the file)")
        ->type_name("TEXT");
    command.add_flag("--wait", print_.wait, "Wait for the end of the job and show its states");
    addTimeout(command, print_.timeout);
  }

  void addDump() {
    CLI::App& command = *addCommand("dump", "Show an IPP message from a file",
                                    [this] { dumpMessage(dump_, out_); });
    command.add_option("FILE", dump_.file, "The message; - is standard input")->required();
    auto* request = command.add_flag_callback(
        "--request", [this] { dump_.kind = DumpOptions::Kind::request; }, "It is a request");
    command
        .add_flag_callback(
            "--response", [this] { dump_.kind = DumpOptions::Kind::response; }, "It is a response")
        ->excludes(request);
    addWidth(command, dump_.width);
    command.footer(std::string(kUnderDump) + kEpilog);
  }

  std::ostream& out_;
  CLI::App app_{kDescription, "platen"};
  AttributesOptions attributes_;
  PrintOptions print_;
  DumpOptions dump_;
  std::function<void()> chosen_;
};

}  // namespace

void runCommandLine(int argc, const char* const* argv, std::ostream& out) {
  CommandLine(out).run(argc, argv);
}

}  // namespace platen::tool
