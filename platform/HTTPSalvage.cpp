// SPDX-License-Identifier: Apache-2.0
//
// RFC 9112 §6, as far as a refusal needs it:
//   body  = what Transfer-Encoding, else Content-Length, else the end of the connection delimits
//   chunk = chunk-size [ chunk-ext ] CRLF chunk-data CRLF

#include "platform/HTTPSalvage.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

#include "platform/HTTPEarlyAnswer.h"
#include "platform/HTTPHead.h"

namespace platen::inline v0 {

namespace {

HTTPEarlyAnswer judge(int socket) { return lookForEarlyAnswer(socket).answer; }

/// All that has arrived. The peer has closed or reset the connection, so nothing more can.
std::string readAll(int socket, std::size_t limit) {
  std::string text;
  std::array<char, 16384> octets;
  while (text.size() < limit) {
    const auto count = recv(socket, octets.data(), octets.size(), MSG_DONTWAIT);
    if (count <= 0) {
      break;
    }
    text.append(octets.data(), static_cast<std::size_t>(count));
  }
  return text;
}

/// The line that `text` begins with, its end included, taken off; "" when there is no whole one.
std::string_view takeLine(std::string_view& text) {
  const auto length = text.find('\n') + 1;
  const auto line = text.substr(0, length);
  text.remove_prefix(length);
  return line;
}

template <typename Integer>
Integer parseLength(std::string_view digits, int base) {
  Integer length = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), length, base);
  return length;
}

std::string decodeChunks(std::string_view text) {
  std::string body;
  while (const auto length = parseLength<std::size_t>(takeLine(text), 16)) {
    const auto chunk = text.substr(0, length);
    body += chunk;
    text.remove_prefix(chunk.size());
    takeLine(text);
  }
  return body;
}

std::string decodeBody(const HTTPResponse& response, std::string_view text) {
  if (response.header("Transfer-Encoding").has_value()) {
    return decodeChunks(text);
  }
  const auto length = response.header("Content-Length");
  const auto end = length.has_value() ? parseLength<std::size_t>(*length, 10) : text.size();
  return std::string(text.substr(0, end));
}

}  // namespace

HTTPSalvage::~HTTPSalvage() { close(socket_); }

bool HTTPSalvage::isEmpty() const { return judge(socket_) == HTTPEarlyAnswer::closed; }

bool HTTPSalvage::isRefusal() const { return judge(socket_) == HTTPEarlyAnswer::refusal; }

bool HTTPSalvage::readRefusal(HTTPHeadReader& head, Data& body, std::size_t maximum) {
  constexpr std::size_t kEnough = std::size_t{16} * 1024 * 1024;  // no socket has room for as much
  const auto octets = readAll(socket_, kEnough);
  std::string_view text = octets;
  while (!head.isComplete()) {
    const auto line = takeLine(text);
    if (line.empty() || !head.takeLine(line)) {
      return false;
    }
  }
  const auto decoded = decodeBody(head.response(), text);
  body.assign(decoded.begin(),
              decoded.begin() + static_cast<std::ptrdiff_t>(std::min(maximum, decoded.size())));
  return true;
}

}  // namespace platen::inline v0
