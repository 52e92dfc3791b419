// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPBodySource.h"

#include <algorithm>
#include <utility>

namespace platen::inline v0 {

namespace {

// What libcurl takes at once.
constexpr std::size_t kPieceLength = 65536;

}  // namespace

HTTPBodySource::HTTPBodySource(std::shared_ptr<InputStream> stream) : stream_(std::move(stream)) {}

HTTPBodySource::~HTTPBodySource() { stream_->close(); }

bool HTTPBodySource::open() {
  stream_->open();
  return stream_->streamStatus() != StreamStatus::error;
}

bool HTTPBodySource::mayComeLater() const {
  const auto status = stream_->streamStatus();
  return status == StreamStatus::opening || status == StreamStatus::open ||
         status == StreamStatus::reading;
}

HTTPBodySource::State HTTPBodySource::refill() {
  if (taken_ < piece_.size() || isAtEnd_) {
    return State::ready;
  }
  // At the end there is nothing available either, and a read is what says so.
  if (isReading_ || (!stream_->hasBytesAvailable() && mayComeLater())) {
    return State::dry;
  }
  const auto count = readNext();
  if (count < 0) {
    return mayComeLater() ? State::dry : State::failed;
  }
  next_.resize(static_cast<std::size_t>(count));
  std::swap(piece_, next_);
  taken_ = 0;
  isAtEnd_ = count == 0;
  return State::ready;
}

std::ptrdiff_t HTTPBodySource::readNext() {
  struct Reading {
    explicit Reading(bool& flag) : isReading(flag) { isReading = true; }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() { isReading = false; }
    bool& isReading;
  };
  const Reading reading(isReading_);
  next_.resize(kPieceLength);
  return stream_->read(next_.data(), next_.size());
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
