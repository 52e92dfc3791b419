// SPDX-License-Identifier: Apache-2.0
//
// RFC 9112 §2.1, as far as it is left to be read here: libcurl has judged it.
//   head        = status-line CRLF *( field-line CRLF ) CRLF
//   status-line = HTTP-version SP status-code SP [ reason-phrase ]
//   field-line  = field-name ":" OWS field-value OWS

#include "platform/HTTPHead.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace platen::inline v0 {

namespace {

// Of all heads and trailers of an exchange.
constexpr std::size_t kMaximumHeadOctets = std::size_t{300} * 1024;
constexpr std::string_view kBlanks = " \t\r\n";

char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

template <typename Headers>
auto findHeader(Headers& headers, std::string_view name) {
  return std::find_if(headers.begin(), headers.end(),
                      [name](const auto& field) { return isSameHeaderName(field.first, name); });
}

template <typename Headers>
std::optional<std::string_view> headerValue(const Headers& headers, std::string_view name) {
  const auto found = findHeader(headers, name);
  return found == headers.end() ? std::nullopt : std::optional<std::string_view>(found->second);
}

}  // namespace

bool isSameHeaderName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowered(a) == lowered(b); });
}

void HTTPRequest::setHeader(std::string_view name, std::string_view value) {
  const auto found = findHeader(headers, name);
  if (found == headers.end()) {
    headers.emplace_back(name, value);
  } else {
    found->second = value;
  }
}

std::optional<std::string_view> HTTPRequest::header(std::string_view name) const {
  return headerValue(headers, name);
}

std::optional<std::string_view> HTTPResponse::header(std::string_view name) const {
  return headerValue(headers, name);
}

std::string HTTPResponse::mimeType() const {
  const auto field = header("Content-Type").value_or("");
  std::string type(trimmed(field.substr(0, field.find(';'))));
  std::transform(type.begin(), type.end(), type.begin(), lowered);
  return type;
}

bool HTTPHeadReader::count(std::size_t octets) {
  octets_ += octets;
  return octets_ <= kMaximumHeadOctets;
}

bool HTTPHeadReader::takeLine(std::string_view line) {
  if (!count(line.size())) {
    return false;
  }
  if (isComplete_) {
    return true;  // a trailer (RFC 9112 §7.1.2)
  }
  if (!isInHead_) {
    beginHead(line);
  } else if (trimmed(line).empty()) {
    endHead();
  } else {
    addField(line);
  }
  return true;
}

void HTTPHeadReader::beginHead(std::string_view statusLine) {
  response_ = {};
  isInHead_ = true;
  const auto text = statusLine.substr(std::min(statusLine.find(' '), statusLine.size()));
  const auto digits = trimmed(text);
  std::from_chars(digits.data(), digits.data() + digits.size(), response_.statusCode);
}

void HTTPHeadReader::endHead() {
  isInHead_ = false;
  // RFC 9110 §15.2: 1xx is interim, and any number of it may come.
  isComplete_ = response_.statusCode / 100 != 1;
}

void HTTPHeadReader::addField(std::string_view line) {
  // RFC 9112 §5.2: a line that begins with a blank continues the one before.
  const bool continues = line.front() == ' ' || line.front() == '\t';
  if (continues && !response_.headers.empty()) {
    response_.headers.back().second.append(" ").append(trimmed(line));
    return;
  }
  const auto colon = line.find(':');
  if (colon != std::string_view::npos) {
    response_.headers.emplace_back(trimmed(line.substr(0, colon)), trimmed(line.substr(colon + 1)));
  }
}

std::optional<HTTPResponse> HTTPHeadReader::takeResponse() {
  if (!isComplete_ || std::exchange(isTaken_, true)) {
    return std::nullopt;
  }
  return std::move(response_);
}

}  // namespace platen::inline v0
