// SPDX-License-Identifier: Apache-2.0
#include "ValueText.h"

#include <cstdint>
#include <limits>
#include <map>

#include "DisplayText.h"
#include "EnumNames.h"
#include "Facts.h"
#include "platen/IPPArray.h"
#include "platen/IPPConstants.h"
#include "platen/IPPMap.h"
#include "platen/IPPResolutionValue.h"
#include "platen/IPPStringValueWithLanguage.h"

namespace platen::tool {

namespace {

using Formatter = std::string (*)(const IPPValue& value, std::string_view name);

std::string stringText(const IPPValue& value, std::string_view /*name*/) {
  const auto text = value.stringValue();
  return text ? harmless(*text) : "(no text)";
}

std::string stringWithLanguageText(const IPPValue& value, std::string_view name) {
  const auto* string = dynamic_cast<const IPPStringValueWithLanguage*>(&value);
  const auto language = string == nullptr ? std::nullopt : string->language();
  return stringText(value, name) + (language ? " [" + harmless(*language) + "]" : "");
}

std::string enumValueText(const IPPValue& value, std::string_view name) {
  return enumText(name, value.intValue());
}

std::string booleanText(const IPPValue& value, std::string_view /*name*/) {
  return value.boolValue() ? "yes" : "no";
}

// RFC 8011 §5.1.14 calls the limits of 32 bits MIN and MAX.
std::string boundText(std::int64_t bound) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (bound == Limits::min() || bound == Limits::max()) {
    return bound < 0 ? "MIN" : "MAX";
  }
  return std::to_string(bound);
}

std::string rangeText(const IPPValue& value, std::string_view /*name*/) {
  const Range range = value.rangeValue();
  const auto lower = static_cast<std::int64_t>(range.location);
  const auto upper = static_cast<std::int64_t>(range.location + range.length - 1);
  const bool hasSign = lower < 0 || upper < 0;
  return boundText(lower) + (hasSign ? " to " : "-") + boundText(upper);
}

std::string resolutionText(const IPPValue& value, std::string_view /*name*/) {
  const auto* resolution = dynamic_cast<const IPPResolutionValue*>(&value);
  const bool inches = resolution != nullptr && resolution->unitsAreInches();
  const Size size = value.resolutionValue();
  return std::to_string(static_cast<std::int64_t>(size.width)) + "x" +
         std::to_string(static_cast<std::int64_t>(size.height)) + (inches ? " dpi" : " dpcm");
}

std::string dateText(const IPPValue& value, std::string_view /*name*/) {
  const auto date = value.dateTimeValue();
  return date ? instantText(*date) : "(no date)";
}

template <const char* keyword>
std::string outOfBandText(const IPPValue& /*value*/, std::string_view /*name*/) {
  return std::string("(") + keyword + ")";
}

// The keywords of RFC 8010 §3.5.2 and RFC 3380 §8.
constexpr char kUnsupported[] = "unsupported";
constexpr char kUnknown[] = "unknown";
constexpr char kNoValue[] = "no-value";
constexpr char kNotSettable[] = "not-settable";
constexpr char kAdminDefine[] = "admin-define";

// Every syntax whose plain string form is not what people want to read.
const std::map<std::string_view, Formatter>& formatters() {
  static const std::map<std::string_view, Formatter> table{
      {kIPPUnsupportedSyntaxName, &outOfBandText<kUnsupported>},
      {kIPPUnknownSyntaxName, &outOfBandText<kUnknown>},
      {kIPPNoValueSyntaxName, &outOfBandText<kNoValue>},
      {kIPPNotSettableSyntaxName, &outOfBandText<kNotSettable>},
      {kIPPAdminDefineSyntaxName, &outOfBandText<kAdminDefine>},
      {kIPPBooleanSyntaxName, &booleanText},
      {kIPPEnumSyntaxName, &enumValueText},
      {kIPPDateTimeSyntaxName, &dateText},
      {kIPPResolutionSyntaxName, &resolutionText},
      {kIPPRangeOfIntegerSyntaxName, &rangeText},
      {kIPPTextWithLanguageSyntaxName, &stringWithLanguageText},
      {kIPPNameWithLanguageSyntaxName, &stringWithLanguageText},
  };
  return table;
}

std::string setText(const IPPArray& set, std::string_view name) {
  std::string text = "[";
  for (std::size_t i = 0; i < set.size(); ++i) {
    text.append(i == 0 ? "" : ", ").append(valueText(set.at(i), name));
  }
  return text + "]";
}

std::string collectionText(const IPPMap& collection) {
  std::string text = "{";
  for (std::size_t i = 0; i < collection.size(); ++i) {
    const std::string_view name = collection.nameAt(i);
    text.append(i == 0 ? "" : ", ").append(harmless(name));
    text.append(" ").append(valueText(collection.valueAt(i), name));
  }
  return text + "}";
}

}  // namespace

std::string valueText(const IPPValue& value, std::string_view name) {
  if (const auto* set = dynamic_cast<const IPPArray*>(&value)) {
    return setText(*set, name);
  }
  if (const auto* collection = dynamic_cast<const IPPMap*>(&value)) {
    return collectionText(*collection);
  }
  const auto found = formatters().find(value.syntaxName());
  return found == formatters().end() ? stringText(value, name) : found->second(value, name);
}

}  // namespace platen::tool
