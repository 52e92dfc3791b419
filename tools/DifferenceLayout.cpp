// SPDX-License-Identifier: Apache-2.0
#include "DifferenceLayout.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "ValueText.h"
#include "platen/IPPArray.h"
#include "platen/IPPMap.h"

namespace platen::tool {

namespace {

constexpr std::size_t kMark = 2;
constexpr std::size_t kGap = 2;
constexpr std::size_t kWidestName = 40;
constexpr std::size_t kNarrowestValue = 16;
constexpr std::string_view kArrow = "-> ";

std::string labelOf(const ValueDifference& difference) {
  return difference.name.empty() ? "(no name)" : harmless(difference.name);
}

// Where values begin; beneath the names where these leave too little room.
std::size_t columnOf(const ValueDifferences& differences, std::size_t width) {
  std::size_t column = 0;
  for (const ValueDifference& difference : differences) {
    const std::size_t own = displayWidth(labelOf(difference));
    column = std::max(column, kMark + std::min(own, kWidestName) + kGap);
  }
  return columnsLeft(width, column) < kNarrowestValue ? kMark + kGap : column;
}

// "keyword", where two values read the same and are not.
std::string syntaxOf(const IPPValue* value) {
  const auto* set = dynamic_cast<const IPPArray*>(value);
  const auto* one = set == nullptr || set->size() == 0 ? value : &set->at(0);
  return one == nullptr ? "" : " (" + std::string(one->syntaxName()) + ")";
}

// The text of each value of a set, with its syntax behind what people read.
struct Element {
  std::string key;
  const IPPValue* value;
};

std::vector<Element> elementsOf(const IPPArray& set, std::string_view name) {
  std::vector<Element> elements;
  for (std::size_t index = 0; index < set.size(); ++index) {
    const IPPValue& value = set.at(index);
    elements.push_back({valueText(value, name) + syntaxOf(&value), &value});
  }
  return elements;
}

// Those of `elements` that `others` has not as often.
std::vector<Element> missing(const std::vector<Element>& elements,
                             const std::vector<Element>& others) {
  std::map<std::string_view, std::size_t> counts;
  for (const Element& other : others) {
    ++counts[other.key];
  }
  std::vector<Element> result;
  for (const Element& element : elements) {
    std::size_t& count = counts[element.key];
    if (count == 0) {
      result.push_back(element);
    } else {
      --count;
    }
  }
  return result;
}

std::optional<std::string> sideBySide(const Lines& before, const Lines& after) {
  if (before.size() != 1 || after.size() != 1) {
    return std::nullopt;
  }
  return before.front() + " " + std::string(kArrow) + after.front();
}

Lines oneBelowTheOther(Lines before, Lines after) {
  addBehind(before, std::string(kArrow), kArrow.size(), std::move(after));
  return before;
}

// Of values that read the same: "a4 (keyword) -> a4 (nameWithoutLanguage)".
Lines syntaxChange(const ValueDifference& difference, Lines text) {
  Lines after = text;
  text.back() += syntaxOf(difference.before);
  after.back() += syntaxOf(difference.after);
  const auto line = sideBySide(text, after);
  return line ? Lines{*line} : oneBelowTheOther(std::move(text), std::move(after));
}

}  // namespace

Lines DifferenceLayout::linesOf(const ValueDifferences& differences) const {
  return rowsIn(differences, display_.width());
}

std::string DifferenceLayout::marked(Change change, std::string_view text) const {
  if (change == Change::changed) {
    return display_.changed("~ " + std::string(text));
  }
  return change == Change::added ? display_.added("+ " + std::string(text))
                                 : display_.removed("- " + std::string(text));
}

Lines DifferenceLayout::rowsIn(const ValueDifferences& differences, std::size_t width) const {
  const std::size_t column = columnOf(differences, width);
  Lines lines;
  for (const ValueDifference& difference : differences) {
    const std::string label = labelOf(difference);
    const std::size_t own = kMark + displayWidth(label) + kGap;
    std::string first = marked(difference.change, label);
    Lines value = valueIn(difference, columnsLeft(width, column));
    if (own > column) {
      lines.push_back(std::exchange(first, std::string(column, ' ')));
    } else {
      first += std::string(column - own + kGap, ' ');
    }
    addBehind(lines, first, column, std::move(value));
  }
  return lines;
}

Lines DifferenceLayout::valueIn(const ValueDifference& difference, std::size_t width) const {
  switch (difference.change) {
    case Change::added:
      return shownIn(difference.after, difference.name, width);
    case Change::removed:
      return shownIn(difference.before, difference.name, width);
    default:
      return changeIn(difference, width);
  }
}

Lines DifferenceLayout::shownIn(const IPPValue* value, std::string_view name,
                                std::size_t width) const {
  return value == nullptr ? Lines{"(none)"} : values_.valueIn(*value, name, width);
}

Lines DifferenceLayout::changeIn(const ValueDifference& difference, std::size_t width) const {
  const auto* oldMap = dynamic_cast<const IPPMap*>(difference.before);
  const auto* newMap = dynamic_cast<const IPPMap*>(difference.after);
  const bool areMaps = oldMap != nullptr && newMap != nullptr;
  // Without a look at how they are laid out, which nesting would multiply.
  if (areMaps && !(mayFitInto(width, *oldMap) && mayFitInto(width, *newMap))) {
    return rowsIn(differencesBetween(*oldMap, *newMap), width);
  }
  Lines before = shownIn(difference.before, difference.name, width);
  Lines after = shownIn(difference.after, difference.name, width);
  const bool readTheSame = before == after;
  if (auto line = sideBySide(before, after); line && !readTheSame && displayWidth(*line) <= width) {
    return {*std::move(line)};
  }
  if (areMaps) {
    return rowsIn(differencesBetween(*oldMap, *newMap), width);
  }
  if (Lines lines = setChangeIn(difference, width, readTheSame); !lines.empty()) {
    return lines;
  }
  return readTheSame ? syntaxChange(difference, before)
                     : oneBelowTheOther(std::move(before), std::move(after));
}

// Nothing for what are not two sets, and when no value came or went: then it is their order.
Lines DifferenceLayout::setChangeIn(const ValueDifference& difference, std::size_t width,
                                    bool withSyntaxes) const {
  const auto* before = dynamic_cast<const IPPArray*>(difference.before);
  const auto* after = dynamic_cast<const IPPArray*>(difference.after);
  if (before == nullptr || after == nullptr) {
    return {};
  }
  const auto old = elementsOf(*before, difference.name);
  const auto now = elementsOf(*after, difference.name);
  Lines lines;
  const auto add = [&](Change change, const std::vector<Element>& elements) {
    for (const Element& element : elements) {
      const std::size_t room = columnsLeft(width, kMark);
      addBehind(lines, marked(change, ""), kMark,
                withSyntaxes ? Lines{element.key}
                             : values_.valueIn(*element.value, difference.name, room));
    }
  };
  add(Change::removed, missing(old, now));
  add(Change::added, missing(now, old));
  return lines;
}

}  // namespace platen::tool
