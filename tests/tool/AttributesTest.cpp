// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

const std::string kPrinter = "\x04" + attribute(0x23, "printer-state", int32(3)) +
                             attribute(0x21, "copies-default", int32(1)) +
                             attribute(0x33, "copies-supported", int32(1) + int32(99));

ToolRun attributes(const FakePrinter& printer, const Arguments& names = {}) {
  Arguments words = names;
  words.insert(words.begin(), {"attributes", printer.uri()});
  return runTool(words);
}

TEST(Attributes, ShowsAllOfAnAnswerSortedByName) {
  const FakePrinter printer({response(0, kPrinter)});
  const ToolRun run = attributes(printer);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, R"(Operation attributes
  attributes-charset           utf-8
  attributes-natural-language  en

Printer attributes
  copies-default    1
  copies-supported  1-99
  printer-state     idle
)");
}

TEST(Attributes, AsksForEverythingWhenNothingIsNamed) {
  const FakePrinter printer({response(0, kPrinter)});
  attributes(printer);
  const auto request = printer.request(0);
  ASSERT_NE(request, nullptr);
  EXPECT_EQ(request->ippOperationCodename(), "Get-Printer-Attributes");
  EXPECT_EQ(request->printerURI()->absoluteString(), printer.uri());
  EXPECT_EQ(request->attributeForKey("requested-attributes"), nullptr);
}

TEST(Attributes, AsksOnlyForWhatIsNamed) {
  const FakePrinter printer({response(0, kPrinter)});
  const ToolRun run = attributes(printer, {"printer-state", "copies-*ed?"});
  const FakePrinter another({response(0, kPrinter)});
  attributes(another, {"printer-state", "job-template"});
  EXPECT_EQ(printer.request(0)->attributeForKey("requested-attributes"), nullptr)
      << "patterns are not for printers";
  EXPECT_EQ(another.request(0)->attributeValueForKey("requested-attributes"),
            (RawValue::Array{"printer-state", "job-template"}));
}

TEST(Attributes, MatchesPatternsItself) {
  const FakePrinter printer({response(0, kPrinter)});
  const ToolRun run = attributes(printer, {"COPIES-*", "copies-d?fault"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Printer attributes\n  copies-default    1\n  copies-supported  1-99\n");
}

TEST(Attributes, ShowsWhateverCameForNamesWithoutPatterns) {
  const FakePrinter printer({response(0, kPrinter)});
  const ToolRun run = attributes(printer, {"job-template"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.substr(0, 19), "Printer attributes\n");
  EXPECT_NE(run.out.find("copies-supported"), std::string::npos);
}

TEST(Attributes, FailsWhenThereIsNoneOfTheNames) {
  for (const char* name : {"nothing", "no*"}) {
    const FakePrinter printer({response(0, "\x04")});
    const ToolRun run = attributes(printer, {name});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              "platen: " + printer.uri() + " has no attribute of that name: " + name + "\n");
  }
}

TEST(Attributes, SaysWhenTheAnswerIsNotWhollyWhatWasAskedFor) {
  const FakePrinter printer(
      {response(0x0001, "\x05" + attribute(0x10, "document-format", "") + kPrinter)});
  const ToolRun run = attributes(printer, {"all"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find("Printer")),
            "successful-ok-ignored-or-substituted-attributes\n\n"
            "Unsupported attributes\n  document-format  (unsupported)\n\n");
}

TEST(Attributes, TellsWhatThePrinterRefusedAndWhy) {
  const std::string unsupported =
      attribute(0x41, "status-message", "No.") + "\x05" + attribute(0x10, "sides", "") +
      attribute(0x10, "media", "") + attribute(0x13, "copies", "") + attribute(0x12, "hold", "") +
      attribute(0x15, "job-id", "") + attribute(0x17, "media-ready", "") +
      attribute(0x23, "print-quality", int32(5));
  const FakePrinter printer({response(0x040B, unsupported)});
  const ToolRun run = attributes(printer);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "platen: Get-Printer-Attributes refused by " + printer.uri() +
                ": client-error-attributes-or-values-not-supported (No.); unsupported: "
                "sides, media; unknown: hold; without value: copies; not settable: job-id; "
                "left to the administrator: media-ready; refused: print-quality high\n");
}

TEST(Attributes, TellsAStatusThatHasNoName) {
  const FakePrinter printer({response(0x0418, "")});
  const ToolRun run = attributes(printer);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(": 0x0418\n"), std::string::npos) << run.err;
}

TEST(Attributes, LetsNoStatusMessageActOnTheTerminal) {
  const FakePrinter printer(
      {response(0x0500, attribute(0x41, "status-message", "\x1B[31mboo\nplaten: fine"))});
  const ToolRun run = attributes(printer);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("(\\x1b[31mboo\\nplaten: fine)\n"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
}

// What comes back when the answer to a question is `script`'s.
ToolRun runAgainst(const FakePrinter::Script& script, const Arguments& options = {}) {
  const FakePrinter printer(script);
  return attributes(printer, options);
}

TEST(Attributes, RecognisesAnAnswerThatIsNotIPP) {
  const std::string page = "<!DOCTYPE html><title>It works</title>";
  const FakePrinter::Script scripts[] = {
      [&](auto& connection) {
        connection.readRequest();
        connection.answer(200, page, "Content-Type: text/html\r\n");
      },
      [](auto& connection) {
        connection.readRequest();
        connection.answer(200, "");
      },
  };
  for (const auto& script : scripts) {
    const ToolRun run = runAgainst(script);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.substr(0, 47), "platen: Get-Printer-Attributes: the answer of i");
    EXPECT_NE(run.err.find(" is not an IPP message\n"), std::string::npos) << run.err;
  }
}

TEST(Attributes, TellsAStatusOfHTTP) {
  const struct {
    int status;
    std::string text;
  } cases[] = {{404, "404 (Not Found)"}, {401, "401 (Unauthorized)"}, {418, "418"}};
  for (const auto& [status, text] : cases) {
    const FakePrinter printer([code = status](auto& connection) {
      connection.readRequest();
      connection.answer(code, "<!DOCTYPE html>", "Content-Type: text/html\r\n");
    });
    const ToolRun run = attributes(printer);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "platen: Get-Printer-Attributes refused by " + printer.uri() +
                           ": HTTP status " + text + "\n");
  }
}

TEST(Attributes, TellsAConnectionThatIsClosedInTheMiddle) {
  const FakePrinter::Script scripts[] = {
      [](auto& connection) { connection.close(); },
      [](auto& connection) { connection.reset(); },
      [](auto& connection) {
        connection.readRequest();
        connection.close();
      },
      [](auto& connection) {
        connection.readRequest();
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
      },
  };
  for (const auto& script : scripts) {
    const ToolRun run = runAgainst(script);
    EXPECT_EQ(run.status, 3) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.substr(0, 46), "platen: Get-Printer-Attributes: no answer from");
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
  }
}

TEST(Attributes, GivesUpAfterTheTimeout) {
  const ToolRun run = runAgainst(
      [](auto& connection) {
        connection.readRequest();
        connection.readToEnd();
      },
      {"--timeout", "0.2"});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("no answer from ipp://127.0.0.1:"), std::string::npos) << run.err;
}

TEST(Attributes, TellsAHostThatDoesNotExist) {
  const ToolRun run = runTool({"attributes", "ipp://no-such-host.invalid/ipp/print"});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err.find("platen: Get-Printer-Attributes: no answer from "
                         "ipp://no-such-host.invalid/ipp/print: "),
            0U)
      << run.err;
  EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
}

TEST(Attributes, TellsARefusedConnection) {
  std::string uri;
  {
    const FakePrinter gone(std::vector<std::string>{});
    uri = gone.uri();
  }
  const ToolRun run = runTool({"attributes", uri});
  EXPECT_EQ(run.status, 3);
  EXPECT_NE(run.err.find("Connection refused"), std::string::npos) << run.err;
}

}  // namespace
}  // namespace platen::test
