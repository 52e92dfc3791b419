// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platen/Stream.h"

namespace platen::test {

/// An input stream whose octets arrive in pieces: no read goes over the end of a piece. It is open
/// from the start and notes how many octets each read asked for.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PieceStream : public InputStream {
 public:
  /// Pieces of `length` octets each.
  static std::shared_ptr<PieceStream> ofPieces(Data data, std::size_t length);
  /// `endsAt(position)` tells whether a piece ends before the octet at `position`.
  PieceStream(Data data, std::function<bool(std::size_t)> endsAt);

  /// Has `getBuffer` lend what is left of the piece at hand.
  void setLending(bool lends) { lends_ = lends; }
  [[nodiscard]] const std::vector<std::size_t>& requests() const { return requests_; }
  /// How many octets were read.
  [[nodiscard]] std::size_t position() const { return position_; }

  void open() override {}
  void close() override {}
  [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override;
  [[nodiscard]] bool hasBytesAvailable() const override { return position_ < data_.size(); }
  bool getBuffer(Bytes& buffer) override;
  std::size_t skip(std::size_t count) override;

 private:
  [[nodiscard]] std::size_t leftInPiece() const;

  Data data_;
  std::function<bool(std::size_t)> endsAt_;
  std::vector<std::size_t> requests_;
  std::size_t position_ = 0;
  bool lends_ = false;
};

}  // namespace platen::test
