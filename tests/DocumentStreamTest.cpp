// SPDX-License-Identifier: Apache-2.0
//
// What an exchange asks of the stream that its document comes from, and what becomes of one that
// misbehaves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
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
using tests::Source;
using tests::targetOf;
using tests::Through;

class DocumentStream : public testing::Test {
 protected:
  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
};

// --- Waiting for octets --------------------------------------------------------------------------

/// The same over a pipe and over a socket.
class WaitingStream : public DocumentStream, public tests::WithEachSource {
 protected:
  /// Notes that it has got the head, reads all of the body and answers.
  [[nodiscard]] ScriptedPeer::Script takingAll() {
    return [this](auto& connection) {
      const auto head = connection.readHead();
      hasHead = true;
      received = connection.readBody(head);
      connection.answer(200, makeAnswer(), "Content-Type: application/ipp\r\n");
    };
  }
  /// Lets the exchange come to where it has sent what there is, and waits for more.
  void driveUntilWaiting() const {
    ASSERT_TRUE(driveUntil([this] { return hasHead.load(); }));
    turn(5, milliseconds(10));
  }
  static void turn(int count, milliseconds wait) {
    for (int i = 0; i < count; ++i) {
      RunLoop::current()->runOnce(wait);
    }
  }
  void expectResponse(std::string_view document) const {
    EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
    EXPECT_THAT(received, EndsWith(document));
  }

  Source source{GetParam()};
  std::atomic<bool> hasHead = false;
  std::string received;
};

INSTANTIATE_TEST_SUITE_P(Source, WaitingStream, testing::Values(Through::pipe, Through::socket),
                         WaitingStream::nameOf);

constexpr int kRounds = 20;

/// Gives the sender a sign for each chunk of one octet that has arrived, "1 CRLF x CRLF", after a
/// first chunk with that many octets.
ScriptedPeer::Script echoing(std::size_t first, std::atomic<bool>& hasHead, const Pipe& back) {
  return [first, &hasHead, &back](auto& connection) {
    connection.readHead();
    hasHead = true;
    char length[20];
    connection.readSome(std::snprintf(length, sizeof length, "%zx", first) + 2 + first + 2);
    for (int round = 0; round < kRounds; ++round) {
      connection.readSome(6);
      back.write("x");
    }
  };
}

/// Takes one sign, for which it waits without turning any loop.
bool takeSign(const Pipe& back) {
  pollfd entry{back.readingEnd(), POLLIN, 0};
  char sign = 0;
  return poll(&entry, 1, 5000) == 1 && read(back.readingEnd(), &sign, 1) == 1;
}

TEST_P(WaitingStream, IsSentOnAsSoonAsItHasOctets) {
  Pipe back;
  ScriptedPeer peer({echoing(request->dataRepresentation().size(), hasHead, back)});
  recorder->document = source.stream();
  request->sendTo(targetOf(peer));
  driveUntilWaiting();
  // In turns that wait for nothing, so that a timer, which would ask now and then, is of no use.
  for (int round = 0; round < kRounds; ++round) {
    source.write("x");
    turn(5, milliseconds(0));
    ASSERT_TRUE(takeSign(back)) << round;
  }
  request->cancel();
}

TEST_P(WaitingStream, NeedsNoTurnsWhileItIsDry) {
  ScriptedPeer peer({takingAll()});
  recorder->document = source.stream();
  request->sendTo(targetOf(peer));
  driveUntilWaiting();
  int turns = 0;
  const auto end = RunLoop::Clock::now() + milliseconds(500);
  for (; RunLoop::Clock::now() < end; ++turns) {
    RunLoop::current()->runOnce(milliseconds(100));
  }
  EXPECT_LE(turns, 10);
  request->cancel();
}

TEST_P(WaitingStream, KeepsTheDelegateThatItHad) {
  ScriptedPeer peer({takingAll()});
  const auto delegate = std::make_shared<EventCount>();
  recorder->document = source.stream();
  recorder->document->setDelegate(delegate);
  request->sendTo(targetOf(peer));
  driveUntilWaiting();
  source.write("the document");
  EXPECT_TRUE(driveUntil([&] { return delegate->count >= 1; }));
  source.finish();
  ASSERT_TRUE(drive(*recorder));
  expectResponse("the document");
  EXPECT_EQ(recorder->document->delegate(), delegate);
}

TEST_P(WaitingStream, GoesOnAfterWhatItsDelegateThrows) {
  ScriptedPeer peer({takingAll()});
  const auto delegate = std::make_shared<EventCount>();
  delegate->onEvent = [] { throw std::runtime_error("a delegate's own"); };
  recorder->document = source.stream();
  recorder->document->setDelegate(delegate);
  request->sendTo(targetOf(peer));
  driveUntilWaiting();
  source.write("the document");
  source.finish();
  EXPECT_THROW(drive(*recorder), std::runtime_error);
  delegate->onEvent = nullptr;
  ASSERT_TRUE(drive(*recorder));
  expectResponse("the document");
}

TEST_P(WaitingStream, MayHaveADelegateThatCancels) {
  ScriptedPeer peer({takingAll()});
  const auto document = source.stream();
  const auto delegate = std::make_shared<EventCount>();
  document->setDelegate(delegate);
  const auto http = std::make_shared<tests::HTTPRecorder>();
  const auto connection =
      HTTPConnection::start(tests::makePost(peer.url(), document), http, *RunLoop::current());
  delegate->onEvent = [&] { connection->cancel(); };
  driveUntilWaiting();
  source.write("some of it");
  EXPECT_TRUE(driveUntil([&] { return delegate->count >= 1; }));
  driveFor(milliseconds(50));
  EXPECT_EQ(delegate->count, 1);
  EXPECT_EQ(http->events, "");
  EXPECT_EQ(document->streamStatus(), StreamStatus::closed);
}

TEST_P(WaitingStream, MayShareItsDescriptorWithAnotherReader) {
  ScriptedPeer peer({takingAll()});
  recorder->document = source.stream();
  request->sendTo(targetOf(peer));
  driveUntilWaiting();
  source.write("taken by the other");
  std::array<std::uint8_t, 64> room{};
  const auto other = source.stream();
  other->open();
  EXPECT_EQ(other->read(room.data(), room.size()), 18);
  driveFor(milliseconds(50));
  source.write("the document");
  source.finish();
  ASSERT_TRUE(drive(*recorder));
  expectResponse("the document");
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
