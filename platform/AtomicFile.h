// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platen/Data.h"

namespace platen::inline v0 {

/// Writes `data` to the file at `path`, in the place of an earlier one, with the mode 0600: a
/// reader sees the old file or the new one, never a part. False, and nothing changed, when it
/// fails; `errno` then says why. What is no regular file is not replaced, nor is a link to it: a
/// directory (EISDIR), a device, a pipe or a socket (EINVAL).
bool writeFileAtomically(const std::string& path, Bytes data);

}  // namespace platen::inline v0
