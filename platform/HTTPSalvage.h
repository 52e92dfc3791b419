// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace platen::inline v0 {

/// What a server said on a connection that failed while it was being sent a body. libcurl gives
/// such a connection up without reading what has arrived on it.
///
/// Threads: one thread at a time. Neither copied nor moved.
class HTTPSalvage {
 public:
  /// Takes the socket over.
  explicit HTTPSalvage(int socket) : socket_(socket) {}
  HTTPSalvage(const HTTPSalvage&) = delete;
  HTTPSalvage& operator=(const HTTPSalvage&) = delete;
  ~HTTPSalvage();

  /// Whether the server said nothing at all.
  [[nodiscard]] bool isEmpty() const;
  /// Whether it said that it refuses (a status of 400 or above).
  [[nodiscard]] bool isRefusal() const;
  /// A socket on which a peer seems to say the same, the first 128 KB or so of it; -1 when the
  /// system has no descriptors left. The caller's, and of use as long as this object lives.
  int replay();

 private:
  int socket_;
  int replayer_ = -1;
};

}  // namespace platen::inline v0
