// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Platen in a program that waits with `epoll_wait`.

#include <sys/epoll.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <system_error>
#include <utility>

#include "platen/RunLoop.h"
#include "platen/adapters/Wait.h"

namespace platen::inline v0 {

/// Keeps a run loop's descriptor in a program's epoll instance.
///
///     platen::EpollAdapter platen(mine);
///     for (;;) {
///       const int count = epoll_wait(mine, events.data(), events.size(), platen.timeout());
///       platen.runOnce();
///       ...
///     }
///
/// Delegates may run such a loop themselves, and may destroy the adapter. What a delegate throws
/// comes out of `runOnce`.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class EpollAdapter {
 public:
  /// Adds the descriptor to `epoll`, which stays the caller's and must outlive the adapter; holds
  /// `loop`. Its events carry `data` and need no attention. Raises `std::system_error` when it
  /// cannot be added.
  explicit EpollAdapter(int epoll, epoll_data_t data = {},
                        std::shared_ptr<RunLoop> loop = RunLoop::current())
      : epoll_(epoll), loop_(std::move(loop)) {
    epoll_event event{EPOLLIN, data};
    if (epoll_ctl(epoll_, EPOLL_CTL_ADD, loop_->descriptor(), &event) != 0) {
      throw std::system_error(errno, std::generic_category(), "epoll_ctl");
    }
  }
  EpollAdapter(const EpollAdapter&) = delete;
  EpollAdapter& operator=(const EpollAdapter&) = delete;
  /// Takes the descriptor out of `epoll`. The run loop and its exchanges stay.
  ~EpollAdapter() { epoll_ctl(epoll_, EPOLL_CTL_DEL, loop_->descriptor(), nullptr); }

  /// The time-out to give to `epoll_wait`, in milliseconds, asked before every wait: `hostTimeout`,
  /// the program's own (-1: for ever), or less. It may be 0, and then `epoll_wait` must not wait.
  [[nodiscard]] int timeout(int hostTimeout = -1) const {
    return shorterTimeout(*loop_, hostTimeout);
  }

  /// One turn, which does not wait; to be called after every `epoll_wait`, whatever that returned.
  /// Returns whether anything was done.
  bool runOnce() { return loop_->runOnce(std::chrono::milliseconds(0)); }

 private:
  int epoll_;
  std::shared_ptr<RunLoop> loop_;
};

}  // namespace platen::inline v0
