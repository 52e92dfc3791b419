// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

namespace platen::inline v0 {

/// What a server has to say while it is still being sent a request's body.
enum class HTTPEarlyAnswer {
  nothing,           ///< no octet yet
  beginning,         ///< octets that do not make a status line yet
  refusalBeginning,  ///< a status of 400 or above, but not all of the head
  refusal,           ///< the whole head of a status of 400 or above
  other,             ///< another final status
  malformed,         ///< no HTTP/1 answer
  closed,            ///< the end or the failure of the connection, with no whole head before it
};

struct HTTPEarlyLook {
  HTTPEarlyAnswer answer = HTTPEarlyAnswer::nothing;
  /// How many octets there were, as far as one looks.
  std::size_t octets = 0;
  /// How many of them were heads of 1xx.
  std::size_t interimOctets = 0;
};

/// Judges what has been received but not yet read on `socket`. Heads of 1xx (RFC 9110 §15.2) are
/// read and dropped, nothing else is taken away.
HTTPEarlyLook lookForEarlyAnswer(int socket);

/// Whether neither side can send any more: it was reset, or both have closed it.
bool isConnectionLost(int socket);

/// The same as `lookForEarlyAnswer` of the octets `received`, of which the first `interim`, on
/// return, are heads of 1xx.
HTTPEarlyAnswer judgeEarlyAnswer(std::string_view received, std::size_t& interim);

}  // namespace platen::inline v0
