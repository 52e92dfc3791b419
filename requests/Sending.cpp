// SPDX-License-Identifier: Apache-2.0

/// The scheduled exchange as the request sees it: it stands between the exchange and its delegate.

#include <optional>
#include <utility>

#include "platen/IPPConnection.h"
#include "platen/IPPRequest.h"
#include "platform/FlagScope.h"

namespace platen::inline v0 {

// The delegate is called from within the start; what it asks for then is done when there is
// something to do it to.
void IPPRequest::sendTo(const URL& target) {
  if (isStarting_) {
    if (isCancelledWhileStarting_) {
      sendNextTo_ = target;
    }
    return;
  }
  if (requestHandler_ != nullptr) {
    return;
  }
  const auto self = std::static_pointer_cast<IPPRequest>(shared_from_this());
  for (std::optional<URL> next = target; next; next = std::exchange(sendNextTo_, std::nullopt)) {
    start(*next, self);
  }
}

void IPPRequest::start(const URL& target, const std::shared_ptr<IPPRequest>& self) {
  isCancelledWhileStarting_ = false;
  sendNextTo_.reset();
  {
    const FlagScope scope(isStarting_);
    requestHandler_ = IPPConnection::schedulePerformRequest(*this, target, self);
  }
  if (isCancelledWhileStarting_) {
    letGoOfHandler();
  }
}

void IPPRequest::cancel() {
  isCancelledWhileStarting_ = isStarting_;
  sendNextTo_.reset();
  letGoOfHandler();
}

void IPPRequest::letGoOfHandler() {
  // Let go at the end: the exchange may hold the last reference to this request.
  if (const auto handler = std::exchange(requestHandler_, nullptr)) {
    handler->cancel();
  }
}

std::shared_ptr<IPPMessageStream> IPPRequest::messageStream() {
  auto dataStream = dataStreamForRequest();
  return dataStream == nullptr
             ? nullptr
             : IPPMessageStream::initWithMessageHeader(
                   std::make_shared<const Data>(dataRepresentation()), std::move(dataStream));
}

std::shared_ptr<InputStream> IPPRequest::dataStreamForRequest() {
  const auto delegate = delegate_.lock();
  return delegate == nullptr ? nullptr : delegate->dataStreamForRequest(*this);
}

void IPPRequest::requestWillSend(IPPConnectionHandler& /*handler*/) {
  if (const auto delegate = delegate_.lock()) {
    delegate->requestWillSend(*this);
  }
}

void IPPRequest::requestDidReceiveResponse(IPPConnectionHandler& /*handler*/,
                                           const std::shared_ptr<IPPResponse>& response,
                                           const std::shared_ptr<const Error>& error) {
  if (const auto delegate = delegate_.lock()) {
    delegate->requestDidReceiveResponse(*this, response, error);
  }
}

std::shared_ptr<OutputStream> IPPRequest::dataStreamForResponse(
    const std::shared_ptr<IPPResponse>& response, IPPConnectionHandler& /*handler*/) {
  const auto delegate = delegate_.lock();
  return delegate == nullptr ? nullptr : delegate->dataStreamForResponse(response, *this);
}

void IPPRequest::responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& response,
                                              const std::shared_ptr<OutputStream>& stream,
                                              IPPConnectionHandler& /*handler*/) {
  if (const auto delegate = delegate_.lock()) {
    delegate->responseDidReceiveDataStream(response, stream, *this);
  }
}

// Both bases ask by this name; it is the message that answers.
KeyValue IPPRequest::valueForKey(std::string_view key) const {
  return IPPMessage::valueForKey(key);
}

}  // namespace platen::inline v0
