// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Platen in a program with an Asio io_context (the Asio that stands by itself, 1.18 and later).

#include <asio/error_code.hpp>
#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <memory>
#include <utility>

#include "platen/RunLoop.h"

namespace platen::inline v0 {

/// Drives a run loop from an `asio::io_context`. That context must be run on the thread of the run
/// loop, and on no other.
///
///     asio::io_context context;
///     platen::AsioAdapter platen(context);
///     request->sendTo(*printer);
///     context.run();
///
/// `run` does not return by itself while the adapter lives: stop the context, or destroy the
/// adapter. That may happen from within a turn that the adapter drives. A delegate may run the
/// context; what is scheduled on the run loop meanwhile may then wait for 10 milliseconds. What a
/// delegate throws comes out of `run`.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class AsioAdapter {
 public:
  /// `context` stays the caller's and must outlive the adapter, which holds `loop`. Raises
  /// `std::system_error` when it refuses the descriptor. Takes `RunLoop::setWakeUp` for itself.
  explicit AsioAdapter(asio::io_context& context,
                       std::shared_ptr<RunLoop> loop = RunLoop::current())
      : driver_(std::make_shared<Driver>(context, std::move(loop))) {
    driver_->start();
  }
  AsioAdapter(const AsioAdapter&) = delete;
  AsioAdapter& operator=(const AsioAdapter&) = delete;
  /// Nothing is driven any more, and `setWakeUp` is empty. The run loop and its exchanges stay.
  ~AsioAdapter() { driver_->end(); }

 private:
  /// Held by the handlers that Asio calls, also those it calls after the end.
  class Driver : public std::enable_shared_from_this<Driver> {
   public:
    Driver(asio::io_context& context, std::shared_ptr<RunLoop> loop)
        : loop_(std::move(loop)), descriptor_(context), timer_(context) {
      descriptor_.assign(loop_->descriptor());
    }
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;
    ~Driver() { descriptor_.release(); }

    void start() {
      // Asio has no moment before its waits at which the time-out could be asked for.
      loop_->setWakeUp([this] { makeDue(); });
      waitForDescriptor();
      makeDue();
    }

    // Releases the descriptor, which is the run loop's to close; that ends the wait for it too.
    void end() {
      hasEnded_ = true;
      loop_->setWakeUp(nullptr);
      descriptor_.release();
      timer_.cancel();
    }

   private:
    struct Counted {
      explicit Counted(int& counter) : count(++counter) {}
      Counted(const Counted&) = delete;
      Counted& operator=(const Counted&) = delete;
      ~Counted() { --count; }

      int& count;
    };

    void waitForDescriptor() {
      descriptor_.async_wait(asio::posix::stream_descriptor::wait_read,
                             [self = shared_from_this()](const asio::error_code& error) {
                               if (!error && !self->hasEnded_) {
                                 self->waitForDescriptor();
                                 self->turn();
                               }
                             });
    }

    void waitFor(std::chrono::milliseconds duration) {
      timer_.expires_after(duration);
      timer_.async_wait([self = shared_from_this()](const asio::error_code& error) {
        if (!error && !self->hasEnded_) {
          self->isDue_ = false;
          self->turn();
        }
      });
    }

    void makeDue() {
      if (!std::exchange(isDue_, true)) {
        waitFor(std::chrono::milliseconds(0));
      }
    }

    void turn() {
      // In case that a delegate runs the context.
      makeDue();
      runOnce();
      if (!hasEnded_) {
        arm();
      }
    }

    void runOnce() {
      const Counted turning(turnsInProgress_);
      loop_->runOnce(std::chrono::milliseconds(0));
    }

    void arm() {
      auto wait = loop_->timeout();
      // Within a turn the run loop wakes nobody up.
      constexpr auto kNestedPause = std::chrono::milliseconds(10);
      if (turnsInProgress_ > 0 && wait.value_or(kNestedPause) >= kNestedPause) {
        wait = kNestedPause;
      }
      isDue_ = wait == std::chrono::milliseconds(0);
      if (wait) {
        waitFor(*wait);
      } else {
        timer_.cancel();
      }
    }

    std::shared_ptr<RunLoop> loop_;
    asio::posix::stream_descriptor descriptor_;
    asio::steady_timer timer_;
    /// The timer ends at once, for a turn.
    bool isDue_ = false;
    int turnsInProgress_ = 0;
    bool hasEnded_ = false;
  };

  std::shared_ptr<Driver> driver_;
};

}  // namespace platen::inline v0
