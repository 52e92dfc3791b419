// SPDX-License-Identifier: Apache-2.0
#include "platform/Arena.h"

#include <algorithm>
#include <cstring>

namespace platen::inline v0 {

namespace {

constexpr std::size_t kSmallestChunk = 1024;
constexpr std::size_t kLargestGrowth = std::size_t{1} << 20U;

}  // namespace

std::shared_ptr<Arena> Arena::make(std::size_t firstChunk) {
  auto arena = std::make_shared<Arena>(Key());
  arena->chunkSize_ = std::max(firstChunk, kSmallestChunk);
  arena->addChunk(0);
  return arena;
}

Arena::~Arena() {
  for (auto finaliser = finalisers_.rbegin(); finaliser != finalisers_.rend(); ++finaliser) {
    finaliser->destroy(finaliser->object);
  }
}

std::string_view Arena::copy(std::string_view text) {
  const Bytes bytes = copy(Bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

Bytes Arena::copy(Bytes bytes) {
  auto* room = static_cast<std::uint8_t*>(allocate(bytes.size(), 1));
  if (!bytes.empty()) {
    std::memcpy(room, bytes.data(), bytes.size());
  }
  return {room, bytes.size()};
}

void Arena::onRelease(void* object, void (*destroy)(void*)) {
  finalisers_.push_back({object, destroy});
}

void* Arena::allocateInNewChunk(std::size_t size, std::size_t alignment) {
  addChunk(size);
  return allocate(size, alignment);
}

// Chunks double in size, so that their number grows with the logarithm of what they hold.
void Arena::addChunk(std::size_t atLeast) {
  const std::size_t size = std::max(chunkSize_, atLeast + alignof(std::max_align_t));
  chunks_.push_back(std::make_unique_for_overwrite<std::uint8_t[]>(size));
  next_ = chunks_.back().get();
  end_ = next_ + size;
  chunkSize_ = std::min(chunkSize_ * 2, std::max(chunkSize_, kLargestGrowth));
}

}  // namespace platen::inline v0
