// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What the descriptors of the string classes are put together from.

#include <memory>

#include "platen/IPPStringValue.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

template <std::size_t limit>
bool acceptsStringBelow(const RawValue& object) {
  return isStringBelow(object, limit);
}

template <class Value>
IPPValue::Pointer makeString(const RawValue& object) {
  return std::make_shared<const Value>(textIn(object));
}

/// Reads a string value, on the sequential face with the primitive field that fits its syntax.
template <class Value, Text (IPPCoder::*field)()>
IPPValue::Pointer decodeString(IPPCoder& coder) {
  return coder.allowsKeyedCoding()
             ? coder.make<Value>(textIn(coder.decodeRawValueForKey(kValueKey)))
             : coder.makePlain<Value>((coder.*field)());
}

/// The descriptor of a string class whose values have fewer than `limit` characters.
template <class Value, std::size_t limit, Text (IPPCoder::*field)()>
constexpr IPPValueClass stringClass(std::string_view className, std::uint8_t tag,
                                    std::string_view syntaxName) {
  return {className,         tag,
          syntaxName,        acceptsStringBelow<limit>,
          makeString<Value>, decodeString<Value, field>};
}

}  // namespace platen::inline v0
