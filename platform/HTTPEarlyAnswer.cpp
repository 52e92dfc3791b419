// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPEarlyAnswer.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>

namespace platen::inline v0 {

namespace {

// As much as libcurl reads at once: a head that is whole in here, is whole for libcurl.
constexpr std::size_t kLookAhead = 16384;

// RFC 9112 §4: status-line = HTTP-version SP status-code SP [ reason-phrase ]
constexpr std::string_view kStatusLine = "HTTP/1.d ddd";

bool matchesStatusLine(std::string_view text) {
  const auto length = std::min(text.size(), kStatusLine.size());
  return std::equal(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length),
                    kStatusLine.begin(), [](char found, char expected) {
                      return expected == 'd' ? std::isdigit(static_cast<unsigned char>(found)) != 0
                                             : found == expected;
                    });
}

/// The length of the head that `text` begins with, its empty line included; 0 when it is not whole.
/// A lone LF ends a line too (RFC 9112 §2.2).
std::size_t headLength(std::string_view text) {
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', end + 1)) {
    const auto next = text.substr(end + 1);
    if (next.starts_with('\n')) {
      return end + 2;
    }
    if (next.starts_with("\r\n")) {
      return end + 3;
    }
  }
  return 0;
}

bool isPart(HTTPEarlyAnswer answer) {
  return answer == HTTPEarlyAnswer::beginning || answer == HTTPEarlyAnswer::refusalBeginning;
}

/// Whether any of `events` has come, or one that poll tells unasked: an error or the end of both
/// directions.
bool hasEvent(int socket, short events) {
  struct pollfd entry {};
  entry.fd = socket;
  entry.events = events;
  return poll(&entry, 1, 0) > 0;
}

/// Whether the other side will send no more. Octets before the end hide it from `recv`.
bool hasEnded(int socket) { return hasEvent(socket, POLLRDHUP); }

}  // namespace

HTTPEarlyAnswer judgeEarlyAnswer(std::string_view received, std::size_t& interim) {
  interim = 0;
  for (;;) {
    const auto text = received.substr(interim);
    if (text.empty()) {
      return HTTPEarlyAnswer::nothing;
    }
    if (!matchesStatusLine(text)) {
      return HTTPEarlyAnswer::malformed;
    }
    if (text.size() < kStatusLine.size()) {
      return HTTPEarlyAnswer::beginning;
    }
    const char statusClass = text[kStatusLine.find(' ') + 1];
    const auto head = headLength(text);
    if (statusClass >= '4') {
      return head != 0 || text.size() >= kLookAhead ? HTTPEarlyAnswer::refusal
                                                    : HTTPEarlyAnswer::refusalBeginning;
    }
    if (statusClass != '1') {
      return HTTPEarlyAnswer::other;
    }
    if (head == 0) {
      return text.size() >= kLookAhead ? HTTPEarlyAnswer::malformed : HTTPEarlyAnswer::beginning;
    }
    interim += head;
  }
}

bool isConnectionLost(int socket) { return hasEvent(socket, 0); }

HTTPEarlyLook lookForEarlyAnswer(int socket) {
  std::array<char, kLookAhead> octets;
  const bool isLast = hasEnded(socket);  // asked first: all that was sent before the end is there
  const auto count = recv(socket, octets.data(), octets.size(), MSG_PEEK | MSG_DONTWAIT);
  if (count <= 0) {
    const bool isPending = count < 0 && (errno == EAGAIN || errno == EINTR);
    return {isPending ? HTTPEarlyAnswer::nothing : HTTPEarlyAnswer::closed};
  }
  HTTPEarlyLook look;
  look.octets = static_cast<std::size_t>(count);
  look.answer = judgeEarlyAnswer({octets.data(), look.octets}, look.interimOctets);
  if (look.interimOctets > 0) {
    recv(socket, octets.data(), look.interimOctets, MSG_DONTWAIT);
  }
  if (isLast && isPart(look.answer)) {
    look.answer = HTTPEarlyAnswer::closed;
  }
  return look;
}

}  // namespace platen::inline v0
