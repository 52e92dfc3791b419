// SPDX-License-Identifier: Apache-2.0
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>

#include "platen/RawValue.h"

namespace platen::inline v0 {

namespace {

std::int64_t cutTowardZero(double value) noexcept {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63, the first double that does not fit
  if (std::isnan(value)) {
    return 0;
  }
  if (value >= kLimit) {
    return std::numeric_limits<std::int64_t>::max();
  }
  return value < -kLimit ? std::numeric_limits<std::int64_t>::min()
                         : static_cast<std::int64_t>(value);
}

}  // namespace

bool Number::boolValue() const noexcept {
  return isReal() ? std::get<double>(value_) != 0.0 : int64Value() != 0;
}

std::int32_t Number::intValue() const noexcept { return static_cast<std::int32_t>(int64Value()); }

std::uint32_t Number::unsignedIntValue() const noexcept {
  return static_cast<std::uint32_t>(int64Value());
}

std::int64_t Number::int64Value() const noexcept {
  if (const auto* integer = std::get_if<std::int64_t>(&value_)) {
    return *integer;
  }
  if (const auto* boolean = std::get_if<bool>(&value_)) {
    return *boolean ? 1 : 0;
  }
  return cutTowardZero(std::get<double>(value_));
}

double Number::doubleValue() const noexcept {
  return isReal() ? std::get<double>(value_) : static_cast<double>(int64Value());
}

std::string Number::stringValue() const {
  if (!isReal()) {
    return std::to_string(int64Value());
  }
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, std::get<double>(value_)).ptr;
  return {text, end};
}

std::size_t Number::hash() const noexcept {
  // By way of double, so that 1, 1.0 and true share a hash as they are equal.
  return std::hash<double>()(doubleValue());
}

bool operator==(const Number& left, const Number& right) noexcept {
  if (left.isReal() || right.isReal()) {
    return left.doubleValue() == right.doubleValue();
  }
  return left.int64Value() == right.int64Value();
}

}  // namespace platen::inline v0
