// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Sets of values: 1setOf, RFC 8011 §5.1.17.

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "platen/Export.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

class Arena;

/// A set: several values of one attribute, in order, at least one. It has no tag and no place in
/// the catalog of its own: both its tag and its syntax name are those of its last value.
///
///     body = first-body *( value-tag %x00.00 body )                    ; RFC 8010 §3.1.4
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPArray : public IPPValueImpl {
 public:
  /// Refuses every raw object: a set is made of values.
  static const IPPValueClass descriptor;
  /// Over values of which `_checkValue` is true, which is not looked at here.
  explicit IPPArray(IPPValueList values);
  /// Over values that live in `home` beside this one.
  IPPArray(std::span<const Pointer> values, const Arena& home) noexcept;

  /// True for at least one value, none of them null.
  static bool _checkValue(const IPPValueList& values);
  /// Raises `RangeException` "Invalid parameter" when `_checkValue` refuses the values.
  static Pointer _ippValue(IPPValueList values);
  /// A set of the values that `valueClass` makes of the raw objects. Raises `RangeException`
  /// "Invalid parameter" when it refuses one or there is none.
  static Pointer setWithValues(std::span<const RawValue> rawObjects,
                               const IPPValueClass& valueClass);

  [[nodiscard]] std::size_t size() const noexcept { return values_.size(); }
  /// The value at `index`, which is below `size`; valid as long as this set.
  [[nodiscard]] const IPPValue& at(std::size_t index) const noexcept { return *values_[index]; }

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  [[nodiscard]] std::uint8_t ippTag() const noexcept override;
  [[nodiscard]] std::string_view syntaxName() const noexcept override;
  /// An array of the values' raw objects.
  [[nodiscard]] RawValue rawValue() const override;
  [[nodiscard]] std::optional<IPPValueList> arrayValue() const override;
  /// "(A, B) of SYNTAX".
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  [[nodiscard]] Pointer copy() const override;
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  IPPValueList owned_;
  std::span<const Pointer> values_;
  const Arena* home_ = nullptr;
};

}  // namespace platen::inline v0
