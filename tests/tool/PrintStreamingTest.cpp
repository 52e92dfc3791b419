// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <pty.h>

#include <future>
#include <string>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/JobAnswer.h"
#include "tests/tool/RunningTool.h"

namespace platen::test {
namespace {

TEST(PrintStreaming, SendsAPipeAsItIsFilled) {
  std::promise<void> asked;
  std::string body;
  const FakePrinter printer([&](auto& connection) {
    const std::string head = connection.readHead();
    asked.set_value();
    body = connection.readBody(head);
    connection.answer(200, jobAnswer(3), "Content-Type: application/ipp\r\n");
  });
  RunningTool tool({"print", printer.uri(), "-"});
  tool.write("%PDF-1.7 the first octets");
  ASSERT_EQ(asked.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready)
      << "the request waited for the end of the document";
  tool.write(" and the rest");
  tool.closeInput();
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, kFirstLine + "job 12: pending\n");
  EXPECT_NE(body.find("application/pdf"), std::string::npos);
  EXPECT_TRUE(body.ends_with("\x03%PDF-1.7 the first octets and the rest"));
}

TEST(PrintStreaming, KnowsAFormatWhoseFirstOctetsComeOneByOne) {
  const FakePrinter printer({jobAnswer(3)});
  RunningTool tool({"print", printer.uri(), "-"});
  ASSERT_TRUE(tool.waitUntilHandling(SIGINT));
  for (const char octet : std::string("%PDF-")) {
    tool.write(std::string(1, octet));
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  tool.closeInput();
  EXPECT_EQ(tool.end().status, 0);
  EXPECT_EQ(printer.request(0)->attributeValueForKey("document-format").asString(),
            "application/pdf");
  EXPECT_EQ(printer.document(0), "%PDF-");
}

TEST(PrintStreaming, BeginsWithOneOctetWhenItIsToldTheFormat) {
  std::promise<void> asked;
  const FakePrinter printer([&](auto& connection) {
    const std::string head = connection.readHead();
    asked.set_value();
    connection.readBody(head);
    connection.answer(200, jobAnswer(3));
  });
  RunningTool tool({"print", printer.uri(), "-", "--format", "text/plain"});
  tool.write("x");
  EXPECT_EQ(asked.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  tool.closeInput();
  EXPECT_EQ(tool.end().status, 0);
}

// The peak of a run that prints so many octets from a pipe, in KiB.
long peakMemory(std::size_t megabytes) {
  std::size_t received = 0;
  const FakePrinter printer([&](auto& connection) {
    received = connection.readBody(connection.readHead()).size();
    connection.answer(200, jobAnswer(3), "Content-Type: application/ipp\r\n");
  });
  RunningTool tool({"print", printer.uri(), "-"});
  const std::string piece(1U << 20U, 'x');
  for (std::size_t count = 0; count < megabytes; ++count) {
    tool.write(piece);
  }
  tool.closeInput();
  EXPECT_EQ(tool.end().status, 0);
  EXPECT_GT(received, megabytes * piece.size());
  return tool.peakMemory();
}

TEST(PrintStreaming, HoldsNoDocumentInMemory) {
  const long usual = peakMemory(1);
  EXPECT_LT(peakMemory(64), usual + 16 * 1024);
}

TEST(PrintStreaming, HearsARefusalWhileThePipeIsSilent) {
  const FakePrinter printer([](auto& connection) {
    connection.readHead();
    connection.answer(403);
    connection.readToEnd();
  });
  RunningTool tool({"print", printer.uri(), "-", "--format", "text/plain"});
  tool.write("the beginning");
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "platen: Print-Job refused by " + printer.uri() + ": HTTP status 403 (Forbidden)\n");
}

TEST(PrintStreaming, HearsARefusalInTheMiddleOfALargeFile) {
  const FakePrinter printer([](auto& connection) {
    connection.readHead();
    connection.readSome(100000);
    connection.answer(413);
    connection.readToEnd();
  });
  const ScratchFolder folder;
  const std::string file = folder.add("large", std::string(std::size_t{16} << 20U, 'x'));
  const ToolRun run = runTool({"print", printer.uri(), file});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("HTTP status 413 (Content Too Large)\n"), std::string::npos) << run.err;
}

TEST(PrintStreaming, TellsAConnectionThatIsLostInTheMiddle) {
  const FakePrinter printer([](auto& connection) {
    connection.readHead();
    connection.reset();
  });
  RunningTool tool({"print", printer.uri(), "-", "--format", "text/plain"});
  tool.write("the beginning");
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err.find("platen: Print-Job: no answer from " + printer.uri()), 0U) << run.err;
}

TEST(PrintStreaming, WaitsForNoDocumentWhenTheCommandLineMakesNoSense) {
  const FakePrinter printer(std::vector<std::string>{});
  RunningTool tool({"print", printer.uri(), "-", "--name", std::string(256, 'n')});
  EXPECT_EQ(tool.end().status, 2);
}

// The one side of a terminal that cannot be read any more once the other is gone.
TEST(PrintStreaming, TellsADocumentThatIsCutShort) {
  std::promise<void> isUnderWay;
  const FakePrinter printer([&](auto& connection) {
    connection.readHead();
    isUnderWay.set_value();
    connection.readToEnd();
  });
  int source = -1;
  int writer = -1;
  ASSERT_EQ(::openpty(&source, &writer, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(::fcntl(writer, F_SETFD, FD_CLOEXEC), 0);
  const ScratchFile out;
  const ScratchFile err;
  const pid_t tool = startTool({"print", printer.uri(), "-", "--format", "text/plain"}, source,
                               out.descriptor(), err.descriptor());
  EXPECT_EQ(::write(writer, "the beginning", 13), 13);
  EXPECT_EQ(isUnderWay.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
  ::close(writer);
  EXPECT_EQ(statusOf(tool), 1);
  ::close(source);
  EXPECT_EQ(out.contents(), "");
  EXPECT_EQ(err.contents(),
            "platen: the document was cut short, standard input: Input/output error\n");
}

TEST(PrintStreaming, PrintsWhatIsLeftOfAFileAtStandardInput) {
  const FakePrinter printer({jobAnswer(3)});
  const ScratchFile in("a line for another\n%PDF-1.4");
  ::lseek(in.descriptor(), 19, SEEK_SET);
  const ScratchFile out;
  EXPECT_EQ(statusOf(startTool({"print", printer.uri(), "-"}, in.descriptor(), out.descriptor(),
                               out.descriptor())),
            0);
  EXPECT_EQ(printer.document(0), "%PDF-1.4");
}

}  // namespace
}  // namespace platen::test
