// SPDX-License-Identifier: Apache-2.0
//
// Documents on their way to printers that answer, or go, before they have got all of it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platen/HTTP.h"
#include "tests/support/Pipe.h"
#include "tests/support/ScheduledDocument.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using tests::drive;
using tests::driveFor;
using tests::kSoon;
using tests::makeAnswer;
using tests::makeRequest;
using tests::PeerConnection;
using tests::Pipe;
using tests::RequestRecorder;
using tests::ScheduledDocument;
using tests::ScriptedPeer;
using tests::streamOf;
using tests::targetOf;

constexpr std::size_t kLarge = 8'000'000;  // more than any socket buffers
// --- Answers that come early ---------------------------------------------------------------------

/// What a printer does after its refusal.
enum class Then { readsOn, stalls, closes, resets };

void doThen(PeerConnection& connection, Then then) {
  switch (then) {
    case Then::readsOn:
      connection.readToEnd();
      break;
    case Then::stalls:
      connection.sleep(milliseconds(10'000));
      break;
    case Then::closes:
      break;
    case Then::resets:
      connection.sleep(milliseconds(20));
      connection.reset();
  }
}

std::string nameOf(Then then) {
  switch (then) {
    case Then::readsOn:
      return "ReadsOn";
    case Then::stalls:
      return "Stalls";
    case Then::closes:
      return "Closes";
    case Then::resets:
      break;
  }
  return "Resets";
}

class ScheduledRefusal : public ScheduledDocument, public testing::WithParamInterface<Then> {};

INSTANTIATE_TEST_SUITE_P(Printer, ScheduledRefusal,
                         testing::Values(Then::readsOn, Then::stalls, Then::closes, Then::resets),
                         [](const auto& tested) { return nameOf(tested.param); });

TEST_P(ScheduledRefusal, StopsALargeDocumentOnItsWay) {
  for (const int status : {400, 401, 413, 503}) {
    ScriptedPeer peer({[&](auto& connection) {
      connection.readSome(100'000);
      connection.answer(status, "no", "Connection: close\r\n");
      doThen(connection, GetParam());
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = streamOf(std::string(kLarge, 'x'));
    request = makeRequest(recorder);
    send(peer);
    ASSERT_TRUE(drive(*recorder));
    EXPECT_LT(elapsed(), kSoon);
    expectRefusal(status);
  }
}

TEST_P(ScheduledRefusal, IsSeenWhileTheDocumentIsDry) {
  for (const std::string given : {"", "some of it"}) {
    Pipe pipe;
    ScriptedPeer peer({[&](auto& connection) {
      connection.readHead();
      connection.sleep(milliseconds(50));
      connection.answer(403, "no");
      doThen(connection, GetParam());
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    if (!given.empty()) {
      pipe.write(given);
    }
    send(peer);
    ASSERT_TRUE(drive(*recorder));
    EXPECT_LT(elapsed(), kSoon);
    expectRefusal(403);
  }
}

TEST_P(ScheduledRefusal, IsSeenBeforeAnythingWasRead) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.answer(503, "busy");
    doThen(connection, GetParam());
  }});
  recorder->document = streamOf(std::string(kLarge, 'x'));
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_LT(elapsed(), kSoon);
  expectRefusal(503);
}

TEST_F(ScheduledDocument, IsSentToItsEndThoughTheAnswerIsThere) {
  for (const int status : {200, 202, 302}) {
    for (const auto* headers : {"", "Connection: close\r\n"}) {
      std::string received;
      ScriptedPeer peer({[&](auto& connection) {
        const auto head = connection.readHead();
        connection.answer(status, makeAnswer(), headers);
        connection.sleep(milliseconds(50));
        received = connection.readBody(head);
      }});
      recorder = std::make_shared<RequestRecorder>();
      recorder->document = streamOf(std::string(kLarge, 'x'));
      request = makeRequest(recorder);
      send(peer);
      ASSERT_TRUE(drive(*recorder));
      EXPECT_TRUE(peer.waitForScripts());
      EXPECT_EQ(recorder->calls, status == 200 ? "WDORF" : "WDO") << recorder->text();
      EXPECT_EQ(recorder->underlyingCode(), status == 200 ? 0 : status);
      EXPECT_EQ(received.size(), request->dataRepresentation().size() + kLarge) << headers;
    }
  }
}

TEST_F(ScheduledDocument, IsAwaitedThoughTheAnswerIsThere) {
  for (const auto* headers : {"", "Connection: close\r\n"}) {
    Pipe pipe;
    std::string received;
    ScriptedPeer peer({[&](auto& connection) {
      const auto head = connection.readHead();
      connection.answer(200, makeAnswer(), headers);
      received = connection.readBody(head);
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    send(peer);
    driveFor(milliseconds(200));
    pipe.write("one, ");
    driveFor(milliseconds(100));
    EXPECT_EQ(recorder->calls, "WD") << "told before the document's end";
    pipe.write("two");
    pipe.finish();
    ASSERT_TRUE(drive(*recorder));
    EXPECT_TRUE(peer.waitForScripts());
    expectResponse();
    EXPECT_THAT(received, EndsWith("one, two")) << headers;
  }
}

TEST_F(ScheduledDocument, IsNotTakenForSentWhenThePrinterClosesAfterAnEarlySuccess) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readSome(100'000);
    connection.answer(200, makeAnswer());
  }});
  recorder->document = streamOf(std::string(kLarge, 'x'));
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_EQ(recorder->code(), 0x0502);
  EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::networkConnectionLost));
}

TEST_F(ScheduledDocument, FailsAtOnceWhenTheConnectionIsLostWhileItIsDry) {
  for (const bool resets : {false, true}) {
    Pipe pipe;
    ScriptedPeer peer({[&](auto& connection) {
      connection.readHead();
      connection.sleep(milliseconds(30));
      if (resets) {
        connection.reset();
      }
    }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = pipe.stream();
    request = makeRequest(recorder);
    send(peer);
    ASSERT_TRUE(drive(*recorder));
    EXPECT_LT(elapsed(), kSoon);
    EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::networkConnectionLost));
  }
}

TEST_F(ScheduledDocument, NeverTimesOutWhileItMovesSlowly) {
  ScriptedPeer peer({[&](auto& connection) {
    connection.readHead();
    for (int i = 0; i < 50; ++i) {
      connection.readSome(kLarge / 100);
      connection.sleep(milliseconds(50));
    }
    connection.readSome(kLarge - 50 * (kLarge / 100));
    connection.answer(200, makeAnswer(), "Connection: close\r\n");
    connection.closeSending();
    connection.readToEnd();
  }});
  recorder->document = streamOf(std::string(kLarge, 'x'));
  request->setTimeInterval(1);
  send(peer);
  ASSERT_TRUE(drive(*recorder));
  EXPECT_GE(elapsed(), milliseconds(2490));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

}  // namespace
}  // namespace platen
