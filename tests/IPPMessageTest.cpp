// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <string>
#include <vector>

#include "platen/IPPMessage.h"
#include "platen/IPPUnarchiver.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::ElementsAre;

IPPAttributeGroup::Pointer groupOf(IPPAttributeGroup::Pointer group,
                                   const std::vector<std::string>& names) {
  std::int32_t number = 0;
  for (const std::string& name : names) {
    group->addAttribute(IPPAttribute::attributeWithValue(IPPValue::integerWithInt(number++), name));
  }
  return group;
}

std::shared_ptr<IPPMessage> sample() {
  return std::make_shared<IPPMessage>(
      0, 1,
      IPPMessage::Groups{
          groupOf(IPPAttributeGroup::operationGroup(), {"attributes-charset", "job-message"}),
          groupOf(IPPAttributeGroup::jobGroup(), {"job-id", "job-name"}),
          groupOf(IPPAttributeGroup::printerGroup(), {"printer-name"}),
          groupOf(IPPAttributeGroup::jobGroup(), {"job-id"})});
}

// --- The header ----------------------------------------------------------------------------------

TEST(IPPMessage, WritesNineOctetsWithoutGroups) {
  EXPECT_EQ(encodedHex(IPPMessage(0x000b, 7)), "01 01 00 0b 00 00 00 07 03");
  EXPECT_EQ(IPPMessage(0x000b, 7).dataRepresentation(), octets("0101 000b 00000007 03"));
}

TEST(IPPMessage, WritesTheLow16BitsOfItsTag) {
  EXPECT_EQ(encodedHex(IPPMessage(0x12345, -1)), hexOf("0101 2345 ffffffff 03"));
}

TEST(IPPMessage, ReadsAStatusCodeFrom0x8000UpAsANegativeTag) {
  const auto message = decodedMessage("0101 8001 ffffffff 03");
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->ippTag(), -32767);
  EXPECT_EQ(message->requestId(), -1);
  EXPECT_EQ(encodedHex(*message), hexOf("0101 8001 ffffffff 03"));
}

TEST(IPPMessage, AcceptsVersion11AndEveryHigherOne) {
  for (const char* version : {"0101", "0102", "0200", "0201", "0202", "017f", "7f7f", "7f00"}) {
    const auto message = decodedMessage(std::string(version) + "0000 00000001 03");
    ASSERT_NE(message, nullptr) << version;
    // The version is not kept.
    EXPECT_EQ(encodedHex(*message), hexOf("0101 0000 00000001 03"));
  }
}

TEST(IPPMessage, RefusesLowerVersionsAndThoseWithAnOctetOf0x80AndAbove) {
  for (const char* version :
       {"0100", "0000", "0001", "00ff", "007f", "0180", "8001", "01ff", "0280", "ff01", "8000"}) {
    EXPECT_EQ(decodedMessage(std::string(version) + "0000 00000001 03"), nullptr) << version;
  }
}

TEST(IPPMessage, DecidesOnEveryVersionBySixteenSignedBits) {
  for (int major = 0; major <= 0xff; ++major) {
    for (int minor = 0; minor <= 0xff; ++minor) {
      Data data = octets("0000 0000 00000001 03");
      data[0] = static_cast<std::uint8_t>(major);
      data[1] = static_cast<std::uint8_t>(minor);
      const bool isAccepted =
          major < 0x80 && minor < 0x80 && (major > 1 || (major == 1 && minor > 0));
      ASSERT_EQ(IPPMessage::initWithDataRepresentation(data) != nullptr, isAccepted)
          << major << "." << minor;
    }
  }
}

// --- Sources and targets -------------------------------------------------------------------------

TEST(IPPMessage, IsNotMadeFromNoOctetsOrNoStream) {
  EXPECT_EQ(IPPMessage::initWithDataRepresentation({}), nullptr);
  EXPECT_EQ(IPPMessage::initWithDataRepresentation(Data()), nullptr);
  EXPECT_EQ(IPPMessage::initWithStream(nullptr), nullptr);
  EXPECT_EQ(IPPMessage::initWithFileHandle(-1), nullptr);
}

TEST(IPPMessage, IsNotMadeFromAStreamThatIsNotOpen) {
  EXPECT_EQ(IPPMessage::initWithStream(InputStream::withData(octets("0101 0000 00000001 03"))),
            nullptr);
}

TEST(IPPMessage, IsMadeFromEachKindOfSource) {
  const Data data = sample()->dataRepresentation();
  EXPECT_TRUE(IPPMessage::initWithDataRepresentation(data)->isEqual(*sample()));
  const auto stream = InputStream::withData(data);
  stream->open();
  EXPECT_TRUE(IPPMessage::initWithStream(stream)->isEqual(*sample()));
  const auto coder = IPPUnarchiver::initForReadingWithData(std::make_shared<const Data>(data));
  EXPECT_TRUE(IPPMessage::initWithCoder(*coder)->isEqual(*sample()));
}

TEST(IPPMessage, OutlivesTheOctetsThatItWasMadeFrom) {
  auto data = std::make_unique<Data>(sample()->dataRepresentation());
  const auto message = IPPMessage::initWithDataRepresentation(*data);
  std::fill(data->begin(), data->end(), std::uint8_t{0});
  data.reset();
  EXPECT_TRUE(message->isEqual(*sample()));
}

TEST(IPPMessage, IsNotMadeByACoderWithoutGroups) {
  class GeneralCoder : public IPPCoder {
   public:
    [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return false; }
    void decodeValueOfType(char type, void* destination) override {
      if (type == 'c') {
        *static_cast<std::uint8_t*>(destination) = 1;
      }
    }
  };
  GeneralCoder coder;
  EXPECT_EQ(IPPMessage::initWithCoder(coder), nullptr);
}

TEST(IPPMessage, WritesItselfToADescriptorAndIsReadFromIt) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  EXPECT_TRUE(sample()->writeToFileHandle(ends[1]));
  EXPECT_TRUE(IPPMessage::initWithFileHandle(ends[0])->isEqual(*sample()));
  close(ends[0]);
  close(ends[1]);
}

// Nobody is told that nothing was written, by design.
TEST(IPPMessage, IsWrittenToADescriptorWithSuccessInEveryCase) {
  EXPECT_TRUE(sample()->writeToFileHandle(-1));
  const int readOnly = open("/dev/null", O_RDONLY);
  EXPECT_TRUE(sample()->writeToFileHandle(readOnly));
  close(readOnly);
}

/// Takes at most so many octets of a write, or fails with a negative count.
class LimitedStream : public OutputStream {
 public:
  explicit LimitedStream(std::ptrdiff_t limit) : limit_(limit) {}
  void open() override {}
  void close() override {}
  [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  std::ptrdiff_t write(const std::uint8_t*, std::size_t maxLength) override {
    ++writes;
    return std::min(limit_, static_cast<std::ptrdiff_t>(maxLength));
  }
  [[nodiscard]] bool hasSpaceAvailable() const override { return true; }

  int writes = 0;

 private:
  std::ptrdiff_t limit_;
};

TEST(IPPMessage, IsWrittenToAStreamInOneWriteThatTakesAllOfIt) {
  const auto stream = OutputStream::toMemory();
  stream->open();
  EXPECT_TRUE(sample()->writeToStream(*stream));
  EXPECT_EQ(*stream->data(), sample()->dataRepresentation());
  LimitedStream enough(1'000'000);
  EXPECT_TRUE(sample()->writeToStream(enough));
  EXPECT_EQ(enough.writes, 1);
}

TEST(IPPMessage, FailsOnAShortWriteAndDoesNotCompleteIt) {
  for (const std::ptrdiff_t limit : {-1, 0, 1, 8}) {
    LimitedStream stream(limit);
    EXPECT_FALSE(sample()->writeToStream(stream)) << limit;
    EXPECT_EQ(stream.writes, 1);
  }
  EXPECT_FALSE(sample()->writeToStream(*OutputStream::toMemory()));  // which is not open
}

// --- Groups --------------------------------------------------------------------------------------

TEST(IPPMessage, HasNoGroupsAtFirst) {
  IPPMessage message(1, 2);
  EXPECT_TRUE(message.ippGroups().empty());
  EXPECT_EQ(message.operationGroup(), nullptr);
  EXPECT_EQ(message.subscriptionGroup(), nullptr);
  EXPECT_TRUE(message.jobGroups().empty());
  EXPECT_FALSE(message.operationAttributes());
  EXPECT_FALSE(message.subscriptionAttributes());
  EXPECT_FALSE(message.namedValues());
  EXPECT_TRUE(message.allNamedValues().empty());
  EXPECT_TRUE(message.allAttributes().empty());
}

TEST(IPPMessage, AppendsGroupsWithoutMergingThem) {
  IPPMessage message(1, 2);
  const auto first = IPPAttributeGroup::jobGroup();
  const auto second = IPPAttributeGroup::jobGroup();
  message.addGroup(first);
  message.addGroup(nullptr);
  message.addGroup(second);
  message.addGroup(IPPAttributeGroup::operationGroup());
  ASSERT_EQ(message.ippGroups().size(), 3U);
  EXPECT_EQ(message.ippGroups()[0], first);
  EXPECT_EQ(message.ippGroups()[1], second);
  EXPECT_EQ(message.sortedGroupsForIPPCoding(), message.ippGroups());
  EXPECT_EQ(encodedHex(message), hexOf("0101 0001 00000002 02 02 01 03"));
}

TEST(IPPMessage, HasAListOfItsOwnOfTheGroupsThatItWasMadeWith) {
  const auto group = IPPAttributeGroup::jobGroup();
  IPPMessage::Groups groups = {group};
  IPPMessage message(1, 2, groups);
  groups.push_back(IPPAttributeGroup::jobGroup());
  EXPECT_THAT(message.ippGroups(), ElementsAre(group));
}

TEST(IPPMessage, FindsTheFirstOfTwoOperationGroups) {
  const auto first = groupOf(IPPAttributeGroup::operationGroup(), {"a"});
  const auto second = groupOf(IPPAttributeGroup::operationGroup(), {"b"});
  IPPMessage message(1, 2, {IPPAttributeGroup::jobGroup(), first, second});
  EXPECT_EQ(message.operationGroup(), first);
  EXPECT_EQ(message.operationAttributes(), first->attributes());
}

TEST(IPPMessage, FindsAllGroupsOfAKindInTheirOrder) {
  const auto kinds = {2, 4, 6, 7, 4, 2, 6, 7, 1, 5};
  IPPMessage message(1, 2);
  for (const int kind : kinds) {
    message.addGroup(IPPAttributeGroup::classForIPPTag(kind).make());
  }
  const auto& groups = message.ippGroups();
  EXPECT_THAT(message.jobGroups(), ElementsAre(groups[0], groups[5]));
  EXPECT_THAT(message.printerGroups(), ElementsAre(groups[1], groups[4]));
  EXPECT_THAT(message.subscriptionGroups(), ElementsAre(groups[2], groups[6]));
  EXPECT_THAT(message.notificationEventsGroups(), ElementsAre(groups[3], groups[7]));
  EXPECT_EQ(message.subscriptionGroup(), groups[2]);
  EXPECT_EQ(message.subscriptionAttributes(), groups[2]->attributes());
}

TEST(IPPMessage, FindsGroupsByAPattern) {
  const auto message = sample();
  EXPECT_EQ(message->ippGroupsWithName("*").size(), 4U);
  EXPECT_EQ(message->ippGroupsWithName("JOB-ATTRIBUTES-TAG").size(), 2U);
  EXPECT_EQ(message->ippGroupsWithName("?ob-*").size(), 2U);
  EXPECT_EQ(message->ippGroupsWithName("job").size(), 0U);
}

// --- Attributes ----------------------------------------------------------------------------------

TEST(IPPMessage, FindsAttributesInGroupOrderAndThenAttributeOrder) {
  const auto message = sample();
  const auto& groups = message->ippGroups();
  EXPECT_THAT(message->attributesForKey("job-*"),
              ElementsAre(groups[0]->attributes()[1], groups[1]->attributes()[0],
                          groups[1]->attributes()[1], groups[3]->attributes()[0]));
  EXPECT_EQ(message->attributesForKey("job-id").size(), 2U);
  EXPECT_TRUE(message->attributesForKey("nonesuch").empty());
}

TEST(IPPMessage, FindsTheFirstMatchInTheOperationGroupToo) {
  const auto message = sample();
  EXPECT_EQ(message->attributeForKey("job-*")->name(), "job-message");
  EXPECT_EQ(message->attributeForKey("JOB-NAME")->name(), "job-name");
  EXPECT_EQ(message->attributeForKey("nonesuch"), nullptr);
}

TEST(IPPMessage, GivesThePlainValuesOfMatches) {
  const auto message = sample();
  EXPECT_EQ(message->attributeValueForKey("job-name"), RawValue(1));
  EXPECT_TRUE(message->attributeValueForKey("nonesuch").isAbsent());
  EXPECT_EQ(message->attributeValuesForKey("job-*"), (RawValue::Array{1, 0, 1, 0}));
  EXPECT_TRUE(message->attributeValuesForKey("nonesuch").empty());
}

TEST(IPPMessage, GivesOneListOfAttributesForEachGroup) {
  const auto message = sample();
  message->addGroup(IPPAttributeGroup::jobGroup());
  const auto all = message->allAttributes();
  ASSERT_EQ(all.size(), 5U);
  EXPECT_EQ(all[1], message->ippGroups()[1]->attributes());
  EXPECT_TRUE(all[4].empty());
}

TEST(IPPMessage, GivesTheNamedValuesOfEachGroupAndOfTheFirst) {
  const auto message = sample();
  const auto all = message->allNamedValues();
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(RawValue(all[1]), RawValue(RawValue::Dictionary{{"job-id", 0}, {"job-name", 1}}));
  EXPECT_EQ(RawValue(message->namedValues()), RawValue(all[0]));
}

// --- As an object --------------------------------------------------------------------------------

/// A kind of message of an application's own.
class OwnMessage : public IPPMessage {
 public:
  OwnMessage(std::int32_t tag, std::int32_t requestId) : IPPMessage(tag, requestId) {}

 protected:
  [[nodiscard]] std::shared_ptr<IPPMessage> makeEmptyCopy() const override {
    return std::make_shared<OwnMessage>(0, 0);
  }
};

TEST(IPPMessage, EqualsOneOfTheSameClassWithEqualFieldsAndGroups) {
  EXPECT_TRUE(sample()->isEqual(*sample()));
  EXPECT_EQ(sample()->hash(), sample()->hash());
  EXPECT_FALSE(IPPMessage(1, 2).isEqual(IPPMessage(1, 3)));
  EXPECT_FALSE(IPPMessage(1, 2).isEqual(IPPMessage(2, 2)));
  EXPECT_FALSE(sample()->isEqual(IPPMessage(0, 1)));
  const auto longer = sample();
  longer->addGroup(IPPAttributeGroup::jobGroup());
  EXPECT_FALSE(sample()->isEqual(*longer));
}

TEST(IPPMessage, TellsMessagesOfDifferentClassesApart) {
  EXPECT_FALSE(IPPMessage(1, 2).isEqual(OwnMessage(1, 2)));
  EXPECT_FALSE(OwnMessage(1, 2).isEqual(IPPMessage(1, 2)));
  EXPECT_TRUE(IPPMessage(1, 2).isEqualToMessage(OwnMessage(1, 2)));
}

TEST(IPPMessage, HashesItsGroupsAlone) {
  EXPECT_EQ(IPPMessage(1, 2).hash(), IPPMessage(3, 4).hash());
  EXPECT_NE(IPPMessage(1, 2).hash(), sample()->hash());
}

// By design groups equal one-sidedly, and so do messages.
TEST(IPPMessage, ComparesItsGroupsFromItsOwnSide) {
  const IPPMessage unsupported(1, 2, {std::make_shared<IPPAttributeGroup>()});
  const IPPMessage operation(1, 2, {IPPAttributeGroup::operationGroup()});
  EXPECT_TRUE(unsupported.isEqual(operation));
  EXPECT_FALSE(operation.isEqual(unsupported));
}

TEST(IPPMessage, CopiesItsListAndSharesItsGroups) {
  const auto message = sample();
  const auto copy = message->copy();
  EXPECT_TRUE(copy->isEqual(*message));
  copy->ippGroups()[0]->addAttribute(IPPAttribute::attributeWithValue(nullptr, "seen"));
  EXPECT_NE(message->attributeForKey("seen"), nullptr);
  copy->addGroup(IPPAttributeGroup::jobGroup());
  EXPECT_EQ(message->ippGroups().size(), 4U);
}

TEST(IPPMessage, CopiesIntoItsOwnClass) {
  const auto copy = OwnMessage(5, 6).copy();
  EXPECT_NE(dynamic_cast<const OwnMessage*>(copy.get()), nullptr);
  EXPECT_EQ(copy->ippTag(), 5);
  EXPECT_EQ(copy->requestId(), 6);
}

TEST(IPPMessage, DescribesItsGroups) {
  EXPECT_EQ(IPPMessage(1, 2).description(), "()");
  EXPECT_EQ(IPPMessage(1, 2, {IPPAttributeGroup::jobGroup(), IPPAttributeGroup::printerGroup()})
                .description(),
            "(\njob-attributes-tag = (),\nprinter-attributes-tag = ()\n)");
}

}  // namespace
}  // namespace platen::test
