// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPDateTime.h"
#include "tests/support/Coding.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

Date seconds(std::int64_t count) { return Date(std::chrono::seconds(count)); }

/// Octets beside the instant that they stand for.
struct Body {
  std::string octets;
  std::string text;
};

TEST(IPPDateTime, WritesAndReadsInstantsOf32BitsInUTC) {
  const std::vector<Body> table = {
      {"<07b2 01 01 00 00 00 00 2b 00 00>", "1970-01-01 00:00:00 +0000"},
      {"<07d1 02 03 04 05 06 00 2b 00 00>", "2001-02-03 04:05:06 +0000"},
      {"<07d0 02 1d 17 3b 3b 00 2b 00 00>", "2000-02-29 23:59:59 +0000"},
      {"<07b1 0c 1f 17 3b 3b 00 2b 00 00>", "1969-12-31 23:59:59 +0000"},
      {"<076d 0c 0d 14 2d 34 00 2b 00 00>", "1901-12-13 20:45:52 +0000"},
      {"<07f6 01 13 03 0e 07 00 2b 00 00>", "2038-01-19 03:14:07 +0000"},
  };
  for (const auto& [octets, text] : table) {
    const auto value = decodedValue(0x31, octets);
    EXPECT_EQ(value->stringValue(), text);
    EXPECT_EQ(encodedHex(*value), hexOf(octets));
    EXPECT_EQ(value->description(), "'" + text + "' of dateTime");
    EXPECT_TRUE(value->isEqual(*IPPValue::dateTime(value->dateTimeValue().value())));
  }
}

TEST(IPPDateTime, ReadsTheOffsetFromUTC) {
  const std::vector<Body> table = {
      {"<07d1 02 03 04 05 06 00 2d 02 1e>", "2001-02-03 06:35:06 +0000"},
      {"<07d1 02 03 04 05 06 00 2b 02 1e>", "2001-02-03 01:35:06 +0000"},
      {"<07d1 01 01 00 00 00 00 2b 0e 00>", "2000-12-31 10:00:00 +0000"},
      // Every direction but "-" counts as "+".
      {"<07d1 02 03 04 05 06 00 00 02 1e>", "2001-02-03 01:35:06 +0000"},
      {"<07d1 02 03 04 05 06 00 'x' 02 1e>", "2001-02-03 01:35:06 +0000"},
      {"<07d1 02 03 04 05 06 00 ad 02 1e>", "2001-02-03 01:35:06 +0000"},
  };
  for (const auto& [octets, text] : table) {
    EXPECT_EQ(decodedValue(0x31, octets)->stringValue(), text) << octets;
  }
}

TEST(IPPDateTime, IsAlwaysWrittenInUTCWithoutDeciSeconds) {
  EXPECT_EQ(encodedHex(*decodedValue(0x31, "<07d1 02 03 04 05 06 09 2d 02 1e>")),
            hexOf("<07d1 02 03 06 23 06 00 2b 00 00>"));
}

TEST(IPPDateTime, IgnoresDeciSeconds) {
  EXPECT_EQ(decodedValue(0x31, "<07d1 02 03 04 05 06 09 2b 00 00>")->dateTimeValue(),
            decodedValue(0x31, "<07d1 02 03 04 05 06 00 2b 00 00>")->dateTimeValue());
}

TEST(IPPDateTime, CarriesFieldsOutsideOfTheCalendarOver) {
  const std::vector<Body> table = {
      {"<07d1 02 03 04 05 3c 00 2b 00 00>", "2001-02-03 04:06:00 +0000"},  // a leap second
      {"<07d1 0d 01 00 00 00 00 2b 00 00>", "2002-01-01 00:00:00 +0000"},
      {"<07d1 00 01 00 00 00 00 2b 00 00>", "2000-12-01 00:00:00 +0000"},
      {"<07d1 01 00 00 00 00 00 2b 00 00>", "2000-12-31 00:00:00 +0000"},
      {"<07d1 02 1e 00 00 00 00 2b 00 00>", "2001-03-02 00:00:00 +0000"},
      {"<07d1 01 01 18 00 00 00 2b 00 00>", "2001-01-02 00:00:00 +0000"},
  };
  for (const auto& [octets, text] : table) {
    EXPECT_EQ(decodedValue(0x31, octets)->stringValue(), text) << octets;
  }
}

TEST(IPPDateTime, ReadsTheLargestFieldsThatTheWireHas) {
  EXPECT_EQ(decodedValue(0x31, "<ffff 0c 1f 17 3b 3b 00 2b 00 00>")->stringValue(),
            "65535-12-31 23:59:59 +0000");
  EXPECT_EQ(decodedValue(0x31, "<0000 01 01 00 00 00 00 2b 00 00>")->stringValue(),
            "0000-01-01 00:00:00 +0000");
  EXPECT_FALSE(decodedValue(0x31, "<ffff ff ff ff ff ff ff ff ff ff>")->description().empty());
  EXPECT_FALSE(decodedValue(0x31, "<0000 00 00 00 00 00 00 2d ff ff>")->description().empty());
}

TEST(IPPDateTime, FailsOnABodyWhoseLengthIsNot11) {
  for (const char* octets : {"<>", "<07d1 02 03 04 05 06 00 2b>", "<07d1 02 03 04 05 06 00 2b 00>",
                             "<07d1 02 03 04 05 06 00 2b 00 00 00>"}) {
    EXPECT_THAT([&] { decodedValue(0x31, octets); },
                ThrowsMessage<RangeException>("Invalid length read for IPP dateTime value"))
        << octets;
  }
}

TEST(IPPDateTime, FailsOnALengthThatNoReaderTakes) {
  EXPECT_THROW(decodedValue(0x31, "800b 07d1 02 03 04 05 06 00 2b 00 00"),
               InconsistentArchiveException);
  EXPECT_THROW(decodedValue(0x31, "000b 07d1"), InconsistentArchiveException);
}

TEST(IPPDateTime, WrapsInstantsOutsideOf32BitsAroundWhenItIsWritten) {
  const std::int64_t wrap = std::int64_t{1} << 32;
  for (const std::int64_t instant : {std::int64_t{0}, std::int64_t{981173106}, std::int64_t{-1}}) {
    const std::string octets = encodedHex(*IPPValue::dateTime(seconds(instant)));
    EXPECT_EQ(encodedHex(*IPPValue::dateTime(seconds(instant + wrap))), octets);
    EXPECT_EQ(encodedHex(*IPPValue::dateTime(seconds(instant - wrap))), octets);
    EXPECT_EQ(encodedHex(*IPPValue::dateTime(seconds(instant + 9 * wrap))), octets);
  }
  // One second after the last of the 32 bits is the first of them.
  EXPECT_EQ(encodedHex(*decodedValue(0x31, "<07f6 01 13 03 0e 08 00 2b 00 00>")),
            hexOf("<076d 0c 0d 14 2d 34 00 2b 00 00>"));
}

TEST(IPPDateTime, CountsWholeSecondsTowardZero) {
  const auto at = [](int milliseconds) {
    return IPPValue::dateTime(Date(std::chrono::milliseconds(milliseconds)))->intValue();
  };
  EXPECT_EQ(at(1999), 1);
  EXPECT_EQ(at(-1999), -1);
  EXPECT_EQ(at(-999), 0);
}

TEST(IPPDateTime, IsEqualToTheSecond) {
  const auto value = IPPValue::dateTime(Date(std::chrono::milliseconds(5001)));
  EXPECT_TRUE(value->isEqual(*IPPValue::dateTime(Date(std::chrono::milliseconds(5999)))));
  EXPECT_EQ(value->hash(), IPPValue::dateTime(Date(std::chrono::milliseconds(5999)))->hash());
  EXPECT_FALSE(value->isEqual(*IPPValue::dateTime(Date(std::chrono::milliseconds(6000)))));
  EXPECT_FALSE(value->isEqual(*IPPValue::integerWithInt(5)));
}

TEST(IPPDateTime, IsNeverTrue) {
  EXPECT_FALSE(IPPValue::dateTime(seconds(1))->boolValue());
  EXPECT_FALSE(IPPValue::dateTime(seconds(0))->boolValue());
}

TEST(IPPDateTime, KeepsTheInstantWhole) {
  const Date instant(std::chrono::milliseconds(1234567));
  EXPECT_EQ(IPPValue::dateTime(instant)->dateTimeValue(), instant);
  EXPECT_EQ(IPPValue::dateTime(instant)->value(), RawValue(instant));
}

TEST(IPPDateTime, TakesADateAndNothingElse) {
  EXPECT_TRUE(IPPDateTime::descriptor._checkValue(seconds(0)));
  for (const RawValue& object : {RawValue(), RawValue(0), RawValue("2001-02-03")}) {
    EXPECT_THAT([&] { static_cast<void>(IPPDateTime::descriptor._ippValue(object)); },
                ThrowsMessage<RangeException>("Invalid parameter"));
  }
}

TEST(IPPDateTime, WritesTheEarliestAndTheLatestDate) {
  EXPECT_NO_THROW(encodedHex(*IPPValue::dateTime(Date::min())));
  EXPECT_NO_THROW(encodedHex(*IPPValue::dateTime(Date::max())));
  EXPECT_FALSE(IPPValue::dateTime(Date::min())->description().empty());
  EXPECT_FALSE(IPPValue::dateTime(Date::max())->description().empty());
}

}  // namespace
}  // namespace platen::test
