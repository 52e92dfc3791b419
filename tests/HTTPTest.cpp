// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platen/HTTP.h"
#include "tests/support/FakeNames.h"
#include "tests/support/HTTPRecorder.h"
#include "tests/support/ScriptedPeer.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using tests::makePost;
using tests::parseURL;
using tests::PeerConnection;
using tests::perform;
using tests::ScriptedPeer;

class HTTP : public testing::Test {
 protected:
  std::shared_ptr<RunLoop> loop = RunLoop::makePrivate();
};

/// A script that reads one request and answers with these octets.
ScriptedPeer::Script answering(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
  };
}

TEST_F(HTTP, SendsAWholeBodyWithItsLength) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(200, "answer", "Content-Type: Application/IPP; x=y\r\n");
  }});
  auto request = makePost(peer.url("/printers/a%20b/?x=y#z"), "question");
  request.setHeader("Content-Type", "application/ipp");
  const auto recorder = perform(*loop, request);
  EXPECT_EQ(recorder->events, "RDF");
  EXPECT_EQ(recorder->response.statusCode, 200);
  EXPECT_EQ(recorder->response.mimeType(), "application/ipp");
  EXPECT_EQ(recorder->body, "answer");
  ASSERT_EQ(peer.requests().size(), 1U);
  const auto sent = peer.requests()[0];
  EXPECT_THAT(sent, StartsWith("POST /printers/a%20b/?x=y HTTP/1.1\r\n"));
  EXPECT_THAT(sent, HasSubstr("\r\nContent-Type: application/ipp\r\n"));
  EXPECT_THAT(sent, HasSubstr("\r\nContent-Length: 8\r\n"));
  EXPECT_THAT(sent, HasSubstr("\r\nHost: 127.0.0.1:" + std::to_string(peer.port()) + "\r\n"));
  EXPECT_THAT(sent, testing::EndsWith("\r\n\r\nquestion"));
}

TEST_F(HTTP, SendsNothingThatWasNotAskedFor) {
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  perform(*loop, makePost(peer.url("/", "user:secret@127.0.0.1"), std::string(2'000'000, 'x')));
  const auto sent = peer.requests().at(0);
  const auto head = sent.substr(0, sent.find("\r\n\r\n") + 4);
  for (const auto* field : {"Expect", "Authorization", "Cookie", "Accept-Encoding", "Content-Type",
                            "Transfer-Encoding", "Proxy"}) {
    EXPECT_THAT(head, Not(HasSubstr(field)));
  }
  EXPECT_EQ(sent.size() - head.size(), 2'000'000U);
}

TEST_F(HTTP, LetsTheCallerOverrideNeitherLengthNorFraming) {
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  auto request = makePost(peer.url(), "four");
  request.setHeader("Content-Length", "400");
  request.setHeader("Transfer-Encoding", "chunked");
  request.setHeader("Expect", "100-continue");
  request.setHeader("X-Empty", "");
  EXPECT_EQ(perform(*loop, request)->events, "RF");
  const auto sent = peer.requests().at(0);
  EXPECT_THAT(sent, HasSubstr("\r\nContent-Length: 4\r\n"));
  EXPECT_THAT(sent, Not(HasSubstr("400")));
  EXPECT_THAT(sent, Not(HasSubstr("chunked")));
  EXPECT_THAT(sent, Not(HasSubstr("Expect")));
  EXPECT_THAT(sent, HasSubstr("\r\nX-Empty:\r\n"));
}

TEST_F(HTTP, SendsOtherMethods) {
  for (const auto* method : {"GET", "HEAD", "PUT", "DELETE"}) {
    ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
    HTTPRequest request(parseURL(peer.url()));
    request.method = method;
    EXPECT_EQ(perform(*loop, request)->events, "RF") << method;
    EXPECT_THAT(peer.requests().at(0), StartsWith(std::string(method) + " / HTTP/1.1\r\n"));
  }
}

struct Answer {
  const char* octets;
  const char* events;
  int status;
  const char* body;
};

TEST_F(HTTP, ReadsAnswersInEveryFraming) {
  const Answer answers[] = {
      {"HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc", "RDF", 200, "abc"},
      {"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", "RF", 200, ""},
      {"HTTP/1.1 200 OK\r\n\r\nuntil the end", "RDF", 200, "until the end"},
      {"HTTP/1.0 200 OK\r\n\r\nold", "RDF", 200, "old"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n1;x=y\r\nc\r\n0\r\n\r\n",
       "RDF", 200, "abc"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\na\r\n0\r\nX: trailer\r\n\r\n",
       "RDF", 200, "a"},
      {"HTTP/1.1 204 No Content\r\n\r\n", "RF", 204, ""},
      {"HTTP/1.1 304 Not Modified\r\nContent-Length: 7\r\n\r\n", "RF", 304, ""},
      {"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\na", "RDF", 200,
       "a"},
      {"HTTP/1.1 100 \r\nX: y\r\n\r\nHTTP/1.1 102 Processing\r\n\r\nHTTP/1.1 200 OK\r\n"
       "Content-Length: 1\r\n\r\na",
       "RDF", 200, "a"},
      {"HTTP/1.1 200 OK\nContent-Length: 1\n\na", "RDF", 200, "a"},
      {"HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=x\r\nContent-Length: 1\r\n\r\na", "RDF",
       401, "a"},
      {"HTTP/1.1 426 Upgrade\r\nUpgrade: TLS/1.0\r\nContent-Length: 0\r\n\r\n", "RF", 426, ""},
      {"HTTP/1.1 500 Oh\r\nContent-Length: 2\r\n\r\nno", "RDF", 500, "no"},
  };
  for (const auto& [octets, events, status, body] : answers) {
    ScriptedPeer peer({answering(octets)});
    const auto recorder = perform(*loop, makePost(peer.url(), "x"));
    EXPECT_EQ(recorder->events, events) << octets;
    EXPECT_EQ(recorder->response.statusCode, status) << octets;
    EXPECT_EQ(recorder->body, body) << octets;
    EXPECT_EQ(recorder->response.header("x"), std::nullopt) << octets;
  }
}

TEST_F(HTTP, ReadsAnAnswerThatComesInPieces) {
  const std::string answer =
      "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
      "3\r\nabc\r\n0\r\n\r\n";
  ScriptedPeer peer({[&](auto& connection) {
    connection.readRequest();
    for (const char octet : answer) {
      connection.send({&octet, 1});
      connection.sleep(milliseconds(1));
    }
  }});
  const auto recorder = perform(*loop, makePost(peer.url(), "x"));
  EXPECT_EQ(recorder->events, "RDF");
  EXPECT_EQ(recorder->body, "abc");
}

TEST_F(HTTP, FailsWhenTheAnswerIsCutShortAnywhere) {
  const std::string answer = "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc";
  for (std::size_t length = 0; length < answer.size(); ++length) {
    ScriptedPeer peer({answering(answer.substr(0, length))});
    const auto recorder = perform(*loop, makePost(peer.url(), "x"));
    EXPECT_TRUE(recorder->events.ends_with('E')) << length << recorder->events;
    EXPECT_EQ(recorder->events.starts_with('R'), length >= answer.size() - 3) << length;
    EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost) << length;
  }
}

TEST_F(HTTP, RefusesWhatIsNoHTTP) {
  const char* const answers[] = {
      "SSH-2.0-OpenSSH_9.2\r\n",
      "<html>an answer of HTTP/0.9</html>",
      "\0\0\0\0\0\0\0\0\0\0",
      "HTTP/1.1 OK\r\n\r\n",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nno length\r\n",
      "HTTP/1.1 200 OK\r\nContent-Length: -7\r\n\r\nabc",
  };
  for (const auto* octets : answers) {
    ScriptedPeer peer({answering(std::string(octets, octets[0] == 0 ? 10 : strlen(octets)))});
    const auto recorder = perform(*loop, makePost(peer.url(), "x"));
    EXPECT_EQ(recorder->code(), HTTPErrorCode::badServerResponse) << octets << recorder->text();
    EXPECT_THAT(recorder->text(), HasSubstr("127.0.0.1:" + std::to_string(peer.port())));
  }
}

TEST_F(HTTP, BoundsTheHead) {
  const std::string field = "X: " + std::string(1000, 'y') + "\r\n";
  std::string manyFields = "HTTP/1.1 200 OK\r\n";
  std::string manyHeads;
  for (int i = 0; i < 400; ++i) {
    manyFields += field;
    manyHeads.append("HTTP/1.1 100 Continue\r\n").append(field).append("\r\n");
  }
  const std::string longLine = "HTTP/1.1 200 OK\r\nX: " + std::string(400'000, 'y');
  for (const auto& octets : {manyFields, manyHeads, longLine}) {
    ScriptedPeer peer({answering(octets + "\r\n")});
    const auto recorder = perform(*loop, makePost(peer.url(), "x"));
    EXPECT_EQ(recorder->events, "E");
    EXPECT_EQ(recorder->code(), HTTPErrorCode::badServerResponse) << recorder->text();
  }
}

TEST_F(HTTP, BoundsTheBody) {
  const char* const answers[] = {
      "HTTP/1.1 200 OK\r\nContent-Length: 11\r\n\r\n0123456789a",
      "HTTP/1.1 200 OK\r\n\r\n0123456789a",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nb\r\n0123456789a\r\n0\r\n\r\n",
  };
  for (const auto* octets : answers) {
    for (const std::size_t limit : {std::size_t{0}, std::size_t{10}, std::size_t{11},
                                    std::numeric_limits<std::size_t>::max()}) {
      ScriptedPeer peer({answering(octets)});
      auto request = makePost(peer.url(), "x");
      request.maximumBodyLength = limit;
      const auto recorder = perform(*loop, request);
      EXPECT_EQ(recorder->events.ends_with('F'), limit >= 11) << octets << limit;
      if (limit < 11) {
        EXPECT_EQ(recorder->code(), HTTPErrorCode::dataLengthExceedsMaximum);
        EXPECT_THAT(recorder->text(),
                    HasSubstr("is too long (more than " + std::to_string(limit) + " octets)"));
      }
    }
  }
}

TEST_F(HTTP, FollowsNoRedirect) {
  ScriptedPeer other({answering("HTTP/1.1 200 OK\r\n\r\n")});
  ScriptedPeer peer({answering("HTTP/1.1 302 Found\r\nLocation: " + other.url() +
                               "\r\nContent-Length: 0\r\n\r\n")});
  const auto recorder = perform(*loop, makePost(peer.url(), "x"));
  EXPECT_EQ(recorder->events, "RF");
  EXPECT_EQ(recorder->response.statusCode, 302);
  EXPECT_EQ(recorder->response.header("location"), other.url());
  EXPECT_EQ(other.connectionCount(), 0U);
}

TEST_F(HTTP, GoesByNoEnvironmentVariable) {
  ScriptedPeer proxy({answering("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nproxy")});
  for (const auto* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
    setenv(name, proxy.url().c_str(), 1);
  }
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\npeer")});
  EXPECT_EQ(perform(*loop, makePost(peer.url(), "x"))->body, "peer");
  for (const auto* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
    unsetenv(name);
  }
  EXPECT_EQ(proxy.connectionCount(), 0U);
}

TEST_F(HTTP, SaysWhatIsWrongWithARequest) {
  struct Case {
    const char* url;
    HTTPErrorCode code;
    const char* text;
  };
  const Case cases[] = {
      {"https://printer/", HTTPErrorCode::unsupportedURL,
       "the scheme of \"https://printer/\" is not http"},
      {"file:///etc/passwd", HTTPErrorCode::unsupportedURL,
       "the scheme of \"file:///etc/passwd\" is not http"},
      {"/ipp/print", HTTPErrorCode::unsupportedURL, "the scheme of \"/ipp/print\" is not http"},
      {"http:///x", HTTPErrorCode::badURL, "there is no host in \"http:///x\""},
      {"http:x", HTTPErrorCode::badURL, "there is no host in \"http:x\""},
      {"http://a%20b/", HTTPErrorCode::cannotFindHost,
       "could not resolve the host name \"a%20b\" (not a host name)"},
  };
  for (const auto& [url, code, text] : cases) {
    const auto recorder = perform(*loop, makePost(url, "x"));
    EXPECT_EQ(recorder->events, "E") << url;
    EXPECT_EQ(recorder->code(), code) << url;
    EXPECT_EQ(recorder->text(), text);
    EXPECT_EQ(recorder->error->domain(), kHTTPClientErrorDomain);
  }
}

TEST_F(HTTP, LetsNoHeaderFieldCarryAnother) {
  for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
           {"X", "y\r\nZ: z"}, {"X\r\nZ", "z"}, {"", "z"}, {"X Y", "z"}, {"X", {"\0", 1}}}) {
    auto request = makePost("http://127.0.0.1:9/", "x");
    request.headers.emplace_back(name, value);
    EXPECT_EQ(perform(*loop, request)->code(), HTTPErrorCode::unknown) << name;
  }
  auto request = makePost("http://127.0.0.1:9/", "x");
  request.method = "GET / HTTP/1.1\r\nX: y\r\n\r\nPOST";
  EXPECT_EQ(perform(*loop, request)->code(), HTTPErrorCode::unknown);
}

TEST_F(HTTP, SaysWhenNobodyListens) {
  std::string url;
  std::string authority;
  {
    const ScriptedPeer gone(std::vector<ScriptedPeer::Script>{});
    url = gone.url("/", "localhost");
    authority = "localhost:" + std::to_string(gone.port());
  }
  const auto recorder = perform(*loop, makePost(url, "x"));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::cannotConnectToHost);
  EXPECT_EQ(recorder->text(), "could not connect to " + authority + " (Connection refused)");
}

TEST_F(HTTP, SaysWhenAServerClosesWithoutAWord) {
  ScriptedPeer peer({answering("")});
  const auto recorder = perform(*loop, makePost(peer.url(), "x"));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost);
  EXPECT_EQ(recorder->text(), "the connection to 127.0.0.1:" + std::to_string(peer.port()) +
                                  " was lost (Empty reply from server)");
}

TEST_F(HTTP, ResolvesNamesByTheSystem) {
  tests::FakeNames names;
  // The first address is one that nobody listens on.
  names.set("printer.test", {"::1", "127.0.0.1"});
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok")});
  const auto recorder = perform(*loop, makePost(peer.url("/", "Printer.test"), "x"));
  EXPECT_EQ(recorder->events, "E") << "names are passed on as written";
  names.set("Printer.test", {"::1", "127.0.0.1"});
  EXPECT_EQ(perform(*loop, makePost(peer.url("/", "Printer.test"), "x"))->body, "ok");
  EXPECT_THAT(peer.requests().at(0),
              HasSubstr("\r\nHost: Printer.test:" + std::to_string(peer.port()) + "\r\n"));
}

TEST_F(HTTP, AsksForANameEveryTime) {
  tests::FakeNames names;
  names.set("printer.test", {"127.0.0.2"});
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok")});
  const auto url = peer.url("/", "printer.test");
  EXPECT_EQ(perform(*loop, makePost(url, "x"))->code(), HTTPErrorCode::cannotConnectToHost);
  names.set("printer.test", {"127.0.0.1"});
  EXPECT_EQ(perform(*loop, makePost(url, "x"))->body, "ok");
  EXPECT_EQ(names.callCount(), 2U);
}

TEST_F(HTTP, ResolvesANameWithATrailingDot) {
  tests::FakeNames names;
  names.set("printer.test", {"127.0.0.1"});
  names.set("printer.test.", {"127.0.0.1"});
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok")});
  const auto recorder = perform(*loop, makePost(peer.url("/", "printer.test."), "x"));
  EXPECT_EQ(recorder->body, "ok") << recorder->text();
}

TEST_F(HTTP, SaysWhichNameDoesNotExist) {
  const tests::FakeNames names;
  const auto recorder = perform(*loop, makePost("http://nonesuch.test/", "x"));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::cannotFindHost);
  EXPECT_EQ(recorder->text(),
            "could not resolve the host name \"nonesuch.test\" (unknown node or service)");
}

TEST_F(HTTP, ResolvesNeitherAddressesNorLocalhost) {
  const tests::FakeNames names;
  for (const auto* host : {"127.0.0.1", "localhost", "LOCALHOST"}) {
    ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok")});
    EXPECT_EQ(perform(*loop, makePost(peer.url("/", host), "x"))->body, "ok") << host;
  }
  for (const auto* url : {"http://[::1]:1/", "http://[fe80::1%25lo]:1/", "http://[::1%25lo]:1/"}) {
    EXPECT_EQ(perform(*loop, makePost(url, "x"))->code(), HTTPErrorCode::cannotConnectToHost);
  }
  EXPECT_EQ(names.callCount(), 0U);
}

TEST(HTTPBlocking, ReturnsTheBodyAndTheHead) {
  ScriptedPeer peer({answering("HTTP/1.1 404 Not Found\r\nX: y\r\nContent-Length: 4\r\n\r\nbody"),
                     answering("HTTP/1.1 204 No Content\r\n\r\n")});
  HTTPResponse response;
  std::shared_ptr<const Error> error;
  const auto request = makePost(peer.url(), "x");
  const auto body = HTTPConnection::sendSynchronousRequest(request, response, error);
  ASSERT_TRUE(body.has_value());
  EXPECT_EQ(std::string(body->begin(), body->end()), "body");
  EXPECT_EQ(response.statusCode, 404);
  EXPECT_EQ(response.header("x"), "y");
  EXPECT_EQ(HTTPConnection::sendSynchronousRequest(request, response, error), Data());
  EXPECT_EQ(response.statusCode, 204);
  EXPECT_EQ(error, nullptr);
}

TEST(HTTPBlocking, SetsTheError) {
  ScriptedPeer peer({answering("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nbod")});
  HTTPResponse response;
  std::shared_ptr<const Error> error;
  EXPECT_EQ(HTTPConnection::sendSynchronousRequest(makePost(peer.url(), "x"), response, error),
            std::nullopt);
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(error->code(), static_cast<int>(HTTPErrorCode::networkConnectionLost));
  EXPECT_EQ(response.statusCode, 0);
}

TEST(HTTPBlocking, TouchesNothingOfTheCallersLoop) {
  const auto loop = RunLoop::current();
  ScriptedPeer peer({answering("HTTP/1.1 204 No Content\r\n\r\n")});
  bool wasCalled = false;
  struct Watcher final : HTTPConnectionDelegate {
    explicit Watcher(bool& flag) : wasCalled(flag) {}
    void connectionDidFailWithError(HTTPConnection&, std::shared_ptr<const Error>) override {
      wasCalled = true;
    }
    bool& wasCalled;
  };
  const auto pending =
      HTTPConnection::start(makePost("http:///", "x"), std::make_shared<Watcher>(wasCalled), *loop);
  HTTPResponse response;
  std::shared_ptr<const Error> error;
  EXPECT_TRUE(HTTPConnection::sendSynchronousRequest(makePost(peer.url(), "x"), response, error));
  EXPECT_FALSE(wasCalled);
  EXPECT_TRUE(loop->runOnce(milliseconds(0)));
  EXPECT_TRUE(wasCalled);
}

TEST(HTTPBlocking, WorksOnSeveralThreadsAtOnce) {
  constexpr std::size_t kThreads = 6;
  constexpr int kRequests = 20;
  ScriptedPeer peer(kThreads, [](auto& connection) {
    for (int i = 0; i < kRequests; ++i) {
      const auto request = connection.readRequest();
      connection.answer(200, request.substr(request.find("\r\n\r\n") + 4));
    }
  });
  std::vector<std::thread> threads;
  for (std::size_t number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      for (int i = 0; i < kRequests; ++i) {
        const auto text = std::to_string(number) + "/" + std::to_string(i);
        HTTPResponse response;
        std::shared_ptr<const Error> error;
        const auto body =
            HTTPConnection::sendSynchronousRequest(makePost(peer.url(), text), response, error);
        ASSERT_TRUE(body.has_value()) << error->description();
        EXPECT_EQ(std::string(body->begin(), body->end()), text);
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  // Each thread has used one connection for all of its requests.
  EXPECT_EQ(peer.connectionCount(), kThreads);
}

TEST(HTTPBlocking, MayBeCalledFromWithinABlockingCall) {
  /// A document that asks a server before it gives its octets.
  class AskingStream final : public InputStream {
   public:
    explicit AskingStream(std::string url) : url_(std::move(url)) {}
    void open() override {}
    void close() override {}
    [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
    [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
    [[nodiscard]] bool hasBytesAvailable() const override { return true; }
    std::ptrdiff_t read(std::uint8_t* destination, std::size_t) override {
      if (std::exchange(hasAsked_, true)) {
        return 0;
      }
      HTTPResponse response;
      std::shared_ptr<const Error> error;
      const auto body =
          HTTPConnection::sendSynchronousRequest(makePost(url_, "inner"), response, error);
      std::copy(body->begin(), body->end(), destination);
      return static_cast<std::ptrdiff_t>(body->size());
    }

   private:
    std::string url_;
    bool hasAsked_ = false;
  };
  ScriptedPeer inner({answering("HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\ndocument")});
  ScriptedPeer outer({answering("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok")});
  HTTPResponse response;
  std::shared_ptr<const Error> error;
  const auto request = makePost(outer.url(), std::make_shared<AskingStream>(inner.url()));
  EXPECT_TRUE(HTTPConnection::sendSynchronousRequest(request, response, error));
  EXPECT_THAT(outer.requests().at(0), testing::EndsWith("document"));
}

}  // namespace
}  // namespace platen
