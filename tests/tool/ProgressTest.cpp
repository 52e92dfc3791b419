// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/JobAnswer.h"
#include "tests/tool/Terminal.h"

namespace platen::test {
namespace {

constexpr auto kLongEnough = std::chrono::milliseconds(250);

// Takes its time over the document, long enough for a line to be drawn, and then gives `answers`.
FakePrinter::Script slowly(std::vector<std::string> answers) {
  return [answers = std::move(answers)](tests::PeerConnection& connection) {
    const std::string head = connection.readHead();
    connection.sleep(kLongEnough);
    connection.readBody(head);
    for (const std::string& answer : answers) {
      connection.answer(200, answer, "Content-Type: application/ipp\r\n");
      connection.readRequest();
    }
  };
}

// More than the sockets take while nobody reads.
class Progress : public testing::Test {
 protected:
  ToolRun print(const FakePrinter& printer, const Arguments& options = {},
                unsigned short columns = 80,
                const std::vector<std::string>& environment = {"TERM=xterm"}) const {
    Arguments words{"print", printer.uri(), file_};
    words.insert(words.end(), options.begin(), options.end());
    return runOnTerminal(words, empty_.descriptor(), columns, environment);
  }

  const ScratchFolder folder_;
  const std::string file_ = folder_.add("document", std::string(20'000'000, 'x'));
  const ScratchFile empty_;
};

TEST_F(Progress, ShowsHowMuchOfAFileIsSentAndLeavesNothingBehind) {
  const FakePrinter printer(slowly({jobAnswer(3)}));
  const ToolRun run = print(printer);
  EXPECT_EQ(run.status, 0) << run.out;
  const Screen screen(run.out);
  EXPECT_TRUE(screen.hasShown(" MB of 20.0 MB  ")) << run.out;
  EXPECT_TRUE(screen.hasShown("%  "));
  EXPECT_TRUE(screen.hasShown("[="));
  EXPECT_TRUE(screen.hasShown("B/s"));
  EXPECT_LT(screen.widest(), 80U);
  EXPECT_EQ(screen.shown(), kFirstLine + "job 12: pending\n");
}

TEST_F(Progress, FitsEveryTerminal) {
  for (const unsigned short columns : std::vector<unsigned short>{1, 20, 55, 200}) {
    const FakePrinter printer(slowly({response(0, "")}));
    const ToolRun run = print(printer, {}, columns);
    const Screen screen(run.out);
    EXPECT_GT(screen.states().size(), 1U) << columns;
    for (const std::string& line : screen.states()) {
      if (!line.starts_with("the job:")) {
        EXPECT_LT(line.size(), columns) << line;
      }
    }
    EXPECT_EQ(screen.shown(), "the job: (no state)\n");
  }
}

TEST_F(Progress, ShowsTheStateWhileItWaits) {
  const FakePrinter printer(slowly({jobAnswer(3), jobAnswer(5, "job-printing"), jobAnswer(9)}));
  const ToolRun run = print(printer, {"--wait"});
  EXPECT_EQ(run.status, 0) << run.out;
  const Screen screen(run.out);
  EXPECT_TRUE(screen.hasShown("job 12: pending, 0 s")) << run.out;
  EXPECT_TRUE(screen.hasShown("job 12: processing (job-printing), 0 s"));
  EXPECT_EQ(screen.shown(), kFirstLine +
                                "job 12: pending\njob 12: processing (job-printing)\n"
                                "job 12: completed\n");
}

TEST_F(Progress, MakesRoomForAnError) {
  const FakePrinter printer(slowly({response(0x0507, "")}));
  const ToolRun run = print(printer, {}, 200);
  EXPECT_EQ(run.status, 1);
  const Screen screen(run.out);
  EXPECT_TRUE(screen.hasShown(" MB of 20.0 MB  ")) << run.out;
  EXPECT_EQ(screen.shown(),
            "platen: Print-Job refused by " + printer.uri() + ": server-error-busy\n");
}

TEST_F(Progress, MakesRoomForTheLineAboutASignal) {
  const FakePrinter printer([](auto& connection) {
    connection.readHead();
    connection.readToEnd();
  });
  bool isSignalled = false;
  const auto interruptOnceDrawn = [&](const std::string& written, pid_t process) {
    if (!isSignalled && written.find("waiting for the answer") != std::string::npos) {
      isSignalled = ::kill(process, SIGINT) == 0;
    }
  };
  const ToolRun run = runOnTerminal({"print", printer.uri(), file_}, empty_.descriptor(), 80,
                                    {"TERM=xterm"}, interruptOnceDrawn);
  EXPECT_EQ(run.status, 130);
  const std::string shown = Screen(run.out).shown();
  EXPECT_EQ(shown.find("platen: canceled, but"), 0U) << run.out;
  EXPECT_EQ(shown.find('\n'), shown.size() - 1);
}

TEST_F(Progress, IsNotShownWhereItIsNotWanted) {
  const struct {
    Arguments options;
    std::vector<std::string> environment;
  } cases[] = {{{"--quiet"}, {"TERM=xterm"}}, {{"-q"}, {"TERM=xterm"}}, {{}, {"TERM=dumb"}}};
  for (const auto& [options, environment] : cases) {
    const FakePrinter printer(slowly({jobAnswer(3)}));
    EXPECT_EQ(print(printer, options, 80, environment).out,
              "job 12: ipp://third-party.invalid/jobs/12\r\njob 12: pending\r\n");
  }
}

TEST_F(Progress, IsNotShownWithoutATerminal) {
  const FakePrinter printer(slowly({jobAnswer(3)}));
  const ToolRun run = runTool({"print", printer.uri(), file_}, "", {"TERM=xterm"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, kFirstLine + "job 12: pending\n");
}

TEST_F(Progress, CountsWhatComesFromAPipe) {
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  ASSERT_EQ(::write(pipe[1], "some octets", 11), 11);
  ::close(pipe[1]);
  const FakePrinter printer([](auto& connection) {
    const std::string head = connection.readHead();
    connection.readBody(head);
    connection.sleep(kLongEnough);
    connection.answer(200, jobAnswer(3));
  });
  const ToolRun run = runOnTerminal({"print", printer.uri(), "-"}, pipe[0], 80, {"TERM=xterm"});
  ::close(pipe[0]);
  EXPECT_TRUE(Screen(run.out).hasShown("11 B sent, waiting for the answer")) << run.out;
}

}  // namespace
}  // namespace platen::test
