// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "tests/support/PrintServers.h"
#include "tests/tool/RunningTool.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

/// The command against cupsd and ippeveprinter.
class PrintServersTool : public testing::Test {
 protected:
  void SetUp() override {
    if (!servers_.available()) GTEST_SKIP() << servers_.whyUnavailable();
  }

  std::string queue(const std::string& name) const {
    return servers_.cupsURI() + "printers/" + name;
  }

  PrintServers& servers_ = PrintServers::shared();
  const ScratchFolder folder_;
  const std::string document_ = "%PDF-1.4\nnot much of a document\n";
};

std::string contentsOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool hasLine(const std::string& text, const std::string& name, const std::string& value) {
  const auto at = text.find("\n  " + name + " ");
  const auto end = text.find('\n', at + 1);
  return at != std::string::npos && text.substr(0, end).ends_with(" " + value);
}

TEST_F(PrintServersTool, ShowsWhatIppeveprinterIs) {
  const ToolRun run = runTool({"attributes", servers_.ippeveURI()});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(hasLine(run.out, "attributes-charset", "utf-8"));
  EXPECT_TRUE(hasLine(run.out, "copies-supported", "1-999"));
  EXPECT_TRUE(hasLine(run.out, "printer-geo-location", "(unknown)"));
  EXPECT_TRUE(hasLine(run.out, "printer-is-accepting-jobs", "yes"));
  EXPECT_TRUE(hasLine(run.out, "printer-resolution-default", "600x600 dpi"));
  EXPECT_NE(run.out.find(" Identify-Printer\n"), std::string::npos);
  EXPECT_NE(run.out.find(" media-size           x-dimension  21590\n"), std::string::npos)
      << run.out;
}

TEST_F(PrintServersTool, ShowsWhatAQueueOfCupsdIs) {
  servers_.addQueue("tool");
  const ToolRun run = runTool({"attributes", queue("tool")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(hasLine(run.out, "printer-name", "tool"));
  EXPECT_TRUE(hasLine(run.out, "printer-state", "idle"));
  EXPECT_TRUE(hasLine(run.out, "notify-lease-duration-supported", "0-MAX"));
  EXPECT_NE(run.out.find("not-shared\n"), std::string::npos) << "the bits of printer-type";
}

TEST_F(PrintServersTool, ShowsOnlyTheNamedAttributes) {
  const std::string expected = "Printer attributes\n  printer-state  idle\n";
  servers_.addQueue("tool");
  EXPECT_EQ(runTool({"attributes", queue("tool"), "printer-state"}).out, expected);
  servers_.waitForIppeveIdle();
  EXPECT_EQ(runTool({"attributes", servers_.ippeveURI(), "printer-stat?"}).out, expected);
}

TEST_F(PrintServersTool, PrintsOnIppeveprinterAndWaits) {
  servers_.waitForIppeveIdle();
  const std::string file = folder_.add("letter.pdf", document_);
  const ToolRun run = runTool({"print", servers_.ippeveURI(), file, "--wait"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find(": completed (job-completed-successfully)\n"), std::string::npos)
      << run.out;
  const int job = std::stoi(run.out.substr(4));
  EXPECT_EQ(contentsOf(servers_.ippeveDocument(job)), document_);
}

TEST_F(PrintServersTool, PrintsOnCupsdAndShowsTheJobsWay) {
  servers_.addQueue("slow", "testdev:/1");
  const std::string file = folder_.add("letter.pdf", document_);
  const ToolRun run = runTool({"print", queue("slow"), file, "--wait"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find(": processing (job-printing)\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(": completed"), std::string::npos) << run.out;
  EXPECT_EQ(contentsOf(servers_.cupsDocument(std::stoi(run.out.substr(4)))), document_);
}

TEST_F(PrintServersTool, StreamsAPipeToBothServers) {
  servers_.addQueue("tool");
  servers_.waitForIppeveIdle();
  for (const std::string& uri : {servers_.ippeveURI(), queue("tool")}) {
    RunningTool tool({"print", uri, "-", "--format", "application/pdf", "--wait"});
    tool.write(document_);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));  // longer than it takes to send
    tool.write(std::string(300'000, 'x'));
    tool.closeInput();
    const ToolRun run = tool.end();
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_TRUE(run.out.starts_with("job ")) << run.out;
    const int job = std::stoi(run.out.substr(4));
    const auto file =
        uri == servers_.ippeveURI() ? servers_.ippeveDocument(job) : servers_.cupsDocument(job);
    EXPECT_EQ(contentsOf(file), document_ + std::string(300'000, 'x'));
  }
}

TEST_F(PrintServersTool, CancelsAJobOfCupsd) {
  servers_.addQueue("slow", "testdev:/5");
  const std::string file = folder_.add("letter.pdf", document_);
  RunningTool tool({"print", queue("slow"), file, "--wait"});
  ASSERT_TRUE(tool.waitForOutput("processing (job-printing)\n"));
  tool.signal(SIGINT);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 130);
  const std::string title = run.out.substr(0, run.out.find(':'));
  EXPECT_EQ(run.err, "platen: canceled " + title + "\n");
  const std::string uri = run.out.substr(title.size() + 2, run.out.find('\n') - title.size() - 2);
  auto question = IPPRequest::jobAttributesRequest(URL::parse(uri).value());
  const auto answer = question->performOn(URL::parse(uri).value());
  ASSERT_NE(answer, nullptr);
  constexpr int kCanceled = 7;  // RFC 8011 §5.3.7
  EXPECT_EQ(answer->attributeValueForKey("job-state").description(), std::to_string(kCanceled));
}

TEST_F(PrintServersTool, AsksBothServersAtOnce) {
  servers_.addQueue("tool");
  servers_.waitForIppeveIdle();
  const ToolRun run = runTool(
      {"attributes", servers_.ippeveURI(), queue("missing"), queue("tool"), "printer-name"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, servers_.ippeveURI() +
                         "\nPrinter attributes\n  printer-name  Test Printer\n\n" + queue("tool") +
                         "\nPrinter attributes\n  printer-name  tool\n");
  EXPECT_NE(run.err.find("client-error-not-found"), std::string::npos) << run.err;
}

TEST_F(PrintServersTool, TellsWhyCupsdRefuses) {
  servers_.addQueue("tool");
  const std::string file = folder_.add("letter.pdf", document_);
  const ToolRun run = runTool({"print", queue("tool"), file, "--format", "text/x-odd"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("client-error-document-format-not-supported"), std::string::npos);
  EXPECT_NE(run.err.find("; refused: document-format text/x-odd\n"), std::string::npos) << run.err;
  const ToolRun missing = runTool({"print", queue("missing"), file});
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("client-error-not-found"), std::string::npos) << missing.err;
}

}  // namespace
}  // namespace platen::test
