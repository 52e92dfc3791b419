// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPDateTime.h"
#include "platen/IPPKeyedArchiver.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPRangeOfInteger.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResolutionValue.h"
#include "platen/IPPResponse.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "tests/support/Archives.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

using Value = IPPValue::Pointer;

Value uri(std::string_view text) { return IPPValue::uri(URL::parse(text).value()); }

std::string fieldsOf(const IPPCodable& object) {
  const std::string text = archivedText(object);
  const std::string_view head = R"({"$platen-archive":1,)";
  EXPECT_TRUE(text.starts_with(head)) << text;
  return text.substr(head.size(), text.size() - head.size() - 1);
}

/// A value beside its fields in an archive.
struct Row {
  Value value;
  std::string fields;
};

const std::vector<Row>& rowsWithoutText() {
  static const std::vector<Row> table = {
      {std::make_shared<const IPPUnsupported>(),
       R"("$class":"IPPUnsupported","value":{"$null":true})"},
      {std::make_shared<const IPPNoValue>(), R"("$class":"IPPNoValue","value":{"$null":true})"},
      {std::make_shared<const IPPNotSettable>(),
       R"("$class":"IPPNotSettable","value":{"$null":true})"},
      {std::make_shared<const IPPAdminDefine>(),
       R"("$class":"IPPAdminDefine","value":{"$null":true})"},
      {std::make_shared<const IPPValue>(), R"("$class":"IPPValue","value":null)"},
      {IPPValue::integerWithInt(-7), R"("$class":"IPPInteger","value":-7)"},
      {IPPValue::integer(Number(2.5)), R"("$class":"IPPInteger","value":2.5)"},
      {IPPValue::integer(Number(std::numeric_limits<std::int64_t>::min())),
       R"("$class":"IPPInteger","value":-9223372036854775808)"},
      {IPPValue::integer(Number(std::numeric_limits<double>::infinity())),
       R"("$class":"IPPInteger","value":{"$real":"Infinity"})"},
      {IPPValue::booleanWithBool(true), R"("$class":"IPPBoolean","value":true)"},
      {IPPValue::boolean(Number(2)), R"("$class":"IPPBoolean","value":2)"},
      {IPPValue::enumerationWithInt(3), R"("$class":"IPPEnum","value":3)"},
      {IPPValue::octetString("a"), R"("$class":"IPPOctetString","value":"a")"},
      {IPPValue::octetString(std::string_view("\0\xff\n", 3)),
       R"("$class":"IPPOctetString","value":{"$octets":"AP8K"})"},
      {IPPValue::octetString(std::string_view("\0\n\"", 3)),
       R"("$class":"IPPOctetString","value":"\u0000\n\"")"},
      {IPPValue::dateTime(Date(std::chrono::milliseconds(1001))),
       R"("$class":"IPPDateTime","value":{"$date":1001})"},
      {IPPValue::dateTime(Date::min()),
       R"("$class":"IPPDateTime","value":{"$date":-9223372036854775808})"},
      {IPPValue::resolution({600, 300}, true),
       R"("$class":"IPPResolutionValue","res-horizontal":600,"res-vertical":300,)"
       R"("unitsAreInches":true)"},
      {IPPValue::resolution({600, 300}, false),
       R"("$class":"IPPResolutionValue","res-horizontal":600,"res-vertical":300,)"
       R"("unitsAreInches":false)"},
      {IPPValue::rangeOfInteger({1, 10}),
       R"("$class":"IPPRangeOfInteger","range-location":1,"range-length":10)"},
      {decodedValue(0x33, "<0000000a 00000001>"),
       R"("$class":"IPPRangeOfInteger","range-location":10,"range-length":-8)"}};
  return table;
}

const std::vector<Row>& rowsWithText() {
  static const std::vector<Row> table = {
      {IPPValue::text("caf\u00e9", "fr"),
       "\"$class\":\"IPPTextWithLanguage\",\"value\":\"caf\u00e9\",\"language\":\"fr\""},
      {IPPValue::name("a", ""), R"("$class":"IPPNameWithLanguage","value":"a","language":"")"},
      {decodedValue(0x36, "0000"),
       R"("$class":"IPPNameWithLanguage","value":null,"language":null)"},
      {IPPValue::textWithoutLanguage(""), R"("$class":"IPPText","value":"")"},
      {decodedValue(0x41, "0000"), R"("$class":"IPPText","value":null)"},
      {IPPValue::nameWithoutLanguage("a\xc3"), R"("$class":"IPPName","value":{"$octets":"YcM="})"},
      {IPPValue::keyword("a"), R"("$class":"IPPKeyword","value":"a")"},
      {uri("IPP://a:80/b%20c"), R"("$class":"IPPUri","value":{"$url":"IPP://a:80/b%20c"})"},
      {decodedValue(0x45, "<'a b'>"), R"("$class":"IPPUri","value":null)"},
      {IPPValue::uriScheme("ipp"), R"("$class":"IPPUriScheme","value":"ipp")"},
      {IPPValue::charset("utf-8"), R"("$class":"IPPCharset","value":"utf-8")"},
      {IPPValue::naturalLanguage("en"), R"("$class":"IPPNaturalLanguage","value":"en")"},
      {IPPValue::mimeMediaType("text/plain"),
       R"("$class":"IPPMimeMediaType","value":"text/plain")"},
      {IPPValue::array({IPPValue::keyword("a"), IPPValue::integerWithInt(1)}),
       R"("$class":"IPPArray","value":[{"$class":"IPPKeyword","value":"a"},)"
       R"({"$class":"IPPInteger","value":1}])"},
      {IPPValue::dictionaryWithDictionary(
           {{"z\xff", IPPValue::keyword("a")}, {"", IPPValue::dictionaryWithDictionary({})}}),
       R"("$class":"IPPMap","value":[{"name":{"$octets":"ev8="},)"
       R"("value":{"$class":"IPPKeyword","value":"a"}},)"
       R"({"name":"","value":{"$class":"IPPMap","value":[]}}])"}};
  return table;
}

std::vector<Row> rows() {
  std::vector<Row> all = rowsWithoutText();
  all.insert(all.end(), rowsWithText().begin(), rowsWithText().end());
  return all;
}

TEST(KeyedArchive, WritesEachValueWithItsClassAndKeys) {
  for (const auto& [value, fields] : rows()) {
    EXPECT_EQ(fieldsOf(*value), fields);
  }
}

TEST(KeyedArchive, ReadsEachValueBackFromEachForm) {
  for (const auto& [value, fields] : rows()) {
    for (const IPPArchiveFormat format : kArchiveFormats) {
      const auto back = unarchived<const IPPValue>(archived(*value, format));
      ASSERT_NE(back, nullptr) << fields;
      EXPECT_TRUE(back->isEqual(*value)) << fields;
      EXPECT_EQ(back->className(), value->className());
      EXPECT_EQ(back->stringValue(), value->stringValue()) << fields;
      EXPECT_EQ(archivedText(*back), archivedText(*value));
    }
  }
}

TEST(KeyedArchive, HasARowForEveryClassOfTheCatalog) {
  const std::vector<Row> table = rows();
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    if (valueClass->ippTag() < 0x70) {  // above it other tests have classes of their own
      const auto isOfClass = [&, wanted = valueClass->className()](const Row& row) {
        return row.value->className() == wanted;
      };
      EXPECT_TRUE(std::any_of(table.begin(), table.end(), isOfClass)) << name;
    }
  }
}

}  // namespace
}  // namespace platen::test
