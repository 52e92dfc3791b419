// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "platen/Data.h"
#include "platen/Stream.h"

namespace platen::tool {

/// A document on its way from a descriptor, which stays the caller's. Its first octets can be
/// looked at before it is sent, also those of a pipe, and it counts what has been read.
///
/// Threads: one thread at a time.
class DocumentStream final : public InputStream {
 public:
  explicit DocumentStream(int descriptor) : rest_(InputStream::withFileDescriptor(descriptor)) {}

  /// Reads the head on towards `length` octets, in one attempt. Returns false when it has come to
  /// that length, or will not because of the end or an error.
  bool readHead(std::size_t length);
  /// What was read ahead; a `read` gives it once more.
  [[nodiscard]] Bytes head() const noexcept { return head_; }

  /// How many octets `read` has given.
  [[nodiscard]] std::uint64_t sent() const noexcept { return sent_; }
  /// Whether it has given the last.
  [[nodiscard]] bool isSentWhole() const noexcept { return isSentWhole_; }

  void open() override { rest_->open(); }
  void close() override { rest_->close(); }
  [[nodiscard]] StreamStatus streamStatus() const override;
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override {
    return rest_->streamError();
  }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override;
  [[nodiscard]] bool hasBytesAvailable() const override;

  // That there are octets is told by the rest; when there are none, the head has been given.

  [[nodiscard]] std::shared_ptr<StreamDelegate> delegate() const override {
    return rest_->delegate();
  }
  void setDelegate(std::weak_ptr<StreamDelegate> delegate) override {
    rest_->setDelegate(std::move(delegate));
  }
  bool scheduleInRunLoop(RunLoop& loop, std::string_view mode) override {
    return rest_->scheduleInRunLoop(loop, mode);
  }
  void removeFromRunLoop(RunLoop& loop, std::string_view mode) override {
    rest_->removeFromRunLoop(loop, mode);
  }

 private:
  [[nodiscard]] Bytes unsentHead() const noexcept { return head().subspan(headSent_); }
  std::ptrdiff_t readUncounted(std::uint8_t* destination, std::size_t maxLength);

  std::shared_ptr<InputStream> rest_;
  Data head_;
  std::size_t headSent_ = 0;
  std::uint64_t sent_ = 0;
  bool isSentWhole_ = false;
};

}  // namespace platen::tool
