// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPMessage.h"

#include <algorithm>
#include <typeinfo>

#include "platen/IPPCodableClass.h"
#include "platen/IPPConstants.h"
#include "platform/Hash.h"
#include "platform/LikePattern.h"

namespace platen::inline v0 {

IPPMessage::IPPMessage(std::int32_t tag, std::int32_t requestId, Groups groups)
    : tag_(tag), requestId_(requestId), groups_(std::move(groups)) {
  std::erase(groups_, nullptr);
}

IPPMessage::~IPPMessage() = default;

void IPPMessage::addGroup(Group group) {
  if (group != nullptr) {
    groups_.push_back(std::move(group));
  }
}

IPPMessage::Groups IPPMessage::sortedGroupsForIPPCoding() const { return groups_; }

IPPMessage::Groups IPPMessage::ippGroupsWithName(std::string_view pattern) const {
  const LikePattern like(pattern);
  Groups matching;
  std::copy_if(groups_.begin(), groups_.end(), std::back_inserter(matching),
               [&](const Group& group) { return like.matches(group->name()); });
  return matching;
}

namespace {

IPPMessage::Group firstOf(const IPPMessage::Groups& groups) {
  return groups.empty() ? nullptr : groups.front();
}

std::optional<IPPMessage::Attributes> attributesOf(const IPPMessage::Group& group) {
  return group == nullptr ? std::nullopt : std::optional(group->attributes());
}

RawValue valueOf(const IPPAttribute& attribute) {
  return attribute.ippValue() == nullptr ? RawValue() : attribute.ippValue()->value();
}

}  // namespace

IPPMessage::Group IPPMessage::operationGroup() const {
  return firstOf(ippGroupsWithName(kIPPOperationGroupName));
}

IPPMessage::Group IPPMessage::subscriptionGroup() const {
  return firstOf(ippGroupsWithName(kIPPSubscriptionGroupName));
}

IPPMessage::Groups IPPMessage::printerGroups() const {
  return ippGroupsWithName(kIPPPrinterGroupName);
}

IPPMessage::Groups IPPMessage::jobGroups() const { return ippGroupsWithName(kIPPJobGroupName); }

IPPMessage::Groups IPPMessage::subscriptionGroups() const {
  return ippGroupsWithName(kIPPSubscriptionGroupName);
}

IPPMessage::Groups IPPMessage::notificationEventsGroups() const {
  return ippGroupsWithName(kIPPNotificationEventGroupName);
}

std::optional<IPPMessage::Attributes> IPPMessage::operationAttributes() const {
  return attributesOf(operationGroup());
}

std::optional<IPPMessage::Attributes> IPPMessage::subscriptionAttributes() const {
  return attributesOf(subscriptionGroup());
}

IPPMessage::Attributes IPPMessage::attributesForKey(std::string_view pattern) const {
  const LikePattern like(pattern);
  Attributes matching;
  for (const Group& group : groups_) {
    std::copy_if(group->attributes().begin(), group->attributes().end(),
                 std::back_inserter(matching), [&](const auto& attribute) {
                   return attribute->name() && like.matches(*attribute->name());
                 });
  }
  return matching;
}

std::shared_ptr<IPPAttribute> IPPMessage::attributeForKey(std::string_view pattern) const {
  for (const Group& group : groups_) {
    if (auto attribute = group->attributeForName(pattern)) {
      return attribute;
    }
  }
  return nullptr;
}

RawValue IPPMessage::attributeValueForKey(std::string_view pattern) const {
  const auto attribute = attributeForKey(pattern);
  return attribute == nullptr ? RawValue() : valueOf(*attribute);
}

RawValue::Array IPPMessage::attributeValuesForKey(std::string_view pattern) const {
  RawValue::Array values;
  for (const auto& attribute : attributesForKey(pattern)) {
    values.push_back(valueOf(*attribute));
  }
  return values;
}

std::vector<IPPMessage::Attributes> IPPMessage::allAttributes() const {
  std::vector<Attributes> lists;
  for (const Group& group : groups_) {
    lists.push_back(group->attributes());
  }
  return lists;
}

std::vector<RawValue::Dictionary> IPPMessage::allNamedValues() const {
  std::vector<RawValue::Dictionary> dictionaries;
  for (const Group& group : groups_) {
    dictionaries.push_back(group->namedValues().value_or(RawValue::Dictionary()));
  }
  return dictionaries;
}

std::optional<RawValue::Dictionary> IPPMessage::namedValues() const {
  return groups_.empty() ? std::nullopt : groups_.front()->namedValues();
}

bool IPPMessage::isEqual(const IPPMessage& other) const {
  return typeid(*this) == typeid(other) && isEqualToMessage(other);
}

bool IPPMessage::isEqualToMessage(const IPPMessage& other) const {
  return tag_ == other.tag_ && requestId_ == other.requestId_ &&
         std::equal(groups_.begin(), groups_.end(), other.groups_.begin(), other.groups_.end(),
                    [](const Group& left, const Group& right) { return left->isEqual(*right); });
}

std::size_t IPPMessage::hash() const {
  std::size_t hash = groups_.size();
  for (const Group& group : groups_) {
    hash = combineHashes(hash, group->hash());
  }
  return hash;
}

std::shared_ptr<IPPMessage> IPPMessage::copy() const {
  std::shared_ptr<IPPMessage> message = makeEmptyCopy();
  message->tag_ = tag_;
  message->requestId_ = requestId_;
  message->groups_ = groups_;
  message->awakeAfterReading();
  return message;
}

std::shared_ptr<IPPMessage> IPPMessage::makeEmptyCopy() const {
  return std::make_shared<IPPMessage>(0, 0);
}

void IPPMessage::awakeAfterReading() {}

std::string IPPMessage::description() const {
  std::string text = "(";
  for (const Group& group : groups_) {
    text += &group == &groups_.front() ? "\n" : ",\n";
    text += group->description();
  }
  return text + (groups_.empty() ? ")" : "\n)");
}

namespace {
constinit const IPPCodableClass kCodableClass("IPPMessage",
                                              [](IPPCoder& coder) -> IPPCoder::Object {
                                                return IPPMessage::initWithCoder(coder);
                                              });
const IPPCodableRegistration registration(kCodableClass);
}  // namespace

std::string_view IPPMessage::className() const noexcept { return kCodableClass.className(); }

}  // namespace platen::inline v0
