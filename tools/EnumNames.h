// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The registered names behind numbers: enum values, operations and the bits of printer types.

#include <cstdint>
#include <string>
#include <string_view>

namespace platen::tool {

/// The name that the enum value has in that attribute (RFC 8011 §5.1.5), where the attribute's own
/// name may end in "-default", "-supported", "-ready" or "-actual"; the number when it has none.
std::string enumText(std::string_view attribute, std::int32_t value);

/// The name of the operation, also of those that only the registry of IANA knows; for every other
/// its number, "0x4099".
std::string operationText(std::int32_t operationId);

/// "0x0404".
std::string hexText(std::int32_t code);

}  // namespace platen::tool
