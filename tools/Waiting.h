// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>

#include "Interrupt.h"
#include "Progress.h"
#include "platen/adapters/Poll.h"

namespace platen::tool {

/// How the command waits: it turns this thread's run loop, keeps the progress line up to date, and
/// ends with `Interrupted` at a signal.
///
/// Threads: used on one thread only.
class Waiting {
 public:
  explicit Waiting(Progress& progress) noexcept : progress_(progress) {}
  Waiting(const Waiting&) = delete;
  Waiting& operator=(const Waiting&) = delete;
  ~Waiting() = default;

  /// Waits until something that happens on the run loop makes `isDone` true. It is asked first:
  /// what is there already is not lost to a signal.
  void until(const std::function<bool()>& isDone);
  /// Waits until a read of `descriptor` would not block.
  void untilReadable(int descriptor);
  void pause(std::chrono::milliseconds duration);
  /// Raises `Interrupted` when there was a signal, without waiting.
  void raiseInterrupt() const { interrupt_.raise(); }

 private:
  /// One turn, which waits at most so many milliseconds (-1: for ever). Returns whether
  /// `descriptor` (-1: none) is readable.
  bool turn(int descriptor, int longest);

  Progress& progress_;
  Interrupt interrupt_;
  PollAdapter platen_;
};

}  // namespace platen::tool
