// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPResponse.h"
#include "tests/support/ResponseOctets.h"

namespace platen {
namespace {

using test::responseWith;
using Names = std::vector<std::string>;

/// A printer group of this name and type, a type being eight hexadecimal digits.
std::string queue(const std::string& name, const std::string& type) {
  return "04 42 <'printer-name'> <'" + name + "'> 23 <'printer-type'> <" + type + ">";
}

IPPResponse::Pointer manyQueues() {
  return responseWith("01 47 <'attributes-charset'> <'utf-8'>" + queue("plain", "0000 0000") +
                      queue("remote", "0000 0002") + queue("class", "0001 0000") +
                      queue("color", "0000 000c") + queue("office", "0042 0004") +
                      queue("everything", "ffff ffff") + "04 42 <'printer-name'> <'untyped'>");
}

TEST(QueueLists, SelectByAnyBitOfTheMaskInMessageOrder) {
  const auto response = manyQueues();
  EXPECT_EQ(response->localPrintQueues(), (Names{"plain", "color", "office", "untyped"}));
  EXPECT_EQ(response->remotePrintQueues(), (Names{"remote", "class", "everything"}));
  EXPECT_EQ(response->colorPrintQueues(), (Names{"color", "everything"}));
  EXPECT_EQ(response->grayscalePrintQueues(), (Names{"color", "office", "everything"}));
  EXPECT_EQ(response->requiringAuthenticationPrintQueues(), (Names{"office", "everything"}));
  EXPECT_EQ(response->defaultPrintQueue(), "office");
}

TEST(QueueLists, AreEmptyWithoutQueues) {
  for (const auto* groups : {"", "02 42 <'printer-name'> <'a'> 23 <'printer-type'> <ffff ffff>"}) {
    const auto response = responseWith(groups);
    EXPECT_EQ(response->localPrintQueues(), Names());
    EXPECT_EQ(response->remotePrintQueues(), Names());
    EXPECT_EQ(response->colorPrintQueues(), Names());
    EXPECT_EQ(response->grayscalePrintQueues(), Names());
    EXPECT_EQ(response->requiringAuthenticationPrintQueues(), Names());
    EXPECT_EQ(response->defaultPrintQueue(), std::nullopt);
  }
}

TEST(QueueLists, CountAQueueAsRemoteThatIsNotSoByItself) {
  const auto response = responseWith(queue("class", "0001 0000"));
  EXPECT_EQ(response->remotePrintQueues(), Names{"class"});
  EXPECT_EQ(response->localPrintQueues(), Names());
  EXPECT_FALSE(response->isPrintQueueRemote());
  EXPECT_TRUE(response->isPrintQueueLocal());
}

TEST(QueueLists, FindTheDefaultQueueThatIsNotSoByItself) {
  const auto response = responseWith(queue("q", "0002 0000"));
  EXPECT_EQ(response->defaultPrintQueue(), "q");
  EXPECT_FALSE(response->isPrintQueueDefault());
}

TEST(QueueLists, FindTheQueueRequiringAuthenticationThatIsNotSoByItself) {
  const auto response = responseWith(queue("q", "0040 0000"));
  EXPECT_EQ(response->requiringAuthenticationPrintQueues(), Names{"q"});
  EXPECT_FALSE(response->isPrintQueueRequiringAuthentication());
}

TEST(QueueLists, PassOverAGroupWithoutANameAndKeepTheOthers) {
  const auto response =
      responseWith(queue("first", "0002 0000") + "04 23 <'printer-type'> <0002 0000> 04" +
                   "04 21 <'printer-name'> <0000 0007> 23 <'printer-type'> <0002 0000>" +
                   queue("", "0002 0000") + queue("last", "0002 0000"));
  EXPECT_EQ(response->localPrintQueues(), (Names{"first", "last"}));
  EXPECT_EQ(response->availablePrintQueues(), (Names{"first", "last"}));
}

TEST(QueueLists, TakeATypeOfAnotherKindForNone) {
  const auto response = responseWith(
      "04 42 <'printer-name'> <'q'> 44 <'printer-type'> <'131074'>"
      "04 42 <'printer-name'> <'r'> 13 <'printer-type'> <>");
  EXPECT_EQ(response->localPrintQueues(), (Names{"q", "r"}));
  EXPECT_EQ(response->defaultPrintQueue(), std::nullopt);
}

TEST(QueueLists, ReadEachTypeWithinItsOwnGroup) {
  const auto response = responseWith(
      "02 23 <'printer-type'> <0000 0002>"
      "04 42 <'printer-name'> <'q'>" +
      queue("r", "0000 0002"));
  EXPECT_EQ(response->localPrintQueues(), Names{"q"});
  EXPECT_EQ(response->remotePrintQueues(), Names{"r"});
}

/// Opens what the lists are made of.
class OpenResponse : public IPPResponse {
 public:
  using IPPResponse::_printerType;
  using IPPResponse::_queuesMatchingPrinterTypeMask;
  using IPPResponse::IPPResponse;
};

TEST(QueueLists, AreMadeOfAnyMaskOf32Bits) {
  const OpenResponse response(0, 1, manyQueues()->ippGroups());
  EXPECT_EQ(response._printerType(), 0U);
  EXPECT_EQ(response._queuesMatchingPrinterTypeMask(0x80000000, false), Names{"everything"});
  EXPECT_EQ(response._queuesMatchingPrinterTypeMask(0, false), Names());
  EXPECT_EQ(response._queuesMatchingPrinterTypeMask(0, true), response.availablePrintQueues());
  EXPECT_EQ(response._queuesMatchingPrinterTypeMask(0xFFFFFFFF, true), (Names{"plain", "untyped"}));
  const OpenResponse all(0, 1, responseWith(queue("q", "ffff ffff"))->ippGroups());
  EXPECT_EQ(all._printerType(), 0xFFFFFFFF);
}

// --- Names, and what belongs to them -------------------------------------------------------------

TEST(AvailableQueues, AreEveryNameWithDuplicates) {
  EXPECT_EQ(manyQueues()->availablePrintQueues(),
            (Names{"plain", "remote", "class", "color", "office", "everything", "untyped"}));
  const auto response = responseWith(queue("a", "0000 0000") + queue("a", "0000 0000") +
                                     "02 36 <'printer-name'> <<'de'> <'b'>>"
                                     "04 42 <'printer-name'> <'c'> 42 <> <'d'>");
  EXPECT_EQ(response->availablePrintQueues(), (Names{"a", "a", "b"})) << "a set is no name";
  EXPECT_EQ(responseWith("04")->availablePrintQueues(), Names());
}

TEST(AvailableQueues, HaveAttributes) {
  const auto response = manyQueues();
  const auto groups = response->printerGroups();
  const Names names = response->availablePrintQueues();
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(response->printQueueAttributes(names[i]), groups[i]->attributes()) << names[i];
  }
  EXPECT_EQ(response->printQueueAttributes("no such queue"), std::nullopt);
  EXPECT_EQ(response->printQueueAttributes("Plain"), std::nullopt) << "letter for letter";
  EXPECT_EQ(response->printQueueAttributes("utf-8"), std::nullopt) << "not in a printer group";
  EXPECT_EQ(response->printQueueAttributes(0x10000), groups[2]->attributes()) << "any value";
}

TEST(AvailableDevices, AreToldByWhatTheySayOfThemselves) {
  const auto response = responseWith(
      "04 41 <'device-info'> <'LaserPrinter 5'> 45 <'device-uri'> <'usb:5'>"
      "04 41 <'device-info'> <'Network'> 45 <'device-uri'> <'socket:'>"
      "04 21 <'device-info'> <0000 0007>");
  EXPECT_EQ(response->availableDevices(), (Names{"LaserPrinter 5", "Network"}));
  EXPECT_EQ(response->deviceAttributes("Network"), response->printerGroups()[1]->attributes());
  EXPECT_EQ(response->deviceAttributes("Scanner"), std::nullopt);
  EXPECT_EQ(responseWith("")->availableDevices(), Names());
}

TEST(PrintQueueUri, IsThatOfTheNamedQueue) {
  const auto response = responseWith(
      "04 42 <'printer-name'> <'a'> 45 <'printer-uri-supported'> <'ipp://host/a'>"
      "04 42 <'printer-name'> <'b'> 45 <'printer-uri-supported'> <'ipp://host/b'>");
  EXPECT_EQ(response->printQueueUri("a"), URL::parse("ipp://host/a"));
  EXPECT_EQ(response->printQueueUri("b"), URL::parse("ipp://host/b"));
  EXPECT_EQ(response->printQueueUri("c"), std::nullopt);
  EXPECT_EQ(response->printQueueUri(""), std::nullopt);
}

TEST(PrintQueueUri, IsTheFirstOfSeveral) {
  const auto response = responseWith(
      "04 42 <'printer-name'> <'a'> 44 <'printer-uri-supported'> <'none'>"
      "   45 <> <'ipps://host/a'> 45 <> <'ipp://host/a'>");
  EXPECT_EQ(response->printQueueUri("a"), URL::parse("ipps://host/a"));
}

TEST(PrintQueueUri, IsNothingWhereTheQueueHasNone) {
  const auto response = responseWith(
      "04 42 <'printer-name'> <'a'>"
      "04 42 <'printer-name'> <'b'> 44 <'printer-uri-supported'> <'ipp://host/b'>"
      "04 42 <'printer-name'> <'c'> 21 <'printer-uri-supported'> <0000 0001> 21 <> <0000 0001>"
      "04 42 <'printer-name'> <'d'> 13 <'printer-uri-supported'> <>"
      "02 42 <'printer-name'> <'e'> 45 <'printer-uri-supported'> <'ipp://host/e'>");
  for (const auto* name : {"a", "b", "c", "d", "e"}) {
    EXPECT_EQ(response->printQueueUri(name), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace platen
