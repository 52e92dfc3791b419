// SPDX-License-Identifier: Apache-2.0
#include "Waiting.h"

#include <poll.h>

#include <algorithm>
#include <array>

namespace platen::tool {

namespace {

constexpr int kForEver = -1;
constexpr int kNoDescriptor = -1;

}  // namespace

void Waiting::until(const std::function<bool()>& isDone) {
  while (!isDone()) {
    interrupt_.raise();
    turn(kNoDescriptor, kForEver);
  }
}

void Waiting::untilReadable(int descriptor) {
  bool isReadable = false;
  while (!isReadable) {
    interrupt_.raise();
    isReadable = turn(descriptor, kForEver);
  }
}

void Waiting::pause(std::chrono::milliseconds duration) {
  const auto end = RunLoop::Clock::now() + duration;
  for (auto now = RunLoop::Clock::now(); now < end; now = RunLoop::Clock::now()) {
    turn(kNoDescriptor,
         static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(end - now).count()));
    interrupt_.raise();
  }
}

bool Waiting::turn(int descriptor, int longest) {
  constexpr int kInterval = static_cast<int>(Progress::kInterval.count());
  if (progress_.isWanted()) {
    longest = longest < 0 ? kInterval : std::min(longest, kInterval);
  }
  std::array entries{platen_.entry(), pollfd{interrupt_.descriptor(), POLLIN, 0},
                     pollfd{descriptor, POLLIN, 0}};
  ::poll(entries.data(), entries.size(), platen_.timeout(longest));
  platen_.runOnce();
  progress_.refresh();
  return entries.back().revents != 0;
}

}  // namespace platen::tool
