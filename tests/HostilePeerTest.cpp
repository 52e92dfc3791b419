// SPDX-License-Identifier: Apache-2.0
//
// Peers that do what no server should, at each point of an exchange: it ends in an error record or
// in an answer, the idle time-out at the latest, and leaves nothing behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platen/HTTP.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::drive;
using tests::makeAnswer;
using tests::makeRequest;
using tests::PeerConnection;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::streamOf;
using tests::targetOf;

constexpr auto kTimeOut = milliseconds(300);
// On a machine that has other things to do, too.
constexpr auto kGrace = milliseconds(2500);

/// How an exchange is to end.
struct End {
  std::int64_t code;
  std::int64_t underlying;
  /// What may lie behind it too, as things happen to fall out.
  std::int64_t alternative = underlying;
};
constexpr End kAnswered{0, 0};
constexpr End kTimedOut{0x0405, -1001};
constexpr End kLost{0x0502, static_cast<int>(HTTPErrorCode::networkConnectionLost)};
constexpr End kNotConnectedOrLost{0x0502, static_cast<int>(HTTPErrorCode::networkConnectionLost),
                                  static_cast<int>(HTTPErrorCode::cannotConnectToHost)};
constexpr End kBadServer{0x0502, static_cast<int>(HTTPErrorCode::badServerResponse)};
constexpr End kTooLong{0x0502, static_cast<int>(HTTPErrorCode::dataLengthExceedsMaximum)};
constexpr End kMalformed{0x0500, 0};
constexpr End kRefused403{0x0502, 403};

struct Hostility {
  const char* name;
  ScriptedPeer::Script script;
  End end;
};

std::string chunked(std::string_view chunks) {
  return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(chunks);
}

std::string chunkOf(std::string_view octets) {
  char size[20];
  std::snprintf(size, sizeof size, "%zx\r\n", octets.size());
  return size + std::string(octets) + "\r\n";
}

std::string withLength(std::size_t length, std::string_view body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" +
         std::string(body);
}

void stall(PeerConnection& connection) { connection.readToEnd(); }

/// Reads the request, says this, and then nothing any more.
ScriptedPeer::Script sayingThenStalling(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
    stall(connection);
  };
}

ScriptedPeer::Script sayingThenClosing(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
  };
}

ScriptedPeer::Script sayingThenResetting(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
    connection.sleep(milliseconds(20));
    connection.reset();
  };
}

/// One octet at a time, without a pause that would be too long.
ScriptedPeer::Script dribbling(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    for (const char octet : octets) {
      connection.send({&octet, 1});
      connection.sleep(milliseconds(4));
    }
    stall(connection);
  };
}

/// What is said again and again, until the other side has enough.
ScriptedPeer::Script repeating(std::string once, std::string again, std::size_t count) {
  return [=](PeerConnection& connection) {
    connection.readRequest();
    connection.send(once);
    for (std::size_t i = 0; i < count; ++i) {
      connection.send(again);
    }
    stall(connection);
  };
}

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
class HostilePeer : public testing::TestWithParam<bool> {
 protected:
  // What does not decode is kept in the home directory.
  static void SetUpTestSuite() {
    std::string text = (std::filesystem::temp_directory_path() / "platen-home-XXXXXX").string();
    ASSERT_NE(mkdtemp(text.data()), nullptr);
    home = text;
    const char* const before = std::getenv("HOME");
    homeBefore = before == nullptr ? "" : before;
    setenv("HOME", home.c_str(), 1);
    // What a first exchange sets up for the whole process, or clears away, does not count.
    ScriptedPeer peer({sayingThenClosing("")});
    tests::onOwnThread([&] { expectEnd({"the first", nullptr, kLost}, peer); });
  }
  static void TearDownTestSuite() {
    setenv("HOME", homeBefore.c_str(), 1);
    std::filesystem::remove_all(home);
  }

  static void expectEnd(const Hostility& hostility) {
    const auto before = tests::descriptorCount();
    {
      ScriptedPeer peer({hostility.script});
      tests::onOwnThread([&] { expectEnd(hostility, peer); });
    }
    EXPECT_EQ(tests::descriptorCount(), before) << hostility.name;
  }

  static void expectEnd(const Hostility& hostility, const ScriptedPeer& peer) {
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->document = isStreamed ? streamOf(document) : nullptr;
    auto request = makeRequest(recorder);
    request->setTimeInterval(std::chrono::duration<double>(timeOut).count());
    const std::weak_ptr watched = request;
    const auto begin = RunLoop::Clock::now();
    request->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*recorder)) << hostility.name;
    const auto duration = RunLoop::Clock::now() - begin;
    EXPECT_EQ(recorder->code(), hostility.end.code) << hostility.name << ": " << recorder->text();
    EXPECT_THAT(recorder->underlyingCode(),
                testing::AnyOf(hostility.end.underlying, hostility.end.alternative))
        << hostility.name << ": " << recorder->text();
    EXPECT_EQ(recorder->calls, hostility.end.code == 0 ? "WDORF" : "WDO") << hostility.name;
    if (hostility.end.code == kTimedOut.code) {
      EXPECT_GE(duration, timeOut) << hostility.name;
      EXPECT_LT(duration, timeOut + kGrace) << hostility.name;
    }
    request.reset();
    tests::driveFor(milliseconds(0));
    EXPECT_TRUE(watched.expired()) << hostility.name;
  }

  void SetUp() override {
    isStreamed = GetParam();
    document = "the document";
    timeOut = kTimeOut;
  }

  static std::filesystem::path home;
  static std::string homeBefore;
  static bool isStreamed;
  static std::string document;
  static milliseconds timeOut;
};

std::filesystem::path HostilePeer::home;
std::string HostilePeer::homeBefore;
bool HostilePeer::isStreamed = false;
std::string HostilePeer::document;
milliseconds HostilePeer::timeOut = kTimeOut;

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
  document.assign(20'000'000, 'x');
  expectEnd({"stalls",
             [](auto& connection) {
               connection.readSome(100'000);
               connection.sleep(milliseconds(10'000));
             },
             kTimedOut});
  expectEnd(
      {"closes", [](auto& connection) { connection.readSome(isStreamed ? 100'000 : 10); }, kLost});
  expectEnd({"resets",
             [](auto& connection) {
               connection.readSome(isStreamed ? 100'000 : 10);
               connection.reset();
             },
             kLost});
}

TEST_P(HostilePeer, IsNeverAccepted) {
  // The system takes the connection and the request; nobody ever reads them.
  const Hostility hostility{"never accepted", nullptr, kTimedOut};
  const ScriptedPeer peer(std::vector<ScriptedPeer::Script>{});
  tests::onOwnThread([&] { expectEnd(hostility, peer); });
}

TEST_P(HostilePeer, DribblesOneOctetAtATime) {
  // Which takes longer than the time-out, but there is always something moving.
  expectEnd({"with a length", dribbling(withLength(makeAnswer().size(), makeAnswer())), kAnswered});
  expectEnd({"in chunks of one octet",
             [](auto& connection) {
               connection.readRequest();
               connection.send(chunked(""));
               for (const char octet : makeAnswer()) {
                 connection.send(chunkOf({&octet, 1}));
                 connection.sleep(milliseconds(4));
               }
               connection.send("0\r\n\r\n");
             },
             kAnswered});
  expectEnd({"and then stalls", dribbling("HTTP/1.1 200 OK\r\nX: yyyy"), kTimedOut});
}

TEST_P(HostilePeer, ReadsOneOctetAtATime) {
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
  std::string octets;
  for (int i = 0; i < 500; ++i) {
    octets += "HTTP/1.1 100 Continue\r\n\r\n";
  }
  expectEnd({"100", sayingThenStalling(octets + withLength(makeAnswer().size(), makeAnswer())),
             kAnswered});
}

TEST_P(HostilePeer, SendsABodyWithoutEnd) {
  // 64 KB a chunk, somewhat more than a body may have.
  const auto again = chunkOf(std::string(65536, 'x'));
  expectEnd({"chunked", repeating(chunked(""), again, kHTTPDefaultMaximumBodyLength / 65536 + 1000),
             kTooLong});
}

TEST_P(HostilePeer, SpeaksSomethingElse) {
  for (const auto* octets : {"SSH-2.0-OpenSSH_9.2\r\n", "\x15\x03\x01\x00\x02\x02\x28",
                             "<html>no head</html>", "HTTP/1.1 OK\r\n\r\n", "\r\n\r\n\r\n"}) {
    expectEnd({octets, sayingThenClosing(octets), kBadServer});
  }
}

TEST_P(HostilePeer, AnswersTwice) {
  const auto answer = withLength(makeAnswer().size(), makeAnswer());
  expectEnd({"the same", sayingThenStalling(answer + answer), kAnswered});
  expectEnd({"then a refusal", sayingThenClosing(answer + "HTTP/1.1 403 No\r\n\r\n"), kAnswered});
  expectEnd({"first a refusal",
             sayingThenClosing("HTTP/1.1 403 No\r\nContent-Length: 0\r\n\r\n" + answer),
             kRefused403});
}

TEST_P(HostilePeer, AnswersBeforeItIsAsked) {
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
                     tests::answering(200, makeAnswer(0x0001))});
  tests::onOwnThread([&] {
    const auto first = std::make_shared<RequestRecorder>();
    const auto one = makeRequest(first);
    one->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*first));
    tests::driveFor(milliseconds(20));
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
}  // namespace platen
