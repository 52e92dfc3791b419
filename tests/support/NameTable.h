// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string_view>

namespace platen::test {

/// What is expected of a table of codes and their names.
struct NamedCode {
  std::int32_t code;
  std::string_view constant;
  std::string_view name;
};

using NameForCode = std::function<std::optional<std::string_view>(std::int32_t)>;

inline void expectNamesOfConstants(std::span<const NamedCode> rows, const NameForCode& nameFor) {
  for (const auto& row : rows) {
    EXPECT_EQ(nameFor(row.code), row.name) << row.code;
    EXPECT_EQ(row.constant, row.name);
  }
}

/// Of all numbers of 16 bits, whichever way they are taken.
inline void expectNamesForNoOther(std::span<const NamedCode> rows, const NameForCode& nameFor) {
  std::size_t named = 0;
  for (std::int32_t code = -0x8000; code <= 0xFFFF; ++code) {
    if (nameFor(code)) ++named;
  }
  EXPECT_EQ(named, rows.size());
}

template <typename Table>
void expectTable(std::span<const NamedCode> rows, const Table& table) {
  ASSERT_EQ(table.size(), rows.size());
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(table[i].code, rows[i].code);
    EXPECT_EQ(table[i].name, rows[i].name);
  }
}

inline void expectDictionary(std::span<const NamedCode> rows,
                             const std::map<std::int32_t, std::string_view>& dictionary) {
  EXPECT_EQ(dictionary.size(), rows.size());
  for (const auto& row : rows) {
    const auto found = dictionary.find(row.code);
    ASSERT_NE(found, dictionary.end()) << row.code;
    EXPECT_EQ(found->second, row.name);
  }
}

}  // namespace platen::test
