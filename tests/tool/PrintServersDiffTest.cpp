// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/support/PrintServers.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

/// What is kept of cupsd and ippeveprinter, compared with what they say later.
class PrintServersDiff : public testing::Test {
 protected:
  void SetUp() override {
    if (!servers_.available()) GTEST_SKIP() << servers_.whyUnavailable();
  }

  ToolRun diffAfter(const std::string& path, const std::string& uri) const {
    return runTool(
        {"diff", path, uri, "--ignore", "printer-up-time", "--ignore", "printer-*-time"});
  }

  PrintServers& servers_ = PrintServers::shared();
  const ScratchFolder folder_;
};

TEST_F(PrintServersDiff, FindsNothingButClocksInAnIdlePrinter) {
  servers_.waitForIppeveIdle();
  servers_.addQueue("kept");
  for (const auto& uri : {servers_.ippeveURI(), servers_.cupsURI() + "printers/kept"}) {
    for (const char* name : {"kept.json", "kept.cbor"}) {
      const std::string path = folder_.pathOf(name);
      ASSERT_EQ(runTool({"attributes", uri, "--save", path}).status, 0);
      const ToolRun run = diffAfter(path, uri);
      EXPECT_EQ(run.status, 0) << run.err;
      EXPECT_EQ(run.out, "");
    }
  }
}

TEST_F(PrintServersDiff, FindsTheJobOfAQueue) {
  servers_.addQueue("busy", "testdev:/5");
  const std::string uri = servers_.cupsURI() + "printers/busy";
  const std::string path = folder_.pathOf("kept");
  ASSERT_EQ(runTool({"attributes", uri, "--save", path}).status, 0);
  const std::string file = folder_.add("letter.pdf", "%PDF-1.4\nnot much of a document\n");
  ASSERT_EQ(runTool({"print", uri, file}).status, 0);
  const ToolRun run = diffAfter(path, uri);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_NE(run.out.find("\n~ queued-job-count"), std::string::npos) << run.out;
}

}  // namespace
}  // namespace platen::test
