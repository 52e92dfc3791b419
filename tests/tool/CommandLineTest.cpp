// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/tool/MessageOctets.h"
#include "tests/tool/Terminal.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

TEST(CommandLine, TellsItsVersion) {
  const ToolRun run = runTool({"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.substr(0, 9), "platen 0.");
  EXPECT_EQ(run.out.find('\n'), run.out.size() - 1);
}

const std::vector<Arguments> kCommands{{"attributes"},
                                       {"print"},
                                       {"dump"},
                                       {"diff"},
                                       {"queues"},
                                       {"default"},
                                       {"pause"},
                                       {"resume"},
                                       {"purge"},
                                       {"queue"},
                                       {"queue", "add"},
                                       {"devices"},
                                       {"queue", "remove"},
                                       {"queue", "modify"},
                                       {"jobs"},
                                       {"job"},
                                       {"hold"},
                                       {"release"},
                                       {"restart"},
                                       {"cancel"},
                                       {"move"},
                                       {"watch"},
                                       {"subscriptions"},
                                       {"subscribe"},
                                       {"renew"},
                                       {"unsubscribe"}};

TEST(CommandLine, HelpsWithEachCommandAndTheExitStatuses) {
  for (Arguments arguments : kCommands) {
    arguments.emplace_back("--help");
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_NE(run.out.find("Usage: platen " + arguments.front()), std::string::npos);
    EXPECT_NE(run.out.find("  3  no answer"), std::string::npos);
  }
  EXPECT_NE(runTool({"-h"}).out.find("  129, 130, 143  SIGHUP, "), std::string::npos);
}

// The rows of the table of exit statuses under that heading of the manual, each "STATUS MEANING".
std::set<std::string> statusesInManual(const std::string& heading) {
  std::ifstream manual(PLATEN_SOURCE_DIR "/docs/command.md");
  const std::regex row(R"(\| (\d+(?:, \d+)*) \| (.*) \|)");
  std::set<std::string> rows;
  bool isUnder = false;
  std::smatch match;
  for (std::string line; std::getline(manual, line);) {
    isUnder = line.starts_with("## ") ? line == heading : isUnder;
    if (isUnder && std::regex_match(line, match, row)) {
      rows.insert(match[1].str() + " " + match[2].str());
    }
  }
  return rows;
}

// The same of a help, where lines are broken and every meaning stands two blanks behind its status.
std::set<std::string> statusesIn(const std::string& help) {
  const std::regex status(R"(\n  (\d+(?:, \d+)*)  ((?:.|\n     )*))");
  const std::string heading = "\nExit status:";
  const std::string list = help.substr(help.find(heading) + heading.size());
  std::set<std::string> rows;
  for (std::sregex_iterator i(list.begin(), list.end(), status), end; i != end; ++i) {
    const std::string meaning = std::regex_replace((*i)[2].str(), std::regex("\\s+"), " ");
    rows.insert((*i)[1].str() + " " + meaning);
  }
  return rows;
}

TEST(CommandLine, GivesTheExitStatusesOfTheManual) {
  const auto statuses = statusesInManual("## Exit status");
  EXPECT_EQ(statuses.size(), 5U);
  EXPECT_EQ(statusesIn(runTool({"--help"}).out), statuses);
  EXPECT_EQ(statusesIn(runTool({"queue", "add", "--help"}).out), statuses);
  EXPECT_EQ(statusesIn(runTool({"diff", "--help"}).out),
            statusesInManual("## platen diff FILE|URI FILE|URI"));
}

TEST(CommandLine, NamesEveryCommandInItsHelp) {
  const std::string help = runTool({"--help"}).out;
  for (const Arguments& command : kCommands) {
    EXPECT_NE(help.find("\n  " + command.front() + " "), std::string::npos) << command.front();
  }
}

TEST(CommandLine, SaysInItsHelpWhatGoesTogetherAndWhatDoesNot) {
  const struct {
    Arguments command;
    std::string text;
  } cases[] = {{{"queue", "add"}, "A queue that exists already is refused"},
               {{"queue", "add"}, "--allow and --deny exclude each other"},
               {{"queue", "modify"}, "--allow and --deny exclude each other"},
               {{"subscribe"}, "What to be told of (required)"},
               {{"subscribe"}, "--job and --lease exclude each other"},
               {{"watch"}, "printer-queue-order-changed"},
               {{"watch"}, "--interval is 0.1 at least"},
               {{"watch"}, "but once a second at most"},
               {{"devices"}, "may take long"}};
  for (const auto& [command, text] : cases) {
    Arguments words = command;
    words.emplace_back("--help");
    const std::string help = std::regex_replace(runTool(words).out, std::regex("\\s+"), " ");
    EXPECT_NE(help.find(text), std::string::npos) << text << " is not in " << help;
  }
}

TEST(CommandLine, KeepsItsHelpWithin100Columns) {
  for (Arguments arguments : kCommands) {
    arguments.emplace_back("--help");
    const std::string help = runTool(arguments).out;
    for (std::size_t begin = 0, end = 0; (end = help.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
      EXPECT_LE(end - begin, 100U) << help.substr(begin, end - begin);
    }
  }
}

TEST(CommandLine, RefusesWhatMakesNoSense) {
  const std::string longURI = "ipp://host/" + std::string(1013, 'a');
  const struct {
    Arguments arguments;
    std::string reason;
  } cases[] = {
      {{}, "a command is missing"},
      {{"frobnicate"}, "\"frobnicate\" is neither a command nor an option"},
      {{"--frobnicate"}, "\"--frobnicate\" is neither a command nor an option"},
      {{"dump", "-", "--width", "1.5"}, "1.5"},
      {{"dump"}, "FILE is required"},
      {{"dump", "a", "b"}, "b"},
      {{"dump", "-", "--frobnicate"}, "--frobnicate"},
      {{"dump", "-", "--request", "--response"}, "excludes"},
      {{"dump", "-", "--width", "wide"}, "\"wide\" is not a number from 0 on"},
      {{"dump", "-", "--width", "-1"}, "-1"},
      {{"attributes"}, "URI is required"},
      {{"attributes", "ipp://localhost/", "--timeout", "soon"}, "\"soon\" is not a number"},
      {{"attributes", "ipp://localhost/", "--timeout", "nan"}, "\"nan\" is not a number"},
      {{"attributes", "ipp://localhost/", "--timeout", "-1"}, "-1"},
      {{"print", "ipp://localhost/"}, "FILE is required"},
      {{"print", "ipp://localhost/", "/dev/null", "--format"}, "--format"},
      {{"attributes", "not a uri"}, "\"not a uri\" is not a URI"},
      {{"attributes", ""}, "is not a URI"},
      {{"attributes", "localhost/ipp"}, "must begin with ipp:// or http://"},
      {{"attributes", "file:///etc/passwd"}, "must begin with ipp:// or http://"},
      {{"attributes", "ipps://localhost/"}, "encrypted"},
      {{"attributes", "HTTPS://localhost/"}, "encrypted"},
      {{"attributes", "ipp:///ipp/print"}, "names no host"},
      {{"attributes", "ipp:ipp/print"}, "names no host"},
      {{"attributes", "ipp://localhost:99999/"}, "is not a URI"},
      {{"attributes", "ipp://localhost/", ""}, "\"\" is not the name of an attribute"},
      {{"attributes", "ipp://localhost/", std::string(256, 'n')}, "nn\" is not the name"},
      {{"attributes", "ipp://localhost/", "\xC3\xA9"}, "is not the name of an attribute"},
      {{"attributes", "ipp://localhost/", "ipps://localhost/"}, "encrypted"},
      {{"attributes", "ipp://localhost/", "printer-state", "://"}, "\"://\" is"},
      {{"attributes", longURI}, "at most 1023 characters"},
  };
  for (const auto& [arguments, reason] : cases) {
    const ToolRun run = runTool(arguments, "");
    EXPECT_EQ(run.status, 2) << reason;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.substr(0, 8), "platen: ");
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
}

TEST(CommandLine, TakesTheNameOfACommandForAFile) {
  EXPECT_EQ(runTool({"dump", "print"}).err,
            "platen: cannot read print: No such file or directory\n");
}

TEST(CommandLine, ComplainsAboutAFullDisk) {
  const ScratchFile in(printerResponse(attribute(0x21, "copies", int32(1))));
  const ScratchFile err;
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  EXPECT_EQ(statusOf(startTool({"dump", "-"}, in.descriptor(), full, err.descriptor())), 1);
  ::close(full);
  EXPECT_EQ(err.contents(), "platen: cannot write to standard output\n");
}

// What a dump looks like on a terminal of that many columns.
std::string dumpOnTerminal(const std::string& message, unsigned short columns,
                           const std::vector<std::string>& environment) {
  const ScratchFile in(message);
  return runOnTerminal({"dump", "-"}, in.descriptor(), columns, environment).out;
}

const std::string kTwoValues =
    printerResponse(attribute(0x44, "media-ready", "iso_a4_210x297mm") + also(0x44, "other"));

TEST(CommandLine, ShowsStylesOnATerminal) {
  EXPECT_EQ(dumpOnTerminal(kTwoValues, 80, {"TERM=xterm"}),
            "\x1B[1mResponse successful-ok (0x0000), IPP 1.1, request-id 1\x1B[0m\r\n\r\n"
            "\x1B[1mPrinter attributes\x1B[0m\r\n"
            "  \x1B[2mmedia-ready\x1B[0m  iso_a4_210x297mm, other\r\n");
}

TEST(CommandLine, ShowsNoStylesWhereTheyAreNotWanted) {
  for (const std::vector<std::string>& environment :
       {std::vector<std::string>{"TERM=xterm", "NO_COLOR=1"}, {"TERM=dumb"}}) {
    EXPECT_EQ(dumpOnTerminal(kTwoValues, 80, environment).find('\x1B'), std::string::npos);
  }
}

TEST(CommandLine, IsAsWideAsTheTerminal) {
  EXPECT_NE(dumpOnTerminal(kTwoValues, 33, {"TERM=dumb"})
                .find("  media-ready  iso_a4_210x297mm,\r\n               other\r\n"),
            std::string::npos);
}

TEST(CommandLine, IsAsWideAsCOLUMNSSaysWhenThereIsNoTerminal) {
  EXPECT_NE(runTool({"dump", "-"}, kTwoValues, {"COLUMNS=33"})
                .out.find("  media-ready  iso_a4_210x297mm,\n               other\n"),
            std::string::npos);
  for (const char* nonsense : {"COLUMNS=", "COLUMNS=3", "COLUMNS=wide"}) {
    EXPECT_NE(runTool({"dump", "-"}, kTwoValues, {nonsense}).out.find("297mm, other\n"),
              std::string::npos);
  }
}

}  // namespace
}  // namespace platen::test
