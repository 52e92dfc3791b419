// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// A string that is kept either as a copy of its own or as a piece of somebody else's octets.

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include "platen/Export.h"

namespace platen::inline v0 {

/// A piece of UTF-8 text that an object keeps: its own copy, or borrowed from the octets of the
/// message that the object was decoded with and lives no longer than. May be absent, which is not
/// the same as empty. Two words long.
///
/// Threads: one thread at a time; a const one may be shared between threads.
class PLATEN_EXPORT Text {
 public:
  /// Absent.
  constexpr Text() noexcept = default;
  /// A copy of `text`; absent when there is none.
  explicit Text(std::optional<std::string_view> text);
  /// Borrowed, never absent: the octets must outlive this object and everything moved from it.
  static Text borrowed(std::string_view text) noexcept {
    return Text(text.data() != nullptr ? text.data() : "", text.size());
  }

  /// A copy owns its octets, also when `other` has borrowed them.
  Text(const Text& other);
  /// Takes what `other` keeps, borrowed or owned; `other` is absent then.
  Text(Text&& other) noexcept
      : octets_(std::exchange(other.octets_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  /// As the constructor of the same argument; what was kept before is let go.
  Text& operator=(Text other) noexcept {
    std::swap(octets_, other.octets_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~Text() {
    if ((size_ & kOwned) != 0) {
      delete[] octets_;
    }
  }

  /// True when there is no text; false for "".
  [[nodiscard]] bool isAbsent() const noexcept { return octets_ == nullptr; }
  /// The text, or nothing when absent; valid as long as this object.
  [[nodiscard]] std::optional<std::string_view> view() const noexcept {
    return isAbsent() ? std::nullopt : std::optional(viewOrEmpty());
  }
  /// The text, or "" when absent; valid as long as this object.
  [[nodiscard]] std::string_view viewOrEmpty() const noexcept { return {octets_, size_ & ~kOwned}; }

  /// Both absent, or both there and equal octet for octet.
  friend bool operator==(const Text& left, const Text& right) noexcept {
    return left.view() == right.view();
  }

 private:
  // The topmost bit of the size, which no text needs.
  static constexpr std::size_t kOwned = ~(~std::size_t{0} >> 1U);

  Text(const char* octets, std::size_t size) noexcept : octets_(octets), size_(size) {}

  const char* octets_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace platen::inline v0
