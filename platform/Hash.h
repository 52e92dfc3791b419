// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace platen::inline v0 {

/// Mixes two hashes; the order of the two matters.
constexpr std::size_t combineHashes(std::size_t left, std::size_t right) noexcept {
  return left ^ (right + 0x9e3779b97f4a7c15U + (left << 6U) + (left >> 2U));
}

}  // namespace platen::inline v0
