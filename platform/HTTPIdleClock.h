// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

#include "platen/RunLoop.h"
#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

/// Measures idle time: how long no octet has moved in either direction.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class HTTPIdleClock {
 public:
  /// `limit` in seconds; 0 or less, or not a number, is none. `octetsInFlight` says how much the
  /// system still has to get acknowledged: a slow peer drains megabytes of it without an event.
  HTTPIdleClock(RunLoop& loop, double limit, std::function<std::size_t()> octetsInFlight,
                std::function<void()> expired);

  /// Octets may have moved.
  void noteTraffic();
  /// The exchange waits for something else than the network.
  void suspend();
  void resume();
  /// The limit; 0 when there is none.
  [[nodiscard]] std::chrono::milliseconds limit() const { return limit_; }

 private:
  void check();
  void schedule(RunLoop::Clock::duration idle);

  std::chrono::milliseconds limit_;
  std::function<std::size_t()> octetsInFlight_;
  std::function<void()> expired_;
  RunLoop::Clock::time_point lastTraffic_ = RunLoop::Clock::now();
  std::size_t lastInFlight_ = 0;
  int turnsPastLimit_ = 0;
  bool isSuspended_ = false;
  Timer timer_;
};

}  // namespace platen::inline v0
