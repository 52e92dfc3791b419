// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/JobAnswer.h"
#include "tests/tool/Terminal.h"

namespace platen::test {
namespace {

/// What the terminal is to show, as the printer waits for it.
class Awaited {
 public:
  explicit Awaited(std::string text) : text_(std::move(text)) {}

  void look(const std::string& written) {
    const std::lock_guard lock(mutex_);
    isShown_ = isShown_ || written.find(text_) != std::string::npos;
    changed_.notify_all();
  }
  /// For 10 seconds at most.
  void wait() {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [this] { return isShown_; });
  }

 private:
  const std::string text_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isShown_ = false;
};

/// Does this before it reads the document, and then gives `answers`.
FakePrinter::Script pausing(std::function<void(tests::PeerConnection&)> pause,
                            std::vector<std::string> answers) {
  return
      [pause = std::move(pause), answers = std::move(answers)](tests::PeerConnection& connection) {
        const std::string head = connection.readHead();
        pause(connection);
        connection.readBody(head);
        for (const std::string& answer : answers) {
          connection.answer(200, answer, "Content-Type: application/ipp\r\n");
          connection.readRequest();
        }
      };
}

/// Reads the document once the terminal shows what is awaited.
FakePrinter::Script awaiting(Awaited& shown, std::vector<std::string> answers) {
  return pausing([&shown](tests::PeerConnection&) { shown.wait(); }, std::move(answers));
}

/// Takes its time over the document, in which a line would be drawn.
FakePrinter::Script slowly(std::vector<std::string> answers) {
  const auto pause = [](tests::PeerConnection& connection) {
    connection.sleep(std::chrono::milliseconds(250));
  };
  return pausing(pause, std::move(answers));
}

class Progress : public testing::Test {
 protected:
  ToolRun print(const FakePrinter& printer, Awaited& shown, const Arguments& options = {},
                unsigned short columns = 80) const {
    Arguments words{"print", printer.uri(), file_};
    words.insert(words.end(), options.begin(), options.end());
    return runOnTerminal(words, empty_.descriptor(), columns, {"TERM=xterm"},
                         [&shown](const std::string& written, pid_t) { shown.look(written); });
  }
  const ScratchFolder folder_;
  /// More than the sockets take while nobody reads.
  const std::string file_ = folder_.add("document", std::string(20'000'000, 'x'));
  const ScratchFile empty_;
};

TEST_F(Progress, ShowsHowMuchOfAFileIsSentAndLeavesNothingBehind) {
  Awaited bar("[=");
  const FakePrinter printer(awaiting(bar, {jobAnswer(3)}));
  const ToolRun run = print(printer, bar);
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
    Awaited drawn("\x1B[K");
    const FakePrinter printer(awaiting(drawn, {response(0, "")}));
    const ToolRun run = print(printer, drawn, {}, columns);
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
  Awaited line("\x1B[K");
  const FakePrinter printer(
      awaiting(line, {jobAnswer(3), jobAnswer(5, "job-printing"), jobAnswer(9)}));
  const ToolRun run = print(printer, line, {"--wait"});
  EXPECT_EQ(run.status, 0) << run.out;
  const Screen screen(run.out);
  EXPECT_TRUE(screen.hasShown("job 12: pending, ")) << run.out;
  EXPECT_TRUE(screen.hasShown("job 12: processing (job-printing), "));
  EXPECT_EQ(screen.shown(), kFirstLine +
                                "job 12: pending\njob 12: processing (job-printing)\n"
                                "job 12: completed\n");
}

TEST_F(Progress, MakesRoomForAnError) {
  Awaited sizes(" MB of 20.0 MB  ");
  const FakePrinter printer(awaiting(sizes, {response(0x0507, "")}));
  const ToolRun run = print(printer, sizes, {}, 200);
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
    Arguments words{"print", printer.uri(), file_};
    words.insert(words.end(), options.begin(), options.end());
    EXPECT_EQ(runOnTerminal(words, empty_.descriptor(), 80, environment).out,
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
  const std::string line = "11 B sent, waiting for the answer";
  Awaited shown(line);
  const FakePrinter printer([&shown](auto& connection) {
    const std::string head = connection.readHead();
    connection.readBody(head);
    shown.wait();
    connection.answer(200, jobAnswer(3));
  });
  const ToolRun run =
      runOnTerminal({"print", printer.uri(), "-"}, pipe[0], 80, {"TERM=xterm"},
                    [&shown](const std::string& written, pid_t) { shown.look(written); });
  ::close(pipe[0]);
  EXPECT_TRUE(Screen(run.out).hasShown(line)) << run.out;
}

}  // namespace
}  // namespace platen::test
