// SPDX-License-Identifier: Apache-2.0

/// Where a key leads to from the result of another one.

#include "platen/Error.h"
#include "platen/Exception.h"
#include "platen/IPPMessageKVCForwarder.h"
#include "platform/KeyPath.h"
#include "platform/KeyValueProperties.h"

namespace platen::inline v0 {

namespace {

struct RawKindName {
  std::string_view operator()(std::monostate) const { return "absent"; }
  std::string_view operator()(Null) const { return "null"; }
  std::string_view operator()(const std::string&) const { return "string"; }
  std::string_view operator()(const URL&) const { return "URL"; }
  std::string_view operator()(const Number&) const { return "number"; }
  std::string_view operator()(const Range&) const { return "range"; }
  std::string_view operator()(const Size&) const { return "size"; }
  std::string_view operator()(const Date&) const { return "date"; }
  std::string_view operator()(const RawValue::Array&) const { return "list"; }
  std::string_view operator()(const RawValue::Dictionary&) const { return "dictionary"; }
};

// What a failure calls that which was asked.
struct ClassName {
  std::string_view operator()(std::monostate) const { return "absent"; }
  std::string_view operator()(const RawValue& object) const { return object.visit(RawKindName()); }
  std::string_view operator()(const Data&) const { return "data"; }
  std::string_view operator()(const std::shared_ptr<const Error>&) const { return "Error"; }
  std::string_view operator()(const KeyValue::Array&) const { return "list"; }
  std::string_view operator()(const KeyValue::Dictionary&) const { return "dictionary"; }
  template <class Object>
  std::string_view operator()(const std::shared_ptr<Object>& object) const {
    return object->className();
  }
};

[[noreturn]] void refuse(const KeyValue& asked, std::string_view key) {
  throw UndefinedKeyException(asked.visit(ClassName()), key);
}

// Recurses by the nesting of lists in one another, whatever the length of the path.
struct Lookup {
  const KeyValue& asked;
  std::string_view key;

  KeyValue operator()(std::monostate) const { return {}; }
  KeyValue operator()(const RawValue& object) const {
    return object.isNull() ? asked : (refuse(asked, key), KeyValue());
  }
  KeyValue operator()(const Data&) const { refuse(asked, key); }
  KeyValue operator()(const std::shared_ptr<const Error>& error) const {
    auto value = errorProperty(*error, key);
    return value ? std::move(*value) : (refuse(asked, key), KeyValue());
  }
  KeyValue operator()(const KeyValue::Array& list) const {
    KeyValue::Array values;
    values.reserve(list.size());
    for (const KeyValue& element : list) {
      KeyValue value = element.valueForKey(key);
      values.push_back(value.isAbsent() ? KeyValue(Null()) : std::move(value));
    }
    return values;
  }
  KeyValue operator()(const KeyValue::Dictionary& dictionary) const {
    const KeyValue* value = dictionary.find(key);
    return value == nullptr ? KeyValue() : *value;
  }
  template <class Object>
  KeyValue operator()(const std::shared_ptr<Object>& object) const {
    return object->valueForKey(key);
  }
};

}  // namespace

KeyValue KeyValue::valueForKey(std::string_view key) const { return visit(Lookup{*this, key}); }

KeyValue KeyValue::valueForKeyPath(std::string_view path) const {
  if (!isKeyPath(path)) {
    refuse(*this, path);
  }
  KeyValue value = valueForKey(takeKey(path));
  while (!path.empty()) {
    value = value.valueForKey(takeKey(path));
  }
  return value;
}

}  // namespace platen::inline v0
