// SPDX-License-Identifier: Apache-2.0

/// The scheduled exchange: one HTTP connection on the run loop of the calling thread.

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platen/IPPConnection.h"
#include "platen/IPPConstants.h"
#include "platform/AtomicFile.h"
#include "platform/RunLoopPrivate.h"
#include "platform/UserEnvironment.h"
#include "responses/StatusTable.h"

namespace platen::inline v0 {

namespace {

// The exchanges on a run loop. Each holds its delegate, which holds it: when the loop goes, nobody
// else would part them.
class ScheduledExchanges {
 public:
  explicit ScheduledExchanges(RunLoop& /*loop*/) {}
  ScheduledExchanges(const ScheduledExchanges&) = delete;
  ScheduledExchanges& operator=(const ScheduledExchanges&) = delete;
  ~ScheduledExchanges() {
    for (const auto& weak : std::exchange(handlers_, {})) {
      if (const auto handler = weak.lock()) {
        handler->stopConnection();
      }
    }
  }

  void add(std::weak_ptr<IPPConnectionHandler> handler) {
    if (handlers_.size() >= sweepAt_) {
      std::erase_if(handlers_, [](const auto& weak) { return weak.expired(); });
      sweepAt_ = std::max(kFirstSweep, 2 * handlers_.size());
    }
    handlers_.push_back(std::move(handler));
  }

 private:
  static constexpr std::size_t kFirstSweep = 16;

  std::vector<std::weak_ptr<IPPConnectionHandler>> handlers_;
  /// Twice as many as the last sweep left, so that starting many exchanges is not quadratic.
  std::size_t sweepAt_ = kFirstSweep;
};

// Stops an exchange when its outcome has been told, also when a delegate raises.
class LastTurn {
 public:
  explicit LastTurn(std::shared_ptr<IPPConnectionHandler> handler) : handler_(std::move(handler)) {}
  LastTurn(const LastTurn&) = delete;
  LastTurn& operator=(const LastTurn&) = delete;
  ~LastTurn() { handler_->stopConnection(); }

 private:
  std::shared_ptr<IPPConnectionHandler> handler_;
};

// Returns what the stream raises: the delegate is told of the end all the same.
std::exception_ptr fill(OutputStream& output, InputStream& rest) {
  try {
    output.open();
    rest.transferContentsTo(&output);
    output.close();
    return nullptr;
  } catch (...) {
    return std::current_exception();
  }
}

// What the client refuses, and says why, as it would refuse an http URL without a host.
HTTPRequest hostlessRequest(const URL& target) {
  const auto text = target.absoluteString();
  const auto scheme = target.scheme();
  const auto url = URL::parse(std::string(kHTTPURLScheme) + ":" +
                              std::string(text.substr(scheme ? scheme->size() + 1 : 0)));
  return HTTPRequest(url.value_or(target));
}

}  // namespace

std::shared_ptr<IPPConnectionHandler> IPPConnection::schedulePerformRequest(
    IPPRequest& request, const URL& target, std::shared_ptr<IPPConnectionDelegate> delegate) {
  return IPPConnectionHandler::initWithRequest(request, target, std::move(delegate));
}

std::shared_ptr<IPPConnectionHandler> IPPConnectionHandler::initWithRequest(
    IPPRequest& request, const URL& target, std::shared_ptr<IPPConnectionDelegate> delegate) {
  auto handler = std::make_shared<IPPConnectionHandler>(Key());
  handler->delegate_ = std::move(delegate);
  if (const auto told = handler->delegate_) {
    told->requestWillSend(*handler);
  }
  auto httpRequest = HTTPRequestForIPPRequest(request, target);
  if (handler->isStopped_) {  // by the delegate
    return handler;
  }
  const auto loop = RunLoop::current();
  loop->internals().attachment<ScheduledExchanges>(*loop).add(handler);
  handler->connection_ = HTTPConnection::start(
      httpRequest ? std::move(*httpRequest) : hostlessRequest(target), handler, *loop);
  return handler;
}

IPPConnectionHandler::~IPPConnectionHandler() { stopConnection(); }

void IPPConnectionHandler::cancel() { stopConnection(); }

void IPPConnectionHandler::stopConnection() {
  isStopped_ = true;
  // Both are let go at the end, when this object no longer needs to be there.
  const auto delegate = std::exchange(delegate_, nullptr);
  if (const auto connection = std::exchange(connection_, nullptr)) {
    connection->cancel();
  }
}

void IPPConnectionHandler::decodeIPPMessage() {
  const auto stream = InputStream::withBytes(data_);
  stream->open();
  if (const auto response = IPPResponse::initWithStream(stream)) {
    return tellResponse(response, *stream);
  }
  stream->close();
  dumpMalformedIPPMessageData(data_);
  notifyIPPError(std::make_shared<const Error>(std::string(IPPErrorDomain),
                                               kServerErrorInternalErrorStatusCode));
}

// From within each call the delegate may cancel the exchange, which leaves nobody to tell.
void IPPConnectionHandler::tellResponse(const std::shared_ptr<IPPResponse>& response,
                                        InputStream& rest) {
  const auto self = shared_from_this();
  const auto stillTold = [this] { return delegate_; };
  if (const auto delegate = stillTold()) {
    delegate->requestDidReceiveResponse(*this, response,
                                        response->successfulOk() ? nullptr : response->status());
  }
  std::shared_ptr<OutputStream> output;
  if (const auto delegate = stillTold()) {
    output = delegate->dataStreamForResponse(response, *this);
  }
  std::exception_ptr raised;
  if (output != nullptr && stillTold() != nullptr) {
    raised = fill(*output, rest);
  }
  rest.close();
  if (const auto delegate = stillTold()) {
    delegate->responseDidReceiveDataStream(response, output, *this);
  }
  if (raised != nullptr) {
    std::rethrow_exception(raised);
  }
}

void IPPConnectionHandler::notifyIPPError(const std::shared_ptr<const Error>& error) {
  if (const auto delegate = delegate_) {
    delegate->requestDidReceiveResponse(*this, nullptr, error);
  }
}

void IPPConnectionHandler::dumpMalformedIPPMessageData(Bytes data) const {
  const auto delegate = delegate_;  // which may cancel the exchange, and be let go by that
  const KeyValue codename =
      delegate == nullptr ? KeyValue() : delegate->valueForKey("ippOperationCodename");
  const std::string* name = codename.ifString();
  if (name != nullptr && name->find('/') == std::string::npos) {
    writeFileAtomically(homeDirectory() + "/ResponseOn-" + *name + ".ippdata", data);
  }
}

std::optional<HTTPRequest> IPPConnectionHandler::connectionWillSendRequest(
    HTTPConnection& /*connection*/, const HTTPRequest& request,
    const platen::HTTPResponse* redirectResponse) {
  return redirectResponse == nullptr ? std::optional(request) : std::nullopt;
}

void IPPConnectionHandler::connectionDidReceiveAuthenticationChallenge(
    HTTPConnection& /*connection*/) {}

void IPPConnectionHandler::connectionDidCancelAuthenticationChallenge(
    HTTPConnection& /*connection*/) {}

void IPPConnectionHandler::connectionDidReceiveResponse(HTTPConnection& /*connection*/,
                                                        const platen::HTTPResponse& response) {
  data_.clear();
  responseMimeType_ = response.mimeType();
  httpResponse_ = response;
}

void IPPConnectionHandler::connectionDidReceiveData(HTTPConnection& /*connection*/, Bytes bytes) {
  data_.insert(data_.end(), bytes.begin(), bytes.end());
}

void IPPConnectionHandler::connectionDidFinishLoading(HTTPConnection& /*connection*/) {
  const LastTurn scope(shared_from_this());
  const int status = httpResponse_ ? httpResponse_->statusCode : 0;
  if (status != 200) {
    notifyIPPError(IPPErrorForHTTPErrorCode(status));
  } else {
    decodeIPPMessage();
  }
}

void IPPConnectionHandler::connectionDidFailWithError(HTTPConnection& /*connection*/,
                                                      std::shared_ptr<const Error> error) {
  const LastTurn scope(shared_from_this());
  notifyIPPError(IPPErrorForNSURLError(error));
}

bool IPPConnectionHandler::connectionWillCacheResponse(HTTPConnection& /*connection*/) {
  return false;
}

}  // namespace platen::inline v0
