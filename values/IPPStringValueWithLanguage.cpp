// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValueWithLanguage.h"

#include <functional>

#include "platform/KeyValueProperties.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kLanguageKey = "language";

// The octets of `string` in `encoding` up to the first zero, and 2 for their count; 0 when there
// are none to be had. So an absent half is not counted, though its count of 0 is written.
std::size_t lengthWithCount(std::optional<std::string_view> string, TextEncoding encoding) {
  const auto octets = string ? encoding.encode(*string) : std::nullopt;
  return octets ? std::string_view(octets->c_str()).size() + 2 : 0;
}

}  // namespace

IPPStringValueWithLanguage::IPPStringValueWithLanguage(Text text, Text language) noexcept
    : IPPStringValue(std::move(text)), language_(std::move(language)) {}

IPPStringValueWithLanguage::IPPStringValueWithLanguage(std::string_view text,
                                                       std::string_view language)
    : IPPStringValue(text), language_(language) {}

std::optional<std::string_view> IPPStringValueWithLanguage::language() const noexcept {
  return language_.view();
}

std::size_t IPPStringValueWithLanguage::hash() const {
  const std::hash<std::string_view> hasher;
  return hasher(text().value_or("")) ^ hasher(language_.viewOrEmpty());
}

bool IPPStringValueWithLanguage::isEqual(const IPPValue& other) const {
  return IPPValue::isEqual(other) &&
         isEqualToStringValueWithLanguage(static_cast<const IPPStringValueWithLanguage&>(other));
}

bool IPPStringValueWithLanguage::isEqualToStringValueWithLanguage(
    const IPPStringValueWithLanguage& other) const noexcept {
  return text() == other.text() && language_ == other.language_;
}

void IPPStringValueWithLanguage::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
    coder.encodeStringForKey(language(), kLanguageKey);
    return;
  }
  const TextEncoding encoding = _encodingFromLanguage(language_.viewOrEmpty());
  const std::size_t length =
      lengthWithCount(text(), encoding) + lengthWithCount(language(), TextEncoding::utf8());
  coder.encodeInt16(static_cast<std::int16_t>(length));
  coder.encodeNaturalLanguageString(language());
  coder.encodeString(text(), encoding);
}

namespace {

template <class Value>
IPPValue::Pointer decodeWithLanguage(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    Text text = textIn(coder.decodeRawValueForKey(kValueKey));
    return coder.make<Value>(std::move(text), Text(coder.decodeStringForKey(kLanguageKey)));
  }
  // A length of 0, and one that is negative when read as signed, has no halves behind it: nothing
  // more is read, by design.
  if (coder.decodeInt16() <= 0) {
    return coder.makePlain<Value>(Text(), Text());
  }
  Text language = coder.decodeNaturalLanguageString();
  const TextEncoding encoding = IPPValue::_encodingFromLanguage(language.viewOrEmpty());
  Text text = coder.decodeStringUsingEncoding(encoding);
  return coder.makePlain<Value>(std::move(text), std::move(language));
}

template <class Value>
IPPValue::Pointer makeWithoutLanguage(const RawValue& object) {
  return std::make_shared<const Value>(textIn(object), Text());
}

template <class Value>
IPPValue::Pointer checkedWithLanguage(const RawValue& text, const RawValue& language) {
  if (!Value::_checkValue(text, language)) {
    throw InvalidArgumentException(std::string(kInvalidParameter));
  }
  return std::make_shared<const Value>(text.asString(), language.asString());
}

template <class Value>
constexpr IPPValueClass languageClass(std::string_view className, std::uint8_t tag,
                                      std::string_view syntaxName) {
  return {className,
          tag,
          syntaxName,
          acceptsNothing,
          makeWithoutLanguage<Value>,
          decodeWithLanguage<Value>};
}

bool areStringsBelow(const RawValue& text, std::size_t limit, const RawValue& language) {
  return isStringBelow(text, limit) && isStringBelow(language, 64);
}

}  // namespace

constinit const IPPValueClass IPPTextWithLanguage::descriptor =
    languageClass<IPPTextWithLanguage>("IPPTextWithLanguage", 0x35, "textWithLanguage");

constinit const IPPValueClass IPPNameWithLanguage::descriptor =
    languageClass<IPPNameWithLanguage>("IPPNameWithLanguage", 0x36, "nameWithLanguage");

namespace {
const IPPValueRegistration textRegistration(IPPTextWithLanguage::descriptor);
const IPPValueRegistration nameRegistration(IPPNameWithLanguage::descriptor);
}  // namespace

bool IPPTextWithLanguage::_checkValue(const RawValue& text, const RawValue& language) {
  return areStringsBelow(text, 1024, language);
}

IPPValue::Pointer IPPTextWithLanguage::_ippValue(const RawValue& text, const RawValue& language) {
  return checkedWithLanguage<IPPTextWithLanguage>(text, language);
}

IPPValue::Pointer IPPTextWithLanguage::copy() const {
  return std::make_shared<const IPPTextWithLanguage>(Text(text()), Text(language()));
}

bool IPPNameWithLanguage::_checkValue(const RawValue& text, const RawValue& language) {
  return areStringsBelow(text, 256, language);
}

IPPValue::Pointer IPPNameWithLanguage::_ippValue(const RawValue& text, const RawValue& language) {
  return checkedWithLanguage<IPPNameWithLanguage>(text, language);
}

IPPValue::Pointer IPPNameWithLanguage::copy() const {
  return std::make_shared<const IPPNameWithLanguage>(Text(text()), Text(language()));
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPStringValueWithLanguage::language>("language"),
};

}  // namespace

const KeyValueProperties& IPPStringValueWithLanguage::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPStringValue::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
