// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace platen::tests {

class ScriptedPeer;

/// One accepted connection, as a script uses it. Waits end after 10 seconds, or when the peer goes.
class PeerConnection {
 public:
  PeerConnection(ScriptedPeer& peer, int socket) : peer_(peer), socket_(socket) {}
  PeerConnection(const PeerConnection&) = delete;
  PeerConnection& operator=(const PeerConnection&) = delete;
  ~PeerConnection();

  /// Reads a request's head, up to its empty line; "" when the connection was closed before that.
  std::string readHead();
  /// Reads the body that `head` announces (Content-Length or chunked), decoded.
  std::string readBody(const std::string& head);
  /// Head and body of one request, noted down for `ScriptedPeer::requests`.
  std::string readRequest();
  /// Reads until about `count` octets have come in this call, at most.
  void readSome(std::size_t count);
  /// Reads until the client closes; returns how many octets came.
  std::size_t readToEnd();

  void send(std::string_view octets);
  /// A whole answer with a Content-Length.
  void answer(int status, std::string_view body = "", std::string_view moreHeaders = "");
  void sleep(std::chrono::milliseconds duration);
  /// Says that no more will be sent, but goes on reading.
  void closeSending();
  void close();
  /// Closes with a reset, whatever has been read.
  void reset();
  /// Keeps the connection open when the script ends, as long as the peer lives.
  void leaveOpen() { isLeftOpen_ = true; }

  [[nodiscard]] int socket() const { return socket_; }

 private:
  bool fill();
  std::string take(std::size_t count);
  std::string takeThrough(std::string_view mark);
  std::string readChunks();

  ScriptedPeer& peer_;
  int socket_;
  std::string buffer_;
  bool isLeftOpen_ = false;
};

/// A server on 127.0.0.1 that does what scripts say, in a thread of its own: for each connection
/// the next script. After the last, nobody accepts what the system still takes.
class ScriptedPeer {
 public:
  using Script = std::function<void(PeerConnection&)>;

  /// One script after the other.
  explicit ScriptedPeer(std::vector<Script> scripts);
  /// The same script for each of `count` connections, at the same time.
  ScriptedPeer(std::size_t count, const Script& script);
  ScriptedPeer(const ScriptedPeer&) = delete;
  ScriptedPeer& operator=(const ScriptedPeer&) = delete;
  /// Wakes the scripts and waits for their end.
  ~ScriptedPeer();

  [[nodiscard]] std::uint16_t port() const { return port_; }
  [[nodiscard]] std::string url(std::string_view path = "/",
                                std::string_view host = "127.0.0.1") const;
  /// What `PeerConnection::readRequest` has read, in order.
  [[nodiscard]] std::vector<std::string> requests() const;
  [[nodiscard]] std::size_t connectionCount() const { return connectionCount_; }
  /// Waits until the scripts have ended; returns false after 10 seconds.
  bool waitForScripts();

 private:
  friend class PeerConnection;

  void listen();
  void serveOneByOne();
  void serveAtOnce();
  int acceptOne();
  void run(const Script& script, int socket);
  void note(std::string request);
  void forget(int socket);

  std::vector<Script> scripts_;
  int listener_ = -1;
  std::uint16_t port_ = 0;
  std::atomic<std::size_t> connectionCount_ = 0;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> requests_;
  std::set<int> open_;
  std::size_t scriptsLeft_ = 0;
  bool isStopping_ = false;
  std::thread thread_;
};

}  // namespace platen::tests
