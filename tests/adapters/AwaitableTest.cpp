// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "platen/Awaitable.h"
#include "tests/support/RequestRecorder.h"
#include "tests/support/ScriptedPeer.h"

namespace platen::tests {
namespace {

using std::chrono::milliseconds;

/// A coroutine that begins at once; destroying the task destroys it. What it throws is let out to
/// whoever resumes it.
class Task {
 public:
  struct promise_type {
    Task get_return_object() { return Task(Handle::from_promise(*this)); }
    std::suspend_never initial_suspend() noexcept { return {}; }
    std::suspend_always final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { throw; }
  };
  using Handle = std::coroutine_handle<promise_type>;

  Task() = default;
  explicit Task(Handle handle) : handle_(handle) {}
  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(handle_, other.handle_);
    other.destroy();
    return *this;
  }
  ~Task() { destroy(); }

  void destroy() {
    if (const auto handle = std::exchange(handle_, nullptr)) {
      handle.destroy();
    }
  }
  [[nodiscard]] bool isDone() const { return handle_ && handle_.done(); }

 private:
  Handle handle_;
};

/// What coroutines of these tests note down.
struct Log {
  std::string text;
  std::shared_ptr<IPPResponse> response;
  std::shared_ptr<const Error> error;
};

Task ask(Log& log, std::shared_ptr<IPPRequest> request, URL target) {
  log.text += "begin ";
  auto [response, error] = co_await perform(std::move(request), std::move(target));
  log.text += response ? "response " : "none ";
  log.response = std::move(response);
  log.error = std::move(error);
}

bool finish(const Task& task) {
  return driveUntil([&task] { return task.isDone(); });
}

/// Reads and never answers.
void beSilent(PeerConnection& connection) {
  connection.readRequest();
  connection.readToEnd();
}

TEST(Awaitable, YieldsTheResponse) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  Log log;
  const auto task = ask(log, makeRequest(), targetOf(peer));
  EXPECT_EQ(log.text, "begin ");
  EXPECT_TRUE(finish(task));
  EXPECT_EQ(log.text, "begin response ");
  EXPECT_TRUE(log.response->successfulOk());
  EXPECT_EQ(log.error, nullptr);
}

TEST(Awaitable, YieldsTheStatusAsError) {
  constexpr int kNotFound = 0x0406;  // RFC 8011 Appendix B
  ScriptedPeer peer({answering(200, makeAnswer(kNotFound))});
  Log log;
  EXPECT_TRUE(finish(ask(log, makeRequest(), targetOf(peer))));
  EXPECT_EQ(log.text, "begin response ");
  ASSERT_NE(log.error, nullptr);
  EXPECT_EQ(log.error->code(), kNotFound);
}

TEST(Awaitable, YieldsTheFailure) {
  Log log;
  EXPECT_TRUE(finish(ask(log, makeRequest(), *URL::parse("ipp://127.0.0.1:1/"))));
  EXPECT_EQ(log.text, "begin none ");
  EXPECT_NE(log.error, nullptr);
}

Task sendDocument(std::shared_ptr<IPPRequest> request, URL target,
                  std::shared_ptr<OutputStream> rest) {
  const std::string_view document = "the document";
  co_await perform(std::move(request), std::move(target), streamOf(document), std::move(rest));
}

TEST(Awaitable, CarriesBothStreams) {
  ScriptedPeer peer({answering(200, makeAnswer() + "the rest")});
  const auto rest = OutputStream::toMemory();
  EXPECT_TRUE(finish(sendDocument(makeRequest(), targetOf(peer), rest)));
  ASSERT_EQ(peer.requests().size(), 1U);
  EXPECT_TRUE(peer.requests().front().ends_with("the document"));
  EXPECT_EQ(textOf(*rest->data()), "the rest");
}

Task askOften(Log& log, std::shared_ptr<IPPRequest> request, URL target, int count) {
  for (int number = 0; number < count; ++number) {
    EXPECT_FALSE(request->isInProgress());
    EXPECT_EQ(request->delegate(), nullptr);
    const auto [response, error] = co_await perform(request, target);
    log.text += response ? "response " : "none ";
  }
}

TEST(Awaitable, LeavesTheRequestReadyToBeSentAgain) {
  ScriptedPeer peer(3, [](PeerConnection& connection) {
    while (!connection.readRequest().empty()) {
      connection.answer(200, makeAnswer());
    }
  });
  Log log;
  const auto request = makeRequest();
  EXPECT_TRUE(finish(askOften(log, request, targetOf(peer), 3)));
  EXPECT_EQ(log.text, "response response response ");
  EXPECT_FALSE(request->isInProgress());
  EXPECT_EQ(request.use_count(), 1);
}

TEST(Awaitable, RunsManyAtOnce) {
  ScriptedPeer peer(5, answering(200, makeAnswer()));
  Log log;
  std::vector<Task> tasks;
  for (int number = 0; number < 5; ++number) {
    tasks.push_back(ask(log, makeRequest(), targetOf(peer)));
  }
  for (const auto& task : tasks) {
    EXPECT_TRUE(finish(task));
  }
}

TEST(Awaitable, ResumesOnceAndInsideATurn) {
  ScriptedPeer peer({answering(200, makeAnswer())});
  Log log;
  const auto task = ask(log, makeRequest(), targetOf(peer));
  ASSERT_TRUE(peer.connectionCount() == 0);
  std::this_thread::sleep_for(milliseconds(50));
  EXPECT_EQ(log.text, "begin ");
  EXPECT_TRUE(finish(task));
  driveFor(milliseconds(50));
  EXPECT_EQ(log.text, "begin response ");
}

TEST(Awaitable, CancelsWhenTheCoroutineIsDestroyed) {
  ScriptedPeer peer({beSilent});
  Log log;
  const auto request = makeRequest();
  auto task = ask(log, request, targetOf(peer));
  EXPECT_TRUE(driveUntil([&] { return peer.requests().size() == 1; }));
  task.destroy();
  EXPECT_FALSE(request->isInProgress());
  EXPECT_EQ(request.use_count(), 1);
  // The peer sees that the connection is closed.
  EXPECT_TRUE(peer.waitForScripts());
  driveFor(milliseconds(50));
  EXPECT_EQ(log.text, "begin ");
}

TEST(Awaitable, CancelsBeforeTheFirstTurn) {
  ScriptedPeer peer({beSilent});
  Log log;
  auto task = ask(log, makeRequest(), targetOf(peer));
  task.destroy();
  driveFor(milliseconds(50));
  EXPECT_EQ(log.text, "begin ");
  EXPECT_EQ(peer.connectionCount(), 0U);
}

TEST(Awaitable, MayBeDestroyedWithinACallbackOfAnother) {
  for (const char at : {'O', 'R', 'F'}) {
    ScriptedPeer silent({beSilent});
    ScriptedPeer peer({answering(200, makeAnswer())});
    Log log;
    auto task = ask(log, makeRequest(), targetOf(silent));
    EXPECT_TRUE(driveUntil([&] { return silent.requests().size() == 1; }));
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->onCall = [&](char call, IPPRequest&) {
      if (call == at) {
        task.destroy();
      }
    };
    const auto request = makeRequest(recorder);
    request->sendTo(targetOf(peer));
    EXPECT_TRUE(drive(*recorder));
    EXPECT_TRUE(silent.waitForScripts());
    EXPECT_EQ(log.text, "begin ");
  }
}

/// Destroys a task while it is being written to.
class DestroyingStream final : public OutputStream {
 public:
  explicit DestroyingStream(Task& task) : task_(task) {}
  void open() override { status_ = StreamStatus::open; }
  void close() override { status_ = StreamStatus::closed; }
  [[nodiscard]] StreamStatus streamStatus() const override { return status_; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  std::ptrdiff_t write(const std::uint8_t* /*bytes*/, std::size_t maxLength) override {
    task_.destroy();
    isDestroyed = true;
    return static_cast<std::ptrdiff_t>(maxLength);
  }
  [[nodiscard]] bool hasSpaceAvailable() const override { return true; }

  bool isDestroyed = false;

 private:
  Task& task_;
  StreamStatus status_ = StreamStatus::notOpen;
};

TEST(Awaitable, MayBeDestroyedWithinItsOwnExchange) {
  ScriptedPeer peer({answering(200, makeAnswer() + "the rest")});
  Task task;
  const auto rest = std::make_shared<DestroyingStream>(task);
  task = sendDocument(makeRequest(), targetOf(peer), rest);
  EXPECT_TRUE(driveUntil([&] { return rest->isDestroyed; }));
  driveFor(milliseconds(50));
}

Task destroyOther(Task& other, std::shared_ptr<IPPRequest> request, URL target) {
  co_await perform(std::move(request), std::move(target));
  other.destroy();
}

TEST(Awaitable, MayBeDestroyedByAnotherCoroutine) {
  ScriptedPeer silent({beSilent});
  ScriptedPeer peer({answering(200, makeAnswer())});
  Log log;
  auto other = ask(log, makeRequest(), targetOf(silent));
  EXPECT_TRUE(finish(destroyOther(other, makeRequest(), targetOf(peer))));
  driveFor(milliseconds(50));
  EXPECT_EQ(log.text, "begin ");
}

Task askAndThrow(std::shared_ptr<IPPRequest> request, URL target) {
  co_await perform(std::move(request), std::move(target));
  throw std::runtime_error("of the coroutine");
}

TEST(Awaitable, LetsAnExceptionOutOfTheRunLoopUnharmed) {
  ScriptedPeer peer({answering(200, makeAnswer()), answering(200, makeAnswer())});
  const auto request = makeRequest();
  const auto thrower = askAndThrow(request, targetOf(peer));
  EXPECT_THROW(finish(thrower), std::runtime_error);
  EXPECT_TRUE(thrower.isDone());
  EXPECT_FALSE(request->isInProgress());
  EXPECT_EQ(request.use_count(), 1);
  Log log;
  EXPECT_TRUE(finish(ask(log, makeRequest(), targetOf(peer))));
  EXPECT_EQ(log.text, "begin response ");
}

TEST(Awaitable, LetsAnExceptionAfterAFailureOutToo) {
  const auto request = makeRequest();
  const auto thrower = askAndThrow(request, *URL::parse("ipp://127.0.0.1:1/"));
  EXPECT_THROW(finish(thrower), std::runtime_error);
  EXPECT_EQ(request.use_count(), 1);
}

TEST(Awaitable, TakesTheRequestOverFromAnExchangeInProgress) {
  ScriptedPeer peer({beSilent, answering(200, makeAnswer())});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(driveUntil([&] { return peer.requests().size() == 1; }));
  Log log;
  EXPECT_TRUE(finish(ask(log, request, targetOf(peer))));
  EXPECT_EQ(log.text, "begin response ");
  EXPECT_EQ(recorder->calls, "WD");
}

TEST(Awaitable, LeavesARequestAloneThatWasTakenFromIt) {
  ScriptedPeer peer({beSilent, answering(200, makeAnswer())});
  Log log;
  const auto request = makeRequest();
  auto task = ask(log, request, targetOf(peer));
  EXPECT_TRUE(driveUntil([&] { return peer.requests().size() == 1; }));
  const auto recorder = std::make_shared<RequestRecorder>();
  request->cancel();
  request->setDelegate(recorder);
  request->sendTo(targetOf(peer));
  task.destroy();
  EXPECT_TRUE(drive(*recorder));
  EXPECT_EQ(recorder->calls, "WDORF");
  EXPECT_EQ(log.text, "begin ");
}

TEST(Awaitable, DoesNotWaitForARequestThatIsJustBeingStarted) {
  Log log;
  Task task;
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  recorder->onCall = [&](char call, IPPRequest&) {
    if (call == 'W') {
      task = ask(log, request, *URL::parse("ipp://127.0.0.1:1/"));
    }
  };
  request->sendTo(*URL::parse("ipp://127.0.0.1:1/"));
  EXPECT_TRUE(task.isDone());
  EXPECT_EQ(log.text, "begin none ");
  EXPECT_EQ(log.error, nullptr);
}

TEST(Awaitable, DoesNothingUnlessAwaited) {
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  { const auto unused = perform(request, *URL::parse("ipp://127.0.0.1:1/")); }
  EXPECT_EQ(recorder->calls, "");
  EXPECT_EQ(request->delegate(), recorder);
}

}  // namespace
}  // namespace platen::tests
