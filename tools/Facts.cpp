// SPDX-License-Identifier: Apache-2.0
#include "Facts.h"

#include <algorithm>

#include "EnumNames.h"
#include "platen/IPPArray.h"
#include "platen/IPPDateTime.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPStringValue.h"

namespace platen::tool {

namespace {

using std::chrono::sys_seconds;

sys_seconds since1970(std::int32_t seconds) { return sys_seconds(std::chrono::seconds(seconds)); }

sys_seconds currentTime() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

}  // namespace

// The library's text of a date is "2001-02-03 04:05:06 +0000".
std::string instantText(Date instant) {
  std::string text = textOf(instant);
  text.replace(text.rfind(' '), std::string::npos, "Z");
  text[text.find(' ')] = 'T';
  return text;
}

bool isSince1970(std::int32_t seconds) {
  constexpr std::int32_t kNoPrinterIsUpSoLong = 1'000'000'000;  // 31 years
  return seconds >= kNoPrinterIsUpSoLong;
}

sys_seconds instantOfUpTime(std::int32_t seconds, std::int32_t now) {
  return isSince1970(seconds) ? since1970(seconds)
                              : currentTime() - std::chrono::seconds(std::int64_t{now} - seconds);
}

IPPValueList Facts::values(std::string_view name) const {
  const auto attribute = group_.attributeForName(name);
  if (attribute == nullptr || attribute->ippValue() == nullptr) {
    return {};
  }
  const auto set = dynamic_cast<const IPPArray*>(attribute->ippValue().get());
  return set == nullptr ? IPPValueList{attribute->ippValue()}
                        : set->arrayValue().value_or(IPPValueList{});
}

template <class Value>
const Value* Facts::first(std::string_view name) const {
  const auto all = values(name);  // which the group holds as well
  return all.empty() ? nullptr : dynamic_cast<const Value*>(all.front().get());
}

std::optional<std::string> Facts::text(std::string_view name) const {
  const auto* value = first<IPPStringValue>(name);
  const auto text = value == nullptr ? std::nullopt : value->stringValue();
  return text && text->empty() ? std::nullopt : text;
}

std::string Facts::textOrEmpty(std::string_view name) const { return text(name).value_or(""); }

std::vector<std::string> Facts::texts(std::string_view name) const {
  std::vector<std::string> result;
  for (const auto& value : values(name)) {
    const bool isString = dynamic_cast<const IPPStringValue*>(value.get()) != nullptr;
    if (const auto text = isString ? value->stringValue() : std::nullopt) {
      result.push_back(*text);
    }
  }
  return result;
}

std::vector<std::string> Facts::reasons(std::string_view name) const {
  auto result = texts(name);
  std::erase(result, "none");
  return result;
}

std::optional<std::int32_t> Facts::number(std::string_view name) const {
  const auto* value = first<IPPNumberValue>(name);
  const bool isNumber = value != nullptr && dynamic_cast<const IPPBoolean*>(value) == nullptr;
  return isNumber ? std::optional(value->intValue()) : std::nullopt;
}

std::string Facts::numberText(std::string_view name) const {
  const auto value = number(name);
  return value ? std::to_string(*value) : "";
}

std::optional<std::string> Facts::enumName(std::string_view name) const {
  const auto value = number(name);
  return value ? std::optional(enumText(name, *value)) : std::nullopt;
}

std::string Facts::stateText(const std::string& name) const {
  const std::string state = enumName(name).value_or("");
  const auto why = reasons(name + "-reasons");
  return why.empty() ? state : state + " (" + joined(why) + ")";
}

std::optional<bool> Facts::flag(std::string_view name) const {
  const auto* value = first<IPPBoolean>(name);
  return value == nullptr ? std::nullopt : std::optional(value->boolValue());
}

std::optional<std::string> Facts::instant(const std::string& what) const {
  if (const auto* date = first<IPPDateTime>("date-time-at-" + what)) {
    if (const auto instant = date->dateTimeValue()) {
      return instantText(*instant);
    }
  }
  const auto seconds = number("time-at-" + what);
  const auto upTime = number("job-printer-up-time");
  if (!seconds || (!upTime && !isSince1970(*seconds))) {
    return std::nullopt;
  }
  return instantText(instantOfUpTime(*seconds, upTime.value_or(0)));
}

std::string yesOrNo(std::optional<bool> value) {
  if (!value) {
    return "";
  }
  return *value ? "yes" : "no";
}

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
  std::string text;
  for (const std::string& word : words) {
    text.append(text.empty() ? "" : separator).append(word);
  }
  return text;
}

}  // namespace platen::tool
