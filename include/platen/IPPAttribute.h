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

  /// A new attribute, never null, with this value, which is shared, and this name, which is copied;
  /// either may be absent. What names and values go together is not checked.
  static std::shared_ptr<IPPAttribute> attributeWithValue(IPPValue::Pointer value,
                                                          std::optional<std::string_view> name);
  /// The same; the name is copied.
  IPPAttribute(IPPValue::Pointer value, std::optional<std::string_view> name);
  /// The same, of a text that may have borrowed its octets: they must outlive the attribute then.
  IPPAttribute(IPPValue::Pointer value, Text name) noexcept;
  IPPAttribute(const IPPAttribute&) = delete;
  IPPAttribute& operator=(const IPPAttribute&) = delete;
  ~IPPAttribute() override;

  /// The places of the five attributes that stand at the head of an operation group, by name: 0
  /// "attributes-charset", 1 "attributes-natural-language", 2 "printer-uri", 3 "job-uri", 4
  /// "requesting-user-name" (RFC 8011 §4.1.4, §4.1.5). Lives for the process.
  static const std::map<std::string_view, std::int64_t>& attributeOrderToNameSpec();
  /// The place of exactly that name; nothing for every other one.
  static std::optional<std::int64_t> _attributeOrderFromCodename(std::string_view name);

  /// The value, or null. Immutable, so nothing that a caller does can change it. The reference
  /// lives until this attribute changes or goes, the value as long as it is held.
  [[nodiscard]] const IPPValue::Pointer& ippValue() const noexcept { return value_; }
  /// Takes the place of the value; null removes it.
  void setIppValue(IPPValue::Pointer value) noexcept { value_ = std::move(value); }
  /// The name; valid as long as this attribute. Nothing for a value without a name off the wire.
  [[nodiscard]] std::optional<std::string_view> name() const noexcept { return name_.view(); }

  /// The place of this attribute's name, or `kUnorderedAttribute`.
  [[nodiscard]] std::int64_t _attributeOrder() const;

  /// Equal names, letter for letter, and equal values (`IPPValue::isEqual`); absent equals absent
  /// and nothing else.
  [[nodiscard]] bool isEqual(const IPPAttribute& other) const;
  /// That of the value, exclusive or that of the name. Equal attributes have equal hashes, but for
  /// those with an out-of-band value (see `IPPValue::hash`).
  [[nodiscard]] std::size_t hash() const;
  /// A new attribute with the same name and value.
  [[nodiscard]] std::shared_ptr<IPPAttribute> copy() const;
  /// "NAME = VALUE", with the value's description; "(null)" for what is absent.
  [[nodiscard]] std::string description() const;

  /// "IPPAttribute".
  [[nodiscard]] std::string_view className() const noexcept override;
  /// Writes one record, and one more for each further value of a set. Without a value: the octet 0
  /// and the name. A name that is absent or not ASCII is written with a length of 0.
  void encodeWithCoder(IPPCoder& coder) const override;
  /// A new attribute from a keyed coder, never null; raises what the coder raises. A sequential one
  /// is not read: records are what `decodeIPPAttribute` reads, and the result has neither name nor
  /// value.
  static std::shared_ptr<IPPAttribute> initWithCoder(IPPCoder& coder);

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;
  /// As `isEqual`.
  [[nodiscard]] bool _isEqualToAttribute(const IPPAttribute& other) const;

 private:
  IPPValue::Pointer value_;
  Text name_;
};

}  // namespace platen::inline v0
