// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The proleptic Gregorian calendar in UTC, for every year that 64 bits of days can hold. The
/// calendar of the standard library ends at the year 32767; a dateTime value reaches 65535.

#include <cstdint>

namespace platen::inline v0 {

/// A day of the calendar: month 1 to 12, day 1 to 31.
struct CivilDay {
  std::int64_t year = 1970;
  int month = 1;
  int day = 1;
};

/// The number of days from 1970-01-01 to the given day. A month or a day outside of its range is
/// carried over into the years or months beside it: month 13 is the next January, day 0 the last
/// day of the month before.
std::int64_t daysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) noexcept;

/// The calendar day that is `days` after 1970-01-01.
CivilDay civilDayOf(std::int64_t days) noexcept;

}  // namespace platen::inline v0
