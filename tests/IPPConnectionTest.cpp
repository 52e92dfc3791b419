// SPDX-License-Identifier: Apache-2.0

/// The outcomes of a blocking exchange.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "platen/IPPConnection.h"
#include "platen/IPPConstants.h"
#include "tests/support/AnsweringPrinter.h"
#include "tests/support/FakeNames.h"
#include "tests/support/MessageText.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using tests::answering;
using tests::octetText;
using tests::Outcome;
using tests::PeerConnection;
using tests::performOn;
using tests::requestTo;
using tests::responseOctets;
using tests::ScriptedPeer;
using tests::sending;
using tests::targetAt;

/// An error that no exchange gives, to see whether it is replaced.
std::shared_ptr<const Error> staleError() { return std::make_shared<const Error>("stale", 1); }

/// The code of a transport failure, or `HTTPErrorCode{}` for any other error or none.
HTTPErrorCode codeOf(const std::shared_ptr<const Error>& error) {
  return error != nullptr && error->domain() == kHTTPClientErrorDomain
             ? static_cast<HTTPErrorCode>(error->code())
             : HTTPErrorCode{};
}

std::string text(const Data& data) { return {data.begin(), data.end()}; }

// --- What is sent --------------------------------------------------------------------------------

TEST(BlockingExchange, SendsThisHeadAndTheWholeRequest) {
  ScriptedPeer peer({answering(200, responseOctets())});
  const auto target = targetAt(peer, "/printers/a%20b/?x=y#z", "user:secret@127.0.0.1");
  const auto request = requestTo(target);
  const auto octets = text(request->dataRepresentation());
  ASSERT_NE(request->performOn(target), nullptr);
  ASSERT_EQ(peer.requests().size(), 1U);
  const auto sent = peer.requests()[0];
  const auto head = sent.substr(0, sent.find("\r\n\r\n") + 4);
  EXPECT_EQ(head,
            "POST /printers/a%20b HTTP/1.1\r\n"
            "Host: 127.0.0.1:" +
                std::to_string(peer.port()) +
                "\r\n"
                "User-Agent: platen/0.1\r\n"
                "Accept: */*\r\n"
                "Content-Type: application/ipp\r\n"
                "Content-Length: " +
                std::to_string(octets.size()) + "\r\n\r\n");
  EXPECT_EQ(sent.substr(head.size()), octets);
}

TEST(BlockingExchange, SendsTheDocumentAfterTheRequestInOneBody) {
  ScriptedPeer peer({answering(200, responseOctets())});
  const auto target = targetAt(peer);
  const auto request = IPPRequest::jobPrintRequest(target);
  const auto octets = text(request->dataRepresentation());
  const std::string document = std::string(2'000'000, 'x') + std::string("\0\r\n\r\n\xff", 6);
  ASSERT_NE(request->performOn(target, InputStream::withData({document.begin(), document.end()})),
            nullptr);
  const auto sent = peer.requests().at(0);
  const auto head = sent.substr(0, sent.find("\r\n\r\n") + 4);
  EXPECT_THAT(
      head,
      HasSubstr("\r\nContent-Length: " + std::to_string(octets.size() + document.size()) + "\r\n"));
  EXPECT_THAT(head, Not(HasSubstr("Transfer-Encoding")));
  EXPECT_THAT(head, Not(HasSubstr("Expect")));
  EXPECT_TRUE(sent.substr(head.size()) == octets + document);
}

TEST(BlockingExchange, SendsAnEmptyDocumentAsNone) {
  ScriptedPeer peer({answering(200, responseOctets())});
  const auto target = targetAt(peer);
  const auto request = requestTo(target);
  ASSERT_NE(request->performOn(target, InputStream::withData({})), nullptr);
  EXPECT_THAT(peer.requests().at(0), EndsWith(text(request->dataRepresentation())));
}

// --- What comes back -----------------------------------------------------------------------------

TEST(BlockingExchange, ReturnsTheResponseAndClearsTheError) {
  ScriptedPeer peer({answering(200, responseOctets())});
  auto error = staleError();
  const auto response = requestTo(targetAt(peer))->performOn(targetAt(peer), &error);
  ASSERT_NE(response, nullptr);
  EXPECT_TRUE(response->successfulOk());
  EXPECT_EQ(test::messageText(*response, 0),
            "message version=1.1 code=0x0000 request-id=1\n"
            "group 01\n"
            "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
            "01\t\"attributes-natural-language\"\t48:\"en\"\n");
  EXPECT_EQ(error, nullptr);
}

TEST(BlockingExchange, ReturnsTheResponseWhereNobodyAsksForTheError) {
  ScriptedPeer peer({answering(200, responseOctets()), answering(200, responseOctets("0406"))});
  const auto target = targetAt(peer);
  EXPECT_NE(requestTo(target)->performOn(target), nullptr);
  EXPECT_NE(
      requestTo(target)->performOn(target, static_cast<std::shared_ptr<const Error>*>(nullptr)),
      nullptr);
}

TEST(BlockingExchange, FailsInSilenceWhereNobodyAsksForTheError) {
  ScriptedPeer peer({[](auto& connection) { connection.readRequest(); }});
  const auto target = targetAt(peer);
  EXPECT_EQ(requestTo(target)->performOn(target), nullptr);
}

TEST(BlockingExchange, ReturnsAStatusOfFailureAsResponseAndAsError) {
  ScriptedPeer peer({answering(200, octetText("0101 040B 0000 0001 05 10 <'sides'> <> 03"))});
  const auto [response, error] = performOn(targetAt(peer));
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(response->statusCode(), 0x040B);
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(*error, *response->status());
  EXPECT_EQ(error->code(), 0x040B);
  EXPECT_EQ(error->names(IPPErrorUnsupportedAttributeNames), std::vector<std::string>{"sides"});
}

TEST(BlockingExchange, TakesOnlyTheSuccessesOfTheTableForSuccess) {
  struct Case {
    const char* code;
    std::int32_t errorCode;  // 0: no error
  };
  const Case cases[] = {{"0001", 0},      {"0007", 0},      {"0008", 0x0008}, {"0400", 0x0400},
                        {"0507", 0x0507}, {"0100", 0x0100}, {"8001", -32767}};
  for (const auto& [code, errorCode] : cases) {
    ScriptedPeer peer({answering(200, responseOctets(code))});
    const auto [response, error] = performOn(targetAt(peer));
    ASSERT_NE(response, nullptr) << code;
    EXPECT_EQ(error == nullptr ? 0 : error->code(), errorCode) << code;
  }
}

TEST(BlockingExchange, DoesNotLookAtTheRequestIdOfTheResponse) {
  ScriptedPeer peer({answering(200, responseOctets("0000", "4711"))});
  const auto [response, error] = performOn(targetAt(peer));
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(response->requestId(), 0x4711);
  EXPECT_EQ(error, nullptr);
}

TEST(BlockingExchange, DecodesTheBodyWhateverTheHTTPStatus) {
  for (const int status : {201, 302, 400, 401, 404, 426, 500, 503}) {
    ScriptedPeer peer({answering(status, responseOctets(), "WWW-Authenticate: Basic\r\n")});
    const auto [response, error] = performOn(targetAt(peer));
    ASSERT_NE(response, nullptr) << status;
    EXPECT_TRUE(response->successfulOk()) << status;
    EXPECT_EQ(error, nullptr) << status;
  }
}

TEST(BlockingExchange, DecodesTheBodyWhateverItsMediaType) {
  ScriptedPeer peer({answering(200, responseOctets(), "Content-Type: text/html\r\n")});
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
}

TEST(BlockingExchange, ReturnsNeitherResponseNorErrorForABodyThatDoesNotDecode) {
  const auto whole = responseOctets();
  const std::string bodies[] = {
      "<html><body>Not a printer</body></html>",
      "",
      "\x01",
      std::string("\x01\x00\x00\x00\x00\x00\x00\x01\x03", 9),  // version 1.0
      whole.substr(0, whole.size() - 1),
      whole.substr(0, 8),
  };
  for (const int status : {200, 401, 500}) {
    for (const auto& body : bodies) {
      ScriptedPeer peer({answering(status, body)});
      auto error = staleError();
      EXPECT_EQ(requestTo(targetAt(peer))->performOn(targetAt(peer), &error), nullptr) << body;
      EXPECT_EQ(error, nullptr) << body;
    }
  }
}

TEST(BlockingExchange, ReturnsNeitherResponseNorErrorForAnAnswerWithoutABody) {
  ScriptedPeer peer({sending("HTTP/1.1 204 No Content\r\n\r\n")});
  auto error = staleError();
  EXPECT_EQ(requestTo(targetAt(peer))->performOn(targetAt(peer), &error), nullptr);
  EXPECT_EQ(error, nullptr);
}

TEST(BlockingExchange, FollowsNoRedirect) {
  const ScriptedPeer other({answering(200, responseOctets())});
  for (const int status : {301, 302, 303, 307, 308}) {
    ScriptedPeer peer({answering(status, "moved", "Location: " + other.url() + "\r\n")});
    auto error = staleError();
    EXPECT_EQ(requestTo(targetAt(peer))->performOn(targetAt(peer), &error), nullptr);
    EXPECT_EQ(error, nullptr) << "the answer itself is what does not decode";
    EXPECT_EQ(peer.requests().size(), 1U);
  }
  EXPECT_EQ(other.connectionCount(), 0U);
}

TEST(BlockingExchange, ReadsAnAnswerInEveryFraming) {
  const auto body = responseOctets();
  char length[16];
  std::snprintf(length, sizeof length, "%zx\r\n", body.size());
  const std::string answers[] = {
      "HTTP/1.1 200 OK\r\n\r\n" + body,
      "HTTP/1.0 200 OK\r\n\r\n" + body,
      "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n\r\n" + body,
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + (length + body) + "\r\n0\r\n\r\n",
  };
  for (const auto& octets : answers) {
    ScriptedPeer peer({sending(octets)});
    EXPECT_NE(performOn(targetAt(peer)).response, nullptr) << octets;
  }
}

// --- Trailing octets -----------------------------------------------------------------------------

std::string trailing(std::string_view body, int status = 200) {
  ScriptedPeer peer({answering(status, std::string(body))});
  const auto stream = OutputStream::toMemory();
  requestTo(targetAt(peer))->performOn(targetAt(peer), stream);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::closed);
  return text(*stream->data());
}

TEST(BlockingExchange, WritesWhatFollowsTheResponse) {
  const std::string document = "*PPD-Adobe: \"4.3\"\n" + std::string("\0\x03\x03\xff", 4);
  EXPECT_EQ(trailing(responseOctets() + document), document);
  EXPECT_EQ(trailing(responseOctets() + document, 500), document);
  EXPECT_EQ(trailing(responseOctets("0406") + document), document);
  EXPECT_EQ(trailing(responseOctets() + "x"), "x");
  EXPECT_EQ(trailing(responseOctets()), "");
}

TEST(BlockingExchange, WritesALongDocumentOctetForOctet) {
  std::string document;
  for (std::uint32_t i = 0; document.size() < 3'000'001; ++i) {
    document += static_cast<char>(i * 2654435761U >> 24U);
  }
  EXPECT_TRUE(trailing(responseOctets() + document) == document);
}

TEST(BlockingExchange, WritesFromWhereDecodingFailed) {
  // The version is the first that can be wrong, and is two octets long.
  EXPECT_EQ(trailing(octetText("0100 0000 0000 0001 03") + "rest"),
            octetText("0000 0000 0001 03") + "rest");
  EXPECT_EQ(trailing("\x01"), "");
  EXPECT_EQ(trailing(""), "");
}

TEST(BlockingExchange, DiscardsWhatFollowsWhereNobodyWantsIt) {
  ScriptedPeer peer({answering(200, responseOctets() + "rest")});
  EXPECT_NE(performOn(targetAt(peer)).response, nullptr);
}

TEST(BlockingExchange, WritesToAFile) {
  const auto path =
      std::filesystem::temp_directory_path() / ("platen-trailing-" + std::to_string(::getpid()));
  ScriptedPeer peer({answering(200, responseOctets() + "rest\n")});
  EXPECT_NE(requestTo(targetAt(peer))
                ->performOn(targetAt(peer), OutputStream::toFileAtPath(path.string())),
            nullptr);
  std::ifstream file(path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "rest\n");
  std::filesystem::remove(path);
}

TEST(BlockingExchange, ReturnsTheResponseWhereTheStreamCannotBeWritten) {
  ScriptedPeer peer({answering(200, responseOctets() + "rest")});
  const auto stream = OutputStream::toFileAtPath("/no/such/folder/file");
  auto error = staleError();
  EXPECT_NE(requestTo(targetAt(peer))->performOn(targetAt(peer), stream, &error), nullptr);
  EXPECT_EQ(error, nullptr);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::error);
}

TEST(BlockingExchange, LeavesTheStreamAloneWhereThereIsNoAnswer) {
  ScriptedPeer peer({[](auto& connection) { connection.readRequest(); }});
  const auto stream = OutputStream::toMemory();
  EXPECT_EQ(requestTo(targetAt(peer))->performOn(targetAt(peer), stream), nullptr);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::notOpen);
}

TEST(BlockingExchange, SendsADocumentAndWritesWhatFollowsInOneCall) {
  ScriptedPeer peer({answering(200, responseOctets() + "rest")});
  const auto output = OutputStream::toMemory();
  auto error = staleError();
  EXPECT_NE(requestTo(targetAt(peer))
                ->performOn(targetAt(peer), InputStream::withData({'d', 'o', 'c'}), output, &error),
            nullptr);
  EXPECT_THAT(peer.requests().at(0), EndsWith("\x03"
                                              "doc"));
  EXPECT_EQ(text(*output->data()), "rest");
  EXPECT_EQ(error, nullptr);
}

TEST(BlockingExchange, IsTheSameByTheConnectionItself) {
  ScriptedPeer peer({answering(200, responseOctets("0406") + "rest")});
  const auto output = OutputStream::toMemory();
  Outcome outcome;
  outcome.response =
      IPPConnection::performRequest(*requestTo(targetAt(peer)), targetAt(peer),
                                    InputStream::withData({'d'}), output, &outcome.error);
  ASSERT_NE(outcome.response, nullptr);
  EXPECT_EQ(outcome.error->code(), 0x0406);
  EXPECT_EQ(text(*output->data()), "rest");
}

// --- No answer -----------------------------------------------------------------------------------

void expectFailure(const Outcome& outcome, HTTPErrorCode code, std::string_view description) {
  EXPECT_EQ(outcome.response, nullptr);
  ASSERT_NE(outcome.error, nullptr);
  EXPECT_EQ(outcome.error->domain(), kHTTPClientErrorDomain) << "as it is, not as an IPP status";
  EXPECT_EQ(codeOf(outcome.error), code) << outcome.error->description();
  EXPECT_EQ(outcome.error->localizedDescription(), description);
}

TEST(BlockingExchange, FailsForAHostThatDoesNotExist) {
  const tests::FakeNames names;
  expectFailure(performOn(*URL::parse("ipp://nobody.test/printers/q")),
                HTTPErrorCode::cannotFindHost,
                "could not resolve the host name \"nobody.test\" (unknown node or service)");
}

TEST(BlockingExchange, FailsForATargetWithoutAHost) {
  expectFailure(performOn(*URL::parse("ipp:///printers/q")), HTTPErrorCode::badURL,
                "the URI \"ipp:///printers/q\" names no host");
}

TEST(BlockingExchange, FailsWhenNobodyListens) {
  std::string authority;
  {
    const ScriptedPeer gone(std::vector<ScriptedPeer::Script>{});
    authority = "127.0.0.1:" + std::to_string(gone.port());
  }
  expectFailure(performOn(*URL::parse("ipp://" + authority + "/printers/q")),
                HTTPErrorCode::cannotConnectToHost,
                "could not connect to " + authority + " (Connection refused)");
}

TEST(BlockingExchange, FailsWhenTheServerClosesAtOnce) {
  ScriptedPeer peer({[](auto& connection) { connection.close(); }});
  const auto [response, error] = performOn(targetAt(peer));
  EXPECT_EQ(response, nullptr);
  EXPECT_EQ(codeOf(error), HTTPErrorCode::networkConnectionLost);
}

TEST(BlockingExchange, FailsWhenTheServerClosesWithoutAnAnswer) {
  ScriptedPeer peer({[](auto& connection) { connection.readRequest(); }});
  expectFailure(performOn(targetAt(peer)), HTTPErrorCode::networkConnectionLost,
                "the connection to 127.0.0.1:" + std::to_string(peer.port()) +
                    " was lost (Empty reply from server)");
  EXPECT_EQ(peer.requests().size(), 1U) << "what was sent on a new connection is not sent again";
}

TEST(BlockingExchange, FailsWhenTheAnswerIsCutShort) {
  const auto body = responseOctets();
  const std::string answer =
      "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  for (std::size_t length = 1; length < answer.size(); length += 13) {
    ScriptedPeer peer({sending(answer.substr(0, length))});
    const auto [response, error] = performOn(targetAt(peer));
    EXPECT_EQ(response, nullptr) << length;
    EXPECT_NE(codeOf(error), HTTPErrorCode{}) << length;
  }
}

TEST(BlockingExchange, FailsForWhatIsNoHTTP) {
  ScriptedPeer peer({sending("220 smtp.example ESMTP\r\n")});
  const auto [response, error] = performOn(targetAt(peer));
  EXPECT_EQ(response, nullptr);
  EXPECT_EQ(codeOf(error), HTTPErrorCode::badServerResponse);
}

TEST(BlockingExchange, FailsForABodyBeyondTheLimit) {
  const auto length = std::to_string(kHTTPDefaultMaximumBodyLength + 1);
  ScriptedPeer peer({sending("HTTP/1.1 200 OK\r\nContent-Length: " + length + "\r\n\r\n")});
  expectFailure(performOn(targetAt(peer)), HTTPErrorCode::dataLengthExceedsMaximum,
                "the answer from 127.0.0.1:" + std::to_string(peer.port()) +
                    " is too long (more than 268435456 octets)");
}

TEST(BlockingExchange, TakesAnswersOfTheLengthThatTheRequestAllows) {
  const std::string answer = responseOctets();
  ScriptedPeer peer({answering(200, answer), answering(200, answer), answering(200, answer)});
  const auto target = targetAt(peer);
  const auto request = requestTo(target);
  EXPECT_EQ(request->maximumResponseLength(), kHTTPDefaultMaximumBodyLength);
  request->setMaximumResponseLength(answer.size());
  EXPECT_NE(request->performOn(target), nullptr);
  std::shared_ptr<const Error> error;
  EXPECT_NE(
      std::static_pointer_cast<IPPRequest>(request->copy())->performOn(target, nullptr, &error),
      nullptr);
  request->setMaximumResponseLength(answer.size() - 1);
  EXPECT_EQ(request->performOn(target, nullptr, &error), nullptr);
  EXPECT_EQ(codeOf(error), HTTPErrorCode::dataLengthExceedsMaximum);
}

// --- Time-out ------------------------------------------------------------------------------------

Outcome performWithin(const URL& target, double seconds) {
  const auto request = requestTo(target);
  request->setTimeInterval(seconds);
  Outcome outcome;
  outcome.response = request->performOn(target, &outcome.error);
  return outcome;
}

TEST(BlockingExchange, TimesOutWhenNothingHappensForTheInterval) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.sleep(milliseconds(5000));
  }});
  const auto start = std::chrono::steady_clock::now();
  const auto outcome = performWithin(targetAt(peer), 0.2);
  const auto elapsed = std::chrono::steady_clock::now() - start;
  expectFailure(outcome, HTTPErrorCode::timedOut,
                "no answer from 127.0.0.1:" + std::to_string(peer.port()) + " for 0.2 seconds");
  EXPECT_EQ(outcome.error->code(), -1001);
  EXPECT_GE(elapsed, milliseconds(190));
  EXPECT_LT(elapsed, milliseconds(4500)) << "the printer leaves it at that";
}

TEST(BlockingExchange, TimesOutInTheMiddleOfAnAnswer) {
  ScriptedPeer peer({[](auto& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
    connection.sleep(milliseconds(5000));
  }});
  EXPECT_EQ(codeOf(performWithin(targetAt(peer), 0.2).error), HTTPErrorCode::timedOut);
}

TEST(BlockingExchange, DoesNotTimeOutWhileTheAnswerKeepsComing) {
  ScriptedPeer peer({[](auto& connection) {
    const auto body = responseOctets();
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) +
                    "\r\n\r\n");
    for (std::size_t i = 0; i < body.size(); i += 4) {
      connection.sleep(milliseconds(100));
      connection.send(body.substr(i, 4));
    }
  }});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(performWithin(targetAt(peer), 1).response, nullptr);
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(1500))
      << "so that the whole took longer than the interval";
}

TEST(BlockingExchange, HasNoTimeoutForAnIntervalOfZeroAndBelow) {
  for (const double seconds : {0.0, -1.0}) {
    ScriptedPeer peer({[](auto& connection) {
      connection.readRequest();
      connection.sleep(milliseconds(100));
      connection.answer(200, responseOctets());
    }});
    EXPECT_NE(performWithin(targetAt(peer), seconds).response, nullptr) << seconds;
  }
}

TEST(BlockingExchange, StartsANewIntervalForEachExchange) {
  ScriptedPeer peer({[](auto& connection) {
    for (int i = 0; i < 10; ++i) {
      connection.readRequest();
      connection.sleep(milliseconds(150));
      connection.answer(200, responseOctets());
    }
  }});
  const auto request = requestTo(targetAt(peer));
  request->setTimeInterval(1);
  for (int i = 0; i < 10; ++i) {
    EXPECT_NE(request->performOn(targetAt(peer)), nullptr) << i;
  }
}

}  // namespace
}  // namespace platen
