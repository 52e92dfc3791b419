// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/tool/ToolRun.h"

// What the command knows of commands and options, as its help says it.

namespace platen::test {

using Words = std::set<std::string>;
/// Commands by their names, with what they do.
using Commands = std::map<std::string, std::string>;

inline std::string helpOf(Arguments command) {
  command.emplace_back("--help");
  return runTool(command).out;
}

/// The lines between a heading and the next empty one; "" without the heading.
inline std::string section(const std::string& text, const std::string& heading) {
  const auto begin = text.find("\n" + heading + "\n");
  return begin == std::string::npos ? "" : text.substr(begin, text.find("\n\n", begin) - begin);
}

/// Those at the beginning of a line: a description may name others.
inline Words optionsOf(const Arguments& command) {
  const std::string options = section(helpOf(command), "Options:");
  const std::regex names("\n  (?:-[a-zA-Z],)?(--[a-z][a-z-]*)");
  return {std::sregex_token_iterator(options.begin(), options.end(), names, 1), {}};
}

inline Commands commandsOf(const Arguments& parent) {
  const std::string list = section(helpOf(parent), "Commands:");
  const std::regex line("\n  ([a-z]+) +(.*)");
  Commands commands;
  for (std::sregex_iterator i(list.begin(), list.end(), line), end; i != end; ++i) {
    commands[(*i)[1].str()] = (*i)[2].str();
  }
  return commands;
}

/// `parent` and all commands below it.
inline std::vector<Arguments> allCommands(const Arguments& parent = {}) {
  std::vector<Arguments> all{parent};
  for (const auto& [name, what] : commandsOf(parent)) {
    Arguments command = parent;
    command.push_back(name);
    const auto below = allCommands(command);
    all.insert(all.end(), below.begin(), below.end());
  }
  return all;
}

/// The names of events in a text.
inline Words eventsIn(const std::string& text) {
  const std::regex event("\\b(?:job|printer)(?:-[a-z]+)+");
  return {std::sregex_token_iterator(text.begin(), text.end(), event), {}};
}

inline std::string joined(const Arguments& words, const std::string& separator) {
  std::string text;
  for (const std::string& word : words) {
    text += separator + word;
  }
  return text;
}

}  // namespace platen::test
