// SPDX-License-Identifier: Apache-2.0
#include "platform/StreamSchedule.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>

#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

/// One run loop. The loop watches an epoll instance that holds the descriptor, not the descriptor:
/// libuv would make that a nonblocking one, also for other processes that have it, and would not
/// take it a second time.
class StreamSchedule::Place {
 public:
  Place(Stream& stream, RunLoop& loop, int descriptor)
      : stream_(stream),
        loop_(&loop),
        descriptor_(descriptor),
        poller_(epoll_create1(EPOLL_CLOEXEC)) {
    if (poller_ >= 0 && arm(EPOLL_CTL_ADD)) {
      watch_ = std::make_unique<Watch>(loop, poller_, [this](bool, bool) { raise(); });
    }
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  ~Place() {
    watch_.reset();
    if (poller_ >= 0) {
      close(poller_);
    }
  }

  [[nodiscard]] bool isIn(const RunLoop& loop) const { return loop_ == &loop; }
  /// False when nobody will be told, since the descriptor cannot be waited for or the loop is gone.
  bool rearm() {
    return watch_ != nullptr && watch_->setInterest(true, false) && arm(EPOLL_CTL_MOD);
  }

 private:
  bool arm(int operation) const {
    struct epoll_event wanted {};
    wanted.events = EPOLLIN | EPOLLONESHOT;
    return epoll_ctl(poller_, operation, descriptor_, &wanted) == 0;
  }

  void raise() {
    struct epoll_event event {};
    if (epoll_wait(poller_, &event, 1, 0) <= 0) {
      return;
    }
    if (const auto delegate = stream_.delegate()) {
      // May let go of the stream, and so of this.
      delegate->streamHandleEvent(stream_, StreamEvent::hasBytesAvailable);
    }
  }

  Stream& stream_;
  RunLoop* loop_;
  int descriptor_;
  int poller_;
  std::unique_ptr<Watch> watch_;
};

StreamSchedule::StreamSchedule(Stream& stream) : stream_(stream) {}

StreamSchedule::~StreamSchedule() = default;

bool StreamSchedule::add(RunLoop& loop, int descriptor) {
  const auto isHere = [&loop](const auto& place) { return place->isIn(loop); };
  const auto found = std::find_if(places_.begin(), places_.end(), isHere);
  if (found != places_.end() && (*found)->rearm()) {
    return true;
  }
  remove(loop);  // a loop that has gone may have left its address to this one
  auto place = std::make_unique<Place>(stream_, loop, descriptor);
  const bool isArmed = place->rearm();
  if (isArmed) {
    places_.push_back(std::move(place));
  }
  return isArmed;
}

void StreamSchedule::remove(RunLoop& loop) {
  std::erase_if(places_, [&loop](const auto& place) { return place->isIn(loop); });
}

void StreamSchedule::rearm() {
  for (const auto& place : places_) {
    place->rearm();
  }
}

void StreamSchedule::clear() { places_.clear(); }

}  // namespace platen::inline v0
