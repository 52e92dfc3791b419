// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Text and names that carry their own natural language (RFC 8011 §5.1.2.2, §5.1.3.2).

#include <cstddef>
#include <optional>
#include <string_view>

#include "platen/Export.h"
#include "platen/IPPStringValue.h"

namespace platen::inline v0 {

/// The abstract string with a language: a natural-language tag, which may name the charset of the
/// text on the wire after a ".", as in "ja-jp.shift_jis"; without one the text is UTF-8.
///
///     body = LENGTH-16 LENGTH-16 language LENGTH-16 text     ; RFC 8010 §3.9
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPStringValueWithLanguage : public IPPStringValue {
 public:
  /// Of texts that may be absent or have borrowed their octets, which must outlive the value then.
  IPPStringValueWithLanguage(Text text, Text language) noexcept;
  /// Of copies of both, which are not checked: use `IPPValue::text` and `IPPValue::name` where that
  /// is not sure.
  IPPStringValueWithLanguage(std::string_view text, std::string_view language);

  /// The language as it was given; valid as long as this value. Nothing when it was decoded from a
  /// body without one.
  [[nodiscard]] std::optional<std::string_view> language() const noexcept;

  /// Hash of the text and of the language; equal values have equal hashes.
  [[nodiscard]] std::size_t hash() const override;
  /// The same class, and `isEqualToStringValueWithLanguage`.
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  /// Both texts and both languages equal, letter for letter.
  [[nodiscard]] bool isEqualToStringValueWithLanguage(
      const IPPStringValueWithLanguage& other) const noexcept;
  /// Writes the language in the natural-language encoding of the message and the text in the
  /// encoding that the language names.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  Text language_;
};

/// textWithLanguage: at most 1023 characters, the language below 64.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPTextWithLanguage : public IPPStringValueWithLanguage {
 public:
  using IPPStringValueWithLanguage::IPPStringValueWithLanguage;
  static const IPPValueClass descriptor;
  /// A new value of copies of both. Raises `InvalidArgumentException` "Invalid parameter" when
  /// `_checkValue` refuses the arguments.
  static Pointer _ippValue(const RawValue& text, const RawValue& language);
  /// True for two strings, the text of fewer than 1024 characters and the language of fewer than
  /// 64.
  static bool _checkValue(const RawValue& text, const RawValue& language);
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// A new value of copies of the text and of the language.
  [[nodiscard]] Pointer copy() const override;
};

/// nameWithLanguage: at most 255 characters, the language below 64.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPNameWithLanguage : public IPPStringValueWithLanguage {
 public:
  using IPPStringValueWithLanguage::IPPStringValueWithLanguage;
  static const IPPValueClass descriptor;
  /// A new value of copies of both. Raises `InvalidArgumentException` "Invalid parameter" when
  /// `_checkValue` refuses the arguments.
  static Pointer _ippValue(const RawValue& text, const RawValue& language);
  /// True for two strings, the text of fewer than 256 characters and the language of fewer than 64.
  static bool _checkValue(const RawValue& text, const RawValue& language);
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// A new value of copies of the text and of the language.
  [[nodiscard]] Pointer copy() const override;
};

}  // namespace platen::inline v0
