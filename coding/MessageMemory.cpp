// SPDX-License-Identifier: Apache-2.0
#include "coding/MessageMemory.h"

#include <functional>
#include <new>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPMap.h"
#include "values/MemberList.h"
#include "values/Sharing.h"

namespace platen::inline v0 {

namespace {

// A value of a few octets becomes an object of a few words: the answers of real printers and
// servers that were measured take between 3 and 4 times their own length.
constexpr std::size_t kMemoryPerOctet = 4;

}  // namespace

IPPUnarchiver::Memory::Memory(std::size_t inputSize)
    : arena_(Arena::make(inputSize * kMemoryPerOctet)),
      block_(std::make_shared<AttributeBlock>(arena_)) {}

Bytes IPPUnarchiver::Memory::keepInput(Bytes input) {
  input_ = arena_->copy(input);
  return input_;
}

bool IPPUnarchiver::Memory::isKept(std::string_view text) const noexcept {
  const auto* first = reinterpret_cast<const std::uint8_t*>(text.data());
  const std::less_equal<> notAfter;  // a total order, also between unrelated objects
  return notAfter(input_.data(), first) &&
         notAfter(first + text.size(), input_.data() + input_.size());
}

template <class Element>
std::span<Element> IPPUnarchiver::Memory::roomFor(std::size_t count) {
  void* room = arena_->allocate(count * sizeof(Element), alignof(Element));
  return {static_cast<Element*>(room), count};
}

// A value that somebody's own class made elsewhere is held by a counted reference, which the arena
// lets go; those beside it are not counted.
IPPValue::Pointer IPPUnarchiver::Memory::held(const IPPValue::Pointer& value) {
  IPPValue::Pointer reference = hold(value, arena_);
  if (reference.use_count() != 0) {
    auto* counted = new (arena_->allocate(sizeof reference, alignof(IPPValue::Pointer)))
        IPPValue::Pointer(reference);
    arena_->onRelease(counted,
                      [](void* object) { static_cast<IPPValue::Pointer*>(object)->~shared_ptr(); });
    return {std::shared_ptr<void>(), value.get()};
  }
  return reference;
}

template <class Value, class Element>
std::shared_ptr<const IPPValue> IPPUnarchiver::Memory::makeOver(std::span<const Element> elements) {
  void* room = arena_->allocate(sizeof(Value), alignof(Value));
  return {arena_, new (room) Value(elements, *arena_)};
}

// Neither the elements nor the sets and collections over them are ever destroyed: those made here
// own nothing but what is in the arena.
std::shared_ptr<const IPPValue> IPPUnarchiver::Memory::makeArray(
    std::span<const IPPValue::Pointer> values) {
  if (values.empty()) {
    throw RangeException("Invalid parameter");
  }
  const std::span<IPPValue::Pointer> elements = roomFor<IPPValue::Pointer>(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] == nullptr) {
      throw RangeException("Invalid parameter");
    }
    new (&elements[i]) IPPValue::Pointer(held(values[i]));
  }
  return makeOver<IPPArray>(std::span<const IPPValue::Pointer>(elements));
}

std::shared_ptr<const IPPValue> IPPUnarchiver::Memory::makeMap(
    std::span<IPPCoder::Member> members) {
  const std::size_t count = uniteMembers(members);
  const std::span<IPPCoder::Member> elements = roomFor<IPPCoder::Member>(count);
  for (std::size_t i = 0; i < count; ++i) {
    new (&elements[i]) IPPCoder::Member(std::move(members[i].first), held(members[i].second));
  }
  return makeOver<IPPMap>(std::span<const IPPCoder::Member>(elements));
}

std::shared_ptr<IPPAttribute> IPPUnarchiver::Memory::makeAttribute(IPPValue::Pointer value,
                                                                   Text name) {
  return {block_, &block_->attributes.emplace_back(std::move(value), std::move(name))};
}

}  // namespace platen::inline v0
