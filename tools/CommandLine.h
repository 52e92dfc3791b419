// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include "Failure.h"

namespace platen::tool {

/// Reads the command line and does what it says. Results go to `out`; raises a `Failure` for
/// whatever does not succeed.
void runCommandLine(int argc, const char* const* argv, std::ostream& out);

}  // namespace platen::tool
