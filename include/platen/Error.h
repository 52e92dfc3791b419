// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Error records: what a failed exchange or a refusing server is reported with.

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platen/Export.h"

namespace platen::inline v0 {

/// An error record: a domain, an integer code, and a dictionary of further information.
/// The code says nothing without its domain.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT Error {
 public:
  /// One entry of the user information: a text, a list of names, or another error.
  using Entry = std::variant<std::string, std::vector<std::string>, std::shared_ptr<const Error>>;
  /// Further information by key; what the keys of this library's records hold is said beside each.
  using UserInfo = std::map<std::string, Entry, std::less<>>;

  /// A record of exactly these, which are not looked at.
  Error(std::string domain, std::int64_t code, UserInfo userInfo = {});

  /// Whose codes these are, for example `IPPErrorDomain`; valid as long as this record.
  [[nodiscard]] const std::string& domain() const noexcept { return domain_; }
  /// What went wrong, as the domain numbers it.
  [[nodiscard]] std::int64_t code() const noexcept { return code_; }
  /// All further information, perhaps none; valid as long as this record.
  [[nodiscard]] const UserInfo& userInfo() const noexcept { return userInfo_; }

  /// The text under `kLocalizedDescriptionKey`; nothing when there is none, or something else.
  /// Valid as long as this record.
  [[nodiscard]] std::optional<std::string_view> localizedDescription() const;

  /// The error under `kUnderlyingErrorKey`; null when there is none, or something else.
  [[nodiscard]] std::shared_ptr<const Error> underlyingError() const;

  /// The list of names under `key`; empty when there is none, or something else.
  [[nodiscard]] std::vector<std::string> names(std::string_view key) const;

  /// One line for people and logs: domain, code, description, and the underlying error's line; of a
  /// chain of underlying errors the first 16. Control characters are shown as blanks.
  [[nodiscard]] std::string description() const;

  /// Equal when domain, code and user information are equal; errors in the user information are
  /// compared by value too (more than 64 of them inside one another: by identity).
  friend PLATEN_EXPORT bool operator==(const Error& left, const Error& right);

 private:
  std::string domain_;
  std::int64_t code_;
  UserInfo userInfo_;
};

/// Domain of failures of the operating system; the code is the errno.
inline constexpr std::string_view kPOSIXErrorDomain = "POSIX";

/// Key of the human-readable text of an error record.
inline constexpr std::string_view kLocalizedDescriptionKey = "NSLocalizedDescription";
/// Key of the error that caused an error record.
inline constexpr std::string_view kUnderlyingErrorKey = "NSUnderlyingError";

}  // namespace platen::inline v0
