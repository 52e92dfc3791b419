// SPDX-License-Identifier: Apache-2.0
#include "coding/FieldCheck.h"

#include "coding/ArchiveKeys.h"
#include "coding/RawValueNode.h"

namespace platen::inline v0 {

void FieldCheck::check(const IPPCodable& object, const ArchiveNode& node, const ArchiveNode& root,
                       const MadeOf& madeOf) {
  FieldCheck coder(object.className(), node, root, madeOf);
  object.encodeWithCoder(coder);
  coder.requireNoOther();
}

void FieldCheck::refuse(const ArchiveNode& place, IPPArchiveError code, std::string what) const {
  throw ArchiveFault{code, keyPathOf(place, root_), std::move(what)};
}

const ArchiveNode& FieldCheck::field(std::string_view key) {
  const ArchiveNode* found = node_.find(key);
  if (found == nullptr) {
    refuse(node_, IPPArchiveError::missingKey, "the key " + quotedForFault(key) + " is missing");
  }
  seen_.emplace(key);
  return *found;
}

const ArchiveNode& FieldCheck::part(const ArchiveNode& member, std::string_view key) const {
  const ArchiveNode* found = member.find(key);
  if (found == nullptr) {
    refuse(member, IPPArchiveError::wrongType, className_ + " has a member here");
  }
  return *found;
}

const ArchiveNode::Array& FieldCheck::list(std::string_view key) {
  const ArchiveNode& found = field(key);
  const ArchiveNode::Array* items = found.ifArray();
  if (items == nullptr) {
    refuse(found, IPPArchiveError::wrongType, className_ + " has a list here");
  }
  return *items;
}

void FieldCheck::requireEqual(const ArchiveNode& field, const ArchiveNode& written) const {
  if (field == written) {
    return;
  }
  if (field.ifInt() != nullptr && written.ifInt() != nullptr) {
    refuse(field, IPPArchiveError::outOfRange,
           std::to_string(*field.ifInt()) + " does not fit " + className_);
  }
  refuse(field, IPPArchiveError::wrongType,
         className_ + " cannot be made of " + std::string(field.kind()));
}

void FieldCheck::refuseObject(const ArchiveNode& field) const {
  const IPPCodable* made = madeOf_(field);
  if (made != nullptr) {
    refuse(field, IPPArchiveError::wrongType,
           className_ + " cannot hold an object of " + quotedForFault(made->className()));
  }
  refuse(field, IPPArchiveError::wrongType,
         className_ + (field.isAbsent() ? " cannot do without an object"
                                        : " does not read the object that is here"));
}

void FieldCheck::requireSame(const ArchiveNode& field, const IPPCodable* object) const {
  // Nothing is made of an object that the class never reads, and nothing is what it then writes.
  if (madeOf_(field) != object || (object == nullptr && !field.isAbsent())) {
    refuseObject(field);
  }
}

// As many as are there have been compared by now.
void FieldCheck::requireCount(const ArchiveNode::Array& items, std::size_t count) const {
  if (items.size() > count) {
    refuseObject(items[count]);
  }
  if (items.size() < count) {
    refuse(node_, IPPArchiveError::wrongType, className_ + " has more objects than this");
  }
}

void FieldCheck::requireNoOther() const {
  for (const auto& [key, value] : *node_.ifObject()) {
    const bool isOfArchive =
        key == kClassKey || key == kIdKey || (key == kArchiveKey && &node_ == &root_);
    if (!isOfArchive && !seen_.contains(key)) {
      refuse(value, IPPArchiveError::unknownKey, className_ + " has no such key");
    }
  }
}

void FieldCheck::encodeIntForKey(std::int64_t value, std::string_view key) {
  requireEqual(field(key), ArchiveNode(value));
}

void FieldCheck::encodeBoolForKey(bool value, std::string_view key) {
  requireEqual(field(key), ArchiveNode(value));
}

void FieldCheck::encodeStringForKey(std::optional<std::string_view> value, std::string_view key) {
  requireEqual(field(key), value ? ArchiveNode(*value) : ArchiveNode());
}

void FieldCheck::encodeRawValueForKey(const RawValue& value, std::string_view key) {
  requireEqual(field(key), nodeOf(value));
}

void FieldCheck::encodeObjectForKey(const Object& object, std::string_view key) {
  requireSame(field(key), object.get());
}

void FieldCheck::encodeObjectsForKey(const std::vector<Object>& objects, std::string_view key) {
  const ArchiveNode::Array& items = list(key);
  for (std::size_t i = 0; i < items.size() && i < objects.size(); ++i) {
    requireSame(items[i], objects[i].get());
  }
  requireCount(items, objects.size());
}

void FieldCheck::encodeNamedObjectsForKey(const Dictionary<Object>& objects, std::string_view key) {
  const ArchiveNode::Array& members = list(key);
  for (std::size_t i = 0; i < members.size() && i < objects.size(); ++i) {
    const auto& [name, object] = objects.begin()[static_cast<std::ptrdiff_t>(i)];
    // First: after a member that was dropped every name is another one.
    requireSame(part(members[i], kEntryValueKey), object.get());
    requireEqual(part(members[i], kEntryNameKey), ArchiveNode(name));
  }
  if (members.size() > objects.size()) {
    refuseObject(part(members[objects.size()], kEntryValueKey));
  }
  requireCount(members, objects.size());
}

}  // namespace platen::inline v0
