// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "platen/RunLoop.h"
#include "platform/RunLoopPrivate.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using Clock = RunLoop::Clock;

/// Two connected sockets.
struct SocketPair {
  SocketPair() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0); }
  SocketPair(const SocketPair&) = delete;
  SocketPair& operator=(const SocketPair&) = delete;
  ~SocketPair() {
    close(ends[0]);
    close(ends[1]);
  }
  void write() { EXPECT_EQ(::write(ends[1], "x", 1), 1); }
  void read() {
    char octet = 0;
    EXPECT_EQ(::read(ends[0], &octet, 1), 1);
  }

  std::array<int, 2> ends{};
};

bool isReadable(int descriptor) {
  pollfd entry{descriptor, POLLIN, 0};
  return poll(&entry, 1, 0) == 1;
}

TEST(RunLoop, IsOnePerThread) {
  const auto loop = RunLoop::current();
  EXPECT_EQ(RunLoop::current(), loop);
  std::shared_ptr<RunLoop> other;
  std::thread([&] { other = RunLoop::current(); }).join();
  EXPECT_NE(other, loop);
  EXPECT_NE(RunLoop::makePrivate(), loop);
}

TEST(RunLoop, WaitsNoLongerThanTold) {
  const auto loop = RunLoop::makePrivate();
  const auto begin = Clock::now();
  EXPECT_FALSE(loop->runOnce(milliseconds(50)));
  EXPECT_GE(Clock::now() - begin, milliseconds(40));
  EXPECT_FALSE(loop->runOnce(milliseconds(0)));
  EXPECT_FALSE(loop->runOnce(milliseconds(-1)));
  EXPECT_LT(Clock::now() - begin, milliseconds(5000));
}

TEST(RunLoop, EndsAWaitWhenSomethingHappens) {
  const auto loop = RunLoop::makePrivate();
  Timer timer(*loop, [] {});
  timer.start(milliseconds(20));
  const auto begin = Clock::now();
  EXPECT_TRUE(loop->runOnce(milliseconds::max()));
  EXPECT_LT(Clock::now() - begin, milliseconds(5000));
}

TEST(RunLoop, CallsSoonInOrderAndInTheNextTurn) {
  const auto loop = RunLoop::makePrivate();
  std::vector<int> calls;
  auto& internals = loop->internals();
  internals.callSoon([&] {
    calls.push_back(1);
    internals.callSoon([&] { calls.push_back(3); });
  });
  internals.callSoon([&] { calls.push_back(2); });
  EXPECT_EQ(loop->timeout(), milliseconds(0));
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_EQ(calls, (std::vector<int>{1, 2}));
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_EQ(calls, (std::vector<int>{1, 2, 3}));
}

TEST(RunLoop, RunsUntilStoppedOrUntilTheDeadline) {
  const auto loop = RunLoop::makePrivate();
  Timer timer(*loop, [&] { loop->stop(); });
  timer.start(milliseconds(10));
  loop->run();
  timer.start(milliseconds(10));
  EXPECT_TRUE(loop->runUntil(Clock::now() + std::chrono::minutes(1)));
  EXPECT_FALSE(loop->runUntil(Clock::now() + milliseconds(20)));
  EXPECT_FALSE(loop->runUntil(Clock::now() - milliseconds(20)));
  timer.start(milliseconds(10));
  EXPECT_TRUE(loop->runUntil(Clock::time_point::max()));
}

TEST(RunLoop, DoesNotRememberAStopThatStoppedNothing) {
  const auto loop = RunLoop::makePrivate();
  loop->stop();
  EXPECT_FALSE(loop->runUntil(Clock::now() + milliseconds(10)));
}

TEST(RunLoop, StopsTheInnermostRunOnly) {
  const auto loop = RunLoop::makePrivate();
  std::vector<std::string> calls;
  auto& internals = loop->internals();
  internals.callSoon([&] {
    internals.callSoon([&] {
      calls.emplace_back("inner");
      loop->stop();
    });
    loop->run();
    calls.emplace_back("outer");
    internals.callSoon([&] { loop->stop(); });
  });
  loop->run();
  EXPECT_EQ(calls, (std::vector<std::string>{"inner", "outer"}));
}

TEST(RunLoop, TellsAHostHowLongToWait) {
  const auto loop = RunLoop::makePrivate();
  EXPECT_EQ(loop->timeout(), std::nullopt);
  Timer timer(*loop, [] {});
  timer.start(std::chrono::seconds(60));
  loop->runOnce(milliseconds(0));
  ASSERT_TRUE(loop->timeout().has_value());
  EXPECT_LE(*loop->timeout(), std::chrono::seconds(60));
  EXPECT_GT(*loop->timeout(), std::chrono::seconds(50));
  timer.stop();
  loop->runOnce(milliseconds(0));
  EXPECT_EQ(loop->timeout(), std::nullopt);
}

TEST(RunLoop, CountsTheTimeBetweenTurns) {
  const auto loop = RunLoop::makePrivate();
  bool hasFired = false;
  Timer timer(*loop, [&] { hasFired = true; });
  loop->runOnce(milliseconds(0));
  std::this_thread::sleep_for(milliseconds(60));
  // Started now, not at the last turn.
  timer.start(milliseconds(50));
  loop->runOnce(milliseconds(0));
  EXPECT_FALSE(hasFired);
  std::this_thread::sleep_for(milliseconds(60));
  EXPECT_EQ(loop->timeout(), milliseconds(0));
  loop->runOnce(milliseconds(0));
  EXPECT_TRUE(hasFired);
}

TEST(RunLoop, AsksAHostForATurnAfterEveryChange) {
  const auto loop = RunLoop::makePrivate();
  SocketPair pair;
  int calls = 0;
  Watch watch(*loop, pair.ends[0], [&](bool, bool) {
    ++calls;
    pair.read();
  });
  pair.write();
  EXPECT_TRUE(watch.setInterest(true, false));
  // The descriptor knows nothing of the change yet.
  EXPECT_FALSE(isReadable(loop->descriptor()));
  EXPECT_EQ(loop->timeout(), milliseconds(0));
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(loop->timeout(), std::nullopt);
  pair.write();
  EXPECT_TRUE(isReadable(loop->descriptor()));
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_EQ(calls, 2);
}

TEST(Watch, ShowsAHangUpAsReadable) {
  const auto loop = RunLoop::makePrivate();
  SocketPair pair;
  bool wasReadable = false;
  Watch watch(*loop, pair.ends[0], [&](bool readable, bool) { wasReadable = readable; });
  watch.setInterest(true, false);
  shutdown(pair.ends[1], SHUT_RDWR);
  EXPECT_TRUE(loop->runOnce(milliseconds(1000)));
  EXPECT_TRUE(wasReadable);
}

TEST(Watch, SaysWhatADescriptorCannotDo) {
  const auto loop = RunLoop::makePrivate();
  const int file = open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  ASSERT_GE(file, 0);
  EXPECT_FALSE(Watch(*loop, file, [](bool, bool) {}).setInterest(true, false));
  close(file);
  EXPECT_FALSE(Watch(*loop, file, [](bool, bool) {}).setInterest(true, false));
}

TEST(Watch, LeavesTheDescriptorBlocking) {
  const auto loop = RunLoop::makePrivate();
  SocketPair pair;
  Watch watch(*loop, pair.ends[0], [](bool, bool) {});
  watch.setInterest(true, true);
  loop->runOnce(milliseconds(0));
  EXPECT_EQ(fcntl(pair.ends[0], F_GETFL) & O_NONBLOCK, 0);
}

TEST(Watch, MayBeDestroyedByItsCallback) {
  const auto loop = RunLoop::makePrivate();
  SocketPair pair;
  std::unique_ptr<Watch> watch;
  const auto witness = std::make_shared<int>(0);
  watch = std::make_unique<Watch>(*loop, pair.ends[0], [&watch, witness](bool, bool) {
    watch.reset();
    ++*witness;
  });
  watch->setInterest(false, true);
  EXPECT_TRUE(loop->runOnce(milliseconds(1000)));
  EXPECT_FALSE(loop->runOnce(milliseconds(0)));
  EXPECT_EQ(*witness, 1);
  EXPECT_EQ(witness.use_count(), 1);
}

TEST(Watch, FallsSilentWhenItsLoopGoes) {
  auto loop = RunLoop::makePrivate();
  SocketPair pair;
  Watch watch(*loop, pair.ends[0], [](bool, bool) { FAIL(); });
  Timer timer(*loop, [] { FAIL(); });
  watch.setInterest(false, true);
  timer.start(milliseconds(0));
  loop.reset();
  EXPECT_FALSE(watch.setInterest(true, true));
  timer.start(milliseconds(0));
  timer.stop();
}

TEST(Watch, IsCalledFromARunWithinItsOwnCallback) {
  const auto loop = RunLoop::makePrivate();
  SocketPair pair;
  int depth = 0;
  Watch watch(*loop, pair.ends[0], [&](bool, bool) {
    if (++depth < 3) {
      EXPECT_TRUE(loop->runOnce(milliseconds(1000)));
    }
  });
  watch.setInterest(false, true);
  EXPECT_TRUE(loop->runOnce(milliseconds(1000)));
  EXPECT_EQ(depth, 3);
}

TEST(Timer, IsNotDeliveredOnceStopped) {
  const auto loop = RunLoop::makePrivate();
  // Both expire in one turn, and the first stops the second.
  std::unique_ptr<Timer> second;
  bool hasFired = false;
  Timer first(*loop, [&] { second->stop(); });
  second = std::make_unique<Timer>(*loop, [&] { hasFired = true; });
  first.start(milliseconds(1));
  second->start(milliseconds(1));
  std::this_thread::sleep_for(milliseconds(5));
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_FALSE(loop->runOnce(milliseconds(5)));
  EXPECT_FALSE(hasFired);
}

TEST(Timer, MayBeDestroyedByItsCallback) {
  const auto loop = RunLoop::makePrivate();
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(*loop, [&] { timer.reset(); });
  timer->start(milliseconds(0));
  EXPECT_TRUE(loop->runOnce(milliseconds(1000)));
  EXPECT_EQ(timer, nullptr);
}

TEST(RunLoop, OutlivesACallbackThatLetsGoOfIt) {
  auto loop = RunLoop::makePrivate();
  auto* const raw = loop.get();
  raw->internals().callSoon([&] { loop.reset(); });
  EXPECT_TRUE(raw->runOnce(milliseconds(0)));
}

TEST(RunLoop, LetsQueuedWorkGoUncalled) {
  auto loop = RunLoop::makePrivate();
  const auto witness = std::make_shared<int>(0);
  loop->internals().callSoon([witness] { ++*witness; });
  loop.reset();
  EXPECT_EQ(*witness, 0);
  EXPECT_EQ(witness.use_count(), 1);
}

TEST(RunLoop, StaysUsableWhenACallbackThrows) {
  const auto loop = RunLoop::makePrivate();
  loop->internals().callSoon([] { throw std::runtime_error("out of a callback"); });
  EXPECT_THROW(loop->run(), std::runtime_error);
  loop->stop();  // stops nothing, for nothing runs any more
  EXPECT_FALSE(loop->runUntil(Clock::now() + milliseconds(5)));
}

TEST(RunLoop, ForgetsAStopWhenTheRunEndsByAnException) {
  const auto loop = RunLoop::makePrivate();
  loop->internals().callSoon([&] { loop->stop(); });
  loop->internals().callSoon([] { throw std::runtime_error("a callback's own"); });
  EXPECT_THROW(loop->run(), std::runtime_error);
  EXPECT_FALSE(loop->runUntil(RunLoop::Clock::now() + std::chrono::milliseconds(20)));
}

}  // namespace
}  // namespace platen
