// SPDX-License-Identifier: Apache-2.0
//
// The library has no threads of its own, and needs libuv's for names only.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using testing::IsSubsetOf;
using tests::answering;
using tests::drive;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;

std::set<std::string> threadsNow() {
  std::set<std::string> threads;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    threads.insert(thread.path().filename());
  }
  return threads;
}

class Threads : public testing::TestWithParam<const char*> {
 protected:
  // Has one thread, which may end as soon as it has answered: only further ones are counted.
  ScriptedPeer peer{{answering(200, makeAnswer())}};
  URL target = *URL::parse("ipp://" + std::string(GetParam()) + ":" + std::to_string(peer.port()));
};

TEST_P(Threads, AreNotStartedForAScheduledExchange) {
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  const auto before = threadsNow();
  std::set<std::string> seen;
  recorder->onCall = [&seen](char, IPPRequest&) { seen.merge(threadsNow()); };
  request->sendTo(target);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_THAT(seen, IsSubsetOf(before));
  EXPECT_FALSE(seen.empty());
}

TEST_P(Threads, AreNotStartedForABlockingExchange) {
  const auto before = threadsNow();
  ASSERT_NE(makeRequest()->performOn(target), nullptr);
  EXPECT_THAT(threadsNow(), IsSubsetOf(before));
}

INSTANTIATE_TEST_SUITE_P(Hosts, Threads, testing::Values("localhost", "127.0.0.1"),
                         [](const auto& host) {
                           return std::string(host.param)[0] == 'l' ? "Local" : "Numeric";
                         });

}  // namespace
}  // namespace platen
