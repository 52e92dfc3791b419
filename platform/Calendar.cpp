// SPDX-License-Identifier: Apache-2.0
#include "platform/Calendar.h"

namespace platen::inline v0 {

namespace {

// The calendar repeats every 400 years, an era; years are counted from March, so that the leap day
// comes last.
constexpr std::int64_t kDaysOfEra = 146097;
constexpr std::int64_t kDaysBeforeEpoch = 719468;  // from 0000-03-01 to 1970-01-01

constexpr std::int64_t floorDivide(std::int64_t value, std::int64_t by) noexcept {
  return value / by - (value % by < 0 ? 1 : 0);
}

}  // namespace

std::int64_t daysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) noexcept {
  const std::int64_t monthsFromMarch = month - 3;
  year += floorDivide(monthsFromMarch, 12);
  const std::int64_t marchMonth = monthsFromMarch - floorDivide(monthsFromMarch, 12) * 12;
  const std::int64_t era = floorDivide(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfYear = (153 * marchMonth + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * kDaysOfEra + dayOfEra - kDaysBeforeEpoch;
}

CivilDay civilDayOf(std::int64_t days) noexcept {
  const std::int64_t shifted = days + kDaysBeforeEpoch;
  const std::int64_t era = floorDivide(shifted, kDaysOfEra);
  const std::int64_t dayOfEra = shifted - era * kDaysOfEra;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
  const int day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

}  // namespace platen::inline v0
