// SPDX-License-Identifier: Apache-2.0

/// What an archive is made of (docs/archive.md), whatever its form:
///
///     archive   = { "$platen-archive": version, [ "$class": name, ] *field }
///     object    = null / { "$class": name, [ "$id": integer, ] *field } / { "$ref": integer }
///     field     = key: integer / true / false / string / raw / object / [ *object ] / [ *member ]
///     member    = { "name": string, "value": object }

#include "coding/ArchiveWriter.h"

#include <algorithm>
#include <utility>

#include "coding/ArchiveKeys.h"
#include "coding/CodableClasses.h"
#include "coding/RawValueNode.h"
#include "platen/Exception.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {

ArchiveWriter::ArchiveWriter()
    : top_(std::make_unique<ArchiveNode::Object>()), current_(top_.ifObject()) {
  current_->set(kArchiveKey, ArchiveNode(kIPPArchiveVersion));
}

void ArchiveWriter::refuse(IPPArchiveError code, std::string what) {
  fault_ = ArchiveFault{code, path_, std::move(what)};
  throw InvalidArgumentException(fault_->description());
}

void ArchiveWriter::requireFaultless() const {
  if (fault_) {
    throw InvalidArgumentException(fault_->description());
  }
}

const ArchiveNode& ArchiveWriter::top() const {
  requireFaultless();
  return top_;
}

void ArchiveWriter::writeRoot(const IPPCodable& root, IPPCoder& coder) {
  requireFaultless();
  if (current_->size() != 1) {
    refuse(IPPArchiveError::duplicateKey, "something else was encoded before the root object");
  }
  writeFields(root, coder, *current_, met_[&root]);
  hasRoot_ = true;
}

void ArchiveWriter::requireFree(std::string_view key) {
  requireFaultless();
  const std::string quoted = quotedForFault(key);
  if (hasRoot_ || key.starts_with('$')) {
    refuse(IPPArchiveError::unknownKey, "the key " + quoted + " belongs to the archive");
  }
  if (!isValidUtf8(key)) {
    refuse(IPPArchiveError::invalidText, "the key " + quoted + " is not UTF-8");
  }
  if (current_->find(key) != nullptr) {
    refuse(IPPArchiveError::duplicateKey, "the key " + quoted + " is there already");
  }
}

void ArchiveWriter::set(std::string_view key, ArchiveNode node) {
  requireFree(key);
  current_->set(key, std::move(node));
}

void ArchiveWriter::setRaw(std::string_view key, const RawValue& value) {
  try {
    set(key, nodeOf(value));
  } catch (const ArchiveFault& fault) {
    appendKey(path_, key);
    refuse(fault.code, fault.what);
  }
}

void ArchiveWriter::requireWritable(const IPPCodable& object) {
  if (!isCodableClass(object.className())) {
    refuse(IPPArchiveError::unknownClass, "unknown class " + quotedForFault(object.className()));
  }
  if (depth_ == kIPPArchiveDeepestObject) {
    refuse(IPPArchiveError::tooDeep, "nested too deep");
  }
}

/// The fields at hand, while an object is being written into them.
class ArchiveWriter::Inside {
 public:
  Inside(ArchiveWriter& writer, ArchiveNode::Object& fields)
      : writer_(writer),
        outer_(std::exchange(writer.current_, &fields)),
        beside_(std::exchange(writer.height_, 0)) {
    ++writer_.depth_;
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;
  ~Inside() {
    --writer_.depth_;
    writer_.current_ = outer_;
    writer_.height_ = beside_;
  }

 private:
  ArchiveWriter& writer_;
  ArchiveNode::Object* outer_;
  int beside_;
};

// Whatever a class raises leaves half an object behind, which nothing may refer to.
void ArchiveWriter::encodeFields(const IPPCodable& object, IPPCoder& coder) {
  try {
    object.encodeWithCoder(coder);
  } catch (...) {
    if (!fault_) {
      fault_ = ArchiveFault{IPPArchiveError::inconsistent, path_,
                            std::string(object.className()) + " could not be written"};
    }
    throw;
  }
  requireFaultless();
}

// The place of an id is kept free right behind the class: whether there is one is known later.
void ArchiveWriter::writeFields(const IPPCodable& object, IPPCoder& coder,
                                ArchiveNode::Object& fields, Met& met) {
  requireWritable(object);
  met.fields = &fields;
  fields.set(kClassKey, ArchiveNode(object.className()));
  fields.set(kIdKey, ArchiveNode());
  const Inside inside(*this, fields);
  encodeFields(object, coder);
  met.height = height_ + 1;
  met.isWhole = true;
}

ArchiveNode ArchiveWriter::referenceTo(Met& met) {
  if (!met.isWhole) {
    refuse(IPPArchiveError::cycle, "an object inside of itself");
  }
  if (depth_ + met.height > kIPPArchiveDeepestObject) {
    refuse(IPPArchiveError::tooDeep, "nested too deep");
  }
  if (met.id == 0) {
    met.id = ++lastId_;
    met.fields->set(kIdKey, ArchiveNode(met.id));
  }
  return ArchiveNode::tagged(kReferenceKey, ArchiveNode(met.id));
}

ArchiveNode ArchiveWriter::newNode(const Object& object, IPPCoder& coder, Met& met) {
  met.held = object;
  auto fields = std::make_unique<ArchiveNode::Object>();
  writeFields(*object, coder, *fields, met);
  return ArchiveNode(std::move(fields));
}

ArchiveNode ArchiveWriter::nodeFor(const Object& object, IPPCoder& coder) {
  requireFaultless();
  if (object == nullptr) {
    return {};
  }
  const auto [found, isNew] = met_.try_emplace(object.get());
  Met& met = found->second;  // It stays where it is while others are met.
  ArchiveNode node = isNew ? newNode(object, coder, met) : referenceTo(met);
  height_ = std::max(height_, met.height);
  return node;
}

ArchiveNode ArchiveWriter::itemFor(const Object& object, std::size_t index, IPPCoder& coder) {
  const std::size_t length = path_.size();
  appendIndex(path_, index);
  ArchiveNode node = nodeFor(object, coder);
  path_.resize(length);
  return node;
}

}  // namespace platen::inline v0
