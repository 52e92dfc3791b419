// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Server.h"

namespace platen::tool {

struct WatchOptions : ServerOptions {
  /// The name or the URI of a queue; nothing for the server.
  std::optional<std::string> queue;
  std::vector<std::string> events;
  /// Seconds between two questions; nothing for what the server wants.
  std::optional<double> interval;
};

/// Shows what happens on a queue or a server, one line per event, until a signal comes or standard
/// output goes away. The subscription for it is taken back then.
void watch(const WatchOptions& options, std::ostream& out);

}  // namespace platen::tool
