// SPDX-License-Identifier: Apache-2.0
//
// The library has no threads of its own, and needs libuv's for names only.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/support/FakeNames.h"
#include "tests/support/RequestRecorder.h"
#include "tests/support/ThreadCount.h"

namespace platen {
namespace {

using tests::answering;
using tests::drive;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::startedThreadCount;

URL named(const std::string& host, const ScriptedPeer& peer) {
  return *URL::parse("ipp://" + host + ":" + std::to_string(peer.port()));
}

class StartedThreads : public testing::Test {
 protected:
  void SetUp() override {
    if (!startedThreadCount()) {
      GTEST_SKIP() << "a sanitizer sees to the threads";
    }
  }
  /// How many were started since the peer had its own.
  [[nodiscard]] std::size_t startedSince() const {
    return startedThreadCount().value() - before_.value();
  }

  ScriptedPeer peer{{answering(200, makeAnswer())}};

 private:
  const std::optional<std::size_t> before_ = startedThreadCount();
};

class Threads : public StartedThreads, public testing::WithParamInterface<const char*> {};

TEST_F(StartedThreads, AreCountedThoughTheyEndAtOnce) {
  tests::onOwnThread([] {});
  EXPECT_EQ(startedSince(), 1U);
  const ScriptedPeer other({answering(200, makeAnswer())});
  EXPECT_EQ(startedSince(), 2U);
}

TEST_F(StartedThreads, ServeToLookUpANameOnce) {
  tests::FakeNames names;
  names.set("printer.test", {"127.0.0.1"});
  ASSERT_NE(makeRequest()->performOn(named("printer.test", peer)), nullptr);
  const auto first = startedSince();  // none where an earlier test of this process had them started
  const ScriptedPeer other({answering(200, makeAnswer())});
  ASSERT_NE(makeRequest()->performOn(named("printer.test", other)), nullptr);
  EXPECT_EQ(startedSince(), first + 1) << "that of the peer";
}

TEST_P(Threads, AreNotStartedForAScheduledExchange) {
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(named(GetParam(), peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_EQ(startedSince(), 0U);
}

TEST_P(Threads, AreNotStartedForABlockingExchange) {
  ASSERT_NE(makeRequest()->performOn(named(GetParam(), peer)), nullptr);
  EXPECT_EQ(startedSince(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Hosts, Threads, testing::Values("localhost", "127.0.0.1"),
                         [](const auto& host) {
                           return std::string(host.param)[0] == 'l' ? "Local" : "Numeric";
                         });

}  // namespace
}  // namespace platen
