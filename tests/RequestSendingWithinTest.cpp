// SPDX-License-Identifier: Apache-2.0
//
// What a delegate may do from within each of its operations.

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include "platen/IPPRequest.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::answering;
using tests::drive;
using tests::driveFor;
using tests::driveUntil;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::targetOf;

/// Long enough for an exchange with a peer on this machine to get on.
constexpr milliseconds kAWhile(60);

/// The same for each of the delegate's operations, given by its letter.
class RequestSendingWithin : public testing::TestWithParam<char> {
 protected:
  /// Has `act` done within that operation, the first time.
  void within(const std::function<void(IPPRequest&)>& act) {
    recorder->onCall = [this, act](char call, IPPRequest& told) {
      if (call == GetParam() && !std::exchange(isDone_, true)) {
        act(told);
      }
    };
  }
  /// The calls up to that operation and no further.
  [[nodiscard]] static std::string callsSoFar() {
    const std::string all = "WDORF";
    return all.substr(0, all.find(GetParam()) + 1);
  }
  [[nodiscard]] static bool isBeforeTheStart() { return GetParam() == 'W' || GetParam() == 'D'; }

  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);

 private:
  bool isDone_ = false;
};

INSTANTIATE_TEST_SUITE_P(Call, RequestSendingWithin, testing::Values('W', 'D', 'O', 'R', 'F'),
                         [](const auto& tested) {
                           switch (tested.param) {
                             case 'W':
                               return "WillSend";
                             case 'D':
                               return "DocumentQuestion";
                             case 'O':
                               return "Outcome";
                             case 'R':
                               return "RoomQuestion";
                             default:
                               return "Filled";
                           }
                         });

TEST_P(RequestSendingWithin, ACancelIsTheLastThing) {
  ScriptedPeer peer({answering(200, makeAnswer() + "trailing")});
  recorder->room = OutputStream::toMemory();
  within([](IPPRequest& told) { told.cancel(); });
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(driveUntil([&] { return recorder->calls.size() >= callsSoFar().size(); }));
  driveFor(kAWhile);
  // The document is still asked for: the exchange is built before it is found to be unwanted.
  EXPECT_EQ(recorder->calls, isBeforeTheStart() ? "WD" : callsSoFar());
  EXPECT_FALSE(request->isInProgress());
  EXPECT_EQ(peer.connectionCount(), isBeforeTheStart() ? 0U : 1U);
  EXPECT_EQ(recorder->room->data()->size(), GetParam() == 'F' ? 8U : 0U);
}

TEST_P(RequestSendingWithin, ASecondCancelDoesNothing) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  within([](IPPRequest& told) {
    told.cancel();
    told.cancel();
  });
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(driveUntil([&] { return recorder->calls.size() >= callsSoFar().size(); }));
  driveFor(kAWhile);
  request->cancel();
  EXPECT_FALSE(request->isInProgress());
}

TEST_P(RequestSendingWithin, SendingWithoutACancelDoesNothing) {
  ScriptedPeer peer(2, answering(200, makeAnswer()));
  within([&](IPPRequest& told) { told.sendTo(targetOf(peer)); });
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_EQ(peer.requests().size(), 1U);
}

TEST_P(RequestSendingWithin, CancelAndSendingBeginAnew) {
  ScriptedPeer peer(2, answering(200, makeAnswer()));
  within([&](IPPRequest& told) {
    told.cancel();
    told.sendTo(targetOf(peer));
  });
  request->sendTo(targetOf(peer));
  const auto all = (isBeforeTheStart() ? "WD" : callsSoFar()) + "WDORF";
  ASSERT_TRUE(driveUntil([&] { return recorder->calls.size() >= all.size(); }));
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, all);
  EXPECT_TRUE(request->isInProgress());
  EXPECT_EQ(peer.requests().size(), isBeforeTheStart() ? 1U : 2U);
}

TEST_P(RequestSendingWithin, CancelEndsWhatWasToBeginAnew) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  within([&](IPPRequest& told) {
    told.cancel();
    told.sendTo(targetOf(peer));
    told.cancel();
  });
  request->sendTo(targetOf(peer));
  driveUntil([&] { return !request->isInProgress(); });
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, isBeforeTheStart() ? "WD" : callsSoFar() + "WD");
  EXPECT_FALSE(request->isInProgress());
}

TEST_P(RequestSendingWithin, TheLastReferenceToTheRequestMayGo) {
  ScriptedPeer peer({answering(200, makeAnswer() + "trailing")});
  recorder->room = OutputStream::toMemory();
  const std::weak_ptr watched = request;
  within([this](IPPRequest& told) {
    request.reset();
    EXPECT_EQ(told.ippOperationId(), 0x000B);
  });
  auto* const sent = request.get();
  sent->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  driveFor(milliseconds(1));
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(recorder->room->data()->size(), 8U);
}

TEST_P(RequestSendingWithin, TheLastReferenceMayGoAfterACancel) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  const std::weak_ptr watched = request;
  within([this](IPPRequest& told) {
    told.cancel();
    request.reset();
  });
  auto* const sent = request.get();
  sent->sendTo(targetOf(peer));
  ASSERT_TRUE(driveUntil([&] { return watched.expired(); }));
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, isBeforeTheStart() ? "WD" : callsSoFar());
}

TEST_P(RequestSendingWithin, TheDelegateMayGo) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  std::string calls;
  within([&](IPPRequest&) {
    calls = recorder->calls;
    recorder.reset();
  });
  const std::weak_ptr watched = recorder;
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(driveUntil([&] { return watched.expired(); }));
  driveFor(kAWhile);
  EXPECT_EQ(calls, callsSoFar());
  EXPECT_TRUE(request->isInProgress());
}

TEST_P(RequestSendingWithin, AnExceptionReachesWhoRunsTheLoopAndEndsTheExchange) {
  ScriptedPeer peer({answering(200, makeAnswer() + "trailing")});
  recorder->room = OutputStream::toMemory();
  const std::weak_ptr watched = request;
  within([](IPPRequest&) { throw std::domain_error("the delegate's own"); });
  const auto send = [&] {
    request->sendTo(targetOf(peer));
    drive(*recorder);
  };
  EXPECT_THROW(send(), std::domain_error);
  driveFor(kAWhile);
  EXPECT_EQ(recorder->calls, callsSoFar());
  // What was never begun is not in progress; what has ended is, until it is cancelled.
  EXPECT_EQ(request->isInProgress(), !isBeforeTheStart());
  request.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_P(RequestSendingWithin, AnExceptionDoesNoHarmToOtherExchanges) {
  ScriptedPeer peer(3, answering(200, makeAnswer()));
  within([](IPPRequest&) { throw std::domain_error("the delegate's own"); });
  const auto other = std::make_shared<RequestRecorder>();
  const auto another = makeRequest(other);
  another->sendTo(targetOf(peer));
  const auto send = [&] {
    request->sendTo(targetOf(peer));
    drive(*recorder);
  };
  EXPECT_THROW(send(), std::domain_error);
  ASSERT_TRUE(drive(*other));
  EXPECT_EQ(other->calls, "WDORF") << other->text();
  // Nor to the same request, sent again.
  recorder->calls.clear();
  request->cancel();
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
}

TEST_P(RequestSendingWithin, TheLoopMayBeRun) {
  ScriptedPeer peer(2, answering(200, makeAnswer()));
  const auto other = std::make_shared<RequestRecorder>();
  const auto another = makeRequest(other);
  within([&](IPPRequest&) {
    another->sendTo(targetOf(peer));
    EXPECT_TRUE(drive(*other));
  });
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_EQ(other->calls, "WDORF") << other->text();
}

}  // namespace
}  // namespace platen
