// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPSalvage.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "platform/HTTPEarlyAnswer.h"

namespace platen::inline v0 {

namespace {

HTTPEarlyAnswer judge(int socket) {
  std::size_t interimOctets = 0;
  return lookForEarlyAnswer(socket, interimOctets);
}

/// Copies what `from` has to give now, as far as `to` takes it without waiting.
void copyOctets(int from, int to) {
  std::array<char, 8192> octets;
  for (;;) {
    const auto count = recv(from, octets.data(), octets.size(), MSG_DONTWAIT);
    if (count <= 0) {
      return;
    }
    const auto length = static_cast<std::size_t>(count);
    if (send(to, octets.data(), length, MSG_DONTWAIT | MSG_NOSIGNAL) != count) {
      return;
    }
  }
}

void closeIfOpen(int socket) {
  if (socket >= 0) {
    close(socket);
  }
}

}  // namespace

HTTPSalvage::~HTTPSalvage() {
  closeIfOpen(socket_);
  closeIfOpen(replayer_);
}

bool HTTPSalvage::isEmpty() const { return judge(socket_) == HTTPEarlyAnswer::closed; }

bool HTTPSalvage::isRefusal() const { return judge(socket_) == HTTPEarlyAnswer::refusal; }

int HTTPSalvage::replay() {
  std::array<int, 2> ends{-1, -1};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0) {
    return -1;
  }
  replayer_ = ends[0];
  copyOctets(socket_, replayer_);
  // The other direction stays open for the request that libcurl believes to send.
  shutdown(replayer_, SHUT_WR);
  return ends[1];
}

}  // namespace platen::inline v0
