// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

struct uv_loop_s;
struct uv_timer_s;

namespace platen::inline v0 {

/// libuv's side of a run loop.
///
/// Nothing of the library's runs inside `uv_run`: libuv's callbacks only append to a queue, which
/// is worked off after it has returned. So a callback may destroy whatever it likes, and may run
/// the same loop again, which `uv_run` itself does not allow.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class RunLoopCore {
 public:
  /// Raises `std::bad_alloc` when the system has no descriptors left.
  RunLoopCore();
  RunLoopCore(const RunLoopCore&) = delete;
  RunLoopCore& operator=(const RunLoopCore&) = delete;
  ~RunLoopCore();

  /// Lets a core go. One on which a name is still being resolved cannot be closed, and the thread
  /// that resolves cannot be stopped: it is put aside, and tried again whenever a loop is made or
  /// let go.
  static void retire(std::unique_ptr<RunLoopCore> core);
  /// Frees those put aside that have become free meanwhile; returns how many are left.
  static std::size_t reapRetired();

  /// Collects what is ready into the queue, waiting at most `wait` for the first of it.
  void poll(std::chrono::milliseconds wait);
  /// Calls what the queue held on entry. Returns whether that was anything.
  bool dispatch();
  void enqueue(std::function<void()> work);
  /// Has `wakeUp` called when something is scheduled while no turn is in progress.
  void setWakeUp(std::function<void()> wakeUp) { wakeUp_ = std::move(wakeUp); }
  /// To be called when something was scheduled.
  void noteChange();
  /// While one lives, a turn is in progress.
  class Turn {
   public:
    explicit Turn(RunLoopCore& core) : core_(core) { ++core_.turnsInProgress_; }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { --core_.turnsInProgress_; }

   private:
    RunLoopCore& core_;
  };

  [[nodiscard]] int descriptor() const;
  [[nodiscard]] std::optional<std::chrono::milliseconds> timeout();
  [[nodiscard]] uv_loop_s* native() noexcept { return loop_.get(); }

 private:
  bool tryToClose();
  void closeHandles();

  std::unique_ptr<uv_loop_s> loop_;
  /// Ends a wait in which nothing happens.
  std::unique_ptr<uv_timer_s> waitTimer_;
  std::deque<std::function<void()>> queue_;
  std::function<void()> wakeUp_;
  int turnsInProgress_ = 0;
  bool isPolling_ = false;
};

}  // namespace platen::inline v0
