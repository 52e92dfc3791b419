// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Attributes in two columns: names, and values that wrap, stack and nest as they need.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Display.h"
#include "DisplayText.h"
#include "platen/IPPArray.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPMap.h"
#include "platen/IPPValue.h"

namespace platen::tool {

/// False when a value has so many parts that it cannot fit on a line of `width` columns. It takes
/// no longer than the line is wide.
bool mayFitInto(std::size_t width, const IPPValue& value);

/// Lays attributes out for a display:
///
///     copies-supported   1-999
///     media-supported    iso_a4_210x297mm, na_letter_8.5x11in,       short values: side by side
///                        om_small-photo_100x150mm
///     printer-more-info  http://printer.example/                     long ones, URIs: one per line
///                        http://printer.example/help
///     media-col-default  media-size   {x-dimension 21000, y-dimension 29700}
///                        media-type   stationery                     collections: as columns again
///     media-col-ready    - media-type stationery                     several of them, if they
///                        - media-type photographic                   need more than a line each
///
/// A collection that fits on one line is shown on one. When nesting leaves too little room for
/// columns, values go beneath their names.
///
/// Threads: immutable; may be shared between threads.
class AttributeLayout {
 public:
  explicit AttributeLayout(const Display& display) noexcept : display_(display) {}

  [[nodiscard]] Lines linesOf(const IPPAttributeGroup::Attributes& attributes) const;
  /// The value of the attribute `name` alone, one line at least.
  [[nodiscard]] Lines valueIn(const IPPValue& value, std::string_view name,
                              std::size_t width) const;

 private:
  /// One name and its value, which may be missing.
  struct Row {
    std::string_view name;
    std::string label;
    const IPPValue* value;
  };
  using Rows = std::vector<Row>;

  [[nodiscard]] Lines rowsIn(const Rows& rows, std::size_t width) const;
  [[nodiscard]] Lines setIn(const IPPArray& set, std::string_view name, std::size_t width) const;
  [[nodiscard]] Lines collectionIn(const IPPMap& collection, std::size_t width) const;
  void addRow(Lines& lines, const Row& row, Lines value, std::size_t column) const;

  Display display_;
};

}  // namespace platen::tool
