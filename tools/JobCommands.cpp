// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "CommandSet.h"
#include "Jobs.h"

namespace platen::tool {

namespace {

constexpr const char* kJobNotes =
    "A JOB is a number, of a job at ipp://HOST:PORT/jobs/NUMBER, or a whole URI, best the one\n"
    "that the server gave the job: printers have jobs at other places. With a URI, --server does\n"
    "not count.\n";

constexpr const char* kListNotes = "Without --completed and --all, only jobs that are not over.\n";

void bindJobs(CLI::App& command, JobsOptions& options) {
  using Which = JobsOptions::Which;
  command.add_option("QUEUE", options.queue, "Name or URI of a queue (default: all queues)");
  auto* const completed = command.add_flag_callback(
      "--completed", [&options] { options.which = Which::completed; }, "Only jobs that are over");
  command
      .add_flag_callback(
          "--all", [&options] { options.which = Which::all; }, "Jobs that are over as well")
      ->excludes(completed);
  command.add_flag("--mine", options.mine, "Only your own jobs");
  addNumber(command, "--limit", options.limit, 1, "NUMBER", "At most so many jobs");
  addServerOptions(command, options);
}

void bindJob(CLI::App& command, JobOptions& options) {
  addWord(command, "JOB", options.job, "Number or URI of the job");
  addServerOptions(command, options);
}

void bindMove(CLI::App& command, MoveOptions& options) {
  addWord(command, "JOB", options.job, "Number or URI of the job");
  addWord(command, "QUEUE", options.queue, "Name or URI of the queue to move it to");
  addServerOptions(command, options);
}

}  // namespace

void addJobCommands(CommandSet& commands) {
  commands.add("jobs", "List jobs", &listJobs, &bindJobs, std::string(kQueueNotes) + kListNotes);
  commands.add("job", "Show a job", &showJob, &bindJob, kJobNotes);
  commands.add("hold", "Hold a job that is not printed yet", &holdJob, &bindJob, kJobNotes);
  commands.add("release", "Let a held job be printed", &releaseJob, &bindJob, kJobNotes);
  commands.add("restart", "Print a job again that is over", &restartJob, &bindJob, kJobNotes);
  commands.add("cancel", "Cancel a job", &cancelJob, &bindJob, kJobNotes);
  commands.add("move", "Move a job to another queue", &moveJob, &bindMove,
               std::string(kJobNotes) + kQueueNotes);
}

}  // namespace platen::tool
