// SPDX-License-Identifier: Apache-2.0

/// The error record of a response, and the look-ups that it is made of.

#include <algorithm>
#include <cstdio>

#include "platen/IPPArray.h"
#include "platen/IPPConstants.h"
#include "platen/IPPMap.h"
#include "platen/IPPResponse.h"
#include "platen/IPPStringValue.h"

namespace platen::inline v0 {

namespace {

// False for values whose raw objects are costly to make, and of another kind than `value`.
bool mayBe(const IPPValue& held, const RawValue& value) {
  if (dynamic_cast<const IPPArray*>(&held) != nullptr) {
    return value.isArray();
  }
  if (dynamic_cast<const IPPMap*>(&held) != nullptr) {
    return value.isDictionary();
  }
  return value.isURL() || dynamic_cast<const IPPUri*>(&held) == nullptr;
}

std::string describeStatus(const IPPResponse& response) {
  if (const auto name = response.statusDescription()) {
    return std::string(*name);
  }
  char text[32];
  std::snprintf(text, sizeof text, "unknown status 0x%04x",
                static_cast<unsigned>(response.statusCode()) & 0xFFFFU);
  return text;
}

void addNames(Error::UserInfo& userInfo, std::string_view key, std::vector<std::string> names) {
  if (!names.empty()) {
    userInfo.emplace(key, std::move(names));
  }
}

}  // namespace

std::shared_ptr<const Error> IPPResponse::status() const {
  Error::UserInfo userInfo;
  userInfo.emplace(kLocalizedDescriptionKey, describeStatus(*this));
  addNames(userInfo, IPPErrorUnsupportedAttributeNames, _allUnsupportedAttributeNames());
  addNames(userInfo, IPPErrorUnknownAttributeValues, _allUnknownAttributeNames());
  addNames(userInfo, IPPErrorNoValueAttributes, _allNoValueAttributeNames());
  addNames(userInfo, IPPErrorNotSettableAttributes, _allNotSettableAttributeNames());
  addNames(userInfo, IPPErrorAdminDefineAttributes, _allAdminDefineAttributeNames());
  return std::make_shared<const Error>(std::string(IPPErrorDomain), statusCode(),
                                       std::move(userInfo));
}

std::vector<std::string> IPPResponse::_allUnsupportedAttributeNames() const {
  return _allAttributeNamesFromGroupsNamed(kIPPUnsupportedAttributesGroupName,
                                           kIPPUnsupportedSyntaxName);
}

std::vector<std::string> IPPResponse::_allUnknownAttributeNames() const {
  return _allAttributeNamesFromGroupsNamed(kIPPUnsupportedAttributesGroupName,
                                           kIPPUnknownSyntaxName);
}

std::vector<std::string> IPPResponse::_allNoValueAttributeNames() const {
  return _allAttributeNamesFromGroupsNamed(kIPPUnsupportedAttributesGroupName,
                                           kIPPNoValueSyntaxName);
}

std::vector<std::string> IPPResponse::_allNotSettableAttributeNames() const {
  return _allAttributeNamesFromGroupsNamed(kIPPUnsupportedAttributesGroupName,
                                           kIPPNotSettableSyntaxName);
}

std::vector<std::string> IPPResponse::_allAdminDefineAttributeNames() const {
  return _allAttributeNamesFromGroupsNamed(kIPPUnsupportedAttributesGroupName,
                                           kIPPAdminDefineSyntaxName);
}

std::vector<std::string> IPPResponse::_allAttributeNamesFromGroupsNamed(
    std::string_view groupName, std::string_view syntaxName) const {
  std::vector<std::string> names;
  for (const Group& group : ippGroupsWithName(groupName)) {
    for (const auto& attribute : group->attributes()) {
      if (attribute->ippValue() != nullptr && attribute->ippValue()->syntaxName() == syntaxName) {
        names.emplace_back(attribute->name().value_or(""));
      }
    }
  }
  return names;
}

std::optional<IPPMessage::Attributes> IPPResponse::_attributesForGroup(
    std::string_view groupName, const RawValue& value) const {
  if (value.isAbsent()) {  // which an empty text has too, and nobody means that
    return std::nullopt;
  }
  const auto holdsValue = [&](const std::shared_ptr<IPPAttribute>& attribute) {
    const auto& held = attribute->ippValue();
    return held != nullptr && mayBe(*held, value) && held->value() == value;
  };
  for (const Group& group : ippGroupsWithName(groupName)) {
    if (std::any_of(group->attributes().begin(), group->attributes().end(), holdsValue)) {
      return group->attributes();
    }
  }
  return std::nullopt;
}

std::optional<IPPMessage::Attributes> IPPResponse::_attributesForPrintQueue(
    const RawValue& value) const {
  return _attributesForGroup(kIPPPrinterGroupName, value);
}

std::optional<IPPMessage::Attributes> IPPResponse::_attributesForSubscriptionWithId(
    const RawValue& value) const {
  return _attributesForGroup(kIPPSubscriptionGroupName, value);
}

std::optional<IPPMessage::Attributes> IPPResponse::_attributesForJobWithUUID(
    const RawValue& value) const {
  return _attributesForGroup(kIPPJobGroupName, value);
}

RawValue IPPResponse::_attributeValueForPrintQueue(const RawValue& value,
                                                   std::string_view name) const {
  const auto attributes = _attributesForPrintQueue(value);
  if (!attributes) {
    return {};
  }
  const auto found =
      std::find_if(attributes->begin(), attributes->end(), [&](const auto& attribute) {
        return attribute->name() == name && attribute->ippValue() != nullptr;
      });
  return found == attributes->end() ? RawValue() : (*found)->ippValue()->value();
}

}  // namespace platen::inline v0
