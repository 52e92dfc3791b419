// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPPlan.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

#include "platform/HTTPFailure.h"
#include "platform/HTTPHead.h"
#include "platform/Resolver.h"

namespace platen::inline v0 {

namespace {

constexpr std::uint16_t kHTTPPort = 80;

/// RFC 9110 §5.6.2: token = 1*tchar
bool isToken(std::string_view text) {
  static constexpr std::string_view kOthers = "!#$%&'*+-.^_`|~";
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || kOthers.find(letter) != std::string_view::npos;
  });
}

/// RFC 9110 §5.5: a value with a line break could carry further fields.
bool isFieldValue(std::string_view text) {
  constexpr std::string_view kForbidden("\r\n\0", 3);
  return text.find_first_of(kForbidden) == std::string_view::npos;
}

/// The fields that say how the body is framed, which the exchange decides.
bool isDecidedHere(std::string_view name) {
  constexpr std::array<std::string_view, 3> kNames = {"Content-Length", "Transfer-Encoding",
                                                      "Expect"};
  return std::any_of(kNames.begin(), kNames.end(),
                     [name](auto known) { return isSameHeaderName(name, known); });
}

std::string headerLine(const std::string& name, const std::string& value) {
  return value.empty() ? name + ";" : name + ": " + value;
}

void planHeaders(const HTTPRequest& request, HTTPTransferPlan& plan) {
  for (const auto& [name, value] : request.headers) {
    if (!isDecidedHere(name)) {
      plan.headers.push_back(headerLine(name, value));
    }
  }
  if (plan.isStreamed) {
    plan.headers.emplace_back("Transfer-Encoding: chunked");
  }
  // An empty one takes a field away that libcurl would add: the first makes every chunked body wait
  // a second for "100 Continue", the second would claim a web form.
  plan.headers.emplace_back("Expect:");
  if (!request.header("Content-Type").has_value()) {
    plan.headers.emplace_back("Content-Type:");
  }
}

std::shared_ptr<const Error> planTarget(const URL& url, HTTPTarget& target,
                                        HTTPTransferPlan& plan) {
  const std::string text(url.absoluteString());
  if (!url.scheme().has_value() || !isSameHeaderName(*url.scheme(), "http")) {
    return httpError(HTTPErrorCode::unsupportedURL, "the scheme of \"" + text + "\" is not http");
  }
  target.host = url.host().value_or("");
  if (target.host.empty()) {
    return httpError(HTTPErrorCode::badURL, "there is no host in \"" + text + "\"");
  }
  const std::string host = url.hostIsBracketed() ? "[" + target.host + "]" : target.host;
  target.authority = host + ":" + std::to_string(url.port().value_or(kHTTPPort));
  target.needsResolving = !url.hostIsBracketed() && !isNumericOrLocal(target.host);
  // Neither the user of the URL nor its fragment is for the server.
  plan.url = "http://" + target.authority;
  plan.url += url.escapedPath().empty() ? "/" : url.escapedPath();
  if (const auto query = url.query()) {
    plan.url.append("?").append(*query);
  }
  return nullptr;
}

}  // namespace

std::shared_ptr<const Error> planRequest(const HTTPRequest& request, HTTPTarget& target,
                                         HTTPTransferPlan& plan) {
  if (!isToken(request.method)) {
    return httpError(HTTPErrorCode::unknown, "\"" + request.method + "\" is no HTTP method");
  }
  for (const auto& [name, value] : request.headers) {
    if (!isToken(name) || !isFieldValue(value)) {
      return httpError(HTTPErrorCode::unknown, "the header field \"" + name + "\" cannot be sent");
    }
  }
  plan.method = request.method;
  plan.isStreamed = request.bodyStream != nullptr;
  plan.body = plan.isStreamed ? nullptr : request.body;
  // What a stream has given cannot be sent a second time, and an old connection may turn out to be
  // closed only when octets have been sent on it.
  plan.needsFreshConnection = plan.isStreamed;
  plan.maximumBodyLength = request.maximumBodyLength;
  planHeaders(request, plan);
  return planTarget(request.url, target, plan);
}

}  // namespace platen::inline v0
