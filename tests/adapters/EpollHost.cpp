// SPDX-License-Identifier: Apache-2.0

#include <unistd.h>

#include <array>
#include <optional>

#include "platen/adapters/Epoll.h"
#include "tests/adapters/Host.h"
#include "tests/adapters/TimerQueue.h"

namespace platen::tests {

namespace {

class EpollHost final : public Host {
 public:
  EpollHost() { makeAdapter(); }
  ~EpollHost() override {
    dropAdapter();
    close(epoll_);
  }

  void turn(std::chrono::milliseconds limit) override {
    std::array<epoll_event, 4> events{};
    const int wait = timers_.timeout(limit);
    epoll_wait(epoll_, events.data(), static_cast<int>(events.size()),
               adapter_ ? adapter_->timeout(wait) : wait);
    if (adapter_) {
      adapter_->runOnce();
    }
    timers_.callDue();
  }
  void callLater(std::chrono::milliseconds delay, std::function<void()> callback) override {
    timers_.add(delay, std::move(callback));
  }
  void makeAdapter() override { adapter_.emplace(epoll_); }
  void dropAdapter() override { adapter_.reset(); }
  [[nodiscard]] bool passesExceptions() const override { return true; }

 private:
  int epoll_ = epoll_create1(EPOLL_CLOEXEC);
  TimerQueue timers_;
  std::optional<EpollAdapter> adapter_;
};

}  // namespace

std::unique_ptr<Host> makeHost() { return std::make_unique<EpollHost>(); }

}  // namespace platen::tests
