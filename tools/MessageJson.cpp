// SPDX-License-Identifier: Apache-2.0
#include "MessageJson.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <string_view>

#include "Facts.h"
#include "platen/IPPArray.h"
#include "platen/IPPConstants.h"
#include "platen/IPPMap.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPResolutionValue.h"
#include "platen/IPPStringValueWithLanguage.h"

namespace platen::tool {

namespace {

// Values by their names, those of one name together, in the order in which names come first.
class NamedValues {
 public:
  void add(std::string_view name, const IPPValue* value) {
    const auto [found, isNew] = places_.try_emplace(name, names_.size());
    if (isNew) {
      names_.push_back(name);
      values_.emplace_back();
    }
    if (value != nullptr) {
      addTo(values_[found->second], *value);
    }
  }

  static void addTo(std::vector<Json>& all, const IPPValue& value);

  [[nodiscard]] Json json() const {
    std::vector<Json::Member> members;
    for (std::size_t i = 0; i < names_.size(); ++i) {
      members.emplace_back(names_[i], Json::array(values_[i]));
    }
    return Json::object(members);
  }

 private:
  std::map<std::string_view, std::size_t> places_;
  std::vector<std::string_view> names_;
  std::vector<std::vector<Json>> values_;
};

Json numberJson(const IPPValue& value) { return value.intValue(); }

Json booleanJson(const IPPValue& value) { return value.boolValue(); }

Json stringJson(const IPPValue& value) { return value.stringValue(); }

Json stringWithLanguageJson(const IPPValue& value) {
  const auto* string = dynamic_cast<const IPPStringValueWithLanguage*>(&value);
  const auto language = string == nullptr ? std::nullopt : string->language();
  return Json::object({{"text", stringJson(value)}, {"language", language}});
}

Json rangeJson(const IPPValue& value) {
  const Range range = value.rangeValue();
  return Json::object({{"lower", static_cast<std::int64_t>(range.location)},
                       {"upper", static_cast<std::int64_t>(range.location + range.length - 1)}});
}

Json resolutionJson(const IPPValue& value) {
  const auto* resolution = dynamic_cast<const IPPResolutionValue*>(&value);
  const bool inches = resolution != nullptr && resolution->unitsAreInches();
  const Size size = value.resolutionValue();
  return Json::object({{"x", static_cast<std::int64_t>(size.width)},
                       {"y", static_cast<std::int64_t>(size.height)},
                       {"unit", inches ? "dpi" : "dpcm"}});
}

Json dateJson(const IPPValue& value) {
  const auto date = value.dateTimeValue();
  return date ? Json(instantText(std::chrono::floor<std::chrono::seconds>(*date))) : Json();
}

Json collectionJson(const IPPMap& collection) {
  NamedValues members;
  for (std::size_t i = 0; i < collection.size(); ++i) {
    members.add(collection.nameAt(i), &collection.valueAt(i));
  }
  return members.json();
}

using Writer = Json (*)(const IPPValue& value);

// Every syntax that is no string.
const std::map<std::string_view, Writer>& writers() {
  static const std::map<std::string_view, Writer> table{
      {kIPPIntegerSyntaxName, &numberJson},
      {kIPPEnumSyntaxName, &numberJson},
      {kIPPBooleanSyntaxName, &booleanJson},
      {kIPPDateTimeSyntaxName, &dateJson},
      {kIPPResolutionSyntaxName, &resolutionJson},
      {kIPPRangeOfIntegerSyntaxName, &rangeJson},
      {kIPPTextWithLanguageSyntaxName, &stringWithLanguageJson},
      {kIPPNameWithLanguageSyntaxName, &stringWithLanguageJson},
  };
  return table;
}

bool isOutOfBand(const IPPValue& value) {
  return value.syntaxName() == kIPPUnknownSyntaxName ||
         dynamic_cast<const IPPNullValue*>(&value) != nullptr;
}

Json oneJson(const IPPValue& value) {
  if (const auto* collection = dynamic_cast<const IPPMap*>(&value)) {
    return collectionJson(*collection);
  }
  if (isOutOfBand(value)) {
    return {};
  }
  const auto found = writers().find(value.syntaxName());
  return found == writers().end() ? stringJson(value) : found->second(value);
}

void NamedValues::addTo(std::vector<Json>& all, const IPPValue& value) {
  const auto* set = dynamic_cast<const IPPArray*>(&value);
  if (set == nullptr) {
    return all.push_back(oneJson(value));
  }
  for (std::size_t i = 0; i < set->size(); ++i) {
    all.push_back(oneJson(set->at(i)));
  }
}

// Of a set, what its first value is of.
std::string_view syntaxOf(const IPPValue& value) {
  const auto* set = dynamic_cast<const IPPArray*>(&value);
  return set == nullptr || set->size() == 0 ? value.syntaxName() : set->at(0).syntaxName();
}

Json attributeJson(const IPPAttribute& attribute) {
  const auto& value = attribute.ippValue();
  return Json::object({{"name", attribute.name()},
                       {"syntax", value == nullptr ? Json() : Json(syntaxOf(*value))},
                       {"values", value == nullptr ? Json::array({}) : valuesJson(*value)}});
}

}  // namespace

Json valuesJson(const IPPValue& value) {
  std::vector<Json> all;
  NamedValues::addTo(all, value);
  return Json::array(all);
}

Json attributesJson(const IPPAttributeGroup::Attributes& attributes) {
  NamedValues all;
  for (const auto& attribute : attributes) {
    all.add(attribute->name().value_or(""), attribute->ippValue().get());
  }
  return all.json();
}

Json groupsJson(const IPPMessage::Groups& groups) {
  std::vector<Json> all;
  for (const auto& group : groups) {
    std::vector<Json> attributes;
    for (const auto& attribute : group->attributes()) {
      attributes.push_back(attributeJson(*attribute));
    }
    all.push_back(Json::object({{"group", group->name()}, {"attributes", attributes}}));
  }
  return Json::array(all);
}

}  // namespace platen::tool
