// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>

#include "tests/tool/CommandHelp.h"

// What stands in the file for zsh: it is read, as not every machine has a zsh.

namespace platen::test {
namespace {

using ::testing::IsEmpty;

const std::string kZsh = PLATEN_SOURCE_DIR "/tools/completions/_platen";

std::string zshFile() {
  std::ifstream file(kZsh);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The first part of the text that the pattern finds in parentheses.
std::string found(const std::string& text, const std::string& pattern) {
  std::smatch match;
  return std::regex_search(text, match, std::regex(pattern)) ? match[1].str() : "";
}

// The elements of a list, with those of the lists in it: `name=(...)`.
std::string listInZsh(const std::string& file, const std::string& name) {
  return found(file, "\\b" + name + "=\\(((?:'[^']*'|[^()'])*)\\)");
}

Words longOptionsIn(const std::string& text) {
  const std::regex option("--[a-z][a-z-]*");
  return {std::sregex_token_iterator(text.begin(), text.end(), option), {}};
}

// Without the descriptions: they may name anything.
Words optionsInZsh(const std::string& file, const std::string& arguments) {
  Words options = longOptionsIn(std::regex_replace(arguments, std::regex("\\[[^\\]]*\\]"), ""));
  const std::regex list("\\$([a-z]+)");
  for (std::sregex_iterator i(arguments.begin(), arguments.end(), list), end; i != end; ++i) {
    options.merge(optionsInZsh(file, listInZsh(file, (*i)[1].str())));
  }
  return options;
}

// By the names of the functions: "-queue-add"; "" for the first.
std::map<std::string, std::string> functionsInZsh(const std::string& file) {
  const std::regex function("\n_platen([a-z-]*)\\(\\) \\{([^\n]*\\}|(?:\n[^}][^\n]*|\n)*\n\\})");
  std::map<std::string, std::string> functions;
  for (std::sregex_iterator i(file.begin(), file.end(), function), end; i != end; ++i) {
    functions[(*i)[1].str()] = (*i)[2].str();
  }
  functions.erase("-events");
  return functions;
}

Commands commandsInZsh(const std::string& file, const std::string& name) {
  const std::string list = listInZsh(file, name);
  const std::regex element("'([a-z]+):([^']*)'");
  Commands commands;
  for (std::sregex_iterator i(list.begin(), list.end(), element), end; i != end; ++i) {
    commands[(*i)[1].str()] = (*i)[2].str();
  }
  return commands;
}

TEST(ZshCompletion, HasTheCommandsOfTheHelp) {
  const std::string file = zshFile();
  EXPECT_EQ(file.find("#compdef platen\n"), 0U);
  EXPECT_EQ(commandsInZsh(file, "commands"), commandsOf({}));
  EXPECT_EQ(commandsInZsh(file, "queue_commands"), commandsOf({"queue"}));
}

TEST(ZshCompletion, HasTheOptionsOfTheHelp) {
  const std::string file = zshFile();
  auto functions = functionsInZsh(file);
  for (const Arguments& command : allCommands()) {
    const auto node = functions.extract(joined(command, "-"));
    ASSERT_FALSE(node.empty()) << joined(command, " ");
    // Of the first function only what it completes itself, not the lists that it makes.
    const std::string text =
        command.empty() ? found(node.mapped(), "(_arguments -C [^\n]*)") : node.mapped();
    EXPECT_EQ(optionsInZsh(file, text), optionsOf(command)) << joined(command, " ");
  }
  EXPECT_THAT(functions, IsEmpty()) << "of no command";
}

TEST(ZshCompletion, HasTheEventsOfTheHelp) {
  const std::string events = found(zshFile(), "\n_platen-events\\(\\) \\{([^}]*)\\}");
  EXPECT_EQ(eventsIn(events), eventsIn(helpOf({"subscribe"})));
}

}  // namespace
}  // namespace platen::test
