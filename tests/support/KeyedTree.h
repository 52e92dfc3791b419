// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platen/IPPCoder.h"

namespace platen::test {

/// An object in a keyed archive in memory: its class's name and its fields by key. An object that
/// was met twice while archiving is one node with two references.
///
/// Threads: one thread at a time.
struct KeyedTree {
  using Pointer = std::shared_ptr<KeyedTree>;
  using List = std::vector<Pointer>;
  using NamedList = std::vector<std::pair<std::string, Pointer>>;
  using Text = std::optional<std::string>;
  using Field = std::variant<std::int64_t, bool, Text, RawValue, Pointer, List, NamedList>;

  std::string className;
  std::map<std::string, Field, std::less<>> fields;

  /// For example `IPPAttribute{name="copies", value=IPPInteger{value=2}}`: a text is quoted, raw
  /// objects in their own text form, keys in alphabetical order.
  [[nodiscard]] std::string description() const;
};

/// Writes objects into a tree by the keyed face of the coder. The sequential face is not there.
///
/// Threads: one thread at a time. Neither copied nor moved.
class KeyedTreeWriter : public IPPCoder {
 public:
  /// `object`, and everything that it refers to.
  static KeyedTree::Pointer archive(const IPPCodable& object);

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  void encodeIntForKey(std::int64_t value, std::string_view key) override;
  void encodeBoolForKey(bool value, std::string_view key) override;
  void encodeStringForKey(std::optional<std::string_view> value, std::string_view key) override;
  void encodeRawValueForKey(const RawValue& value, std::string_view key) override;
  void encodeObjectForKey(const Object& object, std::string_view key) override;
  void encodeObjectsForKey(const std::vector<Object>& objects, std::string_view key) override;
  void encodeNamedObjectsForKey(const Dictionary<Object>& objects, std::string_view key) override;

 private:
  /// The nodes of the objects met so far, which are held so that no address is used again.
  using Met = std::map<Object, KeyedTree::Pointer>;

  KeyedTreeWriter(KeyedTree& node, Met& met) : node_(node), met_(met) {}
  KeyedTree::Pointer nodeFor(const Object& object);
  void set(std::string_view key, KeyedTree::Field field);

  KeyedTree& node_;
  Met& met_;
};

/// Makes objects from a tree by the keyed face of the coder. The sequential face is not there.
///
/// Threads: one thread at a time. Neither copied nor moved.
class KeyedTreeReader : public IPPCoder {
 public:
  /// The object of `node`; one node gives one object, however often it is referred to. Null for a
  /// null node and for a class that the library does not know.
  static Object unarchive(const KeyedTree::Pointer& node);

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  std::int64_t decodeIntForKey(std::string_view key) override;
  bool decodeBoolForKey(std::string_view key) override;
  std::optional<std::string> decodeStringForKey(std::string_view key) override;
  RawValue decodeRawValueForKey(std::string_view key) override;
  Object decodeObjectForKey(std::string_view key) override;
  std::vector<Object> decodeObjectsForKey(std::string_view key) override;
  Dictionary<Object> decodeNamedObjectsForKey(std::string_view key) override;

 private:
  using Made = std::map<KeyedTree::Pointer, Object>;

  KeyedTreeReader(const KeyedTree& node, Made& made) : node_(node), made_(made) {}
  static Object objectFor(const KeyedTree::Pointer& node, Made& made);
  template <class Field>
  Field get(std::string_view key) const;

  const KeyedTree& node_;
  Made& made_;
};

}  // namespace platen::test
