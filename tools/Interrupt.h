// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Failure.h"

namespace platen::tool {

/// Raised where the command waits, when it has been told to end.
class Interrupted {
 public:
  explicit Interrupted(int signal) noexcept : signal_(signal) {}

  /// What the command ends with.
  [[nodiscard]] ExitStatus status() const noexcept {
    return static_cast<ExitStatus>(static_cast<int>(ExitStatus::signal) + signal_);
  }

 private:
  int signal_;
};

/// Notes SIGINT, SIGTERM and SIGHUP while it lives, so that the command can tidy up: the first is
/// for `raise` to tell, the second ends the process at once. One that is ignored already stays so.
///
/// Threads: one at a time in a process, on one thread.
class Interrupt {
 public:
  Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;
  ~Interrupt();

  /// Readable from the first signal until `raise` has told it.
  [[nodiscard]] int descriptor() const noexcept;
  /// Raises `Interrupted` when there was a signal; once.
  void raise() const;
};

}  // namespace platen::tool
