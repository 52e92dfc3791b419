// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "platen/IPPArchiver.h"
#include "platen/IPPValue.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

/// Writes itself as one octet.
class OneOctet : public IPPCodable {
 public:
  [[nodiscard]] std::string_view className() const noexcept override { return "OneOctet"; }
  void encodeWithCoder(IPPCoder& coder) const override { coder.encodeByte(0x5a); }
};

TEST(IPPArchiver, WritesTheHeaderOfAMessage) {
  const auto archiver = IPPArchiver::initForWritingWithMutableData(std::make_shared<Data>());
  archiver->encodeByte(1);
  archiver->encodeByte(1);
  archiver->encodeInt16(0x000b);
  archiver->encodeInt32(7);
  EXPECT_EQ(hex(*archiver->archiverData()), "01 01 00 0b 00 00 00 07");
}

TEST(IPPArchiver, WritesIntoTheBufferThatItWasGiven) {
  const auto data = std::make_shared<Data>();
  const auto archiver = IPPArchiver::initForWritingWithMutableData(data);
  EXPECT_EQ(archiver->archiverData(), data);
  archiver->encodeByte(7);
  EXPECT_EQ(hex(*data), "07");
}

TEST(IPPArchiver, KeepsItsBufferAlive) {
  auto data = std::make_shared<Data>();
  const auto archiver = IPPArchiver::initForWritingWithMutableData(data);
  data.reset();
  archiver->encodeInt16(0x0102);
  EXPECT_EQ(hex(*archiver->archiverData()), "01 02");
}

TEST(IPPArchiver, IsNotMadeWithoutABuffer) {
  EXPECT_EQ(IPPArchiver::initForWritingWithMutableData(nullptr), nullptr);
}

TEST(IPPArchiver, WritesTextInUTF8FromTheStart) {
  IPPArchiver archiver(std::make_shared<Data>());
  EXPECT_EQ(archiver.naturalLanguageEncoding(), TextEncoding::utf8());
  archiver.setNaturalLanguageEncoding(TextEncoding::latin1());
  EXPECT_EQ(archiver.naturalLanguageEncoding(), TextEncoding::latin1());
}

TEST(IPPArchiver, WritesARunBehindItsCount) {
  IPPArchiver archiver(std::make_shared<Data>());
  archiver.encodeBytes("abc", 3);
  archiver.encodeByte(0xff);
  EXPECT_EQ(hex(*archiver.archiverData()), "00 03 61 62 63 ff");
}

TEST(IPPArchiver, WritesAnEmptyRunAsItsCountOnly) {
  IPPArchiver archiver(std::make_shared<Data>());
  archiver.encodeBytes(nullptr, 0);
  EXPECT_EQ(hex(*archiver.archiverData()), "00 00");
}

TEST(IPPArchiver, WritesARunOf70000OctetsWholeBehindTheCount0x1170) {
  IPPArchiver archiver(std::make_shared<Data>());
  archiver.encodeBytes(Data(70000, 0xab).data(), 70000);
  archiver.encodeByte(0x77);
  const Data& data = *archiver.archiverData();
  ASSERT_EQ(data.size(), 70003U);
  EXPECT_EQ(hex(Bytes(data).first(3)), "11 70 ab");
  EXPECT_EQ(hex(Bytes(data).last(2)), "ab 77");
}

TEST(IPPArchiver, WritesNothingForATypeThatItDoesNotKnow) {
  IPPArchiver archiver(std::make_shared<Data>());
  const std::uint64_t value = ~std::uint64_t{0};
  for (const char type : {'q', 'C', 'd', '\0'}) {
    archiver.encodeValueOfType(type, &value);
  }
  EXPECT_TRUE(archiver.archiverData()->empty());
  archiver.encodeByte(1);
  EXPECT_EQ(hex(*archiver.archiverData()), "01");
}

TEST(IPPArchiver, HasObjectsWriteThemselvesWithNeitherNameNorReference) {
  IPPArchiver archiver(std::make_shared<Data>());
  const OneOctet object;
  archiver.encodeObject(object);
  archiver.encodeObject(object);
  archiver.encodeRootObject(object);
  EXPECT_EQ(hex(*archiver.archiverData()), "5a 5a 5a");
}

// Fixed-width fields go to the count of octets written, runs to the end: the two agree in a buffer
// that was empty, and nothing checks that.
TEST(IPPArchiver, OverwritesTheFirstOctetsOfABufferThatWasNotEmpty) {
  const auto data = std::make_shared<Data>(octets("aa bb cc"));
  IPPArchiver archiver(data);
  archiver.encodeInt16(0x0102);
  EXPECT_EQ(hex(*data), "01 02 cc 00 00");
  archiver.encodeBytes("x", 1);
  EXPECT_EQ(hex(*data), "01 02 00 01 00 00 00 78");
}

TEST(IPPArchiver, WritesAMillionFieldsInOneGo) {
  IPPArchiver archiver(std::make_shared<Data>());
  for (std::int32_t number = 0; number < 1'000'000; ++number) {
    archiver.encodeInt32(number);
  }
  const Data& data = *archiver.archiverData();
  ASSERT_EQ(data.size(), 4'000'000U);
  EXPECT_EQ(hex(Bytes(data).last(4)), "00 0f 42 3f");
}

}  // namespace
}  // namespace platen::test
