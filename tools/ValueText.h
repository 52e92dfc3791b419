// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Attribute values as people read them.

#include <string>
#include <string_view>

#include "platen/IPPValue.h"

namespace platen::tool {

/// The value of the attribute `name` in one line, harmless to a terminal: enums by name, "yes" and
/// "no", "1-999" (a bound at the limit of 32 bits as "MIN" or "MAX"), "600x600 dpi",
/// "2001-02-03T04:05:06Z", "Guten Tag [de]", out-of-band values as "(no-value)", strings that are
/// absent as "(no text)", sets as "[a, b]" and collections as "{a 1, b 2}".
std::string valueText(const IPPValue& value, std::string_view name);

}  // namespace platen::tool
