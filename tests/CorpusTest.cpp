// SPDX-License-Identifier: Apache-2.0

// Every captured message in the directory that PLATEN_CORPUS names: NAME.bin, and beside it
// NAME.txt, what an independent decoder made of it. The captures are no part of the project.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/IPPBytesReader.h"
#include "platen/IPPMessage.h"
#include "platen/IPPUnarchiver.h"
#include "tests/support/Archives.h"
#include "tests/support/KeyValuePrinting.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNoCorpus =
    "PLATEN_CORPUS names no directory of captured messages (NAME.bin and NAME.txt)";
constexpr std::size_t kVersionOctets = 2;

enum class Loss {
  kTimeZone,   // A dateTime is kept as an instant and written in UTC, without deci-seconds.
  kAfterZero,  // A string is written up to its first zero octet; octetStrings end in some here.
};

// The messages that are not written back octet for octet, and why. All others are.
const std::map<std::string, Loss> kRewritten = {
    {"canon-ts6000.get-printer-attributes", Loss::kAfterZero},
    {"epson-wf-2630-series.get-printer-attributes", Loss::kAfterZero},
    {"hp-laserjet-m605.get-job-attributes", Loss::kTimeZone},
    {"hp-laserjet-m605.get-printer-attributes", Loss::kTimeZone},
};

std::optional<Loss> lossOf(const fs::path& path) {
  const auto found = kRewritten.find(path.stem().string());
  return found == kRewritten.end() ? std::nullopt : std::optional(found->second);
}

std::vector<fs::path> captures() {
  std::vector<fs::path> paths;
  const char* directory = std::getenv("PLATEN_CORPUS");
  if (directory == nullptr || !fs::is_directory(directory)) return paths;
  for (const auto& entry : fs::directory_iterator(directory)) {
    if (entry.path().extension() == ".bin") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << "cannot read " << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A decoded capture, and where its message ends: document data may follow.
struct Decoded {
  std::shared_ptr<IPPMessage> message;
  Data octets;
  std::size_t dataOctets = 0;
};

Decoded decode(const fs::path& path) {
  const std::string file = readFile(path);
  const auto data = std::make_shared<Data>(file.begin(), file.end());
  const auto reader = std::make_shared<IPPDataReader>(data);
  IPPUnarchiver decoder(reader);
  Decoded decoded{IPPMessage::initWithCoder(decoder), *data, reader->window().size()};
  decoded.octets.resize(data->size() - decoded.dataOctets);
  return decoded;
}

Bytes afterVersion(const Data& octets) { return Bytes(octets).subspan(kVersionOctets); }

// What the independent decoder has and this one does not keep: the version and, of a dateTime, the
// zone and the deci-seconds.
std::string expectedText(const fs::path& path) {
  const std::string text = readFile(fs::path(path).replace_extension(".txt"));
  return test::withDatesInUTC("message version=1.1" + text.substr(text.find(" code=")));
}

class Corpus : public testing::TestWithParam<fs::path> {};

TEST_P(Corpus, AgreesWithTheIndependentDecoder) {
  const Decoded decoded = decode(GetParam());
  ASSERT_NE(decoded.message, nullptr);
  EXPECT_EQ(test::messageText(*decoded.message, decoded.dataOctets), expectedText(GetParam()));
}

TEST_P(Corpus, IsWrittenBackOctetForOctetButForWhatTheTableNames) {
  const Decoded decoded = decode(GetParam());
  ASSERT_NE(decoded.message, nullptr);
  const Data written = decoded.message->dataRepresentation();
  const std::string before = test::hex(afterVersion(decoded.octets));
  const std::string after = test::hex(afterVersion(written));
  if (lossOf(GetParam())) {
    EXPECT_NE(after, before) << "written back by now: the table is wrong";
  } else {
    EXPECT_EQ(after, before);
  }
}

TEST_P(Corpus, DecodesAgainFromWhatWasWritten) {
  const Decoded decoded = decode(GetParam());
  ASSERT_NE(decoded.message, nullptr);
  const Data written = decoded.message->dataRepresentation();
  const auto again = IPPMessage::initWithDataRepresentation(written);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(again->isEqual(*decoded.message), lossOf(GetParam()) != Loss::kAfterZero);
  EXPECT_EQ(test::hex(again->dataRepresentation()), test::hex(written));
}

TEST_P(Corpus, ComesBackFromAnArchive) {
  const Decoded decoded = decode(GetParam());
  ASSERT_NE(decoded.message, nullptr);
  for (const IPPArchiveFormat format : test::kArchiveFormats) {
    const Data archive = test::archived(*decoded.message, format);
    const auto back = test::unarchived<IPPMessage>(archive);
    ASSERT_NE(back, nullptr) << test::refusal(archive);
    EXPECT_TRUE(back->isEqual(*decoded.message));
    EXPECT_EQ(test::messageText(*back, 0), test::messageText(*decoded.message, 0));
    EXPECT_EQ(test::hex(back->dataRepresentation()),
              test::hex(decoded.message->dataRepresentation()));
  }
}

// What a path through all attributes gives where the look-ups give nothing.
KeyValue nullForAbsent(const RawValue::Array& values) {
  KeyValue::Array list;
  for (const RawValue& value : values) {
    list.push_back(value.isAbsent() ? KeyValue(Null()) : KeyValue(value));
  }
  return list;
}

TEST_P(Corpus, IsReachedByKeyPathsAsByLookUps) {
  const auto message = decode(GetParam()).message;
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->valueForKeyPath("@all.*"), KeyValue(message->attributesForKey("*")));
  EXPECT_EQ(message->valueForKeyPath("@all.*.ippValue.value"),
            nullForAbsent(message->attributeValuesForKey("*")));
  for (const auto& attribute : message->attributesForKey("*")) {
    const std::string name(attribute->name().value_or(""));
    EXPECT_EQ(message->valueForKeyPath(name + ".ippValue.value"),
              KeyValue(message->attributeValueForKey(name)))
        << name;
  }
}

TEST(CorpusDirectory, HasAPrinterWhoseMediaAreReachedByPath) {
  const std::vector<fs::path> paths = captures();
  const auto printer = std::find_if(paths.begin(), paths.end(), [](const fs::path& path) {
    return path.stem() == "ippeveprinter-get-printer-attributes";
  });
  if (printer == paths.end()) GTEST_SKIP() << kNoCorpus;
  const auto message = decode(*printer).message;
  ASSERT_NE(message, nullptr);
  const std::string media = "media-col-default.ippValue.value.";
  EXPECT_EQ(message->valueForKeyPath("printer-name.ippValue.value"), KeyValue("Lab Printer"));
  EXPECT_EQ(message->valueForKeyPath(media + "media-type"), KeyValue("stationery"));
  EXPECT_EQ(message->valueForKeyPath(media + "media-size.x-dimension"), KeyValue(21590));
  EXPECT_EQ(message->valueForKeyPath("@default.media.ippValue.value"),
            KeyValue(KeyValue::Array{"na_letter_8.5x11in"}));
  EXPECT_EQ(message->valueForKeyPath("@supported.media.ippValue.size"),
            KeyValue(KeyValue::Array{11}));
}

std::string testName(const testing::TestParamInfo<fs::path>& capture) {
  std::string name = capture.param.stem().string();
  std::replace_if(
      name.begin(), name.end(),
      [](char character) { return std::isalnum(static_cast<unsigned char>(character)) == 0; }, '_');
  return name;
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Corpus);
INSTANTIATE_TEST_SUITE_P(Captured, Corpus, testing::ValuesIn(captures()), testName);

TEST(CorpusDirectory, HoldsMessagesWithTheirTexts) {
  const std::vector<fs::path> paths = captures();
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  for (const fs::path& path : paths) {
    EXPECT_TRUE(fs::exists(fs::path(path).replace_extension(".txt"))) << path;
  }
}

}  // namespace
}  // namespace platen
