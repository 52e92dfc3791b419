// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPValue.h"

#include <functional>
#include <typeinfo>

#include "platform/KeyValueProperties.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPValue::descriptor{
    "IPPValue", 0x12, "unknown", acceptsNothing, makeEmpty<IPPValue>, decodeEmpty<IPPValue>};

namespace {
const IPPValueRegistration registration(IPPValue::descriptor);
}

IPPValueClass::Value IPPValueClass::_ippValue(const RawValue& object) const {
  if (!_checkValue(object)) {
    throw RangeException(std::string(kInvalidParameter));
  }
  return make_(object);
}

const IPPValueClass& IPPValue::ippClass() const noexcept { return descriptor; }
std::uint8_t IPPValue::ippTag() const noexcept { return ippClass().ippTag(); }
std::string_view IPPValue::syntaxName() const noexcept { return ippClass().syntaxName(); }
std::string_view IPPValue::className() const noexcept { return ippClass().className(); }

RawValue IPPValue::rawValue() const { return {}; }
RawValue IPPValue::value() const { return {}; }
std::optional<std::string> IPPValue::stringValue() const { return std::nullopt; }
std::int32_t IPPValue::intValue() const { return -1; }
bool IPPValue::boolValue() const { return false; }
Range IPPValue::rangeValue() const { return {}; }
Size IPPValue::resolutionValue() const { return {}; }
std::optional<Date> IPPValue::dateTimeValue() const { return std::nullopt; }
std::optional<IPPValueList> IPPValue::arrayValue() const { return std::nullopt; }
std::optional<IPPValueDictionary> IPPValue::dictionaryRepresentationValue() const {
  return std::nullopt;
}

std::string IPPValue::description() const {
  return "'" + value().description() + "' of " + std::string(syntaxName());
}

// The abstract classes share the descriptor of this one; the type keeps them apart.
bool IPPValue::isEqual(const IPPValue& other) const {
  return &ippClass() == &other.ippClass() && typeid(*this) == typeid(other);
}

std::size_t IPPValue::hash() const { return std::hash<const void*>()(this); }

IPPValue::Pointer IPPValue::copy() const { return ippClass().initWithValue(rawValue()); }

bool IPPValue::_hasEqualRawValue(const IPPValue& other) const {
  return rawValue() == other.rawValue();
}

void IPPValue::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeRawValueForKey(rawValue(), kValueKey);
    return;
  }
  coder.encodeInt16(0);
}

RawValue IPPValueImpl::value() const { return rawValue(); }

std::size_t IPPValueImpl::hash() const { return value().hash(); }

bool IPPValueImpl::isEqual(const IPPValue& other) const {
  // The same class means the same layout: the other one is an IPPValueImpl too.
  return IPPValue::isEqual(other) && isEqualToValueImpl(static_cast<const IPPValueImpl&>(other));
}

bool IPPValueImpl::isEqualToValueImpl(const IPPValueImpl& other) const {
  return _hasEqualRawValue(other);
}

IPPValue::Pointer IPPValueImpl::copy() const { return ippClass().initWithValue(rawValue()); }

void IPPValueImpl::encodeKeyed(IPPCoder& coder) const {
  coder.encodeRawValueForKey(rawValue(), kValueKey);
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPValue::ippTag>("ippTag"),
    property<&IPPValue::syntaxName>("syntaxName"),
    property<&IPPValue::rawValue>("rawValue"),
    property<&IPPValue::value>("value"),
    property<&IPPValue::stringValue>("stringValue"),
    property<&IPPValue::intValue>("intValue"),
    property<&IPPValue::boolValue>("boolValue"),
    property<&IPPValue::rangeValue>("rangeValue"),
    property<&IPPValue::resolutionValue>("resolutionValue"),
    property<&IPPValue::dateTimeValue>("dateTimeValue"),
    property<&IPPValue::arrayValue>("arrayValue"),
    property<&IPPValue::dictionaryRepresentationValue>("dictionaryRepresentationValue"),
    property<&IPPValue::description>("description"),
    property<&IPPValue::hash>("hash"),
    property<&IPPValue::copy>("copy"),
};

}  // namespace

const KeyValueProperties& IPPValue::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPCodable::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
