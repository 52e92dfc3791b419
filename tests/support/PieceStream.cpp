// SPDX-License-Identifier: Apache-2.0

#include "tests/support/PieceStream.h"

#include <algorithm>

namespace platen::test {

std::shared_ptr<PieceStream> PieceStream::ofPieces(Data data, std::size_t length) {
  return std::make_shared<PieceStream>(
      std::move(data), [length](std::size_t position) { return position % length == 0; });
}

PieceStream::PieceStream(Data data, std::function<bool(std::size_t)> endsAt)
    : data_(std::move(data)), endsAt_(std::move(endsAt)) {}

std::size_t PieceStream::leftInPiece() const {
  std::size_t end = position_;
  while (end < data_.size() && (end == position_ || !endsAt_(end))) {
    ++end;
  }
  return end - position_;
}

std::ptrdiff_t PieceStream::read(std::uint8_t* destination, std::size_t maxLength) {
  requests_.push_back(maxLength);
  const std::size_t count = std::min(maxLength, leftInPiece());
  std::copy_n(data_.begin() + static_cast<std::ptrdiff_t>(position_), count, destination);
  position_ += count;
  return static_cast<std::ptrdiff_t>(count);
}

bool PieceStream::getBuffer(Bytes& buffer) {
  if (lends_) {
    buffer = Bytes(data_).subspan(position_, leftInPiece());
  }
  return lends_;
}

std::size_t PieceStream::skip(std::size_t count) {
  const std::size_t skipped = lends_ ? std::min(count, leftInPiece()) : 0;
  position_ += skipped;
  return skipped;
}

}  // namespace platen::test
