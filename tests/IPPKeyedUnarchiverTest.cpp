// SPDX-License-Identifier: Apache-2.0

// What archives are refused for, each with its key path.

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPKeyedUnarchiver.h"
#include "platen/IPPMessage.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPStringValue.h"
#include "platform/Utf8.h"
#include "tests/support/Archives.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::StartsWith;

std::string code(IPPArchiveError error) {
  return std::to_string(static_cast<std::int64_t>(error)) + " ";
}

/// A message whose second group has four attributes, of which the last one is this.
std::string messageWith(std::string_view attribute) {
  const std::string other = R"({"$class":"IPPAttribute","name":"a","value":null},)";
  return archiveOf(R"("$class":"IPPMessage","tag":1,"request-id":2,"groups":[)"
                   R"({"$class":"IPPOperationGroup","attributes":[]},)"
                   R"({"$class":"IPPJobGroup","attributes":[)" +
                   other + other + other + std::string(attribute) + "]}]");
}

std::string messageWithValue(std::string_view value) {
  return messageWith(R"({"$class":"IPPAttribute","name":"b","value":)" + std::string(value) + "}");
}

/// Fields of an archive beside the refusal of them.
struct Row {
  const char* fields;
  IPPArchiveError code;
  const char* text;
};

void expectRefusals(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(refusal(archiveOf(row.fields)), code(row.code) + row.text) << row.fields;
  }
}

TEST(IPPKeyedUnarchiver, NamesThePlaceInsideOfAMessage) {
  EXPECT_EQ(refusal(messageWithValue(R"({"$class":"IPPKeyword","value":"x"})")), "");
  EXPECT_EQ(refusal(messageWithValue(R"({"$class":"IPPFoo"})")),
            code(IPPArchiveError::unknownClass) +
                "groups[1].attributes[3].value: unknown class \"IPPFoo\"");
  EXPECT_EQ(refusal(messageWithValue(R"({"$class":"IPPKeyword","value":7})")),
            code(IPPArchiveError::wrongType) +
                "groups[1].attributes[3].value.value: IPPKeyword cannot be made of a whole number");
  EXPECT_EQ(refusal(messageWith("7")),
            code(IPPArchiveError::wrongType) +
                "groups[1].attributes[3]: a whole number where an object is expected");
  EXPECT_EQ(refusal(messageWith("null")), code(IPPArchiveError::wrongType) +
                                              "groups[1].attributes[3]: IPPJobGroup cannot do "
                                              "without an object");
}

TEST(IPPKeyedUnarchiver, GivesTheKeyPathByItself) {
  const std::string text = messageWithValue(R"({"$class":"IPPFoo"})");
  std::shared_ptr<const Error> error;
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithData<IPPMessage>(Data(text.begin(), text.end()),
                                                                    &error),
            nullptr);
  EXPECT_EQ(error->domain(), "IPPArchiveErrorDomain");
  EXPECT_EQ(error->code(), static_cast<std::int64_t>(IPPArchiveError::unknownClass));
  EXPECT_EQ(std::get<std::string>(error->userInfo().find(IPPErrorArchiveKeyPath)->second),
            "groups[1].attributes[3].value");
  const std::string good = messageWithValue("null");
  EXPECT_NE(IPPKeyedUnarchiver::unarchiveObjectWithData<IPPMessage>(Data(good.begin(), good.end()),
                                                                    &error),
            nullptr);
  EXPECT_EQ(error, nullptr);
}

TEST(IPPKeyedUnarchiver, RefusesWhatIsNoArchive) {
  for (const char* text : {"", " ", "x", "[]", "\"{}\"", "\x7f", "<xml/>"}) {
    EXPECT_EQ(refusal(text),
              code(IPPArchiveError::notAnArchive) + "not an archive in the form expected")
        << text;
  }
  for (const char* text : {"{}", R"({"$platen-archive":"1"})", R"({"$platen-archive":1.0})",
                           R"({"$platen-archive":null})", R"({"version":1})"}) {
    EXPECT_EQ(refusal(text), code(IPPArchiveError::notAnArchive) +
                                 "not an archive: no version under \"$platen-archive\"")
        << text;
  }
}

TEST(IPPKeyedUnarchiver, RefusesEveryOtherVersion) {
  for (const char* version : {"0", "2", "-1", "9223372036854775807"}) {
    EXPECT_EQ(refusal("{\"$platen-archive\":" + std::string(version) + "}"),
              code(IPPArchiveError::unknownVersion) + "$platen-archive: unknown version " +
                  version + ", the one known is 1");
  }
}

TEST(IPPKeyedUnarchiver, RefusesKeysTwiceMissingOrUnknown) {
  using enum IPPArchiveError;
  expectRefusals({
      {R"("$platen-archive":1)", duplicateKey, "$platen-archive: is there twice"},
      {R"("$class":"IPPKeyword","value":"a","value":"b")", duplicateKey, "value: is there twice"},
      {R"("a":[{"b c":[0,{"\u00e9":1,"\u00e9":2}]}])", duplicateKey,
       "a[0][\"b c\"][1][\"\u00e9\"]: is there twice"},
      {R"("a":1)", missingKey, "the key \"$class\" is missing"},
      {R"("$class":"IPPKeyword")", missingKey, "the key \"value\" is missing"},
      {R"("$class":"IPPNoValue")", missingKey, "the key \"value\" is missing"},
      {R"("$class":"IPPAttribute","value":null)", missingKey, "the key \"name\" is missing"},
      {R"("$class":"IPPMessage","tag":1,"groups":[])", missingKey,
       "the key \"request-id\" is missing"},
      {R"("$class":"IPPMessage","tag":1,"request-id":1,"groups":[{"$class":"IPPJobGroup"}])",
       missingKey, "groups[0]: the key \"attributes\" is missing"},
      {R"("$class":"IPPArray","value":[{}])", missingKey,
       "value[0]: the key \"$class\" is missing"},
      {R"("$class":"IPPKeyword","value":"a","vaule":"b")", unknownKey,
       "vaule: IPPKeyword has no such key"},
      {R"("$class":"IPPValue")", missingKey, "the key \"value\" is missing"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPKeyword","value":"a","$platen-archive":1}])",
       unknownKey, "value[0].$platen-archive: IPPKeyword has no such key"},
      {R"("$class":"IPPMap","value":[{"name":"a","value":{"$class":"IPPValue","value":null}},)"
       R"({"name":"a","value":{"$class":"IPPValue","value":null}}])",
       duplicateKey, "value[1].name: a member of this name was before"},
  });
}

TEST(IPPKeyedUnarchiver, RefusesWhatIsOfAnotherType) {
  using enum IPPArchiveError;
  expectRefusals({
      {R"("$class":7)", wrongType, "$class: a whole number where a text is expected"},
      {R"("$class":null)", wrongType, "$class: nothing where a text is expected"},
      {R"("$class":"")", unknownClass, "unknown class \"\""},
      {R"("$class":"IPPStringValue","value":"a")", unknownClass,
       "unknown class \"IPPStringValue\""},
      {R"("$class":"IPPMessage","tag":"1","request-id":1,"groups":[])", wrongType,
       "tag: a text where a whole number is expected"},
      {R"("$class":"IPPMessage","tag":1.5,"request-id":1,"groups":[])", wrongType,
       "tag: a number where a whole number is expected"},
      {R"("$class":"IPPMessage","tag":null,"request-id":1,"groups":[])", wrongType,
       "tag: nothing where a whole number is expected"},
      {R"("$class":"IPPMessage","tag":1,"request-id":1,"groups":{})", wrongType,
       "groups: an object where a list is expected"},
      {R"("$class":"IPPMessage","tag":1,"request-id":1,"groups":null)", wrongType,
       "groups: nothing where a list is expected"},
      {R"("$class":"IPPMessage","tag":1,"request-id":1,)"
       R"("groups":[{"$class":"IPPKeyword","value":"a"}])",
       wrongType, "groups[0]: IPPMessage cannot hold an object of \"IPPKeyword\""},
      {R"("$class":"IPPJobGroup","attributes":[{"$class":"IPPAttribute","name":"a","value":null},)"
       R"(null])",
       wrongType, "attributes[1]: IPPJobGroup cannot do without an object"},
      {R"("$class":"IPPAttribute","name":"a","value":{"$class":"IPPJobGroup","attributes":[]})",
       wrongType, "value: IPPAttribute cannot hold an object of \"IPPJobGroup\""},
      {R"("$class":"IPPAttribute","name":["a"],"value":null)", wrongType,
       "name: a list where a text is expected"},
      {R"("$class":"IPPResolutionValue","res-horizontal":1,"res-vertical":1,"unitsAreInches":1)",
       wrongType, "unitsAreInches: a whole number where true or false is expected"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPJobGroup","attributes":[]}])", inconsistent,
       "IPPArray: Invalid parameter"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPKeyword","value":"a"},null])", wrongType,
       "value[1]: IPPArray cannot do without an object"},
      {R"("$class":"IPPArray","value":[])", inconsistent, "IPPArray: Invalid parameter"},
      {R"("$class":"IPPMap","value":[7])", wrongType,
       "value[0]: a whole number where a name with an object is expected"},
      {R"("$class":"IPPMap","value":[{"name":"a"}])", wrongType,
       "value[0]: not a name with an object"},
      {R"("$class":"IPPMap","value":[{"name":null,"value":null}])", wrongType,
       "value[0].name: a member without a name"},
      {R"("$class":"IPPMap","value":[{"name":"a","value":null}])", wrongType,
       "value[0].value: IPPMap cannot do without an object"},
      {R"("$class":"IPPMap","value":[{"name":"a","value":null},)"
       R"({"name":"b","value":{"$class":"IPPKeyword","value":"x"}}])",
       wrongType, "value[0].value: IPPMap cannot do without an object"},
      {R"("$class":"IPPMap","value":[{"name":"a","value":null,"more":1}])", wrongType,
       "value[0]: not a name with an object"},
  });
}

// A class that does not know what to make of a raw object says nothing about it, and makes a value
// that holds something else.
TEST(IPPKeyedUnarchiver, RefusesRawObjectsThatTheClassDoesNotTake) {
  struct Taking {
    const char* className;
    const char* taken;  // In the list below.
  };
  const std::vector<std::string> raws = {"null",
                                         R"({"$null":true})",
                                         R"("a")",
                                         R"({"$url":"a:b"})",
                                         "true",
                                         "5",
                                         "5.5",
                                         R"({"$range":[1,2]})",
                                         R"({"$size":[1,2]})",
                                         R"({"$date":5})",
                                         "[]",
                                         R"({"$dictionary":[]})"};
  const std::vector<Taking> classes = {
      {"IPPKeyword", R"(null "a")"},        {"IPPText", R"(null "a")"},
      {"IPPUri", R"(null {"$url":"a:b"})"}, {"IPPInteger", "true 5 5.5"},
      {"IPPBoolean", "true 5 5.5"},         {"IPPDateTime", R"({"$date":5})"},
      {"IPPNoValue", R"({"$null":true})"}};
  for (const auto& [className, taken] : classes) {
    for (const std::string& raw : raws) {
      const std::string text =
          archiveOf("\"$class\":\"" + std::string(className) + "\",\"value\":" + raw);
      const bool isTaken =
          (" " + std::string(taken) + " ").find(" " + raw + " ") != std::string::npos;
      EXPECT_THAT(refusal(text), isTaken ? ::testing::StrEq("")
                                         : ::testing::Matcher<std::string>(StartsWith(
                                               code(IPPArchiveError::wrongType) +
                                               "value: " + className + " cannot be made of ")))
          << text;
    }
  }
}

TEST(IPPKeyedUnarchiver, RefusesRawObjectsThatAreNone) {
  using enum IPPArchiveError;
  const auto keyword = [](const std::string& raw) {
    return refusal(archiveOf("\"$class\":\"IPPKeyword\",\"value\":" + raw));
  };
  const std::string wrong = code(wrongType);
  EXPECT_EQ(keyword("{}"), wrong + "value: not a raw object");
  EXPECT_EQ(keyword(R"({"$foo":1})"), wrong + "value: not a raw object");
  EXPECT_EQ(keyword(R"({"$date":1,"$url":"a:b"})"), wrong + "value: not a raw object");
  EXPECT_EQ(keyword(R"([[],{"$null":false}])"), wrong + "value[1].$null: not true");
  EXPECT_EQ(keyword(R"({"$null":1})"),
            wrong + "value.$null: a whole number where true is expected");
  EXPECT_EQ(keyword(R"({"$url":"a b"})"), wrong + "value.$url: \"a b\" is no URL");
  EXPECT_EQ(keyword(R"({"$url":""})"), wrong + "value.$url: \"\" is no URL");
  EXPECT_EQ(keyword(R"({"$real":"nan"})"), wrong + "value.$real: \"nan\" is no number");
  EXPECT_EQ(keyword(R"({"$range":[1]})"), wrong + "value.$range: not a list of two");
  EXPECT_EQ(keyword(R"({"$range":7})"),
            wrong + "value.$range: a whole number where a list of two is expected");
  EXPECT_EQ(keyword(R"({"$range":[1,0.5]})"),
            wrong + "value.$range[1]: a number where a whole number is expected");
  EXPECT_EQ(keyword(R"({"$size":[1,"2"]})"),
            wrong + "value.$size[1]: a text where a number is expected");
  EXPECT_EQ(keyword(R"({"$date":1.5})"),
            wrong + "value.$date: a number where a whole number is expected");
  EXPECT_EQ(keyword(R"({"$dictionary":{}})"),
            wrong + "value.$dictionary: an object where a list is expected");
  EXPECT_EQ(keyword(R"({"$dictionary":[{"name":"a"}]})"),
            wrong + "value.$dictionary[0]: not an entry with a name and a value");
  EXPECT_EQ(keyword(R"({"$dictionary":[{"name":"a","value":1,"more":1}]})"),
            wrong + "value.$dictionary[0]: not an entry with a name and a value");
  EXPECT_EQ(keyword(R"({"$dictionary":[{"name":"a","value":1},{"name":"a","value":1}]})"),
            code(duplicateKey) + "value.$dictionary[1].name: is there twice");
}

TEST(IPPKeyedUnarchiver, RefusesNumbersOutOfRange) {
  using enum IPPArchiveError;
  expectRefusals({
      {R"("$class":"IPPMessage","tag":2147483648,"request-id":1,"groups":[])", outOfRange,
       "tag: 2147483648 does not fit IPPMessage"},
      {R"("$class":"IPPRequest","tag":1,"request-id":-4294967295,"groups":[])", outOfRange,
       "request-id: -4294967295 does not fit IPPRequest"},
      {R"("$class":"IPPResolutionValue","res-horizontal":1,"res-vertical":4294967296,)"
       R"("unitsAreInches":true)",
       outOfRange, "res-vertical: 4294967296 does not fit IPPResolutionValue"},
      {R"("$class":"IPPInteger","value":9223372036854775808)", outOfRange,
       "value: a number beyond 64 bits"},
      {R"("$class":"IPPInteger","value":-9223372036854775809)", outOfRange,
       "value: a number beyond 64 bits"},
      {R"("$class":"IPPInteger","value":18446744073709551616)", outOfRange,
       "value: a number beyond 64 bits"},
      {R"("$class":"IPPInteger","value":[1,1e400])", outOfRange,
       "value[1]: a number beyond 64 bits"},
  });
}

TEST(IPPKeyedUnarchiver, RefusesTextThatIsNone) {
  using enum IPPArchiveError;
  expectRefusals({
      {R"("$class":"IPPKeyword","value":{"$octets":"AP8"})", invalidText,
       "value.$octets: not base64"},
      {R"("$class":"IPPKeyword","value":{"$octets":"A"})", invalidText,
       "value.$octets: not base64"},
      {R"("$class":"IPPKeyword","value":{"$octets":"AP9="})", invalidText,
       "value.$octets: not base64"},
      {R"("$class":"IPPKeyword","value":{"$octets":"AP8=AA=="})", invalidText,
       "value.$octets: not base64"},
      {R"("$class":"IPPKeyword","value":{"$octets":7})", wrongType, "value: not a raw object"},
  });
  const auto keyword = [](const std::string& text) {
    return refusal(archiveOf("\"$class\":\"IPPKeyword\",\"value\":" + text));
  };
  for (const char* text : {"\"\xff\"", "\"\xc0\x80\"", "\"\xed\xa0\x80\""}) {
    EXPECT_EQ(keyword(text), code(invalidText) + "value: text that is not UTF-8");
  }
  EXPECT_THAT(keyword(R"("\ud800")"),
              StartsWith(code(malformed) + "value: not well-formed at octet "));
}

TEST(IPPKeyedUnarchiver, TakesOctetsThatAreTextAsText) {
  const auto value =
      unarchived<const IPPValue>(archiveOf(R"("$class":"IPPKeyword","value":{"$octets":"YWJj"})"));
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->stringValue(), "abc");
  EXPECT_EQ(archivedText(*value), archiveOf(R"("$class":"IPPKeyword","value":"abc")"));
}

// --- References ----------------------------------------------------------------------------------

TEST(IPPKeyedUnarchiver, RefusesReferencesThatLeadNowhereOrInCircles) {
  using enum IPPArchiveError;
  expectRefusals({
      {R"("$class":"IPPArray","value":[{"$ref":1}])", unknownReference,
       "value[0].$ref: no object has the id 1"},
      {R"("$class":"IPPArray","value":[{"$ref":"1"}])", wrongType,
       "value[0].$ref: a text where a whole number is expected"},
      {R"("$class":"IPPArray","$id":1,"value":[{"$ref":1}])", cycle,
       "value[0]: a reference to an object from inside of it"},
      {R"("$class":"IPPJobGroup","$id":1,"attributes":[{"$class":"IPPAttribute","$id":2,)"
       R"("name":"a","value":{"$class":"IPPArray","value":[{"$ref":2}]}}])",
       cycle, "attributes[0].value.value[0]: a reference to an object from inside of it"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPArray","$id":1,"value":[{"$ref":2}]},)"
       R"({"$class":"IPPArray","$id":2,"value":[{"$ref":1}]}])",
       cycle, "value[1].value[0]: a reference to an object from inside of it"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPValue","$id":1},{"$class":"IPPValue","$id":1}])",
       duplicateKey, "value[1].$id: another object has the id 1"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPValue","$id":null}])", wrongType,
       "value[0].$id: not a whole number"},
      {R"("$class":"IPPArray","value":[{"$class":"IPPValue","$id":1,"value":null},)"
       R"({"$ref":1,"more":1}])",
       unknownKey, "value[1]: a reference has no other keys"},
      {R"("$class":"IPPArray","value":[{"$id":1},{"$ref":1}])", missingKey,
       "value[0]: the key \"$class\" is missing"},
      {R"("$ref":1,"$id":1)", unknownKey, "a reference has no other keys"},
  });
}

TEST(IPPKeyedUnarchiver, FollowsAReferenceToWhatComesLater) {
  const auto set = unarchived<const IPPValue>(archiveOf(
      R"("$class":"IPPArray","value":[{"$ref":-5},{"$class":"IPPKeyword","$id":-5,"value":"a"}])"));
  ASSERT_NE(set, nullptr);
  const auto values = set->arrayValue().value();
  EXPECT_EQ(values[0], values[1]);
}

// --- The root object's class ---------------------------------------------------------------------

TEST(IPPKeyedUnarchiver, GivesNoObjectOfAnotherClassThanAskedFor) {
  const std::string text = archiveOf(R"("$class":"IPPKeyword","value":"a")");
  std::shared_ptr<const Error> error;
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithData<IPPMessage>(Data(text.begin(), text.end()),
                                                                    &error),
            nullptr);
  EXPECT_EQ(error->localizedDescription(), "the root object is of another class: \"IPPKeyword\"");
  EXPECT_EQ(error->code(), static_cast<std::int64_t>(IPPArchiveError::wrongType));
}

// The bases answer the name of the first of them, which holds nothing.
TEST(IPPKeyedUnarchiver, RefusesAValueOfABase) {
  const std::string wrong = code(IPPArchiveError::wrongType) + "value: IPPValue cannot be made of ";
  EXPECT_EQ(refusal(archived(IPPStringValue("a"))), wrong + "a text");
  EXPECT_EQ(refusal(archived(IPPNullValue())), wrong + "an object");
}

TEST(IPPKeyedUnarchiver, ShowsNoControlCharactersAndNoEndlessNames) {
  EXPECT_EQ(refusal(archiveOf(R"("$class":"a\u001b\u0085\"b")")),
            code(IPPArchiveError::unknownClass) + "unknown class \"a??\"b\"");
  EXPECT_EQ(
      refusal(archiveOf("\"$class\":\"" + std::string(1000, 'x') + "\"")),
      code(IPPArchiveError::unknownClass) + "unknown class \"" + std::string(64, 'x') + "...\"");
}

// The ends of it say most; the whole is in the record.
TEST(IPPKeyedUnarchiver, ShortensTheMiddleOfALongKeyPath) {
  const auto refused = [](std::size_t lists) {
    const std::string text = archiveOf(R"("$class":"IPPKeyword","value":)" +
                                       std::string(lists, '[') + "x" + std::string(lists, ']'));
    std::shared_ptr<const Error> error;
    (void)IPPKeyedUnarchiver::initForReadingWithData(Data(text.begin(), text.end()), &error);
    return error;
  };
  const auto repeated = [](std::size_t count) {
    std::string path;
    for (std::size_t i = 0; i < count; ++i) {
      path += "[0]";
    }
    return path;
  };
  const auto whole = refused(83);  // 254 octets
  EXPECT_THAT(std::string(whole->localizedDescription().value()),
              StartsWith("value" + repeated(83) + ": not well-formed"));
  const auto deep = refused(900);
  const std::string text(deep->localizedDescription().value());
  EXPECT_THAT(text,
              StartsWith("value" + repeated(40) + "[...]" + repeated(42) + ": not well-formed"));
  EXPECT_EQ(text.find(": "), 256U);
  EXPECT_EQ(std::get<std::string>(deep->userInfo().at(std::string(IPPErrorArchiveKeyPath))),
            "value" + repeated(900));
}

TEST(IPPKeyedUnarchiver, CutsNoCharacterOfALongKeyPath) {
  std::string text = R"({"$class":"IPPFoo"})";
  for (int i = 0; i < 200; ++i) {
    text = "{\"" + std::string(i % 3, 'a') + "\u00fc\u20ac\":" + text + "}";
  }
  for (const char* shift : {"", "a", "aa", "aaa", "aaaa"}) {
    const std::string archive = archiveOf("\"" + std::string(shift) + "\":" + text + ",\"b\":x");
    EXPECT_TRUE(isValidUtf8(refusal(archive))) << shift;
  }
}

TEST(IPPKeyedUnarchiver, RaisesTheSameAgainAfterAFault) {
  const std::string text = archiveOf(
      R"("a":{"$class":"IPPKeyword","value":7},"b":{"$class":"IPPKeyword","value":"x"},"c":1)");
  const auto archive = IPPKeyedUnarchiver::initForReadingWithData(Data(text.begin(), text.end()));
  const auto same = ::testing::ThrowsMessage<InconsistentArchiveException>(
      "a.value: IPPKeyword cannot be made of a whole number");
  EXPECT_THAT([&] { archive->decodeObjectForKey("a"); }, same);
  EXPECT_THAT([&] { archive->decodeObjectForKey("a"); }, same);
  EXPECT_THAT([&] { archive->decodeObjectForKey("b"); }, same);
  EXPECT_THAT([&] { archive->decodeIntForKey("c"); }, same);
  EXPECT_THAT([&] { archive->decodeIntForKey("missing"); }, same);
  EXPECT_THAT([&] { archive->decodeRootObject(); }, same);
  EXPECT_EQ(archive->error()->code(), static_cast<std::int64_t>(IPPArchiveError::wrongType));
}

// Exactly where docs/archive.md says.
TEST(IPPKeyedUnarchiver, TakesWholeNumbersForRealOnesWhereThatIsForgiven) {
  const auto raw = [](const std::string& spelled) -> std::string {
    const std::string text = archiveOf("\"raw\":" + spelled);
    const auto archive = IPPKeyedUnarchiver::initForReadingWithData(Data(text.begin(), text.end()));
    try {
      return archive->decodeRawValueForKey("raw").description();
    } catch (const InconsistentArchiveException& failure) {
      return failure.what();
    }
  };
  EXPECT_EQ(raw(R"({"$size":[600,1200]})"), raw(R"({"$size":[600.0,1.2e3]})"));
  EXPECT_EQ(raw(R"({"$size":[9007199254740993,1]})"), "raw.$size[0]: not a real number");
  EXPECT_EQ(raw(R"({"$size":[1,true]})"), "raw.$size[1]: not a real number");
  EXPECT_EQ(raw(R"({"$range":[1.0,2]})"),
            "raw.$range[0]: a number where a whole number is expected");
  EXPECT_EQ(raw(R"({"$date":1e3})"), "raw.$date: a number where a whole number is expected");
  const auto value = unarchived<const IPPValue>(archiveOf(R"("$class":"IPPInteger","value":5.0)"));
  EXPECT_TRUE(value->rawValue().asNumber().isReal());
  EXPECT_TRUE(value->isEqual(*IPPValue::integerWithInt(5)));
  expectRefusals({{R"("$class":"IPPMessage","tag":1.0,"request-id":1,"groups":[])",
                   IPPArchiveError::wrongType, "tag: a number where a whole number is expected"},
                  {R"("$class":"IPPArray","value":[{"$class":"IPPValue","$id":1.0,"value":null}])",
                   IPPArchiveError::wrongType, "value[0].$id: not a whole number"}});
}

TEST(IPPKeyedUnarchiver, RaisesWhatItsReaderAsksForOutsideOfTheEntryPoints) {
  const std::string text = archiveOf(R"("a":{"$class":"IPPFoo"})");
  const auto archive = IPPKeyedUnarchiver::initForReadingWithData(Data(text.begin(), text.end()));
  ASSERT_NE(archive, nullptr);
  EXPECT_THAT(
      [&] { archive->decodeObjectForKey("a"); },
      ::testing::ThrowsMessage<InconsistentArchiveException>("a: unknown class \"IPPFoo\""));
  EXPECT_THROW(archive->decodeByte(), InvalidArgumentException);
}

}  // namespace
}  // namespace platen::test
