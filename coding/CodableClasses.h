// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platen/IPPCoder.h"

namespace platen::inline v0 {

// Every class that an archive knows by its name: those of the catalogs of values and groups, and
// all that `IPPCodableRegistration` names. Put together on first use.

bool isCodableClass(std::string_view className);

/// A new object of that class, which must be one of them, read from a keyed coder. Raises what the
/// class and the coder raise; null when the class has none to give.
IPPCoder::Object decodeObjectOfClass(std::string_view className, IPPCoder& coder);

}  // namespace platen::inline v0
