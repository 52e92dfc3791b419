// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "platen/RunLoop.h"
#include "platen/Stream.h"

namespace platen::tests {

/// Gives the digits from "0", one at a time, with a pause before each but the first few.
class TrickleStream final : public InputStream {
 public:
  /// `count` digits, the first `unpaused` of them at once; at the end, the stream ends or fails.
  explicit TrickleStream(int count, std::chrono::milliseconds pause, int unpaused = 0,
                         bool fails = false)
      : count_(count), pause_(pause), unpaused_(unpaused), fails_(fails) {}

  void open() override {
    status_ = StreamStatus::open;
    next_ = RunLoop::Clock::now() + pause_;
  }
  void close() override {
    status_ = StreamStatus::closed;
    wasClosed_ = true;
  }
  [[nodiscard]] StreamStatus streamStatus() const override { return status_; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override {
    return status_ == StreamStatus::error ? std::make_shared<Error>("POSIX", EIO) : nullptr;
  }
  [[nodiscard]] bool hasBytesAvailable() const override {
    ++questions_;
    return given_ < unpaused_ || RunLoop::Clock::now() >= next_;
  }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t) override {
    if (onRead) {
      onRead();
    }
    if (!hasBytesAvailable()) {
      return -1;
    }
    if (given_ == count_) {
      status_ = fails_ ? StreamStatus::error : StreamStatus::atEnd;
      return fails_ ? -1 : 0;
    }
    next_ = RunLoop::Clock::now() + pause_;
    *destination = static_cast<std::uint8_t>('0' + given_++);
    return 1;
  }

  [[nodiscard]] bool wasClosed() const { return wasClosed_; }
  [[nodiscard]] std::size_t questionCount() const { return questions_; }

  /// Is called within each read.
  std::function<void()> onRead;

 private:
  int count_;
  std::chrono::milliseconds pause_;
  int unpaused_;
  bool fails_;
  int given_ = 0;
  RunLoop::Clock::time_point next_;
  StreamStatus status_ = StreamStatus::notOpen;
  bool wasClosed_ = false;
  mutable std::size_t questions_ = 0;
};

}  // namespace platen::tests
