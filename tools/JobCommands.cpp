// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "CommandSet.h"
#include "Jobs.h"

namespace platen::tool {

namespace {

constexpr const char* kJobNotes =
    "A JOB is a number, of a job at ipp://HOST:PORT/jobs/NUMBER, or a whole URI, best the one "
    "that\n"
    "the server gave the job: printers have others. With a URI --server has nothing to say.\n";

constexpr const char* kListNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI; without one,\n"
    "the jobs of all queues are listed. Unless told otherwise, only those that are not over.\n";

void bindJobs(CLI::App& command, JobsOptions& options) {
  using Which = JobsOptions::Which;
  command.add_option("QUEUE", options.queue, "Its name or URI (default: all queues)");
  auto* const completed = command.add_flag_callback(
      "--completed", [&options] { options.which = Which::completed; }, "Those that are over");
  command
      .add_flag_callback(
          "--all", [&options] { options.which = Which::all; }, "Those that are over as well")
      ->excludes(completed);
  command.add_flag("--mine", options.mine, "Only the user's own");
  addNumber(command, "--limit", options.limit, 1, "NUMBER", "At most so many");
  addServerOptions(command, options);
}

void bindJob(CLI::App& command, JobOptions& options) {
  addWord(command, "JOB", options.job, "Its number or URI");
  addServerOptions(command, options);
}

void bindMove(CLI::App& command, MoveOptions& options) {
  addWord(command, "JOB", options.job, "Its number or URI");
  addWord(command, "QUEUE", options.queue, "Where to: a name or a URI");
  addServerOptions(command, options);
}

}  // namespace

void addJobCommands(CommandSet& commands) {
  commands.add("jobs", "List jobs", &listJobs, &bindJobs, kListNotes);
  commands.add("job", "Show a job", &showJob, &bindJob, kJobNotes);
  commands.add("hold", "Hold a job that is not printed yet", &holdJob, &bindJob, kJobNotes);
  commands.add("release", "Let a held job be printed", &releaseJob, &bindJob, kJobNotes);
  commands.add("restart", "Print a job once more that is over", &restartJob, &bindJob, kJobNotes);
  commands.add("cancel", "Cancel a job", &cancelJob, &bindJob, kJobNotes);
  commands.add("move", "Move a job to another queue", &moveJob, &bindMove, kJobNotes);
}

}  // namespace platen::tool
