// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <ostream>
#include <string_view>

#include "Commands.h"
#include "Exchange.h"
#include "MessageView.h"
#include "platen/IPPRequest.h"
#include "platen/TextEncoding.h"

namespace platen::tool {

namespace {

bool isPattern(const std::string& name) { return name.find_first_of("*?") != std::string::npos; }

bool hasPatterns(const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), &isPattern);
}

// RFC 8011 §5.1.4.
void requireKeyword(const std::string& name) {
  constexpr std::size_t kLongestKeyword = 255;
  if (name.empty() || name.size() > kLongestKeyword || !TextEncoding::ascii().encode(name)) {
    throw Failure(ExitStatus::usage, "\"" + name + "\" is not the name of an attribute");
  }
}

// Patterns are this command's own: with one among the names, the printer is asked for all.
IPPRequest::Pointer requestFor(const AttributesOptions& options, const URL& printer) {
  auto request = IPPRequest::printerAttributesRequest(printer);
  request->setTimeInterval(options.timeout);
  if (!options.names.empty() && !hasPatterns(options.names)) {
    request->setRequestedAttributes(options.names);
  }
  return request;
}

bool isBefore(const std::shared_ptr<IPPAttribute>& left,
              const std::shared_ptr<IPPAttribute>& right) {
  return left->name().value_or("") < right->name().value_or("");
}

// Those of `group` that one of `patterns` matches, in the group's order.
IPPAttributeGroup::Attributes matching(const IPPAttributeGroup& group,
                                       const std::vector<std::string>& patterns) {
  IPPAttributeGroup::Attributes wanted;
  for (const std::string& pattern : patterns) {
    const auto found = group.attributesForName(pattern);
    wanted.insert(wanted.end(), found.begin(), found.end());
  }
  return wanted;
}

// A printer's own order is of no help to a reader: by name, and what two patterns match once.
IPPAttributeGroup::Pointer arranged(const IPPAttributeGroup& group,
                                    IPPAttributeGroup::Attributes attributes) {
  std::stable_sort(attributes.begin(), attributes.end(), &isBefore);
  attributes.erase(std::unique(attributes.begin(), attributes.end()), attributes.end());
  auto result = group.ippClass().make();
  result->addAttributesFromArray(attributes);
  return result;
}

// Without names everything; with names only what was asked for, and what was refused.
IPPMessage::Groups groupsToShow(const IPPMessage& answer, const std::vector<std::string>& names) {
  IPPMessage::Groups groups;
  for (const auto& group : answer.ippGroups()) {
    const bool isOperation = group->name() == kIPPOperationGroupName;
    const auto attributes = hasPatterns(names) ? matching(*group, names) : group->attributes();
    if (names.empty() || (!isOperation && !attributes.empty())) {
      groups.push_back(arranged(*group, attributes));
    }
  }
  return groups;
}

bool hasAnswer(const IPPMessage::Groups& groups) {
  return std::any_of(groups.begin(), groups.end(), [](const auto& group) {
    return group->name() == kIPPPrinterGroupName && !group->attributes().empty();
  });
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += " " + name;
  }
  return text;
}

}  // namespace

void showAttributes(const AttributesOptions& options, std::ostream& out) {
  const URL printer = targetURI(options.uri);
  std::for_each(options.names.begin(), options.names.end(), &requireKeyword);
  const auto answer = perform(*requestFor(options, printer), printer);
  const auto groups = groupsToShow(*answer, options.names);
  if (answer->statusCode() != 0) {
    out << statusText(answer->statusCode()) << "\n\n";
  }
  showGroups(out, groups, Display::ofStandardOutput(options.width));
  if (!options.names.empty() && !hasAnswer(groups)) {
    throw Failure(ExitStatus::failed,
                  options.uri + " has no attribute of that name:" + joined(options.names));
  }
}

}  // namespace platen::tool
