// SPDX-License-Identifier: Apache-2.0
//
// What a delegate is told and when, and what it may do meanwhile.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

#include "tests/support/FakeNames.h"
#include "tests/support/HTTPRecorder.h"
#include "tests/support/ScriptedPeer.h"
#include "tests/support/TrickleStream.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::HTTPRecorder;
using tests::makePost;
using tests::ScriptedPeer;

class HTTPDelegate : public testing::Test {
 protected:
  /// Whether nothing comes any more.
  bool isQuiet() {
    const auto before = recorder->events;
    loop->runUntil(RunLoop::Clock::now() + milliseconds(25));
    return recorder->events == before;
  }

  std::shared_ptr<RunLoop> loop = RunLoop::makePrivate();
  std::shared_ptr<HTTPRecorder> recorder = std::make_shared<HTTPRecorder>();
  std::shared_ptr<HTTPConnection> connection;
};

ScriptedPeer::Script answeringTwice() {
  return [](tests::PeerConnection& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\nfour");
    connection.sleep(milliseconds(20));
    connection.send("more");
    connection.readToEnd();
  };
}

TEST_F(HTTPDelegate, IsNotCalledBeforeTheStartReturns) {
  connection = HTTPConnection::start(makePost("ipp://nowhere/", "x"), recorder, *loop);
  EXPECT_EQ(recorder->events, "");
  EXPECT_EQ(loop->timeout(), milliseconds(0));
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_EQ(recorder->events, "E");
}

TEST_F(HTTPDelegate, MayBeAbsent) {
  ScriptedPeer peer({answeringTwice()});
  connection = HTTPConnection::start(makePost(peer.url(), "x"), nullptr, *loop);
  loop->runUntil(RunLoop::Clock::now() + milliseconds(100));
  const auto other = HTTPConnection::start(makePost("http:///", "x"), nullptr, *loop);
  loop->runUntil(RunLoop::Clock::now() + milliseconds(10));
  EXPECT_EQ(peer.requests().size(), 1U);
}

TEST_F(HTTPDelegate, IsLetGoAtTheEnd) {
  ScriptedPeer peer({answeringTwice()});
  connection = HTTPConnection::start(makePost(peer.url(), "x"), recorder, *loop);
  EXPECT_EQ(recorder.use_count(), 2);
  tests::drive(*loop, *recorder);
  EXPECT_EQ(recorder->events, "RDF");
  EXPECT_EQ(recorder.use_count(), 1);
  connection->cancel();
  connection->cancel();
  EXPECT_TRUE(isQuiet());
}

TEST_F(HTTPDelegate, IsToldNothingAfterACancelAtAnyTime) {
  for (int turns = 0; turns < 40; ++turns) {
    ScriptedPeer peer({answeringTwice()});
    recorder = std::make_shared<HTTPRecorder>();
    connection =
        HTTPConnection::start(makePost(peer.url(), std::string(500'000, 'x')), recorder, *loop);
    for (int i = 0; i < turns && !recorder->hasEnded(); ++i) {
      loop->runOnce(milliseconds(100));
    }
    connection->cancel();
    EXPECT_EQ(recorder.use_count(), 1);
    EXPECT_TRUE(isQuiet());
    EXPECT_FALSE(recorder->events.ends_with('E'));
  }
}

TEST_F(HTTPDelegate, IsToldNothingWhenTheConnectionIsLetGo) {
  ScriptedPeer peer({answeringTwice()});
  connection = HTTPConnection::start(makePost(peer.url(), "x"), recorder, *loop);
  while (recorder->events.empty()) {
    loop->runOnce(milliseconds(100));
  }
  connection.reset();
  EXPECT_EQ(recorder.use_count(), 1);
  EXPECT_TRUE(isQuiet());
}

/// Each parameter is something that a delegate does from within a call.
class HTTPDelegateActing : public HTTPDelegate, public testing::WithParamInterface<const char*> {
 protected:
  void act(HTTPConnection& current) {
    const std::string deed = GetParam();
    if (deed == "Cancels") {
      current.cancel();
    } else if (deed == "LetsGoOfTheConnection") {
      connection.reset();
    } else if (deed == "LetsGoOfItself") {
      recorder.reset();
      connection.reset();
    } else if (deed == "LetsGoOfTheLoop") {
      loop.reset();
      connection.reset();
    } else if (deed == "RunsTheLoop") {
      loop->runOnce(milliseconds(30));
    } else if (deed == "RunsTheLoopAndCancels") {
      loop->runOnce(milliseconds(30));
      current.cancel();
    } else if (deed == "Throws") {
      throw std::runtime_error("out of a delegate");
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Deeds, HTTPDelegateActing,
                         testing::Values("Cancels", "LetsGoOfTheConnection", "LetsGoOfItself",
                                         "LetsGoOfTheLoop", "RunsTheLoop", "RunsTheLoopAndCancels",
                                         "Throws"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(HTTPDelegateActing, MayDoSoInEveryCall) {
  const std::string deed = GetParam();
  for (const std::string call : {"R", "RD", "RDF", "E"}) {
    loop = RunLoop::makePrivate();
    recorder = std::make_shared<HTTPRecorder>();
    ScriptedPeer peer({answeringTwice()});
    const auto url = call == "E" ? std::string("http:///") : peer.url();
    std::string events;
    bool hasActed = false;
    auto* const raw = recorder.get();
    recorder->onEvent = [&](HTTPConnection& current) {
      events = raw->events;
      if (events == call && !std::exchange(hasActed, true)) {
        act(current);
      }
    };
    connection = HTTPConnection::start(makePost(url, "x"), recorder, *loop);
    const auto driver = loop;  // keeps the test going, not the delegate's loop
    const auto deadline = RunLoop::Clock::now() + milliseconds(150);
    while (RunLoop::Clock::now() < deadline) {
      try {
        driver->runOnce(milliseconds(20));
      } catch (const std::runtime_error&) {
        EXPECT_EQ(deed, "Throws");
      }
    }
    EXPECT_TRUE(hasActed) << call;
    if (deed == "RunsTheLoop" || deed == "Throws") {
      EXPECT_EQ(events, call == "E" ? "E" : "RDF");
    } else if (deed == "RunsTheLoopAndCancels") {
      EXPECT_TRUE(events.starts_with(call)) << events;
    } else {
      EXPECT_EQ(events, call);
    }
    connection.reset();
  }
}

TEST_F(HTTPDelegate, MayHoldItsConnection) {
  // The usual handler: it has the connection, which has it until the end.
  ScriptedPeer peer({answeringTwice()});
  const auto witness = std::make_shared<int>(0);
  {
    const auto handler = std::make_shared<HTTPRecorder>();
    handler->onEvent = [witness](HTTPConnection&) { ++*witness; };
    struct Holder {
      std::shared_ptr<HTTPConnection> held;
    };
    const auto holder = std::make_shared<Holder>();
    holder->held = HTTPConnection::start(makePost(peer.url(), "x"), handler, *loop);
    handler->onEvent = [witness, holder](HTTPConnection&) { ++*witness; };
  }
  while (*witness < 4) {
    loop->runOnce(milliseconds(100));
  }
  EXPECT_EQ(witness.use_count(), 1);
}

TEST_F(HTTPDelegate, IsLetGoWhenTheLoopGoes) {
  ScriptedPeer peer({[](auto& accepted) { accepted.readToEnd(); }});
  connection = HTTPConnection::start(makePost(peer.url(), "x"), recorder, *loop);
  const auto fresh = HTTPConnection::start(makePost(peer.url(), "x"), recorder, *loop);
  loop->runUntil(RunLoop::Clock::now() + milliseconds(20));
  const auto unbegun = HTTPConnection::start(makePost(peer.url(), "x"), recorder, *loop);
  loop.reset();
  EXPECT_EQ(recorder.use_count(), 1);
  connection->cancel();
}

TEST_F(HTTPDelegate, IsLetGoWhenTheThreadEnds) {
  ScriptedPeer peer({[](auto& accepted) { accepted.readToEnd(); }});
  const auto stream = std::make_shared<tests::TrickleStream>(3, std::chrono::hours(1));
  std::thread([&] {
    // Held by the delegate, which it holds: nobody but the loop can end this.
    connection = HTTPConnection::start(makePost(peer.url(), stream), recorder, *RunLoop::current());
    recorder->onEvent = [held = connection](HTTPConnection&) {};
    RunLoop::current()->runUntil(RunLoop::Clock::now() + milliseconds(30));
  }).join();
  EXPECT_EQ(recorder.use_count(), 1);
  EXPECT_TRUE(stream->wasClosed());
  recorder->onEvent = nullptr;
}

TEST_F(HTTPDelegate, IsToldNothingWhenTheStreamCancels) {
  ScriptedPeer peer({[](auto& accepted) { accepted.readToEnd(); }});
  for (const bool letsGo : {false, true}) {
    const auto stream = std::make_shared<tests::TrickleStream>(3, milliseconds(1));
    stream->onRead = [&] {
      if (letsGo) {
        connection.reset();
      } else {
        connection->cancel();
      }
    };
    connection = HTTPConnection::start(makePost(peer.url(), stream), recorder, *loop);
    loop->runUntil(RunLoop::Clock::now() + milliseconds(50));
    EXPECT_EQ(recorder->events, "");
    EXPECT_TRUE(stream->wasClosed());
    EXPECT_EQ(recorder.use_count(), 1);
  }
}

TEST_F(HTTPDelegate, IsToldNothingWhenACancelledNameIsResolved) {
  tests::FakeNames names;
  names.block("stuck.test");
  connection = HTTPConnection::start(makePost("http://stuck.test/", "x"), recorder, *loop);
  loop->runOnce(milliseconds(0));
  names.waitUntilBlocked();
  const auto begin = RunLoop::Clock::now();
  connection->cancel();
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(500));
  names.release("stuck.test");
  EXPECT_TRUE(isQuiet());
}

TEST_F(HTTPDelegate, IsToldAllWhenAHostDrivesTheLoop) {
  ScriptedPeer peer({[](auto& accepted) {
    accepted.readRequest();
    accepted.sleep(milliseconds(30));
    accepted.answer(200, "answer");
    accepted.readToEnd();
  }});
  const auto stream = std::make_shared<tests::TrickleStream>(5, milliseconds(10));
  connection = HTTPConnection::start(makePost(peer.url(), stream), recorder, *loop);
  int turns = 0;
  // All that a host does: wait on the descriptor as long as it is told, then run one turn.
  while (!recorder->hasEnded() && ++turns < 1000) {
    const auto timeout = loop->timeout();
    ASSERT_TRUE(timeout.has_value());
    pollfd entry{loop->descriptor(), POLLIN, 0};
    poll(&entry, 1, static_cast<int>(timeout->count()));
    loop->runOnce(milliseconds(0));
  }
  EXPECT_EQ(recorder->events, "RDF") << recorder->text();
  EXPECT_LT(turns, 200);
  for (int i = 0; i < 3; ++i) {
    loop->runOnce(milliseconds(0));
  }
  EXPECT_EQ(loop->timeout(), std::nullopt) << "an idle connection needs no turns";
}

TEST_F(HTTPDelegate, GetsOneResponseOnly) {
  ScriptedPeer peer({[](auto& accepted) {
    accepted.readRequest();
    accepted.send("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nX: y\r\n\r\n");
    accepted.answer(200, "x");
    accepted.answer(500, "y");
    accepted.readToEnd();
  }});
  connection = HTTPConnection::start(makePost(peer.url(), "x"), recorder, *loop);
  tests::drive(*loop, *recorder);
  EXPECT_EQ(recorder->events, "RDF");
  EXPECT_EQ(recorder->response.statusCode, 200);
  EXPECT_TRUE(isQuiet());
}

TEST(HTTPAtExit, MayBeUsedByWhatDiesLast) {
  // In a process of its own, a static object's destructor makes a blocking call.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        static const struct Last {
          ~Last() {
            HTTPResponse response;
            std::shared_ptr<const Error> error;
            HTTPConnection::sendSynchronousRequest(makePost("http://127.0.0.1:1/", "x"), response,
                                                   error);
            std::_Exit(error != nullptr && RunLoop::current() != nullptr ? 42 : 1);
          }
        } last;
        HTTPResponse response;
        std::shared_ptr<const Error> error;
        HTTPConnection::sendSynchronousRequest(makePost("http://127.0.0.1:1/", "x"), response,
                                               error);
        std::exit(0);
      },
      testing::ExitedWithCode(42), "");
}

}  // namespace
}  // namespace platen
