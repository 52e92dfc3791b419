// SPDX-License-Identifier: Apache-2.0

/// How a message answers keys: its own properties, and the keys that are none.

#include "platen/IPPMessageKVCForwarder.h"
#include "platform/KeyValueProperties.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kAllKey = "@all";
constexpr std::string_view kDefaultKey = "@default";
constexpr std::string_view kSupportedKey = "@supported";

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPMessage::dataRepresentation>("dataRepresentation"),
    property<&IPPMessage::ippTag>("ippTag"),
    property<&IPPMessage::requestId>("requestId"),
    property<&IPPMessage::ippGroups>("ippGroups"),
    property<&IPPMessage::sortedGroupsForIPPCoding>("sortedGroupsForIPPCoding"),
    property<&IPPMessage::operationGroup>("operationGroup"),
    property<&IPPMessage::subscriptionGroup>("subscriptionGroup"),
    property<&IPPMessage::printerGroups>("printerGroups"),
    property<&IPPMessage::jobGroups>("jobGroups"),
    property<&IPPMessage::subscriptionGroups>("subscriptionGroups"),
    property<&IPPMessage::notificationEventsGroups>("notificationEventsGroups"),
    property<&IPPMessage::operationAttributes>("operationAttributes"),
    property<&IPPMessage::subscriptionAttributes>("subscriptionAttributes"),
    property<&IPPMessage::allAttributes>("allAttributes"),
    property<&IPPMessage::allNamedValues>("allNamedValues"),
    property<&IPPMessage::namedValues>("namedValues"),
    property<&IPPMessage::hash>("hash"),
    property<&IPPMessage::copy>("copy"),
    property<&IPPMessage::description>("description"),
};

// A message that no shared pointer holds is lent to the forwarder.
std::shared_ptr<const IPPMessage> share(const IPPMessage& message) {
  auto shared = message.weak_from_this().lock();
  return shared != nullptr ? shared
                           : std::shared_ptr<const IPPMessage>(std::shared_ptr<void>(), &message);
}

}  // namespace

const KeyValueProperties& IPPMessage::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPCodable::_keyValueProperties(), kProperties};
  return properties;
}

// The operator keys are compared letter for letter: "@ALL" is the name of an attribute, if any.
KeyValue IPPMessage::valueForUndefinedKey(std::string_view key) const {
  if (key == kAllKey) {
    return KeyValue(IPPMessageKVCOperatorAllForwarder::forwarderWithObject(share(*this)));
  }
  if (key == kDefaultKey) {
    return KeyValue(IPPMessageKVCOperatorDefaultForwarder::forwarderWithObject(share(*this)));
  }
  if (key == kSupportedKey) {
    return KeyValue(IPPMessageKVCOperatorSupportedForwarder::forwarderWithObject(share(*this)));
  }
  auto attribute = attributeForKey(key);
  return attribute != nullptr ? attribute : KeyValueAccess::valueForUndefinedKey(key);
}

}  // namespace platen::inline v0
