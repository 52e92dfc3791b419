// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPRangeOfInteger.h"
#include "tests/support/Coding.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

std::uint64_t word(std::int64_t value) { return static_cast<std::uint64_t>(value); }

/// A range beside its octets and its text.
struct Body {
  Range range;
  std::string octets;
  std::string text;
};

TEST(IPPRangeOfInteger, WritesAndReadsBothBounds) {
  const std::vector<Body> table = {
      {{1, 10}, "<00000001 0000000a>", "{1, 10}"},
      {{5, 1}, "<00000005 00000005>", "{5, 1}"},
      {{0, 1}, "<00000000 00000000>", "{0, 1}"},
      {{1, 99}, "<00000001 00000063>", "{1, 99}"},
      {{word(-5), 11}, "<fffffffb 00000005>", "{18446744073709551611, 11}"},
      {{1, word(INT32_MAX)}, "<00000001 7fffffff>", "{1, 2147483647}"},
      {{word(INT32_MIN), word(std::int64_t{1} << 32)},
       "<80000000 7fffffff>",
       "{18446744071562067968, 4294967296}"},
      {{7, 0}, "<00000007 00000006>", "{7, 0}"},
  };
  for (const auto& [range, octets, text] : table) {
    const auto value = IPPValue::rangeOfInteger(range);
    EXPECT_EQ(encodedHex(*value), hexOf(octets));
    const auto decoded = decodedValue(0x33, octets);
    EXPECT_EQ(decoded->rangeValue(), range) << octets;
    EXPECT_TRUE(decoded->isEqual(*value));
    EXPECT_EQ(decoded->hash(), value->hash());
    EXPECT_EQ(decoded->stringValue(), text);
    EXPECT_EQ(decoded->description(), "'" + text + "' of rangeOfInteger");
    EXPECT_EQ(decoded->value(), RawValue(range));
  }
}

TEST(IPPRangeOfInteger, TakesBoundsInTheWrongOrderAsTheyCome) {
  const auto value = decodedValue(0x33, "<0000000a 00000001>");
  EXPECT_EQ(value->rangeValue(), (Range{10, word(-8)}));
  EXPECT_EQ(encodedHex(*value), hexOf("<0000000a 00000001>"));
}

TEST(IPPRangeOfInteger, FailsOnABodyWhoseLengthIsNot8) {
  for (const char* length : {"0000", "0004", "0007", "0009", "8008", "ffff"}) {
    EXPECT_THAT([&] { decodedValue(0x33, std::string(length) + "000102030405060708"); },
                ThrowsMessage<RangeException>("Invalid length read for IPP range value"))
        << length;
  }
}

TEST(IPPRangeOfInteger, TakesARangeAndNothingElse) {
  EXPECT_TRUE(IPPRangeOfInteger::descriptor._checkValue(Range{10, 0}));
  for (const RawValue& object : {RawValue(), RawValue(1), RawValue("1..2"), RawValue(Size{1, 2})}) {
    EXPECT_THAT([&] { static_cast<void>(IPPRangeOfInteger::descriptor._ippValue(object)); },
                ThrowsMessage<RangeException>("Invalid parameter"));
  }
}

TEST(IPPRangeOfInteger, WritesTheLow32BitsOfWordsThatAreTooLarge) {
  const auto value = IPPValue::rangeOfInteger({word(std::int64_t{1} << 32) + 3, 2});
  EXPECT_EQ(encodedHex(*value), hexOf("<00000003 00000004>"));
  EXPECT_NO_THROW(encodedHex(*IPPValue::rangeOfInteger({~std::uint64_t{0}, ~std::uint64_t{0}})));
}

TEST(IPPRangeOfInteger, ComparesBothWords) {
  EXPECT_FALSE(IPPValue::rangeOfInteger({1, 2})->isEqual(*IPPValue::rangeOfInteger({1, 3})));
  EXPECT_FALSE(IPPValue::rangeOfInteger({1, 2})->isEqual(*IPPValue::rangeOfInteger({2, 2})));
}

}  // namespace
}  // namespace platen::test
