// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>

namespace platen::tests {

/// How many threads the program has started so far, those included that have ended. Nothing where a
/// sanitizer sees to threads itself.
std::optional<std::size_t> startedThreadCount();

}  // namespace platen::tests
