// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Text on its way to a terminal: made harmless, measured and broken into lines.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace platen::tool {

using Lines = std::vector<std::string>;

/// `text` with everything escaped that could act on a terminal or turn its words around: control
/// characters ("\n", "\t", "\x1b", "\u0085"), line and paragraph separators, the marks of writing
/// direction, and octets that are no UTF-8 ("\xff").
std::string harmless(std::string_view text);

/// How many columns of a terminal `text` takes, each of its characters as `columnsOf` has it; an
/// octet that is no UTF-8 takes one.
std::size_t displayWidth(std::string_view text);

/// As much of `text` from its beginning as takes at most `width` columns.
std::string_view beginning(std::string_view text, std::size_t width);

/// `text` followed by blanks up to `width` columns; a wider one as it is.
std::string padded(std::string_view text, std::size_t width);

/// `pieces` one after the other in as few lines of at most `width` columns as they fit. A piece is
/// never broken: one that is wider has a line of its own. Blanks at the end of a line are left out.
Lines wrapped(const std::vector<std::string>& pieces, std::size_t width);

/// What is left of `width` columns when so many are taken; without end (SIZE_MAX) stays so.
std::size_t columnsLeft(std::size_t width, std::size_t taken);

/// Adds `text` to `lines`: its first line behind `first`, which takes `firstWidth` columns, and the
/// others behind as many blanks.
void addBehind(Lines& lines, const std::string& first, std::size_t firstWidth, Lines text);

/// `text` cut behind each blank and each semicolon.
std::vector<std::string> piecesOf(std::string_view text);

}  // namespace platen::tool
