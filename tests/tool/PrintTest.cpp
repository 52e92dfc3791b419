// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/JobAnswer.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

ToolRun print(const FakePrinter& printer, const std::string& file, const Arguments& options = {},
              const std::string& input = "") {
  Arguments words = options;
  words.insert(words.begin(), {"print", printer.uri(), file});
  return runTool(words, input);
}

std::string textOf(const FakePrinter& printer, const std::string& attribute) {
  const RawValue value = printer.request(0)->attributeValueForKey(attribute);
  return value.isString() ? value.asString() : "(none)";
}

TEST(Print, SendsTheDocumentAndTellsTheJob) {
  const ScratchFolder folder;
  const std::string document = "%PDF-1.7\n" + std::string(100000, '\0') + "\x03";
  const FakePrinter printer({jobAnswer(3)});
  const ToolRun run = print(printer, folder.add("letter.pdf", document));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, kFirstLine + "job 12: pending\n");
  ASSERT_NE(printer.request(0), nullptr);
  EXPECT_EQ(printer.request(0)->ippOperationCodename(), "Print-Job");
  EXPECT_EQ(printer.request(0)->printerURI()->absoluteString(), printer.uri());
  EXPECT_EQ(textOf(printer, "job-name"), "letter.pdf");
  EXPECT_EQ(textOf(printer, "document-format"), "application/pdf");
  EXPECT_EQ(printer.document(0), document);
}

TEST(Print, TakesTheNameAndTheFormatThatItIsGiven) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(3)});
  print(printer, folder.add("a", "%PDF-"), {"--name", "Brief \xC3\xBC", "--format", "text/plain"});
  EXPECT_EQ(textOf(printer, "job-name"), "Brief \xC3\xBC");
  EXPECT_EQ(textOf(printer, "document-format"), "text/plain");
}

TEST(Print, KnowsFormatsByTheirFirstOctets) {
  const struct {
    std::string document;
    std::string format;
  } cases[] = {
      {"%PDF-1.4", "application/pdf"},       {"%!PS-Adobe-3.0", "application/postscript"},
      {"\xFF\xD8\xFF\xE0", "image/jpeg"},    {"\x89PNG\r\n\x1A\n", "image/png"},
      {"RaS2PwgRaster", "image/pwg-raster"}, {"UNIRAST\0"s, "image/urf"},
      {"%PDF", "application/octet-stream"},  {"plain text", "application/octet-stream"},
  };
  for (const auto& [document, format] : cases) {
    const ScratchFolder folder;
    const FakePrinter printer({jobAnswer(3)});
    print(printer, folder.add("document", document));
    EXPECT_EQ(textOf(printer, "document-format"), format);
    EXPECT_EQ(printer.document(0), document);
  }
}

TEST(Print, PrintsStandardInput) {
  const FakePrinter printer({jobAnswer(3)});
  EXPECT_EQ(print(printer, "-", {}, "%PDF-1.7 from a pipe").status, 0);
  EXPECT_EQ(textOf(printer, "job-name"), "(none)");
  EXPECT_EQ(textOf(printer, "document-format"), "application/pdf");
  EXPECT_EQ(printer.document(0), "%PDF-1.7 from a pipe");
}

TEST(Print, LeavesOutAFileNameThatPeopleCannotRead) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(3)});
  EXPECT_EQ(print(printer, folder.add("odd\xFFname", "x")).status, 0);
  EXPECT_EQ(textOf(printer, "job-name"), "(none)");
}

TEST(Print, WaitsAndShowsEachChange) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(3), jobAnswer(3), jobAnswer(5, "job-printing"),
                             jobAnswer(5, "job-printing"), jobAnswer(9)});
  const ToolRun run = print(printer, folder.add("a", "x"), {"--wait"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out,
            kFirstLine + "job 12: pending\njob 12: processing (job-printing)\njob 12: completed\n");
}

TEST(Print, AsksThePrinterItselfForTheJobWhateverHostTheJobNames) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(3), jobAnswer(9)});
  print(printer, folder.add("a", "x"), {"--wait"});
  ASSERT_EQ(printer.requestCount(), 2U);
  const auto question = printer.request(1);
  ASSERT_NE(question, nullptr);
  EXPECT_EQ(question->ippOperationCodename(), "Get-Job-Attributes");
  EXPECT_EQ(question->jobURI()->absoluteString(), "ipp://third-party.invalid/jobs/12");
  EXPECT_EQ(question->attributeValueForKey("requested-attributes"),
            (RawValue::Array{"job-id", "job-state", "job-state-reasons"}));
}

TEST(Print, AsksNothingMoreOfAJobThatIsOverAtOnce) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(9)});
  const ToolRun run = print(printer, folder.add("a", "x"), {"--wait"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kFirstLine + "job 12: completed\n");
  EXPECT_EQ(printer.requestCount(), 1U);
}

TEST(Print, FailsWithAJobThatIsCanceledOrAborted) {
  const struct {
    int state;
    std::string name;
  } cases[] = {{7, "canceled"}, {8, "aborted"}};
  for (const auto& [state, name] : cases) {
    const ScratchFolder folder;
    const FakePrinter printer({jobAnswer(5), jobAnswer(state, "aborted-by-system")});
    const ToolRun run = print(printer, folder.add("a", "x"), {"--wait"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out,
              kFirstLine + "job 12: processing\njob 12: " + name + " (aborted-by-system)\n");
    EXPECT_EQ(run.err, "platen: job 12 was not printed: " + name + " (aborted-by-system)\n");
  }
}

TEST(Print, FailsWhenThePrinterLosesTheJob) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(5), response(0x0406, "")});
  const ToolRun run = print(printer, folder.add("a", "x"), {"--wait"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "platen: Get-Job-Attributes refused by " + printer.uri() +
                         ": client-error-not-found\n");
}

TEST(Print, FailsToWaitForAJobThatCannotBeAskedFor) {
  const ScratchFolder folder;
  const std::string file = folder.add("a", "x");
  const FakePrinter nameless({response(0, "")});
  const ToolRun run = print(nameless, file, {"--wait"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "the job: (no state)\n");
  EXPECT_EQ(run.err, "platen: cannot wait: the printer gave the job no job-uri\n");
  const FakePrinter silent({jobAnswer(3), response(0, "")});
  EXPECT_EQ(print(silent, file, {"--wait"}).err,
            "platen: the printer does not tell the state of job 12\n");
}

TEST(Print, TellsARefusal) {
  const ScratchFolder folder;
  const FakePrinter printer(
      {response(0x040A, "\x05" + attribute(0x49, "document-format", "image/urf"))});
  const ToolRun run = print(printer, folder.add("a", "x"), {"--format", "image/urf"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "platen: Print-Job refused by " + printer.uri() +
                         ": client-error-document-format-not-supported; refused: document-format "
                         "image/urf\n");
}

TEST(Print, LetsNoJobActOnTheTerminal) {
  const ScratchFolder folder;
  const FakePrinter printer({jobAnswer(3, "\x1B[2J")});
  EXPECT_EQ(print(printer, folder.add("a", "x")).out, kFirstLine + "job 12: pending (\\x1b[2J)\n");
}

TEST(Print, SendsNothingWhenTheFileCannotBePrinted) {
  const ScratchFolder folder;
  const FakePrinter printer(std::vector<std::string>{});
  const struct {
    std::string path;
    std::string reason;
  } cases[] = {
      {folder.pathOf("missing"),
       "cannot read " + folder.pathOf("missing") + ": No such file or directory"},
      {folder.pathOf(""), "cannot read " + folder.pathOf("") + ": Is a directory"},
      {folder.add("empty", ""), folder.pathOf("empty") + " is empty: nothing to print"},
      {"-", "standard input is empty: nothing to print"},
      // The first page of memory is never there: a file that opens and does not read.
      {"/proc/self/mem", "cannot read /proc/self/mem: Input/output error"},
  };
  for (const auto& [path, reason] : cases) {
    const ToolRun run = print(printer, path);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "platen: " + reason + "\n");
  }
  EXPECT_EQ(printer.connectionCount(), 0U);
}

TEST(Print, RefusesNamesAndFormatsThatNoRequestCanHold) {
  const ScratchFolder folder;
  const std::string file = folder.add("a", "x");
  const FakePrinter printer(std::vector<std::string>{});
  const struct {
    Arguments options;
    std::string reason;
  } cases[] = {
      {{"--name", std::string(256, 'n')}, "is too long"},
      {{"--name", "\xFF"}, "--name \"\\xff\" is not UTF-8"},
      {{"--format", std::string(256, 'f')}, "is too long"},
      {{"--format", "\xC3\xA9"}, "is not US-ASCII"},
  };
  for (const auto& [options, reason] : cases) {
    const ToolRun run = print(printer, file, options);
    EXPECT_EQ(run.status, 2);
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
  }
  EXPECT_EQ(printer.connectionCount(), 0U);
}

}  // namespace
}  // namespace platen::test
