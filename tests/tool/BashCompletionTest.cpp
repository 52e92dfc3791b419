// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tool/CommandHelp.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

const std::string kBash = PLATEN_SOURCE_DIR "/tools/completions/platen.bash";

// What is offered for the last word, behind "platen", as readline hands the words over; files are
// those of the folder.
std::vector<std::string> offered(const Arguments& words, const std::string& folder = "/") {
  const ScratchFolder scratch;
  const std::string script =
      scratch.add("script", "cd '" + folder + "' && source '" + kBash + "'\nCOMP_WORDS=(platen '" +
                                joined(words, "' '").substr(3) +
                                "') COMP_CWORD=" + std::to_string(words.size()) +
                                "\n_platen\nprintf '%s\\n' \"${COMPREPLY[@]}\"");
  std::FILE* const bash = ::popen(("bash --norc " + script + " 2>&1").c_str(), "r");
  std::string out;
  for (int octet = 0; (octet = std::fgetc(bash)) != EOF;) {
    out.push_back(static_cast<char>(octet));
  }
  EXPECT_EQ(::pclose(bash), 0);
  std::istringstream lines(out);
  std::vector<std::string> result;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty()) {
      result.push_back(line);
    }
  }
  return result;
}

Words offeredBehind(Arguments command, const std::string& word) {
  command.push_back(word);
  const auto words = offered(command);
  return {words.begin(), words.end()};
}

TEST(BashCompletion, OffersTheCommandsAndOptionsOfTheHelp) {
  const auto commands = allCommands();
  EXPECT_GT(commands.size(), 20U);
  for (const Arguments& command : commands) {
    EXPECT_EQ(offeredBehind(command, "--"), optionsOf(command)) << joined(command, " ");
    Words names;
    for (const auto& [name, what] : commandsOf(command)) {
      names.insert(name);
    }
    if (!names.empty()) {
      EXPECT_EQ(offeredBehind(command, ""), names) << joined(command, " ");
    }
  }
}

// Every option that takes a value is followed by something else than options and commands.
TEST(BashCompletion, KnowsWhichOptionsTakeAValue) {
  const std::regex line("\n  (?:-[a-zA-Z],)?(--[a-z][a-z-]*)( [A-Z])?");
  for (const Arguments& command : allCommands()) {
    const std::string options = section(helpOf(command), "Options:");
    for (std::sregex_iterator i(options.begin(), options.end(), line), end; i != end; ++i) {
      Arguments words = command;
      words.push_back((*i)[1].str());
      EXPECT_EQ(offeredBehind(words, "--").empty(), (*i)[2].matched) << joined(words, " ");
    }
  }
}

TEST(BashCompletion, OffersCommandsAndOptionsThatBeginSo) {
  EXPECT_THAT(offered({"pr"}), ElementsAre("print"));
  EXPECT_THAT(offered({"queue", "m"}), ElementsAre("modify"));
  EXPECT_THAT(offered({"dump", "--re"}), UnorderedElementsAre("--request", "--response"));
  EXPECT_THAT(offered({"queue", "add", "lab", "file", ":", "///dev/null", "--no"}),
              ElementsAre("--not-shared"));
  EXPECT_THAT(offered({"frob"}), IsEmpty());
}

TEST(BashCompletion, OffersFilesWhereAFileIsTaken) {
  const ScratchFolder folder;
  folder.add("letter.pdf", "");
  folder.add("letter to ann", "");
  const std::string here = folder.pathOf("");
  const auto files = UnorderedElementsAre("letter.pdf", "letter to ann");
  const std::vector<Arguments> withFiles{
      {"print", "ipp", ":", "//host/ipp/print", "let"},
      {"print", "--name", "a letter", "ipp", ":", "//[", "::", "1]", "--wait", "let"},
      {"dump", "let"},
      {"dump", "--key", "ippTag", "let"},
      {"dump", "--json", "--", "let"},
      {"diff", "let"},
      {"diff", "-", "let"},
      {"attributes", "ipp", ":", "//host", "--save", "let"},
      {"attributes", "ipp", ":", "//host", "--save", "=", "let"}};
  for (const Arguments& words : withFiles) {
    EXPECT_THAT(offered(words, here), files) << joined(words, " ");
  }
}

TEST(BashCompletion, OffersNothingWhereNothingIsKnown) {
  const ScratchFolder folder;
  folder.add("letter.pdf", "");
  const std::vector<Arguments> without{{"print", ""},
                                       {"print", "ipp", ":", "//host/", "letter.pdf", ""},
                                       {"dump", "--width", ""},
                                       {"dump", "--key", "="},
                                       {"jobs", "--server", ""},
                                       {"pause", ""},
                                       {"diff", "a", "b", ""}};
  for (const Arguments& words : without) {
    EXPECT_THAT(offered(words, folder.pathOf("")), IsEmpty()) << joined(words, " ");
  }
}

// Of a word that readline has not cut, all of it is wanted; else what is behind the cut.
TEST(BashCompletion, OffersEvents) {
  EXPECT_THAT(offered({"watch", "--events", "printer-st"}),
              UnorderedElementsAre("printer-state-changed", "printer-stopped"));
  EXPECT_THAT(offered({"subscribe", "--events", "job-created,printer-sto"}),
              ElementsAre("job-created,printer-stopped"));
  EXPECT_THAT(offered({"subscribe", "--events", "=", "job-created,printer-sto"}),
              ElementsAre("job-created,printer-stopped"));
  EXPECT_THAT(offered({"subscribe", "--events=job-created,printer-sto"}),
              ElementsAre("--events=job-created,printer-stopped"));
  const Words all = eventsIn(helpOf({"subscribe"}));
  EXPECT_EQ(all.size(), 14U) << "of RFC 3995, section 5.3.3.4";
  EXPECT_EQ(offeredBehind({"subscribe", "--events"}, ""), all);
}

}  // namespace
}  // namespace platen::test
