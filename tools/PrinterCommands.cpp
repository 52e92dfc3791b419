// SPDX-License-Identifier: Apache-2.0
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "CommandSet.h"
#include "Commands.h"

namespace platen::tool {

namespace {

constexpr const char* kUnderDump =
    "Without --request and --response, an archive says what its message is; any other message is\n"
    "taken for a request when there is a printer-uri, job-uri, system-uri or requesting-user-name\n"
    "among its operation attributes, or when its code is not that of a status; else for a\n"
    "response.\n";

constexpr const char* kUnderDiff =
    "BEFORE and AFTER are each a file, an archive (platen attributes --save) or a captured\n"
    "message, or the URI of a printer, recognized by its ://; one of them may be -, standard\n"
    "input. Printers are asked with Get-Printer-Attributes, both at once. In a NAME * stands for\n"
    "any characters and ? for one; quote it.\n\n"
    "Exit status:\n"
    "  0  nothing differs\n"
    "  1  something does\n"
    "  2  the command line makes no sense; a file could not be read, or is no message; a printer\n"
    "     refused, or its answer was no IPP message; standard output could not be written\n"
    "  3  no answer from a printer\n"
    "  129, 130, 143  SIGHUP, Ctrl-C (SIGINT) or SIGTERM ended the command\n";

constexpr const char* kUnderAttributes =
    "Further URIs, recognized by their ://, are asked at the same time, each for the same "
    "NAMEs.\n\n"
    "A NAME is the name of an attribute or of a group of them (job-template, printer-description,\n"
    "all). In a NAME * stands for any characters and ? for one; quote it.\n";

/// The words of `attributes` as they come.
struct AttributesWords {
  std::string printer;
  std::vector<std::string> words;
  AttributesOptions options;
};

// No name of an attribute has "://" in it, and what has none is nobody's URI.
void sortWordsOut(const AttributesWords& words, std::ostream& out) {
  AttributesOptions options = words.options;
  options.uris.push_back(words.printer);
  for (const std::string& word : words.words) {
    const bool isURI = word.find("://") != std::string::npos;
    (isURI ? options.uris : options.names).push_back(word);
  }
  showAttributes(options, out);
}

CLI::Option* addKey(CLI::App& command, std::optional<std::string>& path) {
  return command.add_option("--key", path, "Show only what this key path leads to")
      ->type_name("PATH");
}

void bindAttributes(CLI::App& command, AttributesWords& words) {
  addWord(command, "URI", words.printer,
          "The printer, for example ipp://host/ipp/print; more may follow");
  command.add_option("NAME", words.words, "Show only these attributes (default: all)");
  auto* const key = addKey(command, words.options.key);
  command
      .add_option("--save", words.options.save,
                  "Keep the whole answer in this file, as CBOR in *.cbor, else as JSON")
      ->type_name("FILE");
  addTimeout(command, words.options.timeout);
  addWidth(command, words.options.width);
  addJson(command, words.options.json);
  key->excludes("--json");
}

void bindPrint(CLI::App& command, PrintOptions& options) {
  addWord(command, "URI", options.uri, "The printer, for example ipp://host/ipp/print");
  addWord(command, "FILE", options.file, "The document; - is standard input");
  command
      .add_option("--format", options.format,
                  "Format of the document (default: guessed from its first octets)")
      ->type_name("MIME");
  command.add_option("--name", options.name, "Name of the job (default: the file's)")
      ->type_name("TEXT");
  command.add_flag("--wait", options.wait, "Wait for the end of the job and show its states");
  command.add_flag("-q,--quiet", options.quiet, "Show no progress on the terminal");
  addTimeout(command, options.timeout);
  addJson(command, options.json);
}

void bindDump(CLI::App& command, DumpOptions& options) {
  addWord(command, "FILE", options.file, "The message; - is standard input");
  auto* const request = command.add_flag_callback(
      "--request", [&options] { options.kind = DumpOptions::Kind::request; },
      "Take the message for a request");
  command
      .add_flag_callback(
          "--response", [&options] { options.kind = DumpOptions::Kind::response; },
          "Take the message for a response")
      ->excludes(request);
  command.add_flag_callback(
      "--archive", [&options] { options.form = DumpOptions::Form::archive; },
      "Take the file for an archive (default: by its first octets)");
  auto* const key = addKey(command, options.key);
  addWidth(command, options.width);
  addJson(command, options.json);
  key->excludes("--json");
}

void bindDiff(CLI::App& command, DiffOptions& options) {
  addWord(command, "BEFORE", options.before,
          "The earlier answer: a file, - or the URI of a printer");
  addWord(command, "AFTER", options.after, "The later answer, likewise");
  command
      .add_option("--ignore", options.ignored,
                  "Leave out attributes of this name; may be given several times")
      ->type_name("NAME")
      ->allow_extra_args(false);
  addTimeout(command, options.timeout);
  addWidth(command, options.width);
  addJson(command, options.json);
}

}  // namespace

void addPrinterCommands(CommandSet& commands) {
  commands.add("attributes", "Show what printers say about themselves", &sortWordsOut,
               &bindAttributes, kUnderAttributes);
  commands.add("print", "Print a file", &printFile, &bindPrint);
  commands.add("dump", "Show an IPP message from a file", &dumpMessage, &bindDump, kUnderDump);
  commands.add("diff", "Show in what two answers of a printer differ", &diffAnswers, &bindDiff)
      .footer(kUnderDiff);
}

}  // namespace platen::tool
