// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "tests/adapters/Host.h"
#include "tests/support/RequestRecorder.h"
#include "tests/support/ScriptedPeer.h"

namespace platen::tests {

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

  std::unique_ptr<Host> host = makeHost();
};

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

}  // namespace platen::tests
