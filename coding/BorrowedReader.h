// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platen/IPPBytesReader.h"

namespace platen::inline v0 {

/// A reader over octets that the caller keeps for the reader's life.
class BorrowedReader : public IPPBytesReader {
 public:
  explicit BorrowedReader(Bytes bytes) noexcept : left_(bytes) {}

  std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length) override {
    const std::size_t count = std::min(length, left_.size());
    std::copy_n(left_.begin(), count, destination);
    left_ = left_.subspan(count);
    return static_cast<std::ptrdiff_t>(count);
  }
  [[nodiscard]] Bytes window() const noexcept override { return left_; }
  void advance(std::size_t count) noexcept override { left_ = left_.subspan(count); }

 private:
  Bytes left_;
};

}  // namespace platen::inline v0
