// SPDX-License-Identifier: Apache-2.0

#include "tests/support/ScriptedPeer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace platen::tests {

namespace {

constexpr auto kPatience = std::chrono::seconds(10);

bool waitReadable(int socket) {
  pollfd entry{socket, POLLIN, 0};
  return poll(&entry, 1, static_cast<int>(std::chrono::milliseconds(kPatience).count())) > 0;
}

std::size_t contentLength(const std::string& head) {
  const auto at = head.find("Content-Length: ");
  return at == std::string::npos ? 0 : std::strtoul(head.c_str() + at + 16, nullptr, 10);
}

}  // namespace

PeerConnection::~PeerConnection() {
  if (!isLeftOpen_) {
    close();
  }
}

bool PeerConnection::fill() {
  std::array<char, 65536> octets;
  if (socket_ < 0 || !waitReadable(socket_)) {
    return false;
  }
  const auto count = recv(socket_, octets.data(), octets.size(), 0);
  buffer_.append(octets.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  return count > 0;
}

std::string PeerConnection::take(std::size_t count) {
  while (buffer_.size() < count && fill()) {
  }
  std::string taken = buffer_.substr(0, count);
  buffer_.erase(0, taken.size());
  return taken;
}

std::string PeerConnection::takeThrough(std::string_view mark) {
  while (buffer_.find(mark) == std::string::npos) {
    if (!fill()) {
      return {};
    }
  }
  return take(buffer_.find(mark) + mark.size());
}

std::string PeerConnection::readHead() { return takeThrough("\r\n\r\n"); }

std::string PeerConnection::readChunks() {
  std::string body;
  for (;;) {
    const auto length = std::strtoul(takeThrough("\r\n").c_str(), nullptr, 16);
    body += take(length);
    takeThrough("\r\n");
    if (length == 0) {
      return body;
    }
  }
}

std::string PeerConnection::readBody(const std::string& head) {
  const bool isChunked = head.find("Transfer-Encoding: chunked") != std::string::npos;
  return isChunked ? readChunks() : take(contentLength(head));
}

std::string PeerConnection::readRequest() {
  const auto head = readHead();
  auto request = head + readBody(head);
  peer_.note(request);
  return request;
}

void PeerConnection::readSome(std::size_t count) {
  while (count > 0 && (!buffer_.empty() || fill())) {
    const auto taken = std::min(count, buffer_.size());
    buffer_.erase(0, taken);
    count -= taken;
  }
}

std::size_t PeerConnection::readToEnd() {
  std::size_t count = 0;
  do {
    count += buffer_.size();
    buffer_.clear();
  } while (fill());
  return count;
}

void PeerConnection::send(std::string_view octets) {
  while (!octets.empty()) {
    const auto count = ::send(socket_, octets.data(), octets.size(), MSG_NOSIGNAL);
    if (count <= 0) {
      return;
    }
    octets.remove_prefix(static_cast<std::size_t>(count));
  }
}

void PeerConnection::answer(int status, std::string_view body, std::string_view moreHeaders) {
  std::string text = "HTTP/1.1 " + std::to_string(status) + " Status\r\nContent-Length: ";
  text.append(std::to_string(body.size())).append("\r\n");
  text.append(moreHeaders).append("\r\n").append(body);
  send(text);
}

void PeerConnection::sleep(std::chrono::milliseconds duration) {
  std::unique_lock lock(peer_.mutex_);
  peer_.changed_.wait_for(lock, duration, [this] { return peer_.isStopping_; });
}

void PeerConnection::closeSending() { shutdown(socket_, SHUT_WR); }

void PeerConnection::close() {
  if (socket_ >= 0) {
    peer_.forget(std::exchange(socket_, -1));
  }
}

void PeerConnection::reset() {
  const linger atOnce{1, 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  close();
}

ScriptedPeer::ScriptedPeer(std::vector<Script> scripts)
    : scripts_(std::move(scripts)), scriptsLeft_(scripts_.size()) {
  listen();
  thread_ = std::thread([this] { serveOneByOne(); });
}

ScriptedPeer::ScriptedPeer(std::size_t count, const Script& script)
    : scripts_(count, script), scriptsLeft_(count) {
  listen();
  thread_ = std::thread([this] { serveAtOnce(); });
}

ScriptedPeer::~ScriptedPeer() {
  {
    const std::lock_guard lock(mutex_);
    isStopping_ = true;
    for (const int socket : open_) {
      shutdown(socket, SHUT_RDWR);
    }
  }
  changed_.notify_all();
  shutdown(listener_, SHUT_RDWR);
  thread_.join();
  for (const int socket : open_) {
    ::close(socket);
  }
  ::close(listener_);
}

void ScriptedPeer::listen() {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, generic, length) != 0 || ::listen(listener_, 64) != 0 ||
      getsockname(listener_, generic, &length) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ntohs(address.sin_port);
}

std::string ScriptedPeer::url(std::string_view path, std::string_view host) const {
  return "http://" + std::string(host) + ":" + std::to_string(port_) + std::string(path);
}

std::vector<std::string> ScriptedPeer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

bool ScriptedPeer::waitForScripts() {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, kPatience, [this] { return scriptsLeft_ == 0; });
}

int ScriptedPeer::acceptOne() {
  const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  const std::lock_guard lock(mutex_);
  if (socket >= 0 && isStopping_) {
    ::close(socket);
    return -1;
  }
  if (socket >= 0) {
    open_.insert(socket);
    ++connectionCount_;
  }
  return socket;
}

void ScriptedPeer::run(const Script& script, int socket) {
  {
    PeerConnection connection(*this, socket);
    script(connection);
  }
  const std::lock_guard lock(mutex_);
  --scriptsLeft_;
  changed_.notify_all();
}

void ScriptedPeer::serveOneByOne() {
  for (const auto& script : scripts_) {
    const int socket = acceptOne();
    if (socket < 0) {
      return;
    }
    run(script, socket);
  }
}

void ScriptedPeer::serveAtOnce() {
  std::vector<std::thread> threads;
  for (const auto& script : scripts_) {
    const int socket = acceptOne();
    if (socket < 0) {
      break;
    }
    threads.emplace_back([this, &script, socket] { run(script, socket); });
  }
  for (auto& thread : threads) {
    thread.join();
  }
}

void ScriptedPeer::note(std::string request) {
  const std::lock_guard lock(mutex_);
  requests_.push_back(std::move(request));
}

void ScriptedPeer::forget(int socket) {
  const std::lock_guard lock(mutex_);
  open_.erase(socket);
  ::close(socket);
}

}  // namespace platen::tests
