// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "platform/Arena.h"
#include "tests/support/AllocationCount.h"

namespace platen::test {
namespace {

bool isAligned(const void* address, std::size_t alignment) {
  return reinterpret_cast<std::uintptr_t>(address) % alignment == 0;
}

TEST(Arena, GivesRoomOfEveryAlignment) {
  const auto arena = Arena::make(0);
  for (const std::size_t alignment : {1U, 2U, 4U, 8U, 16U}) {
    for (const std::size_t size : {1U, 3U, 7U, 16U, 100U}) {
      void* room = arena->allocate(size, alignment);
      EXPECT_TRUE(isAligned(room, alignment)) << alignment;
      std::memset(room, 0xab, size);
    }
  }
}

TEST(Arena, NeverGivesTheSameRoomTwice) {
  const auto arena = Arena::make(0);
  std::vector<std::uint8_t*> rooms;
  for (int i = 0; i < 2000; ++i) {
    rooms.push_back(static_cast<std::uint8_t*>(arena->allocate(17, 1)));
    std::memset(rooms.back(), i % 256, 17);
  }
  for (int i = 0; i < 2000; ++i) {
    const std::uint8_t* room = rooms[static_cast<std::size_t>(i)];
    EXPECT_EQ(room[0], i % 256);
    EXPECT_EQ(room[16], i % 256);
  }
}

TEST(Arena, GivesRoomLargerThanItsChunks) {
  const auto arena = Arena::make(16);
  for (const std::size_t size : {2000U, 10'000'000U, 1U}) {
    auto* room = static_cast<std::uint8_t*>(arena->allocate(size, 8));
    room[0] = 1;
    room[size - 1] = 2;
    EXPECT_EQ(room[size - 1], 2);
  }
}

TEST(Arena, GivesRoomOfNoSize) {
  const auto arena = Arena::make(0);
  EXPECT_NO_THROW(arena->allocate(0, 1));
  EXPECT_TRUE(arena->copy(std::string_view()).empty());
  EXPECT_TRUE(arena->copy(Bytes()).empty());
  EXPECT_EQ(arena->copy(std::string_view("text")), "text");
}

TEST(Arena, CopiesTextsAndOctets) {
  const auto arena = Arena::make(0);
  std::string text = "text";
  const std::string_view copy = arena->copy(text);
  text = "else";
  EXPECT_EQ(copy, "text");
  const Data data = {1, 2, 3};
  const Bytes bytes = arena->copy(Bytes(data));
  EXPECT_NE(bytes.data(), data.data());
  EXPECT_EQ(Data(bytes.begin(), bytes.end()), data);
}

TEST(Arena, DestroysTheLastRegisteredFirst) {
  static std::string order;
  order.clear();
  char a = 'a';
  char b = 'b';
  {
    const auto arena = Arena::make(0);
    const auto note = [](void* object) { order += *static_cast<char*>(object); };
    arena->onRelease(&a, note);
    arena->onRelease(&b, note);
    EXPECT_EQ(order, "");
  }
  EXPECT_EQ(order, "ba");
}

TEST(Arena, LivesAsLongAsAReferenceToWhatIsInIt) {
  std::shared_ptr<const char> letter;
  std::weak_ptr<Arena> watched;
  {
    const auto arena = Arena::make(0);
    watched = arena;
    letter = {arena, arena->copy("text").data()};
  }
  EXPECT_FALSE(watched.expired());
  EXPECT_EQ(*letter, 't');
  letter.reset();
  EXPECT_TRUE(watched.expired());
}

TEST(Arena, CallsTheHeapNoMoreOftenThanItsSizeDoubles) {
  const AllocationCount count;
  const auto arena = Arena::make(0);
  for (int i = 0; i < 100'000; ++i) {
    arena->allocate(8, 8);
  }
  EXPECT_LT(count.sinceThen(), 30U);
}

TEST(Arena, CallsTheHeapOnceForAFirstChunkThatIsLargeEnough) {
  const auto arena = Arena::make(100'000);
  arena->allocate(1, 1);
  const AllocationCount count;
  for (int i = 0; i < 90'000; ++i) {
    arena->allocate(1, 1);
  }
  EXPECT_EQ(count.sinceThen(), 0U);
}

}  // namespace
}  // namespace platen::test
