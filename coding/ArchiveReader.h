// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveNode.h"
#include "platen/IPPCoder.h"

namespace platen::inline v0 {

/// Makes objects of the nodes of an archive, each once. An object reads its fields from a coder
/// that asks here for the fields of the node at hand.
///
/// Every fault is kept, and raised as `InconsistentArchiveException`: once more by everything that
/// is asked for later, and for the object around it when a class swallows it.
///
/// Threads: one thread at a time. Neither copied nor moved.
class ArchiveReader {
 public:
  using Object = IPPCoder::Object;

  /// Throws `ArchiveFault` when `root` is no archive of the version known here or has an id twice.
  explicit ArchiveReader(ArchiveNode root);
  ArchiveReader(const ArchiveReader&) = delete;
  ArchiveReader& operator=(const ArchiveReader&) = delete;

  /// The top of the archive, which is the root object when it has a class.
  [[nodiscard]] const ArchiveNode& root() const noexcept { return root_; }

  [[nodiscard]] const ArchiveNode* findField(std::string_view key) const {
    return current_->find(key);
  }
  [[nodiscard]] const ArchiveNode& field(std::string_view key);
  std::int64_t intIn(const ArchiveNode& node);
  bool boolIn(const ArchiveNode& node);
  std::optional<std::string> stringIn(const ArchiveNode& node);
  const ArchiveNode::Array& listIn(const ArchiveNode& node);
  RawValue rawValueIn(const ArchiveNode& node);
  /// The object of a node or of a reference, read with `coder` when that was not done yet.
  Object objectIn(const ArchiveNode& node, IPPCoder& coder);
  /// The part of a member of a list of named objects: its name or its value.
  const ArchiveNode& memberPart(const ArchiveNode& member, std::string_view key);

  [[noreturn]] void refuse(const ArchiveNode& place, IPPArchiveError code, std::string what);
  [[nodiscard]] std::shared_ptr<const Error> error() const {
    return fault_ ? fault_->error() : nullptr;
  }

 private:
  class Inside;
  struct Made {
    Object object;   // Null while it is being made.
    int height = 0;  // Of the objects inside of each other, this one among them.
  };

  void requireVersion() const;
  void requireFaultless();
  void collectIds(const ArchiveNode& node);
  void noteId(const ArchiveNode& node);
  const ArchiveNode& targetOf(const ArchiveNode& node);
  std::string classIn(const ArchiveNode& node);
  void make(const ArchiveNode& node, IPPCoder& coder, Made& made);
  void check(const Object& object, const ArchiveNode& node);
  [[nodiscard]] const IPPCodable* madeOf(const ArchiveNode& node);
  [[noreturn]] void raise(ArchiveFault fault);
  template <class T>
  const T& required(const T* found, const ArchiveNode& node, std::string_view kind);

  ArchiveNode root_;
  const ArchiveNode* current_ = &root_;
  // Ordered: whoever wrote the archive chose the ids, and could choose them to meet in a hash
  // table.
  std::map<std::int64_t, const ArchiveNode*> ids_;
  std::unordered_map<const ArchiveNode*, Made> made_;
  std::optional<ArchiveFault> fault_;
  int depth_ = 0;
  int height_ = 0;  // Of what the object at hand has inside so far.
};

}  // namespace platen::inline v0
