// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

const std::string kAnswer = response(
    0,
    "\x04" + attribute(0x42, "printer-name", "lobby") + attribute(0x23, "printer-state", int32(3)) +
        attribute(0x22, "color-supported", "\x01") +
        attribute(0x44, "printer-state-reasons", "paused") + also(0x44, "media-empty") +
        attribute(0x41, "printer-info", "\x1B[2J\nplaten: fine") +
        attribute(0x13, "printer-location", "") +
        collection("media-col-default",
                   member("media-type", 0x44, "stationery") +
                       memberCollection("media-size", member("x-dimension", 0x21, int32(21000)))) +
        "\x04" + attribute(0x42, "printer-name", "attic") +
        attribute(0x44, "printer-state-reasons", "none"));

ToolRun dumpKey(const std::string& path, const Arguments& options = {}) {
  Arguments words{"dump", "-", "--key", path};
  words.insert(words.end(), options.begin(), options.end());
  return runTool(words, kAnswer);
}

TEST(KeyPath, ShowsJustWhatItLeadsTo) {
  const struct {
    std::string path;
    std::string out;
  } cases[] = {
      {"printer-name", "lobby\n"},
      {"printer-name.ippValue.value", "lobby\n"},
      {"printer-name.ippValue.syntaxName", "nameWithoutLanguage\n"},
      {"PRINTER-STATE", "idle\n"},
      {"printer-state.ippValue", "3\n"},
      {"printer-state.ippValue.value", "3\n"},
      {"printerState", "3\n"},
      {"color-supported", "yes\n"},
      {"requestId", "1\n"},
      {"status.localizedDescription", "successful-ok\n"},
      {"printer-state-reasons", "paused\nmedia-empty\n"},
      {"printer-state-reasons.ippValue", "paused\nmedia-empty\n"},
      {"printer-state-reasons.ippValue.value", "paused\nmedia-empty\n"},
      {"@all.printer-name.ippValue.value", "lobby\nattic\n"},
      {"@all.printer-state-reasons", "[paused, media-empty]\nnone\n"},
      {"@all.printer-state-reasons.ippValue.value", "[paused, media-empty]\nnone\n"},
      {"@all.no-such-attribute", ""},
      {"printerGroups.printer-state.ippValue.value", "3\n\n"},
      {"printer-location", "(no-value)\n"},
      {"printer-location.ippValue.value", "\n"},
      {"printer-info", "\\x1b[2J\\nplaten: fine\n"},
      {"printer-info.ippValue.value", "\\x1b[2J\\nplaten: fine\n"},
      {"printer-info.ippValue.description", "'\\x1b[2J\\nplaten: fine' of textWithoutLanguage\n"},
      {"media-col-default", "{media-type stationery, media-size {x-dimension 21000}}\n"},
      {"media-col-default.ippValue.value",
       "media-type stationery\nmedia-size {x-dimension 21000}\n"},
      {"media-col-default.ippValue.value.media-size.x-dimension", "21000\n"},
      {"@default", "media-col-default {media-type stationery, media-size {x-dimension 21000}}\n"},
      {"@supported", "color-supported yes\n"},
      {"@all",
       "attributes-charset utf-8\nattributes-natural-language en\nprinter-name lobby\n"
       "printer-state idle\ncolor-supported yes\nprinter-state-reasons [paused, media-empty]\n"
       "printer-info \\x1b[2J\\nplaten: fine\nprinter-location (no-value)\n"
       "media-col-default {media-type stationery, media-size {x-dimension 21000}}\n"
       "printer-name attic\nprinter-state-reasons none\n"},
      {"operationGroup", "attributes-charset utf-8\nattributes-natural-language en\n"},
  };
  for (const auto& [path, out] : cases) {
    const ToolRun run = dumpKey(path);
    EXPECT_EQ(run.status, 0) << path;
    EXPECT_EQ(run.err, "") << path;
    EXPECT_EQ(run.out, out) << path;
  }
}

TEST(KeyPath, FailsWhereThereIsNothing) {
  const std::string source = "platen: standard input: ";
  const struct {
    std::string path;
    std::string reason;
  } cases[] = {
      {"no-such-attribute", R"(IPPResponse has nothing under the key "no-such-attribute")"},
      {"printer-name.value",
       R"(printer-name.value: IPPAttribute has nothing under the key "value")"},
      {"", R"(IPPResponse has nothing under the key "")"},
      {"printer-name..name", R"(IPPResponse has nothing under the key "printer-name..name")"},
      {"statusMessage", "statusMessage leads to nothing"},
      {"media-col-default.ippValue.value.none",
       "media-col-default.ippValue.value.none leads to nothing"},
      {"\x1B[2J", R"(IPPResponse has nothing under the key "?[2J")"},
  };
  for (const auto& [path, reason] : cases) {
    const ToolRun run = dumpKey(path);
    EXPECT_EQ(run.status, 1) << path;
    EXPECT_EQ(run.out, "") << path;
    EXPECT_EQ(run.err, source + reason + "\n");
  }
}

TEST(KeyPath, KnowsThePropertiesOfRequestsToo) {
  const std::string question = header(0x000B) + "\x01" + charsetAndLanguage() +
                               attribute(0x45, "printer-uri", "ipp://localhost/ipp") + "\x03";
  EXPECT_EQ(runTool({"dump", "-", "--key", "ippOperationCodename"}, question).out,
            "Get-Printer-Attributes\n");
  EXPECT_EQ(runTool({"dump", "-", "--key", "printerURI"}, question).out, "ipp://localhost/ipp\n");
  EXPECT_EQ(runTool({"dump", "-", "--response", "--key", "ippOperationCodename"}, question).status,
            1);
}

TEST(KeyPath, LooksIntoTheWholeAnswerOfAPrinter) {
  const FakePrinter printer({kAnswer, kAnswer});
  const ToolRun run = runTool({"attributes", printer.uri(), "--key", "printer-state"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "idle\n");
}

TEST(KeyPath, LeavesWhatIsAskedForToTheNames) {
  const FakePrinter printer({kAnswer});
  EXPECT_EQ(runTool({"attributes", printer.uri(), "printer-state", "--key", "printerState"}).out,
            "3\n");
  EXPECT_EQ(printer.request(0)->attributeValueForKey("requested-attributes"),
            RawValue("printer-state"));
  const FakePrinter other({kAnswer});
  EXPECT_EQ(runTool({"attributes", other.uri(), "printer-n*", "--key", "printerState"}).out, "3\n");
  EXPECT_EQ(other.request(0)->attributeForKey("requested-attributes"), nullptr);
}

TEST(KeyPath, StandsUnderEachURIOfSeveral) {
  const FakePrinter one({kAnswer});
  const FakePrinter empty({response(0, "\x04")});
  const FakePrinter other({kAnswer});
  const ToolRun run = runTool(
      {"attributes", one.uri(), empty.uri(), other.uri(), "--key", "printer-state-reasons"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            one.uri() + "\npaused\nmedia-empty\n\n" + other.uri() + "\npaused\nmedia-empty\n");
  EXPECT_EQ(run.err, "platen: " + empty.uri() +
                         ": IPPResponse has nothing under the key \"printer-state-reasons\"\n");
}

}  // namespace
}  // namespace platen::test
