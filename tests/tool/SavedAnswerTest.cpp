// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platen/IPPKeyedArchiver.h"
#include "platen/IPPKeyedUnarchiver.h"
#include "platen/IPPResponse.h"
#include "tests/tool/FakePrinter.h"
#include "tests/tool/MessageOctets.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

using namespace std::string_literals;

const std::string kAnswer =
    response(0, "\x04" + attribute(0x23, "printer-state", int32(3)) +
                    attribute(0x42, "printer-name", "lobby") +
                    attribute(0x35, "printer-info", counted("de") + counted("Fl\xC3\xBCr")) +
                    attribute(0x44, "media-ready", "iso_a4_210x297mm") +
                    also(0x44, "na_letter_8.5x11in") + attribute(0x13, "printer-location", "") +
                    collection("media-col-default", member("media-type", 0x44, "stationery")));

const std::string kShown = "Printer attributes\n  printer-state  idle\n";

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

IPPResponse::Pointer decoded(const std::string& octets) {
  return IPPResponse::initWithDataRepresentation(Data(octets.begin(), octets.end()));
}

std::shared_ptr<IPPResponse> savedIn(const std::string& path) {
  return IPPKeyedUnarchiver::unarchiveObjectWithFile<IPPResponse>(path);
}

std::size_t entriesOf(const std::string& path) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path),
                                                std::filesystem::directory_iterator()));
}

TEST(SavedAnswer, IsTheWholeAnswerWhateverIsShown) {
  const ScratchFolder folder;
  const FakePrinter printer({kAnswer});
  const std::string path = folder.pathOf("kept");
  const ToolRun run = runTool({"attributes", printer.uri(), "printer-stat?", "--save", path});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, kShown);
  ASSERT_NE(savedIn(path), nullptr);
  EXPECT_TRUE(savedIn(path)->isEqual(*decoded(kAnswer)));
  EXPECT_TRUE(contentsOf(path).starts_with("{\n  \"$platen-archive\": 1,\n"));
}

TEST(SavedAnswer, IsCBORWhereTheNameSaysSo) {
  const ScratchFolder folder;
  const FakePrinter printer({kAnswer});
  const std::string path = folder.pathOf("kept.cbor");
  EXPECT_EQ(runTool({"attributes", printer.uri(), "--save", path}).status, 0);
  EXPECT_GE(static_cast<unsigned char>(contentsOf(path)[0]), 0xA0U);
  ASSERT_NE(savedIn(path), nullptr);
  EXPECT_TRUE(savedIn(path)->isEqual(*decoded(kAnswer)));
}

TEST(SavedAnswer, TakesThePlaceOfAnEarlierOneAsAWhole) {
  const ScratchFolder folder;
  const FakePrinter printer({kAnswer});
  const std::string path = folder.add("kept", "the earlier one");
  std::filesystem::create_hard_link(path, folder.pathOf("reader"));
  EXPECT_EQ(runTool({"attributes", printer.uri(), "--save", path}).status, 0);
  EXPECT_NE(savedIn(path), nullptr);
  EXPECT_EQ(contentsOf(folder.pathOf("reader")), "the earlier one") << "it was written into";
  EXPECT_EQ(entriesOf(folder.pathOf("")), 2U);
}

TEST(SavedAnswer, IsNotThereWhenThePrinterRefusesOrDoesNotAnswer) {
  const ScratchFolder folder;
  const std::string path = folder.add("kept", "the earlier one");
  const FakePrinter refusing({response(0x0403, "")});
  EXPECT_EQ(runTool({"attributes", refusing.uri(), "--save", path}).status, 1);
  const FakePrinter dead([](auto& connection) { connection.close(); });
  EXPECT_EQ(runTool({"attributes", dead.uri(), "--save", path}).status, 3);
  EXPECT_EQ(contentsOf(path), "the earlier one");
}

TEST(SavedAnswer, IsShownAlthoughItCannotBeWritten) {
  const ScratchFolder folder;
  const struct {
    std::string path;
    std::string reason;
  } cases[] = {{folder.pathOf("missing/kept"), "No such file or directory"},
               {folder.pathOf("folder"), "Is a directory"}};
  std::filesystem::create_directory(folder.pathOf("folder"));
  for (const auto& [path, reason] : cases) {
    const FakePrinter printer({kAnswer});
    const ToolRun run = runTool({"attributes", printer.uri(), "printer-stat?", "--save", path});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, kShown);
    EXPECT_EQ(run.err, "platen: cannot write " + path + ": " + reason + "\n");
  }
  EXPECT_EQ(entriesOf(folder.pathOf("")), 1U);
}

// In JSON an octet of the answer may become six.
TEST(SavedAnswer, IsNotWrittenWhereItCouldNotBeReadAgain) {
  const ScratchFolder folder;
  const std::string text(32000, '\x01');
  std::string attributes = attribute(0x23, "printer-state", int32(3));
  for (int i = 0; i < 350; ++i) {
    attributes += attribute(0x41, "text-" + std::to_string(i), text);
  }
  const std::string answer = response(0, "\x04" + attributes);
  const FakePrinter printer({answer});
  const std::string path = folder.add("kept", "the earlier one");
  const ToolRun run = runTool({"attributes", printer.uri(), "printer-stat?", "--save", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, kShown);
  EXPECT_EQ(run.err,
            "platen: cannot write " + path + ": more than the 67108864 octets that can be read\n");
  EXPECT_EQ(contentsOf(path), "the earlier one");
  // In CBOR it stays one.
  const std::string small = folder.pathOf("kept.cbor");
  const FakePrinter again({answer});
  EXPECT_EQ(runTool({"attributes", again.uri(), "printer-stat?", "--save", small}).status, 0);
  const ToolRun back = runTool({"dump", small, "--key", "printer-state"});
  EXPECT_EQ(back.out, "idle\n") << back.err;
}

TEST(SavedAnswer, IsThatOfOnePrinterAndGoesIntoAFile) {
  const ScratchFolder folder;
  const FakePrinter printer({kAnswer});
  const std::string path = folder.pathOf("kept");
  const struct {
    Arguments words;
    std::string reason;
  } cases[] = {{{"attributes", printer.uri(), printer.uri(), "--save", path},
                "--save keeps the answer of one printer"},
               {{"attributes", printer.uri(), "--save", "-"}, "--save needs the name of a file"},
               {{"attributes", printer.uri(), "--save", ""}, "--save needs the name of a file"}};
  for (const auto& [words, reason] : cases) {
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "platen: " + reason + "\n");
  }
  EXPECT_EQ(printer.connectionCount(), 0U);
  EXPECT_EQ(entriesOf(folder.pathOf("")), 0U);
}

// --- Coming back
// -----------------------------------------------------------------------------------

std::string archiveOf(const IPPMessage& message, IPPArchiveFormat format) {
  const auto octets = IPPKeyedArchiver::archivedDataWithRootObject(message, format);
  return octets ? std::string(octets->begin(), octets->end()) : "";
}

// What dump says of octets, without what an archive does not keep.
std::string dumpWithoutVersion(const std::string& octets) {
  std::string out = runTool({"dump", "-"}, octets).out;
  const std::string version = ", IPP 1.1";
  return out.erase(out.find(version), version.size());
}

TEST(DumpedArchive, ShowsWhatTheOctetsOfTheMessageShow) {
  const std::string question = header(0x000B) + "\x01" + charsetAndLanguage() +
                               attribute(0x45, "printer-uri", "ipp://localhost/") + "\x03";
  const auto request =
      IPPRequest::initWithDataRepresentation(Data(question.begin(), question.end()));
  for (const auto format :
       {IPPArchiveFormat::json, IPPArchiveFormat::indentedJSON, IPPArchiveFormat::cbor}) {
    const std::string answer = archiveOf(*decoded(kAnswer), format);
    EXPECT_EQ(runTool({"dump", "-"}, answer).out, dumpWithoutVersion(kAnswer));
    EXPECT_EQ(runTool({"dump", "-", "--archive"}, answer).out, dumpWithoutVersion(kAnswer));
    EXPECT_EQ(runTool({"dump", "-"}, archiveOf(*request, format)).out,
              dumpWithoutVersion(question));
  }
  const std::string json = archiveOf(*decoded(kAnswer), IPPArchiveFormat::json);
  EXPECT_EQ(runTool({"dump", "-"}, "\xEF\xBB\xBF \n" + json).out, dumpWithoutVersion(kAnswer));
}

TEST(DumpedArchive, IsOfTheKindThatItsClassOrAnOptionSays) {
  const auto answer = [](const std::string& className, const Arguments& options) {
    Arguments words{"dump", "-"};
    words.insert(words.end(), options.begin(), options.end());
    return runTool(words, R"({"$platen-archive":1,"$class":")" + className +
                              R"(","tag":5,"request-id":7,"groups":[]})")
        .out;
  };
  const std::string request = "Request Create-Job (0x0005), request-id 7\n\n";
  const std::string response = "Response successful-ok-too-many-events (0x0005), request-id 7\n\n";
  EXPECT_EQ(answer("IPPRequest", {}), request);
  EXPECT_EQ(answer("IPPResponse", {}), response);
  EXPECT_EQ(answer("IPPMessage", {}), response) << "as with octets";
  EXPECT_EQ(answer("IPPMessage", {"--request"}), request);
  EXPECT_EQ(answer("IPPResponse", {"--request"}), request);
  EXPECT_EQ(answer("IPPRequest", {"--response"}), response);
}

TEST(DumpedArchive, SaysWhereItIsWrong) {
  const std::string begin =
      R"({"$platen-archive":1,"$class":"IPPResponse","tag":0,"request-id":1,)";
  const auto attribute = [&](const std::string& value) {
    return begin +
           R"("groups":[{"$class":"IPPPrinterGroup","attributes":[{"$class":"IPPAttribute",)" +
           R"("name":"a","value":)" + value + "}]}]}";
  };
  const struct {
    std::string archive;
    std::string reason;
  } cases[] = {
      {R"({"a":1})", "not an archive: no version under \"$platen-archive\""},
      {R"({"$platen-archive":1})", "the key \"$class\" is missing"},
      {begin + R"("groups":[])", "not well-formed"},
      {attribute(R"({"$class":"IPPFoo"})"),
       "groups[0].attributes[0].value: unknown class \"IPPFoo\""},
      {attribute(R"({"$ref":3})"), "groups[0].attributes[0].value"},
      {attribute(R"({"$class":"\u001b[2J\n"})"), "groups[0].attributes[0].value: unknown class"},
      {R"({"$platen-archive":1,"$class":"IPPInteger","value":1})", "another class: \"IPPInteger\""},
      {"\xA1\x61", "cut short at octet 1"},
  };
  for (const auto& [archive, reason] : cases) {
    const ToolRun run = runTool({"dump", "-"}, archive);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.starts_with("platen: standard input is not an archive of a message: "));
    EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
    EXPECT_EQ(run.err.find('\x1B'), std::string::npos);
  }
}

TEST(DumpedArchive, IsWhatTheOptionSaysThoughItLooksLikeNone) {
  EXPECT_EQ(runTool({"dump", "-", "--archive"}, kAnswer).err.substr(0, 56),
            "platen: standard input is not an archive of a message: n");
  EXPECT_EQ(runTool({"dump", "-"}, "<html>").err,
            "platen: standard input does not decode as an IPP message of version 1.1 or above\n");
}

TEST(DumpedArchive, IsNeverShownInPart) {
  const std::string archive = archiveOf(*decoded(kAnswer), IPPArchiveFormat::cbor);
  for (std::size_t length = 1; length < archive.size(); length += 7) {
    const ToolRun run = runTool({"dump", "-"}, archive.substr(0, length));
    EXPECT_EQ(run.status, 1) << length;
    EXPECT_EQ(run.out, "");
  }
}

// Each set holds the one inside of it twice: 2^40 values in four kilobytes.
TEST(DumpedArchive, IsRefusedWhenReferencesMakeItHuge) {
  std::string value = R"({"$class":"IPPKeyword","$id":1,"value":"boo"})";
  std::string id = "1";
  for (int i = 2; i < 42; ++i) {
    value = R"({"$class":"IPPArray","$id":)" + std::to_string(i) + R"(,"value":[)" + value +
            R"(,{"$ref":)" + id + "}]}";
    id = std::to_string(i);
  }
  const std::string archive =
      R"({"$platen-archive":1,"$class":"IPPResponse","tag":0,"request-id":1,"groups":[)"
      R"({"$class":"IPPPrinterGroup","attributes":[{"$class":"IPPAttribute","name":"a","value":)" +
      value + "}]}]}";
  const ScratchFolder folder;
  const std::string path = folder.add("huge", archive);
  const ToolRun run = runTool({"dump", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "platen: " + path + " refers to so much that it cannot be shown\n");
  EXPECT_EQ(runTool({"diff", path, path}).status, 2);
}

}  // namespace
}  // namespace platen::test
