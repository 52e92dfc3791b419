// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Messages for scripts. The values of an attribute are always an array, also where there is one:
/// the binary form makes no difference between a value and a set of one (RFC 8010 §3.1.4), and
/// a script shall not depend on how many there happen to be.

#include "Json.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPMessage.h"
#include "platen/IPPValue.h"

namespace platen::tool {

/// The values of an attribute or a member of a collection, an array. Numbers and enums are numbers,
/// booleans booleans; strings, URIs and dates (RFC 3339) are strings; out-of-band values, empty
/// texts and texts that are not valid are null; a range is `{"lower":…,"upper":…}`, a resolution
/// `{"x":…,"y":…,"unit":"dpi"}` (or "dpcm"), a text with a language `{"text":…,"language":…}`, a
/// collection an object of such arrays.
Json valuesJson(const IPPValue& value);

/// An object: names, and the `valuesJson` of each. Attributes of the same name become one.
Json attributesJson(const IPPAttributeGroup::Attributes& attributes);

/// An array of `{"group":…,"attributes":[{"name":…,"syntax":…,"values":…}]}`, everything as it
/// stands in the message.
Json groupsJson(const IPPMessage::Groups& groups);

}  // namespace platen::tool
