// SPDX-License-Identifier: Apache-2.0
#include "Exchange.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "Failure.h"
#include "MessageView.h"
#include "ValueText.h"
#include "platen/IPPConstants.h"
#include "platen/IPPNullValue.h"

namespace platen::tool {

namespace {

// RFC 8011 §5.1.6: the longest uri value.
constexpr std::size_t kLongestURI = 1023;

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

Failure badURI(const std::string& text, const std::string& reason) {
  return {ExitStatus::usage, "\"" + text + "\" " + reason};
}

void requireScheme(const URL& url, const std::string& text) {
  const std::string scheme = lowerCase(url.scheme().value_or(""));
  if (scheme == "ipps" || scheme == "https") {
    throw badURI(text, "asks for an encrypted connection, which platen does not have");
  }
  if (scheme != kIPPURLScheme && scheme != kHTTPURLScheme) {
    throw badURI(text, "is not a printer's URI: it must begin with ipp:// or http://");
  }
}

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

[[noreturn]] void fail(const IPPRequest& request, const URL& target,
                       const IPPResponse::Pointer& answer,
                       const std::shared_ptr<const Error>& error) {
  const std::string operation(request.ippOperationCodename());
  const std::string uri(target.absoluteString());
  if (answer != nullptr) {
    throw Failure(ExitStatus::failed,
                  operation + " refused by " + uri + ": " + refusal(*answer, *error));
  }
  if (error != nullptr) {
    throw Failure(ExitStatus::unreachable,
                  operation + ": no answer from " + uri + ": " + transportFailure(*error));
  }
  throw Failure(ExitStatus::failed,
                operation + ": the answer of " + uri + " is not an IPP message");
}

}  // namespace

URL targetURI(const std::string& text) {
  const auto url = URL::parse(text);
  if (!url) {
    throw badURI(text, "is not a URI");
  }
  requireScheme(*url, text);
  if (url->host().value_or("").empty()) {
    throw badURI(text, "names no host");
  }
  if (text.size() > kLongestURI) {
    throw Failure(ExitStatus::usage, "a printer's URI has at most 1023 characters");
  }
  return *url;
}

IPPResponse::Pointer perform(IPPRequest& request, const URL& target,
                             const std::shared_ptr<InputStream>& document) {
  std::shared_ptr<const Error> error;
  auto answer = request.performOn(target, document, &error);
  if (answer == nullptr || error != nullptr) {
    fail(request, target, answer, error);
  }
  return answer;
}

}  // namespace platen::tool
