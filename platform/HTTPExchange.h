// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platen/HTTP.h"
#include "platform/HTTPBodySource.h"
#include "platform/HTTPEarlyAnswer.h"
#include "platform/HTTPEngine.h"
#include "platform/HTTPFailure.h"
#include "platform/HTTPHead.h"
#include "platform/HTTPIdleClock.h"
#include "platform/HTTPPlan.h"
#include "platform/HTTPSalvage.h"
#include "platform/HTTPTransfer.h"
#include "platform/Resolver.h"

namespace platen::inline v0 {

/// One HTTP exchange, from the resolving of the name to the last octet of the answer; the inside of
/// an `HTTPConnection`.
///
/// While the body is being sent, libcurl does not read (see `HTTPTransfer::resumeReceiving`); the
/// exchange itself looks at what arrives. A refusal stops the sending and libcurl reads it;
/// anything else waits until the body is sent.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class HTTPExchange final : public HTTPTransferClient, public HTTPEngineMember {
 public:
  HTTPExchange(HTTPRequest request, std::shared_ptr<HTTPConnectionDelegate> delegate,
               HTTPEngine& engine);
  HTTPExchange(const HTTPExchange&) = delete;
  HTTPExchange& operator=(const HTTPExchange&) = delete;
  ~HTTPExchange() override;

  /// Has the exchange begin in the loop's next turn. The connection is what the delegate is told
  /// of; the exchange does not keep it.
  void start(std::weak_ptr<HTTPConnection> connection);
  /// Ends the exchange; nobody is told.
  void cancel() override;

  void transferConnected() override;
  bool transferReceivedHeaderLine(std::string_view line) override;
  bool transferReceivedBody(Bytes bytes) override;
  std::optional<std::size_t> supplyBody(std::uint8_t* destination, std::size_t room) override;
  bool transferCloses(int socket) override;
  void transferMoved() override;
  void transferIsReadable(int socket) override;
  void transferEnded(HTTPTransferResult result) override;
  void settle() override;

 private:
  [[nodiscard]] bool hasEnded() const { return engine_ == nullptr; }

  void begin();
  bool openSource();
  void resolve();
  void useAddresses(const HostAddresses& found);
  void startTransfer(HTTPTransferPlan plan);

  void driveBody();
  void feed();
  void waitForSource(HTTPBodySource& source);
  void lookLater();
  void lookAgain();
  void stopSending();
  void letReceive();

  void actOn(HTTPEarlyAnswer answer, int socket);
  void tellOfHead(const HTTPResponse& response);
  void deliver();
  void conclude(const HTTPTransferResult& result);
  [[nodiscard]] bool hasRefusal() const;
  [[nodiscard]] bool mayTryAgain(const HTTPTransferResult& result) const;
  void tryAgain();
  bool salvageRefusal();

  template <typename Function>
  void tell(Function function);
  template <typename Function>
  void end(Function tellLast);
  void finish();
  void endImpatiently();
  void failIdle();
  void failAsClosed();
  void fail(const std::shared_ptr<const Error>& error);

  const HTTPRequest request_;
  std::shared_ptr<HTTPConnectionDelegate> delegate_;
  std::weak_ptr<HTTPConnection> connection_;
  /// Null once the exchange has ended.
  HTTPEngine* engine_;

  HTTPTarget target_;
  HTTPTransferPlan plan_;
  HTTPStage stage_ = HTTPStage::resolving;
  std::unique_ptr<HTTPIdleClock> idleClock_;
  std::unique_ptr<Timer> drySourceTimer_;
  std::unique_ptr<Timer> lookTimer_;
  std::chrono::milliseconds lookPause_{0};
  std::unique_ptr<Timer> refusalTimer_;
  /// Shared with the call that reads it, in which the exchange may be cancelled.
  std::shared_ptr<HTTPBodySource> source_;
  std::unique_ptr<Resolution> resolution_;
  std::unique_ptr<HTTPSalvage> salvage_;
  std::unique_ptr<HTTPTransfer> transfer_;

  bool isSending_ = false;
  bool isFirstLookDue_ = false;
  bool wantsBody_ = false;
  bool isSourceUsedUp_ = false;
  bool isRefused_ = false;
  bool hasTriedAgain_ = false;
  /// What comes next is not told before that has been.
  bool isTellingOfHead_ = false;
  static constexpr int kNoSocket = -1;
  /// On which an early answer waits that is no refusal.
  int answeredSocket_ = kNoSocket;
  /// What was there when an early answer was last looked for.
  std::size_t octetsSeen_ = 0;
  /// Why the exchange itself ended the transfer.
  std::optional<HTTPErrorCode> ownCode_;

  HTTPHeadReader head_;
  Data body_;
  std::size_t bodyLength_ = 0;
  std::optional<HTTPTransferResult> result_;
};

}  // namespace platen::inline v0
