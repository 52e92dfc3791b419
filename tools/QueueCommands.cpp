// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "CommandSet.h"
#include "Queues.h"

namespace platen::tool {

namespace {

constexpr const char* kQueueNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI; with a URI\n"
    "--server has nothing to say.\n";

constexpr const char* kSettingsNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI; with a URI\n"
    "--server has nothing to say. USERS are names with commas between them; \"all\" takes back\n"
    "whom the queue was closed to. What is not said stays as it is.\n";

void bindQueues(CLI::App& command, QueuesOptions& options) {
  command.add_flag("--local", options.local, "Only those with a printer of this server");
  command.add_flag("--remote", options.remote, "Only those that another server has");
  command.add_flag("--color", options.color, "Only those that print in color");
  command.add_flag("--grayscale", options.grayscale, "Only those that print black and white");
  command.add_flag("--default", options.isDefault, "Only the default queue");
  command.add_flag("--requiring-authentication", options.requiringAuthentication,
                   "Only those that ask who prints");
  command.add_flag("--shared", options.shared, "Only those that are offered to others");
  command.add_flag("--not-shared", options.notShared, "Only those that are not");
  addServerOptions(command, options);
}

void bindQueue(CLI::App& command, QueueOptions& options) {
  addWord(command, "QUEUE", options.queue, "Its name or URI");
  addServerOptions(command, options);
}

void bindDefault(CLI::App& command, QueueOptions& options) {
  command.add_option("QUEUE", options.queue, "The name or URI of the new default");
  addServerOptions(command, options);
}

void bindSettings(CLI::App& command, QueueSettingsOptions& options) {
  command.add_option("--info", options.info, "What it is, for people")->type_name("TEXT");
  command.add_option("--location", options.location, "Where it is, for people")->type_name("TEXT");
  addChoice(command, "--shared", "--not-shared", options.shared, "Offer it to others",
            "Keep it to this server");
  addChoice(command, "--accepting", "--rejecting", options.accepting, "Take jobs", "Take no jobs");
  auto* const allow = addList(command, "--allow", options.allowed, "USERS", "Only these may print");
  addList(command, "--deny", options.denied, "USERS", "These may not print")->excludes(allow);
}

void bindAdd(CLI::App& command, QueueSettingsOptions& options) {
  addWord(command, "QUEUE", options.queue, "Its name or URI");
  command.add_option("DEVICE", options.device, "The URI of its device; see platen devices")
      ->required();
  bindSettings(command, options);
  addServerOptions(command, options);
}

void bindModify(CLI::App& command, QueueSettingsOptions& options) {
  addWord(command, "QUEUE", options.queue, "Its name or URI");
  command.add_option("--device", options.device, "The URI of its device")->type_name("URI");
  bindSettings(command, options);
  addServerOptions(command, options);
}

void bindServer(CLI::App& command, ServerOptions& options) { addServerOptions(command, options); }

}  // namespace

void addQueueCommands(CommandSet& commands) {
  commands.add("queues", "List the queues of a print server", &listQueues, &bindQueues);
  commands.add("default", "Show or set the default queue of a print server", &showOrSetDefault,
               &bindDefault, kQueueNotes);
  commands.add("pause", "Stop a queue from printing", &pauseQueue, &bindQueue, kQueueNotes);
  commands.add("resume", "Let a queue print again", &resumeQueue, &bindQueue, kQueueNotes);
  commands.add("purge", "Cancel and forget all jobs of a queue", &purgeQueue, &bindQueue,
               kQueueNotes);
  CLI::App& family = commands.addFamily("queue", "Add, modify or remove a queue");
  commands.add("add", "Add a queue, ready to print", &addQueue, &bindAdd, kSettingsNotes, &family);
  commands.add("modify", "Change a queue", &modifyQueue, &bindModify, kSettingsNotes, &family);
  commands.add("remove", "Remove a queue, with its jobs", &removeQueue, &bindQueue, kQueueNotes,
               &family);
  commands.add("devices", "List the devices that a print server finds", &listDevices, &bindServer);
}

}  // namespace platen::tool
