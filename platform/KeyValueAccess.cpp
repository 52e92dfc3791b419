// SPDX-License-Identifier: Apache-2.0
#include "platen/KeyValueAccess.h"

#include "platen/Exception.h"
#include "platform/KeyPath.h"
#include "platform/KeyValueProperties.h"

namespace platen::inline v0 {

namespace {

constexpr KeyValueProperties kNoProperties{nullptr, {}};

}  // namespace

KeyValueAccess::~KeyValueAccess() = default;

const KeyValueProperties& KeyValueAccess::_keyValueProperties() const noexcept {
  return kNoProperties;
}

KeyValue KeyValueAccess::valueForKey(std::string_view key) const {
  for (const auto* level = &_keyValueProperties(); level != nullptr; level = level->base) {
    for (const auto& property : level->own) {
      if (property.name == key) {
        return property.get(*this);
      }
    }
  }
  return valueForUndefinedKey(key);
}

KeyValue KeyValueAccess::valueForKeyPath(std::string_view path) const {
  if (!isKeyPath(path)) {
    throw UndefinedKeyException(className(), path);
  }
  KeyValue value = valueForKey(takeKey(path));
  return path.empty() ? value : value.valueForKeyPath(path);
}

KeyValue KeyValueAccess::valueForUndefinedKey(std::string_view key) const {
  throw UndefinedKeyException(className(), key);
}

std::vector<std::string_view> KeyValueAccess::propertyNames() const {
  std::vector<std::string_view> names;
  for (const auto* level = &_keyValueProperties(); level != nullptr; level = level->base) {
    std::vector<std::string_view> own;
    for (const auto& property : level->own) {
      own.push_back(property.name);
    }
    names.insert(names.begin(), own.begin(), own.end());
  }
  return names;
}

}  // namespace platen::inline v0
