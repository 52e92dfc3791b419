// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Tables that give numbers their names.

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

namespace platen::inline v0 {

/// One row of such a table.
struct CodeName {
  std::int32_t code;
  std::string_view name;
};

/// True when no code comes before a smaller or an equal one, which `nameForCode` relies on.
constexpr bool isStrictlyAscending(std::span<const CodeName> table) {
  const auto notBelow = [](const CodeName& left, const CodeName& right) {
    return left.code >= right.code;
  };
  return std::ranges::adjacent_find(table, notBelow) == table.end();
}

/// The name of `code` in a strictly ascending table, or nothing.
constexpr std::optional<std::string_view> nameForCode(std::span<const CodeName> table,
                                                      std::int32_t code) {
  const auto row = std::ranges::lower_bound(table, code, {}, &CodeName::code);
  if (row == table.end() || row->code != code) return std::nullopt;
  return row->name;
}

/// The table as a dictionary.
inline std::map<std::int32_t, std::string_view> dictionaryFromTable(
    std::span<const CodeName> table) {
  std::map<std::int32_t, std::string_view> dictionary;
  for (const CodeName& row : table) dictionary.emplace(row.code, row.name);
  return dictionary;
}

}  // namespace platen::inline v0
