// SPDX-License-Identifier: Apache-2.0
#include "Refusal.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "AnswerStatus.h"
#include "platen/IPPConstants.h"

namespace platen::tool {

namespace {

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
    return {ExitStatus::failed, refused + answerStatus(*answer), answer->statusCode()};
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
