// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <set>

#include "platen/RunLoop.h"
#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

class HTTPTransfer;
class HTTPTransferClient;

/// What must end before a loop goes.
class HTTPEngineMember {
 public:
  virtual ~HTTPEngineMember() = default;
  virtual void cancel() = 0;
};

/// libcurl on one run loop: one multi handle, which keeps the connections that servers keep alive.
/// No delegate and no stream is ever called from within libcurl, since libcurl may not be called
/// from there: what it says is noted down, and acted upon when it has returned (`settle`).
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class HTTPEngine {
 public:
  explicit HTTPEngine(RunLoop& loop);
  HTTPEngine(const HTTPEngine&) = delete;
  HTTPEngine& operator=(const HTTPEngine&) = delete;
  /// Cancels the members, then closes all connections.
  ~HTTPEngine();

  /// The engine of a loop.
  static HTTPEngine& of(RunLoop& loop);
  [[nodiscard]] RunLoop& loop() { return loop_; }

  void enrol(HTTPEngineMember& member) { members_.insert(&member); }
  void dismiss(HTTPEngineMember& member) { members_.erase(&member); }

  /// Starts and ends libcurl's work on an easy handle.
  void add(void* easy);
  void remove(HTTPTransfer& transfer, void* easy);

  /// Socket handling for libcurl: returns a descriptor or -1.
  int openSocket(int family, int type, int protocol);
  void closeSocket(int descriptor);

  /// Has the client's `settle` called before the next turn of the loop ends.
  void touch(HTTPTransferClient& client);
  /// To be called when what a transfer wants to hear of has changed.
  void refresh(const HTTPTransfer& transfer);
  /// Tells libcurl that the transfer's socket is ready for `direction` (CURL_POLL_IN or _OUT), if
  /// it waits for that.
  void nudge(const HTTPTransfer& transfer, int direction);
  /// Whether libcurl waits to write for the transfer.
  [[nodiscard]] bool isWriting(const HTTPTransfer& transfer) const;
  /// How many octets the system has not yet got acknowledged by the transfer's peer.
  [[nodiscard]] std::size_t octetsInFlight(const HTTPTransfer& transfer) const;

 private:
  struct Socket {
    std::unique_ptr<Watch> watch;
    bool reads = false;
    bool writes = false;
    /// Whether the watch asks for reading. It goes on after the reading is done, until something
    /// comes that nobody wants: nearly always the next exchange wants it again, and asking the
    /// system costs as much as all else.
    bool isHeard = false;
    /// Null while the connection is kept alive for the next transfer.
    HTTPTransfer* transfer = nullptr;
  };
  struct Callbacks;

  void watch(int descriptor, int wanted, HTTPTransfer* transfer);
  template <typename Function>
  void eachSocketOf(const HTTPTransfer& transfer, Function function) const;
  void refresh(int descriptor, Socket& socket);
  [[nodiscard]] static bool wantsReading(const Socket& socket);
  [[nodiscard]] static bool wantsWriting(const Socket& socket);
  void socketIsReady(int descriptor, bool readable, bool writable);
  void act(int descriptor, int events);
  void settle();
  void settle(HTTPTransferClient& client);
  void settleSoon();
  void collectEnded();
  void closeSpoiledConnections();

  RunLoop& loop_;
  void* multi_;
  Timer timer_;
  /// All that libcurl has open.
  std::map<int, Socket> sockets_;
  /// Those of them that are kept alive for the next transfer.
  std::set<int> idle_;
  std::set<HTTPEngineMember*> members_;
  std::deque<std::weak_ptr<HTTPTransferClient>> touched_;
  /// libcurl is at work, and `settle` will follow.
  bool isActing_ = false;
  bool isSettleScheduled_ = false;
};

}  // namespace platen::inline v0
