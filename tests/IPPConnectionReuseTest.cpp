// SPDX-License-Identifier: Apache-2.0

/// Which connections blocking exchanges use: kept ones, closed ones, those of other threads.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "platform/RunLoopPrivate.h"
#include "tests/support/AnsweringPrinter.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::answeringAll;
using tests::PeerConnection;
using tests::performOn;
using tests::requestTo;
using tests::responseOctets;
using tests::ScriptedPeer;
using tests::targetAt;

/// Has `work` done in a thread of its own, whose connections end with it.
template <typename Work>
void inAnotherThread(Work work) {
  std::thread(work).join();
}

TEST(KeptConnection, ServesTheNextExchangeOfTheThread) {
  ScriptedPeer peer({answeringAll(5), answeringAll(1)});
  for (int i = 0; i < 5; ++i) {
    EXPECT_NE(performOn(targetAt(peer)).response, nullptr) << i;
  }
  EXPECT_EQ(peer.connectionCount(), 1U);
  EXPECT_EQ(peer.requests().size(), 5U);
}

TEST(KeptConnection, ServesEveryPathOfTheServer) {
  ScriptedPeer peer({answeringAll(2)});
  EXPECT_NE(performOn(targetAt(peer, "/printers/a")).response, nullptr);
  EXPECT_NE(performOn(targetAt(peer, "/jobs/7")).response, nullptr);
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST(KeptConnection, ServesTheNextExchangeAfterAStatusOfFailureAndABodyThatDoesNotDecode) {
  ScriptedPeer peer({[](auto& connection) {
    for (const auto& body : {responseOctets("0406"), std::string("<html>"), responseOctets()}) {
      connection.readRequest();
      connection.answer(200, body);
    }
  }});
  EXPECT_NE(performOn(targetAt(peer)).error, nullptr);
  EXPECT_EQ(performOn(targetAt(peer)).response, nullptr);
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST(KeptConnection, IsNotUsedAfterATimeout) {
  std::atomic<bool> hasReturned = false;
  ScriptedPeer peer({[&hasReturned](auto& connection) {
                       connection.readRequest();
                       hasReturned.wait(false);
                       connection.answer(200, responseOctets("0406"));
                     },
                     answeringAll(1)});
  const auto request = requestTo(targetAt(peer));
  request->setTimeInterval(0.1);
  EXPECT_EQ(request->performOn(targetAt(peer)), nullptr);
  hasReturned = true;
  hasReturned.notify_all();
  EXPECT_EQ(performOn(targetAt(peer)).error, nullptr) << "the late answer belongs to nobody";
  EXPECT_EQ(peer.connectionCount(), 2U);
}

TEST(KeptConnection, IsReplacedWhenTheServerHasClosedItMeanwhile) {
  // Close right after the answer, a little later, and by a reset.
  const std::vector<ScriptedPeer::Script> closings = {
      [](PeerConnection& connection) { connection.close(); },
      [](PeerConnection& connection) {
        connection.sleep(milliseconds(20));
        connection.close();
      },
      [](PeerConnection& connection) { connection.reset(); },
  };
  for (const auto& closing : closings) {
    const ScriptedPeer::Script script = [&](PeerConnection& connection) {
      connection.readRequest();
      connection.answer(200, responseOctets());
      closing(connection);
    };
    ScriptedPeer peer(std::vector<ScriptedPeer::Script>(5, script));
    for (int i = 0; i < 5; ++i) {
      const auto [response, error] = performOn(targetAt(peer));
      ASSERT_NE(response, nullptr) << i << ": " << (error ? error->description() : "");
      std::this_thread::sleep_for(milliseconds(i * 10));
    }
    EXPECT_EQ(peer.connectionCount(), 5U);
  }
}

/// Answers one request, reads the second in part and hangs up without a word, as a server does
/// whose patience with an idle connection ends that very moment.
ScriptedPeer::Script answeringThenHangingUp() {
  return [](PeerConnection& connection) {
    connection.readRequest();
    connection.answer(200, responseOctets());
    connection.readHead();
    connection.close();
  };
}

TEST(KeptConnection, IsReplacedWhenTheServerClosesItUnderTheNextRequest) {
  ScriptedPeer peer({answeringThenHangingUp(), answeringAll(1)});
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  const auto [response, error] = performOn(targetAt(peer));
  EXPECT_NE(response, nullptr) << (error ? error->description() : "");
  EXPECT_EQ(peer.connectionCount(), 2U);
}

TEST(KeptConnection, SendsAWholeDocumentAgainWhenItTurnsOutToBeClosed) {
  ScriptedPeer peer({answeringThenHangingUp(), answeringAll(1)});
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  const std::string document(500'000, 'd');
  const auto stream = InputStream::withData({document.begin(), document.end()});
  EXPECT_NE(requestTo(targetAt(peer))->performOn(targetAt(peer), stream), nullptr);
  EXPECT_TRUE(peer.requests().at(1).ends_with("\x03" + document));
}

TEST(KeptConnection, IsNotKeptWhenTheServerSaysSo) {
  const ScriptedPeer::Script script = [](PeerConnection& connection) {
    connection.readRequest();
    connection.answer(200, responseOctets(), "Connection: close\r\n");
    connection.leaveOpen();
  };
  ScriptedPeer peer({script, script});
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  EXPECT_EQ(peer.connectionCount(), 2U);
}

TEST(KeptConnection, EndsWithItsThread) {
  std::atomic<bool> hasEnded = false;
  ScriptedPeer peer({[&](auto& connection) {
    connection.readRequest();
    connection.answer(200, responseOctets());
    connection.readToEnd();
    hasEnded = true;
  }});
  inAnotherThread([&] { EXPECT_NE(performOn(targetAt(peer)).response, nullptr); });
  EXPECT_TRUE(peer.waitForScripts());
  EXPECT_TRUE(hasEnded);
}

TEST(KeptConnection, BelongsToOneThread) {
  ScriptedPeer peer(2, answeringAll(2));
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  inAnotherThread([&] { EXPECT_NE(performOn(targetAt(peer)).response, nullptr); });
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  EXPECT_EQ(peer.connectionCount(), 2U);
}

TEST(BlockingThreads, GetEachItsOwnAnswer) {
  constexpr int kThreads = 8;
  constexpr int kExchanges = 25;
  // Each answer says by its status message which path was asked for.
  ScriptedPeer peer(kThreads, [](auto& connection) {
    for (int i = 0; i < kExchanges; ++i) {
      const auto request = connection.readRequest();
      const auto path = request.substr(5, request.find(" HTTP") - 5);
      connection.answer(200, tests::octetText("0101 0000 0000 0001 01 41 <'status-message'> <'" +
                                              path + "'> 03"));
    }
  });
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      for (int i = 0; i < kExchanges; ++i) {
        const auto path = "/" + std::to_string(number) + "/" + std::to_string(i);
        const auto [response, error] = performOn(targetAt(peer, path));
        right += response != nullptr && response->statusMessage() == path ? 1 : 0;
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(right, kThreads * kExchanges);
  EXPECT_EQ(peer.connectionCount(), static_cast<std::size_t>(kThreads));
}

TEST(BlockingThreads, DoNotWaitForOneAnother) {
  std::atomic<bool> isQuickDone = false;
  ScriptedPeer slow({[&](auto& connection) {
    connection.readRequest();
    while (!isQuickDone) {
      connection.sleep(milliseconds(1));
    }
    connection.answer(200, responseOctets());
  }});
  ScriptedPeer quick({answeringAll(1)});
  std::thread waiting([&] { EXPECT_NE(performOn(targetAt(slow)).response, nullptr); });
  while (slow.requests().empty()) {
    std::this_thread::yield();
  }
  EXPECT_NE(performOn(targetAt(quick)).response, nullptr);
  isQuickDone = true;
  waiting.join();
}

TEST(BlockingExchange, TurnsNoLoopOfTheCaller) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.sleep(milliseconds(50));
    connection.answer(200, responseOctets());
  }});
  bool wasCalled = false;
  const auto loop = RunLoop::current();
  loop->internals().callSoon([&] { wasCalled = true; });
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
  EXPECT_FALSE(wasCalled);
  loop->runOnce(milliseconds(0));
  EXPECT_TRUE(wasCalled);
}

}  // namespace
}  // namespace platen
