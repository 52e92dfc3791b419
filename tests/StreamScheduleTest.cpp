// SPDX-License-Identifier: Apache-2.0
//
// Streams that tell from within a run loop's turns when there is something to read.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <sstream>

#include "platen/RunLoop.h"
#include "tests/support/EventCount.h"
#include "tests/support/Pipe.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::descriptorCount;
using tests::EventCount;
using tests::Pipe;

class ScheduledStream : public testing::Test {
 protected:
  ScheduledStream() {
    stream->setDelegate(delegate);
    stream->open();
  }

  bool schedule() { return stream->scheduleInRunLoop(*loop, "default"); }
  int eventsInSomeTurns() {
    delegate->count = 0;
    for (int turn = 0; turn < 4; ++turn) {
      loop->runOnce(milliseconds(5));
    }
    return delegate->count;
  }
  std::string readSome() {
    std::array<std::uint8_t, 4> room{};
    const auto count = stream->read(room.data(), room.size());
    return {room.begin(), room.begin() + std::max<std::ptrdiff_t>(count, 0)};
  }

  Pipe pipe;
  std::shared_ptr<RunLoop> loop = RunLoop::makePrivate();
  std::shared_ptr<EventCount> delegate = std::make_shared<EventCount>();
  std::shared_ptr<InputStream> stream = pipe.stream();
};

TEST_F(ScheduledStream, TellsOfOctetsOnceForEachRead) {
  ASSERT_TRUE(schedule());
  EXPECT_EQ(eventsInSomeTurns(), 0);
  pipe.write("abcdef");
  EXPECT_EQ(eventsInSomeTurns(), 1);
  EXPECT_EQ(delegate->lastStream, stream.get());
  EXPECT_EQ(readSome(), "abcd");
  EXPECT_EQ(eventsInSomeTurns(), 1);
  EXPECT_EQ(readSome(), "ef");
  EXPECT_EQ(eventsInSomeTurns(), 0);
}

TEST_F(ScheduledStream, TellsOfTheEnd) {
  ASSERT_TRUE(schedule());
  pipe.finish();
  EXPECT_EQ(eventsInSomeTurns(), 1);
  EXPECT_EQ(readSome(), "");
  EXPECT_EQ(stream->streamStatus(), StreamStatus::atEnd);
}

TEST_F(ScheduledStream, TellsOfOctetsThatWereThereBefore) {
  pipe.write("abc");
  ASSERT_TRUE(schedule());
  EXPECT_EQ(eventsInSomeTurns(), 1);
}

TEST_F(ScheduledStream, TellsOnceMoreWhenItIsScheduledAnew) {
  pipe.write("abc");
  ASSERT_TRUE(schedule());
  EXPECT_EQ(eventsInSomeTurns(), 1);
  ASSERT_TRUE(schedule());
  EXPECT_EQ(eventsInSomeTurns(), 1);
}

TEST_F(ScheduledStream, WakesALoopThatSleeps) {
  ASSERT_TRUE(schedule());
  std::thread writer([this] { pipe.write("abc"); });
  const auto deadline = RunLoop::Clock::now() + std::chrono::seconds(20);
  while (delegate->count == 0 && RunLoop::Clock::now() < deadline) {
    loop->runOnce(std::chrono::seconds(20));
  }
  writer.join();
  EXPECT_EQ(delegate->count, 1);
  EXPECT_LT(RunLoop::Clock::now(), deadline - std::chrono::seconds(10));
}

TEST_F(ScheduledStream, TellsInEachLoopThatItIsScheduledIn) {
  const auto other = RunLoop::makePrivate();
  ASSERT_TRUE(schedule());
  ASSERT_TRUE(stream->scheduleInRunLoop(*other, "default"));
  pipe.write("abc");
  EXPECT_EQ(eventsInSomeTurns(), 1);
  other->runOnce(milliseconds(100));
  EXPECT_EQ(delegate->count, 2);
}

TEST_F(ScheduledStream, FallsSilentWhenItIsRemovedOrClosed) {
  const auto before = descriptorCount();
  ASSERT_TRUE(schedule());
  pipe.write("abc");
  stream->removeFromRunLoop(*loop, "default");
  EXPECT_EQ(eventsInSomeTurns(), 0);
  ASSERT_TRUE(schedule());
  stream->close();
  EXPECT_EQ(eventsInSomeTurns(), 0);
  EXPECT_FALSE(schedule());
  EXPECT_EQ(descriptorCount(), before);
}

TEST_F(ScheduledStream, FallsSilentWhenItsLoopGoes) {
  ASSERT_TRUE(schedule());
  pipe.write("abc");
  loop = RunLoop::makePrivate();
  EXPECT_EQ(eventsInSomeTurns(), 0);
  EXPECT_EQ(readSome(), "abc");
  for (int i = 0; i < 3; ++i) {  // also where a new loop has the address of the one before
    loop.reset();
    loop = RunLoop::makePrivate();
    ASSERT_TRUE(schedule());
    pipe.write("d");
    EXPECT_EQ(eventsInSomeTurns(), 1);
  }
}

TEST_F(ScheduledStream, MayBeLetGoOfWithinAnEvent) {
  const auto before = descriptorCount();
  ASSERT_TRUE(schedule());
  pipe.write("abc");
  delegate->onEvent = [this] { stream.reset(); };
  EXPECT_EQ(eventsInSomeTurns(), 1);
  EXPECT_EQ(descriptorCount(), before);
}

TEST_F(ScheduledStream, MayBeReadAndRemovedWithinAnEvent) {
  ASSERT_TRUE(schedule());
  pipe.write("abcdef");
  delegate->onEvent = [this] {
    if (readSome() == "ef") {
      stream->removeFromRunLoop(*loop, "default");
    }
  };
  EXPECT_EQ(eventsInSomeTurns(), 2);
}

TEST_F(ScheduledStream, LeavesTheFlagsOfTheDescriptorAsTheyAre) {
  const int before = fcntl(pipe.readingEnd(), F_GETFL);
  ASSERT_TRUE(schedule());
  loop->runOnce(milliseconds(1));
  EXPECT_EQ(fcntl(pipe.readingEnd(), F_GETFL), before);
  EXPECT_EQ(before & O_NONBLOCK, 0);
}

TEST_F(ScheduledStream, SharesItsDescriptorWithOthers) {
  const auto second = pipe.stream();
  second->open();
  second->setDelegate(delegate);
  ASSERT_TRUE(schedule());
  ASSERT_TRUE(second->scheduleInRunLoop(*loop, "default"));
  pipe.write("abc");
  EXPECT_EQ(eventsInSomeTurns(), 2);
}

TEST_F(ScheduledStream, CannotBeOneThatIsNotOpen) {
  EXPECT_FALSE(pipe.stream()->scheduleInRunLoop(*loop, "default"));
}

TEST_F(ScheduledStream, CannotBeOneThatIsAlwaysReady) {
  std::istringstream text("abc");
  const auto data = tests::streamOf("abc");
  const auto file = InputStream::withFileAtPath("/proc/self/exe");
  const auto standard = InputStream::withStream(text);
  for (const auto& other : {data, file, standard}) {
    other->open();
    EXPECT_EQ(other->streamStatus(), StreamStatus::open);
    EXPECT_FALSE(other->scheduleInRunLoop(*loop, "default"));
  }
}

}  // namespace
}  // namespace platen
