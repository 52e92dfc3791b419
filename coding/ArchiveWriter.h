// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveNode.h"
#include "platen/IPPCoder.h"

namespace platen::inline v0 {

/// Makes the nodes of an archive of objects, one for each. An object writes its fields to a coder
/// that hands them on to here, for the node at hand.
///
/// Every fault is kept, and raised as `InvalidArgumentException`: once more by everything that is
/// asked for later, and for the object around it when a class swallows it.
///
/// Threads: one thread at a time. Neither copied nor moved.
class ArchiveWriter {
 public:
  using Object = IPPCoder::Object;

  ArchiveWriter();
  ArchiveWriter(const ArchiveWriter&) = delete;
  ArchiveWriter& operator=(const ArchiveWriter&) = delete;

  /// Makes the top of the archive the object `root`.
  void writeRoot(const IPPCodable& root, IPPCoder& coder);
  void set(std::string_view key, ArchiveNode node);
  void setRaw(std::string_view key, const RawValue& value);
  /// Sets what `make` gives, which is called with the key in the path.
  template <class Make>
  void setMade(std::string_view key, Make make) {
    requireFree(key);
    const std::size_t length = path_.size();
    appendKey(path_, key);
    ArchiveNode node = make();
    path_.resize(length);
    current_->set(key, std::move(node));
  }
  /// The node of an object, or a reference to it when it has one already.
  ArchiveNode nodeFor(const Object& object, IPPCoder& coder);
  /// The same for an object in a list.
  ArchiveNode itemFor(const Object& object, std::size_t index, IPPCoder& coder);

  /// Raises the fault again when there was one: what is there is a part of something then.
  [[nodiscard]] const ArchiveNode& top() const;
  [[nodiscard]] std::shared_ptr<const Error> error() const {
    return fault_ ? fault_->error() : nullptr;
  }

 private:
  class Inside;
  struct Met {
    Object held;  // so that no other object gets its address meanwhile
    ArchiveNode::Object* fields = nullptr;
    std::int64_t id = 0;
    int height = 0;  // of the objects inside of each other, this one among them
    bool isWhole = false;
  };

  void requireFaultless() const;
  void requireFree(std::string_view key);
  void requireWritable(const IPPCodable& object);
  void encodeFields(const IPPCodable& object, IPPCoder& coder);
  ArchiveNode newNode(const Object& object, IPPCoder& coder, Met& met);
  void writeFields(const IPPCodable& object, IPPCoder& coder, ArchiveNode::Object& fields,
                   Met& met);
  ArchiveNode referenceTo(Met& met);
  [[noreturn]] void refuse(IPPArchiveError code, std::string what);

  ArchiveNode top_;
  ArchiveNode::Object* current_;
  std::unordered_map<const IPPCodable*, Met> met_;
  std::string path_;
  std::optional<ArchiveFault> fault_;
  std::int64_t lastId_ = 0;
  int depth_ = 0;
  int height_ = 0;  // of what the object at hand has inside so far
  bool hasRoot_ = false;
};

}  // namespace platen::inline v0
