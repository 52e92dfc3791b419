// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "CommandSet.h"
#include "Subscriptions.h"
#include "Watch.h"

namespace platen::tool {

namespace {

constexpr const char* kEventNotes =
    "EVENTS, with commas between them: job-created, job-state-changed, job-completed,\n"
    "job-stopped, job-progress, job-config-changed, printer-state-changed, printer-stopped,\n"
    "printer-restarted, printer-shutdown, printer-config-changed, printer-media-changed,\n"
    "printer-finishings-changed, printer-queue-order-changed, and what else the server knows.\n";

constexpr const char* kWatchNotes =
    "By default job-created, job-state-changed, job-completed and printer-state-changed.\n"
    "--interval is 0.1 at least; without it, the server is asked for events as often as it "
    "wishes,\n"
    "but once a second at most. Ends at Ctrl-C, and cancels its subscription.\n";

constexpr const char* kSubscribeNotes =
    "--job and --lease exclude each other: a subscription to a job lasts as long as the job.\n";

void addQueue(CLI::App& command, std::optional<std::string>& queue) {
  command.add_option("QUEUE", queue, "Name or URI of a queue (default: the whole server)");
}

CLI::Option* addLease(CLI::App& command, std::optional<std::int32_t>& lease) {
  return addNumber(command, "--lease", lease, 0, "SECONDS",
                   "How long it shall last; 0: for ever (default: up to the server)");
}

void bindSubscriptions(CLI::App& command, SubscriptionsOptions& options) {
  addQueue(command, options.queue);
  addServerOptions(command, options);
}

void bindSubscribe(CLI::App& command, SubscribeOptions& options) {
  addQueue(command, options.queue);
  addList(command, "--events", options.events, "EVENTS", "What to be told of (required)")
      ->required();
  auto* const job =
      addNumber(command, "--job", options.job, 1, "NUMBER", "Only events of this job");
  addLease(command, options.lease)->excludes(job);  // as long as the job, RFC 3995 §5.3.8
  command
      .add_option("--recipient", options.recipient,
                  "Where the server shall send events (default: they are fetched)")
      ->type_name("URI");
  addServerOptions(command, options);
}

void addSubscription(CLI::App& command, SubscriptionOptions& options) {
  addNumber(command, "SUBSCRIPTION", options.id, 1, "", "Number of the subscription")->required();
  addQueue(command, options.queue);
}

void bindSubscription(CLI::App& command, SubscriptionOptions& options) {
  addSubscription(command, options);
  addServerOptions(command, options);
}

void bindRenewal(CLI::App& command, SubscriptionOptions& options) {
  addSubscription(command, options);
  addLease(command, options.lease);
  addServerOptions(command, options);
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
                  "Ask for events that often (default: as the server wishes)")
      ->type_name("SECONDS")
      ->check(&checkInterval);
  addServerOptions(command, options);
}

}  // namespace

void addSubscriptionCommands(CommandSet& commands) {
  commands.add("watch", "Show what happens on a queue or a print server", &watch, &bindWatch,
               std::string(kQueueOrServerNotes) + kEventNotes + kWatchNotes);
  commands.add("subscriptions", "List subscriptions to events", &listSubscriptions,
               &bindSubscriptions, kQueueOrServerNotes);
  commands.add("subscribe", "Subscribe to events", &subscribe, &bindSubscribe,
               std::string(kQueueOrServerNotes) + kEventNotes + kSubscribeNotes);
  commands.add("renew", "Make a subscription last longer", &renewSubscription, &bindRenewal,
               kQueueOrServerNotes);
  commands.add("unsubscribe", "Cancel a subscription", &cancelSubscription, &bindSubscription,
               kQueueOrServerNotes);
}

}  // namespace platen::tool
