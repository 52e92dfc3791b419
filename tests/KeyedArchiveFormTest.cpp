// SPDX-License-Identifier: Apache-2.0

// The forms of an archive as octets: what JSON and CBOR themselves can have wrong, and limits.

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveForm.h"
#include "platen/IPPMessage.h"
#include "tests/support/Archives.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string code(IPPArchiveError error) {
  return std::to_string(static_cast<std::int64_t>(error)) + " ";
}

const std::string kKeyword = archiveOf(R"("$class":"IPPKeyword","value":"a")");

// The same in CBOR: a map of three, with the rest of the map spelled out.
std::string keywordHead(int fields) {
  return "a" + std::to_string(fields) + "6f '$platen-archive' 01 66 '$class' 6a 'IPPKeyword'";
}

// --- base64 --------------------------------------------------------------------------------------

TEST(KeyedArchiveForm, SpellsOctetsInBase64) {
  // RFC 4648 §10, and the digits that letters are not.
  const std::pair<const char*, const char*> vectors[] = {{"", ""},
                                                         {"f", "Zg=="},
                                                         {"fo", "Zm8="},
                                                         {"foo", "Zm9v"},
                                                         {"foob", "Zm9vYg=="},
                                                         {"fooba", "Zm9vYmE="},
                                                         {"foobar", "Zm9vYmFy"},
                                                         {"\xfb\xef\xff", "++//"}};
  for (const auto& [octets, text] : vectors) {
    EXPECT_EQ(base64Of(octets), text);
    EXPECT_EQ(octetsOfBase64(text), octets);
  }
  for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "Zh==", "Zm9", "Zm9=", "=",
                           "====", "Zg==Zg==", "Zm9v\n", "Zm 9v", "_-__", "Zm9v="}) {
    EXPECT_THROW(octetsOfBase64(text), ArchiveFault) << text;
  }
}

// --- JSON ----------------------------------------------------------------------------------------

TEST(KeyedArchiveForm, TakesJSONHoweverItIsSetOut) {
  for (const std::string& text :
       {kKeyword, " \t\r\n" + kKeyword + "\n\n", "\xef\xbb\xbf" + kKeyword,
        std::string("{ \"value\" : \"\\u0061\", \"\\u0024class\":\"IPPKeyword\",\n"
                    "\"$platen-archive\":1 }")}) {
    EXPECT_EQ(refusal(text), "") << text;
  }
}

TEST(KeyedArchiveForm, RefusesJSONThatIsCutShortAnywhere) {
  for (std::size_t size = 1; size < kKeyword.size(); ++size) {
    EXPECT_THAT(refusal(kKeyword.substr(0, size)), StartsWith(code(IPPArchiveError::malformed)));
  }
}

TEST(KeyedArchiveForm, RefusesWhatFollowsTheArchive) {
  EXPECT_EQ(refusal(kKeyword + "x"), code(IPPArchiveError::malformed) +
                                         "not well-formed at octet " +
                                         std::to_string(kKeyword.size() + 1));
  for (const char* rest : {"{}", ",", "}", "\x01"}) {
    EXPECT_THAT(refusal(kKeyword + rest), StartsWith(code(IPPArchiveError::malformed)));
  }
  EXPECT_THAT(refusal(kKeyword + std::string(1, '\0')),
              StartsWith(code(IPPArchiveError::malformed)));
}

TEST(KeyedArchiveForm, RefusesJSONThatIsNone) {
  for (const char* value : {"'a'", "01", "NaN", "-", "tru", "/**/1", "\"\t\"", "[1,]", "{\"a\"}"}) {
    EXPECT_THAT(refusal(archiveOf("\"$class\":\"IPPKeyword\",\"value\":" + std::string(value))),
                StartsWith(code(IPPArchiveError::malformed) + "value"))
        << value;
  }
}

// --- CBOR ----------------------------------------------------------------------------------------

TEST(KeyedArchiveForm, TakesCBOR) {
  EXPECT_EQ(refusal(octets(keywordHead(3) + "65 'value' 61 'a'")), "");
  // Longer heads than need be, an absent value, octets that are text.
  EXPECT_EQ(refusal(octets(keywordHead(3) + "7a 00000005 'value' 7b 0000000000000001 'a'")), "");
  EXPECT_EQ(refusal(octets(keywordHead(3) + "65 'value' f6")), "");
  EXPECT_EQ(refusal(octets(keywordHead(3) + "65 'value' 41 'a'")), "");
  EXPECT_EQ(
      unarchived<const IPPValue>(octets(keywordHead(3) + "65 'value' 42 00ff"))->stringValue(),
      std::string("\0\xff", 2));
}

TEST(KeyedArchiveForm, RefusesCBORThatIsCutShortAnywhereOrFollowedBySomething) {
  Data data = octets(keywordHead(3) + "65 'value' 61 'a'");
  for (std::size_t size = 1; size < data.size(); ++size) {
    EXPECT_EQ(
        refusal(Data(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size))).substr(0, 12),
        code(IPPArchiveError::malformed) + "cut short ");
  }
  const std::string end = std::to_string(data.size());
  data.push_back(0xA0);
  EXPECT_EQ(refusal(data),
            code(IPPArchiveError::malformed) + "something follows the archive at octet " + end);
}

/// An archive whose "value" these octets spell.
std::string refusalOfValue(const std::string& value) {
  return refusal(octets(keywordHead(3) + "65 'value'" + value));
}

TEST(KeyedArchiveForm, RefusesWhatCBORCanSayAndAnArchiveDoesNot) {
  const std::string malformed = code(IPPArchiveError::malformed);
  // Indefinite lengths: a text, octets, a list, a map; reserved heads; a break.
  for (const char* value : {"7f 61 'a' ff", "5f ff", "9f ff", "bf ff", "1c", "3d", "fe", "ff"}) {
    EXPECT_THAT(refusalOfValue(value),
                StartsWith(malformed + "an indefinite length, or no CBOR at octet "))
        << value;
  }
  EXPECT_THAT(refusalOfValue("c0 61 'a'"), StartsWith(malformed + "a tag at octet "));
  EXPECT_THAT(refusalOfValue("f7"), StartsWith(malformed + "value: not well-formed at octet "));
  EXPECT_THAT(refusalOfValue("f8 20"), StartsWith(malformed + "value: not well-formed at octet "));
  EXPECT_THAT(refusalOfValue("a1 01 02"), StartsWith(malformed + "value"));
  EXPECT_THAT(refusalOfValue("a1 41 'a' 02"), StartsWith(malformed + "value"));
}

TEST(KeyedArchiveForm, RefusesNumbersThatDoNotFit) {
  const std::string outOfRange = code(IPPArchiveError::outOfRange);
  EXPECT_THAT(refusalOfValue("1b 8000000000000000"),
              StartsWith(outOfRange + "a number beyond 64 bits at octet "));
  EXPECT_THAT(refusalOfValue("3b 8000000000000000"),
              StartsWith(outOfRange + "a number beyond 64 bits at octet "));
  EXPECT_THAT(refusalOfValue("3b 7fffffffffffffff"), HasSubstr("cannot be made of a whole number"));
  for (const char* value : {"f9 7e00", "fa 7f800000", "fb fff0000000000000"}) {
    EXPECT_EQ(refusalOfValue(value), outOfRange + "value: a number beyond 64 bits") << value;
  }
}

TEST(KeyedArchiveForm, RefusesCBORTextThatIsNotUtf8) {
  EXPECT_EQ(refusalOfValue("61 ff"),
            code(IPPArchiveError::invalidText) + "value: text that is not UTF-8");
  EXPECT_EQ(refusal(octets("a2 6f '$platen-archive' 01 62 c080 01")),
            code(IPPArchiveError::invalidText) + "$platen-archive: text that is not UTF-8");
}

// Lengths that no input has must cost neither memory nor time.
TEST(KeyedArchiveForm, RefusesLengthsBeyondTheEnd) {
  const std::string malformed = code(IPPArchiveError::malformed) + "cut short at octet ";
  for (const char* value :
       {"7b ffffffffffffffff", "5b ffffffffffffffff", "9b ffffffffffffffff", "bb ffffffffffffffff",
        "bb 8000000000000000", "9a ffffffff", "bb 0000000000000001 60", "82 00"}) {
    EXPECT_THAT(refusalOfValue(value), StartsWith(malformed)) << value;
  }
}

// --- Limits --------------------------------------------------------------------------------------

TEST(KeyedArchiveForm, BoundsTheDepthWhileParsing) {
  const auto json = [](std::size_t lists) {
    return archiveOf("\"a\":" + std::string(lists, '[') + std::string(lists, ']'));
  };
  const auto cbor = [](std::size_t lists) {
    Data data = octets("a2 6f '$platen-archive' 01 61 'a'");
    data.insert(data.end(), lists - 1, 0x81);
    data.push_back(0x80);
    return data;
  };
  // One level is the archive itself.
  const std::size_t most = kIPPArchiveDeepestNesting - 1;
  const std::string fine = code(IPPArchiveError::missingKey) + "the key \"$class\" is missing";
  EXPECT_EQ(refusal(json(most)), fine);
  EXPECT_EQ(refusal(cbor(most)), fine);
  const std::string tooDeep = code(IPPArchiveError::tooDeep) + "a[0]";
  for (const std::size_t lists : {most + 1, std::size_t{1'000'000}}) {
    EXPECT_THAT(refusal(json(lists)), ::testing::AllOf(StartsWith(tooDeep), EndsWith("too deep")));
    EXPECT_THAT(refusal(cbor(lists)), ::testing::AllOf(StartsWith(tooDeep), EndsWith("too deep")));
  }
  // Nor is what follows looked at, so that no list of open lists grows with the archive.
  Data cut = cbor(2000);
  cut.pop_back();
  EXPECT_THAT(refusal(cut), StartsWith(tooDeep));
  for (const std::uint8_t head : Data{0x7F, 0x5F, 0x9F, 0xBF, 0xC0}) {
    Data data = octets("a2 6f '$platen-archive' 01 61 'a'");
    data.insert(data.end(), 1'000'000, head);
    EXPECT_THAT(refusal(data), StartsWith(code(IPPArchiveError::malformed)));
  }
}

TEST(KeyedArchiveForm, BoundsTheSize) {
  const IPPArchiveReading exact{std::nullopt, kKeyword.size()};
  const IPPArchiveReading less{std::nullopt, kKeyword.size() - 1};
  EXPECT_EQ(refusal(kKeyword, exact), "");
  EXPECT_EQ(refusal(kKeyword, less), code(IPPArchiveError::tooLarge) + "more than " +
                                         std::to_string(kKeyword.size() - 1) + " octets");
  const std::string blanks(kIPPArchiveLargestSize, ' ');
  EXPECT_EQ(refusal(kKeyword + blanks),
            code(IPPArchiveError::tooLarge) + "more than 16777216 octets");
}

TEST(KeyedArchiveForm, BoundsTheNumberOfItems) {
  std::string text = "\"a\":[0";
  for (int i = 0; i < 9000; ++i) {
    text += ",0";
  }
  const IPPArchiveReading reading{std::nullopt, 32768};
  EXPECT_THAT(refusal(archiveOf(text + "]"), reading),
              ::testing::AllOf(StartsWith(code(IPPArchiveError::tooLarge) + "a[409"),
                               EndsWith("]: too many items")));
}

TEST(KeyedArchiveForm, IsTheOneAskedFor) {
  const Data json(kKeyword.begin(), kKeyword.end());
  const Data cbor = archived(*IPPValue::keyword("a"), IPPArchiveFormat::cbor);
  const std::string other =
      code(IPPArchiveError::notAnArchive) + "not an archive in the form expected";
  EXPECT_EQ(refusal(json, {IPPArchiveFormat::json}), "");
  EXPECT_EQ(refusal(json, {IPPArchiveFormat::indentedJSON}), "");
  EXPECT_EQ(refusal(json, {IPPArchiveFormat::cbor}), other);
  EXPECT_EQ(refusal(cbor, {IPPArchiveFormat::cbor}), "");
  EXPECT_EQ(refusal(cbor, {IPPArchiveFormat::json}), other);
}

TEST(KeyedArchiveForm, IndentsForPeople) {
  const Data data = archived(*IPPValue::keyword("a"), IPPArchiveFormat::indentedJSON);
  EXPECT_EQ(std::string(data.begin(), data.end()),
            "{\n  \"$platen-archive\": 1,\n  \"$class\": \"IPPKeyword\",\n  \"value\": \"a\"\n}\n");
}

}  // namespace
}  // namespace platen::test
