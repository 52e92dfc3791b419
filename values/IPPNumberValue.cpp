// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPNumberValue.h"

#include "platform/KeyValueProperties.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

RawValue IPPNumberValue::rawValue() const { return number_; }

std::optional<std::string> IPPNumberValue::stringValue() const { return number_.stringValue(); }

std::int32_t IPPNumberValue::intValue() const { return number_.intValue(); }

bool IPPNumberValue::boolValue() const { return number_.boolValue(); }

bool IPPNumberValue::_hasEqualRawValue(const IPPValue& other) const {
  const auto* value = dynamic_cast<const IPPNumberValue*>(&other);
  return value != nullptr && number_ == value->number_;
}

void IPPNumberValue::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
    return;
  }
  coder.encodeInt16(4);
  coder.encodeInt32(intValue());
}

std::int32_t IPPEnum::intValue() const {
  return static_cast<std::int32_t>(number().unsignedIntValue());
}

void IPPBoolean::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
    return;
  }
  coder.encodeInt16(1);
  coder.encodeByte(boolValue() ? 1 : 0);
}

namespace {

bool acceptsNumbers(const RawValue& object) { return object.isNumber(); }

Number numberIn(const RawValue& object) {
  const Number* number = object.ifNumber();
  return number == nullptr ? Number() : *number;
}

template <class Value>
IPPValue::Pointer makeNumber(const RawValue& object) {
  return std::make_shared<const Value>(numberIn(object));
}

template <class Value>
IPPValue::Pointer decodeNumber(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    return coder.make<Value>(numberIn(coder.decodeRawValueForKey(kValueKey)));
  }
  requireLength(coder.decodeInt16(), 4, "Invalid length read for number IPP value");
  return coder.makePlain<Value>(Number(coder.decodeInt32()));
}

IPPValue::Pointer decodeBoolean(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    return coder.make<IPPBoolean>(numberIn(coder.decodeRawValueForKey(kValueKey)));
  }
  requireLength(coder.decodeInt16(), 1, "Invalid length read for bool IPP value");
  return coder.makePlain<IPPBoolean>(Number(coder.decodeByte() != 0));
}

}  // namespace

constinit const IPPValueClass IPPInteger::descriptor{"IPPInteger",
                                                     0x21,
                                                     "integer",
                                                     acceptsNumbers,
                                                     makeNumber<IPPInteger>,
                                                     decodeNumber<IPPInteger>};
constinit const IPPValueClass IPPEnum::descriptor{
    "IPPEnum", 0x23, "enum", acceptsNumbers, makeNumber<IPPEnum>, decodeNumber<IPPEnum>};
constinit const IPPValueClass IPPBoolean::descriptor{
    "IPPBoolean", 0x22, "boolean", acceptsNumbers, makeNumber<IPPBoolean>, decodeBoolean};

namespace {
const IPPValueRegistration integerRegistration(IPPInteger::descriptor);
const IPPValueRegistration enumRegistration(IPPEnum::descriptor);
const IPPValueRegistration booleanRegistration(IPPBoolean::descriptor);
}  // namespace

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPNumberValue::number>("number"),
};

}  // namespace

const KeyValueProperties& IPPNumberValue::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPValueImpl::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
