// SPDX-License-Identifier: Apache-2.0

/// The factories: each asks the class that it names, which checks what it is given.

#include "platen/IPPArray.h"
#include "platen/IPPDateTime.h"
#include "platen/IPPMap.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPRangeOfInteger.h"
#include "platen/IPPResolutionValue.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

IPPValue::Pointer IPPValue::octetString(std::string_view string) {
  return IPPOctetString::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::textWithoutLanguage(std::string_view string) {
  return IPPText::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::nameWithoutLanguage(std::string_view string) {
  return IPPName::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::text(std::string_view string, std::string_view language) {
  return IPPTextWithLanguage::_ippValue(string, language);
}

IPPValue::Pointer IPPValue::name(std::string_view string, std::string_view language) {
  return IPPNameWithLanguage::_ippValue(string, language);
}

IPPValue::Pointer IPPValue::keyword(std::string_view string) {
  return IPPKeyword::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::uri(const URL& url) { return IPPUri::descriptor._ippValue(url); }

IPPValue::Pointer IPPValue::uriScheme(std::string_view string) {
  return IPPUriScheme::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::mimeMediaType(std::string_view string) {
  return IPPMimeMediaType::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::charset(std::string_view string) {
  return IPPCharset::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::naturalLanguage(std::string_view string) {
  return IPPNaturalLanguage::descriptor._ippValue(string);
}

IPPValue::Pointer IPPValue::integer(Number number) {
  return IPPInteger::descriptor._ippValue(number);
}

IPPValue::Pointer IPPValue::enumeration(Number number) {
  return IPPEnum::descriptor._ippValue(number);
}

IPPValue::Pointer IPPValue::boolean(Number number) {
  return IPPBoolean::descriptor._ippValue(number);
}

IPPValue::Pointer IPPValue::rangeOfInteger(Range range) {
  return IPPRangeOfInteger::descriptor._ippValue(range);
}

IPPValue::Pointer IPPValue::resolution(Size size, bool inches) {
  return IPPResolutionValue::_ippValue(size, inches);
}

IPPValue::Pointer IPPValue::dateTime(Date date) { return IPPDateTime::descriptor._ippValue(date); }

IPPValue::Pointer IPPValue::array(IPPValueList values) {
  return IPPArray::_ippValue(std::move(values));
}

IPPValue::Pointer IPPValue::array(std::span<const RawValue> rawObjects,
                                  std::string_view syntaxName) {
  const IPPValueClass* valueClass = classForSyntaxName(syntaxName);
  return valueClass == nullptr ? nullptr : IPPArray::setWithValues(rawObjects, *valueClass);
}

IPPValue::Pointer IPPValue::arrayOfKeywords(std::span<const std::string> keywords) {
  const RawValue::Array objects(keywords.begin(), keywords.end());
  return array(objects, IPPKeyword::descriptor.syntaxName());
}

IPPValue::Pointer IPPValue::dictionaryWithDictionary(const IPPValueDictionary& values) {
  return std::make_shared<const IPPMap>(values);
}

IPPValue::ObjectOrKey::ObjectOrKey(Pointer value) : object(std::move(value)) {}
IPPValue::ObjectOrKey::ObjectOrKey(std::nullptr_t /*none*/) {}
IPPValue::ObjectOrKey::ObjectOrKey(std::string_view text) : key(text) {}
IPPValue::ObjectOrKey::ObjectOrKey(const char* text) {
  if (text != nullptr) {
    key = text;
  }
}

IPPValue::Pointer IPPValue::dictionaryWithObjectsAndKeys(
    std::initializer_list<ObjectOrKey> objectsAndKeys) {
  IPPValueDictionary values;
  for (const auto* pair = objectsAndKeys.begin(); objectsAndKeys.end() - pair >= 2; pair += 2) {
    if (pair[0].object == nullptr || !pair[1].key) {
      break;
    }
    values.set(*pair[1].key, pair[0].object);
  }
  return dictionaryWithDictionary(values);
}

IPPValue::Pointer IPPValue::booleanWithBool(bool value) { return boolean(Number(value)); }

IPPValue::Pointer IPPValue::integerWithInt(std::int32_t value) { return integer(Number(value)); }

IPPValue::Pointer IPPValue::enumerationWithInt(std::int32_t value) {
  return enumeration(Number(value));
}

}  // namespace platen::inline v0
