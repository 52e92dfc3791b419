// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>

#include "tests/support/RequestRecorder.h"

namespace platen::tests {

/// Bounds what takes no time, on a machine that has other things to do, too: below every time-out
/// of `makeRequest`.
constexpr std::chrono::milliseconds kSoon(5000);

/// A request with a document, sent to a scripted peer.
class ScheduledDocument : public testing::Test {
 protected:
  void send(const ScriptedPeer& peer) {
    begin = RunLoop::Clock::now();
    request->sendTo(targetOf(peer));
  }
  [[nodiscard]] std::chrono::milliseconds elapsed() const {
    return std::chrono::duration_cast<std::chrono::milliseconds>(RunLoop::Clock::now() - begin);
  }
  void expectRefusal(std::int64_t status) const {
    EXPECT_EQ(recorder->calls, "WDO");
    EXPECT_EQ(recorder->underlyingCode(), status) << recorder->text();
    EXPECT_EQ(recorder->document->streamStatus(), StreamStatus::closed);
  }
  void expectResponse() const {
    EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
    EXPECT_EQ(recorder->error, nullptr);
  }

  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
  RunLoop::Clock::time_point begin;
};

}  // namespace platen::tests
