// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "CommandSet.h"
#include "Subscriptions.h"
#include "Watch.h"

namespace platen::tool {

namespace {

constexpr const char* kQueueNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI; without one,\n"
    "it is the server as a whole.\n";

constexpr const char* kEventNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI; without one,\n"
    "it is the server as a whole.\n"
    "EVENTS, with commas between them: job-created, job-state-changed, job-completed, "
    "job-stopped,\n"
    "job-progress, job-config-changed, printer-state-changed, printer-stopped,\n"
    "printer-config-changed, and what else the server knows.\n";

constexpr const char* kWatchNotes =
    "A QUEUE is a name, of a queue at ipp://HOST:PORT/printers/NAME, or a whole URI; without one,\n"
    "it is the server as a whole. Ends with Ctrl-C, and takes its subscription back.\n"
    "EVENTS, with commas between them, are by default job-created, job-state-changed,\n"
    "job-completed and printer-state-changed.\n";

void addQueue(CLI::App& command, std::string& queue) {
  command.add_option("QUEUE", queue, "Its name or URI (default: the server)");
}

CLI::Option* addLease(CLI::App& command, std::optional<std::int32_t>& lease) {
  return addNumber(command, "--lease", lease, 0, "SECONDS", "How long it shall last; 0: for ever");
}

void bindSubscriptions(CLI::App& command, SubscriptionsOptions& options) {
  addQueue(command, options.queue);
  addServerOptions(command, options);
}

void bindSubscribe(CLI::App& command, SubscribeOptions& options) {
  addQueue(command, options.queue);
  addList(command, "--events", options.events, "EVENTS", "What to be told of")->required();
  auto* const job = addNumber(command, "--job", options.job, 1, "NUMBER", "Only of this job");
  addLease(command, options.lease)->excludes(job);  // as long as the job, RFC 3995 §5.3.8
  command
      .add_option("--recipient", options.recipient,
                  "Where the server shall send events (default: they are fetched)")
      ->type_name("URI");
  addServerOptions(command, options);
}

void bindSubscription(CLI::App& command, SubscriptionOptions& options) {
  addNumber(command, "SUBSCRIPTION", options.id, 1, "", "Its number")->required();
  addQueue(command, options.queue);
  addServerOptions(command, options);
}

void bindRenewal(CLI::App& command, SubscriptionOptions& options) {
  bindSubscription(command, options);
  addLease(command, options.lease);
}

std::string checkInterval(const std::string& text) {
  return numberIn(text).value_or(0) < 0.1 ? "\"" + text + "\" is not a number from 0.1 on" : "";
}

void bindWatch(CLI::App& command, WatchOptions& options) {
  options.events = {"job-created", "job-state-changed", "job-completed", "printer-state-changed"};
  addQueue(command, options.queue);
  addList(command, "--events", options.events, "EVENTS", "What to be told of");
  command
      .add_option("--interval", options.interval,
                  "Ask that often (default: as often as the server wishes)")
      ->type_name("SECONDS")
      ->check(&checkInterval);
  addServerOptions(command, options);
}

}  // namespace

void addSubscriptionCommands(CommandSet& commands) {
  commands.add("watch", "Show what happens on a queue or a print server", &watch, &bindWatch,
               kWatchNotes);
  commands.add("subscriptions", "List subscriptions to events", &listSubscriptions,
               &bindSubscriptions, kQueueNotes);
  commands.add("subscribe", "Subscribe to events", &subscribe, &bindSubscribe, kEventNotes);
  commands.add("renew", "Have a subscription last longer", &renewSubscription, &bindRenewal,
               kQueueNotes);
  commands.add("unsubscribe", "Cancel a subscription", &cancelSubscription, &bindSubscription,
               kQueueNotes);
}

}  // namespace platen::tool
