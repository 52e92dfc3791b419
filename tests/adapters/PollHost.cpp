// SPDX-License-Identifier: Apache-2.0

#include <optional>

#include "platen/adapters/Poll.h"
#include "tests/adapters/Host.h"
#include "tests/adapters/TimerQueue.h"

namespace platen::tests {

namespace {

class PollHost final : public Host {
 public:
  PollHost() { makeAdapter(); }

  void turn(std::chrono::milliseconds limit) override {
    if (adapter_) {
      auto entry = adapter_->entry();
      poll(&entry, 1, adapter_->timeout(timers_.timeout(limit)));
      adapter_->runOnce();
    } else {
      poll(nullptr, 0, timers_.timeout(limit));
    }
    timers_.callDue();
  }
  void callLater(std::chrono::milliseconds delay, std::function<void()> callback) override {
    timers_.add(delay, std::move(callback));
  }
  void makeAdapter() override { adapter_.emplace(); }
  void dropAdapter() override { adapter_.reset(); }
  [[nodiscard]] bool passesExceptions() const override { return true; }

 private:
  TimerQueue timers_;
  std::optional<PollAdapter> adapter_;
};

}  // namespace

std::unique_ptr<Host> makeHost() { return std::make_unique<PollHost>(); }

}  // namespace platen::tests
