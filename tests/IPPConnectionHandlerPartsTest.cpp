// SPDX-License-Identifier: Apache-2.0
//
// One exchange, asked and told directly.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/IPPConnection.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::answering;
using tests::driveFor;
using tests::driveUntil;
using tests::makeAnswer;
using tests::makeRequest;
using tests::ScriptedPeer;
using tests::targetOf;
using tests::textOf;

/// Notes down what the delegate of a handler is told.
class HandlerRecorder : public IPPConnectionDelegate {
 public:
  void requestWillSend(IPPConnectionHandler& told) override { note('W', told); }
  void requestDidReceiveResponse(IPPConnectionHandler& told,
                                 const std::shared_ptr<IPPResponse>& received,
                                 const std::shared_ptr<const Error>& reason) override {
    response = received;
    error = reason;
    note('O', told);
  }
  std::shared_ptr<OutputStream> dataStreamForResponse(const std::shared_ptr<IPPResponse>&,
                                                      IPPConnectionHandler& told) override {
    note('R', told);
    return nullptr;
  }
  void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>&,
                                    const std::shared_ptr<OutputStream>&,
                                    IPPConnectionHandler& told) override {
    note('F', told);
  }

  std::string calls;
  IPPConnectionHandler* handler = nullptr;
  std::shared_ptr<IPPResponse> response;
  std::shared_ptr<const Error> error;

 private:
  void note(char call, IPPConnectionHandler& told) {
    calls += call;
    EXPECT_TRUE(handler == nullptr || handler == &told);
    handler = &told;
  }
};

/// A handler whose exchange never gets on by itself, to be called in the place of the HTTP client.
class IPPConnectionHandlerParts : public testing::Test {
 protected:
  static platen::HTTPResponse head(int status, const std::string& type = "application/ipp") {
    platen::HTTPResponse response;
    response.statusCode = status;
    response.headers.emplace_back("Content-Type", type);
    return response;
  }
  void receive(std::string_view text) {
    handler->connectionDidReceiveData(
        *connection, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
  void TearDown() override { handler->cancel(); }

  ScriptedPeer peer{std::vector<ScriptedPeer::Script>{}};
  std::shared_ptr<IPPRequest> request = makeRequest();
  std::shared_ptr<HandlerRecorder> recorder = std::make_shared<HandlerRecorder>();
  std::shared_ptr<IPPConnectionHandler> handler =
      IPPConnection::schedulePerformRequest(*request, targetOf(peer), recorder);
  std::shared_ptr<HTTPConnection> connection =
      HTTPConnection::start(HTTPRequest(*URL::parse("http://127.0.0.1")),
                            std::make_shared<HTTPConnectionDelegate>(), *RunLoop::current());
};

TEST_F(IPPConnectionHandlerParts, BeginsEmpty) {
  EXPECT_EQ(recorder->calls, "W");
  EXPECT_EQ(handler->delegate(), recorder);
  EXPECT_TRUE(handler->data().empty());
  EXPECT_EQ(handler->responseMimeType(), "");
  EXPECT_FALSE(handler->HTTPResponse().has_value());
}

TEST_F(IPPConnectionHandlerParts, CollectsTheAnswer) {
  handler->connectionDidReceiveResponse(*connection, head(200, "Text/HTML; charset=utf-8"));
  receive("first ");
  receive("second");
  EXPECT_EQ(textOf(handler->data()), "first second");
  EXPECT_EQ(handler->responseMimeType(), "text/html");
  EXPECT_EQ(handler->HTTPResponse().value().statusCode, 200);
  EXPECT_EQ(recorder->calls, "W");
}

TEST_F(IPPConnectionHandlerParts, DecodesOnlyWhatFollowsTheLastHead) {
  handler->connectionDidReceiveResponse(*connection, head(500, "text/plain"));
  receive("not yet");
  handler->connectionDidReceiveResponse(*connection, head(200));
  EXPECT_TRUE(handler->data().empty());
  EXPECT_EQ(handler->responseMimeType(), "application/ipp");
  receive(makeAnswer(0x0001));
  handler->connectionDidFinishLoading(*connection);
  EXPECT_EQ(recorder->calls, "WORF");
  ASSERT_NE(recorder->response, nullptr);
  EXPECT_EQ(recorder->response->statusCode(), 1);
}

TEST_F(IPPConnectionHandlerParts, HoldsItsDelegateUntilItStops) {
  handler->connectionDidReceiveResponse(*connection, head(200));
  receive(makeAnswer());
  const std::weak_ptr watched = recorder;
  auto* const unheld = recorder.get();
  recorder.reset();
  EXPECT_FALSE(watched.expired());
  EXPECT_EQ(unheld->calls, "W");
  handler->connectionDidFinishLoading(*connection);
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(handler->delegate(), nullptr);
}

TEST_F(IPPConnectionHandlerParts, TellsNothingOnceItIsStopped) {
  handler->cancel();
  handler->cancel();
  handler->stopConnection();
  EXPECT_EQ(handler->delegate(), nullptr);
  handler->connectionDidReceiveResponse(*connection, head(200));
  receive(makeAnswer());
  handler->connectionDidFinishLoading(*connection);
  handler->connectionDidFailWithError(*connection, nullptr);
  handler->notifyIPPError(std::make_shared<const Error>("domain", 1));
  EXPECT_EQ(recorder->calls, "W");
}

TEST_F(IPPConnectionHandlerParts, MayBeCancelledAfterTheOutcome) {
  handler->connectionDidReceiveResponse(*connection, head(404));
  handler->connectionDidFinishLoading(*connection);
  EXPECT_EQ(recorder->calls, "WO");
  handler->cancel();
  handler->cancel();
  EXPECT_EQ(recorder->calls, "WO");
  EXPECT_EQ(handler->HTTPResponse().value().statusCode, 404);
}

TEST_F(IPPConnectionHandlerParts, FollowsNoRedirect) {
  const HTTPRequest proposed(*URL::parse("http://elsewhere/"));
  const auto redirect = head(302);
  EXPECT_FALSE(handler->connectionWillSendRequest(*connection, proposed, &redirect).has_value());
  const auto unchanged = handler->connectionWillSendRequest(*connection, proposed, nullptr);
  ASSERT_TRUE(unchanged.has_value());
  EXPECT_EQ(unchanged->url.absoluteString(), "http://elsewhere/");
}

TEST_F(IPPConnectionHandlerParts, LeavesChallengesAndTheCacheAlone) {
  handler->connectionDidReceiveAuthenticationChallenge(*connection);
  handler->connectionDidCancelAuthenticationChallenge(*connection);
  EXPECT_FALSE(handler->connectionWillCacheResponse(*connection));
  EXPECT_EQ(recorder->calls, "W");
  EXPECT_EQ(handler->delegate(), recorder);
}

TEST_F(IPPConnectionHandlerParts, TellsAFailureWithItsReason) {
  const auto reason = std::make_shared<const Error>(std::string(kHTTPClientErrorDomain), -1001);
  handler->connectionDidFailWithError(*connection, reason);
  EXPECT_EQ(recorder->calls, "WO");
  EXPECT_EQ(recorder->response, nullptr);
  EXPECT_EQ(recorder->error->code(), 0x0405);
  EXPECT_EQ(recorder->error->underlyingError(), reason);
}

TEST_F(IPPConnectionHandlerParts, CanBeToldItsAnswersHead) {
  handler->setResponseMimeType("text/plain");
  handler->setHTTPResponse(head(401));
  EXPECT_EQ(handler->responseMimeType(), "text/plain");
  handler->connectionDidFinishLoading(*connection);
  EXPECT_EQ(recorder->error->code(), 0x0403);
}

/// Goes with its handler, in the middle of being asked for the operation's name.
class LeavingDelegate final : public IPPConnectionDelegate {
 public:
  explicit LeavingDelegate(bool& hasGone) : hasGone_(hasGone) {}
  ~LeavingDelegate() override { hasGone_ = true; }

  void requestWillSend(IPPConnectionHandler& told) override { handler = &told; }
  KeyValue valueForKey(std::string_view) const override {
    const auto& hasGone = hasGone_;
    handler->cancel();
    EXPECT_FALSE(hasGone) << "while its operation runs";
    return {};
  }

  IPPConnectionHandler* handler = nullptr;

 private:
  bool& hasGone_;
};

TEST(IPPConnectionHandlerAlone, KeepsTheDelegateThatCancelsWhileItIsAskedForAName) {
  const auto request = makeRequest();
  ScriptedPeer peer({answering(200, "malformed")});
  bool hasGone = false;
  const auto handler = IPPConnection::schedulePerformRequest(
      *request, targetOf(peer), std::make_shared<LeavingDelegate>(hasGone));
  EXPECT_TRUE(driveUntil([&] { return hasGone; }));
  EXPECT_EQ(handler->delegate(), nullptr);
}

/// Cancels before the exchange has begun.
class CancellingDelegate final : public HandlerRecorder {
 public:
  void requestWillSend(IPPConnectionHandler& told) override {
    HandlerRecorder::requestWillSend(told);
    EXPECT_EQ(told.delegate().get(), this);
    told.cancel();
  }
};

TEST(IPPConnectionHandlerAlone, NeverBeginsWhenItsDelegateCancelsAtOnce) {
  const auto request = makeRequest();
  ScriptedPeer peer({answering(200, makeAnswer())});
  const auto delegate = std::make_shared<CancellingDelegate>();
  const auto handler = IPPConnection::schedulePerformRequest(*request, targetOf(peer), delegate);
  EXPECT_EQ(handler->delegate(), nullptr);
  driveFor(milliseconds(60));
  EXPECT_EQ(delegate->calls, "W");
  EXPECT_EQ(peer.connectionCount(), 0U);
}

TEST(IPPConnectionHandlerAlone, GoesOnWhenItIsDropped) {
  const auto request = makeRequest();
  ScriptedPeer peer({answering(200, makeAnswer())});
  const auto delegate = std::make_shared<HandlerRecorder>();
  std::weak_ptr<IPPConnectionHandler> watched =
      IPPConnection::schedulePerformRequest(*request, targetOf(peer), delegate);
  EXPECT_FALSE(watched.expired());
  ASSERT_TRUE(driveUntil([&] { return delegate->calls.ends_with('F'); }));
  EXPECT_EQ(delegate->calls, "WORF");
  driveFor(milliseconds(1));
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace platen
