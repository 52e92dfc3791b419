// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The resolution syntax (RFC 8011 §5.1.16).

#include <cstddef>
#include <optional>
#include <string>

#include "platen/Export.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

/// resolution: its raw object is the size (horizontal, vertical), in dots per inch or, for any unit
/// octet but 3, per centimetre.
///
///     body = %x00.09 horizontal-INT32 vertical-INT32 unit-OCTET       ; RFC 8010 §3.9
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPResolutionValue : public IPPValueImpl {
 public:
  static const IPPValueClass descriptor;
  /// A new value of this size, per inch or per centimetre. Raises `InvalidArgumentException`
  /// "Invalid parameter" when `size` is not a size.
  static Pointer _ippValue(const RawValue& size, bool inInches);
  /// Dots per inch.
  explicit IPPResolutionValue(Size size) noexcept : IPPResolutionValue(size, true) {}
  /// Dots per inch, or per centimetre when `inInches` is false.
  IPPResolutionValue(Size size, bool inInches) noexcept : size_(size), inInches_(inInches) {}

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// True for dots per inch, false for dots per centimetre.
  [[nodiscard]] bool unitsAreInches() const noexcept { return inInches_; }
  /// The size as it was given, fractions included.
  [[nodiscard]] RawValue rawValue() const override;
  /// The same.
  [[nodiscard]] Size resolutionValue() const override;
  /// "{WIDTH, HEIGHT}", without the unit; never nothing.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// That of the size, plus 1 when in inches.
  [[nodiscard]] std::size_t hash() const override;
  /// The same class, and `isEqualToResolution`.
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  /// The same units and equal sizes.
  [[nodiscard]] bool isEqualToResolution(const IPPResolutionValue& other) const noexcept;
  /// A new value of the same size and unit.
  [[nodiscard]] Pointer copy() const override;
  /// The numbers are cut toward zero to whole ones, held at the limits of 32 bits; the unit octet
  /// is 3 for inches and 4 for centimetres.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  Size size_;
  bool inInches_;
};

}  // namespace platen::inline v0
