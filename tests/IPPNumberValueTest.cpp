// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPNumberValue.h"
#include "tests/support/Coding.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

TEST(IPPNumberValue, WritesAndReadsIntegersAndEnumsIn32Bits) {
  const std::vector<std::pair<std::int32_t, std::string>> table = {
      {0, "<00000000>"},         {2, "<00000002>"},         {-1, "<ffffffff>"},
      {INT32_MAX, "<7fffffff>"}, {INT32_MIN, "<80000000>"}, {0x01020304, "<01020304>"}};
  for (const auto& [number, octets] : table) {
    for (const auto& value :
         {IPPValue::integerWithInt(number), IPPValue::enumerationWithInt(number)}) {
      EXPECT_EQ(encodedHex(*value), hexOf(octets));
      const auto decoded = decodedValue(value->ippTag(), octets);
      EXPECT_TRUE(decoded->isEqual(*value)) << octets;
      EXPECT_EQ(decoded->intValue(), number);
      EXPECT_EQ(decoded->stringValue(), std::to_string(number));
      EXPECT_EQ(decoded->boolValue(), number != 0);
    }
  }
}

TEST(IPPNumberValue, WritesABooleanAsOneOrZero) {
  EXPECT_EQ(encodedHex(*IPPValue::booleanWithBool(true)), "00 01 01");
  EXPECT_EQ(encodedHex(*IPPValue::booleanWithBool(false)), "00 01 00");
  EXPECT_EQ(encodedHex(*IPPValue::boolean(2)), "00 01 01");
  EXPECT_EQ(encodedHex(*IPPValue::boolean(0.5)), "00 01 01");
  EXPECT_EQ(encodedHex(*IPPValue::boolean(-1)), "00 01 01");
}

TEST(IPPNumberValue, ReadsEveryOctetButZeroAsTrue) {
  for (int octet = 0; octet <= 0xff; ++octet) {
    const auto value = decodedValue(0x22, "0001" + hex(Data{static_cast<std::uint8_t>(octet)}));
    EXPECT_EQ(value->boolValue(), octet != 0);
    EXPECT_EQ(value->intValue(), octet == 0 ? 0 : 1);
    EXPECT_TRUE(value->isEqual(*IPPValue::booleanWithBool(octet != 0)));
  }
}

TEST(IPPNumberValue, FailsOnANumberWhoseLengthIsNot4) {
  for (const char* length : {"0000", "0001", "0002", "0003", "0005", "0008", "8000", "ffff"}) {
    for (const std::uint8_t tag : Data{0x21, 0x23}) {
      EXPECT_THAT([&] { decodedValue(tag, std::string(length) + "0102030405060708"); },
                  ThrowsMessage<RangeException>("Invalid length read for number IPP value"))
          << length;
    }
  }
}

TEST(IPPNumberValue, FailsOnABooleanWhoseLengthIsNot1) {
  for (const char* length : {"0000", "0002", "0004", "8001", "ffff"}) {
    EXPECT_THAT([&] { decodedValue(0x22, std::string(length) + "01020304"); },
                ThrowsMessage<RangeException>("Invalid length read for bool IPP value"))
        << length;
  }
}

TEST(IPPNumberValue, FailsBeforeItReadsTheBody) {
  const auto coder = unarchiverOf("0002 1234");
  coder->setCurrentTag(0x21);
  EXPECT_THROW(coder->decodeIPPValue(), RangeException);
  EXPECT_EQ(coder->decodeInt16(), 0x1234);
}

TEST(IPPNumberValue, TakesEveryNumberAndNothingElse) {
  for (const auto* valueClass :
       {&IPPInteger::descriptor, &IPPEnum::descriptor, &IPPBoolean::descriptor}) {
    for (const RawValue& number : {RawValue(1), RawValue(true), RawValue(1.5),
                                   RawValue(std::numeric_limits<std::int64_t>::max())}) {
      EXPECT_TRUE(valueClass->_checkValue(number));
    }
    for (const RawValue& object : {RawValue(), RawValue(Null()), RawValue("1"),
                                   RawValue(Range{1, 1}), RawValue(RawValue::Array{1})}) {
      EXPECT_THAT([&] { static_cast<void>(valueClass->_ippValue(object)); },
                  ThrowsMessage<RangeException>("Invalid parameter"));
    }
  }
}

TEST(IPPNumberValue, CutsWhatDoesNotFitTo32Bits) {
  EXPECT_EQ(IPPValue::integer(std::int64_t{1} << 32)->intValue(), 0);
  EXPECT_EQ(IPPValue::integer((std::int64_t{1} << 32) + 5)->intValue(), 5);
  EXPECT_EQ(IPPValue::integer(3.9)->intValue(), 3);
  EXPECT_EQ(IPPValue::integer(-3.9)->intValue(), -3);
}

TEST(IPPNumberValue, ReadsAnEnumAsAnUnsignedNumberInTheSame32Bits) {
  EXPECT_EQ(IPPValue::enumeration(std::int64_t{0xffffffff})->intValue(), -1);
  EXPECT_EQ(IPPValue::enumeration(std::int64_t{0x80000000})->intValue(), INT32_MIN);
  EXPECT_EQ(encodedHex(*IPPValue::enumeration(std::int64_t{0xfffffffe})), hexOf("<fffffffe>"));
  EXPECT_EQ(IPPValue::enumerationWithInt(-3)->intValue(), -3);
}

TEST(IPPNumberValue, ComparesByTheNumberWithinAClass) {
  EXPECT_TRUE(IPPValue::integer(1)->isEqual(*IPPValue::integer(1.0)));
  EXPECT_TRUE(IPPValue::integer(1)->isEqual(*IPPValue::integer(true)));
  EXPECT_EQ(IPPValue::integer(1)->hash(), IPPValue::integer(true)->hash());
  EXPECT_FALSE(IPPValue::integer(1)->isEqual(*IPPValue::integer(2)));
  EXPECT_FALSE(IPPValue::integer(1)->isEqual(*IPPValue::enumeration(1)));
  EXPECT_FALSE(IPPValue::integer(1)->isEqual(*IPPValue::boolean(1)));
}

TEST(IPPNumberValue, DescribesItself) {
  EXPECT_EQ(IPPValue::integerWithInt(7)->description(), "'7' of integer");
  EXPECT_EQ(IPPValue::enumerationWithInt(7)->description(), "'7' of enum");
  EXPECT_EQ(IPPValue::booleanWithBool(true)->description(), "'1' of boolean");
  EXPECT_EQ(IPPValue::booleanWithBool(false)->stringValue(), "0");
}

TEST(IPPNumberValue, TellsTheAbstractClassFromAPlainValue) {
  EXPECT_FALSE(IPPNumberValue(1).isEqual(IPPValue()));
  EXPECT_EQ(IPPNumberValue(1).syntaxName(), "unknown");
}

}  // namespace
}  // namespace platen::test
