// SPDX-License-Identifier: Apache-2.0

// Archives that were written once and are kept in tests/golden: they must still be read, and the
// same must still be written, octet for octet. A change of the schema shows here, and then needs a
// new version. With PLATEN_WRITE_GOLDEN in the environment they are written anew.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>

#include "platen/IPPNullValue.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "tests/support/Archives.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using Objects = Dictionary<IPPCoder::Object>;

std::shared_ptr<IPPAttributeGroup> groupOfAllValues() {
  const auto group = IPPAttributeGroup::printerGroup();
  group->addNamedValues({
      {"unsupported", std::make_shared<const IPPUnsupported>()},
      {"unknown", std::make_shared<const IPPValue>()},
      {"no-value", std::make_shared<const IPPNoValue>()},
      {"not-settable", std::make_shared<const IPPNotSettable>()},
      {"admin-define", std::make_shared<const IPPAdminDefine>()},
      {"integer", IPPValue::integerWithInt(-1)},
      {"real", IPPValue::integer(Number(0.5))},
      {"boolean", IPPValue::booleanWithBool(false)},
      {"enum", IPPValue::enumerationWithInt(3)},
      {"octets", IPPValue::octetString("\xff\xfe")},
      {"date", IPPValue::dateTime(Date(std::chrono::milliseconds(981182106500)))},
      {"resolution", IPPValue::resolution({600, 1200}, true)},
      {"per-centimetre", IPPValue::resolution({236, 236}, false)},
      {"range", IPPValue::rangeOfInteger({1, 99})},
      {"text-with-language", IPPValue::text("Gr\u00fc\u00dfe", "de")},
      {"name-with-language", IPPValue::name("a", "ja-jp.shift_jis")},
      {"text", IPPValue::textWithoutLanguage("line\n\u0001\"\\\U0001F5A8")},
      {"name", IPPValue::nameWithoutLanguage("")},
      {"keyword", IPPValue::keyword("a4")},
      {"uri", IPPValue::uri(URL::parse("ipps://host:443/ipp/print?a=b").value())},
      {"scheme", IPPValue::uriScheme("ipp")},
      {"charset", IPPValue::charset("utf-8")},
      {"language", IPPValue::naturalLanguage("en")},
      {"media-type", IPPValue::mimeMediaType("application/pdf")},
      {"set", IPPValue::array({IPPValue::keyword("a"), IPPValue::nameWithoutLanguage("b")})},
      {"map", IPPValue::dictionaryWithDictionary(
                  {{"media-size", IPPValue::dictionaryWithDictionary(
                                      {{"x-dimension", IPPValue::integerWithInt(21000)}})}})},
  });
  group->addAttribute(IPPAttribute::attributeWithValue(nullptr, std::nullopt));
  return group;
}

Objects everyValue() { return {{"root", groupOfAllValues()}}; }

std::shared_ptr<IPPRequest> request() {
  return IPPRequest::initWithDataRepresentation(
      octets("0101 000b 00000001 01 47 <'attributes-charset'> <'utf-8'>"
             "48 <'attributes-natural-language'> <'en'>"
             "45 <'printer-uri'> <'ipp://host/ipp/print'> 03"));
}

Objects aRequest() { return {{"root", request()}}; }

// The answer has the request's own charset and language.
Objects anExchange() {
  const auto sent = request();
  return {{"request", sent}, {"response", IPPResponse::responseForRequest(*sent)}};
}

// One group of each class, and what few values hold.
Objects everyClass() {
  IPPMessage::Groups groups;
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    groups.push_back(groupClass->make());
    groups.back()->addNamedValues({{std::string(name), IPPValue::integerWithInt(1)}});
  }
  const double infinity = std::numeric_limits<double>::infinity();
  groups.back()->addNamedValues(
      {{"real", IPPValue::integer(Number(-infinity))},
       {"map", IPPValue::dictionaryWithDictionary({{"\xff\xfe", IPPValue::keyword("a")}})}});
  return {{"root", std::make_shared<IPPMessage>(-1, 0, groups)}};
}

struct Golden {
  const char* stem;
  Objects (*make)();
};

std::ostream& operator<<(std::ostream& stream, const Golden& golden) {
  return stream << golden.stem;
}

Data archiveOfAll(const Objects& objects, IPPArchiveFormat format) {
  IPPKeyedArchiver archiver;
  for (const auto& [key, object] : objects) {
    key == "root" ? archiver.encodeRootObject(*object) : archiver.encodeObjectForKey(object, key);
  }
  return archiver.archivedData(format);
}

IPPCoder::Object objectIn(IPPKeyedUnarchiver& archive, const std::string& key) {
  return key == "root" ? archive.decodeRootObject() : archive.decodeObjectForKey(key);
}

std::string pathOf(const std::string& stem, IPPArchiveFormat format) {
  const std::string extension = format == IPPArchiveFormat::cbor ? ".cbor" : ".json";
  return PLATEN_SOURCE_DIR "/tests/golden/" + stem + extension;
}

Data readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << "cannot read " << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string& path, const Data& data) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
}

constexpr IPPArchiveFormat kKept[] = {IPPArchiveFormat::indentedJSON, IPPArchiveFormat::cbor};

bool isWrittenAnew() { return std::getenv("PLATEN_WRITE_GOLDEN") != nullptr; }

void expectKept(const std::string& path, const Data& written) {
  if (isWrittenAnew()) {
    writeFile(path, written);
  }
  EXPECT_TRUE(written == readFile(path)) << path << " is to be\n"
                                         << std::string(written.begin(), written.end());
}

class KeyedArchiveGolden : public testing::TestWithParam<Golden> {};

TEST_P(KeyedArchiveGolden, IsStillWrittenOctetForOctet) {
  for (const IPPArchiveFormat format : kKept) {
    expectKept(pathOf(GetParam().stem, format), archiveOfAll(GetParam().make(), format));
  }
  if (isWrittenAnew()) {
    GTEST_SKIP() << "written anew";
  }
}

TEST_P(KeyedArchiveGolden, IsStillRead) {
  const Objects expected = GetParam().make();
  for (const IPPArchiveFormat format : kKept) {
    const Data kept = readFile(pathOf(GetParam().stem, format));
    const auto archive = IPPKeyedUnarchiver::initForReadingWithData(kept);
    ASSERT_NE(archive, nullptr);
    Objects objects;
    for (const auto& [key, object] : expected) {
      const auto back = objectIn(*archive, key);
      EXPECT_EQ(archivedText(*back), archivedText(*object));
      objects.set(key, back);
    }
    EXPECT_EQ(archiveOfAll(objects, format), kept);
  }
}

INSTANTIATE_TEST_SUITE_P(Kept, KeyedArchiveGolden,
                         testing::Values(Golden{"every-value", everyValue},
                                         Golden{"every-class", everyClass},
                                         Golden{"request", aRequest},
                                         Golden{"exchange", anExchange}));

// --- Several objects and other fields ------------------------------------------------------------

RawValue rawOfEveryKind() {
  using Limits = std::numeric_limits<double>;
  return RawValue::Array{RawValue(),
                         Null(),
                         "a\xff",
                         URL::parse("ipp://host/%20").value(),
                         true,
                         INT64_MIN,
                         -0.5,
                         Limits::quiet_NaN(),
                         Limits::infinity(),
                         Range{1, ~std::uint64_t{0}},
                         Size{0.25, 600},
                         Date(std::chrono::milliseconds(-1)),
                         RawValue::Array{},
                         RawValue::Dictionary{{"b", RawValue::Array{1}}, {"a\xfe", Null()}}};
}

/// An archive of several things; with `from` of those that are in it.
Data archiveOfFields(IPPArchiveFormat format, IPPKeyedUnarchiver* from = nullptr) {
  const IPPCoder::Object shared = IPPValue::keyword("shared");
  IPPKeyedArchiver to;
  to.encodeRawValueForKey(from ? from->decodeRawValueForKey("raw") : rawOfEveryKind(), "raw");
  to.encodeIntForKey(from ? from->decodeIntForKey("int") : -1, "int");
  to.encodeBoolForKey(from ? from->decodeBoolForKey("bool") : true, "bool");
  to.encodeStringForKey(from ? from->decodeStringForKey("absent") : std::nullopt, "absent");
  to.encodeStringForKey(from ? from->decodeStringForKey("string") : "\xff", "string");
  to.encodeObjectForKey(from ? from->decodeObjectForKey("object") : shared, "object");
  to.encodeObjectsForKey(
      from ? from->decodeObjectsForKey("objects") : std::vector<IPPCoder::Object>{nullptr, shared},
      "objects");
  to.encodeNamedObjectsForKey(
      from ? from->decodeNamedObjectsForKey("named") : Objects{{"b\xfe", shared}, {"a", nullptr}},
      "named");
  return to.archivedData(format);
}

TEST(KeyedArchiveGoldenFields, AreStillWrittenOctetForOctet) {
  for (const IPPArchiveFormat format : kKept) {
    expectKept(pathOf("several", format), archiveOfFields(format));
  }
  if (isWrittenAnew()) {
    GTEST_SKIP() << "written anew";
  }
}

TEST(KeyedArchiveGoldenFields, AreStillRead) {
  for (const IPPArchiveFormat format : kKept) {
    const Data kept = readFile(pathOf("several", format));
    const auto archive = IPPKeyedUnarchiver::initForReadingWithData(kept);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(archive->decodeRawValueForKey("raw").description(), rawOfEveryKind().description());
    EXPECT_EQ(archiveOfFields(format, archive.get()), kept);
  }
}

TEST(KeyedArchiveDocument, ShowsAnArchiveThatIsKept) {
  const Data document = readFile(PLATEN_SOURCE_DIR "/docs/archive.md");
  const Data kept = readFile(PLATEN_SOURCE_DIR "/tests/golden/request.json");
  ASSERT_FALSE(kept.empty());
  EXPECT_NE(std::search(document.begin(), document.end(), kept.begin(), kept.end()),
            document.end());
}

}  // namespace
}  // namespace platen::test
