// SPDX-License-Identifier: Apache-2.0
#include "platen/RawValue.h"

#include <charconv>
#include <cstdio>
#include <functional>

#include "platen/Exception.h"
#include "platform/Calendar.h"
#include "platform/Hash.h"

namespace platen::inline v0 {

RawValue::RawValue() noexcept = default;
RawValue::RawValue(const RawValue& other) = default;
RawValue::RawValue(RawValue&& other) noexcept = default;
RawValue& RawValue::operator=(const RawValue& other) = default;
RawValue& RawValue::operator=(RawValue&& other) noexcept = default;
RawValue::~RawValue() = default;

RawValue::RawValue(Null null) noexcept : object_(null) {}
RawValue::RawValue(std::string string) noexcept : object_(std::move(string)) {}
RawValue::RawValue(std::string_view string) : object_(std::string(string)) {}
RawValue::RawValue(const char* string) : object_(std::string(string)) {}
RawValue::RawValue(URL url) noexcept : object_(std::move(url)) {}
RawValue::RawValue(Number number) noexcept : object_(number) {}
RawValue::RawValue(Range range) noexcept : object_(range) {}
RawValue::RawValue(Size size) noexcept : object_(size) {}
RawValue::RawValue(Date date) noexcept : object_(date) {}
RawValue::RawValue(Array array) noexcept : object_(std::move(array)) {}
RawValue::RawValue(RawValue::Dictionary dictionary) : object_(std::move(dictionary)) {}

bool RawValue::isAbsent() const noexcept { return std::holds_alternative<std::monostate>(object_); }
bool RawValue::isNull() const noexcept { return std::holds_alternative<Null>(object_); }

const std::string* RawValue::ifString() const noexcept {
  return std::get_if<std::string>(&object_);
}
const URL* RawValue::ifURL() const noexcept { return std::get_if<URL>(&object_); }
const Number* RawValue::ifNumber() const noexcept { return std::get_if<Number>(&object_); }
const Range* RawValue::ifRange() const noexcept { return std::get_if<Range>(&object_); }
const Size* RawValue::ifSize() const noexcept { return std::get_if<Size>(&object_); }
const Date* RawValue::ifDate() const noexcept { return std::get_if<Date>(&object_); }
const RawValue::Array* RawValue::ifArray() const noexcept { return std::get_if<Array>(&object_); }
const RawValue::Dictionary* RawValue::ifDictionary() const noexcept {
  return std::get_if<RawValue::Dictionary>(&object_);
}

template <class T>
const T& RawValue::require(const char* kind) const {
  const T* object = std::get_if<T>(&object_);
  if (object == nullptr) {
    throw InvalidArgumentException(std::string("The raw object is not ") + kind);
  }
  return *object;
}

const std::string& RawValue::asString() const { return require<std::string>("a string"); }
const URL& RawValue::asURL() const { return require<URL>("a URL"); }
const Number& RawValue::asNumber() const { return require<Number>("a number"); }
const Range& RawValue::asRange() const { return require<Range>("a range"); }
const Size& RawValue::asSize() const { return require<Size>("a size"); }
const Date& RawValue::asDate() const { return require<Date>("a date"); }
const RawValue::Array& RawValue::asArray() const { return require<Array>("an array"); }
const RawValue::Dictionary& RawValue::asDictionary() const {
  return require<RawValue::Dictionary>("a dictionary");
}

bool operator==(const RawValue& left, const RawValue& right) {
  return left.object_ == right.object_;
}

namespace {

struct Hasher {
  std::size_t operator()(std::monostate) const { return 0; }
  std::size_t operator()(Null) const { return 1; }
  std::size_t operator()(const std::string& string) const {
    return std::hash<std::string_view>()(string);
  }
  std::size_t operator()(const URL& url) const {
    return std::hash<std::string_view>()(url.absoluteString());
  }
  std::size_t operator()(const Number& number) const { return number.hash(); }
  std::size_t operator()(const Range& range) const {
    return combineHashes(range.location, range.length);
  }
  std::size_t operator()(const Size& size) const {
    return combineHashes(std::hash<double>()(size.width), std::hash<double>()(size.height));
  }
  std::size_t operator()(const Date& date) const {
    // Of the second: date values are equal to the second, and so are sets and collections of them.
    return static_cast<std::size_t>(date.time_since_epoch().count() / 1000);
  }
  std::size_t operator()(const RawValue::Array& array) const {
    std::size_t hash = array.size();
    for (const RawValue& element : array) {
      hash = combineHashes(hash, element.hash());
    }
    return hash;
  }
  std::size_t operator()(const RawValue::Dictionary& dictionary) const {
    std::size_t hash = dictionary.size();  // a sum, since the order of the entries says nothing
    for (const auto& [name, value] : dictionary) {
      hash += combineHashes(std::hash<std::string_view>()(name), value.hash());
    }
    return hash;
  }
};

struct Describer {
  std::string operator()(std::monostate) const { return "(null)"; }
  std::string operator()(Null) const { return "<null>"; }
  std::string operator()(const std::string& string) const { return string; }
  std::string operator()(const URL& url) const { return std::string(url.absoluteString()); }
  std::string operator()(const Number& number) const { return number.stringValue(); }
  std::string operator()(const Range& range) const { return textOf(range); }
  std::string operator()(const Size& size) const { return textOf(size); }
  std::string operator()(const Date& date) const { return textOf(date); }
  std::string operator()(const RawValue::Array& array) const {
    std::string text = "(";
    for (const RawValue& element : array) {
      text += &element == &array.front() ? "" : ", ";
      text += element.description();
    }
    return text + ")";
  }
  std::string operator()(const RawValue::Dictionary& dictionary) const {
    std::string text = "{";
    for (const auto& [name, value] : dictionary) {
      text += name + " = " + value.description() + "; ";
    }
    return text + "}";
  }
};

std::string shortest(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

}  // namespace

std::size_t RawValue::hash() const { return visit(Hasher()); }

std::string RawValue::description() const { return visit(Describer()); }

std::string textOf(const Range& range) {
  return "{" + std::to_string(range.location) + ", " + std::to_string(range.length) + "}";
}

std::string textOf(const Size& size) {
  return "{" + shortest(size.width) + ", " + shortest(size.height) + "}";
}

std::string textOf(const Date& date) {
  // By seconds, since the day that the earliest date is in begins before that date.
  const auto whole = std::chrono::floor<std::chrono::seconds>(date);
  const auto day = std::chrono::floor<std::chrono::days>(whole);
  // Years reach 65535 on the wire and beyond 32767 no calendar type of the standard library goes.
  const auto seconds = (whole - day).count();
  const CivilDay civil = civilDayOf(day.time_since_epoch().count());
  char text[64];
  std::snprintf(text, sizeof text, "%04lld-%02d-%02d %02d:%02d:%02d +0000",
                static_cast<long long>(civil.year), civil.month, civil.day,
                static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                static_cast<int>(seconds % 60));
  return text;
}

}  // namespace platen::inline v0
