// SPDX-License-Identifier: Apache-2.0

/// The life of a queue of a print server.

#include <gmock/gmock.h>

#include "tests/support/PrintStory.h"

namespace platen {
namespace {

using test::kPrinterIdle;
using test::kPrinterStopped;
using testing::ElementsAre;

constexpr std::int32_t kEnablePrinter = 0x0022;
constexpr std::int32_t kDisablePrinter = 0x0023;
constexpr std::int32_t kAcceptJobs = 0x4008;
constexpr std::int32_t kRejectJobs = 0x4009;

class QueueStory : public test::PrintStory {
 protected:
  [[nodiscard]] IPPResponse::Pointer look(const URL& queue) const {
    return cups().does(IPPRequest::printerAttributesRequest(queue));
  }
};

TEST_F(QueueStory, AQueueIsAddedWithItsSettingsLookedAtAndRemoved) {
  const URL office = queue("office");
  const auto adding = IPPRequest::printerAddModifyQueueRequest(office);
  adding->setDeviceURI(url("testdev:/0"));
  adding->setPrinterInfo("Printer of the office");
  adding->setPrinterLocation("Second floor");
  adding->setPrinterState(kPrinterIdle);
  adding->setPrinterStateMessage("Fresh toner");
  adding->setPrinterIsAcceptingJobs(true);
  adding->setPrinterIsShared(false);
  cups().does(adding);

  const auto seen = look(office);
  EXPECT_EQ(seen->availablePrintQueues(), Names{"office"});
  EXPECT_EQ(seen->printQueueUri("office"), office);
  EXPECT_EQ(seen->printerState(), kPrinterIdle);
  EXPECT_EQ(seen->printerStateMessage(), "Fresh toner");
  EXPECT_EQ(seen->printerStateReasons(), Names{"none"});
  EXPECT_TRUE(seen->isAcceptingJobs());
  EXPECT_TRUE(seen->isPrintQueueLocal());
  EXPECT_FALSE(seen->isPrintQueueRemote());
  EXPECT_EQ(seen->localPrintQueues(), Names{"office"});
  EXPECT_THAT(seen->remotePrintQueues(), ElementsAre());
  const auto attributes = seen->printerAttributes();
  ASSERT_TRUE(attributes.has_value());
  EXPECT_EQ(*attributes->find("printer-info"), "Printer of the office");
  EXPECT_EQ(*attributes->find("printer-location"), "Second floor");
  EXPECT_EQ(*attributes->find("device-uri"), url("testdev:/0"));
  EXPECT_EQ(*attributes->find("printer-is-shared"), false);

  cups().does(IPPRequest::printerRemoveQueueRequest(office));
  cups().answers(IPPRequest::printerAttributesRequest(office), kIPPStatusClientErrorNotFound,
                 "no such queue");
}

TEST_F(QueueStory, AQueueIsChangedByAddingItAgain) {
  const URL office = addedQueue("office");
  const auto changing = IPPRequest::printerAddModifyQueueRequest(office);
  changing->setPrinterLocation("In the cellar");
  changing->setPrinterIsAcceptingJobs(false);
  cups().does(changing);
  const auto seen = look(office);
  EXPECT_EQ(seen->attributeValueForKey("printer-location"), "In the cellar");
  EXPECT_FALSE(seen->isAcceptingJobs());
  EXPECT_EQ(seen->printerState(), kPrinterIdle) << "what was not named stays";
}

TEST_F(QueueStory, AQueueIsMadeTheDefault) {
  cups().answers(IPPRequest::serverDefaultPrintQueueRequest(), kIPPStatusClientErrorNotFound,
                 "no default queue");
  const URL office = addedQueue("office");
  const URL cellar = addedQueue("cellar");
  cups().does(IPPRequest::printerSetDefaultRequest(cellar));
  const auto answer = cups().does(IPPRequest::serverDefaultPrintQueueRequest());
  EXPECT_EQ(answer->availablePrintQueues(), Names{"cellar"});
  EXPECT_EQ(answer->defaultPrintQueue(), "cellar");
  EXPECT_EQ(answer->printQueueUri("cellar"), cellar);
  EXPECT_FALSE(answer->isPrintQueueDefault()) << "which is never told of one queue";

  cups().does(IPPRequest::printerSetDefaultRequest(office));
  const auto list = cups().does(IPPRequest::serverAvailablePrintersRequest());
  EXPECT_THAT(list->availablePrintQueues(), ElementsAre("cellar", "office"));
  EXPECT_EQ(list->defaultPrintQueue(), "office");
}

TEST_F(QueueStory, AQueueIsPausedAndResumed) {
  const URL office = addedQueue("office");
  cups().does(IPPRequest::printerPauseRequest(office));
  const auto paused = look(office);
  EXPECT_EQ(paused->printerState(), kPrinterStopped);
  EXPECT_EQ(paused->printerStateReasons(), Names{"paused"});
  EXPECT_TRUE(paused->isAcceptingJobs()) << "it takes jobs and does not print them";
  const auto job = printedOn(office)->jobURI().value();
  EXPECT_EQ(lookAt(job)->jobState(), test::kJobPending);

  cups().does(IPPRequest::printerResumeRequest(office));
  EXPECT_TRUE(reaches(job, test::kJobCompleted));
  EXPECT_TRUE(becomesTrue([&] { return look(office)->printerState() == kPrinterIdle; }));
  EXPECT_EQ(look(office)->printerStateReasons(), Names{"none"});
}

TEST_F(QueueStory, AQueueIsClosedToJobsAndOpenedAgain) {
  const URL office = addedQueue("office");
  for (const auto& [closing, opening] :
       {std::pair{kRejectJobs, kAcceptJobs}, {kDisablePrinter, kEnablePrinter}}) {
    const auto request = onPrinter(closing, office);
    request->setPrinterStateMessage("Being moved");
    cups().does(request);
    EXPECT_FALSE(look(office)->isAcceptingJobs());
    EXPECT_EQ(look(office)->printerState(), kPrinterIdle);
    const auto refusal = cups().answers(
        IPPRequest::jobPrintRequest(office), kIPPStatusServerErrorNotAcceptingJobs,
        "the queue is closed to jobs", test::AskedServer::document(test::smallPDF()));
    EXPECT_TRUE(refusal.response->serverError());
    EXPECT_FALSE(refusal.response->jobURI().has_value());
    cups().does(onPrinter(opening, office));
    EXPECT_TRUE(look(office)->isAcceptingJobs());
    EXPECT_TRUE(reaches(printedOn(office)->jobURI().value(), test::kJobCompleted));
    EXPECT_TRUE(becomesTrue([&] { return look(office)->printerState() == kPrinterIdle; }));
  }
}

// Who may print is the one setting that this server takes only in a printer group. As an operation
// attribute, which it is here by design, it has no effect and no complaint comes of it.
TEST_F(QueueStory, AQueueTakesJobsOnlyOfTheUsersItIsFor) {
  const URL office = addedQueue("office");
  const auto forOthers = IPPRequest::printerAddModifyQueueRequest(office);
  forOthers->setAllowedUserNames(Names{"nobody-here", "nobody-there"});
  forOthers->setDeniedUserNames(Names{"me"});
  cups().does(forOthers);
  EXPECT_TRUE(printedOn(office)->jobURI().has_value());

  const auto inPrinterGroup = IPPRequest::printerAddModifyQueueRequest(office);
  inPrinterGroup->addGroup(IPPAttributeGroup::printerGroup());
  inPrinterGroup->addNamedValues(
      {{"requesting-user-name-allowed", IPPValue::nameWithoutLanguage("nobody-here")}},
      kIPPPrinterGroupName);
  cups().does(inPrinterGroup);
  const auto refusal = cups().answers(
      IPPRequest::jobPrintRequest(office), kIPPStatusClientErrorNotAuthorized,
      "the queue is not for this user", test::AskedServer::document(test::smallPDF()));
  EXPECT_FALSE(refusal.response->jobURI().has_value());
}

TEST_F(QueueStory, AQueueIsNotAddedForADeviceOfAnUnknownKind) {
  const URL odd = queue("odd");
  const auto refusal = cups().answers(addingRequest(odd, "no-such-scheme:/device"),
                                      kIPPStatusClientErrorNotPossible, "no such kind of device");
  EXPECT_THAT(refusal.response->statusMessage().value_or(""), testing::HasSubstr("no-such-scheme"));
}

}  // namespace
}  // namespace platen
