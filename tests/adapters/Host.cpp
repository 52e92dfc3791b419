// SPDX-License-Identifier: Apache-2.0

#include "tests/adapters/Host.h"

namespace platen::tests {

namespace {

struct Counted {
  explicit Counted(int& counter) : count(++counter) {}
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --count; }

  int& count;
};

}  // namespace

bool Host::runUntil(const std::function<bool()>& isDone, std::chrono::milliseconds limit) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + limit;
  while (!isDone()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    if (left <= std::chrono::milliseconds(0)) {
      return false;
    }
    ++turnCount_;
    const Counted turning(turnsInProgress_);
    turn(left);
  }
  return true;
}

}  // namespace platen::tests
