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

/// The root of everything that the library raises by itself; what an application's own delegates
/// and streams raise is of whatever type they choose. `what()` is the reason text, valid as long as
/// this object or a copy of it.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~Exception() override;
};

/// A value outside of what its syntax allows ("Invalid parameter"; RFC 8011 §5.1), or a wire field
/// whose length does not fit its syntax ("Invalid length read for number IPP value"; RFC 8010
/// §3.9).
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT RangeException : public Exception {
 public:
  using Exception::Exception;
  ~RangeException() override;
};

/// An argument of the wrong kind or size: a text with a language or a resolution that its class
/// refuses ("Invalid parameter"), the `asX()` of a raw object or of a key's result that is of
/// another kind, the face that a coder does not have, and an object that an archive cannot keep.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT InvalidArgumentException : public Exception {
 public:
  using Exception::Exception;
  ~InvalidArgumentException() override;
};

/// Encoded data that contradicts itself: cut short, with an impossible length, or nested too deep.
/// Raised by coders; a reading constructor returns null in its place.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT InconsistentArchiveException : public Exception {
 public:
  using Exception::Exception;
  ~InconsistentArchiveException() override;
};

/// A key that names nothing in the object that was asked (`KeyValueAccess`).
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT UndefinedKeyException : public Exception {
 public:
  /// `className` must live as long as this and all its copies; the key is copied. The reason text
  /// is `CLASS has nothing under the key "KEY"`, where the key is cut to 128 octets and "..."
  /// stands for the rest, with "?" for octets that are not printable ASCII.
  UndefinedKeyException(std::string_view className, std::string_view key);
  ~UndefinedKeyException() override;

  /// The class of the object, or the kind of a result that is none, as "string". Lives for the
  /// process where the library raised this.
  [[nodiscard]] std::string_view className() const noexcept { return className_; }
  /// The whole key as it was given; valid as long as this object or a copy of it.
  [[nodiscard]] const std::string& key() const noexcept { return *key_; }

 private:
  std::string_view className_;
  std::shared_ptr<const std::string> key_;  // shared: copying an exception must not raise
};

}  // namespace platen::inline v0
