// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPConnection.h"

#include "platen/IPPConstants.h"

namespace platen::inline v0 {

namespace {

std::shared_ptr<const Error> badTarget(const URL& target) {
  std::string text = "the URI \"" + std::string(target.absoluteString()) + "\" names no host";
  return std::make_shared<const Error>(
      std::string(kHTTPClientErrorDomain), static_cast<int>(HTTPErrorCode::badURL),
      Error::UserInfo{{std::string(kLocalizedDescriptionKey), std::move(text)}});
}

// The body: the message, and whatever follows it for the caller's stream, whether or not the
// message decodes.
std::shared_ptr<IPPResponse> readBody(Bytes body,
                                      const std::shared_ptr<OutputStream>& returningDataStream) {
  const auto stream = InputStream::withBytes(body);
  stream->open();
  auto response = IPPResponse::initWithStream(stream);
  if (returningDataStream != nullptr) {
    returningDataStream->open();
    stream->transferContentsTo(returningDataStream.get());
    returningDataStream->close();
  }
  stream->close();
  return response;
}

struct Outcome {
  std::shared_ptr<IPPResponse> response;
  std::shared_ptr<const Error> error;
};

Outcome perform(const IPPRequest& request, const URL& target,
                const std::shared_ptr<InputStream>& dataStream,
                const std::shared_ptr<OutputStream>& returningDataStream) {
  const auto httpRequest =
      IPPConnectionHandler::HTTPRequestForIPPRequest(request, target, dataStream);
  if (!httpRequest) {
    return {nullptr, badTarget(target)};
  }
  Outcome outcome;
  HTTPResponse head;  // its status is not looked at here: whatever came is decoded
  const auto body = HTTPConnection::sendSynchronousRequest(*httpRequest, head, outcome.error);
  if (body) {
    outcome.response = readBody(*body, returningDataStream);
  }
  if (outcome.error == nullptr && outcome.response != nullptr &&
      !outcome.response->successfulOk()) {
    outcome.error = outcome.response->status();
  }
  return outcome;
}

}  // namespace

std::shared_ptr<IPPResponse> IPPConnection::performRequest(
    const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream,
    const std::shared_ptr<OutputStream>& returningDataStream, std::shared_ptr<const Error>* error) {
  Outcome outcome = perform(request, target, dataStream, returningDataStream);
  if (error != nullptr) {
    *error = std::move(outcome.error);
  }
  return outcome.response;
}

}  // namespace platen::inline v0
