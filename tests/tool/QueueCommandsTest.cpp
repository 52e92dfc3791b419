// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tool/ServerAnswers.h"
#include "tests/tool/Terminal.h"

namespace platen::test {
namespace {

constexpr int kIdle = 3;
constexpr int kStopped = 5;

std::string queue(const std::string& name, int state, const std::string& reasons, int type,
                  const std::string& more = "") {
  return "\x04" + attribute(0x42, "printer-name", name) +
         attribute(0x23, "printer-state", int32(state)) +
         attribute(0x44, "printer-state-reasons", reasons) +
         attribute(0x23, "printer-type", int32(type)) + more;
}

// A local grayscale queue, the default; a remote one in color, which is as hostile as it can be.
std::string twoQueues() {
  return response(
      0, queue("lab", kIdle, "none", 0x20004,
               attribute(0x45, "printer-uri-supported", "ipp://host/printers/lab") +
                   attribute(0x45, "device-uri", "socket://10.0.0.7") +
                   attribute(0x41, "printer-info", "\xE6\x89\x93\xE5\x8D\xB0") +
                   attribute(0x22, "printer-is-accepting-jobs", octet(1)) +
                   attribute(0x22, "printer-is-shared", octet(0)) +
                   attribute(0x21, "queued-job-count", int32(12)) +
                   attribute(0x42, "requesting-user-name-allowed", "alice") + also(0x42, "bob")) +
             queue("a\"b\\\x1B[2J", kStopped, "paused", 0x40001A,
                   attribute(0x41, "printer-info", "two\nlines") +
                       attribute(0x22, "printer-is-shared", octet(1)) +
                       attribute(0x41, "printer-location", "\xE2\x80\xAE")));
}

const std::string kHeadings =
    "Name         Default  Accepting  Shared  Jobs  State             Device             Info\n";
const std::string kLab =
    "lab          yes      yes        no      12    idle              socket://10.0.0.7  \xE6\x89"
    "\x93\xE5\x8D\xB0\n";
const std::string kOther =
    "a\"b\\\\x1b[2J  no       -          yes     -     stopped (paused)  -                  "
    "two\\nlines\n";

TEST(QueueCommands, ListsQueuesInColumns) {
  const FakePrinter server({twoQueues()});
  const ToolRun run = runAt(server, {"queues"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, kHeadings + kLab + kOther);
  EXPECT_EQ(operationOf(server, 0), "CUPS-Get-Printers");
}

TEST(QueueCommands, ListsQueuesForScripts) {
  const FakePrinter server({twoQueues()});
  EXPECT_EQ(
      runAt(server, {"queues", "--json"}).out,
      "[{\"name\":\"lab\",\"uri\":\"ipp://host/printers/lab\","
      "\"info\":\"\xE6\x89\x93\xE5\x8D\xB0\",\"location\":null,\"make_and_model\":null,"
      "\"device_uri\":\"socket://10.0.0.7\",\"state\":\"idle\",\"state_reasons\":[],"
      "\"state_message\":null,\"accepting\":true,\"shared\":false,\"jobs\":12,\"default\":true,"
      "\"class\":false,\"remote\":false,\"color\":false,\"grayscale\":true,\"duplex\":false,"
      "\"requires_authentication\":false,\"type\":131076,\"allowed_users\":[\"alice\",\"bob\"],"
      "\"denied_users\":[]},"
      "{\"name\":\"a\\\"b\\\\\\u001b[2J\",\"uri\":null,\"info\":\"two\\nlines\","
      "\"location\":\"\\u202e\",\"make_and_model\":null,\"device_uri\":null,"
      "\"state\":\"stopped\",\"state_reasons\":[\"paused\"],\"state_message\":null,"
      "\"accepting\":null,\"shared\":true,\"jobs\":null,\"default\":false,\"class\":false,"
      "\"remote\":true,\"color\":true,\"grayscale\":false,\"duplex\":true,"
      "\"requires_authentication\":true,\"type\":4194330,\"allowed_users\":[],"
      "\"denied_users\":[]}]\n");
}

// Thai and Chinese: 15 octets in 3 columns, 6 in 4.
TEST(QueueCommands, AlignsByTheWidthOfCharacters) {
  const std::string thai = "\xE0\xB8\x9E\xE0\xB8\xB4\xE0\xB8\xA1\xE0\xB8\x9E\xE0\xB9\x8C";
  const std::string chinese = "\xE6\x89\x93\xE5\x8D\xB0";
  const FakePrinter server(
      {response(0, queue(thai, kIdle, "none", 4) + queue(chinese, kIdle, "none", 4) +
                       queue("q", kIdle, "none", 4))});
  const std::string rest = "  no       -          -       -     idle   -       -\n";
  EXPECT_EQ(runAt(server, {"queues"}).out,
            "Name  Default  Accepting  Shared  Jobs  State  Device  Info\n" + thai + " " + rest +
                chinese + rest + "q   " + rest);
}

TEST(QueueCommands, TellsNullForATypeThatTheServerDoesNotTell) {
  const FakePrinter server({response(0, "\x04" + attribute(0x42, "printer-name", "bare"))});
  const std::string out = runAt(server, {"queues", "--json"}).out;
  EXPECT_NE(out.find("\"name\":\"bare\""), std::string::npos) << out;
  EXPECT_NE(out.find("\"type\":null,"), std::string::npos) << out;
  EXPECT_NE(out.find("\"default\":false,\"class\":false,"), std::string::npos) << out;
}

TEST(QueueCommands, LeavesOutWhatHasNoName) {
  const std::string nameless = "\x04" + attribute(0x23, "printer-state", int32(kIdle));
  const FakePrinter server({response(0, nameless + queue("lab", kIdle, "none", 4) + nameless)});
  EXPECT_EQ(runAt(server, {"queues"}).out,
            "Name  Default  Accepting  Shared  Jobs  State  Device  Info\n"
            "lab   no       -          -       -     idle   -       -\n");
  const FakePrinter other({response(0, nameless)});
  EXPECT_EQ(runAt(other, {"queues", "--json"}).out, "[]\n");
}

TEST(QueueCommands, FiltersQueues) {
  const struct {
    Arguments options;
    bool lab;
    bool other;
  } cases[] = {{{"--local"}, true, false},
               {{"--remote"}, false, true},
               {{"--color"}, false, true},
               {{"--grayscale"}, true, false},
               {{"--default"}, true, false},
               {{"--requiring-authentication"}, false, true},
               {{"--shared"}, false, true},
               {{"--not-shared"}, true, false},
               {{"--remote", "--color"}, false, true},
               {{"--local", "--color"}, false, false}};
  for (const auto& [options, lab, other] : cases) {
    const FakePrinter server({twoQueues()});
    Arguments words{"queues"};
    words.insert(words.end(), options.begin(), options.end());
    const std::string out = runAt(server, words).out;
    EXPECT_EQ(out.find("\nlab ") != std::string::npos, lab) << options.front();
    EXPECT_EQ(out.find("\na\"b") != std::string::npos, other) << options.front();
    EXPECT_EQ(out == "no queues\n", !lab && !other) << out;
  }
}

TEST(QueueCommands, TakesNotFoundForAnEmptyList) {
  const struct {
    Arguments words;
    std::string out;
  } cases[] = {{{"queues"}, "no queues\n"},         {{"queues", "--json"}, "[]\n"},
               {{"default"}, "no default queue\n"}, {{"default", "--json"}, "{\"name\":null}\n"},
               {{"devices"}, "no devices\n"},       {{"devices", "--json"}, "[]\n"}};
  for (const auto& [words, out] : cases) {
    const FakePrinter server({response(0x0406, "")});
    const ToolRun run = runAt(server, words);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, out);
  }
}

TEST(QueueCommands, HasBoldHeadingsOnATerminalUnlessTheyAreNotWanted) {
  for (const bool isWanted : {true, false}) {
    const FakePrinter server({twoQueues()});
    const ScratchFile in;
    const std::vector<std::string> environment{"TERM=xterm", isWanted ? "X=1" : "NO_COLOR=1"};
    const std::string out =
        runOnTerminal({"queues", "--server", serverOf(server)}, in.descriptor(), 80, environment)
            .out;
    EXPECT_EQ(out.find("\x1B[1mName ") != std::string::npos, isWanted) << out;
    EXPECT_EQ(out.find("\x1B[2J"), std::string::npos) << "what a server says is no command";
  }
}

TEST(QueueCommands, ListsDevices) {
  const std::string answer = response(
      0,
      "\x04" + attribute(0x44, "device-class", "network") + attribute(0x45, "device-uri", "ipp") +
          attribute(0x41, "device-info", "Internet Printing Protocol") + "\x04" +
          attribute(0x44, "device-class", "direct") +
          attribute(0x45, "device-uri", "usb://Maker/Model") +
          attribute(0x41, "device-info", "Maker Model") +
          attribute(0x41, "device-make-and-model", "Maker Model 7") +
          attribute(0x41, "device-id", "MFG:Maker;") + attribute(0x41, "device-location", "here"));
  const FakePrinter server({answer});
  EXPECT_EQ(runAt(server, {"devices"}).out,
            "Class    Device             Info                        Model\n"
            "network  ipp                Internet Printing Protocol  -\n"
            "direct   usb://Maker/Model  Maker Model                 Maker Model 7\n");
  const FakePrinter other({answer});
  EXPECT_EQ(runAt(other, {"devices", "--json"}).out,
            "[{\"uri\":\"ipp\",\"class\":\"network\",\"info\":\"Internet Printing Protocol\","
            "\"make_and_model\":null,\"id\":null,\"location\":null},"
            "{\"uri\":\"usb://Maker/Model\",\"class\":\"direct\",\"info\":\"Maker Model\","
            "\"make_and_model\":\"Maker Model 7\",\"id\":\"MFG:Maker;\",\"location\":\"here\"}]\n");
}

TEST(QueueCommands, ShowsTheDefault) {
  const FakePrinter server({response(0, queue("lab", kIdle, "none", 4))});
  EXPECT_EQ(runAt(server, {"default"}).out, "lab\n");
  EXPECT_EQ(operationOf(server, 0), "CUPS-Get-Default");
  EXPECT_EQ(targetOf(server, 0), server.uri("/"));
  EXPECT_EQ(wordOf(server, 0, "requesting-user-name").substr(0, 10), "operation:");
}

TEST(QueueCommands, HasAQueueDoWhatItIsTold) {
  const struct {
    Arguments words;
    std::string operation;
    std::string out;
  } cases[] = {{{"pause", "a b"}, "Pause-Printer", "queue a b paused\n"},
               {{"resume", "a b"}, "Resume-Printer", "queue a b resumed\n"},
               {{"purge", "a b"}, "Purge-Jobs", "all jobs of queue a b purged\n"},
               {{"default", "a b"}, "CUPS-Set-Default", "queue a b is the default\n"},
               {{"queue", "remove", "a b"}, "CUPS-Delete-Printer", "queue a b removed\n"}};
  for (const auto& [words, operation, out] : cases) {
    const FakePrinter server({done()});
    const ToolRun run = runAt(server, words);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, out);
    EXPECT_EQ(operationOf(server, 0), operation);
    EXPECT_EQ(targetOf(server, 0), server.uri("/printers/a%20b"));
  }
}

TEST(QueueCommands, TellsScriptsWhatWasDone) {
  const FakePrinter server({response(1, "")});
  EXPECT_EQ(runAt(server, {"pause", server.uri(), "--json"}).out,
            "{\"operation\":\"Pause-Printer\",\"target\":\"" + server.uri() +
                "\",\"status\":\"successful-ok-ignored-or-substituted-attributes\","
                "\"unsupported\":[]}\n");
  const FakePrinter other({response(1, "")});
  EXPECT_EQ(
      runAt(other, {"pause", other.uri()}).out,
      "the queue " + other.uri() + " paused (successful-ok-ignored-or-substituted-attributes)\n");
}

TEST(QueueCommands, TellsWhatTheServerIgnored) {
  const std::string answer =
      header(1) + "\x01" + charsetAndLanguage() + attribute(0x41, "status-message", "so\nso") +
      "\x05" + attribute(0x10, "odd", "") + attribute(0x44, "media", "a\x1B") + "\x03";
  const FakePrinter server({answer});
  const ToolRun run = runAt(server, {"pause", "lab"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            "queue lab paused (successful-ok-ignored-or-substituted-attributes (so\\nso); "
            "unsupported: odd; refused: media a\\x1b)\n");
  const FakePrinter other({answer});
  EXPECT_EQ(runAt(other, {"pause", "lab", "--json"}).out,
            "{\"operation\":\"Pause-Printer\",\"target\":\"" + other.uri("/printers/lab") +
                "\",\"status\":\"successful-ok-ignored-or-substituted-attributes\","
                "\"unsupported\":[\"odd\",\"media\"]}\n");
}

TEST(QueueCommands, TellsARefusalInOneLine) {
  const FakePrinter server({refusal(0x0406, "No such\nqueue.")});
  const ToolRun run = runAt(server, {"pause", "none"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "platen: Pause-Printer refused by " + server.uri("/printers/none") +
                         ": client-error-not-found (No such\\nqueue.)\n");
}

TEST(QueueCommands, AddsAQueueReadyToPrint) {
  const FakePrinter server({response(0x0406, ""), done()});
  const ToolRun run =
      runAt(server, {"queue", "add", "lab", "socket://10.0.0.7", "--info", "Lab", "--location",
                     "Room 12", "--shared", "--allow", "alice,bob", "--allow", "carol"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "queue lab added\n");
  EXPECT_EQ(operationOf(server, 0), "Get-Printer-Attributes");
  EXPECT_EQ(operationOf(server, 1), "CUPS-Add-Modify-Printer");
  const auto request = server.request(1);
  EXPECT_EQ(targetOf(server, 1), server.uri("/printers/lab"));
  EXPECT_EQ(request->deviceURI()->absoluteString(), "socket://10.0.0.7");
  EXPECT_EQ(request->printerInfo(), "Lab");
  EXPECT_EQ(request->printerLocation(), "Room 12");
  EXPECT_EQ(request->printerState(), kIdle);
  EXPECT_TRUE(request->printerIsAcceptingJobs());
  EXPECT_TRUE(request->attributeForKey("printer-is-shared")->ippValue()->boolValue());
  EXPECT_EQ(request->allowedUserNames(), (std::vector<std::string>{"alice", "bob", "carol"}));
  ASSERT_EQ(request->printerGroups().size(), 1U);
  EXPECT_NE(request->printerGroups().front()->attributeForName("requesting-user-name-allowed"),
            nullptr)
      << "where a print server looks for it";
}

TEST(QueueCommands, AddsNoQueueThatIsThereAndModifiesNoneThatIsNot) {
  const FakePrinter full({response(0, queue("lab", kIdle, "none", 4))});
  const ToolRun add = runAt(full, {"queue", "add", "lab", "file:///dev/null"});
  EXPECT_EQ(add.status, 1);
  EXPECT_EQ(add.err, "platen: queue lab exists already: see queue modify\n");
  EXPECT_EQ(full.requestCount(), 1U);
  const FakePrinter empty({response(0x0406, "")});
  const ToolRun modify = runAt(empty, {"queue", "modify", "lab", "--info", "Lab"});
  EXPECT_EQ(modify.status, 1);
  EXPECT_EQ(modify.err, "platen: queue lab does not exist: see queue add\n");
  EXPECT_EQ(empty.requestCount(), 1U);
}

TEST(QueueCommands, ModifiesOnlyWhatIsSaid) {
  const FakePrinter server({done(), done()});
  const ToolRun run =
      runAt(server, {"queue", "modify", "lab", "--rejecting", "--not-shared", "--deny", "eve"});
  EXPECT_EQ(run.out, "queue lab modified\n");
  const auto request = server.request(1);
  EXPECT_EQ(request->attributeForKey("printer-is-accepting-jobs")->ippValue()->boolValue(), false);
  EXPECT_EQ(request->attributeForKey("printer-is-shared")->ippValue()->boolValue(), false);
  EXPECT_EQ(request->deniedUserNames(), std::vector<std::string>{"eve"});
  for (const char* name : {"device-uri", "printer-info", "printer-location", "printer-state",
                           "requesting-user-name-allowed"}) {
    EXPECT_EQ(request->attributeForKey(name), nullptr) << name;
  }
}

TEST(QueueCommands, TakesAnEmptyTextForASetting) {
  const FakePrinter server({done(), done()});
  EXPECT_EQ(runAt(server, {"queue", "modify", "lab", "--info", ""}).out, "queue lab modified\n");
  ASSERT_NE(server.request(1)->attributeForKey("printer-info"), nullptr);
  EXPECT_EQ(server.request(1)->attributeForKey("printer-location"), nullptr);
}

TEST(QueueCommands, RefusesWhatMakesNoSenseBeforeAnythingIsSent) {
  const struct {
    Arguments words;
    std::string reason;
  } cases[] = {
      {{"pause", "a/b"}, "\"a/b\" is neither the name of a queue nor a URI"},
      {{"pause", ""}, "\"\" is neither the name of a queue"},
      {{"pause", "ipps://host/q"}, "encrypted"},
      {{"pause", "q", "--server", "host/x"}, "\"host/x\" is not a server: say HOST or HOST:PORT"},
      {{"queues", "--server", "me@host"}, "is not a server"},
      {{"queues", "--server", ""}, "is not a server"},
      {{"queues", "--server", "host:99999"}, "is not a server"},
      {{"queue"}, "a command is missing (see platen queue --help)"},
      {{"queue", "bogus"},
       "\"bogus\" is neither a command of platen queue nor an option (see platen queue --help)"},
      {{"queue", "delete", "lab"}, "\"delete\" is neither a command of platen queue nor an option"},
      {{"queue", "--bogus"}, "\"--bogus\" is neither a command of platen queue nor an option"},
      {{"queue", "--bogus", "remove", "q"}, "\"--bogus\" is neither a command of platen queue"},
      {{"queue", "remove", "q", "more"}, "more"},
      {{"queue", "remove", "q", "--bogus"}, "--bogus"},
      {{"queue", "modify", "q"}, "nothing to change: see platen queue modify --help"},
      {{"default", ""}, "\"\" is neither the name of a queue"},
      {{"queue", "add", "q"}, "DEVICE is required"},
      {{"queue", "add", "q", "no uri"}, "\"no uri\" is not the URI of a device"},
      {{"queue", "add", "q", "file:/x", "--shared", "--not-shared"}, "excludes"},
      {{"queue", "modify", "q", "--allow", "a", "--deny", "b"}, "excludes"},
      {{"queue", "modify", "q", "--allow", ""}, "--allow names no user"},
      {{"queue", "modify", "q", "--allow="}, "--allow"},
      {{"queue", "modify", "q", "--info", "\xFF"}, "is not"},
      {{"queue", "modify", "q", "--info", std::string(1024, 'i')}, "is too long"},
      {{"queue", "modify", "q", "--deny", std::string(256, 'u')}, "is too long"},
  };
  for (const auto& [words, reason] : cases) {
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 2) << reason;
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
}

TEST(QueueCommands, TellsThatNobodyAnswers) {
  std::string gone;
  { gone = serverOf(FakePrinter(std::vector<std::string>{})); }
  const ToolRun run = runTool({"queues", "--server", gone});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err.find("platen: CUPS-Get-Printers: no answer from ipp://" + gone + "/: "), 0U)
      << run.err;
}

}  // namespace
}  // namespace platen::test
