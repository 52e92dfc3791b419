// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platen::tests {

/// An event loop of another's with the adapter for it, as the tests use it.
class Host {
 public:
  Host() = default;
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
  virtual ~Host() = default;

  /// Lets the loop wait and handle what is ready, once, waiting at most `limit`. What ends a wait
  /// must be the adapter's, a timer's, or that limit: nothing ticks.
  virtual void turn(std::chrono::milliseconds limit) = 0;
  /// A timer of the loop's own.
  virtual void callLater(std::chrono::milliseconds delay, std::function<void()> callback) = 0;
  virtual void makeAdapter() = 0;
  virtual void dropAdapter() = 0;
  /// Whether a callback may run the loop.
  [[nodiscard]] virtual bool mayNest() const { return true; }
  /// Whether what a callback throws comes out of `turn`; otherwise it ends the program.
  [[nodiscard]] virtual bool passesExceptions() const { return false; }

  /// Runs the loop until `isDone` (true), or for `limit`.
  bool runUntil(const std::function<bool()>& isDone,
                std::chrono::milliseconds limit = std::chrono::seconds(10));
  /// Runs the loop for a while in which something might still happen.
  void runFor(std::chrono::milliseconds duration) {
    runUntil([] { return false; }, duration);
  }
  /// True while `turn` is at work.
  [[nodiscard]] bool isTurning() const { return turnsInProgress_ > 0; }
  /// How often `turn` was called.
  [[nodiscard]] int turnCount() const { return turnCount_; }

 private:
  int turnCount_ = 0;
  int turnsInProgress_ = 0;
};

/// The host of this program, with its adapter: each program of these tests has one.
std::unique_ptr<Host> makeHost();

}  // namespace platen::tests
