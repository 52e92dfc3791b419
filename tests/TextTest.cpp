// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platen/Text.h"

namespace platen::test {
namespace {

TEST(Text, IsAbsentAtFirst) {
  const Text text;
  EXPECT_TRUE(text.isAbsent());
  EXPECT_FALSE(text.view());
  EXPECT_EQ(text.viewOrEmpty(), "");
  EXPECT_TRUE(Text(std::nullopt).isAbsent());
}

TEST(Text, TellsAbsenceFromTheEmptyText) {
  const Text empty("");
  EXPECT_FALSE(empty.isAbsent());
  EXPECT_EQ(empty.view(), "");
  EXPECT_FALSE(empty == Text());
  EXPECT_FALSE(Text::borrowed({}).isAbsent());
  EXPECT_TRUE(Text(empty).view());
}

TEST(Text, KeepsACopyOfItsOwn) {
  std::string octets = "text";
  const Text text(octets);
  octets = "else";
  EXPECT_EQ(text.view(), "text");
}

TEST(Text, BorrowsWithoutACopy) {
  const std::string octets = "text";
  const Text text = Text::borrowed(octets);
  EXPECT_EQ(text.viewOrEmpty().data(), octets.data());
}

TEST(Text, OwnsTheCopyOfABorrowedText) {
  std::string octets = "text";
  const Text borrowed = Text::borrowed(octets);
  const Text copy = borrowed;
  octets = "else";
  EXPECT_EQ(borrowed.view(), "else");
  EXPECT_EQ(copy.view(), "text");
}

TEST(Text, MovesWhatItOwnsAndWhatItHasBorrowed) {
  Text owned("a longer text that no small string would hold");
  const char* octets = owned.viewOrEmpty().data();
  const Text moved = std::move(owned);
  EXPECT_EQ(moved.viewOrEmpty().data(), octets);
  const std::string source = "text";
  Text borrowed = Text::borrowed(source);
  const Text movedToo = std::move(borrowed);
  EXPECT_EQ(movedToo.viewOrEmpty().data(), source.data());
}

TEST(Text, IsAssigned) {
  const std::string source = "borrowed";
  Text text("owned");
  text = Text::borrowed(source);
  EXPECT_EQ(text.viewOrEmpty().data(), source.data());
  text = Text("owned again");
  EXPECT_EQ(text.view(), "owned again");
  const Text& self = text;
  text = self;
  EXPECT_EQ(text.view(), "owned again");
  text = Text();
  EXPECT_TRUE(text.isAbsent());
}

TEST(Text, KeepsZeroOctets) {
  const std::string source("a\0b", 3);
  EXPECT_EQ(Text(source).view(), source);
}

TEST(Text, ComparesOctetForOctet) {
  const std::string source = "text";
  EXPECT_TRUE(Text("text") == Text::borrowed(source));
  EXPECT_FALSE(Text("text") == Text("Text"));
  EXPECT_TRUE(Text() == Text());
}

TEST(Text, IsTwoWordsLong) { EXPECT_EQ(sizeof(Text), 2 * sizeof(void*)); }

}  // namespace
}  // namespace platen::test
