// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace platen::tool {

/// How many columns of a terminal a character takes: 0 for a mark that stands on the one before it,
/// for an invisible format character and for the vowels and finals of a Hangul syllable in pieces;
/// 2 for what is wide or full-width (Unicode Standard Annex 11); 1 for all else, also for what is
/// no character.
///
/// Threads: may be called on any.
std::size_t columnsOf(char32_t code);

}  // namespace platen::tool
