// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The rangeOfInteger syntax (RFC 8011 §5.1.14).

#include <optional>
#include <string>

#include "platen/Export.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

/// rangeOfInteger: its raw object is the range (lower, upper - lower + 1), in unsigned words.
/// Bounds in the wrong order are taken as they come; the length then wraps around.
///
///     body = %x00.08 lower-INT32 upper-INT32          ; RFC 8010 §3.9
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPRangeOfInteger : public IPPValueImpl {
 public:
  static const IPPValueClass descriptor;
  /// Any range is taken and kept as it is; see `encodeWithCoder` for what of it is written.
  explicit IPPRangeOfInteger(Range range) noexcept : range_(range) {}

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// The range as it was given, or as it was read.
  [[nodiscard]] RawValue rawValue() const override;
  /// The same.
  [[nodiscard]] Range rangeValue() const override;
  /// "{LOCATION, LENGTH}", both in unsigned decimal; never nothing.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// Writes the low 32 bits of the location and of location + length - 1; of an empty range the
  /// upper bound is thus one below the lower.
  void encodeWithCoder(IPPCoder& coder) const override;

 private:
  Range range_;
};

}  // namespace platen::inline v0
