// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The failures that the library raises. They report a caller's mistake (a value that a syntax
/// refuses) or malformed wire data; what a server answers and what a network does never raises.

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platen/Export.h"

namespace platen::inline v0 {

/// The root of everything that the library raises; `what()` is the reason text.
class PLATEN_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~Exception() override;
};

/// A value outside of what its syntax allows, or a wire field whose length does not fit its syntax.
class PLATEN_EXPORT RangeException : public Exception {
 public:
  using Exception::Exception;
  ~RangeException() override;
};

/// An argument of the wrong kind or size.
class PLATEN_EXPORT InvalidArgumentException : public Exception {
 public:
  using Exception::Exception;
  ~InvalidArgumentException() override;
};

/// Encoded data that contradicts itself: cut short, or with an impossible length.
class PLATEN_EXPORT InconsistentArchiveException : public Exception {
 public:
  using Exception::Exception;
  ~InconsistentArchiveException() override;
};

/// A key that names nothing in the object that was asked (`KeyValueAccess`).
class PLATEN_EXPORT UndefinedKeyException : public Exception {
 public:
  /// `className` lives as long as this and all its copies; the key is copied. In the reason text
  /// the key stands cut to 128 octets, with "?" for octets that are not printable ASCII.
  UndefinedKeyException(std::string_view className, std::string_view key);
  ~UndefinedKeyException() override;

  /// The class of the object, or the kind of a result that is none, as "string".
  [[nodiscard]] std::string_view className() const noexcept { return className_; }
  /// The whole key as it was given.
  [[nodiscard]] const std::string& key() const noexcept { return *key_; }

 private:
  std::string_view className_;
  std::shared_ptr<const std::string> key_;  // shared: copying an exception must not raise
};

}  // namespace platen::inline v0
