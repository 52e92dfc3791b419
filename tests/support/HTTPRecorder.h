// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platen/HTTP.h"

namespace platen::tests {

/// Notes down what a delegate is told.
class HTTPRecorder final : public HTTPConnectionDelegate {
 public:
  void connectionDidReceiveResponse(HTTPConnection& connection,
                                    const HTTPResponse& received) override {
    events += 'R';
    response = received;
    act(connection);
  }
  void connectionDidReceiveData(HTTPConnection& connection, Bytes bytes) override {
    if (!events.ends_with('D')) {
      events += 'D';
    }
    body.append(bytes.begin(), bytes.end());
    act(connection);
  }
  void connectionDidFinishLoading(HTTPConnection& connection) override {
    events += 'F';
    act(connection);
  }
  void connectionDidFailWithError(HTTPConnection& connection,
                                  std::shared_ptr<const Error> reason) override {
    events += 'E';
    error = std::move(reason);
    act(connection);
  }

  [[nodiscard]] bool hasEnded() const { return events.ends_with('F') || events.ends_with('E'); }
  [[nodiscard]] HTTPErrorCode code() const {
    return error == nullptr ? HTTPErrorCode{} : static_cast<HTTPErrorCode>(error->code());
  }
  [[nodiscard]] std::string text() const {
    return std::string(error == nullptr ? "" : error->localizedDescription().value_or(""));
  }

  /// One letter for each call: Response, Data (for any number in a row), Finished, Error.
  std::string events;
  HTTPResponse response;
  std::string body;
  std::shared_ptr<const Error> error;
  /// What to do within the calls.
  std::function<void(HTTPConnection&)> onEvent;

 private:
  void act(HTTPConnection& connection) const {
    if (onEvent) {
      onEvent(connection);
    }
  }
};

using Recorder = std::shared_ptr<HTTPRecorder>;

inline URL parseURL(std::string_view text) { return URL::parse(text).value(); }

inline std::shared_ptr<const Data> makeBody(std::string_view text) {
  return std::make_shared<Data>(text.begin(), text.end());
}

/// POST of a whole body, with a time-out that fails a test soon.
inline HTTPRequest makePost(std::string_view url, std::string_view body) {
  HTTPRequest request(parseURL(url));
  request.method = "POST";
  request.body = makeBody(body);
  request.timeoutInterval = 10;
  return request;
}

/// POST of a stream.
inline HTTPRequest makePost(std::string_view url, std::shared_ptr<InputStream> stream) {
  HTTPRequest request(parseURL(url));
  request.method = "POST";
  request.bodyStream = std::move(stream);
  request.setHeader("Transfer-Encoding", "chunked");
  request.timeoutInterval = 10;
  return request;
}

/// Turns `loop` until the exchange has ended, or for 20 seconds.
inline void drive(RunLoop& loop, const HTTPRecorder& recorder) {
  const auto deadline = RunLoop::Clock::now() + std::chrono::seconds(20);
  while (!recorder.hasEnded() && RunLoop::Clock::now() < deadline) {
    loop.runOnce(std::chrono::milliseconds(100));
  }
}

/// A whole exchange on `loop`.
inline Recorder perform(RunLoop& loop, HTTPRequest request) {
  auto recorder = std::make_shared<HTTPRecorder>();
  const auto connection = HTTPConnection::start(std::move(request), recorder, loop);
  drive(loop, *recorder);
  return recorder;
}

}  // namespace platen::tests
