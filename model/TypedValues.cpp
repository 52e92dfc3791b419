// SPDX-License-Identifier: Apache-2.0
#include "model/TypedValues.h"

#include <limits>

namespace platen::inline v0 {

std::optional<URL> urlIn(const RawValue& object) {
  return object.isURL() ? std::optional(object.asURL()) : std::nullopt;
}

std::optional<std::string> stringIn(const RawValue& object) {
  return object.isString() ? std::optional(object.asString()) : std::nullopt;
}

namespace {

const Number* integralIn(const RawValue& object) {
  const Number* const number = object.ifNumber();
  return number == nullptr || number->isBoolean() || number->isReal() ? nullptr : number;
}

}  // namespace

std::optional<std::int32_t> integerIn(const RawValue& object) {
  const Number* const number = integralIn(object);
  if (number == nullptr) return std::nullopt;
  // The wire has 32 bits; only a value that an application made can be wider.
  const std::int64_t wide = number->int64Value();
  if (wide < std::numeric_limits<std::int32_t>::min() ||
      wide > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(wide);
}

std::optional<bool> booleanIn(const RawValue& object) {
  const Number* const number = object.ifNumber();
  return number != nullptr && number->isBoolean() ? std::optional(number->boolValue())
                                                  : std::nullopt;
}

RawValue urlOrStringIn(const RawValue& object) {
  return object.isURL() || object.isString() ? object : RawValue();
}

std::uint32_t printerTypeIn(const RawValue& object) {
  const Number* const number = integralIn(object);
  return number == nullptr ? 0 : number->unsignedIntValue();
}

std::optional<std::string> firstStringIn(const RawValue& object) {
  const RawValue::Array* const set = object.ifArray();
  if (set == nullptr) return stringIn(object);
  return set->empty() ? std::nullopt : stringIn(set->front());
}

std::optional<std::vector<std::string>> stringsIn(const RawValue& object) {
  if (object.isString()) return std::vector<std::string>{object.asString()};
  const RawValue::Array* const set = object.ifArray();
  if (set == nullptr) return std::nullopt;
  std::vector<std::string> strings;
  for (const RawValue& value : *set) {
    if (value.isString()) strings.push_back(value.asString());
  }
  return strings.empty() && !set->empty() ? std::nullopt : std::optional(std::move(strings));
}

}  // namespace platen::inline v0
