// SPDX-License-Identifier: Apache-2.0
//
// Documents that are not ready yet when they are to be sent, each through a pipe and through a
// socket.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

#include "platform/RunLoopPrivate.h"
#include "tests/support/Pipe.h"
#include "tests/support/ScheduledDocument.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using tests::answering;
using tests::drive;
using tests::driveFor;
using tests::driveUntil;
using tests::kSoon;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::Source;
using tests::targetOf;
using tests::Through;

class DryDocument : public tests::ScheduledDocument, public tests::WithEachSource {
 protected:
  Source source{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Source, DryDocument, testing::Values(Through::pipe, Through::socket),
                         DryDocument::nameOf);

TEST_P(DryDocument, IsSentAsAThreadMakesIt) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = source.stream();
  send(peer);
  std::thread maker([&] {
    for (const auto* piece : {"one ", "two ", "three "}) {
      std::this_thread::sleep_for(milliseconds(60));
      source.write(piece);
    }
    std::this_thread::sleep_for(milliseconds(60));
    source.finish();
  });
  EXPECT_TRUE(drive(*recorder));
  maker.join();
  expectResponse();
  EXPECT_GE(elapsed(), milliseconds(230));
  EXPECT_LT(elapsed(), milliseconds(240) + kSoon);
  EXPECT_THAT(peer.requests().at(0), EndsWith("one two three "));
}

TEST_P(DryDocument, IsSentAsATimerOfTheSameLoopMakesIt) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = source.stream();
  int rounds = 0;
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(*RunLoop::current(), [&] {
    source.write("piece ");
    if (++rounds == 5) {
      source.finish();
    } else {
      timer->start(milliseconds(30));
    }
  });
  timer->start(milliseconds(30));
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  expectResponse();
  EXPECT_THAT(peer.requests().at(0), EndsWith("piece piece piece piece piece "));
}

TEST_P(DryDocument, ReachesThePrinterSoonAfterItIsReady) {
  std::atomic<bool> hasArrived = false;
  ScriptedPeer peer({[&](auto& connection) {
    const auto head = connection.readHead();
    connection.readSome(request->dataRepresentation().size() + 30);
    hasArrived = true;
    connection.readToEnd();
  }});
  recorder->document = source.stream();
  send(peer);
  driveFor(milliseconds(300));
  EXPECT_FALSE(hasArrived);
  source.write(std::string(1000, 'x'));
  begin = RunLoop::Clock::now();
  EXPECT_TRUE(driveUntil([&] { return hasArrived.load(); }));
  EXPECT_LT(elapsed(), kSoon);
  request->cancel();
  EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
}

TEST_P(DryDocument, LetsOtherExchangesGoOnWhileItIsDry) {
  ScriptedPeer waiting({[](auto& connection) { connection.readToEnd(); }});
  ScriptedPeer prompt(5, answering(200, makeAnswer()));
  recorder->document = source.stream();
  send(waiting);
  driveFor(milliseconds(50));
  for (int i = 0; i < 5; ++i) {
    const auto other = std::make_shared<RequestRecorder>();
    const auto another = makeRequest(other);
    another->sendTo(targetOf(prompt));
    EXPECT_TRUE(drive(*other));
    EXPECT_EQ(other->calls, "WDORF");
  }
  EXPECT_LT(elapsed(), kSoon);
  EXPECT_EQ(recorder->calls, "WD");
  request->cancel();
}

double threadProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Waits as a host does until the thread's loop has something to do, and returns how long it took
/// to do it.
RunLoop::Clock::duration turnOnceReady(RunLoop& loop) {
  constexpr milliseconds kLimit(500);
  pollfd entry{loop.descriptor(), POLLIN, 0};
  poll(&entry, 1, static_cast<int>(std::min(loop.timeout().value_or(kLimit), kLimit).count()));
  const auto begin = RunLoop::Clock::now();
  loop.runOnce(milliseconds(0));
  return RunLoop::Clock::now() - begin;
}

TEST_P(DryDocument, CostsNextToNothingWhileItIsDry) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = source.stream();
  send(peer);
  driveFor(milliseconds(50));
  const double before = threadProcessorSeconds();
  auto longestTurn = RunLoop::Clock::duration::zero();
  int turns = 0;
  const auto end = RunLoop::Clock::now() + std::chrono::seconds(1);
  for (; RunLoop::Clock::now() < end; ++turns) {
    longestTurn = std::max(longestTurn, turnOnceReady(*RunLoop::current()));
  }
  EXPECT_LT(threadProcessorSeconds() - before, 0.1);
  EXPECT_LT(turns, 200);
  EXPECT_LT(longestTurn, std::chrono::seconds(1)) << "it waited for the document";
  EXPECT_EQ(recorder->calls, "WD") << recorder->text();
  request->cancel();
}

TEST_P(DryDocument, MayBeDryForLongerThanTheTimeOut) {
  for (const std::string first : {"", "the beginning, "}) {
    Source slow(GetParam());
    ScriptedPeer peer({answering(200, makeAnswer())});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = slow.stream();
    request = makeRequest(recorder);
    request->setTimeInterval(1);
    if (!first.empty()) {
      slow.write(first);
    }
    send(peer);
    driveFor(milliseconds(2500));
    EXPECT_EQ(recorder->calls, "WD") << recorder->text();
    slow.write("the rest");
    slow.finish();
    ASSERT_TRUE(drive(*recorder));
    expectResponse();
    EXPECT_THAT(peer.requests().at(0), EndsWith(first + "the rest"));
  }
}

TEST_P(DryDocument, IsTimedAgainOnceItIsNoLongerDry) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = source.stream();
  request->setTimeInterval(0.3);
  send(peer);
  driveFor(milliseconds(500));
  source.write("all of it");
  source.finish();
  begin = RunLoop::Clock::now();
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->code(), 0x0405) << recorder->text();
  EXPECT_GE(elapsed(), milliseconds(250));
  EXPECT_LT(elapsed(), milliseconds(300) + kSoon);
}

TEST_P(DryDocument, IsLetGoOfByACancelWhileItIsDry) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = source.stream();
  const std::weak_ptr watched = recorder->document;
  send(peer);
  driveFor(milliseconds(50));
  begin = RunLoop::Clock::now();
  const double before = threadProcessorSeconds();
  request->cancel();
  EXPECT_LT(threadProcessorSeconds() - before, 0.05);
  EXPECT_LT(elapsed(), milliseconds(1000));
  EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
  recorder->document.reset();
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(peer.waitForScripts());
}

}  // namespace
}  // namespace platen
