// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platen/Data.h"

namespace platen::inline v0 {

/// Writes `data` to the file at `path`, in the place of an earlier one, with the mode 0600: a
/// reader sees the old file or the new one, never a part. False, and nothing changed, when it
/// fails.
bool writeFileAtomically(const std::string& path, Bytes data);

}  // namespace platen::inline v0
