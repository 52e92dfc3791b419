// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Memory that is taken in small pieces and given back all at once.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platen/Data.h"

namespace platen::inline v0 {

/// Memory for the many small objects of one decoded message: their octets, their names and
/// themselves. Whoever holds a reference to one of them holds the arena, so a message costs a
/// handful of heap calls instead of one for every value.
///
/// Objects inside refer to each other by plain pointers, never by counted ones: an arena that held
/// itself would never go.
///
/// Threads: filled on one thread, then read only.
class Arena : public std::enable_shared_from_this<Arena> {
 public:
  /// Makes room for `firstChunk` octets from the start.
  static std::shared_ptr<Arena> make(std::size_t firstChunk);

  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;
  ~Arena();

  /// Uninitialised room; lives as long as the arena. `alignment` is a power of two, at most that of
  /// the fundamental types.
  void* allocate(std::size_t size, std::size_t alignment) {
    const std::size_t padding = -reinterpret_cast<std::uintptr_t>(next_) & (alignment - 1);
    if (size + padding > static_cast<std::size_t>(end_ - next_)) {
      return allocateInNewChunk(size, alignment);
    }
    void* room = next_ + padding;
    next_ += padding + size;
    return room;
  }
  /// A copy of `text` that lives as long as the arena.
  std::string_view copy(std::string_view text);
  Bytes copy(Bytes bytes);

  /// Has `destroy(object)` called when the arena goes, the last registered first.
  void onRelease(void* object, void (*destroy)(void*));

 private:
  struct Key {};
  struct Finaliser {
    void* object;
    void (*destroy)(void*);
  };

 public:
  explicit Arena(Key /*key*/) {}

 private:
  void* allocateInNewChunk(std::size_t size, std::size_t alignment);
  void addChunk(std::size_t atLeast);

  std::vector<std::unique_ptr<std::uint8_t[]>> chunks_;
  std::vector<Finaliser> finalisers_;
  std::uint8_t* next_ = nullptr;
  std::uint8_t* end_ = nullptr;
  std::size_t chunkSize_ = 0;
};

/// Has a container of the standard library take its memory from an arena, which outlives it.
template <class T>
class ArenaAllocator {
 public:
  using value_type = T;

  explicit ArenaAllocator(Arena& arena) noexcept : arena_(&arena) {}
  template <class U>
  ArenaAllocator(const ArenaAllocator<U>& other) noexcept  // NOLINT(google-explicit-constructor)
      : arena_(&other.arena()) {}

  [[nodiscard]] T* allocate(std::size_t count) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): T is a pointer where a deque keeps its map
    return static_cast<T*>(arena_->allocate(count * sizeof(T), alignof(T)));
  }
  void deallocate(T* /*room*/, std::size_t /*count*/) noexcept {}

  [[nodiscard]] Arena& arena() const noexcept { return *arena_; }
  friend bool operator==(const ArenaAllocator&, const ArenaAllocator&) noexcept = default;

 private:
  Arena* arena_;
};

}  // namespace platen::inline v0
