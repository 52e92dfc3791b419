// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platen/Error.h"

namespace platen::inline v0 {

/// The error record of an errno, with the system's text for it.
std::shared_ptr<const Error> posixError(int code);

}  // namespace platen::inline v0
