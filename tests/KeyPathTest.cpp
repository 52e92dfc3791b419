// SPDX-License-Identifier: Apache-2.0

// Paths of keys. docs/key-paths.md has more of them, which are tested too.

#include <gtest/gtest.h>

#include "platen/Exception.h"
#include "platen/IPPMessageKVCForwarder.h"
#include "tests/support/KeyValuePrinting.h"
#include "tests/support/PrintersAnswer.h"

namespace platen {
namespace {

using test::attribute;
using test::printersAnswer;

using List = KeyValue::Array;

TEST(KeyPath, GoesOnThroughListsElementByElement) {
  const auto response = printersAnswer();
  EXPECT_EQ(response->valueForKeyPath("printerGroups.name"),
            KeyValue(List{"printer-attributes-tag", "printer-attributes-tag"}));
  EXPECT_EQ(response->valueForKeyPath("@all.printer-state-reasons.ippValue.value"),
            KeyValue(List{"none", List{"paused", "media-empty"}}));
  EXPECT_EQ(response->valueForKeyPath("@all.printer-state-reasons.ippValue.arrayValue.value"),
            KeyValue(List{Null(), List{"paused", "media-empty"}}));
  EXPECT_EQ(response->valueForKeyPath("allAttributes.name").asArray()[0],
            KeyValue(List{"attributes-charset"}));
}

TEST(KeyPath, KeepsNullForAnElementThatLeadsToNothing) {
  const auto response = printersAnswer();
  EXPECT_EQ(response->valueForKeyPath("printerGroups.printer-location.ippValue.value"),
            KeyValue(List{Null(), "Room 7"}));
  response->ippGroups()[1]->addAttribute(attribute("printer-info", nullptr));
  response->ippGroups()[2]->addAttribute(attribute("printer-info", IPPValue::keyword("info")));
  EXPECT_EQ(response->valueForKeyPath("@all.printer-info.ippValue.syntaxName"),
            KeyValue(List{Null(), "keyword"}));
}

TEST(KeyPath, GoesOnThroughDictionariesByExactlyTheName) {
  const auto response = printersAnswer();
  const auto at = [&](std::string_view path) { return response->valueForKeyPath(path); };
  EXPECT_EQ(at("media-col-default.ippValue.value.media-type"), KeyValue("stationery"));
  EXPECT_EQ(at("media-col-default.ippValue.value.media-size.y-dimension"), KeyValue(29700));
  EXPECT_EQ(at("media-col-default.ippValue.dictionaryRepresentationValue.media-type"),
            KeyValue(IPPValue::keyword("stationery")));
  EXPECT_TRUE(at("media-col-default.ippValue.value.MEDIA-TYPE").isAbsent());
  EXPECT_TRUE(at("media-col-default.ippValue.value.media-*.any.key").isAbsent());
  EXPECT_EQ(at("allNamedValues.printer-state"), KeyValue(List{Null(), 3, 5}));
}

TEST(KeyPath, RaisesForOneElementThatDoesNotKnowTheKey) {
  const auto response = printersAnswer();
  const KeyValue unlike(List{KeyValue(response), response->ippGroups()[1]});
  EXPECT_EQ(unlike.valueForKeyPath("printer-name.name"),
            KeyValue(List{"printer-name", "printer-name"}));
  EXPECT_THROW(unlike.valueForKey("statusCode.nothing"), UndefinedKeyException);
  EXPECT_EQ(unlike.valueForKey("statusCode"), KeyValue(List{0, Null()})) << "a group raises never";
  const KeyValue values(List{IPPValue::array({IPPValue::keyword("a")}), IPPValue::keyword("b")});
  try {
    static_cast<void>(values.valueForKey("size"));
    FAIL() << "a keyword has no size";
  } catch (const UndefinedKeyException& failure) {
    EXPECT_EQ(failure.className(), "IPPKeyword");
  }
}

TEST(KeyPath, HasNoEmptyKeyInIt) {
  const auto response = printersAnswer();
  for (const char* path : {"", ".", "..", ".printer-name", "printer-name.", "printer-name..name",
                           "@all.nothing-here..x", "@all.nothing-here."}) {
    try {
      static_cast<void>(response->valueForKeyPath(path));
      ADD_FAILURE() << path;
    } catch (const UndefinedKeyException& failure) {
      EXPECT_EQ(failure.key(), path);
      EXPECT_EQ(failure.className(), "IPPResponse");
    }
    EXPECT_THROW(response->ippGroups()[1]->valueForKeyPath(path), UndefinedKeyException) << path;
    EXPECT_THROW(KeyValue().valueForKeyPath(path), UndefinedKeyException) << path;
    EXPECT_THROW(KeyValue(List{}).valueForKeyPath(path), UndefinedKeyException) << path;
  }
}

TEST(KeyPath, IsSplitAtEveryDotAndAKeyIsNot) {
  const auto response = printersAnswer();
  const auto odd = attribute("vendor.odd", IPPValue::keyword("x"));
  response->ippGroups()[1]->addAttribute(odd);
  EXPECT_EQ(response->valueForKey("vendor.odd").asAttribute(), odd);
  EXPECT_EQ(response->valueForKeyPath("vendor?odd.ippValue.value"), KeyValue("x"));
  EXPECT_THROW(response->valueForKeyPath("vendor.odd"), UndefinedKeyException);
}

TEST(KeyPath, OfOneKeyIsThatKey) {
  const auto response = printersAnswer();
  EXPECT_EQ(response->valueForKeyPath("@all"), response->valueForKey("@all"));
  EXPECT_EQ(response->valueForKeyPath("statusCode"), KeyValue(0));
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

TEST(HostileKey, IsUndefinedHoweverItLooks) {
  const auto response = printersAnswer();
  for (const std::string& key :
       {std::string(1 << 20, 'k'), std::string("printer-name\0", 13), std::string("\0", 1),
        std::string("\xff\xfe\xc3"), std::string("printer-\xed\xa0\x80"), std::string("%@%n%s"),
        std::string(1 << 16, '?'), repeated("*a", 1 << 12)}) {
    EXPECT_THROW(response->valueForKey(key), UndefinedKeyException) << key.size();
    EXPECT_TRUE(response->ippGroups()[1]->valueForKey(key).isAbsent()) << key.size();
    EXPECT_EQ(response->valueForKeyPath("@all." + key), KeyValue(List{})) << key.size();
    EXPECT_THROW(IPPValue::keyword("none")->valueForKey(key), UndefinedKeyException);
  }
}

// A stack that grew with the path would not survive these.
TEST(HostileKey, MayHaveAnyNumberOfParts) {
  constexpr std::size_t kMany = 50'000;
  const auto response = printersAnswer();
  EXPECT_EQ(response->valueForKeyPath(repeated("@all.object.", kMany) + "requestId"), KeyValue(7));
  EXPECT_EQ(response->valueForKeyPath("printer-name" + repeated(".copy", kMany) + ".name"),
            KeyValue("printer-name"));
  EXPECT_TRUE(response->ippGroups()[1]->valueForKeyPath("no" + repeated(".x", kMany)).isAbsent());
  EXPECT_EQ(response->valueForKeyPath("printerGroups.no" + repeated(".x", kMany)),
            KeyValue(List{Null(), Null()}));
  EXPECT_THROW(response->valueForKeyPath("requestId" + repeated(".x", kMany)),
               UndefinedKeyException);
  EXPECT_THROW(response->valueForKeyPath(std::string(kMany, '.')), UndefinedKeyException);
}

}  // namespace
}  // namespace platen
