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
  explicit IPPMap(const IPPValueDictionary& values);
  /// Over members with different names whose texts and values live in `home` beside this one.
  IPPMap(std::span<const Member> members, const Arena& home) noexcept;

  [[nodiscard]] std::size_t size() const noexcept { return members_.size(); }
  /// The name of the member at `index`, which is below `size`; valid as long as this collection.
  [[nodiscard]] std::string_view nameAt(std::size_t index) const noexcept;
  /// The value of the member at `index`, which is below `size`; valid as long as this collection.
  [[nodiscard]] const IPPValue& valueAt(std::size_t index) const noexcept;

  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// A dictionary of the values' raw objects.
  [[nodiscard]] RawValue rawValue() const override;
  [[nodiscard]] std::optional<IPPValueDictionary> dictionaryRepresentationValue() const override;
  /// The text form of the dictionary of values.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// "{"NAME" = "VALUE";\n...} of collection".
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  [[nodiscard]] Pointer copy() const override;
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  std::vector<Member> owned_;
  std::span<const Member> members_;
  const Arena* home_ = nullptr;
};

}  // namespace platen::inline v0
