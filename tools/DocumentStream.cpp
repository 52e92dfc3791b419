// SPDX-License-Identifier: Apache-2.0
#include "DocumentStream.h"

#include <algorithm>

namespace platen::tool {

bool DocumentStream::readHead(std::size_t length) {
  rest_->open();
  const std::size_t known = head_.size();
  head_.resize(length);
  const std::ptrdiff_t count = rest_->read(head_.data() + known, length - known);
  head_.resize(known + static_cast<std::size_t>(std::max<std::ptrdiff_t>(count, 0)));
  return head_.size() < length && rest_->streamStatus() == StreamStatus::open;
}

// The rest may have met its end while its head is still to be given.
StreamStatus DocumentStream::streamStatus() const {
  const StreamStatus status = rest_->streamStatus();
  return status == StreamStatus::atEnd && !unsentHead().empty() ? StreamStatus::open : status;
}

bool DocumentStream::hasBytesAvailable() const {
  return !unsentHead().empty() || rest_->hasBytesAvailable();
}

std::ptrdiff_t DocumentStream::read(std::uint8_t* destination, std::size_t maxLength) {
  const std::ptrdiff_t count = readUncounted(destination, maxLength);
  sent_ += static_cast<std::uint64_t>(std::max<std::ptrdiff_t>(count, 0));
  isSentWhole_ = isSentWhole_ || (count == 0 && maxLength > 0);
  return count;
}

std::ptrdiff_t DocumentStream::readUncounted(std::uint8_t* destination, std::size_t maxLength) {
  const Bytes head = unsentHead();
  if (head.empty()) {
    return rest_->read(destination, maxLength);
  }
  const std::size_t count = std::min(maxLength, head.size());
  std::copy_n(head.begin(), count, destination);
  headSent_ += count;
  return static_cast<std::ptrdiff_t>(count);
}

}  // namespace platen::tool
