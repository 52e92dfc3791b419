// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPRequest.h"
#include "tests/support/RequestText.h"

namespace platen {
namespace {

using test::encodedText;
using test::received;
using test::url;
using Names = std::vector<std::string>;

const auto* const kQueue = "ipp://localhost/printers/q";

class QueueSettings : public test::RequestTextTest {};

TEST_F(QueueSettings, FollowInTheOperationGroupInTheOrderOfTheCalls) {
  const auto request = IPPRequest::printerAddModifyQueueRequest(url(kQueue));
  request->setDeviceURI(url("socket://10.0.0.7:9100"));
  request->setPrinterIsAcceptingJobs(true);
  request->setPrinterInfo("Second flo\xc3\xb6r");
  request->setPrinterLocation("Room 2");
  request->setPrinterState(3);
  request->setPrinterStateMessage("Ready");
  request->setAllowedUserNames(Names{"anna", "bert"});
  request->setDeniedUserNames(Names{"mallory"});
  request->setPrinterIsShared(false);
  EXPECT_EQ(encodedText(*request),
            requestText("0x4003", targetAndUser("printer-uri", kQueue) +
                                      "01\t\"device-uri\"\t45:\"socket://10.0.0.7:9100\"\n"
                                      "01\t\"printer-is-accepting-jobs\"\t22:true\n"
                                      "01\t\"printer-info\"\t41:\"Second flo\\xc3\\xb6r\"\n"
                                      "01\t\"printer-location\"\t41:\"Room 2\"\n"
                                      "01\t\"printer-state\"\t23:3\n"
                                      "01\t\"printer-state-message\"\t41:\"Ready\"\n"
                                      "01\t\"requesting-user-name-allowed\"\t42:\"anna\"\t"
                                      "42:\"bert\"\n"
                                      "01\t\"requesting-user-name-denied\"\t42:\"mallory\"\n"
                                      "01\t\"printer-is-shared\"\t22:false\n"));
}

TEST_F(QueueSettings, AreReadBackBeforeAndAfterTheyTravel) {
  const auto made = IPPRequest::printerAddModifyQueueRequest(url(kQueue));
  made->setDeviceURI(url("usb:/dev/lp0"));
  made->setPrinterIsAcceptingJobs(true);
  made->setPrinterInfo("Second floor");
  made->setPrinterLocation("Room 2");
  made->setPrinterState(5);
  made->setPrinterStateMessage("Paused");
  made->setAllowedUserNames(Names{"anna", "bert"});
  made->setDeniedUserNames(Names{"mallory"});
  for (const auto& request : {made, received(*made)}) {
    EXPECT_EQ(request->printerURI(), url(kQueue));
    EXPECT_EQ(request->deviceURI(), url("usb:/dev/lp0"));
    EXPECT_TRUE(request->printerIsAcceptingJobs());
    EXPECT_EQ(request->printerInfo(), "Second floor");
    EXPECT_EQ(request->printerLocation(), "Room 2");
    EXPECT_EQ(request->printerState(), 5);
    EXPECT_EQ(request->printerStateMessage(), "Paused");
    EXPECT_EQ(request->allowedUserNames(), (Names{"anna", "bert"}));
    EXPECT_EQ(request->deniedUserNames(), Names{"mallory"}) << "a set of one or a single name";
  }
}

TEST_F(QueueSettings, LoseAnEmptyTextOnTheWay) {
  const auto request = IPPRequest::requestWithId(0x4003);
  request->setPrinterInfo("");
  EXPECT_EQ(request->printerInfo(), "");
  EXPECT_EQ(received(*request)->printerInfo(), std::nullopt);
}

TEST_F(QueueSettings, TellThatAQueueAcceptsNoJobsAsTheyTellNothingOfIt) {
  const auto request = IPPRequest::requestWithId(0x4003);
  EXPECT_FALSE(request->printerIsAcceptingJobs());
  request->setPrinterIsAcceptingJobs(false);
  EXPECT_FALSE(request->printerIsAcceptingJobs());
  EXPECT_EQ(request->attributeValueForKey("printer-is-accepting-jobs"), false);
}

TEST_F(QueueSettings, ShareAQueueOrNot) {
  for (const bool isShared : {true, false}) {
    const auto request = IPPRequest::requestWithId(0x4003);
    request->setPrinterIsShared(isShared);
    const RawValue value = received(*request)->attributeValueForKey("printer-is-shared");
    EXPECT_TRUE(value.asNumber().isBoolean());
    EXPECT_EQ(value, isShared);
  }
}

TEST_F(QueueSettings, CarryEveryStateOf32Bits) {
  for (const std::int32_t state : {0, -1, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    const auto request = IPPRequest::requestWithId(0x4003);
    request->setPrinterState(state);
    EXPECT_EQ(request->printerState(), state);
    EXPECT_EQ(received(*request)->printerState(), state);
  }
}

TEST_F(QueueSettings, AreAppendedWhenSetAgainAndTheFirstOneIsRead) {
  const auto request = IPPRequest::requestWithId(0x4003);
  for (const int round : {1, 2}) {
    const std::string text = std::to_string(round);
    request->setDeviceURI(url("usb:" + text));
    request->setPrinterIsAcceptingJobs(round == 1);
    request->setPrinterInfo(text);
    request->setPrinterLocation(text);
    request->setPrinterState(round);
    request->setPrinterStateMessage(text);
    request->setAllowedUserNames(Names{text});
    request->setDeniedUserNames(Names{text});
    request->setPrinterIsShared(round == 1);
  }
  EXPECT_EQ(request->operationGroup()->attributes().size(), 2U + 2U * 9U);
  EXPECT_EQ(request->deviceURI(), url("usb:1"));
  EXPECT_TRUE(request->printerIsAcceptingJobs());
  EXPECT_EQ(request->printerInfo(), "1");
  EXPECT_EQ(request->printerLocation(), "1");
  EXPECT_EQ(request->printerState(), 1);
  EXPECT_EQ(request->printerStateMessage(), "1");
  EXPECT_EQ(request->allowedUserNames(), Names{"1"});
  EXPECT_EQ(request->deniedUserNames(), Names{"1"});
}

void expectNothing(const IPPRequest& request) {
  EXPECT_EQ(request.printerURI(), std::nullopt);
  EXPECT_EQ(request.deviceURI(), std::nullopt);
  EXPECT_FALSE(request.printerIsAcceptingJobs());
  EXPECT_EQ(request.printerInfo(), std::nullopt);
  EXPECT_EQ(request.printerLocation(), std::nullopt);
  EXPECT_EQ(request.printerState(), std::nullopt);
  EXPECT_EQ(request.printerStateMessage(), std::nullopt);
  EXPECT_EQ(request.allowedUserNames(), std::nullopt);
  EXPECT_EQ(request.deniedUserNames(), std::nullopt);
  EXPECT_EQ(request.jobURI(), std::nullopt);
  EXPECT_EQ(request.subscriptionId(), std::nullopt);
  EXPECT_EQ(request.notifyEvents(), Names{});
}

TEST_F(QueueSettings, AreNothingWhereTheyAreAbsentOrOfAnotherKind) {
  expectNothing(*IPPRequest::requestWithId(0x4003));
  const IPPValue::Pointer others[] = {
      std::make_shared<IPPNoValue>(),
      IPPValue::rangeOfInteger({1, 7}),
      IPPValue::dictionaryWithDictionary({{"printer-info", IPPValue::keyword("x")}}),
      IPPValue::array({IPPValue::integerWithInt(1), std::make_shared<IPPUnsupported>()}),
      nullptr,
  };
  for (const auto& value : others) {
    const auto request = IPPRequest::requestWithId(0x4003);
    for (const auto* name : {"printer-uri", "device-uri", "printer-is-accepting-jobs",
                             "printer-info", "printer-location", "printer-state",
                             "printer-state-message", "requesting-user-name-allowed",
                             "requesting-user-name-denied", "job-uri", "notify-subscription-id"}) {
      request->addOperationValue(value, name);
    }
    request->addSubscriptionValue(value, "notify-events");
    expectNothing(*request);
  }
}

TEST_F(QueueSettings, LeaveOutOfAListOfUsersWhatIsNoName) {
  const auto request = IPPRequest::requestWithId(0x4003);
  request->addOperationValue(
      IPPValue::array({IPPValue::integerWithInt(1), IPPValue::name("anna", "de"),
                       std::make_shared<IPPNoValue>()}),
      "requesting-user-name-allowed");
  EXPECT_EQ(request->allowedUserNames(), Names{"anna"});
}

TEST_F(QueueSettings, RaiseAndStayUnsetWhereTheirSyntaxRefusesThem) {
  const auto request = IPPRequest::requestWithId(0x4003);
  const std::string text(1024, 'x');
  EXPECT_THROW(request->setDeviceURI(url(text)), RangeException);
  EXPECT_THROW(request->setPrinterInfo(text), RangeException);
  EXPECT_THROW(request->setPrinterLocation(text), RangeException);
  EXPECT_THROW(request->setPrinterStateMessage(text), RangeException);
  EXPECT_THROW(request->setAllowedUserNames(Names{"anna", std::string(256, 'x')}), RangeException);
  EXPECT_THROW(request->setDeniedUserNames(Names{std::string(256, 'x')}), RangeException);
  EXPECT_THROW(request->setAllowedUserNames({}), RangeException);
  EXPECT_THROW(request->setDeniedUserNames({}), RangeException);
  EXPECT_EQ(request->operationGroup()->attributes().size(), 2U);
}

}  // namespace
}  // namespace platen
