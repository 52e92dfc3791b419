// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/tool/FakePrinter.h"
#include "tests/tool/JobAnswer.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

// What `attributes --json` makes of one attribute, without its name.
std::string valuesOf(const std::string& value) {
  const FakePrinter printer({response(0, "\x04" + value)});
  const std::string out = runTool({"attributes", printer.uri(), "--json"}).out;
  const std::string begin = "\"attributes\":{\"x\":";
  const auto at = out.find(begin);
  const auto end = out.find("},\"unsupported\":{}}]\n");
  return at == std::string::npos || end == std::string::npos
             ? out
             : out.substr(at + begin.size(), end - at - begin.size());
}

TEST(JsonOutput, HasValuesOfTheirTypes) {
  const std::string date("\x07\xD1\x02\x03\x04\x05\x06\x00+\x01\x00", 11);
  EXPECT_EQ(valuesOf(attribute(0x21, "x", int32(-7))), "[-7]");
  EXPECT_EQ(valuesOf(attribute(0x23, "x", int32(3))), "[3]");
  EXPECT_EQ(valuesOf(attribute(0x22, "x", octet(1))), "[true]");
  EXPECT_EQ(valuesOf(attribute(0x44, "x", "a") + also(0x44, "b")), "[\"a\",\"b\"]");
  EXPECT_EQ(valuesOf(attribute(0x45, "x", "ipp://h/")), "[\"ipp://h/\"]");
  EXPECT_EQ(valuesOf(attribute(0x31, "x", date)), "[\"2001-02-03T03:05:06Z\"]");
  EXPECT_EQ(valuesOf(attribute(0x33, "x", int32(-5) + int32(10))), "[{\"lower\":-5,\"upper\":10}]");
  EXPECT_EQ(valuesOf(attribute(0x32, "x", int32(600) + int32(300) + octet(3))),
            "[{\"x\":600,\"y\":300,\"unit\":\"dpi\"}]");
  EXPECT_EQ(valuesOf(attribute(0x32, "x", int32(118) + int32(118) + octet(4))),
            "[{\"x\":118,\"y\":118,\"unit\":\"dpcm\"}]");
  EXPECT_EQ(valuesOf(attribute(0x35, "x", counted("de") + counted("Tag"))),
            "[{\"text\":\"Tag\",\"language\":\"de\"}]");
  for (const unsigned outOfBand : {0x10U, 0x12U, 0x13U}) {
    EXPECT_EQ(valuesOf(attribute(outOfBand, "x", "")), "[null]") << outOfBand;
  }
  EXPECT_EQ(valuesOf(attribute(0x41, "x", "\xFF")), "[null]") << "no valid text";
  EXPECT_EQ(valuesOf(collection("x", member("a", 0x21, int32(1)) + also(0x21, int32(2)) +
                                         memberCollection("b", member("c", 0x44, "d")))),
            "[{\"a\":[1,2],\"b\":[{\"c\":[\"d\"]}]}]");
}

TEST(JsonOutput, EscapesHostileText) {
  EXPECT_EQ(valuesOf(attribute(0x41, "x", "\"\\/\b\t\r\n\x7F")),
            "[\"\\\"\\\\/\\u0008\\t\\r\\n\\u007f\"]");
  EXPECT_EQ(valuesOf(attribute(0x41, "x", "\xE2\x80\xA8\xE2\x80\xAE\xC2\x9B\xEF\xBB\xBF")),
            "[\"\\u2028\\u202e\\u009b\\ufeff\"]");
  EXPECT_EQ(valuesOf(attribute(0x41, "x", "\xF3\xA0\x81\x81")), "[\"\\udb40\\udc41\"]")
      << "beyond 16 bits: a pair";
  EXPECT_EQ(valuesOf(attribute(0x41, "x", "\xF0\x9F\x96\xA8\xC3\xA9")),
            "[\"\xF0\x9F\x96\xA8\xC3\xA9\"]");
}

TEST(JsonOutput, HasEachNameOnce) {
  const FakePrinter printer(
      {response(0, "\x04" + attribute(0x44, "b", "1") + attribute(0x44, "a\"", "2") +
                       attribute(0x44, "b", "3"))});
  EXPECT_EQ(runTool({"attributes", printer.uri(), "--json"}).out,
            "[{\"uri\":\"" + printer.uri() +
                "\",\"status\":\"successful-ok\",\"attributes\":{\"a\\\"\":[\"2\"],"
                "\"b\":[\"1\",\"3\"]},\"unsupported\":{}}]\n");
}

TEST(JsonOutput, HasEveryPrinterThatAnswered) {
  const FakePrinter one({response(1, "\x05" + attribute(0x10, "odd", "") + "\x04" +
                                         attribute(0x23, "printer-state", int32(3)))});
  const FakePrinter refusing({response(0x0403, "")});
  const FakePrinter two({printerResponse(attribute(0x23, "printer-state", int32(5)))});
  const ToolRun run =
      runTool({"attributes", one.uri(), refusing.uri(), two.uri(), "printer-state", "--json"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "[{\"uri\":\"" + one.uri() +
                "\",\"status\":\"successful-ok-ignored-or-substituted-attributes\","
                "\"attributes\":{\"printer-state\":[3]},\"unsupported\":{\"odd\":[null]}},{\"uri\":"
                "\"" +
                two.uri() +
                "\",\"status\":\"successful-ok\",\"attributes\":{\"printer-state\":[5]},"
                "\"unsupported\":{}}]\n");
  EXPECT_EQ(run.err, "platen: Get-Printer-Attributes refused by " + refusing.uri() +
                         ": client-error-not-authorized\n");
}

TEST(JsonOutput, TellsOfAPrintedJobOnceAtTheEnd) {
  const ScratchFolder folder;
  const std::string file = folder.add("document", "x");
  const std::string begin = "{\"id\":12,\"uri\":\"ipp://third-party.invalid/jobs/12\",\"state\":";
  const FakePrinter printer({jobAnswer(3)});
  EXPECT_EQ(runTool({"print", printer.uri(), file, "--json"}).out,
            begin + "\"pending\",\"state_reasons\":[]}\n");
  const FakePrinter patient({jobAnswer(3), jobAnswer(5, "job-printing"), jobAnswer(9)});
  EXPECT_EQ(runTool({"print", patient.uri(), file, "--json", "--wait"}).out,
            begin + "\"completed\",\"state_reasons\":[]}\n");
  const FakePrinter failing({jobAnswer(5), jobAnswer(8, "aborted-by-system")});
  const ToolRun run = runTool({"print", failing.uri(), file, "--json", "--wait"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, begin + "\"aborted\",\"state_reasons\":[\"aborted-by-system\"]}\n");
}

TEST(JsonOutput, ShowsAMessageAsItIs) {
  const std::string request = header(2) + "\x01" + attribute(0x45, "printer-uri", "ipp://h/") +
                              "\x02" + attribute(0x21, "copies", int32(2)) +
                              attribute(0x21, "copies", int32(3)) + "\x03" + "%PDF";
  EXPECT_EQ(runTool({"dump", "-", "--json"}, request).out,
            "{\"kind\":\"request\",\"name\":\"Print-Job\",\"code\":2,\"version\":\"1.1\","
            "\"request_id\":1,\"groups\":[{\"group\":\"operation-attributes-tag\",\"attributes\":"
            "[{\"name\":\"printer-uri\",\"syntax\":\"uri\",\"values\":[\"ipp://h/\"]}]},"
            "{\"group\":\"job-attributes-tag\",\"attributes\":["
            "{\"name\":\"copies\",\"syntax\":\"integer\",\"values\":[2]},"
            "{\"name\":\"copies\",\"syntax\":\"integer\",\"values\":[3]}]}],"
            "\"document_octets\":4}\n");
  EXPECT_EQ(runTool({"dump", "-", "--json"}, response(0x0406, "")).out.substr(0, 62),
            "{\"kind\":\"response\",\"name\":\"client-error-not-found\",\"code\":1030");
}

}  // namespace
}  // namespace platen::test
