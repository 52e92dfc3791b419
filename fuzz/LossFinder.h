// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platen/IPPArray.h"
#include "platen/IPPConstants.h"
#include "platen/IPPDateTime.h"
#include "platen/IPPMap.h"
#include "platen/IPPMessage.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "platen/TextEncoding.h"

namespace platen::fuzz {

/// Finds out whether a message is one of those that are not what was written when they are read
/// again. Each case is a rule of the reader or the writer:
///
///   - a zero octet in a string or name: it is written up to there;
///   - a string that is there and empty, which reading in another encoding can make: it is written
///     as an absent one is;
///   - a string of more than 32767 octets, which the same can make: the reader takes no such count;
///   - text that the charset of the message does not spell as UTF-8 does: text is written in UTF-8,
///     and "attributes-charset" is not changed for it;
///   - text whose own charset, which its language names, does not give it back;
///   - a value that reads nothing in a collection: the two zero octets that are its length are
///     passed over only between attributes;
///   - an instant outside of 32 bits of seconds where the whole instant counts: it wraps around.
///
/// Each of those is a certain loss. Not so these, where equality does not see all that is lost:
///
///   - a set of values of different syntaxes: all are written under the tag of the last one;
///   - the same as above in the language of a text that is compared by its raw object, which has no
///     language.
///
/// The message must have its operation groups in the order in which they are written.
class LossFinder {
 public:
  explicit LossFinder(const IPPMessage& message);

  /// The message cannot come back.
  [[nodiscard]] bool isLossy() const { return isLossy_; }
  /// The message may or may not come back, whatever isLossy says.
  [[nodiscard]] bool isUncertain() const { return isUncertain_; }

 private:
  struct Place {
    bool isInCollection = false;
    // Values are compared as values and as raw objects in turn, the deeper they are.
    bool isComparedRaw = false;
  };

  void look(const IPPAttribute& attribute);
  void look(const IPPValue& value, Place place);
  void lookInside(const IPPArray& set, Place place);
  void lookInside(const IPPMap& map, Place place);
  [[nodiscard]] bool isLossyText(std::optional<std::string_view> text) const;
  void lookInside(const IPPStringValueWithLanguage& value, Place place);
  void passGroup(const IPPAttributeGroup& group);

  TextEncoding encoding_;  // What the reader takes text to be in.
  bool isLossy_ = false;
  bool isUncertain_ = false;
};

inline constexpr std::size_t kLongestRun = 0x7FFF;

inline Bytes octetsOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline bool isCut(std::optional<std::string_view> written) {
  return written && (written->empty() || written->size() > kLongestRun ||
                     written->find('\0') != std::string_view::npos);
}

inline bool wrapsAround(const IPPDateTime& date) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(date.dateTimeValue().value());
  const std::int64_t count = seconds.time_since_epoch().count();
  using Limits = std::numeric_limits<std::int32_t>;
  return count < Limits::min() || count > Limits::max();
}

// A value of no class of its own, and one that stands for no value.
inline bool readsNothing(const IPPValue& value) {
  return &value.ippClass() == &IPPValue::descriptor ||
         dynamic_cast<const IPPNullValue*>(&value) != nullptr;
}

inline LossFinder::LossFinder(const IPPMessage& message) {
  for (const auto& group : message.ippGroups()) {
    for (const auto& attribute : group->attributes()) {
      look(*attribute);
    }
    passGroup(*group);
  }
}

// The reader changes its encoding when the next group begins. Values beyond the first one are not
// part of the attribute yet.
inline void LossFinder::passGroup(const IPPAttributeGroup& group) {
  if (group.name() != kIPPOperationGroupName) {
    return;
  }
  const auto attribute = group.attributeForName(kIPPAttributesCharsetAttributeName);
  if (attribute != nullptr) {
    const auto* set = dynamic_cast<const IPPArray*>(attribute->ippValue().get());
    const RawValue charset = set != nullptr ? set->at(0).value() : attribute->ippValue()->value();
    const std::string* name = charset.ifString();
    if (!charset.isAbsent()) {
      encoding_ = TextEncoding::forIANACharSetName(name != nullptr ? *name : std::string())
                      .value_or(TextEncoding::utf8());
    }
  }
}

inline void LossFinder::look(const IPPAttribute& attribute) {
  isLossy_ |= isCut(attribute.name());
  look(*attribute.ippValue(), Place());
}

inline void LossFinder::look(const IPPValue& value, Place place) {
  if (const auto* set = dynamic_cast<const IPPArray*>(&value)) {
    lookInside(*set, place);
  } else if (const auto* map = dynamic_cast<const IPPMap*>(&value)) {
    lookInside(*map, place);
  } else if (const auto* withLanguage = dynamic_cast<const IPPStringValueWithLanguage*>(&value)) {
    lookInside(*withLanguage, place);
  } else if (const auto* text = dynamic_cast<const IPPStringInNaturalLanguage*>(&value)) {
    isLossy_ |= isLossyText(text->text());
  } else if (const auto* string = dynamic_cast<const IPPStringValue*>(&value)) {
    isLossy_ |= isCut(string->text());
  } else if (const auto* date = dynamic_cast<const IPPDateTime*>(&value)) {
    isLossy_ |= place.isComparedRaw && wrapsAround(*date);
  } else {
    isLossy_ |= place.isInCollection && readsNothing(value);
  }
}

inline void LossFinder::lookInside(const IPPArray& set, Place place) {
  for (std::size_t i = 0; i < set.size(); ++i) {
    isUncertain_ |= &set.at(i).ippClass() != &set.at(0).ippClass();
    look(set.at(i), {place.isInCollection, !place.isComparedRaw});
  }
}

inline void LossFinder::lookInside(const IPPMap& map, Place place) {
  for (std::size_t i = 0; i < map.size(); ++i) {
    isLossy_ |= isCut(map.nameAt(i));
    look(map.valueAt(i), {true, !place.isComparedRaw});
  }
}

inline bool LossFinder::isLossyText(std::optional<std::string_view> text) const {
  return isCut(text) || (text && !encoding_.isIdentity(octetsOf(*text)));
}

inline void LossFinder::lookInside(const IPPStringValueWithLanguage& value, Place place) {
  if (isLossyText(value.language())) {
    (place.isComparedRaw ? isUncertain_ : isLossy_) = true;
  }
  if (!value.text()) {
    // A body of two absent halves has the length 0, and then nothing more of it is read.
    isLossy_ |= !value.language() && place.isInCollection;
    return;
  }
  const std::string_view language = value.language().value_or("");
  const TextEncoding own = IPPValue::_encodingFromLanguage(language);
  const std::optional<std::string> written = own.encode(*value.text());
  isLossy_ |= !written || isCut(*written) || own.decode(octetsOf(*written)) != *value.text() ||
              language.size() + written->size() + 4 > kLongestRun;
}

}  // namespace platen::fuzz
