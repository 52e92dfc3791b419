// SPDX-License-Identifier: Apache-2.0

/// How attributes come into a request and out of it again.

#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"
#include "platform/UserEnvironment.h"

namespace platen::inline v0 {

void IPPRequest::addDefaultRequestAttributes() {
  addOperationValue(IPPValue::charset("utf-8"), kIPPAttributesCharsetAttributeName);
  addOperationValue(IPPValue::naturalLanguage(currentLanguageTag()),
                    kIPPAttributesNaturalLanguageAttributeName);
}

void IPPRequest::addRequestingUserNameAttribute() {
  addOperationValue(IPPValue::nameWithoutLanguage(loginName()),
                    kIPPRequestingUserNameAttributeName);
}

void IPPRequest::setRequestedAttributes(std::span<const std::string> names) {
  addOperationValue(IPPValue::arrayOfKeywords(names), kIPPRequestedAttributesAttributeName);
}

const IPPMessage::Group& IPPRequest::demand(Group& field, const IPPGroupClass& groupClass) {
  if (field == nullptr) {
    field = groupClass.make();
    addGroup(field);
  }
  return field;
}

const IPPMessage::Group& IPPRequest::_operationGroup() {
  return demand(operationGroup_, IPPOperationGroup::descriptor);
}

const IPPMessage::Group& IPPRequest::_subscriptionGroup() {
  return demand(subscriptionGroup_, IPPSubscriptionGroup::descriptor);
}

const IPPMessage::Group& IPPRequest::_jobGroup() {
  return demand(jobGroup_, IPPJobGroup::descriptor);
}

// A null attribute is not even asked for a group: an empty one would go out on the wire.

void IPPRequest::addOperationAttribute(std::shared_ptr<IPPAttribute> attribute) {
  if (attribute != nullptr) {
    _operationGroup()->addAttribute(std::move(attribute));
  }
}

void IPPRequest::addSubscriptionAttribute(std::shared_ptr<IPPAttribute> attribute) {
  if (attribute != nullptr) {
    _subscriptionGroup()->addAttribute(std::move(attribute));
  }
}

void IPPRequest::addJobAttribute(std::shared_ptr<IPPAttribute> attribute) {
  if (attribute != nullptr) {
    _jobGroup()->addAttribute(std::move(attribute));
  }
}

void IPPRequest::addOperationValue(IPPValue::Pointer value, std::string_view name) {
  addOperationAttribute(IPPAttribute::attributeWithValue(std::move(value), name));
}

void IPPRequest::addSubscriptionValue(IPPValue::Pointer value, std::string_view name) {
  addSubscriptionAttribute(IPPAttribute::attributeWithValue(std::move(value), name));
}

void IPPRequest::addNamedValues(const IPPValueDictionary& values, std::string_view groupName) {
  const Groups groups = ippGroupsWithName(groupName);
  Group group = groups.empty() ? nullptr : groups.back();
  if (group == nullptr && groupName == kIPPOperationGroupName) {
    group = _operationGroup();
  } else if (group == nullptr && groupName == kIPPSubscriptionGroupName) {
    group = _subscriptionGroup();
  } else if (group == nullptr && groupName == kIPPJobGroupName) {
    group = _jobGroup();
  }
  if (group != nullptr) {
    group->addNamedValues(values);
  }
}

}  // namespace platen::inline v0
