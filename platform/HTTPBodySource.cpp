// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPBodySource.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "platform/FlagScope.h"
#include "platform/HTTPFailure.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kDefaultMode = "default";

}  // namespace

template <typename Call>
bool HTTPBodySource::guarded(Call call) {
  try {
    call();
    return true;
  } catch (const std::exception& exception) {
    thrown_ = httpError(HTTPErrorCode::bodyStreamFailed, exception.what());
  } catch (...) {
    thrown_ = httpError(HTTPErrorCode::bodyStreamFailed, "an exception of unknown type");
  }
  return false;
}

HTTPBodySource::HTTPBodySource(std::shared_ptr<InputStream> stream) : stream_(std::move(stream)) {}

HTTPBodySource::~HTTPBodySource() {
  guarded([this] { leaveLoop(); });
  guarded([this] { restoreDelegate(); });
  guarded([this] { stream_->close(); });
}

void HTTPBodySource::leaveLoop() {
  if (const auto loop = std::exchange(loop_, {}).lock()) {
    stream_->removeFromRunLoop(*loop, kDefaultMode);
  }
}

void HTTPBodySource::restoreDelegate() {
  // Null also when this was the delegate, which is no longer shared when it goes.
  if (stream_->delegate() == nullptr) {
    stream_->setDelegate(formerDelegate_);
  }
}

bool HTTPBodySource::open() {
  bool isOpen = false;
  guarded([&] {
    stream_->open();
    isOpen = stream_->streamStatus() != StreamStatus::error;
  });
  return isOpen;
}

bool HTTPBodySource::mayComeLater() const {
  const auto status = stream_->streamStatus();
  return status == StreamStatus::opening || status == StreamStatus::open ||
         status == StreamStatus::reading;
}

std::shared_ptr<const Error> HTTPBodySource::error() {
  std::shared_ptr<const Error> streams;
  if (thrown_ == nullptr) {
    guarded([&] { streams = stream_->streamError(); });
  }
  return thrown_ != nullptr ? thrown_ : streams;
}

HTTPBodySource::State HTTPBodySource::refill() {
  if (taken_ < piece_.size() || isAtEnd_) {
    return State::ready;
  }
  State state = State::failed;
  guarded([&] { state = refillFromStream(); });
  return state;
}

HTTPBodySource::State HTTPBodySource::refillFromStream() {
  if (isReading_) {
    return State::dry;
  }
  const FlagScope reading(isReading_);
  // At the end there is nothing available either, and a read is what says so.
  if (!stream_->hasBytesAvailable() && mayComeLater()) {
    return State::dry;
  }
  next_.resize(kHTTPPieceLength);
  const auto count = stream_->read(next_.data(), next_.size());
  if (count < 0) {
    return mayComeLater() ? State::dry : State::failed;
  }
  next_.resize(static_cast<std::size_t>(count));
  std::swap(piece_, next_);
  taken_ = 0;
  isAtEnd_ = count == 0;
  return State::ready;
}

bool HTTPBodySource::callWhenReady(RunLoop& loop, std::function<void()> ready) {
  ready_ = std::move(ready);
  if (isReading_) {
    return false;  // it would tell again and again of what nobody may read meanwhile
  }
  bool tells = false;
  guarded([&] {
    becomeDelegate();
    loop_ = loop.weak_from_this();
    tells = stream_->scheduleInRunLoop(loop, kDefaultMode);
  });
  return tells;
}

void HTTPBodySource::becomeDelegate() {
  if (const auto current = stream_->delegate(); current.get() != this) {
    formerDelegate_ = current;
    stream_->setDelegate(weak_from_this());
  }
}

void HTTPBodySource::streamHandleEvent(Stream& stream, StreamEvent event) {
  const auto keep = shared_from_this();
  std::exception_ptr raised;
  try {
    if (const auto former = formerDelegate_.lock()) {
      former->streamHandleEvent(stream, event);
    }
  } catch (...) {
    raised = std::current_exception();  // of the application's, whose exchange goes on
  }
  if (const auto ready = std::exchange(ready_, nullptr)) {
    // Else it would tell after each read, also while there is no need to wait.
    guarded([this] { leaveLoop(); });
    ready();
  }
  if (raised != nullptr) {
    std::rethrow_exception(raised);
  }
}

std::optional<std::size_t> HTTPBodySource::take(std::uint8_t* destination, std::size_t room) {
  const auto count = std::min(room, piece_.size() - taken_);
  if (count == 0 && !isAtEnd_) {
    return std::nullopt;
  }
  std::copy_n(piece_.data() + taken_, count, destination);
  taken_ += count;
  return count;
}

}  // namespace platen::inline v0
