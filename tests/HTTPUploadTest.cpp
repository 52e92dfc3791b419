// SPDX-License-Identifier: Apache-2.0
//
// Bodies on their way to the server, and answers that come before they have arrived.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

#include "tests/support/HTTPRecorder.h"
#include "tests/support/ScriptedPeer.h"
#include "tests/support/TrickleStream.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using tests::makePost;
using tests::PeerConnection;
using tests::perform;
using tests::ScriptedPeer;
using tests::TrickleStream;

constexpr std::size_t kLarge = 6'000'000;  // more than any socket buffers

std::string largeText() {
  std::string text(kLarge, ' ');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char>('a' + i * 7 / 5 % 26);
  }
  return text;
}

std::shared_ptr<InputStream> streamOf(std::string_view text) {
  return InputStream::withData(Data(text.begin(), text.end()));
}

std::string bodyOf(const std::string& request) {
  return request.substr(request.find("\r\n\r\n") + 4);
}

/// The same test for a body that is sent whole (false) and for one that is streamed (true).
class HTTPUpload : public testing::TestWithParam<bool> {
 protected:
  static HTTPRequest post(std::string_view url, std::string_view text) {
    return GetParam() ? makePost(url, streamOf(text)) : makePost(url, text);
  }

  std::shared_ptr<RunLoop> loop = RunLoop::makePrivate();
};

INSTANTIATE_TEST_SUITE_P(Body, HTTPUpload, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Streamed" : "Whole"; });

TEST_P(HTTPUpload, ArrivesOctetForOctet) {
  const auto large = largeText();
  for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 131072U, unsigned{kLarge}}) {
    ScriptedPeer peer({[](auto& connection) {
      connection.readRequest();
      connection.answer(200, "thanks");
    }});
    const auto text = large.substr(0, size);
    EXPECT_EQ(perform(*loop, post(peer.url(), text))->events, "RDF") << size;
    EXPECT_TRUE(bodyOf(peer.requests().at(0)) == text) << size;
    const auto framing = std::string(GetParam() ? "Transfer-Encoding: chunked"
                                                : "Content-Length: " + std::to_string(size));
    EXPECT_THAT(peer.requests()[0].substr(0, 300), HasSubstr("\r\n" + framing + "\r\n"));
  }
}

TEST_P(HTTPUpload, IsNeverCutShortByAnEarlySuccess) {
  const auto text = largeText();
  for (const auto* headers : {"", "Connection: close\r\n"}) {
    for (const auto* body : {"", "early"}) {
      for (const bool waits : {false, true}) {
        ScriptedPeer peer({[&](auto& connection) {
          if (waits) {
            connection.readSome(100'000);
          }
          connection.answer(200, body, headers);
          connection.sleep(milliseconds(20));
          const auto got = connection.readToEnd();
          EXPECT_GE(got, kLarge - 200'000);
        }});
        const auto recorder = perform(*loop, post(peer.url(), text));
        EXPECT_THAT(recorder->events, EndsWith("F")) << headers << body << recorder->text();
        EXPECT_EQ(recorder->body, body);
        loop = RunLoop::makePrivate();
        EXPECT_TRUE(peer.waitForScripts());
      }
    }
  }
}

TEST_P(HTTPUpload, FailsWhenTheServerClosesAfterAnEarlySuccess) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readSome(100'000);
    connection.answer(200, "enough");
  }});
  const auto recorder = perform(*loop, post(peer.url(), largeText()));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost) << recorder->text();
}

struct Refusal {
  const char* headers;
  std::size_t bodySize;
  bool resets;
};

TEST_P(HTTPUpload, IsEndedByARefusal) {
  const Refusal refusals[] = {
      {"", 0, false},
      {"", 30, false},
      {"Connection: close\r\n", 0, true},
      {"Connection: close\r\n", 30, true},
      {"Connection: close\r\n", 30, false},
      {"", 30, true},
      {"", 50'000, false},
      {"", 50'000, true},
      {"Connection: close\r\n", 50'000, true},
  };
  const auto text = largeText();
  for (const auto& [headers, bodySize, resets] : refusals) {
    const std::string body(bodySize, 'r');
    ScriptedPeer peer({[&, &headers = headers, &resets = resets](auto& connection) {
      connection.readSome(100'000);
      connection.answer(413, body, headers);
      if (!resets) {
        connection.readToEnd();
      }
    }});
    const auto recorder = perform(*loop, post(peer.url(), text));
    EXPECT_THAT(recorder->events, EndsWith("F")) << headers << bodySize << recorder->text();
    EXPECT_EQ(recorder->response.statusCode, 413);
    EXPECT_EQ(recorder->body.size(), bodySize) << headers << resets;
  }
}

TEST_P(HTTPUpload, IsEndedByARefusalBeforeItBegins) {
  for (const auto* answer :
       {"HTTP/1.1 503 Busy\r\nContent-Length: 4\r\n\r\nbusy", "HTTP/1.0 503 Busy\r\n\r\nbusy",
        "HTTP/1.1 503 Busy\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nbusy\r\n0\r\n\r\n"}) {
    ScriptedPeer peer({[&](auto& connection) { connection.send(answer); }});
    const auto recorder = perform(*loop, post(peer.url(), largeText()));
    EXPECT_EQ(recorder->events, "RDF") << recorder->text();
    EXPECT_EQ(recorder->response.statusCode, 503);
    EXPECT_EQ(recorder->body, "busy");
  }
}

TEST_P(HTTPUpload, KeepsTheOutcomeOfARefusalThatIsCutShort) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readSome(100'000);
    connection.send("HTTP/1.1 401 No\r\nContent-Length: 100\r\n\r\npart");
    connection.sleep(milliseconds(20));
    connection.reset();
  }});
  const auto recorder = perform(*loop, post(peer.url(), largeText()));
  EXPECT_THAT(recorder->events, EndsWith("F")) << recorder->text();
  EXPECT_EQ(recorder->response.statusCode, 401);
  EXPECT_EQ(recorder->body, "part");
}

TEST_P(HTTPUpload, SeesARefusalThatComesInPieces) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readSome(1000);
    for (const char octet : std::string("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 403 No\r\n"
                                        "Content-Length: 2\r\n\r\nno")) {
      connection.send({&octet, 1});
      connection.sleep(milliseconds(1));
    }
    connection.readToEnd();
  }});
  const auto recorder = perform(*loop, post(peer.url(), largeText()));
  EXPECT_EQ(recorder->events, "RDF") << recorder->text();
  EXPECT_EQ(recorder->response.statusCode, 403);
  EXPECT_EQ(recorder->body, "no");
}

TEST_P(HTTPUpload, PassesOverInterimAnswers) {
  ScriptedPeer peer({[](auto& connection) {
    for (int i = 0; i < 5; ++i) {
      connection.readSome(50'000);
      connection.send("HTTP/1.1 102 Processing\r\nX: y\r\n\r\n");
    }
    connection.readSome(kLarge - 300'000);
    connection.answer(200, "done");
    connection.readToEnd();
  }});
  const auto recorder = perform(*loop, post(peer.url(), largeText()));
  EXPECT_EQ(recorder->events, "RDF") << recorder->text();
  EXPECT_EQ(recorder->body, "done");
}

TEST_P(HTTPUpload, FailsOnAnEndlessRowOfInterimAnswers) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readSome(1000);
    for (int i = 0; i < 20'000; ++i) {
      connection.send("HTTP/1.1 102 Processing\r\nX: 0123456789\r\n\r\n");
    }
    connection.readToEnd();
  }});
  const auto recorder = perform(*loop, post(peer.url(), largeText()));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::badServerResponse) << recorder->text();
}

TEST_P(HTTPUpload, FailsOnWhatIsNoHTTP) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readSome(100'000);
    connection.send("220 mail.example ESMTP\r\n");
    connection.readToEnd();
  }});
  const auto recorder = perform(*loop, post(peer.url(), largeText()));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::badServerResponse) << recorder->text();
}

TEST_P(HTTPUpload, FailsWhenTheConnectionIsLost) {
  for (const bool resets : {false, true}) {
    ScriptedPeer peer({[&](auto& connection) {
      connection.readSome(100'000);
      if (resets) {
        connection.reset();
      }
    }});
    const auto recorder = perform(*loop, post(peer.url(), largeText()));
    EXPECT_EQ(recorder->events, "E");
    EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost) << recorder->text();
  }
}

TEST(HTTPStreamedBody, IsFramedOnceWhateverTheCallerSays) {
  const auto loop = RunLoop::makePrivate();
  for (const auto* name : {"Transfer-Encoding", "transfer-encoding", "X-Nothing"}) {
    ScriptedPeer peer({[](auto& connection) {
      connection.readRequest();
      connection.answer(200);
    }});
    HTTPRequest request(tests::parseURL(peer.url()));
    request.method = "POST";
    request.bodyStream = streamOf("document");
    request.body = tests::makeBody("ignored");
    request.setHeader(name, "chunked");
    request.setHeader("Content-Length", "7");
    EXPECT_EQ(perform(*loop, request)->events, "RF");
    const auto sent = peer.requests().at(0);
    EXPECT_THAT(sent, HasSubstr("\r\nTransfer-Encoding: chunked\r\n"));
    EXPECT_THAT(sent, Not(HasSubstr("transfer-encoding")));
    EXPECT_THAT(sent, Not(HasSubstr("Content-Length")));
    EXPECT_THAT(sent, Not(HasSubstr("Expect")));
    EXPECT_THAT(sent, EndsWith("\r\n\r\ndocument"));
  }
}

TEST(HTTPStreamedBody, DoesNotAskForPermission) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(200);
  }});
  EXPECT_EQ(perform(*loop, makePost(peer.url(), streamOf("document")))->events, "RF");
  EXPECT_THAT(peer.requests().at(0), Not(HasSubstr("Expect")));
}

TEST(HTTPStreamedBody, FollowsAStreamThatPauses) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(200, "ok");
  }});
  const auto stream = std::make_shared<TrickleStream>(5, milliseconds(30));
  EXPECT_EQ(perform(*loop, makePost(peer.url(), stream))->body, "ok");
  EXPECT_THAT(peer.requests().at(0), EndsWith("01234"));
  EXPECT_TRUE(stream->wasClosed());
  // Far fewer than a loop that spins would have made.
  EXPECT_LT(stream->questionCount(), 100U);
}

TEST(HTTPStreamedBody, DoesNotSpinWhileTheStreamPauses) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  const auto stream = std::make_shared<TrickleStream>(5, std::chrono::hours(1));
  const auto recorder = std::make_shared<tests::HTTPRecorder>();
  const auto connection = HTTPConnection::start(makePost(peer.url(), stream), recorder, *loop);
  int turns = 0;
  const auto deadline = RunLoop::Clock::now() + milliseconds(500);
  while (RunLoop::Clock::now() < deadline) {
    loop->runOnce(milliseconds(500));
    ++turns;
  }
  EXPECT_LT(turns, 200);
  EXPECT_EQ(recorder->events, "");
}

TEST(HTTPStreamedBody, SeesARefusalWhileTheStreamPauses) {
  const auto loop = RunLoop::makePrivate();
  for (const auto* headers : {"", "Connection: close\r\n"}) {
    for (const auto* body : {"", "no"}) {
      for (const int given : {0, 1}) {
        ScriptedPeer peer({[&](auto& connection) {
          connection.readHead();
          connection.sleep(milliseconds(30));
          connection.answer(403, body, headers);
          connection.readToEnd();
        }});
        const auto stream = std::make_shared<TrickleStream>(5, std::chrono::hours(1), given);
        const auto recorder = perform(*loop, makePost(peer.url(), stream));
        EXPECT_THAT(recorder->events, EndsWith("F")) << headers << recorder->text();
        EXPECT_EQ(recorder->response.statusCode, 403);
        EXPECT_EQ(recorder->body, body);
        EXPECT_TRUE(stream->wasClosed());
      }
    }
  }
}

TEST(HTTPStreamedBody, SeesTheConnectionEndWhileTheStreamPauses) {
  const auto loop = RunLoop::makePrivate();
  for (const bool resets : {false, true}) {
    ScriptedPeer peer({[&](auto& connection) {
      connection.readHead();
      connection.sleep(milliseconds(30));
      if (resets) {
        connection.reset();
      }
    }});
    const auto stream = std::make_shared<TrickleStream>(5, std::chrono::hours(1), 1);
    const auto recorder = perform(*loop, makePost(peer.url(), stream));
    EXPECT_EQ(recorder->code(), HTTPErrorCode::networkConnectionLost) << recorder->text();
  }
}

TEST(HTTPStreamedBody, WaitsForTheStreamAfterAnEarlySuccess) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) {
    const auto head = connection.readHead();
    connection.answer(200, "early", "Connection: close\r\n");
    EXPECT_EQ(connection.readBody(head), "01234");
  }});
  const auto stream = std::make_shared<TrickleStream>(5, milliseconds(20));
  const auto recorder = perform(*loop, makePost(peer.url(), stream));
  EXPECT_EQ(recorder->events, "RDF") << recorder->text();
  EXPECT_TRUE(peer.waitForScripts());
}

TEST(HTTPStreamedBody, ReportsAStreamThatCannotBeOpened) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto&) {}});
  const auto stream = InputStream::withFileAtPath("/nonexistent/document");
  const auto recorder = perform(*loop, makePost(peer.url(), stream));
  EXPECT_EQ(recorder->code(), HTTPErrorCode::bodyStreamFailed);
  ASSERT_NE(recorder->error->underlyingError(), nullptr);
  EXPECT_EQ(recorder->error->underlyingError()->code(), ENOENT);
  EXPECT_EQ(peer.connectionCount(), 0U);
}

TEST(HTTPStreamedBody, ReportsAStreamThatFails) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  const auto stream = std::make_shared<TrickleStream>(5, milliseconds(1), 0, true);
  const auto recorder = perform(*loop, makePost(peer.url(), stream));
  EXPECT_EQ(recorder->events, "E");
  EXPECT_EQ(recorder->code(), HTTPErrorCode::bodyStreamFailed);
  EXPECT_NE(recorder->error->underlyingError(), nullptr);
  EXPECT_TRUE(stream->wasClosed());
}

TEST(HTTPStreamedBody, ComesFromAPipeAsItIsFilled) {
  const auto loop = RunLoop::makePrivate();
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.answer(200, "ok");
  }});
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  std::thread writer([&] {
    for (const char letter : {'a', 'b', 'c'}) {
      std::this_thread::sleep_for(milliseconds(20));
      EXPECT_EQ(write(ends[1], &letter, 1), 1);
    }
    close(ends[1]);
  });
  const auto stream = InputStream::withFileDescriptor(ends[0]);
  EXPECT_EQ(perform(*loop, makePost(peer.url(), stream))->body, "ok");
  writer.join();
  EXPECT_THAT(peer.requests().at(0), EndsWith("\r\n\r\nabc"));
  close(ends[0]);
}

}  // namespace
}  // namespace platen
