// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The run loop on which scheduled work happens: the library has no threads of its own.

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platen/Export.h"

namespace platen::inline v0 {

/// One thread's run loop. Everything that is scheduled happens inside a call of `runOnce`, `run` or
/// `runUntil`; between such calls nothing happens at all. Whatever is called from there may run the
/// same loop again, and may throw: the exception leaves that call, and the loop stays usable.
///
/// Names of hosts are resolved on threads that libuv keeps for the process. No loop waits for them,
/// not even when it goes; but a normal end of the process waits for a look-up that is under way.
/// libuv looks up two names at a time: behind two that no name service answers, exchanges with
/// other names wait until the system gives those up or their own time-out comes. Exchanges with
/// numeric addresses and "localhost" need no look-up.
///
/// An application with an event loop of its own embeds this one: it waits on `descriptor` for
/// reading, no longer than `timeout`, and then calls `runOnce(0)`. The headers in platen/adapters/
/// do that for the usual loops.
///
/// Threads: used on the thread that made it only. Neither copied nor moved.
class PLATEN_EXPORT RunLoop : public std::enable_shared_from_this<RunLoop> {
 public:
  using Clock = std::chrono::steady_clock;

  /// The calling thread's own loop, never null, made on first use and let go when the thread ends;
  /// exchanges that are still in progress on it end then, as by `HTTPConnection::cancel`. Raises
  /// `std::bad_alloc` when the system has no descriptors left for a new one.
  static std::shared_ptr<RunLoop> current();
  /// A new loop, never null, that is no thread's current one, for driving one piece of work to its
  /// end. Raises as `current`.
  static std::shared_ptr<RunLoop> makePrivate();

  RunLoop(const RunLoop&) = delete;
  RunLoop& operator=(const RunLoop&) = delete;
  /// What is still scheduled on it falls silent; nobody is told.
  ~RunLoop();

  /// Handles what is ready, waiting at most `wait` (0 and below: not at all) for something to
  /// become ready. Returns true when something was handled, false when `wait` has passed. A wait of
  /// more than a day is one of a day.
  bool runOnce(std::chrono::milliseconds wait);
  /// Runs until `stop` is called, also when nothing is scheduled any more.
  void run();
  /// Runs until `stop` is called (true) or `deadline` has passed (false); at least one turn, also
  /// when it has passed already.
  bool runUntil(Clock::time_point deadline);
  /// Makes the innermost `run` or `runUntil` return as soon as the current turn is over. Does
  /// nothing when neither is in progress.
  void stop();

  /// A descriptor that becomes readable when `runOnce` has something to do; always the same. It
  /// stays the loop's: it is only to be waited on.
  [[nodiscard]] int descriptor() const;
  /// How long a host may wait on the descriptor before it must call `runOnce`: nothing when for
  /// ever, 0 when at once. To be asked again after every turn and every call into the library.
  [[nodiscard]] std::optional<std::chrono::milliseconds> timeout() const;

  /// Has `wakeUp` called whenever something is scheduled while no turn is in progress, that is,
  /// from within a call of the application's into the library: a host that does not look at
  /// `timeout` before each of its waits does so now. It must not run the loop. Empty for none.
  void setWakeUp(std::function<void()> wakeUp);

  struct Private;
  /// The library's own door to the loop; of no use outside of it.
  [[nodiscard]] Private& internals() noexcept { return *private_; }

 private:
  RunLoop();
  std::unique_ptr<Private> private_;
};

}  // namespace platen::inline v0
