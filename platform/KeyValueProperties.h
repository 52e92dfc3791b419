// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// How a class declares which of its operations are properties, in its own source file:
///
///     constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
///         property<&IPPAttribute::ippValue>("ippValue"),
///         property<&IPPAttribute::name>("name"),
///     };
///
///     const KeyValueProperties& IPPAttribute::_keyValueProperties() const noexcept {
///       static const KeyValueProperties properties{&IPPCodable::_keyValueProperties(),
///       kProperties}; return properties;
///     }
///
/// An operation that is missing, or stands under another name than its own, fails a test that
/// reads the public headers.

#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

#include "platen/KeyValue.h"
#include "platen/KeyValueAccess.h"

namespace platen::inline v0 {

/// One property: its name and how it is had from an object.
template <class Object>
struct KeyValueProperty {
  std::string_view name;
  KeyValue (*get)(const Object& object);
};

/// The properties of a class, and those of its base or null.
struct KeyValueProperties {
  const KeyValueProperties* base;
  std::span<const KeyValueProperty<KeyValueAccess>> own;
};

/// The class that a getter belongs to.
template <class Getter>
struct GetterOf;
template <class Result, class Object>
struct GetterOf<Result (Object::*)() const> {
  using Class = Object;
};
template <class Result, class Object>
struct GetterOf<Result (Object::*)() const noexcept> {
  using Class = Object;
};

/// The property `name`, whose result is converted here: a getter with a result that is no kind of
/// `KeyValue` does not compile.
template <auto getter>
constexpr auto property(std::string_view name) noexcept {
  using Class = typename GetterOf<decltype(getter)>::Class;
  using Object =
      std::conditional_t<std::is_base_of_v<KeyValueAccess, Class>, KeyValueAccess, Class>;
  return KeyValueProperty<Object>{name, [](const Object& object) {
                                    return KeyValue((static_cast<const Class&>(object).*getter)());
                                  }};
}

/// The property of an error record; nothing when it has none of that name.
std::optional<KeyValue> errorProperty(const Error& error, std::string_view name);

}  // namespace platen::inline v0
