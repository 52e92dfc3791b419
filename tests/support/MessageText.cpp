// SPDX-License-Identifier: Apache-2.0

#include "tests/support/MessageText.h"

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "platen/IPPArray.h"
#include "platen/IPPMap.h"
#include "platen/IPPResolutionValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "platform/Calendar.h"

namespace platen::test {
namespace {

std::string hexOctet(int octet) {
  char text[8];
  std::snprintf(text, sizeof text, "%02x", static_cast<unsigned>(octet) & 0xffU);
  return text;
}

std::string quoted(std::string_view string) {
  std::string text = "\"";
  for (const char character : string) {
    if (character == '"' || character == '\\') {
      text.append("\\").push_back(character);
    } else if (character >= 0x20 && character < 0x7f) {
      text.push_back(character);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(character));
      text += escape;
    }
  }
  return text + "\"";
}

std::string inHex(std::string_view string) {
  std::string text = "h'";
  for (const char character : string) {
    text += hexOctet(character);
  }
  return text + "'";
}

std::string dateText(std::int64_t seconds) {
  const std::int64_t days = seconds / 86400 - (seconds % 86400 < 0 ? 1 : 0);
  const std::int64_t rest = seconds - days * 86400;
  const CivilDay day = civilDayOf(days);
  char text[96];
  std::snprintf(text, sizeof text, "%04lld-%02d-%02dT%02d:%02d:%02d.0+00:00",
                static_cast<long long>(day.year), day.month, day.day, static_cast<int>(rest / 3600),
                static_cast<int>(rest / 60 % 60), static_cast<int>(rest % 60));
  return text;
}

std::string instantText(const IPPValue& value) {
  const Date date = value.dateTimeValue().value();
  return dateText(std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count());
}

std::string resolutionText(const IPPValue& value) {
  const Size size = value.resolutionValue();
  const bool inInches = dynamic_cast<const IPPResolutionValue&>(value).unitsAreInches();
  return std::to_string(static_cast<std::int32_t>(size.width)) + "x" +
         std::to_string(static_cast<std::int32_t>(size.height)) + (inInches ? "/3" : "/4");
}

std::string rangeText(const IPPValue& value) {
  const Range range = value.rangeValue();
  return std::to_string(static_cast<std::int32_t>(range.location)) + ".." +
         std::to_string(static_cast<std::int32_t>(range.location + range.length - 1));
}

std::string collectionText(const IPPMap& map) {
  std::string text = "{";
  for (std::size_t i = 0; i < map.size(); ++i) {
    text += i == 0 ? "" : ";";
    text += quoted(map.nameAt(i)) + "=" + valueText(map.valueAt(i));
  }
  return text + "}";
}

std::string withLanguageText(const IPPValue& value) {
  const auto& string = dynamic_cast<const IPPStringValueWithLanguage&>(value);
  return "[" + quoted(string.language().value_or("")) + "]" + quoted(string.text().value_or(""));
}

std::string bodyText(const IPPValue& value) {
  const std::uint8_t tag = value.ippTag();
  if (tag >= 0x10 && tag <= 0x1f) {
    return "-";
  }
  switch (tag) {
    case 0x21:
    case 0x23:
      return std::to_string(value.intValue());
    case 0x22:
      return value.boolValue() ? "true" : "false";
    case 0x31:
      return instantText(value);
    case 0x32:
      return resolutionText(value);
    case 0x33:
      return rangeText(value);
    case 0x34:
      return collectionText(dynamic_cast<const IPPMap&>(value));
    case 0x35:
    case 0x36:
      return withLanguageText(value);
    default:
      break;
  }
  const std::string string = value.stringValue().value_or("");
  const bool isQuoted = tag == 0x41 || tag == 0x42 || (tag >= 0x44 && tag <= 0x49);
  return isQuoted ? quoted(string) : inHex(string);
}

std::string attributeText(std::int32_t groupTag, const IPPAttribute& attribute) {
  std::string text = hexOctet(groupTag) + "\t" + quoted(attribute.name().value_or(""));
  return attribute.ippValue() == nullptr ? text
                                         : text + "\t" + valueText(*attribute.ippValue(), "\t");
}

/// A date at the front of a text, moved to UTC, and how many characters it took there: 0 for none.
struct DateInUTC {
  std::string text;
  int length = 0;
};

DateInUTC dateAtFront(const char* text) {
  int year = 0, month = 0, day = 0, hours = 0, minutes = 0, seconds = 0, length = 0;
  int offsetHours = 0, offsetMinutes = 0;
  char direction = '+';
  std::sscanf(text, "31:%d-%d-%dT%d:%d:%d.%*d%c%d:%d%n", &year, &month, &day, &hours, &minutes,
              &seconds, &direction, &offsetHours, &offsetMinutes, &length);
  if (length == 0) {
    return {};
  }
  const std::int64_t days = daysFromCivil(year, month, day);
  const std::int64_t local = days * 86400 + hours * 3600 + minutes * 60 + seconds;
  const std::int64_t offset = offsetHours * 3600 + offsetMinutes * 60;
  return {"31:" + dateText(direction == '-' ? local + offset : local - offset), length};
}

}  // namespace

std::string valueText(const IPPValue& value, const std::string& separator) {
  const auto* array = dynamic_cast<const IPPArray*>(&value);
  if (array == nullptr) {
    return hexOctet(value.ippTag()) + ":" + bodyText(value);
  }
  std::string text;
  for (std::size_t i = 0; i < array->size(); ++i) {
    text += (i == 0 ? "" : separator) + valueText(array->at(i));
  }
  return text;
}

std::string groupText(const IPPAttributeGroup& group) {
  std::string text = "group " + hexOctet(group.ippTag()) + "\n";
  for (const auto& attribute : group.attributes()) {
    text += attributeText(group.ippTag(), *attribute) + "\n";
  }
  return text;
}

std::string messageText(const IPPMessage& message, std::size_t dataOctets) {
  char line[80];
  std::snprintf(line, sizeof line, "message version=1.1 code=0x%04x request-id=%u\n",
                static_cast<unsigned>(static_cast<std::uint16_t>(message.ippTag())),
                static_cast<unsigned>(message.requestId()));
  std::string text = line;
  for (const auto& group : message.ippGroups()) {
    text += groupText(*group);
  }
  return dataOctets == 0 ? text : text + "data " + std::to_string(dataOctets) + "\n";
}

std::string withDatesInUTC(const std::string& text) {
  std::string result;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t found = text.find("31:", position);
    result += text.substr(position, found - position);
    if (found == std::string::npos) {
      break;
    }
    const DateInUTC date = dateAtFront(text.c_str() + found);
    result += date.length == 0 ? text.substr(found, 1) : date.text;
    position = found + (date.length == 0 ? 1 : static_cast<std::size_t>(date.length));
  }
  return result;
}

}  // namespace platen::test
