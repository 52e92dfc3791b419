// SPDX-License-Identifier: Apache-2.0

/// What print servers have against bad requests, and how that is told.

#include <gmock/gmock.h>

#include "platen/HTTP.h"
#include "platen/IPPNullValue.h"
#include "tests/support/PrintStory.h"

namespace platen {
namespace {

using test::AskedServer;
using test::kJobCompleted;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t kPrintJob = 0x0002;
constexpr std::int32_t kSetJobAttributes = 0x0014;
constexpr std::int32_t kGetNotifications = 0x001C;

class BadInputStory : public test::PrintStory {
 protected:
  static void expectNotFound(const IPPRequest::Pointer& request, const std::string& why,
                             const std::string& message) {
    const auto with = request->ippOperationId() == kPrintJob
                          ? AskedServer::document(test::smallPDF())
                          : AskedServer::With{};
    const auto refusal = cups().answers(request, kIPPStatusClientErrorNotFound, why, with).response;
    EXPECT_TRUE(refusal->clientError());
    EXPECT_FALSE(refusal->allowsRequestResubmission());
    EXPECT_FALSE(refusal->printerState().has_value());
    EXPECT_FALSE(refusal->printerAttributes().has_value());
    EXPECT_FALSE(refusal->isAcceptingJobs());
    EXPECT_EQ(refusal->statusMessage(), message) << request->ippOperationCodename();
  }
};

TEST_F(BadInputStory, AQueueThatDoesNotExistIsNotFoundByAnyOperation) {
  const URL missing = queue("missing");
  const auto subscribing =
      IPPRequest::printerCreateSubscriptionRequest(missing, Names{"job-created"});
  subscribing->setIPPGetDeliverySchema();
  for (const auto& request :
       {IPPRequest::printerAttributesRequest(missing), IPPRequest::printerJobsRequest(missing),
        IPPRequest::printerPauseRequest(missing), IPPRequest::printerResumeRequest(missing),
        IPPRequest::printerPurgeJobsRequest(missing), IPPRequest::printerSetDefaultRequest(missing),
        IPPRequest::printerRemoveQueueRequest(missing), IPPRequest::validateJobRequest(missing),
        IPPRequest::jobCreateRequest(missing), IPPRequest::jobPrintRequest(missing), subscribing,
        IPPRequest::printerAvailableSubscriptionsRequest(missing)}) {
    expectNotFound(request, "no such queue", "The printer or class does not exist.");
  }
}

TEST_F(BadInputStory, ASubscriptionThatDoesNotExistIsNotFoundWhateverTheQueue) {
  const URL missing = queue("missing");
  for (const auto& request : {IPPRequest::subscriptionAttributesRequest(1, missing),
                              IPPRequest::subscriptionReNewRequest(1, missing),
                              IPPRequest::subscriptionCancelRequest(1, missing),
                              IPPRequest::subscriptionGetNotificationsRequest(1, missing)}) {
    expectNotFound(request, "no such subscription", "Subscription #1 does not exist.");
  }
}

// A server tells of a value that it does not support by the value, and of an attribute that it does
// not support at all by an out-of-band value (RFC 8011 §4.1.7). Only the latter is an error's to
// name.
TEST_F(BadInputStory, AValueThatIsNotSupportedComesBackWithTheAnswer) {
  servers().waitForIppeveIdle();
  const auto request = IPPRequest::jobPrintRequest(printer().target());
  addJobValue(*request, IPPValue::keyword("on-velvet"), "media");
  const auto refusal =
      printer().answers(request, kIPPStatusClientErrorAttributesOrValuesNotSupported,
                        "no such medium", AskedServer::document(test::smallPDF()));
  const auto groups = refusal.response->ippGroupsWithName(kIPPUnsupportedAttributesGroupName);
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0]->attributeValueForKey("media"), "on-velvet");
  EXPECT_THAT(refusal.error->names(IPPErrorUnsupportedAttributeNames), IsEmpty());
}

TEST_F(BadInputStory, AnAttributeWithoutAnyValueIsNamedInTheError) {
  servers().waitForIppeveIdle();
  const std::pair<IPPValue::Pointer, std::string_view> cases[] = {
      {std::make_shared<const IPPUnsupported>(), IPPErrorUnsupportedAttributeNames},
      {std::make_shared<const IPPValue>(), IPPErrorUnknownAttributeValues},
      {std::make_shared<const IPPNoValue>(), IPPErrorNoValueAttributes},
  };
  for (const auto& [value, key] : cases) {
    const auto request = IPPRequest::jobPrintRequest(printer().target());
    addJobValue(*request, value, "media");
    const auto refusal =
        printer().answers(request, kIPPStatusClientErrorAttributesOrValuesNotSupported,
                          "no such medium", AskedServer::document(test::smallPDF()));
    EXPECT_THAT(refusal.error->names(key), ElementsAre("media")) << key;
    EXPECT_EQ(refusal.error->userInfo().size(), 2U) << "that and the description";
  }
}

TEST_F(BadInputStory, AnAttributeThatCannotBeSetComesBackWithTheAnswer) {
  const URL job = heldOn(addedQueue("office"))->jobURI().value();
  const auto setting = onJob(kSetJobAttributes, job);
  addJobValue(*setting, IPPValue::integerWithInt(5), "job-media-sheets-completed");
  const auto refusal = cups().answers(setting, kIPPStatusClientErrorAttributesNotSettable,
                                      "the server alone counts the sheets");
  const auto groups = refusal.response->ippGroupsWithName(kIPPUnsupportedAttributesGroupName);
  ASSERT_EQ(groups.size(), 1U);
  EXPECT_EQ(groups[0]->attributeValueForKey("job-media-sheets-completed"), 5);
  EXPECT_EQ(lookAt(job)->jobCompletedMediaSheetsCount(), 0);
}

TEST_F(BadInputStory, AJobThatIsFinishedIsLeftAsItIs) {
  const URL office = addedQueue("office");
  const URL job = printedOn(office)->jobURI().value();
  ASSERT_TRUE(reaches(job, kJobCompleted));
  for (const auto& request :
       {IPPRequest::jobCancelRequest(job), IPPRequest::jobHoldRequest(job),
        IPPRequest::jobReleaseRequest(job), IPPRequest::jobMoveRequest(job, office)}) {
    cups().answers(request, kIPPStatusClientErrorNotPossible, "the job is finished");
  }
  const auto setting = onJob(kSetJobAttributes, job);
  addJobValue(*setting, IPPValue::integerWithInt(77), "job-priority");
  cups().answers(setting, kIPPStatusClientErrorNotPossible, "the job is finished");
  EXPECT_EQ(lookAt(job)->jobState(), kJobCompleted);
  EXPECT_EQ(lookAt(job)->jobPriority(), 50);
}

TEST_F(BadInputStory, AJobThatDoesNotExistIsNotFound) {
  const URL job = url(servers().cupsURI() + "jobs/99999");
  for (const auto& request :
       {IPPRequest::jobAttributesRequest(job), IPPRequest::jobCancelRequest(job),
        IPPRequest::jobHoldRequest(job), IPPRequest::jobReleaseRequest(job),
        IPPRequest::jobRestartRequest(job)}) {
    const auto refusal =
        cups().answers(request, kIPPStatusClientErrorNotFound, "no such job").response;
    EXPECT_FALSE(refusal->jobState().has_value());
    EXPECT_FALSE(refusal->jobId().has_value());
    EXPECT_TRUE(refusal->jobUUID().isAbsent());
    EXPECT_EQ(refusal->jobTimeCreation(), Date{});
  }
}

TEST_F(BadInputStory, ASubscriptionThatDoesNotExistIsNotFound) {
  const URL office = addedQueue("office");
  for (const auto& request : {IPPRequest::subscriptionAttributesRequest(99, office),
                              IPPRequest::subscriptionReNewRequest(99, office),
                              IPPRequest::subscriptionCancelRequest(99, office),
                              IPPRequest::subscriptionGetNotificationsRequest(99, office)}) {
    const auto refusal =
        cups().answers(request, kIPPStatusClientErrorNotFound, "no such subscription").response;
    EXPECT_FALSE(refusal->subscriptionId().has_value());
    EXPECT_FALSE(refusal->notifyEvents().has_value());
    EXPECT_EQ(refusal->notifyGetInternal(), 0);
  }
  const auto job = heldOn(office);
  struct {
    [[nodiscard]] std::int32_t jobId() const { return 99999; }
  } noJob;
  const auto request =
      IPPRequest::jobCreateSubscriptionRequest(noJob, office, Names{"job-completed"});
  request->setIPPGetDeliverySchema();
  cups().answers(request, kIPPStatusClientErrorNotFound, "no such job");
}

TEST_F(BadInputStory, AnEmptyDocumentMakesNoJob) {
  const URL office = addedQueue("office");
  const auto refusal =
      cups().answers(IPPRequest::jobPrintRequest(office), kIPPStatusClientErrorBadRequest,
                     "no document", AskedServer::document({}));
  EXPECT_FALSE(refusal.response->jobURI().has_value());
  EXPECT_THAT(cups().does(IPPRequest::printerJobsRequest(office))->jobGroups(), IsEmpty());
}

// This server closes the connection in place of an answer.
TEST_F(BadInputStory, AnEmptyDocumentForAPrinterThatHangsUpIsATransportFailure) {
  servers().waitForIppeveIdle();
  const URL target = printer().target();
  std::shared_ptr<const Error> error;
  EXPECT_EQ(
      IPPRequest::jobPrintRequest(target)->performOn(target, InputStream::withData({}), &error),
      nullptr);
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(error->domain(), kHTTPClientErrorDomain);
  EXPECT_EQ(error->code(), static_cast<int>(HTTPErrorCode::networkConnectionLost));
  printer().does(IPPRequest::printerAttributesRequest(target));
}

TEST_F(BadInputStory, OneUnknownSubscriptionAmongSeveralRefusesAll) {
  const URL office = addedQueue("office");
  const auto subscribing =
      IPPRequest::printerCreateSubscriptionRequest(office, Names{"job-created"});
  subscribing->setIPPGetDeliverySchema();
  const auto id = cups().does(subscribing)->subscriptionId().value();
  const auto polling = onPrinter(kGetNotifications, office);
  polling->addOperationValue(
      IPPValue::array(IPPValueList{IPPValue::integerWithInt(id), IPPValue::integerWithInt(9999)}),
      "notify-subscription-ids");
  const auto refusal =
      cups().answers(polling, kIPPStatusClientErrorNotFound, "no such subscription");
  EXPECT_THAT(refusal.response->notificationEventsGroups(), IsEmpty());
}

TEST_F(BadInputStory, AServerThatIsNotThereGivesATransportFailure) {
  URL gone = queue("office");
  {
    const test::PrintServers ended;
    gone = url(ended.cupsURI() + "printers/office");
  }
  for (const auto& request :
       {IPPRequest::printerAttributesRequest(gone), IPPRequest::serverAvailablePrintersRequest(),
        IPPRequest::jobPrintRequest(gone)}) {
    std::shared_ptr<const Error> error;
    EXPECT_EQ(request->performOn(gone, InputStream::withData(test::smallPDF()), &error), nullptr);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->domain(), kHTTPClientErrorDomain);
    EXPECT_EQ(error->code(), static_cast<int>(HTTPErrorCode::cannotConnectToHost));
  }
}

TEST_F(BadInputStory, ARequestWithoutATargetIsBad) {
  for (const std::int32_t operation : {0x0002, 0x000B, 0x0010, 0x0019, 0x001C, 0x4003}) {
    cups().answers(IPPRequest::requestWithId(operation), kIPPStatusClientErrorBadRequest,
                   "no target in the request");
  }
}

}  // namespace
}  // namespace platen
