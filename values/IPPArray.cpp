// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPArray.h"

#include <algorithm>

#include "platen/IPPCodableClass.h"
#include "platform/Arena.h"
#include "platform/KeyValueProperties.h"
#include "values/Sharing.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kValuesKey = "value";

IPPValue::Pointer decodeArray(IPPCoder& coder) {
  IPPValueList values;
  for (const IPPCoder::Object& object : coder.decodeObjectsForKey(kValuesKey)) {
    if (auto value = std::dynamic_pointer_cast<const IPPValue>(object)) {
      values.push_back(std::move(value));
    }
  }
  return IPPArray::_ippValue(std::move(values));
}

IPPValue::Pointer makeNoArray(const RawValue& /*object*/) { return nullptr; }

}  // namespace

// Not registered: a set is known by the values in it.
constinit const IPPValueClass IPPArray::descriptor{"IPPArray",     0x12,        "unknown",
                                                   acceptsNothing, makeNoArray, decodeArray};

namespace {
// An archive does find it, by its class name.
constinit const IPPCodableClass kCodableClass("IPPArray", [](IPPCoder& coder) -> IPPCoder::Object {
  return IPPArray::descriptor.initWithCoder(coder);
});
const IPPCodableRegistration registration(kCodableClass);
}  // namespace

bool IPPArray::_checkValue(const IPPValueList& values) {
  return !values.empty() && std::find(values.begin(), values.end(), nullptr) == values.end();
}

IPPValue::Pointer IPPArray::_ippValue(IPPValueList values) {
  if (!_checkValue(values)) {
    throw RangeException(std::string(kInvalidParameter));
  }
  return std::make_shared<const IPPArray>(std::move(values));
}

IPPValue::Pointer IPPArray::setWithValues(std::span<const RawValue> rawObjects,
                                          const IPPValueClass& valueClass) {
  IPPValueList values;
  values.reserve(rawObjects.size());
  for (const RawValue& object : rawObjects) {
    values.push_back(valueClass._ippValue(object));
  }
  return _ippValue(std::move(values));
}

IPPArray::IPPArray(IPPValueList values) : owned_(std::move(values)), values_(owned_) {}

IPPArray::IPPArray(std::span<const Pointer> values, const Arena& home) noexcept
    : values_(values), home_(&home) {}

std::uint8_t IPPArray::ippTag() const noexcept {
  return values_.empty() ? descriptor.ippTag() : values_.back()->ippTag();
}

std::string_view IPPArray::syntaxName() const noexcept {
  return values_.empty() ? descriptor.syntaxName() : values_.back()->syntaxName();
}

RawValue IPPArray::rawValue() const {
  RawValue::Array array;
  array.reserve(values_.size());
  for (const Pointer& value : values_) {
    array.push_back(value->rawValue());
  }
  return array;
}

std::optional<IPPValueList> IPPArray::arrayValue() const {
  IPPValueList values;
  values.reserve(values_.size());
  for (const Pointer& value : values_) {
    values.push_back(share(value, home_));
  }
  return values;
}

std::string IPPArray::description() const {
  std::string text = "(";
  for (const Pointer& value : values_) {
    text += &value == &values_.front() ? "" : ", ";
    text += value->value().description();
  }
  return text.append(") of ").append(syntaxName());
}

bool IPPArray::isEqual(const IPPValue& other) const {
  const auto* array = dynamic_cast<const IPPArray*>(&other);
  return array != nullptr &&
         std::equal(
             values_.begin(), values_.end(), array->values_.begin(), array->values_.end(),
             [](const auto& left, const auto& right) { return left->_hasEqualRawValue(*right); });
}

bool IPPArray::_hasEqualRawValue(const IPPValue& other) const {
  const auto* array = dynamic_cast<const IPPArray*>(&other);
  return array != nullptr &&
         std::equal(values_.begin(), values_.end(), array->values_.begin(), array->values_.end(),
                    [](const auto& left, const auto& right) { return left->isEqual(*right); });
}

IPPValue::Pointer IPPArray::copy() const {
  return std::make_shared<const IPPArray>(arrayValue().value());
}

void IPPArray::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    const IPPValueList values = arrayValue().value();
    coder.encodeObjectsForKey({values.begin(), values.end()}, kValuesKey);
    return;
  }
  // The name, the tag and the length of the first value are the attribute's to write. Every further
  // value carries the tag of the whole set, which is that of its last value.
  for (const Pointer& value : values_) {
    if (&value != &values_.front()) {
      coder.encodeByte(ippTag());
      coder.encodeInt16(0);
    }
    coder.encodeObject(*value);
  }
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPArray::size>("size"),
};

}  // namespace

const KeyValueProperties& IPPArray::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPValueImpl::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
