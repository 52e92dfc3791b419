// SPDX-License-Identifier: Apache-2.0
#include "coding/ArchiveNode.h"

#include <array>

namespace platen::inline v0 {

ArchiveNode ArchiveNode::tagged(std::string_view key, ArchiveNode value) {
  auto object = std::make_unique<Object>();
  object->set(key, std::move(value));
  return ArchiveNode(std::move(object));
}

const ArchiveNode::Object* ArchiveNode::ifObject() const noexcept {
  const auto* pointer = std::get_if<ObjectPointer>(&content_);
  return pointer == nullptr ? nullptr : pointer->get();
}

ArchiveNode::Object* ArchiveNode::ifObject() noexcept {
  auto* pointer = std::get_if<ObjectPointer>(&content_);
  return pointer == nullptr ? nullptr : pointer->get();
}

const ArchiveNode* ArchiveNode::find(std::string_view key) const {
  const Object* object = ifObject();
  return object == nullptr ? nullptr : object->find(key);
}

const ArchiveNode* ArchiveNode::findTagged(std::string_view key) const {
  const Object* object = ifObject();
  return object == nullptr || object->size() != 1 ? nullptr : object->find(key);
}

namespace {

// Without rounding: beyond 2^53 not every whole number is a real one.
bool areEqual(std::int64_t whole, double real) {
  return real >= -0x1p63 && real < 0x1p63 && static_cast<double>(whole) == real &&
         static_cast<std::int64_t>(real) == whole;
}

}  // namespace

std::string_view ArchiveNode::kind() const noexcept {
  static constexpr std::array<std::string_view, 7> kKinds = {
      "nothing", "true or false", "a whole number", "a number", "a text", "a list", "an object"};
  return kKinds[content_.index()];
}

bool operator==(const ArchiveNode& left, const ArchiveNode& right) {
  const ArchiveNode::Object* object = left.ifObject();
  const ArchiveNode::Object* other = right.ifObject();
  if (object != nullptr && other != nullptr) {
    return *object == *other;
  }
  if (left.ifInt() != nullptr && right.ifReal() != nullptr) {
    return areEqual(*left.ifInt(), *right.ifReal());
  }
  if (left.ifReal() != nullptr && right.ifInt() != nullptr) {
    return areEqual(*right.ifInt(), *left.ifReal());
  }
  return left.content_ == right.content_;
}

}  // namespace platen::inline v0
