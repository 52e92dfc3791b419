// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "Display.h"

namespace platen::tool {

/// Rows for people, in columns that are as wide as their widest cell, but not very wide: a very
/// long cell moves what follows it in its own row. Rows stay on one line each, however long, so
/// that they can be searched.
///
/// Threads: one thread at a time.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row headings) : headings_(std::move(headings)) {}

  /// Adds a row of as many cells as there are headings. An empty cell is shown as a dash.
  void add(Row cells);
  /// With the headings in bold.
  void show(std::ostream& out, const Display& display) const;
  /// Each row as lines of a heading and its cell, with an empty line between rows; empty cells are
  /// left out.
  void showUpright(std::ostream& out, const Display& display) const;

 private:
  [[nodiscard]] std::vector<std::size_t> widths() const;

  Row headings_;
  std::vector<Row> rows_;
};

}  // namespace platen::tool
