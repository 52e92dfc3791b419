// SPDX-License-Identifier: Apache-2.0
#include "coding/ArchiveReader.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "coding/ArchiveKeys.h"
#include "coding/CodableClasses.h"
#include "coding/FieldCheck.h"
#include "coding/RawValueNode.h"
#include "platen/Exception.h"

namespace platen::inline v0 {

ArchiveReader::ArchiveReader(ArchiveNode root) : root_(std::move(root)) {
  requireVersion();
  collectIds(root_);
}

void ArchiveReader::requireVersion() const {
  const ArchiveNode* version = root_.find(kArchiveKey);
  if (version == nullptr || version->ifInt() == nullptr) {
    throw ArchiveFault{IPPArchiveError::notAnArchive, "",
                       "not an archive: no version under " + quotedForFault(kArchiveKey)};
  }
  if (*version->ifInt() != kIPPArchiveVersion) {
    throw ArchiveFault{IPPArchiveError::unknownVersion, std::string(kArchiveKey),
                       "unknown version " + std::to_string(*version->ifInt()) +
                           ", the one known is " + std::to_string(kIPPArchiveVersion)};
  }
}

// NOLINTNEXTLINE(misc-no-recursion): bounded by kIPPArchiveDeepestNesting
void ArchiveReader::collectIds(const ArchiveNode& node) {
  if (const auto* array = node.ifArray()) {
    for (const ArchiveNode& item : *array) {
      collectIds(item);
    }
  } else if (const auto* object = node.ifObject()) {
    noteId(node);
    for (const auto& [key, value] : *object) {
      collectIds(value);
    }
  }
}

void ArchiveReader::noteId(const ArchiveNode& node) {
  const ArchiveNode* id = node.find(kIdKey);
  if (id == nullptr) {
    return;
  }
  if (id->ifInt() == nullptr) {
    throw ArchiveFault{IPPArchiveError::wrongType, keyPathOf(*id, root_), "not a whole number"};
  }
  if (!ids_.emplace(*id->ifInt(), &node).second) {
    throw ArchiveFault{IPPArchiveError::duplicateKey, keyPathOf(*id, root_),
                       "another object has the id " + std::to_string(*id->ifInt())};
  }
}

void ArchiveReader::raise(ArchiveFault fault) {
  fault_ = std::move(fault);
  throw InconsistentArchiveException(fault_->description());
}

void ArchiveReader::refuse(const ArchiveNode& place, IPPArchiveError code, std::string what) {
  raise({code, keyPathOf(place, root_), std::move(what)});
}

template <class T>
const T& ArchiveReader::required(const T* found, const ArchiveNode& node, std::string_view kind) {
  if (found == nullptr) {
    refuse(node, IPPArchiveError::wrongType,
           std::string(node.kind()) + " where " + std::string(kind) + " is expected");
  }
  return *found;
}

void ArchiveReader::requireFaultless() {
  if (fault_) {
    raise(*fault_);
  }
}

const ArchiveNode& ArchiveReader::field(std::string_view key) {
  requireFaultless();
  const ArchiveNode* found = findField(key);
  if (found == nullptr) {
    refuse(*current_, IPPArchiveError::missingKey,
           "the key " + quotedForFault(key) + " is missing");
  }
  return *found;
}

std::int64_t ArchiveReader::intIn(const ArchiveNode& node) {
  return required(node.ifInt(), node, "a whole number");
}

bool ArchiveReader::boolIn(const ArchiveNode& node) {
  return required(node.ifBool(), node, "true or false");
}

std::optional<std::string> ArchiveReader::stringIn(const ArchiveNode& node) {
  return node.isAbsent() ? std::nullopt : std::optional(required(node.ifString(), node, "a text"));
}

const ArchiveNode::Array& ArchiveReader::listIn(const ArchiveNode& node) {
  return required(node.ifArray(), node, "a list");
}

RawValue ArchiveReader::rawValueIn(const ArchiveNode& node) {
  try {
    return rawValueOf(node, root_);
  } catch (const ArchiveFault& fault) {
    raise(fault);
  }
}

const ArchiveNode& ArchiveReader::memberPart(const ArchiveNode& member, std::string_view key) {
  const auto& parts = required(member.ifObject(), member, "a name with an object");
  const ArchiveNode* part = parts.find(key);
  if (part == nullptr || parts.size() != 2) {
    refuse(member, IPPArchiveError::wrongType, "not a name with an object");
  }
  return *part;
}

const ArchiveNode& ArchiveReader::targetOf(const ArchiveNode& node) {
  required(node.ifObject(), node, "an object");
  const ArchiveNode* reference = node.find(kReferenceKey);
  if (reference == nullptr) {
    return node;
  }
  if (node.findTagged(kReferenceKey) == nullptr) {
    refuse(node, IPPArchiveError::unknownKey, "a reference has no other keys");
  }
  const std::int64_t id = intIn(*reference);
  const auto found = ids_.find(id);
  if (found == ids_.end()) {
    refuse(*reference, IPPArchiveError::unknownReference,
           "no object has the id " + std::to_string(id));
  }
  return *found->second;
}

IPPCoder::Object ArchiveReader::objectIn(const ArchiveNode& node, IPPCoder& coder) {
  requireFaultless();
  if (node.isAbsent()) {
    return nullptr;
  }
  const ArchiveNode& target = targetOf(node);
  const auto [found, isNew] = made_.try_emplace(&target);
  Made& made = found->second;  // It stays where it is while others are made.
  if (isNew) {
    make(target, coder, made);
  } else if (made.object == nullptr) {
    refuse(node, IPPArchiveError::cycle, "a reference to an object from inside of it");
  } else if (depth_ + made.height > kIPPArchiveDeepestObject) {
    refuse(node, IPPArchiveError::tooDeep, "objects nested too deep");
  }
  height_ = std::max(height_, made.height);
  return made.object;
}

/// The node at hand, while an object is being read from it.
class ArchiveReader::Inside {
 public:
  Inside(ArchiveReader& reader, const ArchiveNode& node)
      : reader_(reader),
        outer_(std::exchange(reader.current_, &node)),
        beside_(std::exchange(reader.height_, 0)) {
    ++reader_.depth_;
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;
  ~Inside() {
    --reader_.depth_;
    reader_.current_ = outer_;
    reader_.height_ = beside_;
  }

 private:
  ArchiveReader& reader_;
  const ArchiveNode* outer_;
  int beside_;
};

std::string ArchiveReader::classIn(const ArchiveNode& node) {
  const ArchiveNode* name = node.find(kClassKey);
  if (name == nullptr) {
    refuse(node, IPPArchiveError::missingKey,
           "the key " + quotedForFault(kClassKey) + " is missing");
  }
  const std::string& className = required(name->ifString(), *name, "a text");
  if (!isCodableClass(className)) {
    refuse(node, IPPArchiveError::unknownClass, "unknown class " + quotedForFault(className));
  }
  return className;
}

// References can chain objects that stand beside each other in the archive, so that its own depth
// says nothing about that of the objects. Neither does the depth alone when a reference leads back
// to an object that is there already: what counts then is how high that one is.
void ArchiveReader::make(const ArchiveNode& node, IPPCoder& coder, Made& made) {
  const std::string className = classIn(node);
  if (depth_ == kIPPArchiveDeepestObject) {
    refuse(node, IPPArchiveError::tooDeep, "objects nested too deep");
  }
  const Inside inside(*this, node);
  Object object;
  try {
    object = decodeObjectOfClass(className, coder);
  } catch (const std::bad_alloc&) {
    throw;  // it says nothing about the archive
  } catch (const std::exception& failure) {
    requireFaultless();
    refuse(node, IPPArchiveError::inconsistent, className + ": " + failure.what());
  } catch (...) {  // whatever a class of an application throws; there is no object then
    object = nullptr;
  }
  requireFaultless();
  if (object == nullptr) {
    refuse(node, IPPArchiveError::inconsistent, className + " cannot be made of this");
  }
  check(object, node);
  made = {std::move(object), height_ + 1};
}

void ArchiveReader::check(const Object& object, const ArchiveNode& node) {
  try {
    FieldCheck::check(*object, node, root_, [this](const ArchiveNode& at) { return madeOf(at); });
  } catch (const ArchiveFault& fault) {
    raise(fault);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& failure) {
    requireFaultless();
    refuse(node, IPPArchiveError::inconsistent, failure.what());
  } catch (...) {
    requireFaultless();
    refuse(node, IPPArchiveError::inconsistent,
           std::string(object->className()) + " could not be written");
  }
  requireFaultless();
}

const IPPCodable* ArchiveReader::madeOf(const ArchiveNode& node) {
  if (node.isAbsent()) {
    return nullptr;
  }
  const auto found = made_.find(&targetOf(node));
  return found == made_.end() ? nullptr : found->second.object.get();
}

}  // namespace platen::inline v0
