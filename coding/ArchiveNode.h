// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platen/Dictionary.h"

namespace platen::inline v0 {

/// One item of an archive, whatever form it is in: what JSON and CBOR have in common, and strings
/// of any octets. Absent is what both call null.
///
/// Threads: one thread at a time; a const one may be shared between threads.
class ArchiveNode {
 public:
  using Array = std::vector<ArchiveNode>;
  using Object = Dictionary<ArchiveNode>;

  ArchiveNode() noexcept = default;
  explicit ArchiveNode(bool value) noexcept : content_(value) {}
  explicit ArchiveNode(std::int64_t value) noexcept : content_(value) {}
  explicit ArchiveNode(double value) noexcept : content_(value) {}
  explicit ArchiveNode(std::string value) noexcept : content_(std::move(value)) {}
  explicit ArchiveNode(std::string_view value) : content_(std::string(value)) {}
  explicit ArchiveNode(const char* value) = delete;  // it would be true
  explicit ArchiveNode(Array value) noexcept : content_(std::move(value)) {}
  explicit ArchiveNode(std::unique_ptr<Object> value) noexcept : content_(std::move(value)) {}
  /// An object with one field.
  static ArchiveNode tagged(std::string_view key, ArchiveNode value);

  [[nodiscard]] bool isAbsent() const noexcept { return content_.index() == 0; }
  [[nodiscard]] const bool* ifBool() const noexcept { return std::get_if<bool>(&content_); }
  [[nodiscard]] const std::int64_t* ifInt() const noexcept {
    return std::get_if<std::int64_t>(&content_);
  }
  [[nodiscard]] const double* ifReal() const noexcept { return std::get_if<double>(&content_); }
  [[nodiscard]] const std::string* ifString() const noexcept {
    return std::get_if<std::string>(&content_);
  }
  [[nodiscard]] const Array* ifArray() const noexcept { return std::get_if<Array>(&content_); }
  [[nodiscard]] Array* ifArray() noexcept { return std::get_if<Array>(&content_); }
  /// The object stays where it is when the node is moved.
  [[nodiscard]] const Object* ifObject() const noexcept;
  [[nodiscard]] Object* ifObject() noexcept;
  /// The field of an object, or null.
  [[nodiscard]] const ArchiveNode* find(std::string_view key) const;
  /// The value of an object that has this one field and no other, or null.
  [[nodiscard]] const ArchiveNode* findTagged(std::string_view key) const;

  /// For error texts: "a text", "a list", ...
  [[nodiscard]] std::string_view kind() const noexcept;
  /// Equal all the way down; objects whatever their order, and numbers whatever their kind, since
  /// not every program keeps 5 and 5.0 apart.
  friend bool operator==(const ArchiveNode& left, const ArchiveNode& right);

 private:
  using ObjectPointer = std::unique_ptr<Object>;

  std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, ObjectPointer>
      content_;
};

}  // namespace platen::inline v0
