// SPDX-License-Identifier: Apache-2.0
//
// Documents on their way: printers that answer before they have got all of it, and documents that
// are not ready yet.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

#include "platen/HTTP.h"
#include "platform/RunLoopPrivate.h"
#include "tests/support/Pipe.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using tests::answering;
using tests::drive;
using tests::driveFor;
using tests::driveUntil;
using tests::makeAnswer;
using tests::makeRequest;
using tests::PeerConnection;
using tests::Pipe;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::streamOf;
using tests::targetOf;

constexpr std::size_t kLarge = 8'000'000;  // more than any socket buffers
// What takes no time, on a machine that has other things to do, too.
constexpr milliseconds kSoon(1500);

class ScheduledDocument : public testing::Test {
 protected:
  void send(const ScriptedPeer& peer) {
    begin = RunLoop::Clock::now();
    request->sendTo(targetOf(peer));
  }
  [[nodiscard]] milliseconds elapsed() const {
    return std::chrono::duration_cast<milliseconds>(RunLoop::Clock::now() - begin);
  }
  void expectRefusal(std::int64_t status) const {
    EXPECT_EQ(recorder->calls, "WDO");
    EXPECT_EQ(recorder->underlyingCode(), status) << recorder->text();
    EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
  }
  void expectResponse() const {
    EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
    EXPECT_EQ(recorder->error, nullptr);
  }

  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
  RunLoop::Clock::time_point begin;
};

// --- Answers that come early ---------------------------------------------------------------------

/// What a printer does after its refusal.
enum class Then { readsOn, stalls, closes, resets };

void doThen(PeerConnection& connection, Then then) {
  switch (then) {
    case Then::readsOn:
      connection.readToEnd();
      break;
    case Then::stalls:
      connection.sleep(milliseconds(10'000));
      break;
    case Then::closes:
      break;
    case Then::resets:
      connection.sleep(milliseconds(20));
      connection.reset();
  }
}

std::string nameOf(Then then) {
  switch (then) {
    case Then::readsOn:
      return "ReadsOn";
    case Then::stalls:
      return "Stalls";
    case Then::closes:
      return "Closes";
    case Then::resets:
      break;
  }
  return "Resets";
}

class ScheduledRefusal : public ScheduledDocument, public testing::WithParamInterface<Then> {};

INSTANTIATE_TEST_SUITE_P(Printer, ScheduledRefusal,
                         testing::Values(Then::readsOn, Then::stalls, Then::closes, Then::resets),
                         [](const auto& tested) { return nameOf(tested.param); });

TEST_P(ScheduledRefusal, StopsALargeDocumentOnItsWay) {
  for (const int status : {400, 401, 413, 503}) {
    ScriptedPeer peer({[&](auto& connection) {
      connection.readSome(100'000);
      connection.answer(status, "no", "Connection: close\r\n");
      doThen(connection, GetParam());
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = streamOf(std::string(kLarge, 'x'));
    request = makeRequest(recorder);
    send(peer);
    ASSERT_TRUE(drive(*recorder));
    EXPECT_LT(elapsed(), kSoon);
    expectRefusal(status);
  }
}

TEST_P(ScheduledRefusal, IsSeenWhileTheDocumentIsDry) {
  for (const std::string given : {"", "some of it"}) {
    Pipe pipe;
    ScriptedPeer peer({[&](auto& connection) {
      connection.readHead();
      connection.sleep(milliseconds(50));
      connection.answer(403, "no");
      doThen(connection, GetParam());
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    if (!given.empty()) {
      pipe.write(given);
    }
    send(peer);
    ASSERT_TRUE(drive(*recorder));
    EXPECT_LT(elapsed(), kSoon);
    expectRefusal(403);
  }
}

TEST_P(ScheduledRefusal, IsSeenBeforeAnythingWasRead) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.answer(503, "busy");
    doThen(connection, GetParam());
  }});
  recorder->document = streamOf(std::string(kLarge, 'x'));
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_LT(elapsed(), kSoon);
  expectRefusal(503);
}

TEST_F(ScheduledDocument, IsSentToItsEndThoughTheAnswerIsThere) {
  for (const int status : {200, 202, 302}) {
    for (const auto* headers : {"", "Connection: close\r\n"}) {
      std::string received;
      ScriptedPeer peer({[&](auto& connection) {
        const auto head = connection.readHead();
        connection.answer(status, makeAnswer(), headers);
        connection.sleep(milliseconds(50));
        received = connection.readBody(head);
      }});
      recorder = std::make_shared<RequestRecorder>();
      recorder->document = streamOf(std::string(kLarge, 'x'));
      request = makeRequest(recorder);
      send(peer);
      ASSERT_TRUE(drive(*recorder));
      EXPECT_TRUE(peer.waitForScripts());
      EXPECT_EQ(recorder->calls, status == 200 ? "WDORF" : "WDO") << recorder->text();
      EXPECT_EQ(recorder->underlyingCode(), status == 200 ? 0 : status);
      EXPECT_EQ(received.size(), request->dataRepresentation().size() + kLarge) << headers;
    }
  }
}

TEST_F(ScheduledDocument, IsAwaitedThoughTheAnswerIsThere) {
  for (const auto* headers : {"", "Connection: close\r\n"}) {
    Pipe pipe;
    std::string received;
    ScriptedPeer peer({[&](auto& connection) {
      const auto head = connection.readHead();
      connection.answer(200, makeAnswer(), headers);
      received = connection.readBody(head);
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    send(peer);
    driveFor(milliseconds(200));
    pipe.write("one, ");
    driveFor(milliseconds(100));
    EXPECT_EQ(recorder->calls, "WD") << "told before the document's end";
    pipe.write("two");
    pipe.finish();
    ASSERT_TRUE(drive(*recorder));
    EXPECT_TRUE(peer.waitForScripts());
    expectResponse();
    EXPECT_THAT(received, EndsWith("one, two")) << headers;
  }
}

TEST_F(ScheduledDocument, IsNotTakenForSentWhenThePrinterClosesAfterAnEarlySuccess) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readSome(100'000);
    connection.answer(200, makeAnswer());
  }});
  recorder->document = streamOf(std::string(kLarge, 'x'));
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_EQ(recorder->code(), 0x0502);
  EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::networkConnectionLost));
}

TEST_F(ScheduledDocument, FailsAtOnceWhenTheConnectionIsLostWhileItIsDry) {
  for (const bool resets : {false, true}) {
    Pipe pipe;
    ScriptedPeer peer({[&](auto& connection) {
      connection.readHead();
      connection.sleep(milliseconds(30));
      if (resets) {
        connection.reset();
      }
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    send(peer);
    ASSERT_TRUE(drive(*recorder));
    EXPECT_LT(elapsed(), kSoon);
    EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::networkConnectionLost));
  }
}

// --- Documents that are not ready ----------------------------------------------------------------

TEST_F(ScheduledDocument, IsSentAsAThreadMakesIt) {
  Pipe pipe;
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = pipe.stream();
  send(peer);
  std::thread maker([&] {
    for (const auto* piece : {"one ", "two ", "three "}) {
      std::this_thread::sleep_for(milliseconds(60));
      pipe.write(piece);
    }
    std::this_thread::sleep_for(milliseconds(60));
    pipe.finish();
  });
  EXPECT_TRUE(drive(*recorder));
  maker.join();
  expectResponse();
  EXPECT_GE(elapsed(), milliseconds(240));
  EXPECT_LT(elapsed(), milliseconds(240) + kSoon);
  EXPECT_THAT(peer.requests().at(0), EndsWith("one two three "));
}

TEST_F(ScheduledDocument, IsSentAsATimerOfTheSameLoopMakesIt) {
  Pipe pipe;
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = pipe.stream();
  int rounds = 0;
  std::unique_ptr<Timer> timer;
  timer = std::make_unique<Timer>(*RunLoop::current(), [&] {
    pipe.write("piece ");
    if (++rounds == 5) {
      pipe.finish();
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

TEST_F(ScheduledDocument, ReachesThePrinterSoonAfterItIsReady) {
  Pipe pipe;
  std::atomic<bool> hasArrived = false;
  ScriptedPeer peer({[&](auto& connection) {
    const auto head = connection.readHead();
    connection.readSome(request->dataRepresentation().size() + 30);
    hasArrived = true;
    connection.readToEnd();
  }});
  recorder->document = pipe.stream();
  send(peer);
  driveFor(milliseconds(300));
  EXPECT_FALSE(hasArrived);
  pipe.write(std::string(1000, 'x'));
  begin = RunLoop::Clock::now();
  EXPECT_TRUE(driveUntil([&] { return hasArrived.load(); }));
  EXPECT_LT(elapsed(), milliseconds(500));
  request->cancel();
  EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
}

TEST_F(ScheduledDocument, LetsOtherExchangesGoOnWhileItIsDry) {
  Pipe pipe;
  ScriptedPeer waiting({[](auto& connection) { connection.readToEnd(); }});
  ScriptedPeer prompt(5, answering(200, makeAnswer()));
  recorder->document = pipe.stream();
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

TEST_F(ScheduledDocument, CostsNextToNothingWhileItIsDry) {
  Pipe pipe;
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = pipe.stream();
  send(peer);
  driveFor(milliseconds(50));
  const double before = threadProcessorSeconds();
  auto longestTurn = RunLoop::Clock::duration::zero();
  int turns = 0;
  const auto end = RunLoop::Clock::now() + std::chrono::seconds(1);
  while (RunLoop::Clock::now() < end) {
    RunLoop::current()->runOnce(milliseconds(1000));
    const auto turnBegin = RunLoop::Clock::now();
    RunLoop::current()->runOnce(milliseconds(0));
    longestTurn = std::max(longestTurn, RunLoop::Clock::now() - turnBegin);
    ++turns;
  }
  EXPECT_LT(threadProcessorSeconds() - before, 0.1);
  EXPECT_LT(turns, 200);
  EXPECT_LT(longestTurn, milliseconds(200));
  request->cancel();
}

TEST_F(ScheduledDocument, MayBeDryForLongerThanTheTimeOut) {
  for (const std::string first : {"", "the beginning, "}) {
    Pipe pipe;
    ScriptedPeer peer({answering(200, makeAnswer())});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    request->setTimeInterval(0.3);
    if (!first.empty()) {
      pipe.write(first);
    }
    send(peer);
    driveFor(milliseconds(1000));
    EXPECT_EQ(recorder->calls, "WD") << recorder->text();
    pipe.write("the rest");
    pipe.finish();
    ASSERT_TRUE(drive(*recorder));
    expectResponse();
    EXPECT_THAT(peer.requests().at(0), EndsWith(first + "the rest"));
  }
}

TEST_F(ScheduledDocument, IsTimedAgainOnceItIsNoLongerDry) {
  Pipe pipe;
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = pipe.stream();
  request->setTimeInterval(0.3);
  send(peer);
  driveFor(milliseconds(500));
  pipe.write("all of it");
  pipe.finish();
  begin = RunLoop::Clock::now();
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->code(), 0x0405) << recorder->text();
  EXPECT_GE(elapsed(), milliseconds(250));
  EXPECT_LT(elapsed(), milliseconds(300) + kSoon);
}

TEST_F(ScheduledDocument, NeverTimesOutWhileItMovesSlowly) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readHead();
    for (int i = 0; i < 30; ++i) {
      connection.readSome(kLarge / 100);
      connection.sleep(milliseconds(50));
    }
    connection.readSome(kLarge - 30 * (kLarge / 100));
    connection.answer(200, makeAnswer(), "Connection: close\r\n");
    connection.closeSending();
    connection.readToEnd();
  }});
  recorder->document = streamOf(std::string(kLarge, 'x'));
  request->setTimeInterval(0.4);
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_GE(elapsed(), milliseconds(1500));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

TEST_F(ScheduledDocument, IsLetGoOfByACancelWhileItIsDry) {
  Pipe pipe;
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = pipe.stream();
  const std::weak_ptr watched = recorder->document;
  send(peer);
  driveFor(milliseconds(50));
  begin = RunLoop::Clock::now();
  request->cancel();
  EXPECT_LT(elapsed(), milliseconds(50));
  EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
  recorder->document.reset();
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(peer.waitForScripts());
}

}  // namespace
}  // namespace platen
