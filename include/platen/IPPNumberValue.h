// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The numeric syntaxes (RFC 8011 §5.1.5, §5.1.12, §5.1.13).

#include <cstdint>
#include <optional>
#include <string>

#include "platen/Export.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

/// The abstract number value.
///
///     body = %x00.04 4OCTET          ; RFC 8010 §3.9
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPNumberValue : public IPPValueImpl {
 public:
  /// Any number is taken and kept as it is; see `intValue` for what of it is written.
  explicit IPPNumberValue(Number number) noexcept : number_(number) {}

  /// The number as it was given; valid as long as this value.
  [[nodiscard]] const Number& number() const noexcept { return number_; }

  /// The number as it was given.
  [[nodiscard]] RawValue rawValue() const override;
  /// Decimal text (`Number::stringValue`); never nothing.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// The low 32 bits of the number cut to a whole one: of 5000000000 that is 705032704.
  [[nodiscard]] std::int32_t intValue() const override;
  /// The number is not zero.
  [[nodiscard]] bool boolValue() const override;
  /// True for every number value, of whatever class, whose number is equal (true equals 1).
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
  /// Writes `intValue` in 4 octets; to a keyed coder the number as it is.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  Number number_;
};

/// integer, RFC 8011 §5.1.13. Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPInteger : public IPPNumberValue {
 public:
  using IPPNumberValue::IPPNumberValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// enum, RFC 8011 §5.1.5. Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPEnum : public IPPNumberValue {
 public:
  using IPPNumberValue::IPPNumberValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// The number read as an unsigned 32-bit integer, in the same 32 bits.
  [[nodiscard]] std::int32_t intValue() const override;
};

/// boolean, RFC 8011 §5.1.12.
///
///     body = %x00.01 OCTET           ; 0 false, written 1 and read not 0 for true
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPBoolean : public IPPNumberValue {
 public:
  using IPPNumberValue::IPPNumberValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// Writes 1 for every number that is not zero, otherwise 0; to a keyed coder the number as it is.
  void encodeWithCoder(IPPCoder& coder) const override;
};

}  // namespace platen::inline v0
