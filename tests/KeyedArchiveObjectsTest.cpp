// SPDX-License-Identifier: Apache-2.0

// Attributes, groups and messages in archives, and what they share.

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "tests/support/Archives.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"

namespace platen::test {
namespace {

using ::testing::HasSubstr;

IPPValue::Pointer one() { return IPPValue::integerWithInt(1); }

template <class Object>
void expectEqualBack(const Object& object) {
  for (const IPPArchiveFormat format : kArchiveFormats) {
    const auto back = unarchived<Object>(archived(object, format));
    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->isEqual(object));
    EXPECT_TRUE(object.isEqual(*back));
    EXPECT_EQ(archivedText(*back), archivedText(object));
  }
}

TEST(KeyedArchiveObjects, KeepAttributesWithOrWithoutANameAndAValue) {
  expectEqualBack(IPPAttribute(one(), "copies"));
  expectEqualBack(IPPAttribute(one(), ""));
  expectEqualBack(IPPAttribute(one(), "\xff"));
  expectEqualBack(IPPAttribute(one(), std::nullopt));
  expectEqualBack(IPPAttribute(nullptr, "copies"));
  expectEqualBack(IPPAttribute(nullptr, Text()));
  EXPECT_EQ(archivedText(IPPAttribute(nullptr, "")),
            archiveOf(R"("$class":"IPPAttribute","name":"","value":null)"));
  EXPECT_EQ(archivedText(IPPAttribute(nullptr, Text())),
            archiveOf(R"("$class":"IPPAttribute","name":null,"value":null)"));
}

TEST(KeyedArchiveObjects, KeepGroupsOfEveryKindAndTheirOrder) {
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    const auto group = groupClass->make();
    expectEqualBack(*group);
    group->addNamedValues({{"z", one()}, {"attributes-charset", IPPValue::charset("utf-8")}});
    expectEqualBack(*group);
    const auto back = unarchived<IPPAttributeGroup>(archived(*group));
    EXPECT_EQ(&back->ippClass(), groupClass);
    EXPECT_EQ(back->attributes().front()->name(), "z");
  }
}

TEST(KeyedArchiveObjects, KeepMessagesOfTheirClass) {
  expectEqualBack(IPPMessage(-32767, -1));
  expectEqualBack(IPPMessage(INT32_MIN, INT32_MAX, {IPPAttributeGroup::jobGroup()}));
  expectEqualBack(*IPPResponse::initWithStatusCode(0x0406));
  expectEqualBack(*IPPRequest::printerAttributesRequest(URL::parse("ipp://a/b").value()));
  EXPECT_EQ(unarchived<IPPRequest>(archived(IPPMessage(1, 2))), nullptr);
  EXPECT_EQ(unarchived<IPPMessage>(archived(IPPResponse(1, 2)))->className(), "IPPResponse");
}

// What only one exchange is concerned with ends with it.
TEST(KeyedArchiveObjects, KeepOfARequestTheMessageAlone) {
  const auto request = IPPRequest::printerAttributesRequest(URL::parse("ipp://a/b").value());
  const std::string before = archivedText(*request);
  request->setTimeInterval(5);
  EXPECT_EQ(archivedText(*request), before);
  const auto back = unarchived<IPPRequest>(before);
  EXPECT_EQ(back->timeoutInterval(), 60.0);
  EXPECT_EQ(back->delegate(), nullptr);
  EXPECT_TRUE(back->isEqual(*request));
  back->setJobURI(URL::parse("ipp://a/jobs/1").value());
  EXPECT_EQ(back->operationGroup()->attributes().size(),
            request->operationGroup()->attributes().size() + 1);
}

TEST(KeyedArchiveObjects, KeepADecodedMessageThatIsGone) {
  auto message = decodedMessage(
      "0101 8001 ffffffff 01 47 <'attributes-charset'> <'utf-8'> 04"
      "44 <'set'> <'a'> 44 <> <'b'> 13 <'none'> <> 36 <'name'> <<'en.iso-8859-1'> <e9>>"
      "34 <'map'> <> 4a <> <'m'> 34 <> <> 4a <> <'n'> 21 <> <00000001> 21 <> <00000002> 37 <> <>"
      "  37 <> <> 31 <'date'> <07d1 02 03 04 05 06 00 2b 00 00> 05 03");
  ASSERT_NE(message, nullptr);
  expectEqualBack(*message);
  const std::string text = messageText(*message, 0);
  const auto back = unarchived<IPPMessage>(archived(*message));
  message.reset();
  EXPECT_EQ(messageText(*back, 0), text);
}

/// How many objects are inside of each other.
class DepthGauge : public IPPCoder {
 public:
  static int depthOf(const IPPCodable& object) {
    DepthGauge gauge;
    object.encodeWithCoder(gauge);
    return gauge.deepest_ + 1;
  }

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  void encodeIntForKey(std::int64_t, std::string_view) override {}
  void encodeStringForKey(std::optional<std::string_view>, std::string_view) override {}
  void encodeRawValueForKey(const RawValue&, std::string_view) override {}
  void encodeObjectForKey(const Object& object, std::string_view) override { enter(object); }
  void encodeObjectsForKey(const std::vector<Object>& objects, std::string_view) override {
    for (const Object& object : objects) {
      enter(object);
    }
  }
  void encodeNamedObjectsForKey(const Dictionary<Object>& objects, std::string_view) override {
    for (const auto& [name, object] : objects) {
      enter(object);
    }
  }

 private:
  void enter(const Object& object) {
    deepest_ = std::max(deepest_, ++depth_);
    object->encodeWithCoder(*this);
    --depth_;
  }

  int depth_ = 0;
  int deepest_ = 0;
};

// As deep as the decoder lets anything be: 64 collections, each in a set, around one more set.
TEST(KeyedArchiveObjects, KeepTheDeepestMessageThatCanComeOffTheWire) {
  IPPValue::Pointer value = IPPValue::array({one(), one()});
  for (int i = 0; i < IPPCoder::kDeepestCollection; ++i) {
    value = IPPValue::array({IPPValue::dictionaryWithDictionary({{"m", value}}),
                             IPPValue::dictionaryWithDictionary({})});
  }
  const auto group = IPPAttributeGroup::jobGroup();
  group->addNamedValues({{"deep", value}});
  const auto message =
      IPPMessage::initWithDataRepresentation(IPPMessage(1, 1, {group}).dataRepresentation());
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(DepthGauge::depthOf(*message), 133);
  EXPECT_LT(133, kIPPArchiveDeepestObject);
  expectEqualBack(*message);
}

// --- Sharing -------------------------------------------------------------------------------------

TEST(KeyedArchiveObjects, KeepWhatIsSharedShared) {
  const auto attribute = IPPAttribute::attributeWithValue(IPPValue::keyword("a"), "shared");
  const auto first = IPPAttributeGroup::jobGroup();
  const auto second = IPPAttributeGroup::jobGroup();
  first->addAttribute(attribute);
  second->addAttribute(attribute);
  const IPPMessage message(0, 1, {first, second, first});
  for (const IPPArchiveFormat format : kArchiveFormats) {
    const auto back = unarchived<IPPMessage>(archived(message, format));
    ASSERT_EQ(back->ippGroups().size(), 3U);
    EXPECT_EQ(back->ippGroups()[0], back->ippGroups()[2]);
    EXPECT_NE(back->ippGroups()[0], back->ippGroups()[1]);
    EXPECT_EQ(back->ippGroups()[0]->attributes()[0], back->ippGroups()[1]->attributes()[0]);
  }
}

TEST(KeyedArchiveObjects, KeepEqualObjectsApartThatAreNotShared) {
  const IPPMessage message(0, 1, {IPPAttributeGroup::jobGroup(), IPPAttributeGroup::jobGroup()});
  EXPECT_THAT(archivedText(message), ::testing::Not(HasSubstr("$id")));
  const auto back = unarchived<IPPMessage>(archived(message));
  EXPECT_NE(back->ippGroups()[0], back->ippGroups()[1]);
}

TEST(KeyedArchiveObjects, ShareAnObjectBetweenTwoOfOneArchive) {
  const auto request = IPPRequest::printerAttributesRequest(URL::parse("ipp://a/b").value());
  IPPKeyedArchiver archiver;
  archiver.encodeObjectForKey(request, "request");
  archiver.encodeObjectForKey(IPPResponse::responseForRequest(*request), "response");
  for (const IPPArchiveFormat format : kArchiveFormats) {
    const auto archive = IPPKeyedUnarchiver::initForReadingWithData(archiver.archivedData(format));
    ASSERT_NE(archive, nullptr);
    // The one that refers comes first: what it refers to is made on the way.
    const auto response =
        std::dynamic_pointer_cast<const IPPResponse>(archive->decodeObjectForKey("response"));
    const auto back =
        std::dynamic_pointer_cast<const IPPRequest>(archive->decodeObjectForKey("request"));
    EXPECT_EQ(response->attributeForKey("attributes-charset"),
              back->attributeForKey("attributes-charset"));
    EXPECT_EQ(response->attributeForKey("attributes-natural-language"),
              back->attributeForKey("attributes-natural-language"));
    EXPECT_TRUE(back->isEqual(*request));
    EXPECT_EQ(archive->decodeObjectForKey("request"), back);
  }
}

// Each of 64 sets holds the one below it twice: a tree of 2^64 keywords.
TEST(KeyedArchiveObjects, ShareWithoutGrowing) {
  IPPValue::Pointer value = IPPValue::keyword("laugh");
  for (int i = 0; i < 64; ++i) {
    value = IPPValue::array({value, value});
  }
  const std::string text = archivedText(*value);
  EXPECT_LT(text.size(), 10000U);
  const auto back = unarchived<const IPPValue>(text);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(archivedText(*back), text);
}

// --- Several objects and other fields ------------------------------------------------------------

TEST(KeyedArchiveObjects, KeepEveryKindOfFieldAtTheTop) {
  const RawValue raw = RawValue::Array{
      RawValue(),
      Null(),
      "a\xff",
      URL::parse("a:b").value(),
      true,
      7,
      -0.5,
      Range{1, ~std::uint64_t{0}},
      Size{0.25, 600},
      Date(std::chrono::milliseconds(-1)),
      RawValue::Dictionary{{"b", RawValue::Array{}}, {"a\xfe", RawValue::Dictionary{}}}};
  IPPKeyedArchiver archiver;
  archiver.encodeIntForKey(INT64_MIN, "int");
  archiver.encodeBoolForKey(false, "bool");
  archiver.encodeStringForKey(std::nullopt, "absent");
  archiver.encodeStringForKey("", "empty");
  archiver.encodeRawValueForKey(raw, "raw");
  archiver.encodeObjectForKey(nullptr, "object");
  archiver.encodeObjectsForKey({one(), nullptr}, "objects");
  archiver.encodeNamedObjectsForKey({{"b", nullptr}, {"a", one()}}, "named");
  for (const IPPArchiveFormat format : kArchiveFormats) {
    const auto archive = IPPKeyedUnarchiver::initForReadingWithData(archiver.archivedData(format));
    EXPECT_EQ(archive->decodeIntForKey("int"), INT64_MIN);
    EXPECT_FALSE(archive->decodeBoolForKey("bool"));
    EXPECT_EQ(archive->decodeStringForKey("absent"), std::nullopt);
    EXPECT_EQ(archive->decodeStringForKey("empty"), "");
    EXPECT_EQ(archive->decodeRawValueForKey("raw"), raw);
    EXPECT_EQ(archive->decodeObjectForKey("object"), nullptr);
    EXPECT_EQ(archive->decodeObjectsForKey("objects").at(1), nullptr);
    EXPECT_EQ(archive->decodeNamedObjectsForKey("named").begin()->first, "b");
    EXPECT_TRUE(archive->containsValueForKey("absent"));
    EXPECT_FALSE(archive->containsValueForKey("other"));
    EXPECT_EQ(archive->error(), nullptr);
    EXPECT_THAT(
        [&] { archive->decodeIntForKey("other"); },
        ::testing::ThrowsMessage<InconsistentArchiveException>("the key \"other\" is missing"));
    EXPECT_EQ(archive->error()->code(), static_cast<int>(IPPArchiveError::missingKey));
  }
}

TEST(KeyedArchiveObjects, KeepNumbersThatAreNotFinite) {
  using Limits = std::numeric_limits<double>;
  for (const double real : {Limits::infinity(), -Limits::infinity(), Limits::max(), -0.0, 5e-324}) {
    const auto back = unarchived<const IPPValue>(archived(*IPPValue::integer(Number(real))));
    EXPECT_EQ(back->rawValue().asNumber().doubleValue(), real);
    EXPECT_TRUE(back->rawValue().asNumber().isReal());
  }
  const auto back =
      unarchived<const IPPValue>(archived(*IPPValue::integer(Number(Limits::quiet_NaN()))));
  EXPECT_EQ(back->stringValue(), "nan");
}

// --- Classes of an application -------------------------------------------------------------------

/// Holds one object; a cycle can be made of it. Without a name that is registered when `isKnown`
/// is false.
class Box : public IPPCodable {
 public:
  explicit Box(bool isKnown = true) : isKnown_(isKnown) {}
  [[nodiscard]] std::string_view className() const noexcept override {
    return isKnown_ ? "TestBox" : "TestUnknownBox";
  }
  void encodeWithCoder(IPPCoder& coder) const override {
    coder.encodeObjectForKey(content, "content");
  }
  static IPPCoder::Object initWithCoder(IPPCoder& coder) {
    auto box = std::make_shared<Box>();
    box->content = coder.decodeObjectForKey("content");
    return box;
  }

  IPPCoder::Object content;

 private:
  bool isKnown_;
};

constinit const IPPCodableClass boxClass("TestBox", Box::initWithCoder);
const IPPCodableRegistration registration(boxClass);

std::string writingRefusal(const IPPCodable& object) {
  std::shared_ptr<const Error> error;
  const auto data = IPPKeyedArchiver::archivedDataWithRootObject(object, {}, &error);
  EXPECT_EQ(data.has_value(), error == nullptr);
  return error == nullptr ? "" : std::string(error->localizedDescription().value_or("?"));
}

TEST(KeyedArchiveObjects, KeepObjectsOfRegisteredClasses) {
  Box box;
  box.content = IPPValue::keyword("a");
  const auto back = unarchived<Box>(archived(box));
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->content->className(), "IPPKeyword");
}

TEST(KeyedArchiveObjects, RefuseToWriteAClassThatCouldNotBeRead) {
  Box box;
  box.content = std::make_shared<Box>(false);
  EXPECT_EQ(writingRefusal(box), "content: unknown class \"TestUnknownBox\"");
}

TEST(KeyedArchiveObjects, RefuseToWriteAnObjectInsideOfItself) {
  const auto outer = std::make_shared<Box>();
  const auto inner = std::make_shared<Box>();
  outer->content = inner;
  inner->content = outer;
  EXPECT_EQ(writingRefusal(*outer), "content.content: an object inside of itself");
  inner->content = nullptr;
}

TEST(KeyedArchiveObjects, RefuseToWriteWhatIsTooDeepToBeRead) {
  IPPValue::Pointer value = one();
  for (int i = 1; i < kIPPArchiveDeepestObject; ++i) {
    value = IPPValue::dictionaryWithDictionary({{"m", value}});
  }
  const auto back = unarchived<const IPPValue>(archived(*value));
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(back->isEqual(*value));
  ASSERT_NE(unarchived(archived(*value, IPPArchiveFormat::cbor)), nullptr);
  EXPECT_THAT(writingRefusal(*IPPValue::array({value})),
              ::testing::AllOf(::testing::StartsWith("value[0].value[0].value"),
                               ::testing::EndsWith(": nested too deep")));
}

TEST(KeyedArchiveObjects, RefuseKeysTwiceOrOfTheArchiveItselfOrOfNoText) {
  for (const char* key : {"twice", "$class", "$", "\xff"}) {
    IPPKeyedArchiver archiver;
    archiver.encodeIntForKey(1, "twice");
    EXPECT_THROW(archiver.encodeObjectForKey(one(), key), InvalidArgumentException) << key;
    EXPECT_NE(archiver.error(), nullptr);
  }
}

TEST(KeyedArchiveObjects, RefuseAnythingBesideTheRootObject) {
  IPPKeyedArchiver archiver;
  archiver.encodeRootObject(*one());
  EXPECT_THROW(archiver.encodeIntForKey(1, "more"), InvalidArgumentException);
  EXPECT_THROW(archiver.encodeRootObject(*one()), InvalidArgumentException);
  IPPKeyedArchiver late;
  late.encodeIntForKey(1, "more");
  EXPECT_THROW(late.encodeRootObject(*one()), InvalidArgumentException);
}

TEST(KeyedArchiveObjects, HaveNoSequentialFace) {
  IPPKeyedArchiver archiver;
  EXPECT_TRUE(archiver.allowsKeyedCoding());
  EXPECT_THROW(archiver.encodeByte(1), InvalidArgumentException);
}

}  // namespace
}  // namespace platen::test
