// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Byte buffers.

#include <cstdint>
#include <span>
#include <vector>

namespace platen::inline v0 {

/// A growable byte buffer.
using Data = std::vector<std::uint8_t>;

/// A borrowed run of octets; whoever hands it out says how long it lives.
using Bytes = std::span<const std::uint8_t>;

}  // namespace platen::inline v0
