// SPDX-License-Identifier: Apache-2.0

#include "platen/Stream.h"

#include <utility>

namespace platen::inline v0 {

StreamDelegate::~StreamDelegate() = default;

void StreamDelegate::streamHandleEvent(Stream&, StreamEvent) {}

Stream::Stream() = default;
Stream::~Stream() = default;

std::shared_ptr<StreamDelegate> Stream::delegate() const { return delegate_.lock(); }

void Stream::setDelegate(std::weak_ptr<StreamDelegate> delegate) {
  delegate_ = std::move(delegate);
}

std::optional<std::string> Stream::propertyForKey(std::string_view key) const {
  const auto found = properties_.find(key);
  return found == properties_.end() ? std::nullopt : std::optional(found->second);
}

bool Stream::setPropertyForKey(std::string_view property, std::string_view key) {
  properties_.insert_or_assign(std::string(key), property);
  return true;
}

bool Stream::scheduleInRunLoop(RunLoop&, std::string_view) { return false; }
void Stream::removeFromRunLoop(RunLoop&, std::string_view) {}

}  // namespace platen::inline v0
