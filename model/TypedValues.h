// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What typed accessors make of the raw object of an attribute.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platen/RawValue.h"
#include "platen/URL.h"

namespace platen::inline v0 {

// Each gives nothing for an object of another kind, however close it is: a peer that sends the
// wrong kind has not said what was asked for, and a guess would look like an answer.

std::optional<URL> urlIn(const RawValue& object);
std::optional<std::string> stringIn(const RawValue& object);
/// An integer or an enum that 32 bits can hold; a boolean is none.
std::optional<std::int32_t> integerIn(const RawValue& object);
std::optional<bool> booleanIn(const RawValue& object);

/// The object itself when it is a URL or a string, otherwise absent.
RawValue urlOrStringIn(const RawValue& object);

/// The low 32 bits of an integer or an enum, whatever its sign; 0 when it is none.
std::uint32_t printerTypeIn(const RawValue& object);

/// The string, or the first value of a set when that is a string.
std::optional<std::string> firstStringIn(const RawValue& object);

/// The strings of a set, without what else is in it, or the one string. Nothing for a set that has
/// values but no string.
std::optional<std::vector<std::string>> stringsIn(const RawValue& object);

}  // namespace platen::inline v0
