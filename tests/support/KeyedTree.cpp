// SPDX-License-Identifier: Apache-2.0

#include "tests/support/KeyedTree.h"

#include "platen/IPPArray.h"
#include "platen/IPPAttribute.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPMessage.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/IPPValue.h"

namespace platen::test {
namespace {

std::string textOfNode(const KeyedTree::Pointer& node) {
  return node == nullptr ? "absent" : node->description();
}

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

struct FieldText {
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(const KeyedTree::Text& text) const {
    return text ? quoted(*text) : "absent";
  }
  std::string operator()(const RawValue& value) const {
    return value.isString() ? quoted(value.asString()) : value.description();
  }
  std::string operator()(const KeyedTree::Pointer& node) const { return textOfNode(node); }
  std::string operator()(const KeyedTree::List& nodes) const {
    std::string text;
    for (const auto& node : nodes) {
      text += (text.empty() ? "" : ", ") + textOfNode(node);
    }
    return "[" + text + "]";
  }
  std::string operator()(const KeyedTree::NamedList& nodes) const {
    std::string text;
    for (const auto& [name, node] : nodes) {
      text += (text.empty() ? "" : ", ") + name + ": " + textOfNode(node);
    }
    return "[" + text + "]";
  }
};

}  // namespace

std::string KeyedTree::description() const {
  std::string text = className + "{";
  for (const auto& [key, field] : fields) {
    text += (text.back() == '{' ? "" : ", ") + key + "=" + std::visit(FieldText(), field);
  }
  return text + "}";
}

KeyedTree::Pointer KeyedTreeWriter::archive(const IPPCodable& object) {
  Met met;
  auto node = std::make_shared<KeyedTree>();
  node->className = object.className();
  KeyedTreeWriter writer(*node, met);
  object.encodeWithCoder(writer);
  return node;
}

KeyedTree::Pointer KeyedTreeWriter::nodeFor(const Object& object) {
  if (object == nullptr) {
    return nullptr;
  }
  const auto [found, isNew] = met_.try_emplace(object, std::make_shared<KeyedTree>());
  const KeyedTree::Pointer node = found->second;
  if (isNew) {
    node->className = object->className();
    KeyedTreeWriter writer(*node, met_);
    object->encodeWithCoder(writer);
  }
  return node;
}

void KeyedTreeWriter::set(std::string_view key, KeyedTree::Field field) {
  node_.fields.insert_or_assign(std::string(key), std::move(field));
}

void KeyedTreeWriter::encodeIntForKey(std::int64_t value, std::string_view key) { set(key, value); }

void KeyedTreeWriter::encodeBoolForKey(bool value, std::string_view key) { set(key, value); }

void KeyedTreeWriter::encodeStringForKey(std::optional<std::string_view> value,
                                         std::string_view key) {
  set(key, value ? KeyedTree::Text(std::string(*value)) : KeyedTree::Text());
}

void KeyedTreeWriter::encodeRawValueForKey(const RawValue& value, std::string_view key) {
  set(key, value);
}

void KeyedTreeWriter::encodeObjectForKey(const Object& object, std::string_view key) {
  set(key, nodeFor(object));
}

void KeyedTreeWriter::encodeObjectsForKey(const std::vector<Object>& objects,
                                          std::string_view key) {
  KeyedTree::List nodes;
  for (const Object& object : objects) {
    nodes.push_back(nodeFor(object));
  }
  set(key, std::move(nodes));
}

void KeyedTreeWriter::encodeNamedObjectsForKey(const Dictionary<Object>& objects,
                                               std::string_view key) {
  KeyedTree::NamedList nodes;
  for (const auto& [name, object] : objects) {
    nodes.emplace_back(name, nodeFor(object));
  }
  set(key, std::move(nodes));
}

namespace {

const IPPValueClass* valueClassNamed(std::string_view className) {
  if (className == IPPArray::descriptor.className()) {
    return &IPPArray::descriptor;
  }
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    if (valueClass->className() == className) {
      return valueClass;
    }
  }
  return nullptr;
}

const IPPGroupClass* groupClassNamed(std::string_view className) {
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    if (groupClass->className() == className) {
      return groupClass;
    }
  }
  return nullptr;
}

IPPCoder::Object makeObject(std::string_view className, IPPCoder& coder) {
  if (className == "IPPAttribute") {
    return IPPAttribute::initWithCoder(coder);
  }
  if (className == "IPPMessage") {
    return IPPMessage::initWithCoder(coder);
  }
  if (className == "IPPRequest") {
    return IPPRequest::initWithCoder(coder);
  }
  if (className == "IPPResponse") {
    return IPPResponse::initWithCoder(coder);
  }
  if (const IPPGroupClass* groupClass = groupClassNamed(className)) {
    return groupClass->initWithCoder(coder);
  }
  const IPPValueClass* valueClass = valueClassNamed(className);
  return valueClass == nullptr ? nullptr : valueClass->initWithCoder(coder);
}

}  // namespace

IPPCoder::Object KeyedTreeReader::unarchive(const KeyedTree::Pointer& node) {
  Made made;
  return objectFor(node, made);
}

IPPCoder::Object KeyedTreeReader::objectFor(const KeyedTree::Pointer& node, Made& made) {
  if (node == nullptr) {
    return nullptr;
  }
  if (const auto found = made.find(node); found != made.end()) {
    return found->second;
  }
  KeyedTreeReader reader(*node, made);
  Object object = makeObject(node->className, reader);
  made.emplace(node, object);
  return object;
}

template <class Field>
Field KeyedTreeReader::get(std::string_view key) const {
  const auto found = node_.fields.find(key);
  const auto* field = found == node_.fields.end() ? nullptr : std::get_if<Field>(&found->second);
  return field == nullptr ? Field() : *field;
}

std::int64_t KeyedTreeReader::decodeIntForKey(std::string_view key) {
  return get<std::int64_t>(key);
}

bool KeyedTreeReader::decodeBoolForKey(std::string_view key) { return get<bool>(key); }

std::optional<std::string> KeyedTreeReader::decodeStringForKey(std::string_view key) {
  return get<KeyedTree::Text>(key);
}

RawValue KeyedTreeReader::decodeRawValueForKey(std::string_view key) { return get<RawValue>(key); }

IPPCoder::Object KeyedTreeReader::decodeObjectForKey(std::string_view key) {
  return objectFor(get<KeyedTree::Pointer>(key), made_);
}

std::vector<IPPCoder::Object> KeyedTreeReader::decodeObjectsForKey(std::string_view key) {
  std::vector<Object> objects;
  for (const auto& node : get<KeyedTree::List>(key)) {
    objects.push_back(objectFor(node, made_));
  }
  return objects;
}

Dictionary<IPPCoder::Object> KeyedTreeReader::decodeNamedObjectsForKey(std::string_view key) {
  Dictionary<Object> objects;
  for (const auto& [name, node] : get<KeyedTree::NamedList>(key)) {
    objects.set(name, objectFor(node, made_));
  }
  return objects;
}

}  // namespace platen::test
