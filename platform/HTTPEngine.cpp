// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPEngine.h"

#include <curl/curl.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <new>
#include <optional>
#include <utility>

#include "platform/HTTPTransfer.h"

namespace platen::inline v0 {

namespace {

// Of idle connections. A client talks to few printers, and each of those serves few connections.
constexpr long kMaximumConnections = 8;

CURLM* makeMulti() {
  // Never undone: nothing tells when the last user of libcurl in the process has gone.
  static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
  CURLM* const multi = initialised == CURLE_OK ? curl_multi_init() : nullptr;
  if (multi == nullptr) {
    throw std::bad_alloc();
  }
  return multi;
}

bool isSilent(int socket) {
  char octet = 0;
  return recv(socket, &octet, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && errno == EAGAIN;
}

}  // namespace

struct HTTPEngine::Callbacks {
  static int socket(CURL* easy, curl_socket_t descriptor, int wanted, void* engine, void*) {
    static_cast<HTTPEngine*>(engine)->watch(descriptor, wanted, HTTPTransfer::of(easy));
    return 0;
  }

  static int timer(CURLM*, long delay, void* engine) {
    auto& timer = static_cast<HTTPEngine*>(engine)->timer_;
    if (delay < 0) {
      timer.stop();
    } else {
      timer.start(std::chrono::milliseconds(delay));
    }
    return 0;
  }
};

HTTPEngine::HTTPEngine(RunLoop& loop)
    : loop_(loop), multi_(makeMulti()), timer_(loop, [this] { act(CURL_SOCKET_TIMEOUT, 0); }) {
  curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, Callbacks::socket);
  curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, Callbacks::timer);
  curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, kMaximumConnections);
  curl_multi_setopt(multi_, CURLMOPT_PIPELINING, CURLPIPE_NOTHING);
}

HTTPEngine::~HTTPEngine() {
  // A member that goes may let go of a delegate, and so of other members.
  while (!members_.empty()) {
    (*members_.begin())->cancel();
  }
  curl_multi_cleanup(multi_);
}

HTTPEngine& HTTPEngine::of(RunLoop& loop) { return loop.internals().attachment<HTTPEngine>(loop); }

void HTTPEngine::add(void* easy) {
  closeSpoiledConnections();
  curl_multi_add_handle(multi_, easy);
}

template <typename Function>
void HTTPEngine::eachSocketOf(const HTTPTransfer& transfer, Function function) const {
  for (const int descriptor : transfer.sockets()) {
    const auto found = sockets_.find(descriptor);
    // A socket that the transfer had may be closed, and its number another's.
    if (found != sockets_.end() && found->second.transfer == &transfer) {
      function(*found);
    }
  }
}

void HTTPEngine::remove(HTTPTransfer& transfer, void* easy) {
  eachSocketOf(transfer, [this](const auto& entry) {
    sockets_.at(entry.first).transfer = nullptr;
    idle_.insert(entry.first);
  });
  curl_multi_remove_handle(multi_, easy);
}

void HTTPEngine::closeSpoiledConnections() {
  // libcurl uses an idle connection again unless it was closed. One on which a server has said
  // something unasked, such as 408 (Request Timeout), would give that as the next answer.
  for (const int descriptor : idle_) {
    if (!isSilent(descriptor)) {
      shutdown(descriptor, SHUT_RDWR);
    }
  }
}

int HTTPEngine::openSocket(int family, int type, int protocol) {
  const int descriptor = socket(family, type | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol);
  if (descriptor >= 0) {
    sockets_[descriptor];
  }
  return descriptor;
}

void HTTPEngine::closeSocket(int descriptor) {
  HTTPTransfer* transfer = nullptr;
  if (const auto found = sockets_.find(descriptor); found != sockets_.end()) {
    transfer = found->second.transfer;
    sockets_.erase(found);
    idle_.erase(descriptor);
  }
  if (transfer == nullptr || !transfer->client().transferCloses(descriptor)) {
    close(descriptor);
  }
}

void HTTPEngine::watch(int descriptor, int wanted, HTTPTransfer* transfer) {
  const auto found = sockets_.find(descriptor);
  if (found == sockets_.end()) {
    return;
  }
  auto& socket = found->second;
  socket.reads = wanted == CURL_POLL_IN || wanted == CURL_POLL_INOUT;
  socket.writes = wanted == CURL_POLL_OUT || wanted == CURL_POLL_INOUT;
  // A transfer that is paused both ways wants nothing of its socket, but has it still.
  if (transfer != nullptr && wanted != CURL_POLL_REMOVE) {
    socket.transfer = transfer;
    transfer->noteSocket(descriptor);
    idle_.erase(descriptor);
  }
  refresh(descriptor, socket);
  if (socket.transfer != nullptr) {
    touch(socket.transfer->client());
  }
}

bool HTTPEngine::wantsReading(const Socket& socket) {
  return socket.reads || (socket.transfer != nullptr && socket.transfer->looksAhead());
}

bool HTTPEngine::wantsWriting(const Socket& socket) {
  return socket.writes && (socket.transfer == nullptr || !socket.transfer->holdsWriting());
}

void HTTPEngine::refresh(int descriptor, Socket& socket) {
  const bool writes = wantsWriting(socket);
  socket.isHeard = socket.isHeard || wantsReading(socket);
  if (socket.watch == nullptr && (socket.isHeard || writes)) {
    const auto ready = [this, descriptor](bool readable, bool writable) {
      socketIsReady(descriptor, readable, writable);
    };
    socket.watch = std::make_unique<Watch>(loop_, descriptor, ready);
  }
  if (socket.watch != nullptr) {
    socket.watch->setInterest(socket.isHeard, writes);
  }
}

void HTTPEngine::refresh(const HTTPTransfer& transfer) {
  eachSocketOf(transfer,
               [this](const auto& entry) { refresh(entry.first, sockets_.at(entry.first)); });
}

void HTTPEngine::socketIsReady(int descriptor, bool readable, bool writable) {
  auto& heard = sockets_.at(descriptor);
  if (readable && !wantsReading(heard)) {
    heard.isHeard = false;
    refresh(descriptor, heard);
    readable = false;
  }
  auto* const transfer = heard.transfer;
  if (transfer != nullptr && (readable || writable)) {
    const auto keep = transfer->client().shared_from_this();
    const bool looks = readable && transfer->looksAhead();
    if (!looks || writable) {
      keep->transferMoved();
    }
    if (looks) {
      keep->transferIsReadable(descriptor);
    }
  }
  // Looking ahead may have ended the transfer and closed the socket.
  const auto found = sockets_.find(descriptor);
  if (found == sockets_.end() || found->second.transfer != transfer) {
    return;
  }
  const auto& socket = found->second;
  const int events = (readable && socket.reads ? CURL_CSELECT_IN : 0) |
                     (writable && wantsWriting(socket) ? CURL_CSELECT_OUT : 0);
  if (events != 0) {
    act(descriptor, events);
  }
}

void HTTPEngine::act(int descriptor, int events) {
  int running = 0;
  isActing_ = true;
  curl_multi_socket_action(multi_, descriptor, events, &running);
  isActing_ = false;
  collectEnded();
  settle();
}

void HTTPEngine::nudge(const HTTPTransfer& transfer, int direction) {
  const bool reads = direction == CURL_POLL_IN;
  std::optional<int> ready;
  eachSocketOf(transfer, [&](const auto& entry) {
    if (reads ? entry.second.reads : entry.second.writes) {
      ready = entry.first;
    }
  });
  if (ready) {
    int running = 0;
    curl_multi_socket_action(multi_, *ready, reads ? CURL_CSELECT_IN : CURL_CSELECT_OUT, &running);
    collectEnded();
  }
}

void HTTPEngine::collectEnded() {
  int left = 0;
  while (const CURLMsg* const message = curl_multi_info_read(multi_, &left)) {
    if (message->msg == CURLMSG_DONE) {
      auto& transfer = *HTTPTransfer::of(message->easy_handle);
      transfer.client().transferEnded(transfer.result(message->data.result));
      touch(transfer.client());
    }
  }
}

void HTTPEngine::touch(HTTPTransferClient& client) {
  if (!isActing_) {
    settleSoon();
  }
  touched_.push_back(client.weak_from_this());
}

void HTTPEngine::settleSoon() {
  if (!std::exchange(isSettleScheduled_, true)) {
    loop_.internals().callSoon([this] {
      isSettleScheduled_ = false;
      settle();
    });
  }
}

void HTTPEngine::settle() {
  // A delegate may run the loop, so that this is entered again. What is touched meanwhile has its
  // turn later, lest one busy transfer keeps all others waiting.
  for (auto count = touched_.size(); count > 0 && !touched_.empty(); --count) {
    const auto client = touched_.front().lock();
    touched_.pop_front();
    if (client != nullptr) {
      settle(*client);
    }
  }
}

void HTTPEngine::settle(HTTPTransferClient& client) {
  try {
    client.settle();
  } catch (...) {
    // Of a delegate's. It leaves the turn; the client and those behind it go on in the next.
    touch(client);
    settleSoon();
    throw;
  }
}

bool HTTPEngine::isWriting(const HTTPTransfer& transfer) const {
  bool writes = false;
  eachSocketOf(transfer, [&](const auto& entry) { writes = writes || entry.second.writes; });
  return writes;
}

std::size_t HTTPEngine::octetsInFlight(const HTTPTransfer& transfer) const {
  std::size_t sum = 0;
  eachSocketOf(transfer, [&sum](const auto& entry) {
    int count = 0;
    if (ioctl(entry.first, SIOCOUTQ, &count) == 0 && count > 0) {
      sum += static_cast<std::size_t>(count);
    }
  });
  return sum;
}

}  // namespace platen::inline v0
