// SPDX-License-Identifier: Apache-2.0
//
// What an exchange asks of the stream that its document comes from, and what becomes of one that
// misbehaves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/EventCount.h"
#include "tests/support/HTTPRecorder.h"
#include "tests/support/Pipe.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::HasSubstr;
using tests::answering;
using tests::drive;
using tests::driveFor;
using tests::driveUntil;
using tests::EventCount;
using tests::makeAnswer;
using tests::makeRequest;
using tests::Pipe;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::targetOf;

class DocumentStream : public testing::Test {
 protected:
  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
};

// --- Waiting for octets --------------------------------------------------------------------------

constexpr int kRounds = 200;

/// Gives the sender a sign for each chunk of one octet that has arrived, "1 CRLF x CRLF".
ScriptedPeer::Script echoing(const Pipe& back) {
  return [&back](auto& connection) {
    connection.readHead();
    for (int sign = 0; sign < 2 * kRounds; ++sign) {  // the first of them are for the message
      connection.readSome(6);
      back.write("x");
    }
  };
}

TEST_F(DocumentStream, IsSentOnAsSoonAsItHasOctets) {
  Pipe pipe;
  Pipe back;
  ScriptedPeer peer({echoing(back)});
  recorder->document = pipe.stream();
  request->sendTo(targetOf(peer));
  const auto echo = back.stream();
  echo->open();
  std::array<std::uint8_t, 4096> room{};
  // With a pause of 20 ms in each round they took 4 s.
  const auto begin = RunLoop::Clock::now();
  for (int round = 0; round < kRounds; ++round) {
    pipe.write("x");
    ASSERT_TRUE(driveUntil([&] { return echo->hasBytesAvailable(); }));
    while (echo->hasBytesAvailable()) {
      ASSERT_GT(echo->read(room.data(), room.size()), 0);
    }
  }
  EXPECT_LT(RunLoop::Clock::now() - begin, milliseconds(3000));
  request->cancel();
}

TEST_F(DocumentStream, NeedsNoTurnsWhileItIsDry) {
  Pipe pipe;
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = pipe.stream();
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(100));
  int turns = 0;
  const auto end = RunLoop::Clock::now() + milliseconds(500);
  for (; RunLoop::Clock::now() < end; ++turns) {
    RunLoop::current()->runOnce(milliseconds(100));
  }
  EXPECT_LE(turns, 10);
  request->cancel();
}

TEST_F(DocumentStream, KeepsTheDelegateThatItHad) {
  Pipe pipe;
  ScriptedPeer peer({answering(200, makeAnswer())});
  const auto delegate = std::make_shared<EventCount>();
  recorder->document = pipe.stream();
  recorder->document->setDelegate(delegate);
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(50));
  pipe.write("the document");
  driveFor(milliseconds(50));
  EXPECT_GE(delegate->count, 1);
  pipe.finish();
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_THAT(peer.requests().at(0), EndsWith("the document"));
  EXPECT_EQ(recorder->document->delegate(), delegate);
}

TEST_F(DocumentStream, GoesOnAfterWhatItsDelegateThrows) {
  Pipe pipe;
  ScriptedPeer peer({answering(200, makeAnswer())});
  const auto delegate = std::make_shared<EventCount>();
  delegate->onEvent = [] { throw std::runtime_error("a delegate's own"); };
  recorder->document = pipe.stream();
  recorder->document->setDelegate(delegate);
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(50));
  pipe.write("the document");
  pipe.finish();
  EXPECT_THROW(drive(*recorder), std::runtime_error);
  delegate->onEvent = nullptr;
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_THAT(peer.requests().at(0), EndsWith("the document"));
}

TEST_F(DocumentStream, MayHaveADelegateThatCancels) {
  Pipe pipe;
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  const auto document = pipe.stream();
  const auto delegate = std::make_shared<EventCount>();
  document->setDelegate(delegate);
  const auto http = std::make_shared<tests::HTTPRecorder>();
  const auto url = "http://127.0.0.1:" + std::to_string(peer.port()) + "/";
  const auto connection =
      HTTPConnection::start(tests::makePost(url, document), http, *RunLoop::current());
  delegate->onEvent = [&] { connection->cancel(); };
  driveFor(milliseconds(50));
  pipe.write("some of it");
  driveFor(milliseconds(50));
  EXPECT_EQ(delegate->count, 1);
  EXPECT_EQ(http->events, "");
  EXPECT_EQ(document->streamStatus(), StreamStatus::closed);
}

TEST_F(DocumentStream, MayShareItsPipeWithAnotherReader) {
  Pipe pipe;
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = pipe.stream();
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(50));
  pipe.write("taken by the other");
  std::array<std::uint8_t, 64> room{};
  const auto other = pipe.stream();
  other->open();
  EXPECT_EQ(other->read(room.data(), room.size()), 18);
  driveFor(milliseconds(50));
  pipe.write("the document");
  pipe.finish();
  ASSERT_TRUE(drive(*recorder));
  EXPECT_THAT(peer.requests().at(0), EndsWith("the document"));
}

// --- Streams that throw --------------------------------------------------------------------------

/// Throws in one of its operations, at the given call of it.
class ThrowingStream final : public InputStream {
 public:
  ThrowingStream(std::string operation, int call)
      : operation_(std::move(operation)), callsLeft_(call) {}

  void open() override {
    noteCall("open");
    status_ = StreamStatus::open;
  }
  void close() override { noteCall("close"); }
  [[nodiscard]] StreamStatus streamStatus() const override {
    noteCall("streamStatus");
    return status_;
  }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override {
    noteCall("streamError");
    return nullptr;
  }
  [[nodiscard]] bool hasBytesAvailable() const override {
    noteCall("hasBytesAvailable");
    return operation_ != "scheduleInRunLoop";
  }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t /*maxLength*/) override {
    noteCall("read");
    if (operation_ == "streamError") {
      status_ = StreamStatus::error;
      return -1;
    }
    *destination = 'x';
    return 1;
  }
  bool scheduleInRunLoop(RunLoop& /*loop*/, std::string_view /*mode*/) override {
    noteCall("scheduleInRunLoop");
    return true;
  }

 private:
  void noteCall(std::string_view operation) const {
    if (operation == operation_ && --callsLeft_ == 0) {
      throw std::runtime_error("the scanner is on fire");
    }
  }

  std::string operation_;
  mutable int callsLeft_;
  StreamStatus status_ = StreamStatus::notOpen;
};

TEST_F(DocumentStream, FailsTheExchangeWhenItThrows) {
  const std::vector<std::pair<std::string, int>> faults{
      {"open", 1}, {"hasBytesAvailable", 1}, {"hasBytesAvailable", 2}, {"read", 1},
      {"read", 3}, {"streamStatus", 1},      {"streamError", 1}};
  for (const auto& [operation, call] : faults) {
    ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
    recorder = std::make_shared<RequestRecorder>();
    recorder->document = std::make_shared<ThrowingStream>(operation, call);
    request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*recorder)) << operation;
    EXPECT_EQ(recorder->calls, "WDO");
    EXPECT_EQ(recorder->underlyingCode(), static_cast<int>(HTTPErrorCode::bodyStreamFailed));
    EXPECT_THAT(recorder->error->underlyingError()->underlyingError()->description(),
                HasSubstr("the scanner is on fire"));
  }
}

TEST_F(DocumentStream, IsAskedWhenItThrowsInsteadOfTelling) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = std::make_shared<ThrowingStream>("scheduleInRunLoop", 1);
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(100));
  EXPECT_EQ(recorder->calls, "WD");
  request->cancel();
}

TEST_F(DocumentStream, MayThrowWhenItIsClosed) {
  ScriptedPeer peer({[](auto& connection) { connection.readToEnd(); }});
  recorder->document = std::make_shared<ThrowingStream>("close", 1);
  request->sendTo(targetOf(peer));
  driveFor(milliseconds(50));
  EXPECT_NO_THROW(request->cancel());
}

/// Runs the loop whenever it is asked something.
class LoopingStream final : public InputStream {
 public:
  explicit LoopingStream(std::string text) : text_(std::move(text)) {}

  void open() override { status_ = StreamStatus::open; }
  void close() override { status_ = StreamStatus::closed; }
  [[nodiscard]] StreamStatus streamStatus() const override { return turned(status_); }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  [[nodiscard]] bool hasBytesAvailable() const override { return turned(true); }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t /*maxLength*/) override {
    turned(true);
    if (given_ == text_.size()) {
      status_ = StreamStatus::atEnd;
      return 0;
    }
    *destination = static_cast<std::uint8_t>(text_[given_++]);
    return 1;
  }

 private:
  template <typename Answer>
  static Answer turned(Answer answer) {
    RunLoop::current()->runOnce(milliseconds(0));
    return answer;
  }

  std::string text_;
  std::size_t given_ = 0;
  StreamStatus status_ = StreamStatus::notOpen;
};

TEST_F(DocumentStream, MayRunTheLoopWheneverItIsAsked) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  recorder->document = std::make_shared<LoopingStream>("every octet of the document");
  request->sendTo(targetOf(peer));
  ASSERT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_THAT(peer.requests().at(0), EndsWith("every octet of the document"));
}

// --- Delegates that throw ------------------------------------------------------------------------

TEST_F(DocumentStream, OfOneExchangeDoesNotWaitForTheDelegateOfAnother) {
  constexpr int kCount = 8;
  ScriptedPeer peer(kCount, answering(200, makeAnswer()));
  std::vector<std::shared_ptr<RequestRecorder>> recorders;
  std::vector<std::shared_ptr<IPPRequest>> requests;
  for (int i = 0; i < kCount; ++i) {
    recorders.push_back(std::make_shared<RequestRecorder>());
    recorders.back()->onCall = [](char call, IPPRequest&) {
      if (call == 'O') {
        throw std::runtime_error("a delegate's own");
      }
    };
    requests.push_back(makeRequest(recorders.back()));
    requests.back()->sendTo(targetOf(peer));
  }
  int thrown = 0;
  const auto allTold = [&] {
    return std::all_of(recorders.begin(), recorders.end(),
                       [](const auto& each) { return each->calls == "WDO"; });
  };
  const auto deadline = RunLoop::Clock::now() + std::chrono::seconds(20);
  while (!allTold() && RunLoop::Clock::now() < deadline) {
    try {
      RunLoop::current()->runOnce(milliseconds(100));
    } catch (const std::runtime_error&) {
      ++thrown;
    }
  }
  EXPECT_TRUE(allTold());
  EXPECT_EQ(thrown, kCount);
}

}  // namespace
}  // namespace platen
