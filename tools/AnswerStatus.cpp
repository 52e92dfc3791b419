// SPDX-License-Identifier: Apache-2.0
#include "AnswerStatus.h"

#include <string_view>

#include "Facts.h"
#include "MessageView.h"
#include "ValueText.h"
#include "platen/Error.h"
#include "platen/IPPConstants.h"
#include "platen/IPPNullValue.h"

namespace platen::tool {

namespace {

using Names = std::vector<std::string>;

void append(std::string& line, std::string_view what, const Names& names) {
  if (!names.empty()) {
    line.append("; ").append(what).append(joined(names));
  }
}

template <class Use>
void forEachUnsupported(const IPPResponse& answer, Use use) {
  for (const auto& group : answer.ippGroupsWithName(kIPPUnsupportedAttributesGroupName)) {
    for (const auto& attribute : group->attributes()) {
      use(*attribute, std::string(attribute->name().value_or("(no name)")));
    }
  }
}

// The attributes that came back as unsupported with the very value that was refused.
Names refusedValues(const IPPResponse& answer) {
  Names refused;
  forEachUnsupported(answer, [&](const IPPAttribute& attribute, const std::string& name) {
    const auto& value = attribute.ippValue();
    if (value != nullptr && value->syntaxName() != kIPPUnknownSyntaxName &&
        dynamic_cast<const IPPNullValue*>(value.get()) == nullptr) {
      refused.push_back(name + " " + valueText(*value, name));
    }
  });
  return refused;
}

// Of subscriptions that are not what was asked for.
Names subscriptionStatuses(const IPPResponse& answer) {
  Names statuses;
  for (const auto& group : answer.subscriptionGroups()) {
    const auto status = Facts(*group).number("notify-status-code").value_or(0);
    if (status != 0) {
      statuses.push_back(statusText(status));
    }
  }
  return statuses;
}

std::string detailsOf(const IPPResponse& answer) {
  const auto error = answer.status();
  std::string details;
  append(details, "unsupported: ", error->names(IPPErrorUnsupportedAttributeNames));
  append(details, "unknown: ", error->names(IPPErrorUnknownAttributeValues));
  append(details, "without value: ", error->names(IPPErrorNoValueAttributes));
  append(details, "not settable: ", error->names(IPPErrorNotSettableAttributes));
  append(details, "left to the administrator: ", error->names(IPPErrorAdminDefineAttributes));
  append(details, "refused: ", refusedValues(answer));
  append(details, "subscription: ", subscriptionStatuses(answer));
  return details;
}

}  // namespace

std::string answerStatus(const IPPResponse& answer) {
  std::string line = statusText(answer.statusCode());
  if (const auto message = answer.statusMessage(); message && !message->empty()) {
    line += " (" + *message + ")";
  }
  return line + detailsOf(answer);
}

std::string reservations(const IPPResponse& answer) {
  const bool hasNone = answer.statusCode() == 0 && detailsOf(answer).empty();
  return hasNone ? "" : " (" + answerStatus(answer) + ")";
}

Names unsupportedNames(const IPPResponse& answer) {
  Names names;
  forEachUnsupported(answer, [&](const IPPAttribute& /*attribute*/, const std::string& name) {
    names.push_back(name);
  });
  return names;
}

}  // namespace platen::tool
