// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What the adapters share.

#include <algorithm>
#include <chrono>
#include <limits>

#include "platen/RunLoop.h"

namespace platen::inline v0 {

/// How long a host may wait, in milliseconds as `poll` takes them: the shorter of `hostTimeout` and
/// of what `loop` allows (`RunLoop::timeout`); 0 is not at all, -1 is for ever. Threads: as `loop`.
inline int shorterTimeout(const RunLoop& loop, int hostTimeout) {
  const auto wait = loop.timeout();
  if (!wait) {
    return hostTimeout;
  }
  constexpr auto kLongest = std::chrono::milliseconds(std::numeric_limits<int>::max());
  const int own = static_cast<int>(std::min(*wait, kLongest).count());
  return hostTimeout < 0 ? own : std::min(own, hostTimeout);
}

}  // namespace platen::inline v0
