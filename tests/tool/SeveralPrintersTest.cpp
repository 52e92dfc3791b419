// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <csignal>
#include <latch>
#include <string>
#include <vector>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/RunningTool.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

std::string printerInState(int state) {
  return response(0, "\x04" + attribute(0x23, "printer-state", int32(state)));
}

std::string deadURI() {
  const FakePrinter gone(std::vector<std::string>{});
  return gone.uri();
}

TEST(SeveralPrinters, AreShownInTheOrderOfTheCommandLineEachUnderItsURI) {
  const FakePrinter slow([](auto& connection) {
    connection.readRequest();
    connection.sleep(std::chrono::milliseconds(100));
    connection.answer(200, printerInState(5));
  });
  const FakePrinter quick({printerInState(3)});
  const ToolRun run = runTool({"attributes", slow.uri(), "printer-state", quick.uri()});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, slow.uri() + "\nPrinter attributes\n  printer-state  stopped\n\n" +
                         quick.uri() + "\nPrinter attributes\n  printer-state  idle\n");
  EXPECT_EQ(slow.request(0)->attributeValueForKey("requested-attributes"),
            quick.request(0)->attributeValueForKey("requested-attributes"));
  EXPECT_EQ(quick.request(0)->printerURI()->absoluteString(), quick.uri());
}

TEST(SeveralPrinters, AreAskedAtOnce) {
  constexpr std::size_t kCount = 40;
  std::latch everybodyIsAsked(kCount);
  const FakePrinter printer(kCount, [&](auto& connection) {
    connection.readRequest();
    everybodyIsAsked.arrive_and_wait();
    connection.answer(200, printerInState(3));
  });
  Arguments words(kCount, printer.uri());
  words.insert(words.begin(), "attributes");
  const ToolRun run = runTool(words);
  EXPECT_EQ(run.status, 0) << run.err;
  std::size_t headings = 0;
  for (std::size_t at = 0; (at = run.out.find(printer.uri() + "\n", at)) != std::string::npos;
       ++at) {
    ++headings;
  }
  EXPECT_EQ(headings, kCount);
}

TEST(SeveralPrinters, AreShownAlthoughOthersFail) {
  const std::string dead = deadURI();
  const FakePrinter refusing({response(0x0403, "")});
  const FakePrinter good({printerInState(3)});
  const FakePrinter empty({response(0, "\x04")});
  const ToolRun run =
      runTool({"attributes", dead, refusing.uri(), empty.uri(), good.uri(), "printer-state"});
  EXPECT_EQ(run.status, 3) << "the worst of all";
  EXPECT_EQ(run.out, good.uri() + "\nPrinter attributes\n  printer-state  idle\n");
  const std::string first = "platen: Get-Printer-Attributes: no answer from " + dead + ": ";
  EXPECT_EQ(run.err.substr(0, first.size()), first);
  EXPECT_EQ(run.err.substr(run.err.find('\n') + 1),
            "platen: Get-Printer-Attributes refused by " + refusing.uri() +
                ": client-error-not-authorized\nplaten: " + empty.uri() +
                " has no attribute of that name: printer-state\n");
}

TEST(SeveralPrinters, EndWithARefusalWhenNothingIsWorse) {
  const FakePrinter good({printerInState(3)});
  const FakePrinter refusing({response(0x0403, "")});
  const FakePrinter other({printerInState(4)});
  EXPECT_EQ(runTool({"attributes", good.uri(), refusing.uri(), other.uri()}).status, 1);
}

TEST(SeveralPrinters, AreWaitedForUntilASignal) {
  const FakePrinter good({printerInState(3)});
  const FakePrinter silent([](auto& connection) {
    connection.readRequest();
    connection.readRequest();  // which never comes
  });
  RunningTool tool({"attributes", good.uri(), silent.uri(), "printer-state"});
  ASSERT_TRUE(tool.waitForOutput("idle\n"));
  tool.signal(SIGTERM);
  const ToolRun run = tool.end();
  EXPECT_EQ(run.status, 143);
  EXPECT_EQ(run.err, "platen: canceled before all had answered\n");
}

TEST(SeveralPrinters, AreNotAskedWhenOneIsNoURI) {
  const FakePrinter good({printerInState(3)});
  const ToolRun run = runTool({"attributes", good.uri(), "https://localhost/"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(good.connectionCount(), 0U);
}

}  // namespace
}  // namespace platen::test
