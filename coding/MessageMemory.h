// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Who owns what a decoder makes.

#include <deque>
#include <memory>
#include <span>
#include <string_view>

#include "platen/IPPAttribute.h"
#include "platen/IPPUnarchiver.h"
#include "platen/IPPValue.h"
#include "platform/Arena.h"

namespace platen::inline v0 {

/// The attributes of one decoded message, which hold the arena that their names and values are in.
/// Their octets are in the arena too, but it is not the arena that destroys them: they hold counted
/// references to values, can be given other ones, and an arena must not come to hold itself.
struct AttributeBlock {
  explicit AttributeBlock(const std::shared_ptr<Arena>& home)
      : arena(home), attributes(ArenaAllocator<IPPAttribute>(*home)) {}

  std::shared_ptr<Arena> arena;
  std::deque<IPPAttribute, ArenaAllocator<IPPAttribute>> attributes;
};

/// The memory of the message that a decoder is making: one arena for octets, texts and values, one
/// block for attributes.
struct IPPUnarchiver::Memory {
 public:
  /// Prepared for `inputSize` octets of input and the values that they hold.
  explicit Memory(std::size_t inputSize);

  [[nodiscard]] Arena& arena() const noexcept { return *arena_; }
  [[nodiscard]] const std::shared_ptr<Arena>& sharedArena() const noexcept { return arena_; }

  /// Copies the input, for strings to be borrowed from.
  Bytes keepInput(Bytes input);
  /// True for a text within that copy.
  [[nodiscard]] bool isKept(std::string_view text) const noexcept;

  std::shared_ptr<const IPPValue> makeArray(std::span<const IPPValue::Pointer> values);
  std::shared_ptr<const IPPValue> makeMap(std::span<IPPCoder::Member> members);
  /// A new attribute, held by the block; the name lives in the arena.
  std::shared_ptr<IPPAttribute> makeAttribute(IPPValue::Pointer value, Text name);

 private:
  template <class Element>
  std::span<Element> roomFor(std::size_t count);
  template <class Value, class Element>
  std::shared_ptr<const IPPValue> makeOver(std::span<const Element> elements);
  IPPValue::Pointer held(const IPPValue::Pointer& value);

  std::shared_ptr<Arena> arena_;
  std::shared_ptr<AttributeBlock> block_;
  Bytes input_;
};

}  // namespace platen::inline v0
