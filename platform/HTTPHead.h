// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "platen/HTTP.h"

namespace platen::inline v0 {

/// Why an exchange ends whose server sends heads without end.
inline constexpr std::string_view kHTTPHeadTooLong = "too long a head";

/// Whether two header field names are the same (RFC 9110 §5.1): ASCII letter case is ignored.
bool isSameHeaderName(std::string_view left, std::string_view right);

/// Makes a response head of its lines; passes over the heads of 1xx and over trailers.
class HTTPHeadReader {
 public:
  /// Takes the next line. Returns false when a server has sent too much of them.
  bool takeLine(std::string_view line);
  /// Counts octets of heads that were read elsewhere. Returns false as `takeLine` does.
  bool count(std::size_t octets);

  /// The final head, once, when it is complete.
  std::optional<HTTPResponse> takeResponse();
  /// The head as far as it has been read, until it is taken.
  [[nodiscard]] const HTTPResponse& response() const { return response_; }
  [[nodiscard]] bool isComplete() const { return isComplete_; }
  [[nodiscard]] bool hasOctets() const { return octets_ > 0; }

 private:
  void beginHead(std::string_view statusLine);
  void endHead();
  void addField(std::string_view line);

  HTTPResponse response_;
  std::size_t octets_ = 0;
  bool isInHead_ = false;
  bool isComplete_ = false;
  bool isTaken_ = false;
};

}  // namespace platen::inline v0
