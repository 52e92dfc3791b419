// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Uniform resource locators (RFC 3986).

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Export.h"

namespace platen::inline v0 {

/// A parsed URL that keeps the text it was made from letter for letter (scheme case included).
/// Cheap to copy. One that was moved from may only be assigned to or destroyed.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT URL {
 public:
  /// Parses `text`, which is copied. Nothing when it is no URI reference of RFC 3986 (printers also
  /// send relative references, which are kept), when its port is above 65535, or when it is empty.
  /// The host may be an IPv6 literal with a zone identifier, "[fe80::1%25eth0]" (RFC 6874 §2).
  /// Octets that RFC 3986 has no place for (controls, blanks, everything outside of ASCII) are
  /// refused, not escaped.
  static std::optional<URL> parse(std::string_view text);

  /// Whether `parse` would give a URL; makes none.
  static bool isValid(std::string_view text);

  /// The text it was made from; valid as long as this object or a copy of it lives.
  [[nodiscard]] std::string_view absoluteString() const noexcept;

  // Each part is as written (escapes kept); valid as long as this object or a copy of it lives;
  // nothing when absent. A part that is there but empty ("ipp:///x" has such a host) is "".

  /// RFC 3986 §3.1, in the letter case as written; nothing for a relative reference.
  [[nodiscard]] std::optional<std::string_view> scheme() const noexcept;
  /// What stands before the "@" of the authority (RFC 3986 §3.2.1), up to the colon that separates
  /// a password, if there is one.
  [[nodiscard]] std::optional<std::string_view> user() const noexcept;
  /// RFC 3986 §3.2.2, without the brackets of an IP literal; its zone identifier stays as written
  /// ("fe80::1%25eth0").
  [[nodiscard]] std::optional<std::string_view> host() const noexcept;
  /// True when the host is written as an IP literal in brackets.
  [[nodiscard]] bool hostIsBracketed() const noexcept;
  /// RFC 3986 §3.2.3. A colon with no digits behind it counts as an absent port.
  [[nodiscard]] std::optional<std::uint16_t> port() const noexcept;
  /// "" when the URL has no path. Percent escapes are decoded into octets, whatever encoding they
  /// are in; one trailing slash is dropped from everything but "/" itself.
  [[nodiscard]] std::string path() const;
  /// The path as written, with its escapes and its trailing slash (RFC 3986 §3.3); "" when there is
  /// none.
  [[nodiscard]] std::string_view escapedPath() const noexcept;
  /// What follows the "?" (RFC 3986 §3.4).
  [[nodiscard]] std::optional<std::string_view> query() const noexcept;
  /// What follows the "#" (RFC 3986 §3.5).
  [[nodiscard]] std::optional<std::string_view> fragment() const noexcept;

  /// The last segment of `path()`, so with its escapes decoded; "/" for the root, "" when there is
  /// no path.
  [[nodiscard]] std::string lastPathComponent() const;

  /// `text` with every octet that a path may not hold percent-escaped (RFC 3986 §2.1, §3.3): all
  /// but the unreserved characters, the sub-delimiters, ":", "@" and "/". A "%" is escaped as well,
  /// so that a decoded path comes back as it was. Any octets are taken, and "" gives "".
  static std::string escapePath(std::string_view text);

  /// Equal when the texts are equal, letter for letter.
  friend PLATEN_EXPORT bool operator==(const URL& left, const URL& right) noexcept;

 private:
  struct Parts;
  explicit URL(std::shared_ptr<const Parts> parts) noexcept;

  std::shared_ptr<const Parts> parts_;
};

}  // namespace platen::inline v0
