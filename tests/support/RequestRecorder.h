// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/RunLoop.h"
#include "tests/support/ScriptedPeer.h"

namespace platen::tests {

/// Notes down what the delegate of a request is told.
class RequestRecorder final : public IPPRequestDelegate {
 public:
  void requestWillSend(IPPRequest& request) override { note('W', request); }
  std::shared_ptr<InputStream> dataStreamForRequest(IPPRequest& request) override {
    note('D', request);
    return document;
  }
  void requestDidReceiveResponse(IPPRequest& request, const std::shared_ptr<IPPResponse>& received,
                                 const std::shared_ptr<const Error>& reason) override {
    response = received;
    error = reason;
    note('O', request);
  }
  std::shared_ptr<OutputStream> dataStreamForResponse(const std::shared_ptr<IPPResponse>& received,
                                                      IPPRequest& request) override {
    isSameResponse = isSameResponse && received == response;
    note('R', request);
    return room;
  }
  void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& received,
                                    const std::shared_ptr<OutputStream>& stream,
                                    IPPRequest& request) override {
    isSameResponse = isSameResponse && received == response;
    filled = stream;
    note('F', request);
  }

  [[nodiscard]] bool hasEnded() const {
    return calls.ends_with('F') || (calls.ends_with('O') && response == nullptr);
  }
  [[nodiscard]] std::int64_t code() const { return error == nullptr ? 0 : error->code(); }
  /// The code of what lies behind the error; 0 when nothing does.
  [[nodiscard]] std::int64_t underlyingCode() const {
    const auto underlying = error == nullptr ? nullptr : error->underlyingError();
    return underlying == nullptr ? 0 : underlying->code();
  }
  [[nodiscard]] std::string text() const { return error == nullptr ? "" : error->description(); }

  /// One letter for each call: Will send, Document?, Outcome, Room for the rest?, Filled.
  std::string calls;
  /// What the two questions are answered with.
  std::shared_ptr<InputStream> document;
  std::shared_ptr<OutputStream> room;
  /// What the last outcome was.
  std::shared_ptr<IPPResponse> response;
  std::shared_ptr<const Error> error;
  std::shared_ptr<OutputStream> filled;
  /// The later calls named the response of the outcome.
  bool isSameResponse = true;
  const IPPRequest* lastRequest = nullptr;
  std::thread::id lastThread;
  /// What to do within a call, given its letter.
  std::function<void(char, IPPRequest&)> onCall;

 private:
  void note(char call, IPPRequest& request) {
    calls += call;
    lastRequest = &request;
    lastThread = std::this_thread::get_id();
    if (const auto act = onCall) {
      act(call, request);
    }
  }
};

inline std::string textOf(const Data& data) { return {data.begin(), data.end()}; }

inline std::shared_ptr<InputStream> streamOf(std::string_view text) {
  return InputStream::withData(Data(text.begin(), text.end()));
}

/// Get-Printer-Attributes, with a time-out that fails a test soon.
inline std::shared_ptr<IPPRequest> makeRequest() {
  auto request = IPPRequest::printerAttributesRequest(*URL::parse("ipp://printer.test/ipp/print"));
  request->setTimeInterval(10);
  return request;
}

inline std::shared_ptr<IPPRequest> makeRequest(const std::shared_ptr<RequestRecorder>& recorder) {
  auto request = makeRequest();
  request->setDelegate(recorder);
  return request;
}

/// An encoded response.
inline std::string makeAnswer(std::int32_t status = 0) {
  return textOf(IPPResponse::initWithStatusCode(status)->dataRepresentation());
}

inline URL targetOf(const ScriptedPeer& peer, std::string_view path = "/ipp/print") {
  return *URL::parse("ipp://127.0.0.1:" + std::to_string(peer.port()) + std::string(path));
}

/// A script that reads one request and answers it.
inline ScriptedPeer::Script answering(
    int status, std::string body, std::string moreHeaders = "Content-Type: application/ipp\r\n") {
  return [status, body = std::move(body), moreHeaders = std::move(moreHeaders)](auto& connection) {
    connection.readRequest();
    connection.answer(status, body, moreHeaders);
  };
}

/// Turns the thread's loop until `isDone`, or for that long; returns whether it is.
inline bool driveUntil(const std::function<bool()>& isDone,
                       std::chrono::seconds limit = std::chrono::seconds(20)) {
  const auto deadline = RunLoop::Clock::now() + limit;
  while (!isDone() && RunLoop::Clock::now() < deadline) {
    RunLoop::current()->runOnce(std::chrono::milliseconds(100));
  }
  return isDone();
}

inline bool drive(const RequestRecorder& recorder,
                  std::chrono::seconds limit = std::chrono::seconds(20)) {
  return driveUntil([&recorder] { return recorder.hasEnded(); }, limit);
}

/// Turns the thread's loop for a while in which something might still happen.
inline void driveFor(std::chrono::milliseconds duration) {
  const auto deadline = RunLoop::Clock::now() + duration;
  while (RunLoop::Clock::now() < deadline) {
    RunLoop::current()->runOnce(
        std::chrono::ceil<std::chrono::milliseconds>(deadline - RunLoop::Clock::now()));
  }
}

/// Runs a test's part on a thread, and so on a run loop, of its own, both of which are gone on
/// return.
inline void onOwnThread(const std::function<void()>& part) { std::thread(part).join(); }

/// How many descriptors the process has open.
inline std::size_t descriptorCount() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

}  // namespace platen::tests
