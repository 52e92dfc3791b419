// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPMessageKVCForwarder.h"

#include "platen/Exception.h"
#include "platform/KeyValueProperties.h"
#include "platform/LikePattern.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kDefaultSuffix = "-default";
constexpr std::string_view kSupportedSuffix = "-supported";

// No more: every other key is the name of an attribute, "className" and "hash" too.
constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPMessageKVCForwarder::object>("object"),
    property<&IPPMessageKVCForwarder::description>("description"),
};

constexpr KeyValueProperties kForwarderProperties{nullptr, kProperties};

}  // namespace

IPPMessageKVCForwarder::IPPMessageKVCForwarder(std::shared_ptr<const IPPMessage> object) noexcept
    : object_(std::move(object)) {}

IPPMessageKVCForwarder::~IPPMessageKVCForwarder() = default;

const KeyValueProperties& IPPMessageKVCForwarder::_keyValueProperties() const noexcept {
  return kForwarderProperties;
}

std::string IPPMessageKVCForwarder::description() const { return KeyValue(object_).description(); }

KeyValue IPPMessageKVCForwarder::_attributesForKey(std::string_view key,
                                                   std::string_view suffix) const {
  if (object_ == nullptr) {
    throw UndefinedKeyException(className(), key);
  }
  return object_->attributesForKey(std::string(key).append(suffix));
}

std::string IPPMessageKVCForwarder::_descriptionOfAttributesWith(std::string_view part) const {
  if (object_ == nullptr) {
    return KeyValue().description();
  }
  IPPMessage::Attributes attributes = object_->attributesForKey("*");
  std::erase_if(attributes, [&](const auto& attribute) {
    return !containsFolded(attribute->name().value_or(""), part);
  });
  return KeyValue(attributes).description();
}

std::shared_ptr<IPPMessageKVCForwarder> IPPMessageKVCForwarder::forwarderWithObject(
    std::shared_ptr<const IPPMessage> object) {
  return std::make_shared<IPPMessageKVCForwarder>(std::move(object));
}

std::shared_ptr<IPPMessageKVCOperatorAllForwarder>
IPPMessageKVCOperatorAllForwarder::forwarderWithObject(std::shared_ptr<const IPPMessage> object) {
  return std::make_shared<IPPMessageKVCOperatorAllForwarder>(std::move(object));
}

std::shared_ptr<IPPMessageKVCOperatorDefaultForwarder>
IPPMessageKVCOperatorDefaultForwarder::forwarderWithObject(
    std::shared_ptr<const IPPMessage> object) {
  return std::make_shared<IPPMessageKVCOperatorDefaultForwarder>(std::move(object));
}

std::shared_ptr<IPPMessageKVCOperatorSupportedForwarder>
IPPMessageKVCOperatorSupportedForwarder::forwarderWithObject(
    std::shared_ptr<const IPPMessage> object) {
  return std::make_shared<IPPMessageKVCOperatorSupportedForwarder>(std::move(object));
}

KeyValue IPPMessageKVCOperatorAllForwarder::valueForUndefinedKey(std::string_view key) const {
  return _attributesForKey(key, "");
}

KeyValue IPPMessageKVCOperatorDefaultForwarder::valueForUndefinedKey(std::string_view key) const {
  return _attributesForKey(key, kDefaultSuffix);
}

KeyValue IPPMessageKVCOperatorSupportedForwarder::valueForUndefinedKey(std::string_view key) const {
  return _attributesForKey(key, kSupportedSuffix);
}

std::string IPPMessageKVCOperatorDefaultForwarder::description() const {
  return _descriptionOfAttributesWith(kDefaultSuffix);
}

std::string IPPMessageKVCOperatorSupportedForwarder::description() const {
  return _descriptionOfAttributesWith(kSupportedSuffix);
}

std::string_view IPPMessageKVCForwarder::className() const noexcept {
  return "IPPMessageKVCForwarder";
}

std::string_view IPPMessageKVCOperatorAllForwarder::className() const noexcept {
  return "IPPMessageKVCOperatorAllForwarder";
}

std::string_view IPPMessageKVCOperatorDefaultForwarder::className() const noexcept {
  return "IPPMessageKVCOperatorDefaultForwarder";
}

std::string_view IPPMessageKVCOperatorSupportedForwarder::className() const noexcept {
  return "IPPMessageKVCOperatorSupportedForwarder";
}

}  // namespace platen::inline v0
