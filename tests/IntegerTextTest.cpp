// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "platform/IntegerText.h"

namespace platen {
namespace {

struct Reading {
  std::string_view text;
  std::int32_t value;
};

void expectReadings(std::initializer_list<Reading> readings) {
  for (const Reading& reading : readings) {
    EXPECT_EQ(leadingIntValue(reading.text), reading.value) << '"' << reading.text << '"';
  }
}

TEST(IntegerText, ReadsTheLeadingDigitsAndNoMore) {
  expectReadings({{"42", 42}, {"42abc", 42}, {"42 7", 42}, {"4.9", 4}, {"007", 7}, {"0x10", 0}});
}

TEST(IntegerText, GivesZeroWhenThereIsNoNumberInFront) {
  using namespace std::string_view_literals;
  expectReadings(
      {{"", 0}, {"none", 0}, {" ", 0}, {"-", 0}, {"+", 0}, {"a1", 0}, {"\0001"sv, 0}, {".5", 0}});
}

TEST(IntegerText, TakesOneSignDirectlyBeforeTheDigits) {
  expectReadings({{"-42", -42},
                  {"+42", 42},
                  {"--42", 0},
                  {"+-42", 0},
                  {"- 42", 0},
                  {"-0", 0},
                  {"\u221242", 0}});
}

TEST(IntegerText, SkipsASCIIWhiteSpaceInFrontOnly) {
  expectReadings({{" 42", 42}, {" \t\n\v\f\r42", 42}, {"  -42", -42}, {"\u00A042", 0}, {"4 2", 4}});
}

TEST(IntegerText, HoldsANumberThatDoesNotFitAtTheNearerLimit) {
  expectReadings({{"2147483646", 2147483646},
                  {"2147483647", 2147483647},
                  {"2147483648", 2147483647},
                  {"4294967297", 2147483647},
                  {"-2147483647", -2147483647},
                  {"-2147483648", -2147483647 - 1},
                  {"-2147483649", -2147483647 - 1},
                  {"99999999999999999999999999", 2147483647},
                  {"-99999999999999999999999999", -2147483647 - 1}});
}

TEST(IntegerText, IsNotMisledByManyZerosOrDigits) {
  const std::string zeros(100'000, '0');
  EXPECT_EQ(leadingIntValue(zeros + "12"), 12);
  EXPECT_EQ(leadingIntValue(std::string(100'000, '9')), 2147483647);
}

TEST(IntegerText, CountsOnlyASCIIDigits) { expectReadings({{"\u0661\u0662", 0}, {"1\u0662", 1}}); }

}  // namespace
}  // namespace platen
