// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Platen in a program that waits with `poll`.

#include <poll.h>

#include <chrono>
#include <memory>
#include <utility>

#include "platen/RunLoop.h"
#include "platen/adapters/Wait.h"

namespace platen::inline v0 {

/// Gives a `poll` loop what it needs to drive a run loop: an entry for its array, a time-out, and
/// something to call afterwards.
///
///     platen::PollAdapter platen;
///     for (;;) {
///       std::array entries{platen.entry(), pollfd{mine, POLLIN, 0}};
///       poll(entries.data(), entries.size(), platen.timeout());
///       platen.runOnce();
///       ...
///     }
///
/// Delegates may run such a loop themselves, and may destroy the adapter. What a delegate throws
/// comes out of `runOnce`.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class PollAdapter {
 public:
  /// Holds `loop`, and changes nothing about it.
  explicit PollAdapter(std::shared_ptr<RunLoop> loop = RunLoop::current())
      : loop_(std::move(loop)) {}
  PollAdapter(const PollAdapter&) = delete;
  PollAdapter& operator=(const PollAdapter&) = delete;
  ~PollAdapter() = default;

  /// What to wait for; always the same. The descriptor stays the run loop's.
  [[nodiscard]] pollfd entry() const { return {loop_->descriptor(), POLLIN, 0}; }

  /// The time-out to give to `poll`, in milliseconds, asked before every wait: `hostTimeout`, the
  /// program's own (-1: for ever), or less. It may be 0, and then `poll` must not wait.
  [[nodiscard]] int timeout(int hostTimeout = -1) const {
    return shorterTimeout(*loop_, hostTimeout);
  }

  /// One turn, which does not wait; to be called after every `poll`, whatever that returned.
  /// Returns whether anything was done.
  bool runOnce() { return loop_->runOnce(std::chrono::milliseconds(0)); }

 private:
  std::shared_ptr<RunLoop> loop_;
};

}  // namespace platen::inline v0
