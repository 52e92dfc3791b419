// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Sets of values: 1setOf, RFC 8011 §5.1.18.

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
  /// Over values of which `_checkValue` is true, which is not looked at here: use `_ippValue` or
  /// `IPPValue::array` where that is not sure.
  explicit IPPArray(IPPValueList values);
  /// Of use to the decoder only: over values that live in `home` beside this one.
  IPPArray(std::span<const Pointer> values, const Arena& home) noexcept;

  /// True for at least one value, none of them null.
  static bool _checkValue(const IPPValueList& values);
  /// A new set of the values, which it holds. Raises `RangeException` "Invalid parameter" when
  /// `_checkValue` refuses them.
  static Pointer _ippValue(IPPValueList values);
  /// A new set of the values that `valueClass` makes of the raw objects, in order. Raises
  /// `RangeException` "Invalid parameter" when it refuses one or there is none.
  static Pointer setWithValues(std::span<const RawValue> rawObjects,
                               const IPPValueClass& valueClass);

  /// How many values there are, at least 1.
  [[nodiscard]] std::size_t size() const noexcept { return values_.size(); }
  /// The value at `index`, which is below `size`; valid as long as this set.
  [[nodiscard]] const IPPValue& at(std::size_t index) const noexcept { return *values_[index]; }

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// That of the last value.
  [[nodiscard]] std::uint8_t ippTag() const noexcept override;
  /// That of the last value.
  [[nodiscard]] std::string_view syntaxName() const noexcept override;
  /// An array of the values' raw objects, in order.
  [[nodiscard]] RawValue rawValue() const override;
  /// The values, shared; never nothing.
  [[nodiscard]] std::optional<IPPValueList> arrayValue() const override;
  /// "(A, B) of SYNTAX".
  [[nodiscard]] std::string description() const override;
  /// True for a set of as many values with equal raw objects (`_hasEqualRawValue`) in the same
  /// order, whatever their classes.
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  /// A new set of the same values, shared.
  [[nodiscard]] Pointer copy() const override;
  /// True for a set of as many equal values (`isEqual`) in the same order: here the classes count.
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
  /// Writes the body of the first value, and for each further one the tag of the set, a name of
  /// length 0 and its body.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  IPPValueList owned_;
  std::span<const Pointer> values_;
  const Arena* home_ = nullptr;
};

}  // namespace platen::inline v0
