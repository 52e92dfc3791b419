// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPMap.h"

#include <algorithm>

#include "platform/KeyValueProperties.h"
#include "values/MapCoding.h"
#include "values/MemberList.h"
#include "values/Sharing.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

IPPValue::Pointer makeNoMap(const RawValue& /*object*/) { return nullptr; }

std::vector<IPPMap::Member> membersOf(const IPPValueDictionary& values) {
  std::vector<IPPMap::Member> members;
  members.reserve(values.size());
  for (const auto& [name, value] : values) {
    if (value == nullptr) {
      throw RangeException(std::string(kInvalidParameter));
    }
    members.emplace_back(Text(name), value);
  }
  return members;
}

}  // namespace

constinit const IPPValueClass IPPMap::descriptor{"IPPMap",       0x34,      "begCollection",
                                                 acceptsNothing, makeNoMap, decodeMap};

namespace {
const IPPValueRegistration registration(IPPMap::descriptor);
}

IPPMap::IPPMap(const IPPValueDictionary& values) : owned_(membersOf(values)), members_(owned_) {}

IPPMap::IPPMap(std::span<const Member> members, const Arena& home) noexcept
    : members_(members), home_(&home) {}

std::string_view IPPMap::nameAt(std::size_t index) const noexcept {
  return members_[index].first.viewOrEmpty();
}

const IPPValue& IPPMap::valueAt(std::size_t index) const noexcept {
  return *members_[index].second;
}

RawValue IPPMap::rawValue() const {
  RawValue::Dictionary dictionary;
  for (const auto& [name, value] : members_) {
    dictionary.set(name.viewOrEmpty(), value->rawValue());
  }
  return dictionary;
}

std::optional<IPPValueDictionary> IPPMap::dictionaryRepresentationValue() const {
  IPPValueDictionary dictionary;
  for (const auto& [name, value] : members_) {
    dictionary.set(name.viewOrEmpty(), share(value, home_));
  }
  return dictionary;
}

std::optional<std::string> IPPMap::stringValue() const {
  std::string text = "{";
  for (const auto& [name, value] : members_) {
    text.append(name.viewOrEmpty()).append(" = ").append(value->description()).append("; ");
  }
  return text + "}";
}

std::string IPPMap::description() const {
  std::string text = "{";
  for (const auto& [name, value] : members_) {
    text.append("\"").append(name.viewOrEmpty()).append("\" = \"");
    text.append(value->description()).append("\";\n");
  }
  return text + "} of collection";
}

namespace {

using Comparison = bool (IPPValue::*)(const IPPValue&) const;

// By name, since the order of the members says nothing. Members mostly do come in the same order,
// so each name is looked for where it stands in the other collection first.
bool haveEqualMembers(const IPPMap& left, const IPPMap& right, Comparison areEqual) {
  if (left.size() != right.size()) {
    return false;
  }
  std::optional<IPPValueDictionary> others;
  for (std::size_t i = 0; i < left.size(); ++i) {
    const IPPValue* other = left.nameAt(i) == right.nameAt(i) ? &right.valueAt(i) : nullptr;
    if (other == nullptr) {
      others = others ? std::move(others) : right.dictionaryRepresentationValue();
      const IPPValue::Pointer* found = others->find(left.nameAt(i));
      other = found == nullptr ? nullptr : found->get();
    }
    if (other == nullptr || !(left.valueAt(i).*areEqual)(*other)) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool IPPMap::isEqual(const IPPValue& other) const {
  const auto* map = dynamic_cast<const IPPMap*>(&other);
  return map != nullptr && haveEqualMembers(*this, *map, &IPPValue::_hasEqualRawValue);
}

bool IPPMap::_hasEqualRawValue(const IPPValue& other) const {
  const auto* map = dynamic_cast<const IPPMap*>(&other);
  return map != nullptr && haveEqualMembers(*this, *map, &IPPValue::isEqual);
}

IPPValue::Pointer IPPMap::copy() const {
  return std::make_shared<const IPPMap>(dictionaryRepresentationValue().value());
}

void IPPMap::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    Dictionary<IPPCoder::Object> objects;
    for (const auto& [name, value] : members_) {
      objects.set(name.viewOrEmpty(), share(value, home_));
    }
    coder.encodeNamedObjectsForKey(objects, kValueKey);
    return;
  }
  encodeMap(*this, coder);
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPMap::size>("size"),
};

}  // namespace

const KeyValueProperties& IPPMap::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPValueImpl::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
