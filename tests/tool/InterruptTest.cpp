// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <csignal>
#include <future>
#include <string>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/JobAnswer.h"
#include "tests/tool/RunningTool.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

constexpr std::size_t kOperation = 2;
const std::string kCancelJob = "\x00\x08"s;

// Takes every document for job 12, which goes on being printed until somebody cancels it; then
// `cancel` answers.
FakePrinter::Script printingForEver(const std::function<void(tests::PeerConnection&)>& cancel) {
  return [cancel](tests::PeerConnection& connection) {
    for (;;) {
      const std::string request = connection.readRequest();
      if (request.empty()) {
        return;
      }
      if (request.substr(request.find("\r\n\r\n") + 4 + kOperation, 2) == kCancelJob) {
        return cancel(connection);
      }
      connection.answer(200, jobAnswer(5), "Content-Type: application/ipp\r\n");
    }
  };
}

FakePrinter::Script cancelledWith(const std::string& answer) {
  return printingForEver([answer](auto& connection) {
    connection.answer(200, answer, "Content-Type: application/ipp\r\n");
  });
}

class Interrupt : public testing::Test {
 protected:
  const ScratchFolder folder_;
  const std::string file_ = folder_.add("document", "x");
};

TEST_F(Interrupt, CancelsTheJobThatIsWaitedFor) {
  const struct {
    int signal;
    int status;
  } cases[] = {{SIGINT, 130}, {SIGTERM, 143}};
  for (const auto& [signal, status] : cases) {
    const FakePrinter printer(2, cancelledWith(response(0, "")));
    RunningTool tool({"print", printer.uri(), file_, "--wait"});
    ASSERT_TRUE(tool.waitForOutput("processing\n"));
    tool.signal(signal);
    const ToolRun run = tool.end();
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.err, "platen: canceled job 12\n");
    EXPECT_EQ(run.out, kFirstLine + "job 12: processing\n");
    const auto last = printer.request(printer.requestCount() - 1);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->ippOperationCodename(), "Cancel-Job");
    EXPECT_EQ(last->jobURI()->absoluteString(), "ipp://third-party.invalid/jobs/12");
    EXPECT_NE(last->attributeForKey("requesting-user-name"), nullptr);
  }
}

TEST_F(Interrupt, TellsWhenTheJobCannotBeCanceled) {
  const FakePrinter printer(2, cancelledWith(response(0x0404, "")));
  RunningTool tool({"print", printer.uri(), file_, "--wait"});
  ASSERT_TRUE(tool.waitForOutput("processing\n"));
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err, "platen: job 12 was not canceled: Cancel-Job refused by " + printer.uri() +
                         ": client-error-not-possible\n");
}

TEST_F(Interrupt, EndsAtOnceWhenItComesASecondTime) {
  std::promise<void> asked;
  const FakePrinter printer(2, printingForEver([&](auto& connection) {
                              asked.set_value();
                              connection.readToEnd();
                            }));
  RunningTool tool({"print", printer.uri(), file_, "--wait"});
  ASSERT_TRUE(tool.waitForOutput("processing\n"));
  tool.signal(SIGINT);
  ASSERT_EQ(asked.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err, "");
}

TEST_F(Interrupt, EndsAnUpload) {
  std::promise<void> isUnderWay;
  std::promise<std::size_t> received;
  const FakePrinter printer([&](auto& connection) {
    connection.readHead();
    isUnderWay.set_value();
    received.set_value(connection.readToEnd());
  });
  RunningTool tool({"print", printer.uri(), "-", "--format", "text/plain"});
  tool.write("the beginning");
  ASSERT_EQ(isUnderWay.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "platen: canceled: the document was not sent whole; "
            "some printers print what they got\n");
  EXPECT_GT(received.get_future().get(), 0U);
  EXPECT_EQ(printer.connectionCount(), 1U) << "there is no job to cancel";
}

TEST_F(Interrupt, SaysThatAWholeDocumentMayBePrinted) {
  std::promise<void> isSent;
  const FakePrinter printer([&](auto& connection) {
    connection.readRequest();
    isSent.set_value();
    connection.readToEnd();
  });
  RunningTool tool({"print", printer.uri(), file_});
  ASSERT_EQ(isSent.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  tool.signal(SIGTERM);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 143);
  EXPECT_EQ(run.err,
            "platen: canceled, but the document was sent: the printer, which had not answered, "
            "may print it\n");
}

TEST_F(Interrupt, EndsTheWaitForStandardInput) {
  const FakePrinter printer(std::vector<std::string>{});
  RunningTool tool({"print", printer.uri(), "-"});
  tool.write("%PDF");
  ASSERT_TRUE(tool.waitUntilHandling(SIGINT));
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err, "platen: canceled: nothing was sent\n");
  EXPECT_EQ(printer.connectionCount(), 0U);
}

// A port at which connections are neither taken nor refused: its queue, of one place, is full.
class FullPort {
 public:
  FullPort() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(listener_, generic, length), 0);
    EXPECT_EQ(::listen(listener_, 0), 0);
    EXPECT_EQ(::getsockname(listener_, generic, &length), 0);
    EXPECT_EQ(::connect(client_, generic, length), 0);
    port_ = ntohs(address.sin_port);
  }
  FullPort(const FullPort&) = delete;
  FullPort& operator=(const FullPort&) = delete;
  ~FullPort() {
    ::close(client_);
    ::close(listener_);
  }
  std::string uri() const { return "ipp://127.0.0.1:" + std::to_string(port_) + "/"; }

 private:
  int listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int client_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::uint16_t port_ = 0;
};

TEST_F(Interrupt, EndsAnAttemptToConnect) {
  const FullPort port;
  RunningTool tool({"print", port.uri(), file_});
  ASSERT_TRUE(tool.waitUntilHandling(SIGINT));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // or else it may not have begun
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.err.find("platen: canceled: "), 0U) << run.err;
}

TEST_F(Interrupt, StaysIgnoredWhereItIsIgnored) {
  const auto before = std::signal(SIGINT, SIG_IGN);
  const FakePrinter printer(std::vector<std::string>{});
  RunningTool tool({"print", printer.uri(), "-"});
  std::signal(SIGINT, before);
  ASSERT_TRUE(tool.waitUntilHandling(SIGTERM));
  EXPECT_FALSE(tool.isHandling(SIGINT));
  tool.signal(SIGINT);
  tool.signal(SIGTERM);
  EXPECT_EQ(tool.end().status, 143);
}

}  // namespace
}  // namespace platen::test
