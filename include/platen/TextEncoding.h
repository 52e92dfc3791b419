// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Named text encodings, and conversion between them and UTF-8, the encoding of every string of
/// this library.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Data.h"
#include "platen/Export.h"

namespace platen::inline v0 {

/// Identifies one text encoding. A small value, cheap to copy and to compare; two names of the same
/// charset ("latin1", "ISO-8859-1") give equal identifiers. The identifier means nothing outside of
/// the running process; `name()` is what may be stored.
///
/// All conversion is strict: octets that stand for no character, a character that is cut off at the
/// end, and a character that the encoding lacks make the whole conversion give nothing. Nothing is
/// ever substituted or left out. U+0000 and a byte-order mark are characters like any other, save
/// that "UTF-16" and "UTF-32" (no byte order in the name) write a mark in front and take one off.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT TextEncoding {
 public:
  /// UTF-8.
  constexpr TextEncoding() noexcept = default;

  /// US-ASCII: the octets from 0 to 127.
  static constexpr TextEncoding ascii() noexcept { return TextEncoding(1); }
  /// UTF-8, RFC 3629.
  static constexpr TextEncoding utf8() noexcept { return TextEncoding(0); }
  /// ISO-8859-1: one octet for each character up to U+00FF.
  static constexpr TextEncoding latin1() noexcept { return TextEncoding(2); }

  /// The encoding of an IANA charset name or alias (RFC 2978), in any letter case; but for that the
  /// name must be exact. Nothing for a name that is not registered, that this system cannot
  /// convert, or that names a stateful encoding (UTF-7, SCSU, BOCU-1, HZ, ISO-2022-*,
  /// IMAP-mailbox-name): such names come off the wire, and a decoder with a memory of its own is a
  /// way to smuggle octets past a reader.
  static std::optional<TextEncoding> forIANACharSetName(std::string_view name);

  /// The preferred MIME (else the IANA) name, for example "ISO-8859-1"; `forIANACharSetName` of it
  /// gives this encoding again.
  [[nodiscard]] std::string name() const;

  /// `utf8` converted into this encoding; empty text gives no octets. Nothing when the text is not
  /// valid UTF-8 (RFC 3629) or has a character that this encoding lacks.
  [[nodiscard]] std::optional<std::string> encode(std::string_view utf8) const;

  /// `octets` in this encoding converted into UTF-8; no octets give empty text. Nothing when they
  /// are not valid in it.
  [[nodiscard]] std::optional<std::string> decode(Bytes octets) const;

  /// True when `octets`, valid in this encoding, are also their own UTF-8 form, so that no
  /// conversion is needed: for ASCII and UTF-8 whenever they are valid; for Latin-1 and the others
  /// when every octet stands for the ASCII character of its number. False when invalid.
  [[nodiscard]] bool isIdentity(Bytes octets) const noexcept;

  /// The same encoding.
  friend constexpr bool operator==(TextEncoding, TextEncoding) noexcept = default;

 private:
  explicit constexpr TextEncoding(std::uint32_t identifier) noexcept : identifier_(identifier) {}

  std::uint32_t identifier_ = 0;
};

}  // namespace platen::inline v0
