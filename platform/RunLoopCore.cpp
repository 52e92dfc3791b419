// SPDX-License-Identifier: Apache-2.0

#include "platform/RunLoopCore.h"

#include <fcntl.h>
#include <uv.h>

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <new>
#include <vector>

#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

using std::chrono::milliseconds;

namespace {

/// What a handle of libuv's and the one who scheduled it share. libuv needs the handle's memory
/// until it has confirmed the closing, hence the reference to itself.
struct Source {
  explicit Source(RunLoopCore& owner) : core(&owner) {}
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;

  /// Null once the source fell silent for good.
  RunLoopCore* core;
  std::shared_ptr<Source> self;
};

template <typename Handle>
void adopt(Handle& handle, const std::shared_ptr<Source>& source) {
  handle.data = source.get();
  source->self = source;
}

/// The `State` to which a handle belongs, shared.
template <typename State, typename Handle>
std::shared_ptr<State> stateOf(const Handle* handle) {
  return std::static_pointer_cast<State>(static_cast<Source*>(handle->data)->self);
}

void closeHandle(uv_handle_t* handle) {
  if (handle->data != nullptr) {
    static_cast<Source*>(handle->data)->core = nullptr;
  }
  if (uv_is_closing(handle) == 0) {
    uv_close(handle, [](uv_handle_t* closed) {
      if (closed->data != nullptr) {
        const auto last = std::move(static_cast<Source*>(closed->data)->self);
      }
    });
  }
}

template <typename State>
void closeSource(State& state) {
  if (state.core != nullptr) {
    closeHandle(reinterpret_cast<uv_handle_t*>(&state.handle));
  }
}

std::uint64_t libuvDelay(milliseconds delay) {
  return static_cast<std::uint64_t>(std::max(delay, milliseconds(0)).count());
}

/// The cores that could not be closed. Never destroyed, so that they can be reached to the very
/// end of the process.
struct Graveyard {
  std::mutex mutex;
  std::vector<std::unique_ptr<RunLoopCore>> cores;

  static Graveyard& shared() {
    static auto* const graveyard = new Graveyard;
    return *graveyard;
  }
};

}  // namespace

RunLoopCore::RunLoopCore()
    : loop_(std::make_unique<uv_loop_t>()), waitTimer_(std::make_unique<uv_timer_t>()) {
  if (uv_loop_init(loop_.get()) != 0) {
    throw std::bad_alloc();
  }
  uv_timer_init(loop_.get(), waitTimer_.get());
}

RunLoopCore::~RunLoopCore() = default;

void RunLoopCore::closeHandles() {
  const auto close = [](uv_handle_t* handle, void*) { closeHandle(handle); };
  uv_walk(loop_.get(), close, nullptr);
  uv_run(loop_.get(), UV_RUN_NOWAIT);
}

bool RunLoopCore::tryToClose() {
  closeHandles();
  // What was queued dies here, and may schedule more while doing so.
  while (!queue_.empty()) {
    std::exchange(queue_, {}).clear();
    closeHandles();
  }
  return uv_loop_close(loop_.get()) == 0;
}

void RunLoopCore::retire(std::unique_ptr<RunLoopCore> core) {
  if (!core->tryToClose()) {
    auto& graveyard = Graveyard::shared();
    const std::lock_guard lock(graveyard.mutex);
    graveyard.cores.push_back(std::move(core));
  }
  reapRetired();
}

std::size_t RunLoopCore::reapRetired() {
  auto& graveyard = Graveyard::shared();
  const std::lock_guard lock(graveyard.mutex);
  std::erase_if(graveyard.cores, [](const auto& core) { return core->tryToClose(); });
  return graveyard.cores.size();
}

void RunLoopCore::enqueue(std::function<void()> work) {
  queue_.push_back(std::move(work));
  if (isPolling_) {
    // A turn of libuv's handles timers first: without this, it would then go on to wait.
    uv_stop(loop_.get());
  }
  noteChange();
}

void RunLoopCore::noteChange() {
  if (turnsInProgress_ == 0 && wakeUp_) {
    wakeUp_();
  }
}

void RunLoopCore::poll(milliseconds wait) {
  isPolling_ = true;
  if (wait <= milliseconds(0) || !queue_.empty()) {
    uv_run(loop_.get(), UV_RUN_NOWAIT);
  } else {
    uv_update_time(loop_.get());
    const auto doNothing = [](uv_timer_t*) {};
    uv_timer_start(waitTimer_.get(), doNothing, libuvDelay(wait), 0);
    uv_run(loop_.get(), UV_RUN_ONCE);
    uv_timer_stop(waitTimer_.get());
  }
  isPolling_ = false;
}

bool RunLoopCore::dispatch() {
  const bool isAnything = !queue_.empty();
  // A callback may run the loop, so that less is left than there was on entry.
  for (auto count = queue_.size(); count > 0 && !queue_.empty(); --count) {
    const auto work = std::move(queue_.front());
    queue_.pop_front();
    work();
  }
  return isAnything;
}

int RunLoopCore::descriptor() const { return uv_backend_fd(loop_.get()); }

std::optional<milliseconds> RunLoopCore::timeout() {
  if (!queue_.empty()) {
    return milliseconds(0);
  }
  if (uv_loop_alive(loop_.get()) == 0) {
    return std::nullopt;
  }
  // The loop's notion of time dates from its last turn. What was changed since then has not reached
  // the backend descriptor; in that case libuv answers 0.
  uv_update_time(loop_.get());
  const int wait = uv_backend_timeout(loop_.get());
  return wait < 0 ? std::nullopt : std::optional(milliseconds(wait));
}

struct WatchState final : Source {
  WatchState(RunLoopCore& owner, Watch::Callback function)
      : Source(owner), callback(std::move(function)) {}

  void apply();
  void note(bool becameReadable, bool becameWritable);
  void fire();
  void goOn();

  uv_poll_t handle{};
  Watch::Callback callback;
  bool wantsReadable = false;
  bool wantsWritable = false;
  bool isReadable = false;
  bool isWritable = false;
  bool isQueued = false;
};

void WatchState::apply() {
  core->noteChange();
  const int events = (wantsReadable ? UV_READABLE : 0) | (wantsWritable ? UV_WRITABLE : 0);
  if (events == 0) {
    uv_poll_stop(&handle);
    return;
  }
  uv_poll_start(&handle, events, [](uv_poll_t* poll, int status, int ready) {
    stateOf<WatchState>(poll)->note(status < 0 || (ready & UV_READABLE) != 0,
                                    status < 0 || (ready & UV_WRITABLE) != 0);
  });
}

void WatchState::note(bool becameReadable, bool becameWritable) {
  isReadable |= becameReadable;
  isWritable |= becameWritable;
  if (!std::exchange(isQueued, true)) {
    core->enqueue([state = stateOf<WatchState>(&handle)] { state->fire(); });
  }
}

void WatchState::fire() {
  isQueued = false;
  const bool readable = std::exchange(isReadable, false) && wantsReadable;
  const bool writable = std::exchange(isWritable, false) && wantsWritable;
  if (core == nullptr || (!readable && !writable)) {
    return;
  }
  try {
    callback(readable, writable);
  } catch (...) {
    goOn();
    throw;
  }
  goOn();
}

void WatchState::goOn() {
  // On an error libuv has stopped by itself.
  if (core != nullptr && uv_is_active(reinterpret_cast<uv_handle_t*>(&handle)) == 0) {
    apply();
  }
}

Watch::Watch(RunLoop& loop, int descriptor, Callback callback)
    : state_(std::make_shared<WatchState>(loop.internals().core(), std::move(callback))) {
  // libuv makes the descriptor a nonblocking one, which is not ours to decide.
  const int flags = fcntl(descriptor, F_GETFL);
  if (uv_poll_init(state_->core->native(), &state_->handle, descriptor) != 0) {
    state_->core = nullptr;
    return;
  }
  fcntl(descriptor, F_SETFL, flags);
  adopt(state_->handle, state_);
}

Watch::~Watch() { closeSource(*state_); }

bool Watch::setInterest(bool readable, bool writable) {
  if (state_->core == nullptr) {
    return false;
  }
  const bool isChange = state_->wantsReadable != readable || state_->wantsWritable != writable;
  state_->wantsReadable = readable;
  state_->wantsWritable = writable;
  if (isChange) {
    state_->apply();
  }
  return true;
}

struct TimerState final : Source {
  TimerState(RunLoopCore& owner, std::function<void()> function)
      : Source(owner), callback(std::move(function)) {}

  void expire();

  uv_timer_t handle{};
  std::function<void()> callback;
  /// Counts starts and stops: an expiry that was queued before one of them is not delivered.
  unsigned generation = 0;
};

void TimerState::expire() {
  core->enqueue([state = stateOf<TimerState>(&handle), queuedIn = generation] {
    if (state->core != nullptr && state->generation == queuedIn) {
      state->callback();
    }
  });
}

Timer::Timer(RunLoop& loop, std::function<void()> callback)
    : state_(std::make_shared<TimerState>(loop.internals().core(), std::move(callback))) {
  uv_timer_init(state_->core->native(), &state_->handle);
  adopt(state_->handle, state_);
}

Timer::~Timer() { closeSource(*state_); }

void Timer::start(milliseconds delay) {
  if (state_->core == nullptr) {
    return;
  }
  ++state_->generation;
  // Else the delay would count from the loop's last turn, perhaps long ago.
  uv_update_time(state_->core->native());
  const auto expired = [](uv_timer_t* timer) { stateOf<TimerState>(timer)->expire(); };
  uv_timer_start(&state_->handle, expired, libuvDelay(delay), 0);
  state_->core->noteChange();
}

void Timer::stop() {
  if (state_->core != nullptr) {
    ++state_->generation;
    uv_timer_stop(&state_->handle);
  }
}

}  // namespace platen::inline v0
