// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The string syntaxes that carry no language of their own (RFC 8011 §5.1.2 to §5.1.4, §5.1.6 to
/// §5.1.11).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Export.h"
#include "platen/IPPValue.h"
#include "platen/Text.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// The abstract string value. Its raw object is a string, absent when it was decoded from a body of
/// length 0 or from octets that are not valid in its encoding.
///
///     body = LENGTH-16 *OCTET        ; RFC 8010 §3.9
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPStringValue : public IPPValueImpl {
 public:
  /// Of a text that may be absent or have borrowed its octets, which must outlive the value then.
  explicit IPPStringValue(Text text) noexcept : text_(std::move(text)) {}
  /// Of a copy of `text`, which is not checked: use the factories of `IPPValue` where that is not
  /// sure.
  explicit IPPStringValue(std::string_view text) : text_(text) {}

  /// The string itself, without a copy; valid as long as this value. Nothing when absent.
  [[nodiscard]] std::optional<std::string_view> text() const noexcept { return text_.view(); }

  /// A copy of the string; absent when there is none.
  [[nodiscard]] RawValue rawValue() const override;
  /// A copy of the string; nothing when absent.
  [[nodiscard]] std::optional<std::string> stringValue() const override;
  /// The leading decimal integer of the string: blanks and a sign may stand before it, it is held
  /// at the limits of 32 bits, and it is 0 when there is none.
  [[nodiscard]] std::int32_t intValue() const override;
  /// `intValue` is not 0.
  [[nodiscard]] bool boolValue() const override;
  /// True for every string value but a `IPPUri`, of whatever class and language, with the same
  /// string letter for letter; absent equals absent.
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
  /// Writes the string in ASCII, unless a class says otherwise, as `IPPCoder::encodeString` does:
  /// up to its first zero octet, and as a length of 0 when it is absent or has a character outside
  /// of the encoding. To a keyed coder the string as it is.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  Text text_;
};

/// charset, RFC 8011 §5.1.8: below 64 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPCharset : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// naturalLanguage, RFC 8011 §5.1.9: below 64 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPNaturalLanguage : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// keyword, RFC 8011 §5.1.4: below 256 characters, which are not checked.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPKeyword : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// uriScheme, RFC 8011 §5.1.7: below 64 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPUriScheme : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// mimeMediaType, RFC 8011 §5.1.10: below 256 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPMimeMediaType : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// octetString, RFC 8011 §5.1.11, taken for UTF-8 text: below 1024 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPOctetString : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
  /// The same in UTF-8.
  void encodeWithCoder(IPPCoder& coder) const override;
};

/// Text for people, in the natural-language encoding of the message.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPStringInNaturalLanguage : public IPPStringValue {
 public:
  using IPPStringValue::IPPStringValue;
  /// The same in `IPPCoder::naturalLanguageEncoding`.
  void encodeWithCoder(IPPCoder& coder) const override;
};

/// textWithoutLanguage, RFC 8011 §5.1.2.1: below 1024 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPText : public IPPStringInNaturalLanguage {
 public:
  using IPPStringInNaturalLanguage::IPPStringInNaturalLanguage;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// nameWithoutLanguage, RFC 8011 §5.1.3.1: below 256 characters.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPName : public IPPStringInNaturalLanguage {
 public:
  using IPPStringInNaturalLanguage::IPPStringInNaturalLanguage;
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// uri, RFC 8011 §5.1.6: below 1024 characters. Its raw object is a URL, absent when it was decoded
/// from text that is none.
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPUri : public IPPStringValue {
 public:
  /// Of a copy of its text; how long it is is not checked.
  explicit IPPUri(const URL& url);
  /// `text` must be a valid URL or absent, which is not checked here.
  explicit IPPUri(Text text) noexcept : IPPStringValue(std::move(text)) {}
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }

  /// The URL; absent when there is none.
  [[nodiscard]] RawValue rawValue() const override;
  /// -1.
  [[nodiscard]] std::int32_t intValue() const override;
  /// False.
  [[nodiscard]] bool boolValue() const override;
  /// True for another uri with the same text, letter for letter; absent equals absent.
  [[nodiscard]] bool _hasEqualRawValue(const IPPValue& other) const override;
};

}  // namespace platen::inline v0
