// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"

#include "platform/IntegerText.h"
#include "platform/KeyValueProperties.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

RawValue IPPStringValue::rawValue() const { return {text()}; }

std::optional<std::string> IPPStringValue::stringValue() const {
  return text() ? std::optional(std::string(*text())) : std::nullopt;
}

std::int32_t IPPStringValue::intValue() const { return leadingIntValue(text_.viewOrEmpty()); }

bool IPPStringValue::boolValue() const { return intValue() != 0; }

bool IPPStringValue::_hasEqualRawValue(const IPPValue& other) const {
  const auto* string = dynamic_cast<const IPPStringValue*>(&other);
  return string != nullptr && dynamic_cast<const IPPUri*>(&other) == nullptr &&
         text_ == string->text_;
}

void IPPStringValue::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
  } else {
    coder.encodeASCIIString(text());
  }
}

void IPPStringInNaturalLanguage::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
  } else {
    coder.encodeNaturalLanguageString(text());
  }
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPStringValue::text>("text"),
};

}  // namespace

const KeyValueProperties& IPPStringValue::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPValueImpl::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
