// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Collections, RFC 8011 §5.1.17 (first defined by RFC 3382).

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platen/Export.h"
#include "platen/IPPValue.h"
#include "platen/Text.h"

namespace platen::inline v0 {

class Arena;

/// A collection: values by member name, kept in arrival order. A member with several values holds
/// an `IPPArray`, a nested collection an `IPPMap`.
///
///     body    = %x00.00 *member %x37 %x00.00 %x00.00                   ; RFC 8010 §3.1.6, §3.1.7
///     member  = %x4A %x00.00 LENGTH-16 member-name
///               value-tag %x00.00 value-body *( value-tag %x00.00 value-body )
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPMap : public IPPValueImpl {
 public:
  using Member = IPPCoder::Member;

  /// Refuses every raw object: a collection is made of values.
  static const IPPValueClass descriptor;
  /// A collection of these members; the names are copied, the values shared. There may be none.
  /// Raises `RangeException` "Invalid parameter" when a value is null. Names are not checked: one
  /// that is empty or not ASCII is written with a length of 0, and no reader takes that.
  explicit IPPMap(const IPPValueDictionary& values);
  /// Of use to the decoder only: over members with different names whose texts and values live in
  /// `home` beside this one.
  IPPMap(std::span<const Member> members, const Arena& home) noexcept;

  /// How many members there are.
  [[nodiscard]] std::size_t size() const noexcept { return members_.size(); }
  /// The name of the member at `index`, which is below `size`; valid as long as this collection.
  [[nodiscard]] std::string_view nameAt(std::size_t index) const noexcept;
  /// The value of the member at `index`, which is below `size`; valid as long as this collection.
  [[nodiscard]] const IPPValue& valueAt(std::size_t index) const noexcept;

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// A dictionary of the values' raw objects by name, in order.
  [[nodiscard]] RawValue rawValue() const override;
  /// The values by name, in order, shared; never nothing.
  [[nodiscard]] std::optional<IPPValueDictionary> dictionaryRepresentationValue() const override;
  /// "{NAME = VALUE; }" with the descriptions of the values; never nothing.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// "{"NAME" = "VALUE";\n...} of collection".
  [[nodiscard]] std::string description() const override;
  /// True for a collection with members of the same names, in whatever order, whose raw objects are
  /// equal (`_hasEqualRawValue`), whatever their classes.
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  /// A new collection of the same values, shared.
  [[nodiscard]] Pointer copy() const override;
  /// True for a collection with members of the same names, in whatever order, that are equal
  /// (`isEqual`): here the classes count.
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
  /// Writes the members in order, up to and with the end of the collection.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  std::vector<Member> owned_;
  std::span<const Member> members_;
  const Arena* home_ = nullptr;
};

}  // namespace platen::inline v0
