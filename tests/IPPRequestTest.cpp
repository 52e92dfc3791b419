// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platform/UserEnvironment.h"
#include "tests/support/KeyedTree.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"
#include "tests/support/UserLocale.h"

namespace platen {
namespace {

using test::messageText;
using test::UserLocale;

/// What every new request begins with in the locale en_US.
const std::string kDefaults =
    "group 01\n"
    "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
    "01\t\"attributes-natural-language\"\t48:\"en-us\"\n";

IPPMessage::Group jobGroupWith(std::string_view name) {
  auto group = IPPAttributeGroup::jobGroup();
  group->addAttribute(IPPAttribute::attributeWithValue(IPPValue::integerWithInt(1), name));
  return group;
}

std::shared_ptr<IPPAttribute> number(std::string_view name, std::int32_t value = 1) {
  return IPPAttribute::attributeWithValue(IPPValue::integerWithInt(value), name);
}

/// The groups of a message as a list of their tags and of how many attributes they have: "1:2 6:1".
std::string shape(const IPPMessage::Groups& groups) {
  std::string text;
  for (const auto& group : groups) {
    text += (text.empty() ? "" : " ") + std::to_string(group->ippTag()) + ":" +
            std::to_string(group->attributes().size());
  }
  return text;
}

std::string shape(const IPPMessage& message) { return shape(message.ippGroups()); }

/// The groups in the order in which they stand on the wire.
std::string encodedShape(const IPPRequest& request) {
  return shape(*IPPMessage::initWithDataRepresentation(request.dataRepresentation()));
}

IPPRequest::Pointer copyOf(const IPPRequest& request) {
  return std::dynamic_pointer_cast<IPPRequest>(request.copy());
}

class Request : public testing::Test {
 protected:
  const UserLocale locale{"en_US.UTF-8"};
  const IPPRequest::Pointer request = IPPRequest::requestWithId(0x000B);
};

TEST_F(Request, BeginsWithCharsetAndLanguageInAnOperationGroupAndNothingElse) {
  EXPECT_EQ(messageText(*request, 0), "message version=1.1 code=0x000b request-id=1\n" + kDefaults);
}

TEST_F(Request, HasTheRequestIdOneHoweverManyWereMadeBefore) {
  EXPECT_EQ(IPPRequest::requestWithId(0x0002)->requestId(), 1);
  EXPECT_EQ(IPPRequest::requestWithId(0x0002)->requestId(), 1);
}

TEST_F(Request, EncodesToTheseOctets) {
  EXPECT_EQ(test::hex(request->dataRepresentation()),
            test::hex(test::octets("0101 000B 0000 0001"
                                   "01 47 <'attributes-charset'> <'utf-8'>"
                                   "48 <'attributes-natural-language'> <'en-us'> 03")));
}

TEST_F(Request, TellsItsOperationIdAndItsCodename) {
  EXPECT_EQ(request->ippOperationId(), 0x000B);
  EXPECT_EQ(request->ippOperationCodename(), "Get-Printer-Attributes");
  EXPECT_EQ(request->className(), "IPPRequest");
}

TEST(RequestOperations, AreNamedByTheirTable) {
  EXPECT_EQ(IPPRequest::operationIdToNameSpec().size(), 41U);
  for (const auto& [id, name] : IPPRequest::operationIdToNameSpec()) {
    EXPECT_EQ(IPPRequest::operationName(id), name);
  }
  EXPECT_EQ(IPPRequest::operationName(0x400F), "CUPS-Get-PPD");
}

TEST(RequestOperations, OutsideOfTheTableAreUnknown) {
  for (const std::int32_t id : {0x0013, 0x0001, 0x4010, 0x000F, 0x0024, 0x0000, -1, 0x10002}) {
    EXPECT_EQ(IPPRequest::operationName(id), "Unknown-Operation") << id;
    EXPECT_EQ(IPPRequest::requestWithId(id)->ippOperationCodename(), "Unknown-Operation") << id;
  }
}

TEST(RequestLanguage, IsLanguageAndCountryOfTheLocaleInLowerCase) {
  struct Case {
    const char* locale;
    const char* tag;
  };
  const Case cases[] = {
      {"en_US", "en-us"},
      {"de", "de"},
      {"pt_BR", "pt-br"},
      {"pt_BR.UTF-8", "pt-br"},
      {"ja", "ja"},
      {"zh_Hans_CN", "zh-cn"},
      {"zh_Hans_CN.UTF-8", "zh-cn"},
      {"zh_Hans", "zh"},
      {"de_DE.ISO8859-1@euro", "de-de"},
      {"es_419", "es-419"},
      {"C", "en"},
  };
  for (const auto& [locale, tag] : cases) {
    const UserLocale user(locale);
    const auto request = IPPRequest::requestWithId(0x000B);
    EXPECT_EQ(request->currentLanguageTag(), tag) << locale;
    EXPECT_EQ(request->attributeValueForKey("attributes-natural-language").description(), tag);
  }
}

TEST_F(Request, DescribesItselfByItsOperationAndItsGroups) {
  EXPECT_EQ(request->description(),
            "Get-Printer-Attributes = " + request->IPPMessage::description());
  EXPECT_NE(request->description().find("operation-attributes-tag"), std::string::npos);
}

// --- Adding attributes ---------------------------------------------------------------------------

TEST_F(Request, NamesTheUserByLogin) {
  request->addRequestingUserNameAttribute();
  const auto& attribute = request->operationGroup()->attributes().back();
  EXPECT_EQ(attribute->name(), "requesting-user-name");
  EXPECT_EQ(test::valueText(*attribute->ippValue()), "42:\"" + loginName() + "\"");
}

TEST_F(Request, KeepsWhatIsThereWhenAnAttributeIsSetAgain) {
  request->setRequestedAttributes(std::vector<std::string>{"printer-name", "printer-state"});
  request->setRequestedAttributes(std::vector<std::string>{"all"});
  request->addDefaultRequestAttributes();
  EXPECT_EQ(messageText(*request, 0),
            "message version=1.1 code=0x000b request-id=1\n" + kDefaults +
                "01\t\"requested-attributes\"\t44:\"printer-name\"\t44:\"printer-state\"\n"
                "01\t\"requested-attributes\"\t44:\"all\"\n"
                "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
                "01\t\"attributes-natural-language\"\t48:\"en-us\"\n");
}

TEST_F(Request, RefusesAnEmptyListOfRequestedAttributesAndStaysAsItWas) {
  EXPECT_THROW(request->setRequestedAttributes({}), RangeException);
  EXPECT_EQ(shape(*request), "1:2");
}

TEST_F(Request, MakesAGroupWhenItsFirstAttributeComes) {
  request->addSubscriptionAttribute(number("notify-lease-duration"));
  EXPECT_EQ(shape(*request), "1:2 6:1");
  request->addSubscriptionValue(IPPValue::integerWithInt(7), "notify-job-id");
  request->addJobAttribute(number("copies"));
  request->addJobAttribute(number("job-priority"));
  request->addOperationAttribute(number("limit"));
  request->addOperationValue(IPPValue::integerWithInt(7), "job-id");
  EXPECT_EQ(shape(*request), "1:4 6:2 2:2");
}

TEST_F(Request, IgnoresAnAttributeThatIsNotThere) {
  request->addOperationAttribute(nullptr);
  EXPECT_EQ(shape(*request), "1:2");
}

TEST_F(Request, MakesNoSubscriptionGroupForAnAttributeThatIsNotThere) {
  request->addSubscriptionAttribute(nullptr);
  EXPECT_EQ(shape(*request), "1:2");
}

TEST_F(Request, MakesNoJobGroupForAnAttributeThatIsNotThere) {
  request->addJobAttribute(nullptr);
  EXPECT_EQ(shape(*request), "1:2");
}

TEST(RequestWithoutGroups, GetsNoOperationGroupForAnAttributeThatIsNotThere) {
  const auto decoded = IPPRequest::initWithDataRepresentation(Data{1, 1, 0, 11, 0, 0, 0, 1, 3});
  ASSERT_NE(decoded, nullptr);
  decoded->addOperationAttribute(nullptr);
  EXPECT_EQ(shape(*decoded), "");
}

TEST_F(Request, WritesOperationThenJobThenSubscriptionGroupHoweverTheyWereMade) {
  request->addSubscriptionAttribute(number("notify-lease-duration"));
  request->addJobAttribute(number("copies"));
  EXPECT_EQ(shape(*request), "1:2 6:1 2:1");
  EXPECT_EQ(shape(request->sortedGroupsForIPPCoding()), "1:2 2:1 6:1");
  EXPECT_EQ(encodedShape(*request), "1:2 2:1 6:1");
  EXPECT_EQ(shape(*request), "1:2 6:1 2:1") << "encoding must not reorder the request itself";
}

TEST_F(Request, KeepsGroupsOfOneKindInTheOrderInWhichTheyWereAdded) {
  request->addGroup(jobGroupWith("first"));
  request->addGroup(IPPAttributeGroup::printerGroup());
  request->addGroup(std::make_shared<IPPAttributeGroup>());
  request->addGroup(jobGroupWith("second"));
  const auto sorted = request->sortedGroupsForIPPCoding();
  EXPECT_EQ(shape(sorted), "1:2 2:1 2:1 4:0 5:0");
  EXPECT_EQ(sorted.at(1)->attributes().at(0)->name(), "first");
  EXPECT_EQ(sorted.at(2)->attributes().at(0)->name(), "second");
}

TEST_F(Request, WritesTheAttributesThatLeadAnOperationGroupFirst) {
  request->addOperationValue(IPPValue::keyword("all"), "requested-attributes");
  request->addRequestingUserNameAttribute();
  request->setPrinterURI(*URL::parse("ipp://host/printers/q"));
  const auto encoded = IPPMessage::initWithDataRepresentation(request->dataRepresentation());
  EXPECT_EQ(messageText(*encoded, 0), "message version=1.1 code=0x000b request-id=1\n" + kDefaults +
                                          "01\t\"printer-uri\"\t45:\"ipp://host/printers/q\"\n"
                                          "01\t\"requesting-user-name\"\t42:\"" +
                                          loginName() +
                                          "\"\n"
                                          "01\t\"requested-attributes\"\t44:\"all\"\n");
}

// --- Adding named values -------------------------------------------------------------------------

const IPPValueDictionary kTwoValues{{"copies", IPPValue::integerWithInt(2)},
                                    {"sides", IPPValue::keyword("one-sided")}};

TEST_F(Request, MakesOnlyTheThreeGroupsOfItsOwnForNamedValues) {
  struct Case {
    std::string_view group;
    const char* shape;
  };
  const Case cases[] = {
      {kIPPOperationGroupName, "1:4"},
      {kIPPJobGroupName, "1:2 2:2"},
      {kIPPSubscriptionGroupName, "1:2 6:2"},
      {kIPPPrinterGroupName, "1:2"},
      {kIPPUnsupportedAttributesGroupName, "1:2"},
      {kIPPNotificationEventGroupName, "1:2"},
      {kIPPEndOfAttributesGroupName, "1:2"},
      {"no-such-group", "1:2"},
      {"", "1:2"},
  };
  for (const auto& [group, expected] : cases) {
    const auto another = IPPRequest::requestWithId(0x0002);
    another->addNamedValues(kTwoValues, group);
    EXPECT_EQ(shape(*another), expected) << group;
  }
}

TEST_F(Request, AddsNamedValuesInTheirOrder) {
  request->addNamedValues(kTwoValues, kIPPJobGroupName);
  EXPECT_EQ(test::groupText(*request->jobGroups().at(0)),
            "group 02\n02\t\"copies\"\t21:2\n02\t\"sides\"\t44:\"one-sided\"\n");
}

TEST_F(Request, AddsNamedValuesToTheLastGroupOfThatName) {
  request->addGroup(IPPAttributeGroup::printerGroup());
  request->addGroup(IPPAttributeGroup::printerGroup());
  request->addNamedValues(kTwoValues, kIPPPrinterGroupName);
  EXPECT_EQ(shape(*request), "1:2 4:0 4:2");
}

TEST_F(Request, TakesTheGroupNameForAPatternAsEveryLookUpDoes) {
  request->addNamedValues(kTwoValues, "OPERATION-*");
  EXPECT_EQ(shape(*request), "1:4");
}

TEST_F(Request, DoesNotAdoptAJobGroupThatWasAddedFromOutside) {
  request->addGroup(IPPAttributeGroup::jobGroup());
  request->addNamedValues(kTwoValues, kIPPJobGroupName);
  EXPECT_EQ(shape(*request), "1:2 2:2");
  request->addJobAttribute(number("job-priority"));
  EXPECT_EQ(shape(*request), "1:2 2:2 2:1");
}

// --- The groups of a request, for who derives from it --------------------------------------------

class OpenRequest : public IPPRequest {
 public:
  using IPPRequest::_jobGroup;
  using IPPRequest::_operationGroup;
  using IPPRequest::_requestWithIdJobURI;
  using IPPRequest::_requestWithIdPrinterURI;
  using IPPRequest::_subscriptionGroup;
  using IPPRequest::IPPRequest;
};

TEST_F(Request, HandsOutTheSameGroupAtEveryCall) {
  OpenRequest open(0x0002);
  EXPECT_EQ(open._operationGroup(), open.ippGroups().at(0));
  EXPECT_EQ(shape(open), "1:2");
  const auto job = open._jobGroup();
  const auto subscription = open._subscriptionGroup();
  EXPECT_EQ(shape(open), "1:2 2:0 6:0");
  EXPECT_EQ(open._jobGroup(), job);
  EXPECT_EQ(open._subscriptionGroup(), subscription);
  EXPECT_EQ(open.ippGroups().at(1), job);
  EXPECT_EQ(open.ippGroups().at(2), subscription);
}

TEST_F(Request, IsMadeForATargetAndForTheUser) {
  const auto url = *URL::parse("ipp://host/jobs/7");
  const std::string user = "01\t\"requesting-user-name\"\t42:\"" + loginName() + "\"\n";
  const std::string head = "message version=1.1 code=0x4013 request-id=1\n" + kDefaults;
  EXPECT_EQ(messageText(*OpenRequest::_requestWithIdJobURI(0x4013, url), 0),
            head + "01\t\"job-uri\"\t45:\"ipp://host/jobs/7\"\n" + user);
  EXPECT_EQ(messageText(*OpenRequest::_requestWithIdPrinterURI(0x4013, url), 0),
            head + "01\t\"printer-uri\"\t45:\"ipp://host/jobs/7\"\n" + user);
}

// --- Copies --------------------------------------------------------------------------------------

TEST_F(Request, CopiesTheListOfGroupsAndSharesTheGroups) {
  request->addJobAttribute(number("copies"));
  const auto copy = copyOf(*request);
  ASSERT_NE(copy, nullptr) << "the copy of a request is a request";
  EXPECT_TRUE(copy->isEqual(*request));
  EXPECT_EQ(copy->ippGroups(), request->ippGroups());
  copy->addGroup(IPPAttributeGroup::printerGroup());
  EXPECT_EQ(shape(*request), "1:2 2:1");
}

TEST_F(Request, LooksTheGroupsOfACopyUpAgain) {
  request->addJobAttribute(number("copies"));
  request->addSubscriptionAttribute(number("notify-job-id"));
  const auto copy = copyOf(*request);
  copy->addJobAttribute(number("job-priority"));
  copy->addSubscriptionAttribute(number("notify-lease-duration"));
  copy->addOperationAttribute(number("limit"));
  EXPECT_EQ(shape(*copy), "1:3 2:2 6:2");
  EXPECT_EQ(shape(*request), "1:3 2:2 6:2") << "the groups are shared";
}

TEST_F(Request, LeavesEmptyInACopyWhatIsEmptyInTheOriginal) {
  request->addGroup(jobGroupWith("copies"));
  request->addGroup(IPPAttributeGroup::subscriptionGroup());
  const auto copy = copyOf(*request);
  copy->addJobAttribute(number("job-priority"));
  copy->addSubscriptionAttribute(number("notify-job-id"));
  EXPECT_EQ(shape(*copy), "1:2 2:1 6:0 2:1 6:1");
  EXPECT_EQ(shape(*request), "1:2 2:1 6:0");
}

TEST_F(Request, TakesTheFirstJobGroupInACopyEvenWhereTheOriginalHasAnother) {
  request->addGroup(jobGroupWith("from outside"));
  request->addJobAttribute(number("copies"));
  ASSERT_EQ(shape(*request), "1:2 2:1 2:1");
  copyOf(*request)->addJobAttribute(number("job-priority"));
  EXPECT_EQ(shape(*request), "1:2 2:2 2:1");
}

TEST_F(Request, KeepsItsTimeoutInACopy) {
  request->setTimeInterval(5);
  EXPECT_EQ(copyOf(*request)->timeoutInterval(), 5);
}

TEST_F(Request, EqualsNoMessageOfAnotherClass) {
  const IPPMessage message(0x000B, 1, request->ippGroups());
  EXPECT_TRUE(request->isEqualToMessage(message));
  EXPECT_FALSE(request->isEqual(message));
  EXPECT_FALSE(request->isEqual(IPPResponse(0x000B, 1, request->ippGroups())));
}

// --- Decoded requests ----------------------------------------------------------------------------

/// The keyed archive of a message, whose groups were read already.
class ArchivedMessage : public IPPCoder {
 public:
  explicit ArchivedMessage(const IPPMessage& message) : message_(message) {}
  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  std::int64_t decodeIntForKey(std::string_view key) override {
    return key == "tag" ? message_.ippTag() : key == "request-id" ? message_.requestId() : -1;
  }
  std::vector<Object> decodeObjectsForKey(std::string_view key) override {
    const auto& groups = message_.ippGroups();
    return key == "groups" ? std::vector<Object>(groups.begin(), groups.end())
                           : std::vector<Object>();
  }

 private:
  const IPPMessage& message_;
};

TEST_F(Request, ArchivesWhatAMessageArchivesAndNoMore) {
  request->setTimeInterval(5);
  const auto tree = test::KeyedTreeWriter::archive(*request);
  EXPECT_EQ(tree->className, "IPPRequest");
  std::vector<std::string> keys;
  for (const auto& [key, field] : tree->fields) {
    keys.push_back(key);
  }
  EXPECT_EQ(keys, (std::vector<std::string>{"groups", "request-id", "tag"}));
}

TEST_F(Request, LooksItsGroupsUpWhenItComesFromAnArchive) {
  const IPPMessage source(0x0002, 77,
                          {IPPAttributeGroup::subscriptionGroup(), jobGroupWith("a"),
                           IPPAttributeGroup::operationGroup(), jobGroupWith("b")});
  ArchivedMessage archive(source);
  const auto decoded = IPPRequest::initWithCoder(archive);
  ASSERT_NE(decoded, nullptr);
  EXPECT_EQ(decoded->ippOperationId(), 0x0002);
  EXPECT_EQ(decoded->requestId(), 77);
  EXPECT_EQ(decoded->timeoutInterval(), kDefaultTimeout);
  decoded->addOperationAttribute(number("limit"));
  decoded->addJobAttribute(number("copies"));
  decoded->addSubscriptionAttribute(number("notify-job-id"));
  EXPECT_EQ(shape(*decoded), "6:1 2:2 1:1 2:1");
}

TEST_F(Request, MakesTheGroupsThatAnArchiveLacks) {
  const IPPMessage source(0x0002, 77, {IPPAttributeGroup::printerGroup()});
  ArchivedMessage archive(source);
  const auto decoded = IPPRequest::initWithCoder(archive);
  EXPECT_EQ(shape(*decoded), "4:0") << "a decoded request gets no default attributes";
  decoded->addJobAttribute(number("copies"));
  decoded->addOperationAttribute(number("limit"));
  EXPECT_EQ(shape(*decoded), "4:0 2:1 1:1");
}

/// The request as it comes out of each of the reading constructors.
std::vector<IPPRequest::Pointer> readEveryWay(const Data& data) {
  const auto stream = InputStream::withData(data);
  stream->open();
  std::FILE* const file = std::tmpfile();
  std::fwrite(data.data(), 1, data.size(), file);
  std::rewind(file);
  std::vector<IPPRequest::Pointer> requests{IPPRequest::initWithDataRepresentation(data),
                                            IPPRequest::initWithStream(stream),
                                            IPPRequest::initWithFileHandle(fileno(file))};
  std::fclose(file);
  return requests;
}

TEST_F(Request, IsReadFromItsOwnOctets) {
  request->addSubscriptionAttribute(number("notify-job-id"));
  request->addJobAttribute(number("copies"));
  request->setTimeInterval(5);
  for (const auto& decoded : readEveryWay(request->dataRepresentation())) {
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(shape(*decoded), "1:2 2:1 6:1");
    EXPECT_EQ(decoded->timeoutInterval(), 60.0);
    decoded->addJobAttribute(number("job-priority"));
    decoded->addOperationValue(IPPValue::keyword("all"), "requested-attributes");
    EXPECT_EQ(encodedShape(*decoded), "1:3 2:2 6:1");
  }
}

TEST_F(Request, IsNotMadeOfWhatDoesNotDecode) {
  Data data = request->dataRepresentation();
  data.pop_back();
  for (const auto& decoded : readEveryWay(data)) {
    EXPECT_EQ(decoded, nullptr);
  }
  EXPECT_EQ(IPPRequest::initWithDataRepresentation({}), nullptr);
  EXPECT_EQ(IPPRequest::initWithStream(nullptr), nullptr);
  EXPECT_EQ(IPPRequest::initWithFileHandle(-1), nullptr);
}

// --- Time-out ------------------------------------------------------------------------------------

TEST_F(Request, HasATimeoutOfSixtySecondsUntilToldOtherwise) {
  EXPECT_EQ(request->timeoutInterval(), 60.0);
  EXPECT_EQ(kDefaultTimeout, 60.0);
  request->setTimeInterval(0.25);
  EXPECT_EQ(request->timeoutInterval(), 0.25);
}

}  // namespace
}  // namespace platen
