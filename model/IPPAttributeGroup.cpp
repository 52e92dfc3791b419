// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPAttributeGroup.h"

#include <algorithm>
#include <functional>

#include "platen/IPPConstants.h"
#include "platform/Hash.h"
#include "platform/KeyValueProperties.h"
#include "platform/LikePattern.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kAttributesKey = "attributes";

RawValue rawValueOf(const std::shared_ptr<IPPAttribute>& attribute) {
  return attribute == nullptr || attribute->ippValue() == nullptr ? RawValue()
                                                                  : attribute->ippValue()->value();
}

}  // namespace

constinit const IPPGroupClass IPPAttributeGroup::descriptor{
    "IPPAttributeGroup", nullptr, 5, kIPPUnsupportedAttributesGroupName,
    [] { return std::make_shared<IPPAttributeGroup>(); }};

namespace {
const IPPGroupRegistration registration(IPPAttributeGroup::descriptor);
}

IPPAttributeGroup::~IPPAttributeGroup() = default;

IPPAttributeGroup::Pointer IPPAttributeGroup::operationGroup() {
  return IPPOperationGroup::descriptor.make();
}

IPPAttributeGroup::Pointer IPPAttributeGroup::printerGroup() {
  return IPPPrinterGroup::descriptor.make();
}

IPPAttributeGroup::Pointer IPPAttributeGroup::jobGroup() { return IPPJobGroup::descriptor.make(); }

IPPAttributeGroup::Pointer IPPAttributeGroup::subscriptionGroup() {
  return IPPSubscriptionGroup::descriptor.make();
}

IPPAttributeGroup::Pointer IPPAttributeGroup::notificationEventGroup() {
  return IPPNotificationEventGroup::descriptor.make();
}

const IPPGroupClass& IPPAttributeGroup::ippClass() const noexcept { return descriptor; }

std::string_view IPPAttributeGroup::className() const noexcept { return ippClass().className(); }

IPPAttributeGroup::Attributes IPPAttributeGroup::attributesForName(std::string_view pattern) const {
  const LikePattern like(pattern);
  Attributes matching;
  std::copy_if(
      attributes_.begin(), attributes_.end(), std::back_inserter(matching),
      [&](const auto& attribute) { return attribute->name() && like.matches(*attribute->name()); });
  return matching;
}

std::shared_ptr<IPPAttribute> IPPAttributeGroup::attributeForName(std::string_view pattern) const {
  const LikePattern like(pattern);
  const auto found = std::find_if(
      attributes_.begin(), attributes_.end(),
      [&](const auto& attribute) { return attribute->name() && like.matches(*attribute->name()); });
  return found == attributes_.end() ? nullptr : *found;
}

std::shared_ptr<IPPAttribute> IPPAttributeGroup::attributeWithName(std::string_view pattern) const {
  return attributeForName(pattern);
}

RawValue IPPAttributeGroup::attributeValueForKey(std::string_view pattern) const {
  return rawValueOf(attributeForName(pattern));
}

std::optional<RawValue::Array> IPPAttributeGroup::attributeValuesArrayForKey(
    std::string_view pattern) const {
  RawValue value = attributeValueForKey(pattern);
  if (value.isAbsent()) {
    return std::nullopt;
  }
  return value.isArray() ? value.asArray() : RawValue::Array{std::move(value)};
}

std::optional<RawValue::Dictionary> IPPAttributeGroup::namedValues() const {
  if (attributes_.empty()) {
    return std::nullopt;
  }
  RawValue::Dictionary values;
  for (const auto& attribute : attributes_) {
    const RawValue value = rawValueOf(attribute);
    values.set(attribute->name().value_or(""), value.isAbsent() ? RawValue(Null()) : value);
  }
  return values;
}

// Null rather than a failure, unlike a message: see the header.
KeyValue IPPAttributeGroup::valueForUndefinedKey(std::string_view key) const {
  return attributeWithName(key);
}

void IPPAttributeGroup::addAttribute(std::shared_ptr<IPPAttribute> attribute) {
  if (attribute != nullptr) {
    attributes_.push_back(std::move(attribute));
  }
}

void IPPAttributeGroup::addAttributesFromArray(const Attributes& attributes) {
  for (const auto& attribute : Attributes(attributes)) {  // a copy: it may be our own list
    addAttribute(attribute);
  }
}

void IPPAttributeGroup::addNamedValues(const IPPValueDictionary& values) {
  for (const auto& [name, value] : values) {
    addAttribute(IPPAttribute::attributeWithValue(value, name));
  }
}

IPPAttributeGroup::Attributes IPPAttributeGroup::_sortedForRequestAttributes() const {
  return attributes_;
}

bool IPPAttributeGroup::isEqual(const IPPAttributeGroup& other) const {
  return other.ippClass().isKindOf(ippClass()) && _isEqualToAttributeGroup(other);
}

bool IPPAttributeGroup::_isEqualToAttributeGroup(const IPPAttributeGroup& other) const {
  return std::equal(attributes_.begin(), attributes_.end(), other.attributes_.begin(),
                    other.attributes_.end(),
                    [](const auto& left, const auto& right) { return left->isEqual(*right); });
}

// Of the names alone: a group's kind has no say in equality, and out-of-band values are equal
// without having equal hashes.
std::size_t IPPAttributeGroup::hash() const {
  std::size_t hash = attributes_.size();
  for (const auto& attribute : attributes_) {
    hash = combineHashes(hash, std::hash<std::string_view>()(attribute->name().value_or("")));
  }
  return hash;
}

IPPAttributeGroup::Pointer IPPAttributeGroup::copy() const {
  Pointer group = ippClass().make();
  group->attributes_ = attributes_;
  return group;
}

std::string IPPAttributeGroup::description() const {
  std::string text(name());
  text += " = (";
  for (const auto& attribute : attributes_) {
    text += &attribute == &attributes_.front() ? "\n    " : ",\n    ";
    text += attribute->description();
  }
  return text + (attributes_.empty() ? ")" : "\n)");
}

void IPPAttributeGroup::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeObjectsForKey({attributes_.begin(), attributes_.end()}, kAttributesKey);
    return;
  }
  coder.encodeByte(static_cast<std::uint8_t>(ippTag()));
  for (const auto& attribute : _sortedForRequestAttributes()) {
    coder.encodeObject(*attribute);
  }
}

std::shared_ptr<IPPAttributeGroup> IPPGroupClass::initWithCoder(IPPCoder& coder) const {
  auto group = make();
  if (!coder.allowsKeyedCoding()) {
    return group;
  }
  for (const IPPCoder::Object& object : coder.decodeObjectsForKey(kAttributesKey)) {
    // The archive hands out what it has just made for us: nobody else holds it as const.
    group->addAttribute(std::const_pointer_cast<IPPAttribute>(
        std::dynamic_pointer_cast<const IPPAttribute>(object)));
  }
  return group;
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPAttributeGroup::ippTag>("ippTag"),
    property<&IPPAttributeGroup::name>("name"),
    property<&IPPAttributeGroup::attributes>("attributes"),
    property<&IPPAttributeGroup::namedValues>("namedValues"),
    property<&IPPAttributeGroup::hash>("hash"),
    property<&IPPAttributeGroup::copy>("copy"),
    property<&IPPAttributeGroup::description>("description"),
};

}  // namespace

const KeyValueProperties& IPPAttributeGroup::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPCodable::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
