// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

// What a print server says, and the command as it asks one.

namespace platen::test {

/// HOST:PORT of the fake, for --server.
inline std::string serverOf(const FakePrinter& printer) {
  const std::string uri = printer.uri("");
  return uri.substr(uri.find("//") + 2);
}

/// The command with the fake as its server.
inline ToolRun runAt(const FakePrinter& printer, Arguments words) {
  words.insert(words.end(), {"--server", serverOf(printer)});
  return runTool(words);
}

/// A refusal with a message.
inline std::string refusal(std::uint32_t status, const std::string& message) {
  return header(status) + "\x01" + charsetAndLanguage() +
         attribute(0x41, "status-message", message) + "\x03";
}

inline std::string done() { return response(0, ""); }

/// The texts of a request's attribute, and the name of its group first: "operation: a, b"; "" when
/// there is none.
inline std::string wordOf(const FakePrinter& printer, std::size_t index, const std::string& name) {
  const auto request = printer.request(index);
  if (request == nullptr) {
    return "no request";
  }
  for (const auto& group : request->ippGroups()) {
    if (const auto attribute = group->attributeForName(name)) {
      std::string groupName(group->name());
      groupName.resize(groupName.find('-'));
      return groupName + ": " + attribute->ippValue()->description();
    }
  }
  return "";
}

/// The name of a request's operation.
inline std::string operationOf(const FakePrinter& printer, std::size_t index) {
  const auto request = printer.request(index);
  return request == nullptr ? "no request" : std::string(request->ippOperationCodename());
}

/// The request's target, of a queue, a server or a job.
inline std::string targetOf(const FakePrinter& printer, std::size_t index) {
  const auto request = printer.request(index);
  const auto job = request->jobURI();
  const auto target = job ? job : request->printerURI();
  return target ? std::string(target->absoluteString()) : "";
}

}  // namespace platen::test
