// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platen/RunLoop.h"

namespace platen::inline v0 {

/// The addresses of a host, as text, in the order in which to try them; or why there are none.
struct HostAddresses {
  /// IPv6 addresses without brackets and zones.
  std::vector<std::string> addresses;
  /// The zone (interface index) of the link-local ones among them, which are all of one zone; or 0.
  unsigned zone = 0;
  /// In English; "" when there are addresses.
  std::string failure;
};

/// Whether a host needs no resolving: an IP address, "localhost", or a name below it (RFC 6761
/// §6.3).
bool isNumericOrLocal(std::string_view host);

/// The resolving of one host name, away from the loop: a dead name server stops nobody but the one
/// who waits for it. Letting go of it cancels; the late answer is ignored. Must go before its loop.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class Resolution {
 public:
  using Completion = std::function<void(const HostAddresses&)>;

  /// Calls `completion` from a later turn of `loop`; it may destroy the resolution.
  Resolution(RunLoop& loop, const std::string& host, Completion completion);
  Resolution(const Resolution&) = delete;
  Resolution& operator=(const Resolution&) = delete;
  ~Resolution();

  struct State;

 private:
  std::shared_ptr<State> state_;
};

}  // namespace platen::inline v0
