// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

ToolRun dump(const std::string& message, Arguments options = {}) {
  options.insert(options.begin(), {"dump", "-"});
  return runTool(options, message);
}

// What the dump of a response shows below the heading of its printer group.
std::string printerLines(const std::string& attributes, const Arguments& options = {}) {
  const ToolRun run = dump(printerResponse(attributes), options);
  EXPECT_EQ(run.status, 0) << run.err;
  const std::string heading = "Printer attributes\n";
  const auto found = run.out.find(heading);
  return found == std::string::npos ? "(no printer group)" : run.out.substr(found + heading.size());
}

TEST(Dump, ShowsAWholeRequest) {
  const std::string message = header(0x0002) + "\x01" + charsetAndLanguage() +
                              attribute(0x45, "printer-uri", "ipp://localhost/ipp/print") +
                              attribute(0x42, "requesting-user-name", "alice") + "\x02" +
                              attribute(0x21, "copies", int32(2)) +
                              attribute(0x44, "sides", "two-sided-long-edge") + "\x03" + "%PDF-1.7";
  const ToolRun run = dump(message);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, R"(Request Print-Job (0x0002), IPP 1.1, request-id 1

Operation attributes
  attributes-charset           utf-8
  attributes-natural-language  en
  printer-uri                  ipp://localhost/ipp/print
  requesting-user-name         alice

Job attributes
  copies  2
  sides   two-sided-long-edge

8 octets of document data follow
)");
}

TEST(Dump, ShowsAWholeResponse) {
  const std::string job = attribute(0x21, "job-id", int32(12)) +
                          attribute(0x23, "job-state", int32(5)) +
                          attribute(0x44, "job-state-reasons", "job-printing");
  const ToolRun run =
      dump(response(0x0001, "\x05" + attribute(0x10, "sides", "") + "\x02" + job + "\x02" + job));
  EXPECT_EQ(run.out, R"(Response successful-ok-ignored-or-substituted-attributes (0x0001), )"
                     R"(IPP 1.1, request-id 1

Operation attributes
  attributes-charset           utf-8
  attributes-natural-language  en

Unsupported attributes
  sides  (unsupported)

Job attributes 1 of 2
  job-id             12
  job-state          processing
  job-state-reasons  job-printing

Job attributes 2 of 2
  job-id             12
  job-state          processing
  job-state-reasons  job-printing
)");
}

TEST(Dump, ReadsAFileAsWellAsStandardInput) {
  const ScratchFolder folder;
  const std::string message = printerResponse(attribute(0x22, "color-supported", "\x01"));
  const ToolRun fromFile = runTool({"dump", folder.add("message", message)});
  EXPECT_EQ(fromFile.status, 0);
  EXPECT_EQ(fromFile.out, dump(message).out);
}

// What has no end is read to the limit, and of a file that has a length nothing is.
TEST(Dump, ReadsNoMoreThanAMessageMayHave) {
  const ScratchFolder folder;
  const std::string large = folder.add("large", "");
  std::filesystem::resize_file(large, (std::uintmax_t{256} << 20U) + 1);
  const struct {
    Arguments words;
    int status;
  } cases[] = {
      {{"dump", "--archive", "/dev/zero"}, 1}, {{"dump", large}, 1}, {{"diff", large, large}, 2}};
  for (const auto& [words, status] : cases) {
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, status);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "platen: cannot read " + words.back() + ": more than 268435456 octets\n");
  }
  std::filesystem::resize_file(large, std::uintmax_t{256} << 20U);
  EXPECT_EQ(runTool({"dump", large}).err,
            "platen: " + large + " does not decode as an IPP message of version 1.1 or above\n");
}

TEST(Dump, ShowsEachSyntaxAsPeopleReadIt) {
  const std::string date = int16(2001) + "\x02\x03\x04\x05\x06\x07-\x02\x1E"s;
  const struct {
    unsigned tag;
    std::string name;
    std::string value;
    std::string text;
  } cases[] = {
      {0x10, "a", "", "(unsupported)"},
      {0x12, "a", "", "(unknown)"},
      {0x13, "a", "", "(no-value)"},
      {0x15, "a", "", "(not-settable)"},
      {0x17, "a", "", "(admin-define)"},
      {0x21, "a", int32(-7), "-7"},
      {0x22, "a", "\x01", "yes"},
      {0x22, "a", "\0"s, "no"},
      {0x23, "a", int32(5), "5"},
      {0x30, "a", "MFG:Lab;", "MFG:Lab;"},
      {0x30, "a", "\xFF\xFE", "(no text)"},
      {0x31, "a", date, "2001-02-03T06:35:06Z"},
      {0x32, "a", int32(600) + int32(1200) + "\x03", "600x1200 dpi"},
      {0x32, "a", int32(118) + int32(118) + "\x04", "118x118 dpcm"},
      {0x33, "a", int32(1) + int32(999), "1-999"},
      {0x33, "a", int32(0) + int32(INT32_MAX), "0-MAX"},
      {0x33, "a", int32(INT32_MIN) + int32(INT32_MAX), "MIN to MAX"},
      {0x33, "a", int32(-5) + int32(10), "-5 to 10"},
      {0x33, "a", int32(10) + int32(1), "10-1"},
      {0x35, "a", counted("de") + counted("Guten Tag"), "Guten Tag [de]"},
      {0x36, "a", counted("fr") + counted("\xC3\xA9t\xC3\xA9"), "été [fr]"},
      {0x41, "a", "Some text", "Some text"},
      {0x41, "a", "", "(no text)"},
      {0x42, "a", "A name", "A name"},
      {0x44, "a", "na_letter_8.5x11in", "na_letter_8.5x11in"},
      {0x45, "a", "ipp://host/a", "ipp://host/a"},
      {0x46, "a", "ipp", "ipp"},
      {0x47, "a", "iso-8859-1", "iso-8859-1"},
      {0x48, "a", "en-us", "en-us"},
      {0x49, "a", "application/pdf", "application/pdf"},
  };
  for (const auto& [tag, name, value, text] : cases) {
    EXPECT_EQ(printerLines(attribute(tag, name, value)), "  " + name + "  " + text + "\n")
        << "tag " << tag;
  }
}

TEST(Dump, NamesTheValuesOfEnums) {
  const struct {
    std::string name;
    std::int64_t value;
    std::string text;
  } cases[] = {
      {"printer-state", 4, "processing"},
      {"printer-state", 77, "77"},
      {"job-state", 6, "processing-stopped"},
      {"finishings-default", 3, "none"},
      {"finishings-ready", 28, "staple-dual-left"},
      {"orientation-requested", 4, "landscape"},
      {"print-quality-supported", 5, "high"},
      {"job-collation-type", 4, "collated-documents"},
      {"operations-supported", 0x000B, "Get-Printer-Attributes"},
      {"operations-supported", 0x003C, "Identify-Printer"},
      {"operations-supported", 0x4027, "CUPS-Get-Document"},
      {"operations-supported", 0x3FFE, "0x3FFE"},
      {"printer-type", 0x201044, "0x201044: black-and-white, copies, small, not-shared"},
      {"printer-type", 0, "0x0"},
  };
  for (const auto& [name, value, text] : cases) {
    EXPECT_EQ(printerLines(attribute(0x23, name, int32(value))), "  " + name + "  " + text + "\n");
  }
}

TEST(Dump, PutsShortValuesOfASetSideBySide) {
  std::string media = attribute(0x44, "media-supported", "iso_a4_210x297mm");
  for (const char* size : {"na_letter_8.5x11in", "na_legal_8.5x14in", "iso_a5_148x210mm"}) {
    media += also(0x44, size);
  }
  EXPECT_EQ(printerLines(media, {"--width", "60"}),
            "  media-supported  iso_a4_210x297mm, na_letter_8.5x11in,\n"
            "                   na_legal_8.5x14in, iso_a5_148x210mm\n");
  EXPECT_EQ(printerLines(media, {"--width", "0"}),
            "  media-supported  iso_a4_210x297mm, na_letter_8.5x11in, na_legal_8.5x14in, "
            "iso_a5_148x210mm\n");
}

TEST(Dump, FillsALineToItsLastColumnAndNotBeyond) {
  const std::string set = attribute(0x44, "a", "12345") + also(0x44, "789012345") + also(0x44, "b");
  const std::string whole = "  a  12345, 789012345, b\n";
  EXPECT_EQ(printerLines(set, {"--width", "24"}), whole);
  EXPECT_EQ(printerLines(set, {"--width", "23"}), "  a  12345, 789012345,\n     b\n");
}

TEST(Dump, PutsURIsAndLongValuesOfASetOnLinesOfTheirOwn) {
  const std::string uris = attribute(0x45, "uri", "ipp://a/") + also(0x45, "ipp://b/");
  EXPECT_EQ(printerLines(uris), "  uri  ipp://a/\n       ipp://b/\n");
  const std::string texts = attribute(0x41, "text", "one, two") + also(0x41, "three");
  EXPECT_EQ(printerLines(texts), "  text  one, two\n        three\n");
}

TEST(Dump, BreaksLongTextBetweenWordsAndBehindSemicolons) {
  EXPECT_EQ(
      printerLines(attribute(0x41, "info", "The printer beside the big window"), {"--width", "30"}),
      "  info  The printer beside the\n        big window\n");
  EXPECT_EQ(printerLines(attribute(0x41, "id", "MFG:Example;MDL:Printer;CMD:PDF,JPEG;"),
                         {"--width", "24"}),
            "  id  MFG:Example;\n      MDL:Printer;\n      CMD:PDF,JPEG;\n");
}

TEST(Dump, NeverBreaksAURI) {
  const std::string uri = "http://printer.example/a;b;c;d;e;f;g;h;i;j;k;l";
  EXPECT_EQ(printerLines(attribute(0x45, "u", uri), {"--width", "20"}), "  u  " + uri + "\n");
}

TEST(Dump, ShowsASmallCollectionOnOneLine) {
  const std::string size = member("x-dimension", 0x21, int32(21000)) +
                           member("y-dimension", 0x21, int32(29700)) + member("tags", 0x44, "a") +
                           also(0x44, "b");
  EXPECT_EQ(printerLines(collection("media-size", size)),
            "  media-size  {x-dimension 21000, y-dimension 29700, tags [a, b]}\n");
  EXPECT_EQ(printerLines(collection("empty", "")), "  empty  {}\n");
}

TEST(Dump, ShowsTheMembersOfALargerCollectionInColumns) {
  const std::string size =
      member("x-dimension", 0x21, int32(21000)) + member("y-dimension", 0x21, int32(29700));
  const std::string media = memberCollection("media-size", size) +
                            member("media-type", 0x44, "stationery") +
                            member("media-source", 0x44, "auto") + also(0x44, "main");
  EXPECT_EQ(printerLines(collection("media-col", media), {"--width", "70"}),
            "  media-col  media-size    {x-dimension 21000, y-dimension 29700}\n"
            "             media-type    stationery\n"
            "             media-source  auto, main\n");
  EXPECT_EQ(printerLines(collection("media-col", media), {"--width", "50"}),
            "  media-col  media-size    x-dimension  21000\n"
            "                           y-dimension  29700\n"
            "             media-type    stationery\n"
            "             media-source  auto, main\n");
}

TEST(Dump, MarksTheCollectionsOfASetWhenTheyTakeMoreThanALine) {
  const std::string one = member("media-key", 0x44, "plain-paper-in-the-main-tray") +
                          member("media-type", 0x44, "stationery");
  const std::string two = member("media-type", 0x44, "labels");
  const std::string set = collection("ready", one) + also(0x34, "") + two + also(0x37, "");
  EXPECT_EQ(printerLines(set, {"--width", "60"}),
            "  ready  - media-key   plain-paper-in-the-main-tray\n"
            "           media-type  stationery\n"
            "         - {media-type labels}\n");
  EXPECT_EQ(printerLines(set, {"--width", "100"}),
            "  ready  {media-key plain-paper-in-the-main-tray, media-type stationery}\n"
            "         {media-type labels}\n");
}

TEST(Dump, PutsValuesBeneathTheirNamesWhenColumnsLeaveTooLittleRoom) {
  EXPECT_EQ(printerLines(attribute(0x44, "a-rather-long-name", "and-its-value"), {"--width", "30"}),
            "  a-rather-long-name\n    and-its-value\n");
}

TEST(Dump, DoesNotLetOneLongNamePushAllValuesAside) {
  const std::string name(60, 'n');
  EXPECT_EQ(
      printerLines(attribute(0x21, "copies", int32(1)) + attribute(0x21, name, int32(2))),
      "  copies" + std::string(36, ' ') + "1\n  " + name + "\n" + std::string(44, ' ') + "2\n");
}

TEST(Dump, AlignsByTheWidthOfWhatIsShown) {
  // Attribute names are ASCII; the names of a collection's members are cut at the same place.
  const std::string text = "\xE5\x8D\xB0\xE5\x88\xB7 \xE6\xA9\x9F e\xCC\x81 x";
  EXPECT_EQ(printerLines(attribute(0x41, "a", text), {"--width", "15"}),
            "  a  \xE5\x8D\xB0\xE5\x88\xB7 \xE6\xA9\x9F e\xCC\x81\n     x\n");
  EXPECT_EQ(printerLines(attribute(0x41, "a", text), {"--width", "16"}), "  a  " + text + "\n");
}

TEST(Dump, LetsNothingActOnTheTerminal) {
  const struct {
    std::string text;
    std::string shown;
  } cases[] = {
      {"\x1B[2J\x1B]0;gone\x07", "\\x1b[2J\\x1b]0;gone\\x07"},
      {"two\nlines\r\tand\x7F", "two\\nlines\\r\\tand\\x7f"},
      {"C1 \xC2\x9B"s + "31m", "C1 \\u009b31m"},
      {"turned \xE2\x80\xAE round", "turned \\u202e round"},
      {"mark \xE2\x80\x8F", "mark \\u200f"},
      {"\xEF\xBB\xBF"s + "bom", "\\ufeffbom"},
      {"tag \xF3\xA0\x81\x81", "tag \\ue0041"},
      {"\xF0\x9F\x96\xA8 fine \xC3\xA9", "\xF0\x9F\x96\xA8 fine \xC3\xA9"},
  };
  for (const auto& [text, shown] : cases) {
    EXPECT_EQ(printerLines(attribute(0x41, "a", text)), "  a  " + shown + "\n");
  }
}

TEST(Dump, EscapesNamesLanguagesAndMembersToo) {
  EXPECT_EQ(printerLines(attribute(0x21, "a\x1B[1m", int32(1))), "  a\\x1b[1m  1\n");
  EXPECT_EQ(printerLines(attribute(0x35, "a", counted("\x1B") + counted("t"))), "  a  t [\\x1b]\n");
  EXPECT_EQ(printerLines(collection("a", member("\x1B", 0x44, "\x1B"))), "  a  {\\x1b \\x1b}\n");
}

TEST(Dump, SurvivesTheDeepestCollections) {
  std::string members = member("end", 0x44, "here");
  for (int depth = 1; depth < 64; ++depth) {
    members = memberCollection("m" + std::to_string(depth), members);
  }
  const std::string lines = printerLines(collection("deep", members), {"--width", "40"});
  EXPECT_NE(lines.find("here"), std::string::npos);
  const ToolRun tooDeep = dump(printerResponse(collection("deep", memberCollection("m", members))));
  EXPECT_EQ(tooDeep.status, 1);
}

TEST(Dump, StaysQuickWithManyNestedMembers) {
  std::string members;
  for (int i = 0; i < 3000; ++i) {
    members += member("member-" + std::to_string(i), 0x44, "value");
  }
  for (int depth = 1; depth < 60; ++depth) {
    members = memberCollection(std::string(200, 'm'), members);
  }
  const std::string lines = printerLines(collection("deep", members));
  EXPECT_LT(lines.size(), 3000U * 400U);
}

TEST(Dump, TellsRequestsFromResponses) {
  const std::string target =
      "\x01" + charsetAndLanguage() + attribute(0x45, "printer-uri", "ipp://a/") + "\x03";
  const struct {
    std::string message;
    std::string begin;
  } cases[] = {
      {header(0x0000) + "\x03", "Response successful-ok (0x0000)"},
      {header(0x0002) + "\x03", "Response successful-ok-conflicting-attributes (0x0002)"},
      {header(0x0002) + target, "Request Print-Job (0x0002)"},
      {header(0x0406) + "\x03", "Response client-error-not-found (0x0406)"},
      {header(0x0418) + "\x03", "Response 0x0418 (0x0418)"},
      {header(0x000B) + "\x03", "Request Get-Printer-Attributes (0x000B)"},
      {header(0x4002) + "\x03", "Request CUPS-Get-Printers (0x4002)"},
      {header(0x0038) + "\x03", "Request Cancel-Jobs (0x0038)"},
      {header(0x7FFF) + "\x03", "Request 0x7FFF (0x7FFF)"},
      {header(0x8001) + "\x03", "Response 0x8001 (0x8001)"},
  };
  for (const auto& [message, begin] : cases) {
    EXPECT_EQ(dump(message).out.substr(0, begin.size()), begin);
  }
}

TEST(Dump, BelievesAnOptionOverItsOwnGuess) {
  const std::string message = header(0x0005) + "\x03";
  EXPECT_EQ(dump(message, {"--request"}).out,
            "Request Create-Job (0x0005), IPP 1.1, request-id 1\n\n");
  EXPECT_EQ(dump(message, {"--response"}).out,
            "Response successful-ok-too-many-events (0x0005), IPP 1.1, request-id 1\n\n");
}

TEST(Dump, ShowsTheVersionOfTheMessage) {
  std::string message = header(0) + "\x03";
  message[0] = 2;
  message[1] = 0;
  EXPECT_EQ(dump(message).out, "Response successful-ok (0x0000), IPP 2.0, request-id 1\n\n");
}

TEST(Dump, ShowsAGroupWithoutAttributes) {
  EXPECT_EQ(dump(header(0) + "\x04\x03").out,
            "Response successful-ok (0x0000), IPP 1.1, request-id 1\n\n"
            "Printer attributes\n  (none)\n");
}

TEST(Dump, CountsASingleOctetOfDocumentData) {
  const ToolRun run = dump(header(0) + "\x04\x03" + "x");
  EXPECT_NE(run.out.find("\n1 octet of document data follows\n"), std::string::npos);
}

TEST(Dump, TakesEveryShorterMessageForNoMessage) {
  const std::string message = response(0, "\x04" + attribute(0x21, "copies", int32(1)));
  for (std::size_t length = 1; length < message.size(); ++length) {
    const ToolRun run = dump(message.substr(0, length));
    EXPECT_EQ(run.status, 1) << length;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              "platen: standard input does not decode as an IPP message of version 1.1 or above\n");
  }
}

TEST(Dump, RefusesOlderVersions) {
  std::string message = header(0) + "\x03";
  message[1] = 0;
  EXPECT_EQ(dump(message).status, 1);
}

TEST(Dump, SaysWhyAFileCannotBeRead) {
  const ScratchFolder folder;
  const struct {
    std::string path;
    std::string reason;
  } cases[] = {
      {folder.pathOf("missing"),
       "cannot read " + folder.pathOf("missing") + ": No such file or directory"},
      {folder.pathOf(""), "cannot read " + folder.pathOf("") + ": Is a directory"},
      {folder.add("empty", ""), folder.pathOf("empty") + " is empty"},
      {folder.add("page", "<html>"), folder.pathOf("page") +
                                         " does not decode as an IPP message of version 1.1 or "
                                         "above"},
      {folder.pathOf("evil\x1B[2J\n"),
       "cannot read " + folder.pathOf("evil\\x1b[2J\\n") + ": No such file or directory"},
  };
  for (const auto& [path, reason] : cases) {
    const ToolRun run = runTool({"dump", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "platen: " + reason + "\n");
  }
}

}  // namespace
}  // namespace platen::test
