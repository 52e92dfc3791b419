// SPDX-License-Identifier: Apache-2.0
//
// Idle time: what counts as waiting for the network, and what does not.

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "platform/HTTPIdleClock.h"
#include "tests/support/FakeNames.h"
#include "tests/support/HTTPRecorder.h"
#include "tests/support/ScriptedPeer.h"
#include "tests/support/TrickleStream.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::makePost;
using tests::perform;
using tests::ScriptedPeer;

// Bounds what takes no time, on a machine that has other things to do, too.
constexpr milliseconds kSoon(5000);

class HTTPTimeout : public testing::Test {
 protected:
  static HTTPRequest limited(HTTPRequest request, double seconds = 0.3) {
    request.timeoutInterval = seconds;
    return request;
  }
  static std::string authority(const ScriptedPeer& peer) {
    return "127.0.0.1:" + std::to_string(peer.port());
  }
  [[nodiscard]] milliseconds elapsed() const {
    return std::chrono::duration_cast<milliseconds>(RunLoop::Clock::now() - begin_);
  }

  std::shared_ptr<RunLoop> loop = RunLoop::makePrivate();

 private:
  RunLoop::Clock::time_point begin_ = RunLoop::Clock::now();
};

/// An address at which connections neither succeed nor fail: a listener whose queue is full.
class Blackhole {
 public:
  Blackhole() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    sockets_.push_back(socket(AF_INET, SOCK_STREAM, 0));
    EXPECT_EQ(bind(sockets_[0], generic, length), 0);
    EXPECT_EQ(listen(sockets_[0], 0), 0);
    EXPECT_EQ(getsockname(sockets_[0], generic, &length), 0);
    port_ = ntohs(address.sin_port);
    for (int i = 0; i < 4; ++i) {
      sockets_.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
      connect(sockets_.back(), generic, length);
    }
  }
  Blackhole(const Blackhole&) = delete;
  Blackhole& operator=(const Blackhole&) = delete;
  ~Blackhole() {
    for (const int socket : sockets_) {
      close(socket);
    }
  }
  [[nodiscard]] std::string authority() const { return "127.0.0.1:" + std::to_string(port_); }

 private:
  std::vector<int> sockets_;
  int port_ = 0;
};

TEST_F(HTTPTimeout, EndsAnExchangeThatGetsNoAnswer) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  const auto recorder = perform(*loop, limited(makePost(peer.url(), "x")));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut);
  EXPECT_EQ(recorder->text(), "no answer from " + authority(peer) + " for 0.3 seconds");
  EXPECT_GE(elapsed(), milliseconds(290));
  EXPECT_LT(elapsed(), kSoon);
}

TEST_F(HTTPTimeout, EndsABlockingCall) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  HTTPResponse response;
  std::shared_ptr<const Error> error;
  const auto request = limited(makePost(peer.url(), "x"));
  EXPECT_FALSE(HTTPConnection::sendSynchronousRequest(request, response, error));
  EXPECT_EQ(error->code(), static_cast<int>(HTTPErrorCode::timedOut));
  EXPECT_LT(elapsed(), kSoon);
}

TEST_F(HTTPTimeout, EndsAnAnswerThatStalls) {
  const char* const parts[] = {"HTTP/1.1 2", "HTTP/1.1 200 OK\r\n",
                               "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc"};
  for (const auto* part : parts) {
    ScriptedPeer peer({[&](auto& connection) {
      connection.readRequest();
      connection.send(part);
      connection.readToEnd();
    }});
    const auto recorder = perform(*loop, limited(makePost(peer.url(), "x")));
    EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut) << part;
  }
}

TEST_F(HTTPTimeout, EndsAnUploadThatStalls) {
  ScriptedPeer peer({[](auto& connection) { connection.sleep(std::chrono::seconds(10)); }});
  const auto recorder = perform(*loop, limited(makePost(peer.url(), std::string(20'000'000, 'x'))));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut);
  EXPECT_LT(elapsed(), kSoon);
}

TEST_F(HTTPTimeout, EndsWhatCannotBeConnected) {
  const Blackhole blackhole;
  const auto recorder =
      perform(*loop, limited(makePost("http://" + blackhole.authority() + "/", "x")));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut);
  EXPECT_EQ(recorder->text(),
            "could not connect to " + blackhole.authority() + " within 0.3 seconds");
  EXPECT_LT(elapsed(), kSoon);
}

TEST_F(HTTPTimeout, EndsWhatCannotBeResolved) {
  tests::FakeNames names;
  names.block("stuck.test");
  const auto recorder = perform(*loop, limited(makePost("http://stuck.test:631/", "x")));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut);
  EXPECT_EQ(recorder->text(), "could not resolve the host of stuck.test:631 within 0.3 seconds");
  EXPECT_LT(elapsed(), kSoon);
  loop.reset();
  EXPECT_LT(elapsed(), kSoon) << "letting go of the loop waits for nobody";
}

TEST_F(HTTPTimeout, LeavesASlowAnswerAlone) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 25\r\n\r\n");
    for (int i = 0; i < 25; ++i) {
      connection.sleep(milliseconds(100));
      connection.send("x");
    }
  }});
  const auto recorder = perform(*loop, limited(makePost(peer.url(), "x"), 1));
  EXPECT_EQ(recorder->body, std::string(25, 'x')) << recorder->text();
  EXPECT_GT(elapsed(), milliseconds(2400));
}

TEST_F(HTTPTimeout, LeavesASlowUploadAlone) {
  constexpr std::size_t kSize = 12'000'000;
  ScriptedPeer peer({[](auto& connection) {
    // 200 kB every 40 ms: the client's system buffers some megabytes, so that for most of the time
    // the client has nothing to write or to read.
    const int small = 65536;
    setsockopt(connection.socket(), SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
    for (std::size_t i = 0; i < kSize / 200'000; ++i) {
      connection.readSome(200'000);
      connection.sleep(milliseconds(40));
    }
    connection.readSome(50);  // what the head has added
    connection.answer(200, "done");
  }});
  const auto recorder = perform(*loop, limited(makePost(peer.url(), std::string(kSize, 'x')), 1));
  EXPECT_EQ(recorder->body, "done") << recorder->text();
  EXPECT_GT(elapsed(), milliseconds(2300));
}

TEST_F(HTTPTimeout, DoesNotCountTheCallersPauses) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(200, "done");
  }});
  const auto stream = std::make_shared<tests::TrickleStream>(3, milliseconds(500));
  const auto recorder = perform(*loop, limited(makePost(peer.url(), stream)));
  EXPECT_EQ(recorder->body, "done") << recorder->text();
  EXPECT_GT(elapsed(), milliseconds(1500));
}

TEST_F(HTTPTimeout, CountsOnceTheCallersPausesAreOver) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  const auto stream = std::make_shared<tests::TrickleStream>(1, milliseconds(400));
  const auto recorder = perform(*loop, limited(makePost(peer.url(), stream)));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut);
  EXPECT_GT(elapsed(), milliseconds(1000));
}

TEST_F(HTTPTimeout, SeesWhatCameWhileNobodyRanTheLoop) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(200, "done");
    connection.leaveOpen();
  }});
  const auto recorder = std::make_shared<tests::HTTPRecorder>();
  const auto connection =
      HTTPConnection::start(limited(makePost(peer.url(), "x")), recorder, *loop);
  while (peer.requests().empty()) {
    loop->runOnce(milliseconds(1));
  }
  EXPECT_TRUE(peer.waitForScripts());
  std::this_thread::sleep_for(milliseconds(600));
  tests::drive(*loop, *recorder);
  EXPECT_EQ(recorder->body, "done") << recorder->text();
}

TEST_F(HTTPTimeout, KeepsARefusalThatStalls) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readSome(1000);
    connection.send("HTTP/1.1 413 No\r\nContent-Length: 9\r\n\r\nabc");
    connection.readToEnd();
  }});
  const auto recorder = perform(*loop, limited(makePost(peer.url(), std::string(20'000'000, 'x'))));
  EXPECT_EQ(recorder->events, "RDF") << recorder->text();
  EXPECT_EQ(recorder->response.statusCode, 413);
}

TEST_F(HTTPTimeout, IsNoneForNonsense) {
  for (const double interval : {0.0, -1.0, std::nan("")}) {
    const HTTPIdleClock clock(
        *loop, interval, [] { return 0; }, [] { FAIL(); });
    EXPECT_EQ(clock.limit(), milliseconds(0));
    EXPECT_FALSE(loop->runOnce(milliseconds(10)));
  }
}

TEST_F(HTTPTimeout, BoundsWhatIsTooLong) {
  for (const double interval :
       {1e300, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::max()}) {
    loop = RunLoop::makePrivate();
    const HTTPIdleClock clock(
        *loop, interval, [] { return 0; }, [] { FAIL(); });
    EXPECT_GT(clock.limit(), std::chrono::hours(24 * 365));
    EXPECT_FALSE(loop->runOnce(milliseconds(5)));
    ScriptedPeer peer({[](auto& connection) {
      connection.readRequest();
      connection.answer(200, "done");
    }});
    EXPECT_EQ(perform(*loop, limited(makePost(peer.url(), "x"), interval))->body, "done");
  }
}

TEST_F(HTTPTimeout, MayBeTiny) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  const auto recorder = perform(*loop, limited(makePost(peer.url(), "x"), 1e-9));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::timedOut);
}

}  // namespace
}  // namespace platen
