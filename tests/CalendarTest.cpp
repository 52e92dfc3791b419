// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <ctime>
#include <vector>

#include "platform/Calendar.h"

namespace platen::test {
namespace {

/// A day beside its number.
struct Day {
  std::int64_t number;
  std::int64_t year;
  int month;
  int day;
};

TEST(Calendar, CountsDaysFrom1970) {
  const std::vector<Day> table = {{0, 1970, 1, 1},           {-1, 1969, 12, 31},
                                  {31, 1970, 2, 1},          {11016, 2000, 2, 29},
                                  {11017, 2000, 3, 1},       {-25508, 1900, 3, 1},
                                  {-25509, 1900, 2, 28},     {-719468, 0, 3, 1},
                                  {-719469, 0, 2, 29},       {-719528, 0, 1, 1},
                                  {-719529, -1, 12, 31},     {24855, 2038, 1, 19},
                                  {23217003, 65535, 12, 31}, {-146097 - 719468, -400, 3, 1}};
  for (const Day& day : table) {
    EXPECT_EQ(daysFromCivil(day.year, day.month, day.day), day.number) << day.number;
    const CivilDay civil = civilDayOf(day.number);
    EXPECT_EQ(civil.year, day.year) << day.number;
    EXPECT_EQ(civil.month, day.month) << day.number;
    EXPECT_EQ(civil.day, day.day) << day.number;
  }
}

TEST(Calendar, AgreesWithTheSystemOnEveryDayOfFourCenturies) {
  for (std::int64_t number = -100'000; number < 50'000; ++number) {
    const auto instant = static_cast<std::time_t>(number * 86400);
    std::tm broken{};
    gmtime_r(&instant, &broken);
    const CivilDay civil = civilDayOf(number);
    ASSERT_EQ(civil.year, broken.tm_year + 1900) << number;
    ASSERT_EQ(civil.month, broken.tm_mon + 1) << number;
    ASSERT_EQ(civil.day, broken.tm_mday) << number;
    ASSERT_EQ(daysFromCivil(civil.year, civil.month, civil.day), number);
  }
}

TEST(Calendar, ComesBackFromEveryYearThatTheWireHas) {
  for (std::int64_t year = 0; year <= 65535; ++year) {
    const CivilDay first = civilDayOf(daysFromCivil(year, 1, 1));
    ASSERT_TRUE(first.year == year && first.month == 1 && first.day == 1) << year;
    const CivilDay last = civilDayOf(daysFromCivil(year, 12, 31));
    ASSERT_TRUE(last.year == year && last.month == 12 && last.day == 31) << year;
  }
}

TEST(Calendar, CarriesMonthsAndDaysOver) {
  EXPECT_EQ(daysFromCivil(2000, 13, 1), daysFromCivil(2001, 1, 1));
  EXPECT_EQ(daysFromCivil(2000, 0, 1), daysFromCivil(1999, 12, 1));
  EXPECT_EQ(daysFromCivil(2000, 255, 1), daysFromCivil(2021, 3, 1));
  EXPECT_EQ(daysFromCivil(2000, -11, 1), daysFromCivil(1999, 1, 1));
  EXPECT_EQ(daysFromCivil(2001, 2, 29), daysFromCivil(2001, 3, 1));
  EXPECT_EQ(daysFromCivil(2001, 3, 0), daysFromCivil(2001, 2, 28));
  EXPECT_EQ(daysFromCivil(2001, 1, 255), daysFromCivil(2001, 9, 12));
}

}  // namespace
}  // namespace platen::test
