// SPDX-License-Identifier: Apache-2.0
#include "Table.h"

#include <algorithm>
#include <ostream>
#include <string_view>

#include "DisplayText.h"

namespace platen::tool {

namespace {

constexpr std::string_view kEmpty = "-";
constexpr std::string_view kGap = "  ";

// More is not padded to: one very long cell would make every line as long.
constexpr std::size_t kWidest = 60;

std::string_view shown(const std::string& cell) { return cell.empty() ? kEmpty : cell; }

// The last cell ends the line: no blanks follow it.
std::string lineOf(const Table::Row& cells, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t column = 0; column + 1 < cells.size(); ++column) {
    line.append(padded(shown(cells[column]), widths[column])).append(kGap);
  }
  return line.append(shown(cells.back()));
}

}  // namespace

void Table::add(Row cells) {
  for (std::string& cell : cells) {
    cell = harmless(cell);
  }
  rows_.push_back(std::move(cells));
}

std::vector<std::size_t> Table::widths() const {
  std::vector<std::size_t> widths(headings_.size());
  for (std::size_t column = 0; column < widths.size(); ++column) {
    widths[column] = displayWidth(headings_[column]);
    for (const Row& row : rows_) {
      widths[column] =
          std::max(widths[column], std::min(displayWidth(shown(row[column])), kWidest));
    }
  }
  return widths;
}

void Table::show(std::ostream& out, const Display& display) const {
  const auto columns = widths();
  out << display.strong(lineOf(headings_, columns)) << '\n';
  for (const Row& row : rows_) {
    out << lineOf(row, columns) << '\n';
  }
}

void Table::showUpright(std::ostream& out, const Display& display) const {
  std::size_t width = 0;
  for (const std::string& heading : headings_) {
    width = std::max(width, displayWidth(heading));
  }
  std::string_view separator;
  for (const Row& row : rows_) {
    out << separator;
    separator = "\n";
    for (std::size_t column = 0; column < row.size(); ++column) {
      if (!row[column].empty()) {
        out << display.faint(padded(headings_[column], width)) << kGap << row[column] << '\n';
      }
    }
  }
}

}  // namespace platen::tool
