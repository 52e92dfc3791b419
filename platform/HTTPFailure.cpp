// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPFailure.h"

#include <locale>
#include <sstream>
#include <utility>

#include "platform/HTTPTransfer.h"

namespace platen::inline v0 {

namespace {

std::string seconds(std::chrono::milliseconds duration) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::chrono::duration<double>(duration).count();
  return text.str() + (text.str() == "1" ? " second" : " seconds");
}

std::string whatHappened(HTTPErrorCode code, const std::string& authority) {
  switch (code) {
    case HTTPErrorCode::cannotFindHost:
      return "could not resolve the host of " + authority;
    case HTTPErrorCode::cannotConnectToHost:
    case HTTPErrorCode::timedOut:
      return "could not connect to " + authority;
    case HTTPErrorCode::networkConnectionLost:
      return "the connection to " + authority + " was lost";
    case HTTPErrorCode::badServerResponse:
      return "the answer from " + authority + " is not valid HTTP";
    case HTTPErrorCode::dataLengthExceedsMaximum:
      return "the answer from " + authority + " is too long";
    default:
      return "could not send the request to " + authority;
  }
}

}  // namespace

std::shared_ptr<const Error> httpError(HTTPErrorCode code, std::string description,
                                       std::shared_ptr<const Error> underlying) {
  Error::UserInfo userInfo;
  userInfo.emplace(kLocalizedDescriptionKey, std::move(description));
  if (underlying != nullptr) {
    userInfo.emplace(kUnderlyingErrorKey, std::move(underlying));
  }
  return std::make_shared<Error>(std::string(kHTTPClientErrorDomain), static_cast<int>(code),
                                 std::move(userInfo));
}

std::shared_ptr<const Error> transferError(const HTTPTransferResult& result,
                                           const std::string& authority) {
  return httpError(result.code, whatHappened(result.code, authority) + " (" + result.reason + ")");
}

std::shared_ptr<const Error> idleError(HTTPStage stage, std::chrono::milliseconds limit,
                                       const std::string& authority) {
  switch (stage) {
    case HTTPStage::resolving:
      return httpError(HTTPErrorCode::timedOut,
                       "could not resolve the host of " + authority + " within " + seconds(limit));
    case HTTPStage::connecting:
      return httpError(HTTPErrorCode::timedOut,
                       "could not connect to " + authority + " within " + seconds(limit));
    case HTTPStage::exchanging:
      break;
  }
  return httpError(HTTPErrorCode::timedOut,
                   "no answer from " + authority + " for " + seconds(limit));
}

}  // namespace platen::inline v0
