// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platen::tool {

/// A JSON value (RFC 8259) that is to be written; nothing is ever read. It is valid UTF-8 on one
/// line, whatever text it is made of: octets that are no UTF-8 become U+FFFD, and what could act on
/// a terminal is escaped.
///
/// Threads: immutable; may be shared between threads.
class Json {
 public:
  using Member = std::pair<std::string_view, Json>;

  /// null
  Json() : text_("null") {}
  Json(std::nullptr_t /*null*/) : Json() {}  // NOLINT(google-explicit-constructor)
  template <std::integral Integer>
  Json(Integer number)  // NOLINT(google-explicit-constructor)
      : text_(std::to_string(number)) {}
  Json(bool value) : text_(value ? "true" : "false") {}  // NOLINT(google-explicit-constructor)
  Json(std::string_view text);                           // NOLINT(google-explicit-constructor)
  Json(const std::string& text)                          // NOLINT(google-explicit-constructor)
      : Json(std::string_view{text}) {}
  Json(const char* text) : Json(std::string_view{text}) {}  // NOLINT(google-explicit-constructor)
  /// An array.
  template <class T>
  Json(const std::vector<T>& values)  // NOLINT(google-explicit-constructor)
      : Json(array({values.begin(), values.end()})) {}
  /// null for nothing.
  template <class T>
  Json(const std::optional<T>& value)  // NOLINT(google-explicit-constructor)
      : Json(value ? Json(*value) : Json()) {}

  static Json array(const std::vector<Json>& values);
  /// With the members in their order; no name may come twice.
  static Json object(const std::vector<Member>& members);

  /// Without the end of a line.
  [[nodiscard]] const std::string& text() const noexcept { return text_; }

 private:
  std::string text_;
};

}  // namespace platen::tool
