// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platen/Data.h"

namespace platen::test {

/// The octets that `text` spells:
///
///     text   = *( blank / octet / quoted / run )
///     octet  = 2HEXDIG
///     quoted = "'" *( any but "'" ) "'"        ; these octets themselves
///     run    = "<" text ">"                    ; a 16-bit count, then that many octets
///
/// so that `octets("21 <'copies'> <0000 0002>")` is a whole attribute record. Throws
/// std::invalid_argument for any other text.
Data octets(std::string_view text);

/// Two hexadecimal digits for each octet, a blank between two octets.
std::string hex(Bytes bytes);

}  // namespace platen::test
