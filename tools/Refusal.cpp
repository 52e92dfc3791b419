// SPDX-License-Identifier: Apache-2.0
#include "Refusal.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "MessageView.h"
#include "ValueText.h"
#include "platen/IPPConstants.h"
#include "platen/IPPNullValue.h"

namespace platen::tool {

namespace {

void append(std::string& line, std::string_view what, const std::vector<std::string>& names) {
  std::string_view separator = "; ";
  for (const std::string& name : names) {
    line.append(separator).append(separator == "; " ? what : "").append(name);
    separator = ", ";
  }
}

// The attributes that came back as unsupported with the very value that was refused.
std::vector<std::string> refusedValues(const IPPResponse& answer) {
  std::vector<std::string> refused;
  for (const auto& group : answer.ippGroupsWithName(kIPPUnsupportedAttributesGroupName)) {
    for (const auto& attribute : group->attributes()) {
      const auto& value = attribute->ippValue();
      const std::string name(attribute->name().value_or("(no name)"));
      if (value != nullptr && value->syntaxName() != kIPPUnknownSyntaxName &&
          dynamic_cast<const IPPNullValue*>(value.get()) == nullptr) {
        refused.push_back(name + " " + valueText(*value, name));
      }
    }
  }
  return refused;
}

std::string refusal(const IPPResponse& answer, const Error& error) {
  std::string line = statusText(answer.statusCode());
  if (const auto message = answer.statusMessage(); message && !message->empty()) {
    line += " (" + *message + ")";
  }
  append(line, "unsupported: ", error.names(IPPErrorUnsupportedAttributeNames));
  append(line, "unknown: ", error.names(IPPErrorUnknownAttributeValues));
  append(line, "without value: ", error.names(IPPErrorNoValueAttributes));
  append(line, "not settable: ", error.names(IPPErrorNotSettableAttributes));
  append(line, "left to the administrator: ", error.names(IPPErrorAdminDefineAttributes));
  append(line, "refused: ", refusedValues(answer));
  return line;
}

// What happened and why, and why that: "could not connect: Connection refused".
std::string transportFailure(const Error& error) {
  std::string line(error.localizedDescription().value_or(error.domain()));
  const auto cause = error.underlyingError();
  return cause == nullptr ? line : line + ": " + transportFailure(*cause);
}

// RFC 9110 §15; those that printers and what stands in front of them are seen to send.
std::string httpStatusText(std::int64_t code) {
  struct Name {
    std::int64_t code;
    std::string_view name;
  };
  static constexpr std::array<Name, 14> kNames{{{301, "Moved Permanently"},
                                                {302, "Found"},
                                                {307, "Temporary Redirect"},
                                                {308, "Permanent Redirect"},
                                                {400, "Bad Request"},
                                                {401, "Unauthorized"},
                                                {403, "Forbidden"},
                                                {404, "Not Found"},
                                                {405, "Method Not Allowed"},
                                                {413, "Content Too Large"},
                                                {426, "Upgrade Required"},
                                                {500, "Internal Server Error"},
                                                {502, "Bad Gateway"},
                                                {503, "Service Unavailable"}}};
  const auto* const found =
      std::find_if(kNames.begin(), kNames.end(), [&](const Name& row) { return row.code == code; });
  const std::string text = "HTTP status " + std::to_string(code);
  return found == kNames.end() ? text : text + " (" + std::string(found->name) + ")";
}

}  // namespace

Failure failureOf(const IPPRequest& request, const URL& target,
                  const std::shared_ptr<IPPResponse>& answer, const Error& error) {
  const std::string operation(request.ippOperationCodename());
  const std::string uri(target.absoluteString());
  const std::string refused = operation + " refused by " + uri + ": ";
  if (answer != nullptr) {
    return {ExitStatus::failed, refused + refusal(*answer, error), answer->statusCode()};
  }
  const auto cause = error.underlyingError();
  if (cause == nullptr) {  // an answer came, and was not understood
    return {ExitStatus::failed, operation + ": the answer of " + uri + " is not an IPP message"};
  }
  if (cause->domain() == IPPHTTPErrorDomain) {
    return {ExitStatus::failed, refused + httpStatusText(cause->code())};
  }
  return {ExitStatus::unreachable,
          operation + ": no answer from " + uri + ": " + transportFailure(*cause)};
}

}  // namespace platen::tool
