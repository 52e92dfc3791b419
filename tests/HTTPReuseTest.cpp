// SPDX-License-Identifier: Apache-2.0
//
// Connections that servers keep alive, and what becomes of them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/HTTPRecorder.h"
#include "tests/support/ScriptedPeer.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::makePost;
using tests::PeerConnection;
using tests::perform;
using tests::ScriptedPeer;

class HTTPReuse : public testing::Test {
 protected:
  std::shared_ptr<RunLoop> loop = RunLoop::makePrivate();
};

/// Answers one request; the connection stays open as long as the script goes on.
void serve(PeerConnection& connection, std::string_view answer) {
  connection.readRequest();
  connection.answer(200, answer);
}

/// Waits until the client's side has seen what the script did last.
void settleDown(RunLoop& loop) { loop.runUntil(RunLoop::Clock::now() + milliseconds(50)); }

TEST_F(HTTPReuse, SendsTheNextRequestOnTheSameConnection) {
  ScriptedPeer peer({[](auto& connection) {
    for (int i = 0; i < 5; ++i) {
      serve(connection, std::to_string(i));
    }
  }});
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, std::to_string(i));
  }
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST_F(HTTPReuse, UsesAConnectionAgainAfterARefusalThatWasAwaited) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(503, "later");
    serve(connection, "now");
  }});
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->response.statusCode, 503);
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "now");
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST_F(HTTPReuse, SendsAStreamOnAFreshConnection) {
  // It could not be sent again, should an old connection prove to be closed.
  ScriptedPeer peer(2, [](auto& connection) {
    serve(connection, "x");
    connection.readToEnd();
  });
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "x");
  EXPECT_EQ(perform(*loop, makePost(peer.url(), InputStream::withData({'x'})))->body, "x");
  EXPECT_EQ(peer.connectionCount(), 2U);
  loop.reset();
}

TEST_F(HTTPReuse, LetsADelegateStartTheNextExchange) {
  ScriptedPeer peer({[](auto& connection) {
    serve(connection, "first");
    serve(connection, "second");
  }});
  const auto second = std::make_shared<tests::HTTPRecorder>();
  std::shared_ptr<HTTPConnection> next;
  const auto first = std::make_shared<tests::HTTPRecorder>();
  first->onEvent = [&](HTTPConnection&) {
    if (first->hasEnded()) {
      next = HTTPConnection::start(makePost(peer.url(), "x"), second, *loop);
    }
  };
  const auto connection = HTTPConnection::start(makePost(peer.url(), "x"), first, *loop);
  tests::drive(*loop, *second);
  EXPECT_EQ(second->body, "second");
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST_F(HTTPReuse, GivesSimultaneousExchangesAConnectionEach) {
  ScriptedPeer peer(3, [](auto& connection) { serve(connection, "x"); });
  std::vector<tests::Recorder> recorders;
  std::vector<std::shared_ptr<HTTPConnection>> connections;
  for (std::size_t i = 0; i < 3; ++i) {
    recorders.push_back(std::make_shared<tests::HTTPRecorder>());
    connections.push_back(HTTPConnection::start(makePost(peer.url(), "x"), recorders[i], *loop));
  }
  for (const auto& recorder : recorders) {
    tests::drive(*loop, *recorder);
    EXPECT_EQ(recorder->events, "RDF");
  }
}

/// What a server does to a connection on which it has served a request, a moment later.
struct Ending {
  const char* name;
  ScriptedPeer::Script act;
};

class HTTPStaleConnection : public testing::TestWithParam<Ending> {};

INSTANTIATE_TEST_SUITE_P(
    Endings, HTTPStaleConnection,
    testing::Values(Ending{"Closed", [](auto& connection) { connection.close(); }},
                    Ending{"HalfClosed",
                           [](auto& connection) {
                             connection.closeSending();
                             connection.leaveOpen();
                           }},
                    Ending{"Reset", [](auto& connection) { connection.reset(); }},
                    Ending{"TimedOutWithAWord",
                           [](auto& connection) {
                             connection.send(
                                 "HTTP/1.1 408 Request Timeout\r\nContent-Length: 0\r\n\r\n");
                             connection.close();
                           }},
                    Ending{"Spoiled",
                           [](auto& connection) {
                             connection.send("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nwrong");
                             connection.leaveOpen();
                           }}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(HTTPStaleConnection, DoesNoHarmWhenItEndedWhileIdle) {
  const auto loop = RunLoop::makePrivate();
  for (const std::size_t size : {1U, 100'000U, 3'000'000U}) {
    ScriptedPeer peer({[](auto& connection) {
                         serve(connection, "first");
                         connection.sleep(milliseconds(15));
                         GetParam().act(connection);
                       },
                       [](auto& connection) { serve(connection, "second"); }});
    EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "first");
    settleDown(*loop);
    const auto recorder = perform(*loop, makePost(peer.url(), std::string(size, 'x')));
    EXPECT_EQ(recorder->body, "second") << size << recorder->text();
  }
}

TEST_P(HTTPStaleConnection, DoesNoHarmToAStreamedBody) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) {
                       serve(connection, "first");
                       GetParam().act(connection);
                     },
                     [](auto& connection) { serve(connection, "second"); }});
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "first");
  const auto stream = InputStream::withData(Data(100'000, 'x'));
  EXPECT_EQ(perform(*loop, makePost(peer.url(), stream))->body, "second");
}

class HTTPClosedOnReuse : public testing::TestWithParam<std::size_t> {};

// Whether the server reads nothing of the second request, or some, or all of it: it says nothing.
INSTANTIATE_TEST_SUITE_P(OctetsRead, HTTPClosedOnReuse,
                         testing::Values(0, 1, 50, 500, 70'000, 1'000'000));

TEST_P(HTTPClosedOnReuse, TriesOnceMoreOnAFreshConnection) {
  const auto loop = RunLoop::makePrivate();
  for (const bool resets : {false, true}) {
    for (const std::size_t size : {1U, 100'000U, 3'000'000U}) {
      ScriptedPeer peer({[&](auto& connection) {
                           serve(connection, "first");
                           connection.readHead();
                           connection.readSome(GetParam());
                           if (resets) {
                             connection.reset();
                           }
                         },
                         [](auto& connection) { serve(connection, "second"); }});
      EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "first");
      if (size > GetParam()) {
        const auto recorder = perform(*loop, makePost(peer.url(), std::string(size, 'x')));
        EXPECT_EQ(recorder->body, "second") << size << resets << recorder->text();
        EXPECT_EQ(peer.connectionCount(), 2U);
      }
    }
  }
}

TEST_F(HTTPReuse, TriesNoMoreOnceTheServerHasSpoken) {
  ScriptedPeer peer({[](auto& connection) {
                       serve(connection, "first");
                       connection.readRequest();
                       connection.send("HTTP/1.1 200 OK\r\n");
                     },
                     [](auto& connection) { serve(connection, "second"); }});
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "first");
  const auto recorder = perform(*loop, makePost(peer.url(), "x"));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost);
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST_F(HTTPReuse, TriesNoMoreOnAFreshConnection) {
  ScriptedPeer peer({[](auto& connection) { connection.readRequest(); },
                     [](auto& connection) { serve(connection, "second"); }});
  const auto recorder = perform(*loop, makePost(peer.url(), "x"));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost);
  EXPECT_EQ(peer.connectionCount(), 1U);
}

TEST_F(HTTPReuse, DoesNotWaitForAServerThatClosesEveryTime) {
  std::vector<ScriptedPeer::Script> scripts(10, [](auto& connection) { serve(connection, "x"); });
  ScriptedPeer peer(scripts);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "x") << i;
  }
}

TEST_F(HTTPReuse, ClosesItsConnectionsWhenTheLoopGoes) {
  std::size_t count = 1;
  ScriptedPeer peer({[&](auto& connection) {
    serve(connection, "x");
    count = connection.readToEnd();
  }});
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "x");
  loop.reset();
  EXPECT_TRUE(peer.waitForScripts());
  EXPECT_EQ(count, 0U);
}

}  // namespace
}  // namespace platen
