// SPDX-License-Identifier: Apache-2.0
//
// Peers that do what no server should, at each point of an exchange: it ends in an error record or
// in an answer, the idle time-out at the latest, and leaves nothing behind.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/HostilePeer.h"

namespace platen::tests {
namespace {

using std::chrono::milliseconds;

// For what is to come to an answer, on a machine that has other things to do, too.
constexpr milliseconds kPatient(2000);

/// The points of an answer at which a peer may leave off.
std::vector<std::pair<const char*, std::string>> cutAnswers() {
  const auto answer = makeAnswer();
  const auto half = answer.substr(0, answer.size() / 2);
  return {
      {"nothing", ""},
      {"within the status line", "HTTP/1.1 20"},
      {"after the status line", "HTTP/1.1 200 OK\r\n"},
      {"within a field", "HTTP/1.1 200 OK\r\nContent-Le"},
      {"before the empty line", "HTTP/1.1 200 OK\r\nContent-Length: 80\r\n"},
      {"after the head", withLength(answer.size(), "")},
      {"within the body", withLength(answer.size(), half)},
      {"before the last octet", withLength(answer.size(), answer.substr(0, answer.size() - 1))},
      {"after a chunked head", chunked("")},
      {"within a chunk's length", chunked("1")},
      {"within a chunk", chunked("100\r\nabc")},
      {"after a chunk", chunked(chunkOf(half))},
      {"before the last chunk", chunked(chunkOf(answer))},
      {"within the last chunk", chunked(chunkOf(answer) + "0\r\n")},
      {"within a trailer", chunked(chunkOf(answer) + "0\r\nX: y")},
      {"after 100 Continue", "HTTP/1.1 100 Continue\r\n\r\n"},
  };
}

/// Each for a request alone (false) and for one with a document (true).
class HostilePeer : public WithHostilePeers, public testing::WithParamInterface<bool> {
 protected:
  [[nodiscard]] static bool isStreamed() { return GetParam(); }

  void SetUp() override {
    if (isStreamed()) {
      makeDocument = [] { return streamOf("the document"); };
    }
    WithHostilePeers::SetUp();
  }
};

INSTANTIATE_TEST_SUITE_P(Request, HostilePeer, testing::Bool(), [](const auto& tested) {
  return tested.param ? "WithADocument" : "Alone";
});

TEST_P(HostilePeer, StallsAtAnyPointOfTheAnswer) {
  for (const auto& [name, octets] : cutAnswers()) {
    expectEnd({name, sayingThenStalling(octets), kTimedOut});
  }
}

TEST_P(HostilePeer, ClosesAtAnyPointOfTheAnswer) {
  for (const auto& [name, octets] : cutAnswers()) {
    expectEnd({name, sayingThenClosing(octets), kLost});
  }
}

TEST_P(HostilePeer, ResetsAtAnyPointOfTheAnswer) {
  for (const auto& [name, octets] : cutAnswers()) {
    expectEnd({name, sayingThenResetting(octets), kLost});
  }
}

TEST_P(HostilePeer, LeavesOffBeforeItHasReadTheRequest) {
  expectEnd({"stalls at once", [](auto& connection) { connection.sleep(milliseconds(10'000)); },
             kTimedOut});
  expectEnd({"closes at once", [](auto&) {}, kLost});
  expectEnd({"resets at once", [](auto& connection) { connection.reset(); }, kNotConnectedOrLost});
  expectEnd({"stalls after the head",
             [](auto& connection) {
               connection.readHead();
               connection.sleep(milliseconds(10'000));
             },
             kTimedOut});
  expectEnd({"closes after the head", [](auto& connection) { connection.readHead(); }, kLost});
  expectEnd({"resets within the head",
             [](auto& connection) {
               connection.readSome(10);
               connection.reset();
             },
             kLost});
  expectEnd({"sends no more but reads on",
             [](auto& connection) {
               connection.readRequest();
               connection.closeSending();
               stall(connection);
             },
             kLost});
}

TEST_P(HostilePeer, LeavesOffWithinALargeDocument) {
  makeDocument = [isStreamed = isStreamed()] {
    return isStreamed ? streamOf(std::string(20'000'000, 'x')) : nullptr;
  };
  expectEnd({"stalls",
             [](auto& connection) {
               connection.readSome(100'000);
               connection.sleep(milliseconds(10'000));
             },
             kTimedOut});
  const std::size_t some = isStreamed() ? 100'000 : 10;
  expectEnd({"closes", [some](auto& connection) { connection.readSome(some); }, kLost});
  expectEnd({"resets",
             [some](auto& connection) {
               connection.readSome(some);
               connection.reset();
             },
             kLost});
}

TEST_P(HostilePeer, IsNeverAccepted) {
  // The system takes the connection and the request; nobody ever reads them.
  const Hostility hostility{"never accepted", nullptr, kTimedOut};
  const ScriptedPeer peer(std::vector<ScriptedPeer::Script>{});
  onOwnThread([&] { expectEnd(hostility, peer); });
}

TEST_P(HostilePeer, DribblesOneOctetAtATime) {
  expectEnd(
      {"and then stalls", dribbling("HTTP/1.1 200 OK\r\nX: yyyy", milliseconds(4)), kTimedOut});
  // Which takes longer than the time-out, but there is always something moving.
  timeOut = kPatient;
  const auto answer = makeAnswer();
  const auto pause = timeOut * 5 / 4 / answer.size();
  expectEnd({"with a length", dribbling(withLength(answer.size(), answer), pause), kAnswered});
  expectEnd({"in chunks of one octet",
             [&](auto& connection) {
               connection.readRequest();
               connection.send(chunked(""));
               for (const char octet : answer) {
                 connection.send(chunkOf({&octet, 1}));
                 connection.sleep(pause);
               }
               connection.send("0\r\n\r\n");
             },
             kAnswered});
}

TEST_P(HostilePeer, ReadsOneOctetAtATime) {
  timeOut = kPatient;
  expectEnd({"and answers",
             [](auto& connection) {
               for (int i = 0; i < 40; ++i) {
                 connection.readSome(1);
                 connection.sleep(milliseconds(1));
               }
               connection.answer(200, makeAnswer(), "Connection: close\r\n");
               connection.closeSending();
               stall(connection);
             },
             kAnswered});
}

TEST_P(HostilePeer, LiesAboutTheLength) {
  const auto answer = makeAnswer();
  expectEnd(
      {"too long, closes", sayingThenClosing(withLength(answer.size() + 100, answer)), kLost});
  expectEnd(
      {"too long, stalls", sayingThenStalling(withLength(answer.size() + 100, answer)), kTimedOut});
  expectEnd({"too short", sayingThenClosing(withLength(answer.size() - 1, answer)), kMalformed});
  expectEnd({"nothing", sayingThenClosing(withLength(0, answer)), kMalformed});
  expectEnd({"negative",
             sayingThenClosing("HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n" + answer),
             kBadServer});
  expectEnd({"absurd",
             sayingThenStalling("HTTP/1.1 200 OK\r\nContent-Length: 9223372036854775807\r\n\r\n"),
             kTooLong});
  expectEnd({"more than is taken",
             sayingThenStalling(withLength(kHTTPDefaultMaximumBodyLength + 1, answer)), kTooLong});
  expectEnd({"exactly that, stalls",
             sayingThenStalling(withLength(kHTTPDefaultMaximumBodyLength, "")), kTimedOut});
}

TEST_P(HostilePeer, SendsGarbageForChunks) {
  const auto answer = makeAnswer();
  for (const auto* chunks : {"no length\r\n", "-5\r\nabcde\r\n", "\r\n\r\n", "\xff\xff\xff",
                             "11111111111111111\r\nabc", "2\r\nabcdef"}) {
    expectEnd({chunks, sayingThenStalling(chunked(chunks)), kBadServer});
  }
  expectEnd(
      {"after a good one", sayingThenStalling(chunked(chunkOf(answer) + "zz\r\n")), kBadServer});
  expectEnd({"a length that nothing can have",
             sayingThenStalling(chunked("7fffffffffffffff\r\nabc")), kTimedOut});
}

TEST_P(HostilePeer, SendsHeadsWithoutEnd) {
  expectEnd({"fields",
             repeating("HTTP/1.1 200 OK\r\n", "X: " + std::string(1000, 'y') + "\r\n", 1000),
             kBadServer});
  expectEnd({"one field", repeating("HTTP/1.1 200 OK\r\nX: ", std::string(10'000, 'y'), 100),
             kBadServer});
  expectEnd({"100 Continue", repeating("", "HTTP/1.1 100 Continue\r\n\r\n", 20'000), kBadServer});
  expectEnd({"trailers",
             repeating(chunked(chunkOf(makeAnswer()) + "0\r\n"),
                       "X: " + std::string(1000, 'y') + "\r\n", 1000),
             kBadServer});
}

TEST_P(HostilePeer, SaysToContinueAgainAndAgainAndThenAnswers) {
  timeOut = kPatient;
  std::string octets;
  for (int i = 0; i < 500; ++i) {
    octets += "HTTP/1.1 100 Continue\r\n\r\n";
  }
  expectEnd({"100", sayingThenStalling(octets + withLength(makeAnswer().size(), makeAnswer())),
             kAnswered});
}

TEST_P(HostilePeer, SendsABodyWithoutEnd) {
  timeOut = milliseconds(5000);
  // 64 KB at a time, somewhat more than a body may have.
  const std::string again(65536, 'x');
  const auto count = kHTTPDefaultMaximumBodyLength / again.size() + 1000;
  expectEnd({"chunked", repeating(chunked(""), chunkOf(again), count), kTooLong});
  expectEnd({"until it closes", repeating("HTTP/1.0 200 OK\r\n\r\n", again, count), kTooLong});
}

TEST_P(HostilePeer, AnswersThoughNothingIsWanted) {
  timeOut = kPatient;
  maximumLength = 0;
  const auto answer = makeAnswer();
  expectEnd({"with a length", sayingThenStalling(withLength(answer.size(), answer)), kTooLong});
  expectEnd({"of one octet", sayingThenStalling(chunked(chunkOf("x"))), kTooLong});
  expectEnd({"until it closes", sayingThenStalling("HTTP/1.0 200 OK\r\n\r\nx"), kTooLong});
  expectEnd({"with nothing", sayingThenStalling(withLength(0, "")), kMalformed});
}

TEST_P(HostilePeer, EndsLinesWithALoneLineFeed) {
  timeOut = kPatient;
  const auto answer = makeAnswer();
  const auto length = "Content-Length: " + std::to_string(answer.size());
  expectEnd(
      {"the head", sayingThenStalling("HTTP/1.1 200 OK\n" + length + "\n\n" + answer), kAnswered});
  expectEnd({"the last only",
             sayingThenStalling("HTTP/1.1 200 OK\r\n" + length + "\r\n\n" + answer), kAnswered});
  expectEnd(
      {"a refusal", sayingThenStalling("HTTP/1.1 403 No\nContent-Length: 0\n\n"), kRefused403});
}

TEST_P(HostilePeer, SwitchesToAnotherProtocol) {
  const std::string switching =
      "HTTP/1.1 101 Switching Protocols\r\nConnection: Upgrade\r\nUpgrade: mail\r\n\r\n";
  // Whatever it says then is none of HTTP.
  for (const auto& said : {std::string(), std::string("220 mail.example\r\n"),
                           withLength(makeAnswer().size(), makeAnswer())}) {
    expectEnd({"and goes on", sayingThenStalling(switching + said), kTimedOut});
    expectEnd({"and closes", sayingThenClosing(switching + said), kLost});
  }
}

TEST_P(HostilePeer, SpeaksSomethingElse) {
  for (const auto* octets : {"SSH-2.0-OpenSSH_9.2\r\n", "\x15\x03\x01\x00\x02\x02\x28",
                             "<html>no head</html>", "HTTP/1.1 OK\r\n\r\n", "\r\n\r\n\r\n"}) {
    expectEnd({octets, sayingThenClosing(octets), kBadServer});
  }
}

TEST_P(HostilePeer, AnswersTwice) {
  timeOut = kPatient;
  const auto answer = withLength(makeAnswer().size(), makeAnswer());
  expectEnd({"the same", sayingThenStalling(answer + answer), kAnswered});
  expectEnd({"then a refusal", sayingThenClosing(answer + "HTTP/1.1 403 No\r\n\r\n"), kAnswered});
  expectEnd({"first a refusal",
             sayingThenClosing("HTTP/1.1 403 No\r\nContent-Length: 0\r\n\r\n" + answer),
             kRefused403});
}

TEST_P(HostilePeer, AnswersBeforeItIsAsked) {
  timeOut = kPatient;
  const auto answer = withLength(makeAnswer().size(), makeAnswer());
  expectEnd({"and reads on",
             [&](auto& connection) {
               connection.send(answer);
               stall(connection);
             },
             kAnswered});
}

TEST_P(HostilePeer, LeavesTheNextExchangeUnharmed) {
  const auto answer = withLength(makeAnswer().size(), makeAnswer());
  ScriptedPeer peer({sayingThenStalling(answer + answer + "HTTP/1.1 403 No\r\n\r\n"),
                     answering(200, makeAnswer(0x0001))});
  onOwnThread([&] {
    const auto first = std::make_shared<RequestRecorder>();
    const auto one = makeRequest(first);
    one->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*first));
    driveFor(milliseconds(20));
    const auto second = std::make_shared<RequestRecorder>();
    const auto two = makeRequest(second);
    two->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*second));
    // What came unasked on the first connection is not taken for the second answer.
    ASSERT_NE(second->response, nullptr) << second->text();
    EXPECT_EQ(second->response->statusCode(), 1);
  });
}

}  // namespace
}  // namespace platen::tests
