// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

#include "platen/RunLoop.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

/// The run loops in which a descriptor's stream is scheduled. Its delegate is told
/// `StreamEvent::hasBytesAvailable` when the descriptor is readable: once, and once more after each
/// `rearm`. So nobody is told again and again of octets that nobody wants yet.
///
/// Threads: used on the thread of its run loops only. Neither copied nor moved.
class StreamSchedule {
 public:
  explicit StreamSchedule(Stream& stream);
  StreamSchedule(const StreamSchedule&) = delete;
  StreamSchedule& operator=(const StreamSchedule&) = delete;
  ~StreamSchedule();

  /// Schedules, or has it told once more where it is scheduled. False when the descriptor cannot be
  /// waited for: a file's, which is always ready.
  bool add(RunLoop& loop, int descriptor);
  void remove(RunLoop& loop);
  void rearm();
  void clear();

 private:
  class Place;

  Stream& stream_;
  std::vector<std::unique_ptr<Place>> places_;
};

}  // namespace platen::inline v0
