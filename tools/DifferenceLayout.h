// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Differences in two columns: names with a mark in front, and what became of their values.

#include <cstddef>
#include <string>
#include <string_view>

#include "AnswerDifference.h"
#include "AttributeLayout.h"
#include "Display.h"
#include "DisplayText.h"
#include "platen/IPPValue.h"

namespace platen::tool {

/// Lays differences out for a display:
///
///     + printer-message        Back at noon.
///     - printer-alert          code=coverOpen
///     ~ printer-state          idle -> stopped           what fits on a line
///     ~ media-ready            - na_letter_8.5x11in      else sets by the values that came and
///     went
///                              + iso_a4_210x297mm
///     ~ media-col-default      ~ media-type  stationery -> photographic     collections by member
///     ~ printer-info           A long text                               and all others one below
///                              -> Another long text                      the other
///
/// Threads: immutable; may be shared between threads.
class DifferenceLayout {
 public:
  explicit DifferenceLayout(const Display& display) noexcept
      : display_(display), values_(display) {}

  [[nodiscard]] Lines linesOf(const ValueDifferences& differences) const;
  /// `text` behind the mark of the change, in its colour.
  [[nodiscard]] std::string marked(Change change, std::string_view text) const;

 private:
  [[nodiscard]] Lines rowsIn(const ValueDifferences& differences, std::size_t width) const;
  [[nodiscard]] Lines valueIn(const ValueDifference& difference, std::size_t width) const;
  [[nodiscard]] Lines shownIn(const IPPValue* value, std::string_view name,
                              std::size_t width) const;
  [[nodiscard]] Lines changeIn(const ValueDifference& difference, std::size_t width) const;
  [[nodiscard]] Lines setChangeIn(const ValueDifference& difference, std::size_t width,
                                  bool withSyntaxes) const;

  Display display_;
  AttributeLayout values_;
};

}  // namespace platen::tool
