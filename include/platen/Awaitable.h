// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Requests in coroutines.

#include <coroutine>
#include <memory>
#include <utility>

#include "platen/Error.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/IPPScheduledRequest.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// What became of a request: a response, and its `status` as `error` when
/// `IPPResponse::successfulOk` is false; or no response, and the failure as `error`. A success with
/// reservations (successful-ok-ignored-or-substituted-attributes, ...) comes with a null `error`:
/// look at `IPPResponse::statusCode`.
///
/// Threads: a plain value; one thread at a time.
struct PerformResult {
  std::shared_ptr<IPPResponse> response;
  std::shared_ptr<const Error> error;
};

/// What `perform` returns, to be awaited once. It lives in the frame of the coroutine that awaits
/// it.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class PerformAwaitable {
 public:
  /// Of use to `perform` only, which says what the arguments are.
  PerformAwaitable(std::shared_ptr<IPPRequest> request, URL target,
                   std::shared_ptr<InputStream> documentStream,
                   std::shared_ptr<OutputStream> responseStream)
      : request_(std::move(request)),
        target_(std::move(target)),
        delegate_(std::make_shared<Delegate>()) {
    delegate_->documentStream = std::move(documentStream);
    delegate_->responseStream = std::move(responseStream);
  }
  PerformAwaitable(const PerformAwaitable&) = delete;
  PerformAwaitable& operator=(const PerformAwaitable&) = delete;
  /// Cancels the exchange when it is in progress.
  ~PerformAwaitable() { letGo(); }

  // NOLINTBEGIN(readability-identifier-naming): names that the language looks for
  [[nodiscard]] bool await_ready() const noexcept { return false; }

  /// Starts the exchange. Does not suspend when the request refuses to start one. Returns whether
  /// it suspends. What the delegate's or the stream's part in the start throws comes out of here,
  /// and so out of the `co_await`.
  bool await_suspend(std::coroutine_handle<> coroutine) {
    coroutine_ = coroutine;
    delegate_->awaiting = this;
    request_->cancel();
    request_->setDelegate(delegate_);
    request_->sendTo(target_);
    return request_->isInProgress();
  }

  /// The outcome, which is moved out: to be asked for once, as `co_await` does. Neither a response
  /// nor an error when no exchange was started.
  PerformResult await_resume() noexcept { return std::move(result_); }
  // NOLINTEND(readability-identifier-naming)

 private:
  /// Is held by those who call it, so that the coroutine may go meanwhile.
  struct Delegate final : IPPRequestDelegate {
    std::shared_ptr<InputStream> dataStreamForRequest(IPPRequest& /*request*/) override {
      return documentStream;
    }
    void requestDidReceiveResponse(IPPRequest& /*request*/,
                                   const std::shared_ptr<IPPResponse>& response,
                                   const std::shared_ptr<const Error>& error) override {
      awaiting->result_ = {response, error};
      if (response == nullptr) {
        awaiting->resume();
      }
    }
    std::shared_ptr<OutputStream> dataStreamForResponse(
        const std::shared_ptr<IPPResponse>& /*response*/, IPPRequest& /*request*/) override {
      return responseStream;
    }
    void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& /*response*/,
                                      const std::shared_ptr<OutputStream>& /*stream*/,
                                      IPPRequest& /*request*/) override {
      awaiting->resume();
    }

    PerformAwaitable* awaiting = nullptr;
    std::shared_ptr<InputStream> documentStream;
    std::shared_ptr<OutputStream> responseStream;
  };

  // Ends the exchange first: whatever the coroutine does, throwing included, the library has
  // nothing left to do for it.
  void resume() {
    letGo();
    coroutine_.resume();
  }

  // Without our delegate the request is no longer ours, and we are told nothing anyway.
  void letGo() {
    if (request_->delegate() == delegate_) {
      request_->cancel();
      request_->setDelegate({});
    }
  }

  std::shared_ptr<IPPRequest> request_;
  URL target_;
  std::shared_ptr<Delegate> delegate_;
  std::coroutine_handle<> coroutine_;
  PerformResult result_;
};

/// Sends `request` to `target` when awaited, and yields the outcome:
///
///     auto [response, error] = co_await platen::perform(request, target);
///
/// `documentStream` is sent after the request; the octets after the response go to
/// `responseStream`. Either may be null. Both are opened and closed by the exchange.
///
/// The coroutine is resumed exactly once, in a later turn of the thread's run loop
/// (`RunLoop::current`), when the whole answer is there and `request` can be sent again. Destroying
/// the coroutine while it is suspended cancels the exchange; that may be done from within any
/// callback. The awaiting takes the place of the request's delegate, which it has none after, and
/// ends an exchange of the request's that is in progress. It counts on having the request for
/// itself: who cancels that otherwise leaves the coroutine suspended for ever, to be destroyed.
/// Awaited from within the request's own start (`IPPRequestDelegate::requestWillSend`) it yields at
/// once neither a response nor an error.
///
/// The coroutine is resumed from within the library. An exception that its promise lets out comes
/// out of `RunLoop::runOnce` then and does no harm there; where an adapter says that its host
/// cannot pass exceptions on, it ends the program.
[[nodiscard]] inline PerformAwaitable perform(
    std::shared_ptr<IPPRequest> request, URL target,
    std::shared_ptr<InputStream> documentStream = nullptr,
    std::shared_ptr<OutputStream> responseStream = nullptr) {
  return {std::move(request), std::move(target), std::move(documentStream),
          std::move(responseStream)};
}

}  // namespace platen::inline v0
