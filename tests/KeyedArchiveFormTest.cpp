// SPDX-License-Identifier: Apache-2.0

// The forms of an archive as octets: what JSON and CBOR themselves can have wrong, and limits.

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveForm.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPMessage.h"
#include "tests/support/Archives.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::ContainsRegex;
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
  for (const char* value : {"'a'", "NaN", "-", "tru", "/**/1", "\"\t\"", "[1,]", "{\"a\"}"}) {
    EXPECT_THAT(refusal(archiveOf("\"$class\":\"IPPKeyword\",\"value\":" + std::string(value))),
                StartsWith(code(IPPArchiveError::malformed) + "value"))
        << value;
  }
}

// What stands right before a fault is in order, and is not where it is.
TEST(KeyedArchiveForm, NamesNoFieldThatIsRead) {
  const std::string malformed = code(IPPArchiveError::malformed);
  for (const char* fields :
       {R"("a":01)", R"("a":1 "b":2)", R"("a":[] 7)", R"("a":1,)", R"("a":1,7:1)"}) {
    EXPECT_THAT(refusal(archiveOf(fields)), StartsWith(malformed + "not well-formed")) << fields;
  }
  EXPECT_THAT(refusal(archiveOf(R"("a":{"b":[1],x)")),
              StartsWith(malformed + "a: not well-formed"));
  EXPECT_THAT(refusal(archiveOf(R"("a":[{"b":1},2 x)")), StartsWith(malformed + "a[2]: "));
  EXPECT_THAT(refusal(octets("a2 6f '$platen-archive' 01 01 02")),
              StartsWith(malformed + "not well-formed"));
  EXPECT_EQ(refusal(octets("a2 6f '$platen-archive' 01 62 c080 01")),
            code(IPPArchiveError::invalidText) + "text that is not UTF-8");
}

TEST(KeyedArchiveForm, RefusesJSONThatIsNotUtf8AsCBOR) {
  const std::string noText = code(IPPArchiveError::invalidText);
  const std::string malformed = code(IPPArchiveError::malformed);
  for (const char* text : {"\xff", "\xc0\x80", "\xed\xa0\x80", "a\xe2\x82", "\xf4\x90\x80\x80"}) {
    const std::string quoted = "\"" + std::string(text) + "\"";
    EXPECT_EQ(refusal(archiveOf("\"a\":[0," + quoted + "]")),
              noText + "a[1]: text that is not UTF-8");
    EXPECT_EQ(refusal(archiveOf("\"a\":0," + quoted + ":1")), noText + "text that is not UTF-8");
    EXPECT_EQ(refusal("\xef\xbb\xbf" + archiveOf("\"a\":" + quoted)),
              noText + "a: text that is not UTF-8");
  }
  // Escapes and what stands outside of strings are not text, nor is what follows a fault.
  for (const char* value : {R"("\ud800")", "\xc3\xa9", "x\"\xff\""}) {
    EXPECT_THAT(refusal(archiveOf("\"a\":" + std::string(value))),
                StartsWith(malformed + "a: not well-formed at octet "))
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
    EXPECT_THAT(refusal(Data(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size))),
                ContainsRegex("^" + code(IPPArchiveError::malformed) + "([$a-z-]+: )?cut short "));
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
                StartsWith(malformed + "value: an indefinite length, or no CBOR at octet "))
        << value;
  }
  EXPECT_THAT(refusalOfValue("c0 61 'a'"), StartsWith(malformed + "value: a tag at octet "));
  EXPECT_THAT(refusalOfValue("f7"), StartsWith(malformed + "value: not well-formed at octet "));
  EXPECT_THAT(refusalOfValue("f8 20"), StartsWith(malformed + "value: not well-formed at octet "));
  EXPECT_THAT(refusalOfValue("a1 01 02"), StartsWith(malformed + "value"));
  EXPECT_THAT(refusalOfValue("a1 41 'a' 02"), StartsWith(malformed + "value"));
}

TEST(KeyedArchiveForm, RefusesNumbersThatDoNotFit) {
  const std::string outOfRange = code(IPPArchiveError::outOfRange);
  EXPECT_THAT(refusalOfValue("1b 8000000000000000"),
              StartsWith(outOfRange + "value: a number beyond 64 bits at octet "));
  EXPECT_THAT(refusalOfValue("3b 8000000000000000"),
              StartsWith(outOfRange + "value: a number beyond 64 bits at octet "));
  EXPECT_THAT(refusalOfValue("3b 7fffffffffffffff"), HasSubstr("cannot be made of a whole number"));
  for (const char* value : {"f9 7e00", "fa 7f800000", "fb fff0000000000000"}) {
    EXPECT_EQ(refusalOfValue(value), outOfRange + "value: a number that is not finite") << value;
  }
}

TEST(KeyedArchiveForm, RefusesRealNumbersOfWhichNothingIsLeft) {
  const auto number = [](const std::string& text) {
    return refusal(archiveOf(R"("$class":"IPPInteger","value":)" + text));
  };
  const std::string outOfRange = code(IPPArchiveError::outOfRange);
  for (const char* text : {"1e-999", "-0.001e-400", "5.0E-330"}) {
    EXPECT_EQ(number(text), outOfRange + "value: a number too close to 0 for 64 bits") << text;
  }
  for (const char* text : {"0e-999", "0.0", "-0.0E5", "5e-324", "1e-310"}) {
    EXPECT_EQ(number(text), "") << text;
  }
  const std::string zero = "a3 6f '$platen-archive' 01 66 '$class' 6a 'IPPInteger' 65 'value'";
  EXPECT_EQ(refusal(octets(zero + "fb 0000000000000000")), "");
}

TEST(KeyedArchiveForm, NamesThePlaceOfWhatTheShapeOfCBORHasWrong) {
  const std::string malformed = code(IPPArchiveError::malformed);
  EXPECT_THAT(refusalOfValue("82 01 c0 02"), StartsWith(malformed + "value[1]: a tag at octet "));
  EXPECT_THAT(refusalOfValue("82 01 a1 61 'b' 7b ffffffffffffffff"),
              StartsWith(malformed + "value[1].b: cut short at octet "));
  EXPECT_THAT(refusalOfValue("a1 7f 61 'a' ff 01"),
              StartsWith(malformed + "value: an indefinite length, or no CBOR at octet "));
  EXPECT_THAT(refusal(octets("bf ff")),
              StartsWith(malformed + "an indefinite length, or no CBOR at octet "));
  // The first fault counts, whoever finds it.
  EXPECT_EQ(refusalOfValue("82 61 ff c0 02"),
            code(IPPArchiveError::invalidText) + "value[0]: text that is not UTF-8");
}

TEST(KeyedArchiveForm, RefusesCBORTextThatIsNotUtf8) {
  EXPECT_EQ(refusalOfValue("61 ff"),
            code(IPPArchiveError::invalidText) + "value: text that is not UTF-8");
}

// Lengths that no input has must cost neither memory nor time.
TEST(KeyedArchiveForm, RefusesLengthsBeyondTheEnd) {
  const std::string malformed = code(IPPArchiveError::malformed);
  for (const char* value :
       {"7b ffffffffffffffff", "5b ffffffffffffffff", "9b ffffffffffffffff", "bb ffffffffffffffff",
        "bb 8000000000000000", "9a ffffffff", "bb 0000000000000001 60"}) {
    EXPECT_THAT(refusalOfValue(value), StartsWith(malformed + "value: cut short at octet "))
        << value;
  }
  EXPECT_THAT(refusalOfValue("82 00"), StartsWith(malformed + "value: cut short at octet "));
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
            code(IPPArchiveError::tooLarge) + "more than 67108864 octets");
}

TEST(KeyedArchiveForm, BoundsTheNumberOfItems) {
  const auto outcome = [](const std::string& item, int count) {
    std::string text = "\"a\":[" + item;
    for (int i = 1; i < count; ++i) {
      text.append(",").append(item);
    }
    return refusal(archiveOf(text + "]"), {std::nullopt, 12000});
  };
  const std::string none = code(IPPArchiveError::missingKey) + "the key \"$class\" is missing";
  const std::string tooMany = code(IPPArchiveError::tooLarge);
  // The archive, its version and the list are 10 octets of it.
  EXPECT_EQ(outcome("0", 3996), none);
  EXPECT_EQ(outcome("0", 3997), tooMany + "a[3996]: too many items");
  EXPECT_EQ(outcome("{}", 2997), none);
  EXPECT_EQ(outcome("{}", 2998), tooMany + "a[2997]: too many items");
}

// A group of so many attributes, or of one so many times, as an archiver writes it.
TEST(KeyedArchiveForm, TakesEverythingThatIsWithinTheSize) {
  const auto group = IPPAttributeGroup::jobGroup();
  for (int i = 0; i < 1000; ++i) {
    group->addAttribute(std::make_shared<IPPAttribute>(nullptr, Text()));
  }
  const auto shared = std::make_shared<IPPAttribute>(nullptr, Text());
  for (int i = 0; i < 10'000; ++i) {
    group->addAttribute(shared);
  }
  for (const IPPArchiveFormat format : kArchiveFormats) {
    const Data data = archived(*group, format);
    EXPECT_EQ(refusal(data, {std::nullopt, data.size()}), "");
  }
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
