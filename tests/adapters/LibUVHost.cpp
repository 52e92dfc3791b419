// SPDX-License-Identifier: Apache-2.0

#include <optional>

#include "platen/adapters/LibUV.h"
#include "tests/adapters/Host.h"

namespace platen::tests {

namespace {

class LibUVHost final : public Host {
 public:
  LibUVHost() {
    uv_loop_init(&loop_);
    end_ = addTimer(std::chrono::milliseconds(0), [] {});
    makeAdapter();
  }
  ~LibUVHost() override {
    dropAdapter();
    const auto end = [](uv_handle_t* handle, void*) {
      if (uv_is_closing(handle) == 0) {
        uv_close(handle, forget);
      }
    };
    uv_walk(&loop_, end, nullptr);
    uv_run(&loop_, UV_RUN_DEFAULT);
    uv_loop_close(&loop_);
  }

  void turn(std::chrono::milliseconds limit) override {
    start(*end_, limit);
    uv_run(&loop_, UV_RUN_ONCE);
    uv_timer_stop(&end_->handle);
  }
  void callLater(std::chrono::milliseconds delay, std::function<void()> callback) override {
    addTimer(delay, std::move(callback));
  }
  void makeAdapter() override { adapter_.emplace(&loop_); }
  void dropAdapter() override { adapter_.reset(); }
  [[nodiscard]] bool mayNest() const override { return false; }

 private:
  struct Timer {
    uv_timer_t handle{};
    std::function<void()> callback;
  };

  static void forget(uv_handle_t* handle) { delete static_cast<Timer*>(handle->data); }

  // It stays, stopped, until the host goes.
  Timer* addTimer(std::chrono::milliseconds delay, std::function<void()> callback) {
    auto* const timer = new Timer{{}, std::move(callback)};
    timer->handle.data = timer;
    uv_timer_init(&loop_, &timer->handle);
    start(*timer, delay);
    return timer;
  }

  void start(Timer& timer, std::chrono::milliseconds delay) {
    uv_update_time(&loop_);
    const auto call = [](uv_timer_t* handle) { static_cast<Timer*>(handle->data)->callback(); };
    uv_timer_start(&timer.handle, call, static_cast<std::uint64_t>(delay.count()), 0);
  }

  uv_loop_t loop_{};
  /// Ends a wait.
  Timer* end_;
  std::optional<LibUVAdapter> adapter_;
};

}  // namespace

std::unique_ptr<Host> makeHost() { return std::make_unique<LibUVHost>(); }

}  // namespace platen::tests
