// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Display.h"
#include "platen/IPPMessage.h"

namespace platen::tool {

/// What stands above a group of that name, "Printer attributes".
std::string headingOf(std::string_view groupName);

/// Writes each group as a heading and its attributes, with an empty line between groups. Groups of
/// one kind are numbered when there are several.
void showGroups(std::ostream& out, const IPPMessage::Groups& groups, const Display& display);

/// The name of a status, "client-error-not-found", or its number, "0x0418".
std::string statusText(std::int32_t statusCode);

}  // namespace platen::tool
