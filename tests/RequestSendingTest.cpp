// SPDX-License-Identifier: Apache-2.0
//
// Requests that are sent on the thread's run loop: who is told what, in which order, and what may
// be done meanwhile.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platen/IPPConnection.h"
#include "platen/IPPRequest.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using tests::answering;
using tests::drive;
using tests::driveFor;
using tests::driveUntil;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::streamOf;
using tests::targetOf;

/// Long enough for an exchange with a peer on this machine to get on.
constexpr milliseconds kAWhile(60);

class RequestSending : public testing::Test {
 protected:
  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
};

TEST_F(RequestSending, TellsTheDelegateEachStepInOrder) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  request->sendTo(targetOf(peer));
  EXPECT_EQ(recorder->calls, "WD");
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  ASSERT_NE(recorder->response, nullptr);
  EXPECT_TRUE(recorder->response->successfulOk());
  EXPECT_EQ(recorder->error, nullptr);
  EXPECT_EQ(recorder->filled, nullptr);
  EXPECT_TRUE(recorder->isSameResponse);
}

TEST_F(RequestSending, TellsOnTheSendersThreadAndNamesTheRequestItself) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->onCall = [&](char call, IPPRequest& told) {
    EXPECT_EQ(&told, request.get()) << call;
    EXPECT_EQ(recorder->lastThread, std::this_thread::get_id()) << call;
  };
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

TEST_F(RequestSending, DoesNothingBetweenTurnsOfTheLoop) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  request->sendTo(targetOf(peer));
  std::this_thread::sleep_for(kAWhile);
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(peer.connectionCount(), 0U);
  ASSERT_TRUE(drive(*recorder));
}

TEST_F(RequestSending, StartsOneExchangeOnlyHoweverOftenItIsAskedTo) {
  ScriptedPeer peer(2, answering(200, makeAnswer()));
  request->sendTo(targetOf(peer));
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  request->sendTo(targetOf(peer));
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_THAT(peer.requests(), SizeIs(1));
}

TEST_F(RequestSending, IsInProgressUntilItIsCancelledEvenAfterTheOutcome) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  EXPECT_FALSE(request->isInProgress());
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(request->isInProgress());
  ASSERT_TRUE(drive(*recorder));
  driveFor(kAWhile);
  EXPECT_TRUE(request->isInProgress());
  request->cancel();
  EXPECT_FALSE(request->isInProgress());
}

TEST_F(RequestSending, IsSentAgainAfterACancel) {
  ScriptedPeer peer(2, answering(200, makeAnswer()));
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  request->cancel();
  recorder->calls.clear();
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(request->isInProgress());
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

TEST_F(RequestSending, TellsNothingAfterACancel) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  request->sendTo(targetOf(peer));
  request->cancel();
  EXPECT_FALSE(request->isInProgress());
  request->cancel();
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(peer.connectionCount(), 0U);
}

TEST_F(RequestSending, ClosesTheConnectionOfACancelledExchange) {
  bool isClosed = false;
  ScriptedPeer peer({[&](auto& connection) {
    connection.readRequest();
    connection.readToEnd();
    isClosed = true;
  }});
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(driveUntil([&] { return !peer.requests().empty(); }));
  request->cancel();
  driveFor(milliseconds(20));
  EXPECT_TRUE(peer.waitForScripts());
  EXPECT_TRUE(isClosed);
  EXPECT_EQ(recorder->calls, "WD");
}

TEST_F(RequestSending, MayBeCancelledThoughItWasNeverSent) {
  request->cancel();
  EXPECT_FALSE(request->isInProgress());
}

/// A delegate that offers nothing but the outcome.
class OutcomeOnly final : public IPPRequestDelegate {
 public:
  void requestDidReceiveResponse(IPPRequest& told, const std::shared_ptr<IPPResponse>& received,
                                 const std::shared_ptr<const Error>& reason) override {
    request = &told;
    response = received;
    error = reason;
  }
  const IPPRequest* request = nullptr;
  std::shared_ptr<IPPResponse> response;
  std::shared_ptr<const Error> error;
};

TEST_F(RequestSending, NeedsADelegateForNothingButTheOutcome) {
  ScriptedPeer peer({answering(200, makeAnswer() + "a trailing document")});
  const auto delegate = std::make_shared<OutcomeOnly>();
  request->setDelegate(delegate);
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(driveUntil([&] { return delegate->request != nullptr; }));
  EXPECT_EQ(delegate->request, request.get());
  EXPECT_NE(delegate->response, nullptr);
  EXPECT_EQ(delegate->error, nullptr);
  const auto sent = peer.requests().at(0);
  EXPECT_THAT(sent, Not(HasSubstr("Transfer-Encoding")));
  EXPECT_THAT(sent, EndsWith("\r\n\r\n" + tests::textOf(request->dataRepresentation())));
}

TEST_F(RequestSending, IsSentWithoutADelegateToo) {
  for (const bool isMalformed : {false, true}) {
    ScriptedPeer peer({answering(isMalformed ? 500 : 200, makeAnswer())});
    const auto lonely = makeRequest();
    lonely->sendTo(targetOf(peer));
    ASSERT_TRUE(driveUntil([&] { return !peer.requests().empty(); }));
    driveFor(kAWhile);
    EXPECT_TRUE(lonely->isInProgress());
  }
}

TEST_F(RequestSending, DoesNotHoldTheDelegate) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  request->sendTo(targetOf(peer));
  const std::weak_ptr gone = recorder;
  recorder.reset();
  EXPECT_TRUE(gone.expired());
  EXPECT_EQ(request->delegate(), nullptr);
  ASSERT_TRUE(driveUntil([&] { return !peer.requests().empty(); }));
  driveFor(kAWhile);  // the outcome comes, and there is nobody to tell
  EXPECT_TRUE(request->isInProgress());
}

TEST_F(RequestSending, TellsTheDelegateOfTheMoment) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  request->sendTo(targetOf(peer));
  const auto second = std::make_shared<RequestRecorder>();
  request->setDelegate(second);
  EXPECT_EQ(request->delegate(), second);
  ASSERT_TRUE(drive(*second));
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(second->calls, "ORF");
}

TEST_F(RequestSending, SendsTheDocumentOfItsDelegate) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = streamOf("the document");
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  const auto message = tests::textOf(request->dataRepresentation());
  EXPECT_THAT(peer.requests().at(0), HasSubstr("\r\nTransfer-Encoding: chunked\r\n"));
  EXPECT_THAT(peer.requests().at(0), EndsWith("\r\n\r\n" + message + "the document"));
  EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
}

TEST_F(RequestSending, MakesItsMessageStreamOfTheDelegatesDocument) {
  EXPECT_EQ(makeRequest()->messageStream(), nullptr);
  EXPECT_EQ(request->messageStream(), nullptr);
  EXPECT_EQ(request->dataStreamForRequest(), nullptr);
  recorder->document = streamOf("document");
  EXPECT_EQ(request->dataStreamForRequest(), recorder->document);
  const auto stream = request->messageStream();
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(stream->dataStream(), recorder->document);
  EXPECT_EQ(*stream->messageHeader(), request->dataRepresentation());
  EXPECT_EQ(recorder->calls, "DDDD");
}

TEST_F(RequestSending, ReportsAFailureWithoutAResponse) {
  ScriptedPeer peer({answering(500, "oh")});
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_EQ(recorder->response, nullptr);
  EXPECT_EQ(recorder->code(), 0x0502);
  EXPECT_TRUE(request->isInProgress());
}

TEST_F(RequestSending, ReportsATargetWithoutAHostInALaterTurn) {
  for (const auto* target : {"ipp:///ipp/print", "ipp:/path", "mailto:root", "no/scheme"}) {
    recorder->calls.clear();
    request->sendTo(URL::parse(target).value());
    EXPECT_EQ(recorder->calls, "W") << target;
    ASSERT_TRUE(drive(*recorder));
    EXPECT_EQ(recorder->calls, "WO") << target;
    EXPECT_EQ(recorder->code(), 0x0502) << target;
    EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::badURL)) << target;
    request->cancel();
  }
}

TEST_F(RequestSending, HasATimeOutThatIsNotEncoded) {
  EXPECT_EQ(IPPRequest::requestWithId(0x000B)->timeoutInterval(), 60.0);
  request->setTimeInterval(5.0);
  EXPECT_EQ(request->timeoutInterval(), 5.0);
  EXPECT_EQ(IPPConnectionHandler::HTTPRequestForIPPRequest(*request, *URL::parse("ipp://host"))
                ->timeoutInterval,
            5.0);
  const auto copy = IPPRequest::initWithDataRepresentation(request->dataRepresentation());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->timeoutInterval(), 60.0);
}

TEST_F(RequestSending, TimesOutAfterTheIntervalThatWasSet) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  request->setTimeInterval(0.2);
  const auto begin = RunLoop::Clock::now();
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_GE(RunLoop::Clock::now() - begin, milliseconds(190));
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(5000));
  EXPECT_EQ(recorder->code(), 0x0405);
}

TEST_F(RequestSending, KeepsSeveralExchangesApart) {
  constexpr std::size_t kCount = 5;
  ScriptedPeer peer(kCount, [](auto& connection) {
    connection.readRequest();
    connection.sleep(milliseconds(20));
    connection.answer(200, makeAnswer(0x0406));
  });
  std::vector<std::shared_ptr<RequestRecorder>> recorders;
  std::vector<std::shared_ptr<IPPRequest>> requests;
  for (std::size_t i = 0; i < kCount; ++i) {
    recorders.push_back(std::make_shared<RequestRecorder>());
    requests.push_back(makeRequest(recorders.back()));
    requests.back()->sendTo(targetOf(peer));
  }
  requests[2]->cancel();
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i != 2) {
      EXPECT_TRUE(drive(*recorders[i]));
      EXPECT_EQ(recorders[i]->lastRequest, requests[i].get());
    }
    EXPECT_EQ(recorders[i]->calls, i == 2 ? "WD" : "WDORF");
  }
}

// --- What outlives what --------------------------------------------------------------------------

TEST_F(RequestSending, GoesOnWhenTheLastReferenceIsDroppedAtOnce) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  const std::weak_ptr watched = request;
  request->sendTo(targetOf(peer));
  request.reset();
  EXPECT_FALSE(watched.expired());
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  driveFor(milliseconds(1));
  EXPECT_TRUE(watched.expired());
}

TEST_F(RequestSending, GoesOnWhenTheLastReferenceIsDroppedAndFails) {
  ScriptedPeer peer({[](auto& connection) { connection.reset(); }});
  const std::weak_ptr watched = request;
  request->sendTo(targetOf(peer));
  request.reset();
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDO");
  driveFor(milliseconds(1));
  EXPECT_TRUE(watched.expired());
}

TEST_F(RequestSending, IsLetGoOfWithItsRunLoop) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  std::weak_ptr<IPPRequest> watched;
  recorder->document = streamOf("document");
  const std::weak_ptr document = recorder->document;
  tests::onOwnThread([&] {
    const auto sent = makeRequest(recorder);
    watched = sent;
    sent->sendTo(targetOf(peer));
    driveFor(kAWhile);
  });
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_TRUE(watched.expired());
  recorder.reset();
  EXPECT_TRUE(document.expired());
}

TEST_F(RequestSending, MayBeCancelledAfterItsRunLoopHasGone) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  tests::onOwnThread([&] {
    request->sendTo(targetOf(peer));
    driveFor(milliseconds(20));
  });
  EXPECT_TRUE(request->isInProgress());
  request->cancel();
  EXPECT_FALSE(request->isInProgress());
}

TEST_F(RequestSending, LeavesNoDescriptorOpen) {
  ScriptedPeer peer(1, answering(200, makeAnswer()));
  // What a first loop sets up for the whole process does not count.
  tests::onOwnThread([] { RunLoop::current()->runOnce(milliseconds(0)); });
  const auto before = tests::descriptorCount();
  tests::onOwnThread([&] {
    request->sendTo(targetOf(peer));
    drive(*recorder);
  });
  EXPECT_TRUE(peer.waitForScripts());
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_EQ(tests::descriptorCount(), before);
}

TEST_F(RequestSending, WorksOnSeveralThreadsAtOnce) {
  constexpr std::size_t kCount = 4;
  ScriptedPeer peer(kCount, answering(200, makeAnswer()));
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kCount; ++i) {
    threads.emplace_back([&peer] {
      const auto own = std::make_shared<RequestRecorder>();
      const auto sent = makeRequest(own);
      sent->sendTo(targetOf(peer));
      EXPECT_TRUE(drive(*own));
      EXPECT_EQ(own->calls, "WDORF");
      EXPECT_EQ(own->lastThread, std::this_thread::get_id());
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
}

}  // namespace
}  // namespace platen
