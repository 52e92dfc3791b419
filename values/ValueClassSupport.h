// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What the descriptors of the value classes are put together from.

#include <memory>
#include <string_view>

#include "platen/Exception.h"
#include "platen/IPPValue.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {

inline constexpr std::string_view kInvalidParameter = "Invalid parameter";
inline constexpr std::string_view kValueKey = "value";

/// Accepts nothing: the answer of the classes that cannot be made from a raw object.
inline bool acceptsNothing(const RawValue& /*object*/) { return false; }

/// A value of a class that stores nothing.
template <class Value>
IPPValue::Pointer makeEmpty(const RawValue& /*object*/) {
  return std::make_shared<const Value>();
}

/// The same, from a coder: nothing is read.
template <class Value>
IPPValue::Pointer decodeEmpty(IPPCoder& coder) {
  return coder.makePlain<Value>();
}

/// True for a string of fewer than `limit` characters.
inline bool isStringBelow(const RawValue& object, std::size_t limit) {
  const std::string* string = object.ifString();
  return string != nullptr && countCodePoints(*string) < limit;
}

/// The string of a raw object, absent for every other kind.
inline Text textIn(const RawValue& object) {
  const std::string* string = object.ifString();
  return string == nullptr ? Text() : Text(*string);
}

/// Raises when the length of a fixed-size body is not the expected one.
inline void requireLength(std::int16_t length, std::int16_t expected, const char* reason) {
  if (length != expected) {
    throw RangeException(reason);
  }
}

}  // namespace platen::inline v0
