// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/Data.h"
#include "platen/HTTP.h"

namespace platen::inline v0 {

class HTTPEngine;

/// What libcurl is told to do.
struct HTTPTransferPlan {
  std::string url;
  std::string method;
  /// "Name: value", or "Name;" for an empty value.
  std::vector<std::string> headers;
  /// The whole body, or null.
  std::shared_ptr<const Data> body;
  /// The body comes from `HTTPTransferClient::supplyBody`.
  bool isStreamed = false;
  /// No connection that was used before.
  bool needsFreshConnection = false;
  /// "host:port:address,address", or "" when the host needs no resolving.
  std::string resolved;
  unsigned zone = 0;
  /// For all of the host's addresses together; 0 for none.
  std::chrono::milliseconds connectTimeout{0};
  std::size_t maximumBodyLength = kHTTPDefaultMaximumBodyLength;
};

/// How a transfer ended.
struct HTTPTransferResult {
  bool isComplete = false;
  HTTPErrorCode code = HTTPErrorCode::unknown;
  /// What libcurl or the system says about a failure.
  std::string reason;
  /// The failure may be that of a connection which the server had closed already.
  bool usedOldConnection = false;
};

/// What a transfer tells and asks. The operations marked "inside" are called from within libcurl:
/// they may only take notes, and call nothing of the transfer's or the engine's.
class HTTPTransferClient : public std::enable_shared_from_this<HTTPTransferClient> {
 public:
  virtual ~HTTPTransferClient() = default;

  /// Inside: there is a connection, and nothing has been sent on it yet. Comes again when libcurl
  /// by itself begins anew on another connection.
  virtual void transferConnected() = 0;
  /// Inside: one line of a head or a trailer, with its line end. False ends the transfer.
  virtual bool transferReceivedHeaderLine(std::string_view line) = 0;
  /// Inside: octets of the body. False ends the transfer.
  virtual bool transferReceivedBody(Bytes bytes) = 0;
  /// Inside: wants octets of a streamed body; 0 is its end. Nothing: `resumeSending` follows later.
  virtual std::optional<std::size_t> supplyBody(std::uint8_t* destination, std::size_t room) = 0;
  /// Inside: libcurl closes a socket of the transfer's. True: leave it open, it is the client's.
  virtual bool transferCloses(int socket) = 0;

  /// Octets may have moved in either direction.
  virtual void transferMoved() = 0;
  /// There is something to read on the socket, which the client wanted to hear of.
  virtual void transferIsReadable(int socket) = 0;
  /// The transfer has ended.
  virtual void transferEnded(HTTPTransferResult result) = 0;
  /// Now is the time to act on the notes.
  virtual void settle() = 0;
};

/// One HTTP exchange by libcurl: one easy handle.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class HTTPTransfer {
 public:
  /// Starts it; the first turn of the loop does the work. The client must outlive the transfer.
  HTTPTransfer(HTTPTransferPlan plan, HTTPTransferClient& client, HTTPEngine& engine);
  HTTPTransfer(const HTTPTransfer&) = delete;
  HTTPTransfer& operator=(const HTTPTransfer&) = delete;
  /// Ends it; a connection with an unfinished exchange is closed.
  ~HTTPTransfer();

  // A transfer with a body begins neither reading nor writing. While the body is being sent,
  // libcurl is kept from reading: it would take an early 200 with "Connection: close" for a reason
  // to stop sending, and would lose an answer to a failing write.

  /// To be called after `transferConnected`, and when there are octets again after `supplyBody` had
  /// none.
  void resumeSending();
  /// Lets libcurl read, and write what it has not written yet.
  void resumeReceiving();
  /// Whether to call `transferIsReadable`, whatever libcurl wants.
  void setLooksAhead(bool looksAhead);
  /// Keeps libcurl from writing.
  void setHoldsWriting(bool holdsWriting);

  [[nodiscard]] bool looksAhead() const { return looksAhead_; }
  [[nodiscard]] bool holdsWriting() const { return holdsWriting_; }
  [[nodiscard]] HTTPTransferClient& client() { return client_; }
  /// The sockets that were the transfer's at some time: one, or several while a host with more than
  /// one address is being connected to.
  [[nodiscard]] const std::vector<int>& sockets() const { return sockets_; }
  void noteSocket(int descriptor);

  /// What libcurl's result code means.
  [[nodiscard]] HTTPTransferResult result(int code) const;
  /// The result of a transfer whose connection was found closed, with no answer on it.
  [[nodiscard]] HTTPTransferResult resultWhenClosed() const;
  /// The transfer that belongs to an easy handle; null for libcurl's own handles.
  static HTTPTransfer* of(void* easy);

 private:
  struct Callbacks;

  void configure();
  void forbidWhatIsNotAsked();
  void configureConnection();
  void configureMethod();
  void configureCallbacks();
  void noteConnection();
  void applyPauses();
  [[nodiscard]] bool hasBody() const { return plan_.body != nullptr || plan_.isStreamed; }

  HTTPTransferPlan plan_;
  HTTPTransferClient& client_;
  HTTPEngine& engine_;
  void* easy_;
  void* headers_ = nullptr;
  void* resolved_ = nullptr;
  std::unique_ptr<char[]> reason_;
  std::vector<int> sockets_;
  bool isReceivingPaused_ = false;
  bool isSendingPaused_ = false;
  bool looksAhead_ = false;
  bool holdsWriting_ = false;
};

}  // namespace platen::inline v0
