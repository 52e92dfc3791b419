// SPDX-License-Identifier: Apache-2.0
//
// Answers that come while the document is still being sent, and do not end, or of which the
// connection is then lost. No exchange here has a time-out: each has to end by itself.

#include <gtest/gtest.h>
#include <time.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "tests/support/Pipe.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
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
constexpr const char* kClosing = "Connection: close\r\n";

milliseconds processorTime() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return std::chrono::seconds(used.tv_sec) +
         std::chrono::duration_cast<milliseconds>(std::chrono::nanoseconds(used.tv_nsec));
}

/// The same for a document that is there and for one of which nothing has come yet.
class EarlyAnswer : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    pipe.emplace();
    recorder->document = GetParam() ? pipe->stream() : streamOf(std::string(kLarge, 'x'));
    request->setTimeInterval(0);
  }
  void expectRefusal(int status) const {
    EXPECT_EQ(recorder->calls, "WDO");
    EXPECT_EQ(recorder->underlyingCode(), status) << recorder->text();
  }

  std::optional<Pipe> pipe;
  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
};

INSTANTIATE_TEST_SUITE_P(Document, EarlyAnswer, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Dry" : "Large"; });

TEST_P(EarlyAnswer, ThatRefusesIsToldThoughItDoesNotEnd) {
  for (const std::string headers : {"", kClosing, "Content-Length: 100\r\n"}) {
    ScriptedPeer peer({[&](PeerConnection& connection) {
      connection.readHead();
      connection.send("HTTP/1.1 413 No\r\n" + headers + "\r\nno");
      connection.readToEnd();
    }});
    recorder->calls.clear();
    request->cancel();
    SetUp();
    request->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*recorder)) << headers;
    expectRefusal(413);
  }
}

TEST_P(EarlyAnswer, ThatRefusesIsToldThoughItDribblesOn) {
  ScriptedPeer peer({[](PeerConnection& connection) {
    connection.readHead();
    connection.send("HTTP/1.1 503 Busy\r\nTransfer-Encoding: chunked\r\n\r\n");
    for (int i = 0; i < 60; ++i) {
      connection.send("1\r\nx\r\n");
      connection.sleep(milliseconds(50));
    }
  }});
  const auto begin = RunLoop::Clock::now();
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(2500)) << "3 s is how long it dribbles";
  expectRefusal(503);
}

TEST_P(EarlyAnswer, IsNoRefusalOfALaterExchange) {
  ScriptedPeer peer({[](PeerConnection& connection) {
                       connection.readHead();
                       connection.send("HTTP/1.1 413 No\r\n\r\nno");
                       connection.readToEnd();
                     },
                     tests::answering(200, makeAnswer())});
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  recorder->calls.clear();
  recorder->document = streamOf("x");
  request->cancel();
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

class AnsweredDocument : public EarlyAnswer {};

INSTANTIATE_TEST_SUITE_P(Document, AnsweredDocument, testing::Values(true),
                         [](const auto&) { return "Dry"; });

TEST_P(AnsweredDocument, FailsWhenTheConnectionIsReset) {
  ScriptedPeer peer({[](PeerConnection& connection) {
    connection.readHead();
    connection.answer(200, makeAnswer());
    connection.sleep(milliseconds(50));
    connection.reset();
  }});
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_EQ(recorder->code(), 0x0502);
  EXPECT_EQ(recorder->underlyingCode(), -1005) << recorder->text();
}

TEST_P(AnsweredDocument, IsSentToItsEndWhereThePrinterHasOnlySaidThatItIsDone) {
  std::size_t taken = 0;
  ScriptedPeer peer({[&taken](PeerConnection& connection) {
    connection.readHead();
    connection.answer(200, makeAnswer(), kClosing);
    connection.closeSending();
    taken = connection.readToEnd();
  }});
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(700));  // longer than it takes to see to the connection
  EXPECT_EQ(recorder->calls, "WD");
  pipe->write(std::string(5000, 'x'));
  pipe->finish();
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_TRUE(peer.waitForScripts());
  EXPECT_GT(taken, 5000U);
}

TEST_P(AnsweredDocument, SleepsWhileAPartOfTheAnswerIsThere) {
  ScriptedPeer peer({[](PeerConnection& connection) {
    connection.readHead();
    connection.send("HTTP/1.1 20");
    connection.readToEnd();
  }});
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(300));
  int turns = 0;
  const auto before = processorTime();
  const auto end = RunLoop::Clock::now() + milliseconds(1000);
  driveUntil([&] { return ++turns < 0 || RunLoop::Clock::now() >= end; });
  EXPECT_LT(processorTime() - before, milliseconds(50));
  EXPECT_LT(turns, 60) << "every 10 ms would be 100";
  EXPECT_EQ(recorder->calls, "WD");
}

}  // namespace
}  // namespace platen
