// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPDateTime.h"

#include <array>
#include <functional>

#include "platform/Calendar.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr std::size_t kOctets = 11;  // RFC 2579, DateAndTime

IPPValue::Pointer makeDate(const RawValue& object) {
  const Date* date = object.ifDate();
  return std::make_shared<const IPPDateTime>(date == nullptr ? Date() : *date);
}

std::int64_t secondsOf(std::int64_t hours, std::int64_t minutes) {
  return hours * 3600 + minutes * 60;
}

// Fields outside of the calendar are carried over: the 61st second is the next minute's first.
Date dateIn(Bytes octets) {
  const std::int64_t days = daysFromCivil(octets[0] << 8U | octets[1], octets[2], octets[3]);
  const std::int64_t local = days * kSecondsOfDay + secondsOf(octets[4], octets[5]) + octets[6];
  const std::int64_t offset = secondsOf(octets[9], octets[10]);
  return Date(std::chrono::seconds(octets[8] == '-' ? local + offset : local - offset));
}

IPPValue::Pointer decodeDate(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    const RawValue date = coder.decodeRawValueForKey(kValueKey);
    return coder.make<IPPDateTime>(date.isDate() ? date.asDate() : Date());
  }
  const Bytes octets = coder.decodeBytesWithReturnedLength();
  if (octets.size() != kOctets) {
    throw RangeException("Invalid length read for IPP dateTime value");
  }
  return coder.makePlain<IPPDateTime>(dateIn(octets));
}

std::array<std::uint8_t, kOctets> octetsOf(std::int64_t seconds) {
  const auto date = Date(std::chrono::seconds(seconds));
  const auto day = std::chrono::floor<std::chrono::days>(date);
  const CivilDay civil = civilDayOf(day.time_since_epoch().count());
  const auto rest = static_cast<int>(seconds - day.time_since_epoch().count() * kSecondsOfDay);
  const auto octet = [](auto value) { return static_cast<std::uint8_t>(value); };
  return {octet(civil.year >> 8),
          octet(civil.year),
          octet(civil.month),
          octet(civil.day),
          octet(rest / 3600),
          octet(rest / 60 % 60),
          octet(rest % 60),
          0,
          '+',
          0,
          0};
}

}  // namespace

constinit const IPPValueClass IPPDateTime::descriptor{
    "IPPDateTime", 0x31,      "dateTime", [](const RawValue& object) { return object.isDate(); },
    makeDate,      decodeDate};

namespace {
const IPPValueRegistration registration(IPPDateTime::descriptor);
}

RawValue IPPDateTime::rawValue() const { return date_; }

std::optional<Date> IPPDateTime::dateTimeValue() const { return date_; }

std::int32_t IPPDateTime::intValue() const {
  return static_cast<std::int32_t>(date_.time_since_epoch().count() / 1000);
}

bool IPPDateTime::boolValue() const { return false; }

std::optional<std::string> IPPDateTime::stringValue() const { return textOf(date_); }

std::size_t IPPDateTime::hash() const { return std::hash<std::int32_t>()(intValue()); }

bool IPPDateTime::isEqual(const IPPValue& other) const {
  return IPPValue::isEqual(other) && intValue() == other.intValue();
}

void IPPDateTime::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
    return;
  }
  const auto octets = octetsOf(intValue());
  coder.encodeBytes(octets.data(), octets.size());
}

}  // namespace platen::inline v0
