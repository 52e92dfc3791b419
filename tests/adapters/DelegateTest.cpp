// SPDX-License-Identifier: Apache-2.0

#include <stdexcept>
#include <string_view>

#include "platen/IPPConnection.h"
#include "tests/adapters/Contract.h"

namespace platen::tests {
namespace {

using std::chrono::milliseconds;

// By then no timer of an earlier exchange runs any more, which would help one that is stuck.
constexpr milliseconds kQuiet(500);
// An exchange that is stuck is not helped by its own time-out.
constexpr milliseconds kBeforeATimeOut(5000);

/// What a delegate does from within one of its operations, and what it is told then.
struct Case {
  char call;
  std::string_view told;
};

TEST_F(Adapter, LetsADelegateCancelInEachCall) {
  constexpr Case kCases[] = {{'W', "WD"}, {'D', "WD"}, {'O', "WDO"}, {'R', "WDOR"}, {'F', "WDORF"}};
  for (const auto& [at, told] : kCases) {
    ScriptedPeer peer({answeringAll()});
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->onCall = [at = at](char call, IPPRequest& request) {
      if (call == at) {
        request.cancel();
      }
    };
    const auto request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    EXPECT_TRUE(host->runUntil([&] { return recorder->calls == told; }));
    host->runFor(milliseconds(50));
    EXPECT_EQ(recorder->calls, told);
    EXPECT_FALSE(request->isInProgress());
  }
}

TEST_F(Adapter, LetsADelegateSendAgainInEachCall) {
  constexpr Case kCases[] = {{'O', "WDOWDORF"}, {'R', "WDORWDORF"}, {'F', "WDORFWDORF"}};
  for (const auto& [at, told] : kCases) {
    ScriptedPeer peer(2, answeringAll());
    const auto recorder = std::make_shared<RequestRecorder>();
    bool isSentAgain = false;
    recorder->onCall = [&, at = at](char call, IPPRequest& request) {
      if (call == at && !std::exchange(isSentAgain, true)) {
        request.cancel();
        request.sendTo(targetOf(peer));
      }
    };
    const auto request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    EXPECT_TRUE(host->runUntil([&] { return recorder->calls == told; }));
    host->runFor(milliseconds(50));
    EXPECT_EQ(recorder->calls, told);
  }
}

TEST_F(Adapter, LetsADelegateSendAgainAfterAFailure) {
  ScriptedPeer peer({[](PeerConnection& connection) { connection.close(); }, answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->onCall = [&](char call, IPPRequest& request) {
    if (call == 'O' && recorder->response == nullptr) {
      request.cancel();
      request.sendTo(targetOf(peer));
    }
  };
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(host->runUntil([&] { return recorder->calls.ends_with('F'); }));
  EXPECT_EQ(recorder->calls, "WDOWDORF");
}

TEST_F(Adapter, LetsADelegateDropTheRequestInEachCall) {
  for (const char at : {'W', 'D', 'O', 'R', 'F'}) {
    ScriptedPeer peer({answeringAll()});
    const auto recorder = std::make_shared<RequestRecorder>();
    auto request = makeRequest(recorder);
    const std::weak_ptr<IPPRequest> watcher = request;
    recorder->onCall = [&](char call, IPPRequest&) {
      if (call == at) {
        request = nullptr;
      }
    };
    request->sendTo(targetOf(peer));
    EXPECT_TRUE(finish(*recorder));
    EXPECT_EQ(recorder->calls, "WDORF");
    EXPECT_TRUE(host->runUntil([&] { return watcher.expired(); }));
  }
}

TEST_F(Adapter, LetsADelegateGoInEachCall) {
  for (const char at : {'O', 'R', 'F'}) {
    ScriptedPeer peer({answeringAll()});
    auto recorder = std::make_shared<RequestRecorder>();
    const std::weak_ptr<RequestRecorder> watcher = recorder;
    recorder->onCall = [&](char call, IPPRequest&) {
      if (call == at) {
        recorder = nullptr;
      }
    };
    const auto request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    EXPECT_TRUE(host->runUntil([&] { return watcher.expired(); }));
    host->runFor(milliseconds(50));
  }
}

/// A delegate that holds the exchange itself, and drops it where it is told to.
struct HandlerHolder final : IPPConnectionDelegate {
  void requestDidReceiveResponse(IPPConnectionHandler& /*handler*/,
                                 const std::shared_ptr<IPPResponse>& /*response*/,
                                 const std::shared_ptr<const Error>& /*error*/) override {
    note('O');
  }
  std::shared_ptr<OutputStream> dataStreamForResponse(
      const std::shared_ptr<IPPResponse>& /*response*/,
      IPPConnectionHandler& /*handler*/) override {
    note('R');
    return nullptr;
  }
  void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& /*response*/,
                                    const std::shared_ptr<OutputStream>& /*stream*/,
                                    IPPConnectionHandler& /*handler*/) override {
    note('F');
  }
  void note(char call) {
    calls += call;
    if (call == at) {
      handler = nullptr;
    }
  }

  std::shared_ptr<IPPConnectionHandler> handler;
  std::string calls;
  char at = 0;
};

TEST_F(Adapter, LetsADelegateDropTheHandlerInEachCall) {
  for (const char at : {'O', 'R', 'F'}) {
    ScriptedPeer peer({answeringAll()});
    const auto request = makeRequest();
    const auto holder = std::make_shared<HandlerHolder>();
    holder->at = at;
    holder->handler = IPPConnection::schedulePerformRequest(*request, targetOf(peer), holder);
    const std::weak_ptr<IPPConnectionHandler> watcher = holder->handler;
    EXPECT_TRUE(host->runUntil([&] { return holder->calls.ends_with('F'); }));
    EXPECT_EQ(holder->calls, "ORF");
    EXPECT_TRUE(host->runUntil([&] { return watcher.expired(); }));
  }
}

TEST_F(Adapter, MayBeDroppedInEachCall) {
  for (const char at : {'O', 'R', 'F'}) {
    ScriptedPeer peer(2, answeringAll());
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->onCall = [&](char call, IPPRequest&) {
      if (call == at) {
        host->dropAdapter();
      }
    };
    const auto request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    // The turn is carried to its end.
    EXPECT_TRUE(finish(*recorder));
    EXPECT_EQ(recorder->calls, "WDORF");
    request->cancel();
    request->sendTo(targetOf(peer));
    host->runFor(milliseconds(50));
    EXPECT_EQ(recorder->calls, "WDORFWD");
    recorder->onCall = nullptr;
    host->makeAdapter();
    EXPECT_TRUE(finish(*recorder));
    request->cancel();
  }
}

TEST_F(Adapter, MayBeReplacedWithinACall) {
  ScriptedPeer peer(2, answeringAll());
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->onCall = [&](char call, IPPRequest&) {
    if (call == 'O') {
      host->dropAdapter();
      host->makeAdapter();
    }
  };
  EXPECT_EQ(perform(peer, recorder), "WDORF:0");
  EXPECT_EQ(perform(peer), "WDORF:0");
}

TEST_F(Adapter, GoesOnAfterWhatADelegateThrows) {
  if (!host->passesExceptions()) {
    GTEST_SKIP() << "this host does not pass exceptions on";
  }
  for (const char at : {'O', 'R', 'F'}) {
    ScriptedPeer peer(2, answeringAll());
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->onCall = [&](char call, IPPRequest&) {
      if (call == at) {
        throw std::runtime_error("of the delegate");
      }
    };
    EXPECT_THROW(perform(peer, recorder), std::runtime_error);
    EXPECT_EQ(recorder->calls.back(), at);
    EXPECT_EQ(perform(peer), "WDORF:0");
  }
}

TEST_F(Adapter, LetsADelegateBlock) {
  ScriptedPeer peer(3, answeringAll());
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->onCall = [&](char call, IPPRequest&) {
    if (call == 'O') {
      EXPECT_NE(makeRequest()->performOn(targetOf(peer)), nullptr);
    }
  };
  EXPECT_EQ(perform(peer, recorder), "WDORF:0");
}

TEST_F(Adapter, LetsADelegateTurnTheRunLoopItself) {
  performWithAnotherInside([](const InnerExchange& inner) {
    inner.start();
    EXPECT_TRUE(drive(*inner.recorder));
  });
}

TEST_F(Adapter, LetsADelegateRunTheHost) {
  if (!host->mayNest()) {
    GTEST_SKIP() << "this host does not allow it";
  }
  performWithAnotherInside([this](const InnerExchange& inner) {
    host->runFor(kQuiet);
    inner.start();
    EXPECT_TRUE(host->runUntil([&] { return inner.recorder->hasEnded(); }, kBeforeATimeOut));
  });
}

TEST_F(Adapter, StartsWhatATimerSchedulesWhileADelegateRunsTheHost) {
  if (!host->mayNest()) {
    GTEST_SKIP() << "this host does not allow it";
  }
  performWithAnotherInside([this](const InnerExchange& inner) {
    host->callLater(kQuiet, [&inner] { inner.start(); });
    EXPECT_TRUE(
        host->runUntil([&] { return inner.recorder->hasEnded(); }, kQuiet + kBeforeATimeOut));
  });
}

TEST_F(Adapter, MayBeDroppedWhileADelegateRunsTheHost) {
  if (!host->mayNest()) {
    GTEST_SKIP() << "this host does not allow it";
  }
  performWithAnotherInside([this](const InnerExchange& inner) {
    inner.recorder->onCall = [this](char call, IPPRequest&) {
      if (call == 'O') {
        host->dropAdapter();
      }
    };
    inner.start();
    EXPECT_TRUE(finish(*inner.recorder));
    host->runFor(milliseconds(20));
  });
}

}  // namespace
}  // namespace platen::tests
