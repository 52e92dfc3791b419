// SPDX-License-Identifier: Apache-2.0
#include "Peer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace platen::bench {

namespace {

constexpr std::size_t kRoom = std::size_t{1} << 18U;
constexpr int kBacklog = 4096;

int checked(int result) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category());
  }
  return result;
}

int listenOnLoopback() {
  const int listener = checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  checked(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address));
  checked(listen(listener, kBacklog));
  return listener;
}

std::string urlOf(int listener) {
  sockaddr_in address{};
  socklen_t length = sizeof address;
  checked(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &length));
  return "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/ipp/print";
}

/// How far one connection has read its request (RFC 9112 §6, §7.1): just enough of HTTP to find
/// the end of what the two clients here send.
class Request {
 public:
  /// True when the request ends with these octets.
  bool take(std::string_view octets) {
    if (isInHead_) {
      head_ += octets;
      const auto end = head_.find("\r\n\r\n");
      if (end == std::string::npos) {
        return false;
      }
      isInHead_ = false;
      beginBody();
      const std::string rest = head_.substr(end + 4);
      return takeBody(rest);
    }
    return takeBody(octets);
  }

 private:
  void beginBody() {
    constexpr std::string_view kLength = "Content-Length: ";
    const auto length = head_.find(kLength);
    isChunked_ = length == std::string::npos;
    left_ = isChunked_ ? 0 : std::stoull(head_.substr(length + kLength.size()));
  }

  bool takeBody(std::string_view octets) {
    if (isChunked_) {
      tail_ += octets.substr(octets.size() - std::min(octets.size(), kLastChunk.size()));
      tail_.erase(0, tail_.size() - std::min(tail_.size(), kLastChunk.size()));
      return tail_ == kLastChunk;
    }
    left_ -= octets.size();
    return left_ == 0;
  }

  static constexpr std::string_view kLastChunk = "0\r\n\r\n";

  bool isInHead_ = true;
  bool isChunked_ = false;
  std::string head_;
  std::string tail_;
  std::uint64_t left_ = 0;
};

class Server {
 public:
  Server(int listener, const Data& answer, std::size_t heldUntil)
      : listener_(listener),
        poller_(checked(epoll_create1(EPOLL_CLOEXEC))),
        heldUntil_(heldUntil),
        answer_("HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: " +
                std::to_string(answer.size()) + "\r\n\r\n" +
                std::string(answer.begin(), answer.end())) {
    watch(listener);
  }

  [[noreturn]] void run() {
    for (;;) {
      std::array<epoll_event, 64> events;
      const int count = epoll_wait(poller_, events.data(), events.size(), -1);
      for (int i = 0; i < count; ++i) {
        handle(events[static_cast<std::size_t>(i)].data.fd);
      }
    }
  }

 private:
  void watch(int descriptor) const {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = descriptor;
    checked(epoll_ctl(poller_, EPOLL_CTL_ADD, descriptor, &event));
  }

  void handle(int descriptor) {
    if (descriptor == listener_) {
      const int connection = checked(accept(listener_, nullptr, nullptr));
      watch(connection);
      requests_[connection];
      return;
    }
    const auto count = recv(descriptor, room_.data(), room_.size(), 0);
    if (count <= 0) {
      requests_.erase(descriptor);
      close(descriptor);
    } else if (requests_[descriptor].take({room_.data(), static_cast<std::size_t>(count)})) {
      requests_[descriptor] = {};
      waiting_.push_back(descriptor);
      answerAll();
    }
  }

  void answerAll() {
    if (waiting_.size() < heldUntil_) {
      return;
    }
    for (const int descriptor : std::exchange(waiting_, {})) {
      send(descriptor, answer_.data(), answer_.size(), MSG_NOSIGNAL);
    }
  }

  int listener_;
  int poller_;
  std::size_t heldUntil_;
  std::string answer_;
  std::map<int, Request> requests_;
  std::vector<int> waiting_;
  std::vector<char> room_ = std::vector<char>(kRoom);
};

void writeOctets(int descriptor, std::uint64_t octets) {
  const std::vector<char> block(kRoom, 'x');
  while (octets > 0) {
    const auto count = write(descriptor, block.data(), std::min<std::uint64_t>(octets, kRoom));
    if (count <= 0) {
      return;
    }
    octets -= static_cast<std::uint64_t>(count);
  }
}

}  // namespace

Child::Child(const std::function<void()>& work) : pid_(checked(fork())) {
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    try {
      work();
    } catch (...) {
      _exit(1);
    }
    _exit(0);
  }
}

Child::~Child() {
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

Peer::Peer(Data answer, std::size_t heldUntil)
    : Peer(listenOnLoopback(), std::move(answer), heldUntil) {}

Peer::Peer(int listener, Data answer, std::size_t heldUntil)
    : url_(urlOf(listener)), child_([&] { Server(listener, answer, heldUntil).run(); }) {
  close(listener);
}

Source::Pipe Source::makePipe() {
  std::array<int, 2> ends{};
  checked(pipe2(ends.data(), O_CLOEXEC));
  return {ends[0], ends[1]};
}

Source::Source(std::uint64_t octets)
    : pipe_(makePipe()), child_([this, octets] {
        close(pipe_.read);
        writeOctets(pipe_.write, octets);
      }) {
  close(pipe_.write);
}

Source::~Source() { close(pipe_.read); }

}  // namespace platen::bench
