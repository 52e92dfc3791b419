// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPResolutionValue.h"
#include "tests/support/Coding.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

const IPPResolutionValue& asResolution(const IPPValue::Pointer& value) {
  return dynamic_cast<const IPPResolutionValue&>(*value);
}

/// A resolution beside its octets and its text.
struct Body {
  Size size;
  bool inInches;
  std::string octets;
  std::string text;
};

TEST(IPPResolutionValue, WritesAndReadsBothExtentsAndTheUnits) {
  const std::vector<Body> table = {
      {{600, 300}, true, "<00000258 0000012c 03>", "{600, 300}"},
      {{600, 600}, false, "<00000258 00000258 04>", "{600, 600}"},
      {{0, 0}, true, "<00000000 00000000 03>", "{0, 0}"},
      {{-1, 1}, false, "<ffffffff 00000001 04>", "{-1, 1}"},
      {{INT32_MAX, INT32_MIN}, true, "<7fffffff 80000000 03>", "{2147483647, -2147483648}"},
  };
  for (const auto& [size, inInches, octets, text] : table) {
    const auto value = IPPValue::resolution(size, inInches);
    EXPECT_EQ(encodedHex(*value), hexOf(octets));
    const auto decoded = decodedValue(0x32, octets);
    EXPECT_EQ(decoded->resolutionValue(), size);
    EXPECT_EQ(asResolution(decoded).unitsAreInches(), inInches);
    EXPECT_TRUE(decoded->isEqual(*value)) << octets;
    EXPECT_EQ(decoded->hash(), value->hash());
    EXPECT_EQ(decoded->stringValue(), text);
    EXPECT_EQ(decoded->description(), "'" + text + "' of resolution");
  }
}

TEST(IPPResolutionValue, ReadsEveryUnitButThreeAsPerCentimetre) {
  for (const char* units : {"00", "01", "04", "07", "83", "ff"}) {
    const auto value = decodedValue(0x32, "0009 00000001 00000002" + std::string(units));
    EXPECT_FALSE(asResolution(value).unitsAreInches()) << units;
    EXPECT_EQ(encodedHex(*value), hexOf("<00000001 00000002 04>"));
  }
}

TEST(IPPResolutionValue, FailsOnABodyWhoseLengthIsNot9) {
  for (const char* length : {"0000", "0008", "000a", "8009", "ffff"}) {
    EXPECT_THAT([&] { decodedValue(0x32, std::string(length) + "00010203040506070809"); },
                ThrowsMessage<RangeException>("Invalid length read for IPP resolution value"))
        << length;
  }
}

TEST(IPPResolutionValue, CutsExtentsToWholeNumbers) {
  EXPECT_EQ(encodedHex(*IPPValue::resolution({599.9, -0.5}, true)),
            hexOf("<00000257 00000000 03>"));
}

TEST(IPPResolutionValue, HoldsExtentsThatNo32BitsHaveAtTheNearestThatTheyDo) {
  const double infinite = std::numeric_limits<double>::infinity();
  EXPECT_EQ(encodedHex(*IPPValue::resolution({1e10, -1e10}, true)),
            hexOf("<7fffffff 80000000 03>"));
  EXPECT_EQ(encodedHex(*IPPValue::resolution({infinite, -infinite}, true)),
            hexOf("<7fffffff 80000000 03>"));
  EXPECT_EQ(encodedHex(*IPPValue::resolution({std::nan(""), 1}, true)),
            hexOf("<00000000 00000001 03>"));
}

// Not the kind of failure that the other factories raise, by design.
TEST(IPPResolutionValue, RefusesWhatIsNoSizeAsAnInvalidArgument) {
  for (const RawValue& object : {RawValue(), RawValue(1), RawValue("600"), RawValue(Range{1, 2})}) {
    EXPECT_THAT([&] { IPPResolutionValue::_ippValue(object, true); },
                ThrowsMessage<InvalidArgumentException>("Invalid parameter"));
    EXPECT_THAT([&] { static_cast<void>(IPPResolutionValue::descriptor._ippValue(object)); },
                ThrowsMessage<RangeException>("Invalid parameter"));
  }
  EXPECT_TRUE(IPPResolutionValue::descriptor._checkValue(Size{1, 2}));
}

TEST(IPPResolutionValue, ComparesTheUnitsToo) {
  const auto value = IPPValue::resolution({600, 600}, true);
  EXPECT_TRUE(value->isEqual(*IPPValue::resolution({600, 600}, true)));
  EXPECT_FALSE(value->isEqual(*IPPValue::resolution({600, 600}, false)));
  EXPECT_FALSE(value->isEqual(*IPPValue::resolution({600, 300}, true)));
}

TEST(IPPResolutionValue, HashesInchesAsOneMore) {
  EXPECT_EQ(IPPValue::resolution({600, 600}, true)->hash(),
            IPPValue::resolution({600, 600}, false)->hash() + 1);
  EXPECT_EQ(IPPValue::resolution({600, 600}, false)->hash(), RawValue(Size{600, 600}).hash());
}

TEST(IPPResolutionValue, KeepsTheUnitsInACopy) {
  for (const bool inInches : {true, false}) {
    const auto copy = IPPValue::resolution({600, 600}, inInches)->copy();
    EXPECT_EQ(asResolution(copy).unitsAreInches(), inInches);
  }
}

}  // namespace
}  // namespace platen::test
