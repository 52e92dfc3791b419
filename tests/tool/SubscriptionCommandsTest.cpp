// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tool/ServerAnswers.h"

namespace platen::test {
namespace {

std::string twoSubscriptions() {
  return response(0, "\x06" + attribute(0x21, "notify-subscription-id", int32(3)) +
                         attribute(0x44, "notify-events", "job-completed") +
                         also(0x44, "job-created") +
                         attribute(0x45, "notify-printer-uri", "ipp://host/printers/lab") +
                         attribute(0x21, "notify-job-id", int32(7)) +
                         attribute(0x42, "notify-subscriber-user-name", "alice") +
                         attribute(0x45, "notify-recipient-uri", "rss://host/feed") +
                         attribute(0x21, "notify-lease-duration", int32(0)) + "\x06" +
                         attribute(0x21, "notify-subscription-id", int32(41)) +
                         attribute(0x44, "notify-events", "all") +
                         attribute(0x44, "notify-pull-method", "ippget") +
                         attribute(0x21, "notify-lease-duration", int32(86400)) +
                         attribute(0x21, "notify-time-interval", int32(5)));
}

TEST(SubscriptionCommands, ListsSubscriptionsInColumns) {
  const FakePrinter server({twoSubscriptions()});
  const ToolRun run = runAt(server, {"subscriptions"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "Subscription  Queue  Job  User   Lease     Delivery         Events\n"
            "3             lab    7    alice  for ever  rss://host/feed  job-completed,"
            "job-created\n"
            "41            -      -    -      86400 s   ippget           all\n");
  EXPECT_EQ(operationOf(server, 0), "Get-Subscriptions");
  EXPECT_EQ(targetOf(server, 0), server.uri("/"));
}

TEST(SubscriptionCommands, ListsSubscriptionsForScripts) {
  const FakePrinter server({twoSubscriptions()});
  EXPECT_EQ(runAt(server, {"subscriptions", "lab", "--json"}).out,
            "[{\"id\":3,\"events\":[\"job-completed\",\"job-created\"],\"job_id\":7,"
            "\"printer_uri\":\"ipp://host/printers/lab\",\"user\":\"alice\",\"pull_method\":null,"
            "\"recipient_uri\":\"rss://host/feed\",\"lease_seconds\":0,"
            "\"interval_seconds\":null},"
            "{\"id\":41,\"events\":[\"all\"],\"job_id\":null,\"printer_uri\":null,"
            "\"user\":null,\"pull_method\":\"ippget\",\"recipient_uri\":null,"
            "\"lease_seconds\":86400,\"interval_seconds\":5}]\n");
  EXPECT_EQ(targetOf(server, 0), server.uri("/printers/lab"));
}

TEST(SubscriptionCommands, TellsNoSubscriptionsFromNoQueue) {
  const std::string notFound = response(0x0406, "");
  const FakePrinter server({notFound});
  EXPECT_EQ(runAt(server, {"subscriptions"}).out, "no subscriptions\n");
  const FakePrinter queue({notFound, done()});
  EXPECT_EQ(runAt(queue, {"subscriptions", "lab", "--json"}).out, "[]\n");
  const FakePrinter missing({notFound, notFound});
  const ToolRun run = runAt(missing, {"subscriptions", "lab"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: Get-Printer-Attributes refused by " + missing.uri("/printers/lab") +
                         ": client-error-not-found\n");
}

std::string made(const std::string& more = "") {
  return response(0, "\x06" + attribute(0x21, "notify-subscription-id", int32(5)) + more);
}

TEST(SubscriptionCommands, SubscribesToEventsToBeFetched) {
  const FakePrinter server({made(attribute(0x21, "notify-lease-duration", int32(300)))});
  const ToolRun run = runAt(server, {"subscribe", "lab", "--events", "job-completed,job-created",
                                     "--events", "all", "--lease", "600"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "subscription 5, lease 300 s\n");
  EXPECT_EQ(operationOf(server, 0), "Create-Printer-Subscription");
  EXPECT_EQ(targetOf(server, 0), server.uri("/printers/lab"));
  EXPECT_EQ(server.request(0)->notifyEvents(),
            (std::vector<std::string>{"job-completed", "job-created", "all"}));
  EXPECT_EQ(wordOf(server, 0, "notify-pull-method").substr(0, 12), "subscription");
  EXPECT_EQ(server.request(0)->attributeForKey("notify-lease-duration")->ippValue()->intValue(),
            600);
  EXPECT_EQ(wordOf(server, 0, "notify-recipient-uri"), "");
}

TEST(SubscriptionCommands, SubscribesToAJobAndToAServer) {
  const FakePrinter server({made()});
  EXPECT_EQ(
      runAt(server, {"subscribe", "lab", "--events", "job-completed", "--job", "7", "--json"}).out,
      "{\"id\":5,\"lease_seconds\":null,\"status\":\"successful-ok\",\"unsupported\":[]}\n");
  EXPECT_EQ(operationOf(server, 0), "Create-Job-Subscription");
  EXPECT_EQ(server.request(0)->attributeForKey("notify-job-id")->ippValue()->intValue(), 7);
  const FakePrinter other({made()});
  EXPECT_EQ(
      runAt(other, {"subscribe", "--events", "all", "--recipient", "rss://localhost/feed"}).out,
      "subscription 5\n");
  EXPECT_EQ(targetOf(other, 0), other.uri("/"));
  EXPECT_EQ(other.request(0)->attributeValueForKey("notify-recipient-uri").asURL().absoluteString(),
            "rss://localhost/feed");
  EXPECT_EQ(wordOf(other, 0, "notify-pull-method"), "");
}

TEST(SubscriptionCommands, SaysWhenASubscriptionHasNoNumber) {
  const FakePrinter server({done()});
  const ToolRun run = runAt(server, {"subscribe", "--events", "all"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "platen: " + server.uri("/") + " gave the subscription no number: successful-ok\n");
}

TEST(SubscriptionCommands, SaysWhyASubscriptionHasNoNumber) {
  const std::string answer = header(3) + "\x01" + charsetAndLanguage() +
                             attribute(0x41, "status-message", "too\nmany") + "\x06" +
                             attribute(0x23, "notify-status-code", int32(0x040B)) + "\x03";
  const std::string reason =
      " gave the subscription no number: successful-ok-ignored-subscriptions (too\\nmany); "
      "subscription: client-error-attributes-or-values-not-supported\n";
  for (const char* command : {"subscribe", "watch"}) {
    const FakePrinter server({answer});
    const ToolRun run = runAt(server, {command, "--events", "all"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "platen: " + server.uri("/") + reason);
    EXPECT_EQ(server.requestCount(), 1U) << "there is nothing to cancel";
  }
}

std::string madeWithReservations() {
  return response(1, "\x05" + attribute(0x10, "notify-lease-duration", "") + "\x06" +
                         attribute(0x21, "notify-subscription-id", int32(5)) +
                         attribute(0x23, "notify-status-code", int32(5)));
}

TEST(SubscriptionCommands, TellsASuccessWithReservations) {
  const FakePrinter server({madeWithReservations()});
  const ToolRun run = runAt(server, {"subscribe", "--events", "all"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "subscription 5 (successful-ok-ignored-or-substituted-attributes; "
            "unsupported: notify-lease-duration; subscription: successful-ok-too-many-events)\n");
  const FakePrinter other({madeWithReservations()});
  EXPECT_EQ(runAt(other, {"subscribe", "--events", "all", "--json"}).out,
            "{\"id\":5,\"lease_seconds\":null,"
            "\"status\":\"successful-ok-ignored-or-substituted-attributes\","
            "\"unsupported\":[\"notify-lease-duration\"]}\n");
  const FakePrinter watched({madeWithReservations(), done(), refusal(0x0406, "gone")});
  EXPECT_EQ(runAt(watched, {"watch", "--interval", "0.1"}).err,
            "platen: subscription 5 (successful-ok-ignored-or-substituted-attributes; "
            "unsupported: notify-lease-duration; subscription: successful-ok-too-many-events)\n"
            "platen: Get-Notifications refused by " +
                watched.uri("/") + ": client-error-not-found (gone)\n");
}

TEST(SubscriptionCommands, RenewsAndCancels) {
  const FakePrinter server({done()});
  EXPECT_EQ(runAt(server, {"renew", "5", "--lease", "900"}).out, "subscription 5 renewed\n");
  EXPECT_EQ(operationOf(server, 0), "Renew-Subscription");
  EXPECT_EQ(server.request(0)->subscriptionId(), 5);
  EXPECT_EQ(wordOf(server, 0, "notify-lease-duration").substr(0, 12), "subscription");
  const FakePrinter other({done()});
  EXPECT_EQ(runAt(other, {"unsubscribe", "5", "lab", "--json"}).out,
            "{\"operation\":\"Cancel-Subscription\",\"target\":\"" + other.uri("/printers/lab") +
                "\",\"status\":\"successful-ok\",\"unsupported\":[]}\n");
  EXPECT_EQ(other.request(0)->subscriptionId(), 5);
}

TEST(SubscriptionCommands, RefusesWhatMakesNoSense) {
  const struct {
    Arguments words;
    std::string reason;
  } cases[] = {
      {{"subscribe", "lab"}, "--events is required"},
      {{"subscribe", "--events", "job-completed", "--job", "7", "--lease", "9"}, "excludes"},
      {{"subscribe", "--events", "job-completed", "--lease", "-1"}, "-1"},
      {{"subscribe", "--events", "\xC3\xA9"}, "is not"},
      {{"subscribe", "--events", std::string(256, 'e')}, "is too long"},
      {{"subscribe", "--events", ""}, "no event is named"},
      {{"subscribe", "--events", "all", "--recipient", "nobody"}, "\"nobody\" is not a URI"},
      {{"subscribe", "--events", "all", "--recipient", "ipp://h/" + std::string(1023, 'r')},
       "is too long"},
      {{"watch", ""}, "\"\" is neither the name of a queue"},
      {{"subscriptions", ""}, "\"\" is neither the name of a queue"},
      {{"subscribe", "", "--events", "all"}, "\"\" is neither the name of a queue"},
      {{"renew", "5", ""}, "\"\" is neither the name of a queue"},
      {{"unsubscribe", "5", ""}, "\"\" is neither the name of a queue"},
      {{"renew", "five"}, "\"five\" is not a whole number from 1 on"},
      {{"unsubscribe"}, "SUBSCRIPTION is required"},
      {{"watch", "--interval", "0"}, "\"0\" is not a number from 0.1 on"},
      {{"watch", "--interval", "1e-310"}, "\"1e-310\" is not a number from 0.1 on"},
      {{"watch", "--interval", "soon"}, "\"soon\" is not a number"},
  };
  for (const auto& [words, reason] : cases) {
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 2) << reason;
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
  }
}

}  // namespace
}  // namespace platen::test
