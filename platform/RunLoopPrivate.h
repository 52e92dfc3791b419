// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platen/RunLoop.h"
#include "platform/RunLoopCore.h"

namespace platen::inline v0 {

struct WatchState;
struct TimerState;

/// Tells when a descriptor has become readable or writable, on every turn anew as long as it is.
/// The callback is called from a turn of the loop and may do anything, such as destroying the watch
/// or running the loop. When the loop goes first, the watch falls silent.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class Watch {
 public:
  /// An error or a hang-up shows as readable and writable, so that the next read or write tells it.
  using Callback = std::function<void(bool readable, bool writable)>;

  /// Watches for nothing yet. The descriptor stays the caller's, must stay open as long as the
  /// watch lives, and may have one watch in a loop.
  Watch(RunLoop& loop, int descriptor, Callback callback);
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();

  /// Says what to wait for. False when the descriptor cannot be waited for: a file, which is always
  /// ready, or one that is not open.
  bool setInterest(bool readable, bool writable);

 private:
  std::shared_ptr<WatchState> state_;
};

/// Calls back once, some time after each `start`. The callback is called from a turn of the loop
/// and may do anything, such as destroying the timer. When the loop goes first, it falls silent.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class Timer {
 public:
  Timer(RunLoop& loop, std::function<void()> callback);
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  ~Timer();

  /// Has the callback called in `delay`, in the place of an earlier start.
  void start(std::chrono::milliseconds delay);
  void stop();

 private:
  std::shared_ptr<TimerState> state_;
};

/// What the rest of the library schedules on a loop.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
struct RunLoop::Private {
 public:
  /// The calling thread's loop for blocking calls. It outlasts the call, so that the connections
  /// that servers keep alive are used again by the next.
  static std::shared_ptr<RunLoop> forBlockingCalls();

  /// Has `work` called in the next turn, in the order of the calls.
  void callSoon(std::function<void()> work) { core_->enqueue(std::move(work)); }

  /// The loop's one `T`, made on first use with the loop as argument and let go before the loop.
  template <typename T>
  T& attachment(RunLoop& loop) {
    static const char key = 0;
    if (void* const found = findAttachment(&key)) {
      return *static_cast<T*>(found);
    }
    auto made = std::make_shared<T>(loop);
    attachments_.emplace_back(&key, made);
    return *made;
  }

  [[nodiscard]] RunLoopCore& core() noexcept { return *core_; }

 private:
  friend class RunLoop;

  [[nodiscard]] void* findAttachment(const void* key) const;
  void tearDown();

  std::unique_ptr<RunLoopCore> core_ = std::make_unique<RunLoopCore>();
  std::vector<std::pair<const void*, std::shared_ptr<void>>> attachments_;
  int runsInProgress_ = 0;
  bool stopRequested_ = false;
};

}  // namespace platen::inline v0
