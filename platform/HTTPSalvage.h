// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platen/Data.h"

namespace platen::inline v0 {

class HTTPHeadReader;

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
  /// Reads the refusal: its head, and of its body what has arrived, at most `maximum` octets.
  /// Returns false when not even the head is whole.
  bool readRefusal(HTTPHeadReader& head, Data& body, std::size_t maximum);

 private:
  int socket_;
};

}  // namespace platen::inline v0
