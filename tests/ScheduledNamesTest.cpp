// SPDX-License-Identifier: Apache-2.0
//
// Exchanges with printers that are known by name, and name services that are slow or dead.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platen/HTTP.h"
#include "tests/support/FakeNames.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::answering;
using tests::drive;
using tests::driveFor;
using tests::FakeNames;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::targetOf;

class ScheduledNames : public testing::Test {
 protected:
  [[nodiscard]] static URL named(const std::string& host, const ScriptedPeer& peer) {
    return *URL::parse("ipp://" + host + ":" + std::to_string(peer.port()) + "/ipp/print");
  }

  FakeNames names;
  ScriptedPeer peer{4, answering(200, makeAnswer())};
  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
};

TEST_F(ScheduledNames, AreLookedUp) {
  names.set("printer.test", {"127.0.0.1"});
  request->sendTo(named("printer.test", peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_NE(peer.requests().at(0).find("\r\nHost: printer.test:"), std::string::npos);
}

TEST_F(ScheduledNames, ThatDoNotExistAreAFailure) {
  request->sendTo(named("nobody.test", peer));
  EXPECT_EQ(recorder->calls, "WD");
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_EQ(recorder->code(), 0x0502);
  EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::cannotFindHost));
}

TEST_F(ScheduledNames, DoNotKeepOtherExchangesWaiting) {
  names.block("dead.test");
  request->sendTo(named("dead.test", peer));
  auto longestTurn = RunLoop::Clock::duration::zero();
  const auto turn = [&] {
    const auto begin = RunLoop::Clock::now();
    RunLoop::current()->runOnce(milliseconds(0));
    longestTurn = std::max(longestTurn, RunLoop::Clock::now() - begin);
  };
  turn();
  names.waitUntilBlocked();
  for (int i = 0; i < 3; ++i) {
    const auto other = std::make_shared<RequestRecorder>();
    const auto another = makeRequest(other);
    another->sendTo(targetOf(peer));
    const auto deadline = RunLoop::Clock::now() + std::chrono::seconds(10);
    while (!other->hasEnded() && RunLoop::Clock::now() < deadline) {
      turn();
    }
    EXPECT_EQ(other->calls, "WDORF") << other->text();
  }
  EXPECT_LT(longestTurn, milliseconds(1000));
  EXPECT_EQ(recorder->calls, "WD");
  names.set("dead.test", {"127.0.0.1"});
  names.release("dead.test");
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

TEST_F(ScheduledNames, MayBeGivenUpAtOnce) {
  names.block("dead.test");
  names.set("dead.test", {"127.0.0.1"});
  request->sendTo(named("dead.test", peer));
  RunLoop::current()->runOnce(milliseconds(0));
  names.waitUntilBlocked();
  const auto begin = RunLoop::Clock::now();
  request->cancel();
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(1000)) << "the name is not awaited";
  names.release("dead.test");
  driveFor(milliseconds(50));
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(peer.connectionCount(), 0U);
}

TEST_F(ScheduledNames, ThatAreNotFoundInTimeAreATimeOut) {
  names.block("dead.test");
  request->setTimeInterval(0.2);
  const auto begin = RunLoop::Clock::now();
  request->sendTo(named("dead.test", peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_GE(RunLoop::Clock::now() - begin, milliseconds(190));
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(5000));
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_EQ(recorder->code(), 0x0405);
  EXPECT_EQ(recorder->underlyingCode(), -1001);
}

TEST_F(ScheduledNames, DoNotKeepARunLoopThatGoes) {
  names.block("dead.test");
  std::weak_ptr<IPPRequest> watched;
  auto begin = RunLoop::Clock::now();
  tests::onOwnThread([&] {
    const auto sent = makeRequest(recorder);
    watched = sent;
    sent->sendTo(named("dead.test", peer));
    RunLoop::current()->runOnce(milliseconds(0));
    names.waitUntilBlocked();
    begin = RunLoop::Clock::now();
  });
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(5000));
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(recorder->calls, "WD");
}

TEST_F(ScheduledNames, AreLookedUpWhileAnotherIsDead) {
  names.set("printer.test", {"127.0.0.1"});
  names.block("dead.test");
  const auto waiting = makeRequest();
  waiting->sendTo(named("dead.test", peer));
  RunLoop::current()->runOnce(milliseconds(0));
  names.waitUntilBlocked();
  request->sendTo(named("printer.test", peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  waiting->cancel();
}

}  // namespace
}  // namespace platen
