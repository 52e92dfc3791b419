// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPIdleClock.h"

#include <algorithm>
#include <utility>

namespace platen::inline v0 {

using std::chrono::milliseconds;

namespace {

// Ten years; more would overflow in the arithmetic of clocks.
constexpr double kLongestLimit = 10.0 * 365 * 24 * 3600;
// How often the octets in flight are looked at within the limit.
constexpr int kLooksPerLimit = 8;
// After the limit, the loop gets one turn in which it sees what has come while nobody ran it, and
// another in which this is worked off.
constexpr int kTurnsPastLimit = 2;

milliseconds toLimit(double seconds) {
  if (!(seconds > 0)) {
    return milliseconds(0);
  }
  const std::chrono::duration<double> bounded(std::min(seconds, kLongestLimit));
  return std::chrono::ceil<milliseconds>(bounded);
}

}  // namespace

HTTPIdleClock::HTTPIdleClock(RunLoop& loop, double limit,
                             std::function<std::size_t()> octetsInFlight,
                             std::function<void()> expired)
    : limit_(toLimit(limit)),
      octetsInFlight_(std::move(octetsInFlight)),
      expired_(std::move(expired)),
      timer_(loop, [this] { check(); }) {
  schedule({});
}

void HTTPIdleClock::noteTraffic() {
  lastTraffic_ = RunLoop::Clock::now();
  turnsPastLimit_ = 0;
}

void HTTPIdleClock::suspend() {
  isSuspended_ = true;
  timer_.stop();
}

void HTTPIdleClock::resume() {
  if (std::exchange(isSuspended_, false)) {
    noteTraffic();
    schedule({});
  }
}

void HTTPIdleClock::schedule(RunLoop::Clock::duration idle) {
  if (limit_.count() > 0) {
    const auto left = std::chrono::ceil<milliseconds>(limit_ - idle);
    timer_.start(std::min(left, std::max(limit_ / kLooksPerLimit, milliseconds(1))));
  }
}

void HTTPIdleClock::check() {
  const auto inFlight = octetsInFlight_();
  if (std::exchange(lastInFlight_, inFlight) != inFlight) {
    noteTraffic();
  }
  const auto idle = RunLoop::Clock::now() - lastTraffic_;
  if (idle < limit_) {
    schedule(idle);
  } else if (turnsPastLimit_++ < kTurnsPastLimit) {
    timer_.start(milliseconds(0));
  } else {
    expired_();
  }
}

}  // namespace platen::inline v0
