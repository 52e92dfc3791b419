// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <vector>

#include "platen/IPPKeyedArchiver.h"
#include "platen/IPPResponse.h"
#include "tests/tool/FakePrinter.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/Terminal.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

ToolRun diff(const std::string& before, const std::string& after, const Arguments& options = {}) {
  const ScratchFolder folder;
  Arguments words{"diff", folder.add("before", before), folder.add("after", after)};
  words.insert(words.end(), options.begin(), options.end());
  return runTool(words);
}

// What is said of two printer groups, below their heading.
std::string lines(const std::string& before, const std::string& after,
                  const Arguments& options = {}) {
  const ToolRun run = diff(printerResponse(before), printerResponse(after), options);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_EQ(run.err, "");
  const std::string heading = "Printer attributes\n";
  EXPECT_TRUE(run.out.starts_with(heading)) << run.out;
  return run.out.substr(std::min(heading.size(), run.out.size()));
}

std::string state(int value) { return attribute(0x23, "printer-state", int32(value)); }
std::string keywords(const std::string& name, const std::vector<std::string>& values) {
  std::string octets;
  for (const std::string& value : values) {
    octets += attribute(0x44, octets.empty() ? name : "", value);
  }
  return octets;
}
std::string job(int id, int value) {
  return "\x02" + attribute(0x21, "job-id", int32(id)) + attribute(0x23, "job-state", int32(value));
}
std::string printer(const std::string& name, int value) {
  return "\x04" + attribute(0x42, "printer-name", name) + state(value);
}

TEST(Diff, SaysNothingOfWhatIsEqual) {
  const std::string answer = response(0, "\x04" + state(3) + keywords("media", {"a", "b"}));
  std::string laterRequest = answer;
  laterRequest[7] = 99;
  for (const auto& after : {answer, laterRequest, answer + "data"}) {
    const ToolRun run = diff(answer, after);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
  }
}

TEST(Diff, ShowsWhatCameWhatWentAndWhatIsAnother) {
  EXPECT_EQ(lines(state(3) + keywords("media-ready", {"a4"}) + attribute(0x41, "printer-info", "x"),
                  attribute(0x41, "printer-info", "x") + keywords("media-col-ready", {"b", "c"}) +
                      state(5)),
            "+ media-col-ready  b, c\n"
            "- media-ready      a4\n"
            "~ printer-state    idle -> stopped\n");
}

TEST(Diff, TakesNoOrderOfAttributesAndMembersForADifference) {
  const std::string one = member("x-dimension", 0x21, int32(1));
  const std::string two = member("y-dimension", 0x21, int32(2));
  EXPECT_EQ(diff(printerResponse(state(3) + collection("media-col", one + two)),
                 printerResponse(collection("media-col", two + one) + state(3)))
                .status,
            0);
}

TEST(Diff, TakesTheOrderOfValuesForOne) {
  EXPECT_EQ(lines(keywords("media", {"a", "b"}), keywords("media", {"b", "a"})),
            "~ media  a, b -> b, a\n");
  EXPECT_EQ(lines(keywords("media", {"a", "b"}), keywords("media", {"b", "a"}), {"--width", "12"}),
            "~ media\n    a, b\n    -> b, a\n");
}

TEST(Diff, ShowsOfLongSetsWhatCameAndWhatWent) {
  EXPECT_EQ(lines(keywords("media", {"iso_a4_210x297mm", "iso_a5_148x210mm", "iso_a3_297x420mm"}),
                  keywords("media", {"iso_a4_210x297mm", "na_letter_8.5x11in", "iso_a3_297x420mm",
                                     "iso_a3_297x420mm"}),
                  {"--width", "60"}),
            "~ media  - iso_a5_148x210mm\n"
            "         + na_letter_8.5x11in\n"
            "         + iso_a3_297x420mm\n");
}

TEST(Diff, ShowsOfLongCollectionsTheMembersThatDiffer) {
  const auto media = [](int width, const std::string& more) {
    return collection(
        "media-col-default",
        memberCollection("media-size", member("x-dimension", 0x21, int32(width)) +
                                           member("y-dimension", 0x21, int32(29700))) +
            member("media-source-of-this-collection", 0x44, "main") + more);
  };
  EXPECT_EQ(lines(media(21000, ""), media(21590, member("media-type", 0x44, "stationery")),
                  {"--width", "90"}),
            "~ media-col-default  ~ media-size  ~ x-dimension  21000 -> 21590\n"
            "                     + media-type  stationery\n");
}

TEST(Diff, PutsLongTextsOneBelowTheOther) {
  EXPECT_EQ(lines(attribute(0x41, "printer-info", "in the hall beside the stairs"),
                  attribute(0x41, "printer-info", "on the second floor"), {"--width", "50"}),
            "~ printer-info  in the hall beside the stairs\n"
            "                -> on the second floor\n");
}

TEST(Diff, BreaksNoLineWithoutWidth) {
  const std::string text(300, 'x');
  EXPECT_EQ(lines(attribute(0x41, "printer-info", text),
                  attribute(0x41, "printer-info", "y" + text), {"--width", "0"}),
            "~ printer-info  " + text + " -> y" + text + "\n");
}

TEST(Diff, TellsTheSyntaxWhereNothingElseIsAnother) {
  EXPECT_EQ(lines(attribute(0x44, "media", "a4"), attribute(0x42, "media", "a4")),
            "~ media  a4 (keyword) -> a4 (nameWithoutLanguage)\n");
  EXPECT_EQ(lines(attribute(0x23, "odd", int32(3)), attribute(0x21, "odd", int32(3))),
            "~ odd  3 (enum) -> 3 (integer)\n");
  EXPECT_EQ(
      lines(keywords("media", {"a4", "a5"}), attribute(0x42, "media", "a4") + also(0x42, "a5")),
      "~ media  - a4 (keyword)\n"
      "         - a5 (keyword)\n"
      "         + a4 (nameWithoutLanguage)\n"
      "         + a5 (nameWithoutLanguage)\n");
  EXPECT_EQ(lines(keywords("media", {"a4", "a5"}), keywords("media", {"a4"}) + also(0x42, "a5")),
            "~ media  - a5 (keyword)\n         + a5 (nameWithoutLanguage)\n");
  EXPECT_EQ(lines(collection("media-col", member("media-type", 0x44, "a4")),
                  collection("media-col", member("media-type", 0x42, "a4"))),
            "~ media-col  ~ media-type  a4 (keyword) -> a4 (nameWithoutLanguage)\n");
}

TEST(Diff, ShowsOutOfBandAndMissingTextsAsElsewhere) {
  EXPECT_EQ(lines(attribute(0x13, "printer-location", ""), attribute(0x41, "printer-location", "")),
            "~ printer-location  (no-value) -> (no text)\n");
}

TEST(Diff, ComparesAttributesOfOneNameOneByOne) {
  EXPECT_EQ(lines(state(3) + state(4), state(3) + state(5) + state(4)),
            "~ printer-state  processing -> stopped\n+ printer-state  processing\n");
}

TEST(Diff, IsHarmlessOnATerminal) {
  EXPECT_EQ(lines(attribute(0x41, "evil\x1B[2J", "a\n+ b"), attribute(0x41, "evil\x1B[2J", "\x9B")),
            "~ evil\\x1b[2J  a\\n+ b -> (no text)\n");
}

TEST(Diff, LeavesOutWhatIsIgnored) {
  const std::string before = attribute(0x21, "printer-up-time", int32(1)) + state(3);
  const std::string after = attribute(0x21, "printer-up-time", int32(9)) + state(4);
  EXPECT_EQ(lines(before, after, {"--ignore", "PRINTER-UP-*"}),
            "~ printer-state  idle -> processing\n");
  const ToolRun run = diff(printerResponse(before), printerResponse(after),
                           {"--ignore", "printer-up-time", "--ignore", "*-stat?"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
}

TEST(Diff, TakesIgnoreBeforeTheFilesToo) {
  const ScratchFolder folder;
  const ToolRun run =
      runTool({"diff", "--ignore", "printer-state", folder.add("before", printerResponse(state(3))),
               folder.add("after", printerResponse(state(4)))});
  EXPECT_EQ(run.status, 0) << run.err;
}

TEST(Diff, ComparesJobsByTheirNumber) {
  const ToolRun run = diff(response(0, job(7, 5) + job(8, 3) + job(9, 3)),
                           response(0, job(8, 3) + job(10, 3) + job(9, 9)));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "- Job attributes (job-id 7)\n"
            "- job-id     7\n"
            "- job-state  processing\n\n"
            "Job attributes (job-id 9)\n"
            "~ job-state  pending -> completed\n\n"
            "+ Job attributes (job-id 10)\n"
            "+ job-id     10\n"
            "+ job-state  pending\n");
}

TEST(Diff, ComparesPrintersByTheirNameWhenThereAreSeveral) {
  const ToolRun run = diff(response(0, printer("lobby", 3) + printer("attic", 3)),
                           response(0, printer("attic", 5) + printer("lobby", 3)));
  EXPECT_EQ(run.out, "Printer attributes (printer-name attic)\n~ printer-state  idle -> stopped\n");
  EXPECT_EQ(diff(response(0, printer("lobby", 3)), response(0, printer("hall", 3))).out,
            "Printer attributes\n~ printer-name  lobby -> hall\n");
  EXPECT_EQ(diff(response(0, printer("lobby", 3)),
                 response(0, printer("hall", 3) + printer("lobby", 3)), {"--ignore", "*-state"})
                .out,
            "+ Printer attributes (printer-name hall)\n+ printer-name  hall\n");
}

TEST(Diff, ComparesOtherGroupsByTheirOrder) {
  const auto subscription = [](int id) {
    return "\x06" + attribute(0x21, "notify-subscription-id", int32(id));
  };
  const std::string event = "\x07" + attribute(0x21, "notify-sequence-number", int32(1));
  const std::string other = "\x07" + attribute(0x21, "notify-sequence-number", int32(2));
  const ToolRun run = diff(response(0, subscription(1) + subscription(2) + event + event),
                           response(0, subscription(2) + event + other + "\x07"));
  EXPECT_EQ(run.out,
            "- Subscription attributes (notify-subscription-id 1)\n"
            "- notify-subscription-id  1\n\n"
            "Event attributes (2)\n"
            "~ notify-sequence-number  1 -> 2\n\n"
            "+ Event attributes (3)\n");
}

TEST(Diff, SaysWhenTheMessagesThemselvesAreOfAnotherKind) {
  EXPECT_EQ(diff(response(0, ""), response(0x0406, "")).out,
            "Message\n~ Response successful-ok (0x0000) -> "
            "Response client-error-not-found (0x0406)\n");
}

TEST(Diff, TakesArchivesAndStandardInput) {
  const std::string octets = response(0, "\x04" + state(3));
  const auto answer = IPPResponse::initWithDataRepresentation(Data(octets.begin(), octets.end()));
  const ScratchFolder folder;
  const std::string path = folder.pathOf("kept.cbor");
  ASSERT_TRUE(IPPKeyedArchiver::archiveRootObject(*answer, path, IPPArchiveFormat::cbor));
  EXPECT_EQ(runTool({"diff", path, "-"}, octets).status, 0);
  const ToolRun run = runTool({"diff", "-", path}, response(0, "\x04" + state(4)));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "Printer attributes\n~ printer-state  processing -> idle\n");
}

TEST(Diff, ColoursOnATerminalOnly) {
  const ScratchFolder folder;
  const Arguments words{"diff", folder.add("before", printerResponse(state(3))),
                        folder.add("after", printerResponse(state(4)))};
  EXPECT_EQ(runOnTerminal(words, STDIN_FILENO, 80, {"TERM=xterm"}).out,
            "\x1b[1mPrinter attributes\x1b[0m\r\n"
            "\x1b[33m~ printer-state\x1b[0m  idle -> processing\r\n");
  const std::string plain = "Printer attributes\r\n~ printer-state  idle -> processing\r\n";
  EXPECT_EQ(runOnTerminal(words, STDIN_FILENO, 80, {"TERM=xterm", "NO_COLOR=1"}).out, plain);
  EXPECT_EQ(runOnTerminal(words, STDIN_FILENO, 80, {"TERM=dumb"}).out, plain);
}

// --- Printers
// --------------------------------------------------------------------------------------

TEST(DiffOfPrinters, AsksBothAtOnce) {
  std::latch bothAreAsked(2);
  const auto answering = [&](int value) {
    return [&bothAreAsked, value](auto& connection) {
      connection.readRequest();
      bothAreAsked.arrive_and_wait();
      connection.answer(200, response(0, "\x04" + state(value)));
    };
  };
  const FakePrinter one(answering(3));
  const FakePrinter other(answering(5));
  const ToolRun run = runTool({"diff", one.uri(), other.uri()});
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_EQ(run.out, "Printer attributes\n~ printer-state  idle -> stopped\n");
  EXPECT_EQ(one.request(0)->ippOperationCodename(), "Get-Printer-Attributes");
  EXPECT_EQ(other.request(0)->printerURI()->absoluteString(), other.uri());
}

TEST(DiffOfPrinters, ComparesAFileWithWhatThePrinterSaysNow) {
  const ScratchFolder folder;
  const FakePrinter printer({response(0, "\x04" + state(5)), response(0, "\x04" + state(3))});
  const std::string path = folder.pathOf("kept");
  EXPECT_EQ(runTool({"attributes", printer.uri(), "--save", path}).status, 0);
  const FakePrinter later({response(0, "\x04" + state(3))});
  EXPECT_EQ(runTool({"diff", path, later.uri()}).out,
            "Printer attributes\n~ printer-state  stopped -> idle\n");
  const FakePrinter same({response(0, "\x04" + state(5))});
  EXPECT_EQ(runTool({"diff", same.uri(), path}).status, 0);
}

TEST(DiffOfPrinters, EndsWithThreeWhenOneIsDead) {
  const std::string dead = FakePrinter(std::vector<std::string>{}).uri();
  const std::string begin = "platen: Get-Printer-Attributes: no answer from " + dead + ": ";
  for (const bool isFirst : {true, false}) {
    const FakePrinter alive({response(0, "\x04" + state(3))});
    const ToolRun run =
        isFirst ? runTool({"diff", dead, alive.uri()}) : runTool({"diff", alive.uri(), dead});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.substr(0, begin.size()), begin);
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1);
  }
}

TEST(DiffOfPrinters, TellsOfBothThatFailAndEndsWithTheWorse) {
  const std::string dead = FakePrinter(std::vector<std::string>{}).uri();
  const FakePrinter refusing({response(0x0403, "")});
  const ToolRun run = runTool({"diff", dead, refusing.uri()});
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 2);
  EXPECT_NE(run.err.find("refused by " + refusing.uri()), std::string::npos);
}

TEST(DiffOfPrinters, EndsWithTwoWhenOneRefusesOrTalksNonsense) {
  const FakePrinter refusing({response(0x0403, "")});
  EXPECT_EQ(runTool({"diff", refusing.uri(), "-"}, response(0, "")).status, 2);
  const FakePrinter page({"<html>"});
  EXPECT_EQ(runTool({"diff", page.uri(), "-"}, response(0, "")).status, 2);
}

// --- Trouble
// ---------------------------------------------------------------------------------------

TEST(DiffInTrouble, EndsWithTwoAndOneLine) {
  const ScratchFolder folder;
  const std::string good = folder.add("good", printerResponse(state(3)));
  const std::string missing = folder.pathOf("missing");
  const std::string bad = folder.add("bad", "<html>");
  const struct {
    Arguments words;
    std::string reason;
  } cases[] = {
      {{good, missing}, "cannot read " + missing + ": No such file or directory"},
      {{bad, good}, bad + " does not decode as an IPP message of version 1.1 or above"},
      {{good, folder.add("empty", "")}, folder.pathOf("empty") + " is empty"},
      {{good, folder.add("archive", R"({"$platen-archive":1})")},
       folder.pathOf("archive") + " is not an archive of a message: the key \"$class\" is missing"},
      {{"-", "-"}, "only one of the two can be standard input"},
      {{good, "https://localhost/"},
       "\"https://localhost/\" asks for an encrypted connection, which platen does not have"},
      {{good}, "AFTER is required (see platen diff --help)"},
  };
  for (const auto& [words, reason] : cases) {
    Arguments all = words;
    all.insert(all.begin(), "diff");
    const ToolRun run = runTool(all);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "platen: " + reason + "\n");
  }
}

TEST(DiffInTrouble, AsksNoPrinterWhenTheFileCannotBeRead) {
  const FakePrinter printer({response(0, "")});
  EXPECT_EQ(runTool({"diff", printer.uri(), "/nonexistent/file"}).status, 2);
  EXPECT_EQ(printer.connectionCount(), 0U);
}

TEST(DiffInTrouble, StaysQuickWithManyNestedMembers) {
  const auto nested = [](const std::string& end) {
    std::string members;
    for (int i = 0; i < 3000; ++i) {
      members += member("member-" + std::to_string(i), 0x44, "value" + end);
    }
    for (int depth = 1; depth < 60; ++depth) {
      members = memberCollection(std::string(200, 'm'), members);
    }
    return printerResponse(collection("deep", members));
  };
  const ToolRun run = diff(nested("a"), nested("b"));
  EXPECT_EQ(run.status, 1);
  EXPECT_LT(run.out.size(), 3000U * 1000U);
}

TEST(Diff, IsJsonForScripts) {
  const Arguments json{"--json"};
  const std::string before = response(0, job(7, 3) + job(8, 5));
  const ToolRun run = diff(before, response(0x0404, job(8, 9) + job(9, 3)), json);
  EXPECT_EQ(run.status, 1) << run.err;
  EXPECT_EQ(
      run.out,
      R"j({"before":"Response successful-ok (0x0000)",)j"
      R"j("after":"Response client-error-not-possible (0x0404)","groups":[)j"
      R"j({"group":"job-attributes-tag","identity":"job-id 7","change":"removed","attributes":[)j"
      R"j({"name":"job-id","change":"removed","before":[7],"after":null},)j"
      R"j({"name":"job-state","change":"removed","before":[3],"after":null}]},)j"
      R"j({"group":"job-attributes-tag","identity":"job-id 8","change":"changed","attributes":[)j"
      R"j({"name":"job-state","change":"changed","before":[5],"after":[9]}]},)j"
      R"j({"group":"job-attributes-tag","identity":"job-id 9","change":"added","attributes":[)j"
      R"j({"name":"job-id","change":"added","before":null,"after":[9]},)j"
      R"j({"name":"job-state","change":"added","before":null,"after":[3]}]}]})j"
      "\n");
  const ToolRun same = diff(before, before, json);
  EXPECT_EQ(same.status, 0);
  EXPECT_EQ(same.out, R"j({"before":"Response successful-ok (0x0000)",)j"
                      R"j("after":"Response successful-ok (0x0000)","groups":[]})j"
                      "\n");
}

}  // namespace
}  // namespace platen::test
