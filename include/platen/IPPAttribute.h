// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Attributes (RFC 8011 §4.1.3): a name and one value.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Export.h"
#include "platen/IPPCoder.h"
#include "platen/IPPValue.h"
#include "platen/Text.h"

namespace platen::inline v0 {

/// One attribute: a name and one value, which is an `IPPArray` when the attribute has several.
///
///     attribute = value-tag LENGTH-16 name value-body                  ; RFC 8010 §3.1.4
///
/// A decoded attribute holds the memory of its message.
///
/// Threads: one thread at a time. A reference object: held by `std::shared_ptr`.
class PLATEN_EXPORT IPPAttribute : public IPPCodable {
 public:
  /// The order of every attribute that has no place of its own.
  static constexpr std::int64_t kUnorderedAttribute = INT64_MAX;

  /// A new attribute; either argument may be absent.
  static std::shared_ptr<IPPAttribute> attributeWithValue(IPPValue::Pointer value,
                                                          std::optional<std::string_view> name);
  IPPAttribute(IPPValue::Pointer value, std::optional<std::string_view> name);
  IPPAttribute(IPPValue::Pointer value, Text name) noexcept;
  IPPAttribute(const IPPAttribute&) = delete;
  IPPAttribute& operator=(const IPPAttribute&) = delete;
  ~IPPAttribute() override;

  /// The attributes that stand at the head of an operation group, by name (RFC 8011 §4.1.4).
  static const std::map<std::string_view, std::int64_t>& attributeOrderToNameSpec();
  /// The place of exactly that name, or nothing.
  static std::optional<std::int64_t> _attributeOrderFromCodename(std::string_view name);

  /// The value, or null. Immutable, so nothing that a caller does can change it.
  [[nodiscard]] const IPPValue::Pointer& ippValue() const noexcept { return value_; }
  /// Takes the place of the value; null removes it.
  void setIppValue(IPPValue::Pointer value) noexcept { value_ = std::move(value); }
  /// The name; valid as long as this attribute. Nothing for a value without a name off the wire.
  [[nodiscard]] std::optional<std::string_view> name() const noexcept { return name_.view(); }

  /// The place of this attribute's name, or `kUnorderedAttribute`.
  [[nodiscard]] std::int64_t _attributeOrder() const;

  /// Equal names, letter for letter, and equal values.
  [[nodiscard]] bool isEqual(const IPPAttribute& other) const;
  [[nodiscard]] bool _isEqualToAttribute(const IPPAttribute& other) const;
  /// That of the value, exclusive or that of the name.
  [[nodiscard]] std::size_t hash() const;
  /// A new attribute with the same name and value.
  [[nodiscard]] std::shared_ptr<IPPAttribute> copy() const;
  /// "NAME = VALUE".
  [[nodiscard]] std::string description() const;

  [[nodiscard]] std::string_view className() const noexcept override;
  /// Writes one record, and one more for each further value of a set. Without a value: the octet 0
  /// and the name.
  void encodeWithCoder(IPPCoder& coder) const override;
  /// From a keyed coder. A sequential one is not read: records are what `decodeIPPAttribute` reads,
  /// and the result has neither name nor value.
  static std::shared_ptr<IPPAttribute> initWithCoder(IPPCoder& coder);

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  IPPValue::Pointer value_;
  Text name_;
};

}  // namespace platen::inline v0
