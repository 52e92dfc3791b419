// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPAttribute.h"

#include <functional>

#include "platen/IPPCodableClass.h"
#include "platen/IPPConstants.h"
#include "platform/KeyValueProperties.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kNameKey = "name";
constexpr std::string_view kValueKey = "value";

}  // namespace

std::shared_ptr<IPPAttribute> IPPAttribute::attributeWithValue(
    IPPValue::Pointer value, std::optional<std::string_view> name) {
  return std::make_shared<IPPAttribute>(std::move(value), name);
}

IPPAttribute::IPPAttribute(IPPValue::Pointer value, std::optional<std::string_view> name)
    : IPPAttribute(std::move(value), Text(name)) {}

IPPAttribute::IPPAttribute(IPPValue::Pointer value, Text name) noexcept
    : value_(std::move(value)), name_(std::move(name)) {}

IPPAttribute::~IPPAttribute() = default;

const std::map<std::string_view, std::int64_t>& IPPAttribute::attributeOrderToNameSpec() {
  static const auto* const orders = new std::map<std::string_view, std::int64_t>{
      {kIPPAttributesCharsetAttributeName, 0},  {kIPPAttributesNaturalLanguageAttributeName, 1},
      {kIPPPrinterUriAttributeName, 2},         {kIPPJobUriAttributeName, 3},
      {kIPPRequestingUserNameAttributeName, 4},
  };
  return *orders;
}

std::optional<std::int64_t> IPPAttribute::_attributeOrderFromCodename(std::string_view name) {
  const auto found = attributeOrderToNameSpec().find(name);
  return found == attributeOrderToNameSpec().end() ? std::nullopt : std::optional(found->second);
}

std::int64_t IPPAttribute::_attributeOrder() const {
  return _attributeOrderFromCodename(name_.viewOrEmpty()).value_or(kUnorderedAttribute);
}

bool IPPAttribute::isEqual(const IPPAttribute& other) const { return _isEqualToAttribute(other); }

bool IPPAttribute::_isEqualToAttribute(const IPPAttribute& other) const {
  if (!(name_ == other.name_)) {
    return false;
  }
  if (value_ == nullptr || other.value_ == nullptr) {
    return value_ == other.value_;
  }
  return value_->isEqual(*other.value_);
}

std::size_t IPPAttribute::hash() const {
  const std::size_t valueHash = value_ == nullptr ? 0 : value_->hash();
  return valueHash ^ std::hash<std::string_view>()(name_.viewOrEmpty());
}

std::shared_ptr<IPPAttribute> IPPAttribute::copy() const {
  return std::make_shared<IPPAttribute>(value_, name_);
}

std::string IPPAttribute::description() const {
  return std::string(name().value_or("(null)")) + " = " +
         (value_ == nullptr ? "(null)" : value_->description());
}

namespace {
constinit const IPPCodableClass kCodableClass("IPPAttribute",
                                              [](IPPCoder& coder) -> IPPCoder::Object {
                                                return IPPAttribute::initWithCoder(coder);
                                              });
const IPPCodableRegistration registration(kCodableClass);
}  // namespace

std::string_view IPPAttribute::className() const noexcept { return kCodableClass.className(); }

void IPPAttribute::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeStringForKey(name(), kNameKey);
    coder.encodeObjectForKey(value_, kValueKey);
    return;
  }
  coder.encodeByte(value_ == nullptr ? 0 : value_->ippTag());
  coder.encodeASCIIString(name());
  if (value_ != nullptr) {
    coder.encodeObject(*value_);
  }
}

std::shared_ptr<IPPAttribute> IPPAttribute::initWithCoder(IPPCoder& coder) {
  if (!coder.allowsKeyedCoding()) {
    return std::make_shared<IPPAttribute>(nullptr, Text());
  }
  auto value = std::dynamic_pointer_cast<const IPPValue>(coder.decodeObjectForKey(kValueKey));
  return std::make_shared<IPPAttribute>(std::move(value), Text(coder.decodeStringForKey(kNameKey)));
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPAttribute::ippValue>("ippValue"),
    property<&IPPAttribute::name>("name"),
    property<&IPPAttribute::hash>("hash"),
    property<&IPPAttribute::copy>("copy"),
    property<&IPPAttribute::description>("description"),
};

}  // namespace

const KeyValueProperties& IPPAttribute::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPCodable::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
