// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "platen/IPPConnection.h"
#include "platen/IPPConstants.h"
#include "platen/IPPURI.h"
#include "responses/StatusTable.h"

namespace platen::inline v0 {

namespace {

std::string authorityOf(const URL& target, std::uint16_t port) {
  std::string host(target.host().value_or(""));
  return (target.hostIsBracketed() ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

// The path, escaped, with a slash at its end when it is empty or the whole target ends with one.
std::string pathOf(const URL& target) {
  std::string path = URL::escapePath(target.path());
  const bool lacksSlash = target.absoluteString().ends_with('/') && !path.ends_with('/');
  return path.empty() || lacksSlash ? path + "/" : path;
}

Error::UserInfo explained(std::int32_t statusCode, std::shared_ptr<const Error> underlying) {
  return {{std::string(kLocalizedDescriptionKey),
           std::string(statusNameForCode(statusCode).value_or(""))},
          {std::string(kUnderlyingErrorKey), std::move(underlying)}};
}

std::shared_ptr<const Error> ippError(std::int32_t statusCode,
                                      std::shared_ptr<const Error> underlying) {
  return std::make_shared<const Error>(std::string(IPPErrorDomain), statusCode,
                                       explained(statusCode, std::move(underlying)));
}

// That 401 is taken for "not authorized" and 426 for "not authenticated" is deliberate.
std::int32_t statusCodeFor(int httpStatus) {
  switch (httpStatus) {
    case 401:
    case 407:
      return kClientErrorNotAuthorizedStatusCode;
    case 426:
      return kClientErrorNotAuthenticatedStatusCode;
    default:
      return kServerErrorServiceUnavailableStatusCode;
  }
}

}  // namespace

std::optional<URL> IPPConnectionHandler::HTTPURLForIPPTargetURL(const URL& target) {
  if (target.host().value_or("").empty()) {
    return std::nullopt;
  }
  const std::uint16_t given = target.port().value_or(0);
  const std::uint16_t port = given == 0 ? IPPURI::defaultIPPPort() : given;
  return URL::parse(std::string(kHTTPURLScheme) + "://" + authorityOf(target, port) +
                    pathOf(target));
}

namespace {

// What both kinds of request have in common: everything but the body.
std::optional<HTTPRequest> bodilessRequest(const IPPRequest& request, const URL& target) {
  std::optional<URL> url = IPPConnectionHandler::HTTPURLForIPPTargetURL(target);
  if (!url) {
    return std::nullopt;
  }
  HTTPRequest httpRequest(std::move(*url));
  httpRequest.method = kHTTPMethodPost;
  httpRequest.setHeader(kHTTPContentTypeField, kIPPContentTypeValue);
  httpRequest.cachePolicy = HTTPCachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  httpRequest.timeoutInterval = request.timeoutInterval();
  httpRequest.maximumBodyLength = request.maximumResponseLength();
  return httpRequest;
}

}  // namespace

std::optional<HTTPRequest> IPPConnectionHandler::HTTPRequestForIPPRequest(
    const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream) {
  auto httpRequest = bodilessRequest(request, target);
  if (httpRequest) {
    auto body = std::make_shared<Data>(request.dataRepresentation());
    if (dataStream != nullptr) {
      dataStream->readDataToEndOfStreamAppendingToData(*body);
    }
    httpRequest->body = std::move(body);
  }
  return httpRequest;
}

std::optional<HTTPRequest> IPPConnectionHandler::HTTPRequestForIPPRequest(IPPRequest& request,
                                                                          const URL& target) {
  auto httpRequest = bodilessRequest(request, target);
  if (!httpRequest) {
    return std::nullopt;
  }
  if (auto stream = request.messageStream()) {
    httpRequest->bodyStream = std::move(stream);
    httpRequest->setHeader(kHTTPTransferEncodingField, kIPPTransferEncodingValue);
  } else {
    httpRequest->body = std::make_shared<Data>(request.dataRepresentation());
  }
  return httpRequest;
}

std::shared_ptr<const Error> IPPConnectionHandler::IPPErrorForHTTPErrorCode(int status) {
  return ippError(statusCodeFor(status),
                  std::make_shared<const Error>(std::string(IPPHTTPErrorDomain), status));
}

std::shared_ptr<const Error> IPPConnectionHandler::IPPErrorForNSURLError(
    const std::shared_ptr<const Error>& error) {
  const bool isTimeout =
      error != nullptr && error->code() == static_cast<int>(HTTPErrorCode::timedOut);
  return ippError(
      isTimeout ? kClientErrorTimeoutStatusCode : kServerErrorServiceUnavailableStatusCode, error);
}

}  // namespace platen::inline v0
