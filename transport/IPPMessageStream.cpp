// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPMessageStream.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platen::inline v0 {

std::shared_ptr<IPPMessageStream> IPPMessageStream::initWithMessageHeader(
    std::shared_ptr<const Data> messageHeader, std::shared_ptr<InputStream> dataStream) {
  if (messageHeader == nullptr || messageHeader->empty()) {
    return nullptr;
  }
  if (dataStream == nullptr) {
    return std::make_shared<IPPMessageStream>(nullptr, InputStream::withData(*messageHeader));
  }
  return std::make_shared<IPPMessageStream>(std::move(messageHeader), std::move(dataStream));
}

IPPMessageStream::IPPMessageStream(std::shared_ptr<const Data> messageHeader,
                                   std::shared_ptr<InputStream> dataStream) noexcept
    : messageHeader_(std::move(messageHeader)),
      dataStream_(std::move(dataStream)),
      bytesLeftInMessage_(messageHeader_ == nullptr ? 0 : messageHeader_->size()) {}

IPPMessageStream::~IPPMessageStream() = default;

void IPPMessageStream::setMessageHeader(std::shared_ptr<const Data> header) noexcept {
  messageHeader_ = std::move(header);
}

void IPPMessageStream::setDataStream(std::shared_ptr<InputStream> stream) noexcept {
  dataStream_ = std::move(stream);
}

std::ptrdiff_t IPPMessageStream::read(std::uint8_t* destination, std::size_t maxLength) {
  if (!shouldReadEncodedMessage()) {
    return dataStream_->read(destination, maxLength);
  }
  // The setters can say anything; no more is read than there is.
  const std::uint64_t size = messageHeader_ == nullptr ? 0 : messageHeader_->size();
  const std::uint64_t left = std::min(bytesLeftInMessage_, size - std::min(cursor_, size));
  const std::uint64_t count = std::min<std::uint64_t>(left, maxLength);
  if (count != 0) {
    std::memcpy(destination, messageHeader_->data() + cursor_, count);
  }
  cursor_ += count;
  bytesLeftInMessage_ -= count;
  return static_cast<std::ptrdiff_t>(count);
}

bool IPPMessageStream::hasBytesAvailable() const {
  return shouldReadEncodedMessage() || dataStream_->hasBytesAvailable();
}

bool IPPMessageStream::getBuffer(Bytes& /*buffer*/) { return false; }

void IPPMessageStream::open() { dataStream_->open(); }

void IPPMessageStream::close() { dataStream_->close(); }

StreamStatus IPPMessageStream::streamStatus() const { return dataStream_->streamStatus(); }

std::shared_ptr<const Error> IPPMessageStream::streamError() const {
  return dataStream_->streamError();
}

std::shared_ptr<StreamDelegate> IPPMessageStream::delegate() const {
  return dataStream_->delegate();
}

void IPPMessageStream::setDelegate(std::weak_ptr<StreamDelegate> delegate) {
  dataStream_->setDelegate(std::move(delegate));
}

std::optional<std::string> IPPMessageStream::propertyForKey(std::string_view key) const {
  return dataStream_->propertyForKey(key);
}

bool IPPMessageStream::setPropertyForKey(std::string_view property, std::string_view key) {
  return dataStream_->setPropertyForKey(property, key);
}

bool IPPMessageStream::scheduleInRunLoop(RunLoop& loop, std::string_view mode) {
  return dataStream_->scheduleInRunLoop(loop, mode);
}

void IPPMessageStream::removeFromRunLoop(RunLoop& loop, std::string_view mode) {
  dataStream_->removeFromRunLoop(loop, mode);
}

}  // namespace platen::inline v0
