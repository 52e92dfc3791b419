// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "tests/adapters/Host.h"
#include "tests/support/RequestRecorder.h"
#include "tests/support/ScriptedPeer.h"

namespace platen::tests {

/// A peer that answers each request, on however many connections.
inline ScriptedPeer::Script answeringAll() {
  return [](PeerConnection& connection) {
    while (!connection.readRequest().empty()) {
      connection.answer(200, makeAnswer(), "Content-Type: application/ipp\r\n");
    }
  };
}

/// A peer that reads and never answers.
inline ScriptedPeer::Script silent() {
  return [](PeerConnection& connection) {
    connection.readRequest();
    connection.readToEnd();
  };
}

/// An exchange that the delegate of another starts.
struct InnerExchange {
  void start() const { request->sendTo(target); }

  std::shared_ptr<RequestRecorder> recorder;
  std::shared_ptr<IPPRequest> request;
  URL target;
};

/// What every adapter owes: the same tests run in each program with the host of that program.
class Adapter : public testing::Test {
 protected:
  /// Runs the host until the outcome is told, the octets after the response included.
  bool finish(const RequestRecorder& recorder) {
    return host->runUntil([&recorder] { return recorder.hasEnded(); });
  }
  /// Sends `recorder`'s request; returns what happened to it, in letters.
  std::string perform(const ScriptedPeer& peer,
                      std::shared_ptr<RequestRecorder> recorder = nullptr) {
    if (recorder == nullptr) {
      recorder = std::make_shared<RequestRecorder>();
    }
    const auto request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    finish(*recorder);
    return recorder->calls + ":" + std::to_string(recorder->code());
  }

  /// Performs an exchange whose delegate does this when it is told the outcome; both come to their
  /// ends.
  void performWithAnotherInside(const std::function<void(const InnerExchange&)>& act) {
    ScriptedPeer peer(2, answeringAll());
    const auto recorder = std::make_shared<RequestRecorder>();
    const InnerExchange inner{recorder, makeRequest(recorder), targetOf(peer)};
    const auto outer = std::make_shared<RequestRecorder>();
    outer->onCall = [&](char call, IPPRequest&) {
      if (call == 'O') {
        act(inner);
      }
    };
    EXPECT_EQ(perform(peer, outer), "WDORF:0");
    EXPECT_EQ(recorder->calls, "WDORF");
  }

  std::unique_ptr<Host> host = makeHost();
};

}  // namespace platen::tests
