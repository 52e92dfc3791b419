// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "CommandSet.h"
#include "Queues.h"

namespace platen::tool {

namespace {

constexpr const char* kFilterNotes = "Of several filters, a queue has to pass all.\n";

constexpr const char* kUserNotes =
    "USERS are names with commas between them; \"all\" opens the queue to everybody. --allow and\n"
    "--deny exclude each other.\n";

constexpr const char* kAddNotes =
    "The new queue takes jobs unless told otherwise; what else is not said is up to the server.\n"
    "A queue that exists already is refused and stays as it is: see platen queue modify.\n";

constexpr const char* kModifyNotes = "What is not said stays as it is.\n";

constexpr const char* kDevicesNotes =
    "This may take long: a server may search the network for devices.\n";

std::string notesWith(const char* notes) { return std::string(kQueueNotes) + kUserNotes + notes; }

void bindQueues(CLI::App& command, QueuesOptions& options) {
  command.add_flag("--local", options.local, "Only queues with a printer of this server");
  command.add_flag("--remote", options.remote, "Only queues of other servers");
  command.add_flag("--color", options.color, "Only queues that print in color");
  command.add_flag("--grayscale", options.grayscale, "Only queues that print in black and white");
  command.add_flag("--default", options.isDefault, "Only the default queue");
  command.add_flag("--requiring-authentication", options.requiringAuthentication,
                   "Only queues that ask who prints");
  command.add_flag("--shared", options.shared, "Only queues that are offered to others");
  command.add_flag("--not-shared", options.notShared, "Only queues that are not offered to others");
  addServerOptions(command, options);
}

void bindQueue(CLI::App& command, QueueOptions& options) {
  addWord(command, "QUEUE", options.queue, "Name or URI of the queue");
  addServerOptions(command, options);
}

void bindDefault(CLI::App& command, DefaultOptions& options) {
  command.add_option("QUEUE", options.queue,
                     "Name or URI of the new default queue (default: show the one there is)");
  addServerOptions(command, options);
}

void bindSettings(CLI::App& command, QueueSettingsOptions& options) {
  command.add_option("--info", options.info, "What it is, for people")->type_name("TEXT");
  command.add_option("--location", options.location, "Where it is, for people")->type_name("TEXT");
  addChoice(command, "--shared", "--not-shared", options.shared, "Offer it to others",
            "Offer it to nobody else");
  addChoice(command, "--accepting", "--rejecting", options.accepting, "Take jobs", "Take no jobs");
  auto* const allow =
      addList(command, "--allow", options.allowed, "USERS", "Only these users may print");
  addList(command, "--deny", options.denied, "USERS", "These users may not print")->excludes(allow);
}

void bindAdd(CLI::App& command, QueueSettingsOptions& options) {
  addWord(command, "QUEUE", options.queue, "Name or URI of the queue");
  command.add_option("DEVICE", options.device, "The URI of its device; see platen devices")
      ->required();
  bindSettings(command, options);
  addServerOptions(command, options);
}

void bindModify(CLI::App& command, QueueSettingsOptions& options) {
  addWord(command, "QUEUE", options.queue, "Name or URI of the queue");
  command.add_option("--device", options.device, "The URI of its device; see platen devices")
      ->type_name("URI");
  bindSettings(command, options);
  addServerOptions(command, options);
}

void bindServer(CLI::App& command, ServerOptions& options) { addServerOptions(command, options); }

}  // namespace

void addQueueCommands(CommandSet& commands) {
  commands.add("queues", "List the queues of a print server", &listQueues, &bindQueues,
               kFilterNotes);
  commands.add("default", "Show or set the default queue of a print server", &showOrSetDefault,
               &bindDefault, kQueueNotes);
  commands.add("pause", "Stop a queue from printing", &pauseQueue, &bindQueue, kQueueNotes);
  commands.add("resume", "Let a queue print again", &resumeQueue, &bindQueue, kQueueNotes);
  commands.add("purge", "Cancel and forget all jobs of a queue", &purgeQueue, &bindQueue,
               kQueueNotes);
  CLI::App& family = commands.addFamily("queue", "Add, modify or remove a queue");
  commands.add("add", "Add a queue, ready to print", &addQueue, &bindAdd, notesWith(kAddNotes),
               &family);
  commands.add("modify", "Change a queue", &modifyQueue, &bindModify, notesWith(kModifyNotes),
               &family);
  commands.add("remove", "Remove a queue, with its jobs", &removeQueue, &bindQueue, kQueueNotes,
               &family);
  commands.add("devices", "List the devices that a print server finds", &listDevices, &bindServer,
               kDevicesNotes);
}

}  // namespace platen::tool
