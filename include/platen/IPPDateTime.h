// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The dateTime syntax (RFC 8011 §5.1.15, RFC 2579).

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platen/Export.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

/// dateTime: its raw object is an instant. The wire has a calendar date with an offset from UTC;
/// it is read into the instant, deci-seconds ignored, and always written in UTC.
///
///     body = %x00.0B year-INT16 month day hours minutes seconds deci-seconds
///            direction hours-from-UTC minutes-from-UTC                 ; RFC 8010 §3.9
///
/// Only instants within the 32 bits of `intValue` (1901-12-13 to 2038-01-19) are written as they
/// are; others wrap around modulo 2^32 seconds.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPDateTime : public IPPValueImpl {
 public:
  static const IPPValueClass descriptor;
  /// Any instant; see above for what can be written.
  explicit IPPDateTime(Date date) noexcept : date_(date) {}

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// The date, to the millisecond as it was given; to the second when it was decoded.
  [[nodiscard]] RawValue rawValue() const override;
  /// The same; never nothing.
  [[nodiscard]] std::optional<Date> dateTimeValue() const override;
  /// Whole seconds since 1970-01-01 00:00:00 UTC, the fraction dropped toward zero, cut to 32 bits.
  [[nodiscard]] std::int32_t intValue() const override;
  /// False.
  [[nodiscard]] bool boolValue() const override;
  /// In UTC to the second, "2001-02-03 04:05:06 +0000"; never nothing.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// Of `intValue`; equal dates have equal hashes.
  [[nodiscard]] std::size_t hash() const override;
  /// The same class and the same `intValue`: equal to the second.
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  /// Writes the second that `intValue` names, in UTC, with 0 deci-seconds.
  void encodeWithCoder(IPPCoder& coder) const override;

 private:
  Date date_;
};

}  // namespace platen::inline v0
