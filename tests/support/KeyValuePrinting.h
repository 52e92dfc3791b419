// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "platen/KeyValue.h"

namespace platen::inline v0 {

/// What a failed expectation shows of a result.
inline void PrintTo(const KeyValue& value, std::ostream* out) { *out << value.description(); }

}  // namespace platen::inline v0
