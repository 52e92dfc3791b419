// SPDX-License-Identifier: Apache-2.0

#include "platen/HTTP.h"

#include <chrono>
#include <utility>

#include "platform/HTTPExchange.h"
#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

namespace {

/// Keeps what a blocking call returns.
class Collector final : public HTTPConnectionDelegate {
 public:
  void connectionDidReceiveResponse(HTTPConnection&, const HTTPResponse& received) override {
    response = received;
  }
  void connectionDidReceiveData(HTTPConnection&, Bytes bytes) override {
    body.insert(body.end(), bytes.begin(), bytes.end());
  }
  void connectionDidFinishLoading(HTTPConnection&) override { hasEnded = true; }
  void connectionDidFailWithError(HTTPConnection&, std::shared_ptr<const Error> reason) override {
    error = std::move(reason);
    hasEnded = true;
  }

  HTTPResponse response;
  Data body;
  std::shared_ptr<const Error> error;
  bool hasEnded = false;
};

}  // namespace

HTTPConnectionDelegate::~HTTPConnectionDelegate() = default;
std::optional<HTTPRequest> HTTPConnectionDelegate::connectionWillSendRequest(
    HTTPConnection&, const HTTPRequest& request, const HTTPResponse*) {
  return request;
}
void HTTPConnectionDelegate::connectionDidReceiveAuthenticationChallenge(HTTPConnection&) {}
void HTTPConnectionDelegate::connectionDidCancelAuthenticationChallenge(HTTPConnection&) {}
bool HTTPConnectionDelegate::connectionWillCacheResponse(HTTPConnection&) { return false; }
void HTTPConnectionDelegate::connectionDidReceiveResponse(HTTPConnection&, const HTTPResponse&) {}
void HTTPConnectionDelegate::connectionDidReceiveData(HTTPConnection&, Bytes) {}
void HTTPConnectionDelegate::connectionDidFinishLoading(HTTPConnection&) {}
// Whoever overrides it may keep the error.
// NOLINTBEGIN(performance-unnecessary-value-param)
void HTTPConnectionDelegate::connectionDidFailWithError(HTTPConnection&,
                                                        std::shared_ptr<const Error>) {}
// NOLINTEND(performance-unnecessary-value-param)

struct HTTPConnection::Private {
  std::shared_ptr<HTTPExchange> exchange;
};

HTTPConnection::HTTPConnection() : private_(std::make_unique<Private>()) {}

HTTPConnection::~HTTPConnection() { cancel(); }

std::shared_ptr<HTTPConnection> HTTPConnection::start(
    HTTPRequest request, std::shared_ptr<HTTPConnectionDelegate> delegate, RunLoop& loop) {
  std::shared_ptr<HTTPConnection> connection(new HTTPConnection);
  auto& exchange = connection->private_->exchange;
  exchange =
      std::make_shared<HTTPExchange>(std::move(request), std::move(delegate), HTTPEngine::of(loop));
  exchange->start(connection);
  return connection;
}

void HTTPConnection::cancel() {
  if (private_->exchange != nullptr) {
    private_->exchange->cancel();
  }
}

std::optional<Data> HTTPConnection::sendSynchronousRequest(const HTTPRequest& request,
                                                           HTTPResponse& response,
                                                           std::shared_ptr<const Error>& error) {
  const auto loop = RunLoop::Private::forBlockingCalls();
  const auto collector = std::make_shared<Collector>();
  const auto connection = start(request, collector, *loop);
  while (!collector->hasEnded) {
    loop->runOnce(std::chrono::hours(1));
  }
  if (collector->error != nullptr) {
    error = std::move(collector->error);
    return std::nullopt;
  }
  response = std::move(collector->response);
  return std::move(collector->body);
}

}  // namespace platen::inline v0
