// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <ctime>
#include <string>
#include <vector>

#include "tests/tool/RunningTool.h"
#include "tests/tool/ServerAnswers.h"
#include "tests/tool/Terminal.h"

namespace platen::test {
namespace {

constexpr int kHeld = 4;
constexpr int kCompleted = 9;

std::string job(int id, int state, const std::string& more) {
  return "\x02" + attribute(0x21, "job-id", int32(id)) +
         attribute(0x23, "job-state", int32(state)) + more;
}

// One as a print server has it, which counts from 1970; one of a printer that is up for 100 s.
std::string twoJobs() {
  return response(0, job(7, kHeld,
                         attribute(0x45, "job-uri", "ipp://host/jobs/7") +
                             attribute(0x44, "job-state-reasons", "job-hold-until-specified") +
                             attribute(0x45, "job-printer-uri", "ipp://host/printers/lab") +
                             attribute(0x42, "job-originating-user-name", "alice") +
                             attribute(0x42, "job-name", "a \"letter\"\n") +
                             attribute(0x21, "job-k-octets", int32(18)) +
                             attribute(0x21, "job-priority", int32(50)) +
                             attribute(0x21, "time-at-creation", int32(1700000000)) +
                             attribute(0x13, "time-at-completed", "")) +
                         job(123, kCompleted,
                             attribute(0x44, "job-state-reasons", "none") +
                                 attribute(0x31, "date-time-at-creation",
                                           "\x07\xD1\x02\x03\x04\x05\x06" + octet(0) + "+" +
                                               octet(0) + octet(0)) +
                                 attribute(0x21, "time-at-creation", int32(42))));
}

TEST(JobCommands, ListsJobsInColumns) {
  const FakePrinter server({twoJobs()});
  const ToolRun run = runAt(server, {"jobs"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "Job  Queue  User   Created               KB  State                                   "
            " Name\n"
            "7    lab    alice  2023-11-14T22:13:20Z  18  pending-held (job-hold-until-specified) "
            " a \"letter\"\\n\n"
            "123  -      -      2001-02-03T04:05:06Z  -   completed                               "
            " -\n");
  EXPECT_EQ(operationOf(server, 0), "Get-Jobs");
  EXPECT_EQ(targetOf(server, 0), server.uri("/"));
  EXPECT_EQ(wordOf(server, 0, "which-jobs"), "");
  EXPECT_EQ(wordOf(server, 0, "my-jobs"), "");
}

// Two wide characters, a letter and the accent on it: 9 octets in 5 columns.
TEST(JobCommands, AlignsByTheWidthOfCharacters) {
  const std::string user = "\xE5\xB1\xB1\xE7\x94\xB0o\xCC\x81";
  const FakePrinter server(
      {response(0, job(7, kHeld, attribute(0x42, "job-originating-user-name", user)) +
                       job(8, kHeld, attribute(0x42, "job-originating-user-name", "bob")))});
  EXPECT_EQ(runAt(server, {"jobs"}).out,
            "Job  Queue  User   Created  KB  State         Name\n"
            "7    -      " +
                user +
                "  -        -   pending-held  -\n"
                "8    -      bob    -        -   pending-held  -\n");
}

TEST(JobCommands, ListsJobsForScripts) {
  const FakePrinter server({twoJobs()});
  EXPECT_EQ(runAt(server, {"jobs", "--json"}).out,
            "[{\"id\":7,\"uri\":\"ipp://host/jobs/7\",\"name\":\"a \\\"letter\\\"\\n\","
            "\"user\":\"alice\",\"host\":null,\"queue\":\"lab\","
            "\"queue_uri\":\"ipp://host/printers/lab\",\"state\":\"pending-held\","
            "\"state_reasons\":[\"job-hold-until-specified\"],\"printer_message\":null,"
            "\"priority\":50,\"kilobytes\":18,\"sheets_completed\":null,"
            "\"created\":\"2023-11-14T22:13:20Z\",\"started\":null,\"completed\":null},"
            "{\"id\":123,\"uri\":null,\"name\":null,\"user\":null,\"host\":null,\"queue\":null,"
            "\"queue_uri\":null,\"state\":\"completed\",\"state_reasons\":[],"
            "\"printer_message\":null,\"priority\":null,\"kilobytes\":null,"
            "\"sheets_completed\":null,\"created\":\"2001-02-03T04:05:06Z\",\"started\":null,"
            "\"completed\":null}]\n");
}

// As the command writes it.
std::string instant(std::time_t seconds) {
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", std::gmtime(&seconds));
  return text.data();
}

TEST(JobCommands, TellsInstantsOfAPrinterThatCountsFromItsStart) {
  const std::string times = attribute(0x21, "time-at-creation", int32(40)) +
                            attribute(0x21, "time-at-processing", int32(70));
  const FakePrinter server(
      {response(0, job(1, kHeld, times + attribute(0x21, "job-printer-up-time", int32(100))))});
  const std::time_t before = std::time(nullptr);
  const std::string out = runAt(server, {"jobs", "--json"}).out;
  bool isRight = false;
  for (std::time_t now = before; now <= std::time(nullptr); ++now) {
    isRight = isRight || out.find("\"created\":\"" + instant(now - 60) + "\",\"started\":\"" +
                                  instant(now - 30) + "\"") != std::string::npos;
  }
  EXPECT_TRUE(isRight) << out;
  const FakePrinter silent({response(0, job(1, kHeld, times))});
  EXPECT_NE(runAt(silent, {"jobs", "--json"}).out.find("\"created\":null,\"started\":null"),
            std::string::npos)
      << "nobody knows when that printer was started";
}

TEST(JobCommands, TellsOnATerminalWhatIsWaitedFor) {
  const FakePrinter server([](auto& connection) {
    connection.readRequest();
    connection.sleep(std::chrono::milliseconds(400));
    connection.answer(200, done(), "Content-Type: application/ipp\r\n");
  });
  const ScratchFile in;
  const Screen screen(runOnTerminal({"hold", "7", "--server", serverOf(server)}, in.descriptor(),
                                    80, {"TERM=xterm"})
                          .out);
  EXPECT_TRUE(screen.hasShown("Hold-Job: waiting for " + server.uri("/jobs/7") + ", "));
  EXPECT_EQ(screen.shown(), "job 7 held\n");
}

TEST(JobCommands, AsksForTheWantedJobs) {
  const FakePrinter server({done(), done()});
  EXPECT_EQ(runAt(server, {"jobs", "lab", "--completed", "--mine", "--limit", "3"}).out,
            "no jobs\n");
  EXPECT_EQ(targetOf(server, 0), server.uri("/printers/lab"));
  EXPECT_EQ(server.request(0)->attributeValueForKey("which-jobs").description(), "completed");
  EXPECT_EQ(server.request(0)->attributeForKey("my-jobs")->ippValue()->boolValue(), true);
  EXPECT_EQ(server.request(0)->attributeForKey("limit")->ippValue()->intValue(), 3);
  const FakePrinter other({done()});
  EXPECT_EQ(runAt(other, {"jobs", other.uri(), "--all", "--json"}).out, "[]\n");
  EXPECT_EQ(targetOf(other, 0), other.uri());
  EXPECT_EQ(other.request(0)->attributeValueForKey("which-jobs").description(), "all");
}

TEST(JobCommands, TellsOfAnEmptyListFromAMissingQueue) {
  const FakePrinter server({response(0x0406, "")});
  EXPECT_EQ(runAt(server, {"jobs", "none"}).status, 1);
}

TEST(JobCommands, ShowsOneJob) {
  const FakePrinter server({twoJobs()});
  EXPECT_EQ(runAt(server, {"job", "7"}).out,
            "Job        7\n"
            "URI        ipp://host/jobs/7\n"
            "Name       a \"letter\"\\n\n"
            "User       alice\n"
            "Queue      lab\n"
            "State      pending-held (job-hold-until-specified)\n"
            "Priority   50\n"
            "KB         18\n"
            "Created    2023-11-14T22:13:20Z\n");
  EXPECT_EQ(operationOf(server, 0), "Get-Job-Attributes");
  EXPECT_EQ(targetOf(server, 0), server.uri("/jobs/7"));
  const FakePrinter other({twoJobs()});
  EXPECT_EQ(runAt(other, {"job", "7", "--json"}).out.substr(0, 40),
            "{\"id\":7,\"uri\":\"ipp://host/jobs/7\",\"name\"");
}

TEST(JobCommands, HasNoRowMadeLongByACellOfAnother) {
  const std::string name(100, 'q');
  const FakePrinter server({response(
      0, job(1, kHeld, attribute(0x45, "job-printer-uri", "ipp://host/printers/" + name)) +
             job(2, kHeld, attribute(0x42, "job-name", "x")))});
  const std::string gap(2, ' ');
  const std::string headings = "Job" + gap + "Queue" + std::string(55, ' ') + gap + "User" + gap +
                               "Created" + gap + "KB" + gap + "State       " + gap + "Name\n";
  EXPECT_EQ(runAt(server, {"jobs"}).out,
            headings + "1    " + name + "  -     -        -   pending-held  -\n" +  //
                "2    -" + std::string(59, ' ') + "  -     -        -   pending-held  x\n");
}

TEST(JobCommands, ShowADashThatIsAName) {
  const FakePrinter server({response(0, job(1, kHeld, attribute(0x42, "job-name", "-")))});
  EXPECT_EQ(runAt(server, {"job", "1"}).out,
            "Job        1\nName       -\nState      pending-held\n");
}

TEST(JobCommands, TellInstantsOfTheLastYears) {
  const std::string last = "\xFF\xFF\x02\x03\x04\x05\x06" + octet(0) + "+" + octet(0) + octet(0);
  const FakePrinter server(
      {response(0, job(1, kHeld, attribute(0x31, "date-time-at-creation", last)))});
  EXPECT_NE(runAt(server, {"jobs"}).out.find("  65535-02-03T04:05:06Z  "), std::string::npos);
}

TEST(JobCommands, SaysWhenAnAnswerHasNoJob) {
  const FakePrinter server({done()});
  const ToolRun run = runAt(server, {"job", "7"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: " + server.uri("/jobs/7") + " tells nothing\n");
}

TEST(JobCommands, HasAJobDoWhatItIsTold) {
  const struct {
    std::string command;
    std::string operation;
    std::string out;
  } cases[] = {{"hold", "Hold-Job", "job 7 held\n"},
               {"release", "Release-Job", "job 7 released\n"},
               {"restart", "Restart-Job", "job 7 restarted\n"},
               {"cancel", "Cancel-Job", "job 7 canceled\n"}};
  for (const auto& [command, operation, out] : cases) {
    const FakePrinter server({done(), done()});
    const ToolRun run = runAt(server, {command, "7"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, out);
    EXPECT_EQ(operationOf(server, 0), operation);
    EXPECT_EQ(targetOf(server, 0), server.uri("/jobs/7"));
  }
}

TEST(JobCommands, TakesTheURIOfAJob) {
  const FakePrinter server({done()});
  EXPECT_EQ(runTool({"cancel", server.uri("/ipp/print/7"), "--json"}).out,
            "{\"operation\":\"Cancel-Job\",\"target\":\"" + server.uri("/ipp/print/7") +
                "\",\"status\":\"successful-ok\",\"unsupported\":[]}\n");
  EXPECT_EQ(targetOf(server, 0), server.uri("/ipp/print/7"));
  const FakePrinter odd({done()});
  EXPECT_EQ(runTool({"cancel", odd.uri("/a/b")}).out, "the job " + odd.uri("/a/b") + " canceled\n");
}

TEST(JobCommands, MovesAJob) {
  const FakePrinter server({done()});
  EXPECT_EQ(runAt(server, {"move", "7", "lab"}).out, "job 7 moved to queue lab\n");
  EXPECT_EQ(operationOf(server, 0), "CUPS-Move-Job");
  EXPECT_EQ(targetOf(server, 0), server.uri("/jobs/7"));
  EXPECT_EQ(wordOf(server, 0, "job-printer-uri").substr(0, 4), "job:");
  EXPECT_EQ(server.request(0)->attributeValueForKey("job-printer-uri").asURL().absoluteString(),
            server.uri("/printers/lab"));
}

TEST(JobCommands, TellsWhatTheServerRefused) {
  const FakePrinter server({header(0x040B) + "\x01" + charsetAndLanguage() +
                            attribute(0x41, "status-message", "no") + "\x05" +
                            attribute(0x10, "limit", "") + "\x03"});
  const ToolRun run = runAt(server, {"jobs", "--limit", "3"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: Get-Jobs refused by " + server.uri("/") +
                         ": client-error-attributes-or-values-not-supported (no); unsupported: "
                         "limit\n");
}

TEST(JobCommands, RefusesWhatMakesNoSense) {
  const struct {
    Arguments words;
    std::string reason;
  } cases[] = {{{"cancel", "seven"}, "\"seven\" is neither the number of a job nor a URI"},
               {{"cancel", "0"}, "\"0\" is neither the number"},
               {{"cancel", "7x"}, "\"7x\" is neither the number"},
               {{"cancel", "99999999999"}, "is neither the number"},
               {{"cancel"}, "JOB is required"},
               {{"move", "7"}, "QUEUE is required"},
               {{"jobs", ""}, "\"\" is neither the name of a queue"},
               {{"jobs", "--limit", "0"}, "\"0\" is not a whole number from 1 on"},
               {{"jobs", "--limit", "1.5"}, "\"1.5\" is not a whole number"},
               {{"jobs", "--all", "--completed"}, "excludes"}};
  for (const auto& [words, reason] : cases) {
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 2) << reason;
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
  }
}

TEST(JobCommands, EndsWhenInterruptedWhileItWaits) {
  for (const auto& [signal, status] : {std::pair{SIGINT, 130}, std::pair{SIGTERM, 143}}) {
    const FakePrinter server([](auto& connection) {
      connection.readRequest();
      connection.readRequest();  // which never comes
    });
    RunningTool tool({"hold", "7", "--server", serverOf(server)});
    ASSERT_TRUE(tool.waitUntilHandling(signal));
    ASSERT_TRUE(becomesTrue([&] { return server.requestCount() > 0; }));
    tool.signal(signal);
    const ToolRun run = tool.end();
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.err, "platen: canceled before " + server.uri("/jobs/7") + " answered Hold-Job\n");
  }
}

TEST(JobCommands, GivesUpAfterTheTimeOut) {
  const FakePrinter server([](auto& connection) {
    connection.readRequest();
    connection.readRequest();  // which never comes
  });
  const ToolRun run = runAt(server, {"hold", "7", "--timeout", "0.1"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err.find("platen: Hold-Job: no answer from "), 0U) << run.err;
}

}  // namespace
}  // namespace platen::test
