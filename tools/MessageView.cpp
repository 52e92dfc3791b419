// SPDX-License-Identifier: Apache-2.0
#include "MessageView.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "AttributeLayout.h"
#include "EnumNames.h"
#include "platen/IPPConstants.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

void showGroup(std::ostream& out, const std::string& heading, const IPPAttributeGroup& group,
               const Display& display) {
  out << display.strong(heading) << '\n';
  if (group.attributes().empty()) {
    out << "  (none)\n";
  }
  for (const std::string& line : AttributeLayout(display).linesOf(group.attributes())) {
    out << line << '\n';
  }
}

}  // namespace

std::string headingOf(std::string_view groupName) {
  static const std::map<std::string_view, std::string_view> headings{
      {kIPPOperationGroupName, "Operation attributes"},
      {kIPPJobGroupName, "Job attributes"},
      {kIPPPrinterGroupName, "Printer attributes"},
      {kIPPUnsupportedAttributesGroupName, "Unsupported attributes"},
      {kIPPSubscriptionGroupName, "Subscription attributes"},
      {kIPPNotificationEventGroupName, "Event attributes"},
  };
  const auto found = headings.find(groupName);
  return std::string(found == headings.end() ? groupName : found->second);
}

void showGroups(std::ostream& out, const IPPMessage::Groups& groups, const Display& display) {
  std::map<std::string_view, int> count;
  for (const auto& group : groups) {
    ++count[group->name()];
  }
  std::map<std::string_view, int> number;
  std::string_view separator;
  for (const auto& group : groups) {
    std::string heading = headingOf(group->name());
    const int own = ++number[group->name()];
    if (const int all = count[group->name()]; all > 1) {
      heading += " " + std::to_string(own) + " of " + std::to_string(all);
    }
    out << separator;
    separator = "\n";
    showGroup(out, heading, *group, display);
  }
}

std::string statusText(std::int32_t statusCode) {
  const auto name = IPPResponse::statusDescriptionForStatusCode(statusCode);
  return name ? std::string(*name) : hexText(statusCode);
}

}  // namespace platen::tool
