// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <utility>

namespace platen::tests {

/// The timers of a host loop that has none of its own.
class TimerQueue {
 public:
  void add(std::chrono::milliseconds delay, std::function<void()> callback) {
    timers_.emplace(Clock::now() + delay, std::move(callback));
  }

  /// Milliseconds until the next is due, at most `limit`.
  [[nodiscard]] int timeout(std::chrono::milliseconds limit) const {
    const auto untilNext =
        timers_.empty() ? Clock::duration(limit) : timers_.begin()->first - Clock::now();
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(untilNext);
    return static_cast<int>(std::clamp(wait, std::chrono::milliseconds(0), limit).count());
  }

  /// Calls those that are due; they may add others and run the loop.
  void callDue() {
    while (!timers_.empty() && timers_.begin()->first <= Clock::now()) {
      const auto callback = std::move(timers_.begin()->second);
      timers_.erase(timers_.begin());
      callback();
    }
  }

 private:
  using Clock = std::chrono::steady_clock;
  std::multimap<Clock::time_point, std::function<void()>> timers_;
};

}  // namespace platen::tests
