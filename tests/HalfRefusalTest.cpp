// SPDX-License-Identifier: Apache-2.0
//
// Printers that begin to refuse a document and do not come to the end of it.

#include <gtest/gtest.h>

#include <string>

#include "platen/HTTP.h"
#include "tests/support/Pipe.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using tests::drive;
using tests::makeRequest;
using tests::PeerConnection;
using tests::Pipe;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::streamOf;
using tests::targetOf;

constexpr std::size_t kLarge = 8'000'000;  // more than any socket buffers

class HalfRefusal : public testing::TestWithParam<const char*> {
 protected:
  [[nodiscard]] static ScriptedPeer::Script refusingHalf(void (PeerConnection::*then)()) {
    return [then](auto& connection) {
      connection.readHead();
      connection.send(GetParam());
      connection.sleep(milliseconds(50));
      if (then != nullptr) {
        (connection.*then)();
      } else {
        connection.sleep(milliseconds(10'000));
      }
    };
  }

  void send(std::shared_ptr<InputStream> document, const ScriptedPeer& peer) {
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = std::move(document);
    request = makeRequest(recorder);
    request->setTimeInterval(0.4);
    request->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*recorder)) << GetParam();
    EXPECT_EQ(recorder->calls, "WDO");
  }

  void expectFailure() const {
    EXPECT_EQ(recorder->code(), 0x0502) << recorder->text();
    EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::networkConnectionLost))
        << recorder->text();
  }

  std::shared_ptr<RequestRecorder> recorder;
  std::shared_ptr<IPPRequest> request;
};

INSTANTIATE_TEST_SUITE_P(Beginnings, HalfRefusal,
                         testing::Values("H", "HTTP/1.1 4", "HTTP/1.1 503 Busy\r\n"),
                         [](const auto& tested) {
                           return "Of" + std::to_string(std::string(tested.param).size());
                         });

TEST_P(HalfRefusal, OfALargeDocumentFailsWhenThePrinterGoes) {
  for (const auto then : {&PeerConnection::close, &PeerConnection::reset}) {
    ScriptedPeer peer({refusingHalf(then)});
    send(streamOf(std::string(kLarge, 'x')), peer);
    expectFailure();
  }
}

TEST_P(HalfRefusal, OfALargeDocumentIsATimeOutWhenThePrinterStalls) {
  ScriptedPeer peer({refusingHalf(nullptr)});
  const auto begin = RunLoop::Clock::now();
  send(streamOf(std::string(kLarge, 'x')), peer);
  EXPECT_EQ(recorder->code(), 0x0405) << recorder->text();
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(5000));
}

TEST_P(HalfRefusal, OfADryDocumentFailsWhenThePrinterResets) {
  Pipe pipe;
  ScriptedPeer peer({refusingHalf(&PeerConnection::reset)});
  send(pipe.stream(), peer);
  expectFailure();
}

TEST_P(HalfRefusal, OfADryDocumentFailsWhenThePrinterCloses) {
  Pipe pipe;
  ScriptedPeer peer({refusingHalf(&PeerConnection::close)});
  send(pipe.stream(), peer);
  expectFailure();
}

TEST(HalfRefusalOfADryDocument, IsATimeOutWhenThePrinterStalls) {
  Pipe pipe;
  ScriptedPeer peer({[](auto& connection) {
    connection.readHead();
    connection.send("HTTP/1.1 503 Busy\r\n");
    connection.sleep(milliseconds(10'000));
  }});
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->document = pipe.stream();
  const auto request = makeRequest(recorder);
  request->setTimeInterval(0.4);
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->code(), 0x0405) << recorder->text();
}

}  // namespace
}  // namespace platen
