// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The queues of a print server, and the devices that queues can be made for.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Server.h"

namespace platen::tool {

struct QueuesOptions : ServerOptions {
  // Each that is set leaves out the queues that are not so.

  bool local = false;
  bool remote = false;
  bool color = false;
  bool grayscale = false;
  bool isDefault = false;
  bool requiringAuthentication = false;
  bool shared = false;
  bool notShared = false;
};

struct QueueOptions : ServerOptions {
  /// A name or a URI.
  std::string queue;
};

struct DefaultOptions : ServerOptions {
  /// As above; nothing to show which one it is.
  std::optional<std::string> queue;
};

/// What a queue is to be; what is not said stays, or is up to the server.
struct QueueSettingsOptions : QueueOptions {
  std::optional<std::string> device;
  std::optional<std::string> info;
  std::optional<std::string> location;
  std::optional<bool> shared;
  std::optional<bool> accepting;
  std::vector<std::string> allowed;
  std::vector<std::string> denied;
};

/// Lists the queues of a server.
void listQueues(const QueuesOptions& options, std::ostream& out);
/// Lists the devices that a server finds.
void listDevices(const ServerOptions& options, std::ostream& out);
/// Shows the server's default queue, or makes a queue the default where one is given.
void showOrSetDefault(const DefaultOptions& options, std::ostream& out);
/// Adds a queue, which takes jobs and prints them unless the options say otherwise. One that is
/// there is refused.
void addQueue(const QueueSettingsOptions& options, std::ostream& out);
/// Changes a queue that is there.
void modifyQueue(const QueueSettingsOptions& options, std::ostream& out);
void removeQueue(const QueueOptions& options, std::ostream& out);
void pauseQueue(const QueueOptions& options, std::ostream& out);
void resumeQueue(const QueueOptions& options, std::ostream& out);
/// Cancels and forgets all jobs of a queue.
void purgeQueue(const QueueOptions& options, std::ostream& out);

}  // namespace platen::tool
