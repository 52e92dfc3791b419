// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The jobs of a print server or a queue.

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

#include "Server.h"

namespace platen::tool {

struct JobsOptions : ServerOptions {
  enum class Which { active, completed, all };

  /// A name or a URI; nothing for all queues of the server.
  std::optional<std::string> queue;
  Which which = Which::active;
  /// Only those of the user.
  bool mine = false;
  /// At most so many.
  std::optional<std::int32_t> limit;
};

struct JobOptions : ServerOptions {
  /// A number or a URI.
  std::string job;
};

struct MoveOptions : JobOptions {
  /// Where to; a name or a URI.
  std::string queue;
};

/// Lists jobs.
void listJobs(const JobsOptions& options, std::ostream& out);
/// Shows one job.
void showJob(const JobOptions& options, std::ostream& out);
void holdJob(const JobOptions& options, std::ostream& out);
void releaseJob(const JobOptions& options, std::ostream& out);
void restartJob(const JobOptions& options, std::ostream& out);
void cancelJob(const JobOptions& options, std::ostream& out);
/// Moves a job to another queue.
void moveJob(const MoveOptions& options, std::ostream& out);

}  // namespace platen::tool
