// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>

#include <atomic>
#include <condition_variable>
#include <ctime>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/adapters/Contract.h"
#include "tests/support/FakeNames.h"
#include "tests/support/Pipe.h"

namespace platen::tests {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// RFC 8011 Appendix B.
constexpr int kTimeout = 0x0405;
constexpr int kServiceUnavailable = 0x0502;

milliseconds since(Clock::time_point begin) {
  return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

milliseconds processorTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::duration_cast<milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                  std::chrono::nanoseconds(time.tv_nsec));
}

TEST_F(Adapter, CarriesAnExchangeToItsEndWithoutDelay) {
  ScriptedPeer peer({[](PeerConnection& connection) {
    connection.readRequest();
    connection.sleep(milliseconds(100));
    connection.answer(200, makeAnswer());
  }});
  const auto begin = Clock::now();
  EXPECT_EQ(perform(peer), "WDORF:0");
  EXPECT_GE(since(begin), milliseconds(90));
  EXPECT_LT(since(begin), milliseconds(3000));
}

TEST_F(Adapter, LetsNothingHappenBeforeTheLoopRuns) {
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  EXPECT_EQ(recorder->calls, "WD");
  std::this_thread::sleep_for(milliseconds(100));
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(peer.connectionCount(), 0U);
  EXPECT_TRUE(finish(*recorder));
}

TEST_F(Adapter, LetsEverythingHappenInsideItsTurns) {
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->room = OutputStream::toMemory();
  std::string inside;
  recorder->onCall = [&](char call, IPPRequest&) {
    if (host->isTurning()) {
      inside += call;
    }
  };
  EXPECT_EQ(perform(peer, recorder), "WDORF:0");
  EXPECT_EQ(inside, "ORF");
  EXPECT_EQ(recorder->lastThread, std::this_thread::get_id());
}

TEST_F(Adapter, TellsTheOutcomeOnceAndNoMore) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(finish(*recorder));
  host->runFor(milliseconds(100));
  EXPECT_EQ(recorder->calls, "WDORF");
}

TEST_F(Adapter, TellsNothingAfterACancelFromATimer) {
  ScriptedPeer peer({silent(), answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  bool isCancelled = false;
  const std::function<void()> cancelOnceAsked = [&] {
    if (peer.requests().empty()) {
      host->callLater(milliseconds(50), cancelOnceAsked);
      return;
    }
    request->cancel();
    isCancelled = true;
  };
  host->callLater(milliseconds(50), cancelOnceAsked);
  EXPECT_TRUE(host->runUntil([&] { return isCancelled; }));
  host->runFor(milliseconds(100));
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(perform(peer), "WDORF:0");
}

TEST_F(Adapter, TellsNothingAfterACancelBeforeTheFirstTurn) {
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  request->cancel();
  host->runFor(milliseconds(100));
  EXPECT_EQ(recorder->calls, "WD");
  EXPECT_EQ(peer.connectionCount(), 0U);
}

TEST_F(Adapter, LetsTheTimeOutFire) {
  ScriptedPeer peer({silent()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->setTimeInterval(0.2);
  const auto begin = Clock::now();
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(finish(*recorder));
  EXPECT_EQ(recorder->code(), kTimeout);
  EXPECT_EQ(recorder->calls, "WDO");
  EXPECT_GE(since(begin), milliseconds(190));
  EXPECT_LT(since(begin), milliseconds(5000));
}

TEST_F(Adapter, TellsOfARefusedConnection) {
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(*URL::parse("ipp://127.0.0.1:1/"));
  EXPECT_TRUE(finish(*recorder));
  EXPECT_EQ(recorder->code(), kServiceUnavailable);
}

URL named(const std::string& host, const ScriptedPeer& peer) {
  return *URL::parse("ipp://" + host + ":" + std::to_string(peer.port()) + "/");
}

TEST_F(Adapter, TakesLocalhostAsItIs) {
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(named("localhost", peer));
  EXPECT_TRUE(finish(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF");
}

TEST_F(Adapter, GoesOnAsSoonAsAThreadHasFoundTheName) {
  FakeNames names;
  names.set("printer.test", {"127.0.0.1"});
  names.block("printer.test");
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  const auto begin = Clock::now();
  request->sendTo(named("printer.test", peer));
  std::thread server([&names] {
    names.waitUntilBlocked();
    std::this_thread::sleep_for(milliseconds(100));  // by then the host waits
    names.release("printer.test");
  });
  EXPECT_TRUE(finish(*recorder));
  server.join();
  EXPECT_EQ(recorder->calls, "WDORF") << recorder->text();
  EXPECT_LT(since(begin), milliseconds(5000)) << "before the time-out would have looked";
}

TEST_F(Adapter, CarriesTwoExchangesAtOnce) {
  std::mutex mutex;
  std::condition_variable changed;
  int askedCount = 0;
  ScriptedPeer peer(2, [&](PeerConnection& connection) {
    connection.readRequest();
    std::unique_lock lock(mutex);
    ++askedCount;
    changed.notify_all();
    if (changed.wait_for(lock, std::chrono::seconds(10), [&] { return askedCount == 2; })) {
      connection.answer(200, makeAnswer(), "Content-Type: application/ipp\r\n");
    }
  });
  const auto first = std::make_shared<RequestRecorder>();
  const auto second = std::make_shared<RequestRecorder>();
  const auto firstRequest = makeRequest(first);
  const auto secondRequest = makeRequest(second);
  firstRequest->sendTo(targetOf(peer));
  secondRequest->sendTo(targetOf(peer));
  EXPECT_TRUE(finish(*first));
  EXPECT_TRUE(finish(*second));
  EXPECT_EQ(first->calls + " " + second->calls, "WDORF WDORF");
}

TEST_F(Adapter, StartsWhatATimerOfTheHostSchedules) {
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  const auto begin = Clock::now();
  for (std::size_t count = 1; count <= 3; ++count) {
    host->callLater(milliseconds(50), [&] {
      request->cancel();
      request->sendTo(targetOf(peer));
    });
    EXPECT_TRUE(host->runUntil([&] { return recorder->calls.size() == 5 * count; }));
  }
  EXPECT_EQ(recorder->calls, "WDORFWDORFWDORF");
  EXPECT_LT(since(begin), milliseconds(5000));
}

TEST_F(Adapter, SendsALongDocument) {
  const Data document(std::size_t{3} << 20, 'x');
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->document = InputStream::withData(document);
  EXPECT_EQ(perform(peer, recorder), "WDORF:0");
  const auto requests = peer.requests();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_TRUE(requests.front().ends_with(std::string(document.size(), 'x')));
}

TEST_F(Adapter, WaitsForADocumentThatIsNotThereYet) {
  for (const auto through : {Through::pipe, Through::socket}) {
    Source source(through);
    ScriptedPeer peer({answeringAll()});
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->document = source.stream();
    for (int piece = 0; piece < 3; ++piece) {
      host->callLater(milliseconds(100 * piece), [&] { source.write("page "); });
    }
    host->callLater(milliseconds(300), [&] { source.finish(); });
    EXPECT_EQ(perform(peer, recorder), "WDORF:0");
    ASSERT_EQ(peer.requests().size(), 1U);
    EXPECT_TRUE(peer.requests().front().ends_with("page page page "));
  }
}

TEST_F(Adapter, UsesNoProcessorTimeWhenIdle) {
  ScriptedPeer peer({answeringAll()});
  EXPECT_EQ(perform(peer), "WDORF:0");
  host->runFor(milliseconds(50));
  const auto before = processorTime();
  const int turnsBefore = host->turnCount();
  host->runFor(milliseconds(500));
  EXPECT_LE(host->turnCount() - turnsBefore, 5);
  EXPECT_LT(processorTime() - before, milliseconds(50));
}

TEST_F(Adapter, UsesNoProcessorTimeWhileItWaitsForAnAnswer) {
  ScriptedPeer peer({silent()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  host->runFor(milliseconds(50));
  const auto before = processorTime();
  const int turnsBefore = host->turnCount();
  host->runFor(milliseconds(500));
  EXPECT_LE(host->turnCount() - turnsBefore, 20);
  EXPECT_LT(processorTime() - before, milliseconds(50));
  EXPECT_EQ(recorder->calls, "WD");
}

TEST_F(Adapter, UsesNoProcessorTimeWhileADocumentIsDry) {
  Pipe pipe;
  std::atomic<bool> hasHead = false;
  ScriptedPeer peer({[&hasHead](PeerConnection& connection) {
    connection.readHead();
    hasHead = true;
    connection.readToEnd();
  }});
  const auto recorder = std::make_shared<RequestRecorder>();
  recorder->document = pipe.stream();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  while (!hasHead) {
    host->runFor(milliseconds(10));
  }
  host->runFor(milliseconds(50));
  const auto before = processorTime();
  const int turnsBefore = host->turnCount();
  host->runFor(milliseconds(500));
  EXPECT_LE(host->turnCount() - turnsBefore, 20);
  EXPECT_LT(processorTime() - before, milliseconds(50));
  EXPECT_EQ(recorder->calls, "WD");
  request->cancel();
}

TEST_F(Adapter, LeavesTheLoopAndItsDescriptorToTheNext) {
  ScriptedPeer peer(3, answeringAll());
  EXPECT_EQ(perform(peer), "WDORF:0");
  host->dropAdapter();
  EXPECT_NE(fcntl(RunLoop::current()->descriptor(), F_GETFD), -1);
  host->runFor(milliseconds(10));
  EXPECT_NE(fcntl(RunLoop::current()->descriptor(), F_GETFD), -1);
  host->makeAdapter();
  EXPECT_EQ(perform(peer), "WDORF:0");
  host = nullptr;
  EXPECT_NE(fcntl(RunLoop::current()->descriptor(), F_GETFD), -1);
  host = makeHost();
  EXPECT_EQ(perform(peer), "WDORF:0");
}

TEST_F(Adapter, TakesUpWhatWasScheduledBeforeItWasMade) {
  ScriptedPeer peer({answeringAll()});
  host->dropAdapter();
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  host->runFor(milliseconds(50));
  EXPECT_EQ(recorder->calls, "WD");
  host->makeAdapter();
  EXPECT_TRUE(finish(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF");
}

TEST_F(Adapter, WorksOnAnyThread) {
  host = nullptr;
  ScriptedPeer peer({answeringAll()});
  onOwnThread([&] {
    host = makeHost();
    EXPECT_EQ(perform(peer), "WDORF:0");
    host = nullptr;
  });
}

}  // namespace
}  // namespace platen::tests
