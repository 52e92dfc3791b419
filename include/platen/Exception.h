// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The failures that the library raises. They report a caller's mistake (a value that a syntax
/// refuses) or malformed wire data; what a server answers and what a network does never raises.

#include <stdexcept>
#include <string>

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

}  // namespace platen::inline v0
