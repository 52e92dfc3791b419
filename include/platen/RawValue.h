// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Raw objects: what an attribute's value is made of once its syntax is taken away.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platen/Dictionary.h"
#include "platen/Export.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// The types that a number is made from.
template <class T>
concept Arithmetic = std::is_arithmetic_v<T>;

/// A boolean, a 64-bit integer or a double. Numbers compare by their numeric value, whatever kind
/// they are: true equals 1. With a double among them they compare as doubles.
///
/// Threads: a plain value; may be shared between threads while nobody assigns to it.
class PLATEN_EXPORT Number {
 public:
  /// The integer 0.
  constexpr Number() noexcept = default;
  /// A boolean of a `bool`, a double of every floating-point type, an integer of every other: one
  /// that 64 bits cannot hold as a signed number wraps around.
  template <Arithmetic T>
  constexpr Number(T value) noexcept {  // NOLINT(google-explicit-constructor): any number is one
    if constexpr (std::is_floating_point_v<T>) {
      value_ = static_cast<double>(value);
    } else if constexpr (std::is_same_v<T, bool>) {
      value_ = value;
    } else {
      value_ = static_cast<std::int64_t>(value);
    }
  }

  /// True for a boolean; 0 and 1 are integers.
  [[nodiscard]] bool isBoolean() const noexcept { return value_.index() == 0; }
  /// True for a double, whole or not.
  [[nodiscard]] bool isReal() const noexcept { return value_.index() == 2; }

  /// True when the number is not zero: of 0.5 and of what is no number (NaN) too.
  [[nodiscard]] bool boolValue() const noexcept;
  /// The low 32 bits of `int64Value`, signed: of 5000000000 they are 705032704.
  [[nodiscard]] std::int32_t intValue() const noexcept;
  /// The same 32 bits, unsigned.
  [[nodiscard]] std::uint32_t unsignedIntValue() const noexcept;
  /// The integer; 1 and 0 for the booleans; a double cut toward zero and held at the 64-bit limits,
  /// 0 for what is no number.
  [[nodiscard]] std::int64_t int64Value() const noexcept;
  /// The double; the nearest one to an integer; 1 and 0 for the booleans.
  [[nodiscard]] double doubleValue() const noexcept;
  /// Decimal text, whatever the locale; "1" and "0" for the booleans, the shortest text that reads
  /// back as the same for a double ("0.5", "1e+20", "inf").
  [[nodiscard]] std::string stringValue() const;
  /// Equal numbers have equal hashes.
  [[nodiscard]] std::size_t hash() const noexcept;

  /// Equal in value, see above; what is no number equals nothing, itself neither.
  friend PLATEN_EXPORT bool operator==(const Number& left, const Number& right) noexcept;

 private:
  std::variant<bool, std::int64_t, double> value_ = std::int64_t{0};
};

/// A run of integers: `length` of them, from `location` on. Both are unsigned words; a negative
/// bound wraps around, and so does what is added to it. Equal when both are.
///
/// Threads: a plain value; may be shared between threads while nobody assigns to it.
struct Range {
  std::uint64_t location = 0;
  std::uint64_t length = 0;

  friend bool operator==(const Range&, const Range&) = default;
};

/// Two extents, of whatever unit. Equal when both are.
///
/// Threads: a plain value; may be shared between threads while nobody assigns to it.
struct Size {
  double width = 0;
  double height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

/// An instant, in milliseconds since 1970-01-01 00:00:00 UTC; negative before.
using Date = std::chrono::sys_time<std::chrono::milliseconds>;

/// The null object: a value of its own that says "there is none". Not to be mixed up with absence.
/// All are equal.
///
/// Threads: a plain value; may be shared between threads while nobody assigns to it.
struct Null {
  friend bool operator==(const Null&, const Null&) = default;
};

/// One raw object, of a closed list of kinds: absent, null, string (UTF-8), URL, number, range,
/// size, date, array, dictionary. Containers hold raw objects all the way down.
///
/// `isX()` asks for a kind, `ifX()` gives a pointer to it or null, `asX()` the object itself or
/// raises `InvalidArgumentException`. Pointers and references live until this object changes.
///
/// Threads: one thread at a time; a const one may be shared between threads.
class PLATEN_EXPORT RawValue {
 public:
  using Array = std::vector<RawValue>;
  using Dictionary = platen::Dictionary<RawValue>;

  /// Absent.
  RawValue() noexcept;

  /// Copies are deep. What was moved from stays of its kind, holding something or nothing.
  RawValue(const RawValue& other);
  RawValue(RawValue&& other) noexcept;
  RawValue& operator=(const RawValue& other);
  RawValue& operator=(RawValue&& other) noexcept;
  ~RawValue();

  // Each kind converts into a raw object by itself; that is what the class is for. What is given is
  // copied or moved in; `const char*` must not be null. That a string is UTF-8 is not checked.

  RawValue(Null null) noexcept;               // NOLINT(google-explicit-constructor)
  RawValue(std::string string) noexcept;      // NOLINT(google-explicit-constructor)
  RawValue(std::string_view string);          // NOLINT(google-explicit-constructor)
  RawValue(const char* string);               // NOLINT(google-explicit-constructor)
  RawValue(URL url) noexcept;                 // NOLINT(google-explicit-constructor)
  RawValue(Number number) noexcept;           // NOLINT(google-explicit-constructor)
  RawValue(Range range) noexcept;             // NOLINT(google-explicit-constructor)
  RawValue(Size size) noexcept;               // NOLINT(google-explicit-constructor)
  RawValue(Date date) noexcept;               // NOLINT(google-explicit-constructor)
  RawValue(Array array) noexcept;             // NOLINT(google-explicit-constructor)
  RawValue(RawValue::Dictionary dictionary);  // NOLINT(google-explicit-constructor)
  template <Arithmetic T>
  RawValue(T number) noexcept  // NOLINT(google-explicit-constructor)
      : RawValue(Number(number)) {}
  /// `object`, or absent when there is none.
  template <class T>
  RawValue(const std::optional<T>& object)  // NOLINT(google-explicit-constructor)
      : RawValue(object ? RawValue(*object) : RawValue()) {}

  // Each is true for that kind alone.

  [[nodiscard]] bool isAbsent() const noexcept;
  [[nodiscard]] bool isNull() const noexcept;
  [[nodiscard]] bool isString() const noexcept { return ifString() != nullptr; }
  [[nodiscard]] bool isURL() const noexcept { return ifURL() != nullptr; }
  [[nodiscard]] bool isNumber() const noexcept { return ifNumber() != nullptr; }
  [[nodiscard]] bool isRange() const noexcept { return ifRange() != nullptr; }
  [[nodiscard]] bool isSize() const noexcept { return ifSize() != nullptr; }
  [[nodiscard]] bool isDate() const noexcept { return ifDate() != nullptr; }
  [[nodiscard]] bool isArray() const noexcept { return ifArray() != nullptr; }
  [[nodiscard]] bool isDictionary() const noexcept { return ifDictionary() != nullptr; }

  // Each gives the object when it is of that kind, and null otherwise; valid until this changes.

  [[nodiscard]] const std::string* ifString() const noexcept;
  [[nodiscard]] const URL* ifURL() const noexcept;
  [[nodiscard]] const Number* ifNumber() const noexcept;
  [[nodiscard]] const Range* ifRange() const noexcept;
  [[nodiscard]] const Size* ifSize() const noexcept;
  [[nodiscard]] const Date* ifDate() const noexcept;
  [[nodiscard]] const Array* ifArray() const noexcept;
  [[nodiscard]] const RawValue::Dictionary* ifDictionary() const noexcept;

  // Each gives the object when it is of that kind, valid until this changes, and raises
  // `InvalidArgumentException` otherwise.

  [[nodiscard]] const std::string& asString() const;
  [[nodiscard]] const URL& asURL() const;
  [[nodiscard]] const Number& asNumber() const;
  [[nodiscard]] const Range& asRange() const;
  [[nodiscard]] const Size& asSize() const;
  [[nodiscard]] const Date& asDate() const;
  [[nodiscard]] const Array& asArray() const;
  [[nodiscard]] const RawValue::Dictionary& asDictionary() const;

  /// Calls `visitor` with the object as its own kind (`std::monostate` when absent).
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), object_);
  }

  /// The same kind and equal; numbers by their numeric value, dictionaries whatever their order,
  /// dates to the millisecond, strings and URLs letter for letter.
  friend PLATEN_EXPORT bool operator==(const RawValue& left, const RawValue& right);
  /// Equal objects have equal hashes.
  [[nodiscard]] std::size_t hash() const;
  /// The text form: a string as it is, "(null)" when absent, "<null>", "{1, 10}" for a range or a
  /// size, "2001-02-03 04:05:06 +0000" for a date, "(a, b)" and "{name = value; }".
  [[nodiscard]] std::string description() const;

 private:
  template <class T>
  const T& require(const char* kind) const;

  std::variant<std::monostate, Null, std::string, URL, Number, Range, Size, Date, Array,
               platen::Dictionary<RawValue>>
      object_;
};

/// The text form of a range, "{1, 10}".
PLATEN_EXPORT std::string textOf(const Range& range);
/// The text form of a size, "{600, 600}"; fractions in the shortest form, whatever the locale.
PLATEN_EXPORT std::string textOf(const Size& size);
/// The text form of a date in UTC to the second, "2001-02-03 04:05:06 +0000".
PLATEN_EXPORT std::string textOf(const Date& date);

}  // namespace platen::inline v0
