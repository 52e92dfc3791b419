// SPDX-License-Identifier: Apache-2.0
#include "AttributeLayout.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "ValueText.h"
#include "platen/IPPConstants.h"

namespace platen::tool {

namespace {

// Names beyond this stand on a line of their own: one of them shall not push all values aside.
constexpr std::size_t kWidestName = 40;
constexpr std::size_t kGap = 2;
// Values get no narrower than this; where wider names would have it so, values go beneath them.
constexpr std::size_t kNarrowestValue = 16;
// A longer value has a line of its own in a set.
constexpr std::size_t kWidestSideBySide = 40;

bool isSideBySide(const IPPValue& value, const std::string& text) {
  return displayWidth(text) <= kWidestSideBySide && text.find(',') == std::string::npos &&
         value.syntaxName() != kIPPUriSyntaxName;
}

// Takes from `room` the least that the value's text can take; false when that is too much. It
// spares building the text of a large collection again on each level of its nesting.
bool mayFit(const IPPValue& value, std::size_t& room) {
  const auto* collection = dynamic_cast<const IPPMap*>(&value);
  const auto* set = dynamic_cast<const IPPArray*>(&value);
  const std::size_t count = collection ? collection->size() : set ? set->size() : 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (room == 0 || !mayFit(collection ? collection->valueAt(i) : set->at(i), room)) {
      return false;
    }
    room -= room == SIZE_MAX ? 0 : 1;
  }
  return true;
}

// The values of a set with commas behind all but the last; empty when one of them is better off on
// a line of its own.
std::vector<std::string> valuesSideBySide(const IPPArray& set, std::string_view name) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < set.size(); ++i) {
    if (dynamic_cast<const IPPMap*>(&set.at(i)) != nullptr) {
      return {};
    }
    const std::string text = valueText(set.at(i), name);
    if (!isSideBySide(set.at(i), text)) {
      return {};
    }
    words.push_back(text + (i + 1 < set.size() ? ", " : ""));
  }
  return words;
}

bool hasOneLineEach(const std::vector<Lines>& items) {
  return std::all_of(items.begin(), items.end(), [](const Lines& item) { return item.size() < 2; });
}

}  // namespace

bool mayFitInto(std::size_t width, const IPPValue& value) { return mayFit(value, width); }

Lines AttributeLayout::linesOf(const IPPAttributeGroup::Attributes& attributes) const {
  Rows rows;
  for (const auto& attribute : attributes) {
    const auto name = attribute->name();
    rows.push_back(
        {name.value_or(""), name ? harmless(*name) : "(no name)", attribute->ippValue().get()});
  }
  Lines lines;
  addBehind(lines, "  ", kGap, rowsIn(rows, columnsLeft(display_.width(), kGap)));
  return lines;
}

Lines AttributeLayout::rowsIn(const Rows& rows, std::size_t width) const {
  std::size_t column = 0;
  for (const Row& row : rows) {
    column = std::max(column, std::min(displayWidth(row.label), kWidestName) + kGap);
  }
  if (column > kNarrowestValue && columnsLeft(width, column) < kNarrowestValue) {
    column = kGap;
  }
  Lines lines;
  for (const Row& row : rows) {
    Lines value = row.value == nullptr ? Lines{"(none)"}
                                       : valueIn(*row.value, row.name, columnsLeft(width, column));
    addRow(lines, row, std::move(value), column);
  }
  return lines;
}

void AttributeLayout::addRow(Lines& lines, const Row& row, Lines value, std::size_t column) const {
  const std::size_t own = displayWidth(row.label);
  if (own + kGap <= column) {
    const std::string blanks(column - own, ' ');
    return addBehind(lines, display_.faint(row.label) + blanks, column, std::move(value));
  }
  lines.push_back(display_.faint(row.label));
  addBehind(lines, std::string(column, ' '), column, std::move(value));
}

Lines AttributeLayout::valueIn(const IPPValue& value, std::string_view name,
                               std::size_t width) const {
  if (const auto* set = dynamic_cast<const IPPArray*>(&value)) {
    return setIn(*set, name, width);
  }
  const auto* collection = dynamic_cast<const IPPMap*>(&value);
  if (std::size_t room = width; collection != nullptr && !mayFit(value, room)) {
    return collectionIn(*collection, width);
  }
  std::string text = valueText(value, name);
  if (displayWidth(text) <= width) {
    return {std::move(text)};
  }
  if (collection != nullptr) {
    return collectionIn(*collection, width);
  }
  // A URI stays whole, so that it can be copied and followed.
  const bool isURI = value.syntaxName() == kIPPUriSyntaxName;
  return isURI ? Lines{std::move(text)} : wrapped(piecesOf(text), width);
}

Lines AttributeLayout::setIn(const IPPArray& set, std::string_view name, std::size_t width) const {
  if (const auto words = valuesSideBySide(set, name); !words.empty()) {
    return wrapped(words, width);
  }
  constexpr std::string_view kBullet = "- ";
  std::vector<Lines> items;
  for (std::size_t i = 0; i < set.size(); ++i) {
    items.push_back(valueIn(set.at(i), name, columnsLeft(width, kBullet.size())));
  }
  const std::string bullet(hasOneLineEach(items) ? "" : kBullet);
  Lines lines;
  for (Lines& item : items) {
    addBehind(lines, bullet, bullet.size(), std::move(item));
  }
  return lines;
}

Lines AttributeLayout::collectionIn(const IPPMap& collection, std::size_t width) const {
  Rows rows;
  for (std::size_t i = 0; i < collection.size(); ++i) {
    const std::string_view name = collection.nameAt(i);
    rows.push_back({name, harmless(name), &collection.valueAt(i)});
  }
  return rowsIn(rows, width);
}

}  // namespace platen::tool
