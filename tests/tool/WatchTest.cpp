// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string>
#include <vector>

#include "tests/tool/RunningTool.h"
#include "tests/tool/ServerAnswers.h"

namespace platen::test {
namespace {

std::string made(int lease) {
  return response(0, "\x06" + attribute(0x21, "notify-subscription-id", int32(5)) +
                         attribute(0x21, "notify-lease-duration", int32(lease)));
}

std::string event(int number, const std::string& name, const std::string& more) {
  return "\x07" + attribute(0x21, "notify-subscription-id", int32(5)) +
         attribute(0x21, "notify-sequence-number", int32(number)) +
         attribute(0x44, "notify-subscribed-event", name) +
         attribute(0x21, "printer-up-time", int32(1700000000)) + more;
}

std::string jobEvent(int number, const std::string& text) {
  return event(number, "job-created",
               attribute(0x41, "notify-text", text) + attribute(0x42, "printer-name", "lab") +
                   attribute(0x45, "notify-printer-uri", "ipp://host/printers/lab") +
                   attribute(0x21, "notify-job-id", int32(7)) +
                   attribute(0x23, "job-state", int32(3)) +
                   attribute(0x44, "job-state-reasons", "none"));
}

// Of a printer that has no texts.
std::string printerEvent(int number) {
  return event(number, "printer-state-changed",
               attribute(0x45, "notify-printer-uri", "ipp://host/printers/lab") +
                   attribute(0x23, "printer-state", int32(5)) +
                   attribute(0x44, "printer-state-reasons", "paused"));
}

std::string events(const std::string& groups, int interval = 1) {
  return header(0) + "\x01" + charsetAndLanguage() +
         attribute(0x21, "notify-get-interval", int32(interval)) +
         attribute(0x21, "printer-up-time", int32(1700000005)) + groups + "\x03";
}

// Each answer in its turn, and the last one to every further question.
FakePrinter::Script answering(const std::vector<std::string>& answers) {
  return [answers](tests::PeerConnection& connection) {
    for (std::size_t i = 0; !connection.readRequest().empty(); ++i) {
      connection.answer(200, answers[std::min(i, answers.size() - 1)],
                        "Content-Type: application/ipp\r\n");
    }
  };
}

std::string lastOperation(const FakePrinter& server) {
  return operationOf(server, server.requestCount() - 1);
}

TEST(Watch, ShowsOneLineForEachEventUntilASignalAndTakesItsSubscriptionBack) {
  std::signal(SIGHUP, SIG_DFL);  // which the tests may have been started without
  for (const auto& [signal, status] :
       {std::pair{SIGINT, 130}, std::pair{SIGTERM, 143}, std::pair{SIGHUP, 129}}) {
    const FakePrinter server(
        answering({made(600), events(jobEvent(1, "Job\x1B created.") + printerEvent(2)), done()}));
    RunningTool tool({"watch", "lab", "--server", serverOf(server)});
    ASSERT_TRUE(tool.waitForOutput("printer-state-changed"));
    tool.signal(signal);
    const ToolRun run = tool.end();
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.err, "platen: subscription 5 canceled\n");
    EXPECT_EQ(run.out,
              "2023-11-14T22:13:20Z  job-created            lab job 7  Job\\x1b created.\n"
              "2023-11-14T22:13:20Z  printer-state-changed  lab  stopped\n");
    EXPECT_EQ(operationOf(server, 0), "Create-Printer-Subscription");
    EXPECT_EQ(targetOf(server, 0), server.uri("/printers/lab"));
    EXPECT_EQ(server.request(0)->notifyEvents(),
              (std::vector<std::string>{"job-created", "job-state-changed", "job-completed",
                                        "printer-state-changed"}));
    EXPECT_EQ(operationOf(server, 1), "Get-Notifications");
    EXPECT_EQ(lastOperation(server), "Cancel-Subscription");
    EXPECT_EQ(server.request(server.requestCount() - 1)->subscriptionId(), 5);
  }
}

TEST(Watch, WritesOneObjectPerLineForScripts) {
  const FakePrinter server(
      answering({made(600), events(jobEvent(1, "say \"x\"") + printerEvent(2)), done()}));
  RunningTool tool({"watch", "--json", "--events", "all", "--server", serverOf(server)});
  ASSERT_TRUE(tool.waitForOutput("printer-state-changed"));
  tool.signal(SIGINT);
  EXPECT_EQ(tool.end().out,
            "{\"time\":\"2023-11-14T22:13:20Z\",\"event\":\"job-created\",\"subscription_id\":5,"
            "\"sequence_number\":1,\"text\":\"say \\\"x\\\"\","
            "\"printer_uri\":\"ipp://host/printers/lab\",\"printer_name\":\"lab\","
            "\"printer_state\":null,\"printer_state_reasons\":[],\"accepting\":null,"
            "\"job_id\":7,\"job_name\":null,\"job_state\":\"pending\",\"job_state_reasons\":[]}\n"
            "{\"time\":\"2023-11-14T22:13:20Z\",\"event\":\"printer-state-changed\","
            "\"subscription_id\":5,\"sequence_number\":2,\"text\":null,"
            "\"printer_uri\":\"ipp://host/printers/lab\",\"printer_name\":null,"
            "\"printer_state\":\"stopped\",\"printer_state_reasons\":[\"paused\"],"
            "\"accepting\":null,\"job_id\":null,\"job_name\":null,\"job_state\":null,"
            "\"job_state_reasons\":[]}\n");
  EXPECT_EQ(server.request(0)->attributeValueForKey("notify-events").description(), "all");
}

TEST(Watch, AsksOnlyForWhatItHasNotToldAndTellsNothingTwice) {
  const FakePrinter server(
      answering({made(600), events(jobEvent(1, "one")), events(""),
                 events(jobEvent(1, "one") + jobEvent(2, "two")), events("")}));
  RunningTool tool({"watch", "--interval", "0.1", "--server", serverOf(server)});
  ASSERT_TRUE(tool.waitForOutput("two\n"));
  ASSERT_TRUE(becomesTrue([&] { return server.requestCount() > 4; }));
  tool.signal(SIGINT);
  const std::string out = tool.end().out;
  EXPECT_EQ(out.find("one\n"), out.rfind("one\n"));
  const int expected[] = {1, 2, 2, 3};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    const auto next = server.request(i + 1)->attributeForKey("notify-sequence-numbers");
    EXPECT_EQ(next->ippValue()->intValue(), expected[i]) << i;
  }
}

TEST(Watch, RenewsTheLeaseBeforeItEnds) {
  const FakePrinter server(answering({made(1), events("", 60), made(600), done()}));
  RunningTool tool({"watch", "--server", serverOf(server)});
  ASSERT_TRUE(becomesTrue([&] { return server.requestCount() > 2; }));
  EXPECT_EQ(operationOf(server, 2), "Renew-Subscription");
  EXPECT_EQ(server.request(2)->subscriptionId(), 5);
  tool.signal(SIGINT);
  EXPECT_EQ(tool.end().status, 130);
  EXPECT_EQ(server.requestCount(), 5U) << "it asks once more for events before it ends";
  EXPECT_EQ(lastOperation(server), "Cancel-Subscription");
}

TEST(Watch, AsksForTheLeaseThatAServerDoesNotTell) {
  const std::string silent =
      response(0, "\x06" + attribute(0x21, "notify-subscription-id", int32(5)));
  const FakePrinter server(answering({silent, made(1), events("", 60), done()}));
  RunningTool tool({"watch", "--server", serverOf(server)});
  ASSERT_TRUE(becomesTrue([&] { return server.requestCount() > 3; }));
  tool.signal(SIGINT);
  EXPECT_EQ(tool.end().status, 130);
  EXPECT_EQ(operationOf(server, 1), "Get-Subscription-Attributes");
  EXPECT_EQ(server.request(1)->subscriptionId(), 5);
  EXPECT_EQ(operationOf(server, 3), "Renew-Subscription");
}

TEST(Watch, TellsAtItsEndWhatHasHappenedSinceItAskedLast) {
  const FakePrinter server(answering(
      {made(600), events(jobEvent(1, "one"), 60), events(jobEvent(2, "two"), 60), done()}));
  RunningTool tool({"watch", "--server", serverOf(server)});
  ASSERT_TRUE(tool.waitForOutput("one\n"));
  tool.signal(SIGTERM);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 143);
  EXPECT_NE(run.out.find("two\n"), std::string::npos) << run.out;
  EXPECT_EQ(lastOperation(server), "Cancel-Subscription");
}

TEST(Watch, TriesOnceMoreToRenewWhileTheLeaseRuns) {
  const FakePrinter server(
      answering({made(2), events("", 60), refusal(0x0507, "busy"), made(600), done()}));
  RunningTool tool({"watch", "--server", serverOf(server)});
  ASSERT_TRUE(becomesTrue([&] { return server.requestCount() > 3; }));
  EXPECT_EQ(operationOf(server, 2), "Renew-Subscription");
  EXPECT_EQ(operationOf(server, 3), "Renew-Subscription");
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err, "platen: subscription 5 canceled\n");
}

TEST(Watch, EndsWhenItCannotRenewASecondTimeAndTakesItsSubscriptionBack) {
  const FakePrinter server(answering(
      {made(1), events("", 60), refusal(0x0507, "busy"), refusal(0x0507, "still"), done()}));
  const ToolRun run = runAt(server, {"watch"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: Renew-Subscription refused by " + server.uri("/") +
                         ": server-error-busy (still)\n");
  EXPECT_EQ(server.requestCount(), 5U);
  EXPECT_EQ(lastOperation(server), "Cancel-Subscription");
}

TEST(Watch, EndsAtOnceWhenThereIsNothingToRenew) {
  const FakePrinter server(answering({made(1), events("", 60), refusal(0x0406, "gone")}));
  EXPECT_EQ(runAt(server, {"watch"}).status, 1);
  EXPECT_EQ(server.requestCount(), 3U);
  EXPECT_EQ(lastOperation(server), "Renew-Subscription");
}

TEST(Watch, TakesItsSubscriptionBackWhenItFails) {
  const FakePrinter server(answering({made(600), refusal(0x0500, "oops"), done()}));
  const ToolRun run = runAt(server, {"watch"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: Get-Notifications refused by " + server.uri("/") +
                         ": server-error-internal-error (oops)\n");
  EXPECT_EQ(lastOperation(server), "Cancel-Subscription");
}

// A server that takes the question for the rest of the events and says nothing to it.
TEST(Watch, WaitsForNobodyLongAfterASignal) {
  const FakePrinter server(2, [](tests::PeerConnection& connection) {
    for (const auto& answer : {made(600), events(jobEvent(1, "x"), 60)}) {
      if (connection.readRequest().empty()) {
        return;
      }
      connection.answer(200, answer, "Content-Type: application/ipp\r\n");
    }
    connection.readToEnd();
  });
  RunningTool tool({"watch", "--timeout", "0", "--server", serverOf(server)});
  ASSERT_TRUE(tool.waitForOutput("job-created"));
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err, "platen: subscription 5 canceled\n");
}

TEST(Watch, EndsWhenTheSubscriptionIsGone) {
  const FakePrinter server(answering({made(600), refusal(0x0406, "gone")}));
  const ToolRun run = runAt(server, {"watch"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: Get-Notifications refused by " + server.uri("/") +
                         ": client-error-not-found (gone)\n");
}

TEST(Watch, TellsWhenItsSubscriptionCannotBeTakenBack) {
  const FakePrinter server(answering({made(600), events(jobEvent(1, "x")), response(0x0404, "")}));
  RunningTool tool({"watch", "--server", serverOf(server)});
  ASSERT_TRUE(tool.waitForOutput("job-created"));
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err, "platen: subscription 5 was not canceled: Cancel-Subscription refused by " +
                         server.uri("/") + ": client-error-not-possible\n");
}

TEST(Watch, TakesItsSubscriptionBackWhenNobodyReads) {
  const FakePrinter server(answering({made(600), events(jobEvent(1, "x")), done()}));
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
  ::close(pipe[0]);
  const ScratchFile in;
  const ScratchFile err;
  const pid_t process = startTool({"watch", "--server", serverOf(server)}, in.descriptor(), pipe[1],
                                  err.descriptor());
  ::close(pipe[1]);
  EXPECT_EQ(statusOf(process), 1);
  EXPECT_EQ(err.contents(), "platen: cannot write to standard output\n");
  EXPECT_EQ(lastOperation(server), "Cancel-Subscription");
}

}  // namespace
}  // namespace platen::test
