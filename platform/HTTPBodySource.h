// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "platen/Data.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

/// A body that is read from a stream, a piece ahead: when libcurl asks for octets, the stream's own
/// code may not be run.
///
/// Threads: one thread at a time. Neither copied nor moved.
class HTTPBodySource {
 public:
  enum class State {
    ready,   ///< there are octets, or the end was seen
    dry,     ///< the stream has nothing to give now
    failed,  ///< the stream reports an error
  };

  explicit HTTPBodySource(std::shared_ptr<InputStream> stream);
  HTTPBodySource(const HTTPBodySource&) = delete;
  HTTPBodySource& operator=(const HTTPBodySource&) = delete;
  /// Closes the stream.
  ~HTTPBodySource();

  /// Opens the stream; false when it reports an error.
  bool open();
  /// Reads the next piece when the one before is used up.
  State refill();
  /// Moves octets out of the piece: how many, 0 at the end of the body, or nothing when `refill`
  /// is due.
  std::optional<std::size_t> take(std::uint8_t* destination, std::size_t room);
  [[nodiscard]] std::shared_ptr<const Error> error() const { return stream_->streamError(); }

 private:
  [[nodiscard]] bool mayComeLater() const;
  std::ptrdiff_t readNext();

  std::shared_ptr<InputStream> stream_;
  Data piece_;
  std::size_t taken_ = 0;
  /// What the stream reads into. Its code may run the loop, in which libcurl asks for octets.
  Data next_;
  bool isReading_ = false;
  bool isAtEnd_ = false;
};

}  // namespace platen::inline v0
