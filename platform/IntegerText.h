// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The number at the head of a text.

#include <cstdint>
#include <string_view>

namespace platen::inline v0 {

/// The decimal integer that `text` begins with, and 0 when it begins with none:
///
///     text = *blank [ "+" / "-" ] 1*DIGIT *any      blank = ASCII white space
///
/// A number that does not fit is held at the nearer limit of the type. Only ASCII digits count, and
/// the process's locale has no say. Every octet is looked at once at most; nothing is allocated.
///
/// Threads: stateless; may be used from every thread.
std::int32_t leadingIntValue(std::string_view text) noexcept;

}  // namespace platen::inline v0
