// SPDX-License-Identifier: Apache-2.0

#include "platen/RunLoop.h"

#include <algorithm>
#include <utility>

#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

using std::chrono::milliseconds;

namespace {

// Nobody notices one turn a day, and longer waits would overflow somewhere.
constexpr milliseconds kLongestWait = std::chrono::hours(24);

/// What a thread has. Objects that die later than this, with the thread or the process, may still
/// ask for a loop; they get one that nobody else has.
struct ThreadLoops {
  ThreadLoops() = default;
  ThreadLoops(const ThreadLoops&) = delete;
  ThreadLoops& operator=(const ThreadLoops&) = delete;
  ~ThreadLoops() { areGone = true; }

  static std::shared_ptr<RunLoop> get(std::shared_ptr<RunLoop> ThreadLoops::*which) {
    if (areGone) {
      return RunLoop::makePrivate();
    }
    thread_local ThreadLoops loops;
    auto& loop = loops.*which;
    if (loop == nullptr) {
      loop = RunLoop::makePrivate();
    }
    return loop;
  }

  std::shared_ptr<RunLoop> current;
  std::shared_ptr<RunLoop> forBlockingCalls;
  static thread_local bool areGone;
};

thread_local bool ThreadLoops::areGone = false;

/// Counts one while it lives.
struct Counted {
  explicit Counted(int& counter) : count(counter) { ++count; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --count; }

  int& count;
};

}  // namespace

std::shared_ptr<RunLoop> RunLoop::Private::forBlockingCalls() {
  return ThreadLoops::get(&ThreadLoops::forBlockingCalls);
}

void* RunLoop::Private::findAttachment(const void* key) const {
  const auto isIt = [key](const auto& attachment) { return attachment.first == key; };
  const auto found = std::find_if(attachments_.begin(), attachments_.end(), isIt);
  return found == attachments_.end() ? nullptr : found->second.get();
}

void RunLoop::Private::tearDown() {
  // The last made goes first, and may make others while it goes.
  while (!attachments_.empty()) {
    const auto last = std::move(attachments_.back());
    attachments_.pop_back();
  }
  RunLoopCore::retire(std::move(core_));
}

RunLoop::RunLoop() : private_(std::make_unique<Private>()) {}

RunLoop::~RunLoop() { private_->tearDown(); }

std::shared_ptr<RunLoop> RunLoop::makePrivate() {
  RunLoopCore::reapRetired();
  return std::shared_ptr<RunLoop>(new RunLoop);
}

std::shared_ptr<RunLoop> RunLoop::current() { return ThreadLoops::get(&ThreadLoops::current); }

bool RunLoop::runOnce(milliseconds wait) {
  const auto keep = shared_from_this();
  auto& core = private_->core();
  const RunLoopCore::Turn turn(core);
  const auto deadline = Clock::now() + std::clamp(wait, milliseconds(0), kLongestWait);
  for (;;) {
    core.poll(std::chrono::ceil<milliseconds>(deadline - Clock::now()));
    if (core.dispatch()) {
      return true;
    }
    // What libuv does for itself, such as closing a handle, also ends a wait.
    if (Clock::now() >= deadline) {
      return false;
    }
  }
}

void RunLoop::run() {
  while (!runUntil(Clock::now() + kLongestWait)) {
  }
}

bool RunLoop::runUntil(Clock::time_point deadline) {
  const auto keep = shared_from_this();
  const Counted running(private_->runsInProgress_);
  do {
    const Clock::duration left = deadline - std::min(deadline, Clock::now());
    try {
      runOnce(std::chrono::ceil<milliseconds>(std::min<Clock::duration>(left, kLongestWait)));
    } catch (...) {
      private_->stopRequested_ = false;  // it meant this run, which ends here
      throw;
    }
    if (std::exchange(private_->stopRequested_, false)) {
      return true;
    }
  } while (Clock::now() < deadline);
  return false;
}

void RunLoop::stop() { private_->stopRequested_ = private_->runsInProgress_ > 0; }

void RunLoop::setWakeUp(std::function<void()> wakeUp) {
  private_->core().setWakeUp(std::move(wakeUp));
}

int RunLoop::descriptor() const { return private_->core().descriptor(); }

std::optional<milliseconds> RunLoop::timeout() const { return private_->core().timeout(); }

}  // namespace platen::inline v0
