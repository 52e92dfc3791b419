// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveNode.h"
#include "platen/IPPCoder.h"

namespace platen::inline v0 {

/// Compares an object that was just read with the node that it was read from: the object writes
/// itself to this coder, which looks whether the same is in the archive already. So no class need
/// know how it is to refuse what it cannot hold, and none can drop something in silence.
///
/// Objects inside are compared by identity: they have been checked when they were made.
///
/// Threads: one thread at a time. Neither copied nor moved.
class FieldCheck : public IPPCoder {
 public:
  /// The object that was made of a node, null when it is absent.
  using MadeOf = std::function<const IPPCodable*(const ArchiveNode&)>;

  /// Throws `ArchiveFault` for the first difference; key paths are counted from `root`.
  static void check(const IPPCodable& object, const ArchiveNode& node, const ArchiveNode& root,
                    const MadeOf& madeOf);

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  void encodeIntForKey(std::int64_t value, std::string_view key) override;
  void encodeBoolForKey(bool value, std::string_view key) override;
  void encodeStringForKey(std::optional<std::string_view> value, std::string_view key) override;
  void encodeRawValueForKey(const RawValue& value, std::string_view key) override;
  void encodeObjectForKey(const Object& object, std::string_view key) override;
  void encodeObjectsForKey(const std::vector<Object>& objects, std::string_view key) override;
  void encodeNamedObjectsForKey(const Dictionary<Object>& objects, std::string_view key) override;

 private:
  FieldCheck(std::string_view className, const ArchiveNode& node, const ArchiveNode& root,
             const MadeOf& madeOf)
      : className_(className), node_(node), root_(root), madeOf_(madeOf) {}
  const ArchiveNode& field(std::string_view key);
  [[nodiscard]] const ArchiveNode& part(const ArchiveNode& member, std::string_view key) const;
  const ArchiveNode::Array& list(std::string_view key);
  void requireEqual(const ArchiveNode& field, const ArchiveNode& written) const;
  void requireSame(const ArchiveNode& field, const IPPCodable* object) const;
  void requireCount(const ArchiveNode::Array& items, std::size_t count) const;
  [[noreturn]] void refuseObject(const ArchiveNode& field) const;
  void requireNoOther() const;
  [[noreturn]] void refuse(const ArchiveNode& place, IPPArchiveError code, std::string what) const;

  std::string className_;
  const ArchiveNode& node_;
  const ArchiveNode& root_;
  const MadeOf& madeOf_;
  std::set<std::string, std::less<>> seen_;
};

}  // namespace platen::inline v0
