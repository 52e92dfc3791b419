// SPDX-License-Identifier: Apache-2.0

/// What becomes of jobs on a print server.

#include <gmock/gmock.h>

#include <chrono>

#include "tests/support/PrintStory.h"

namespace platen {
namespace {

using test::AskedServer;
using test::kJobCanceled;
using test::kJobCompleted;
using test::kJobHeld;
using test::kJobPending;
using test::kJobProcessing;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::int32_t kPrintURI = 0x0003;
constexpr std::int32_t kSendDocument = 0x0006;
constexpr std::int32_t kSendURI = 0x0007;
constexpr std::int32_t kSetJobAttributes = 0x0014;
constexpr std::int32_t kAuthenticateJob = 0x400E;

class JobStory : public test::PrintStory {
 protected:
  /// Of a job that has ended this server may go on to say that it comes to its end.
  static auto tellsOrIsStopping(const char* reason) {
    return testing::AnyOf(reason, "processing-to-stop-point");
  }
  static IPPRequest::Pointer sending(const URL& job, bool isLast) {
    auto request = onJob(kSendDocument, job);
    request->addOperationValue(IPPValue::booleanWithBool(isLast), "last-document");
    return request;
  }
  /// The jobs of a queue that are not finished, by their numbers.
  [[nodiscard]] RawValue::Array waitingOn(const URL& queue) const {
    return cups().does(IPPRequest::printerJobsRequest(queue))->attributeValuesForKey("job-id");
  }
};

TEST_F(JobStory, AJobIsPrintedAndLookedAt) {
  const URL office = addedQueue("office", "testdev:/0");
  const auto before = std::chrono::system_clock::now() - std::chrono::seconds(2);
  const auto request = IPPRequest::jobPrintRequest(office);
  request->addOperationValue(IPPValue::nameWithoutLanguage("Letter"), "job-name");
  const auto answer = cups().does(request, AskedServer::document(test::smallPDF()));
  const auto job = answer->jobURI();
  ASSERT_TRUE(job.has_value());
  ASSERT_TRUE(answer->jobId().has_value());
  EXPECT_EQ(*job, url(servers().cupsURI() + "jobs/" + std::to_string(*answer->jobId())));
  EXPECT_EQ(IPPURI::jobId(*job), answer->jobId());

  ASSERT_TRUE(reaches(*job, kJobCompleted));
  const auto seen = lookAt(*job);
  EXPECT_EQ(seen->jobId(), answer->jobId());
  EXPECT_EQ(seen->jobName(), "Letter");
  EXPECT_THAT(seen->jobStateReason(), tellsOrIsStopping("job-completed-successfully"));
  EXPECT_EQ(seen->jobPrinterURI(), office);
  EXPECT_TRUE(seen->jobMoreInfoURI().has_value());
  EXPECT_EQ(seen->jobPriority(), 50);
  EXPECT_EQ(seen->jobOriginatingUserName(),
            request->attributeValueForKey("requesting-user-name").asString());
  EXPECT_EQ(seen->jobOriginatingHostName(), "localhost");
  EXPECT_EQ(seen->jobCompletedMediaSheetsCount(), 0);
  EXPECT_FALSE(seen->jobPrinterStateMessage().has_value()) << "it is empty";
  EXPECT_TRUE(seen->jobUUID().isURL());
  EXPECT_GT(seen->jobTimeCreation(), before);
  EXPECT_GE(seen->jobTimeProcessing(), seen->jobTimeCreation());
  EXPECT_GE(seen->jobTimeCompleted(), seen->jobTimeProcessing());
  EXPECT_EQ(contentsOf(servers().cupsDocument(*answer->jobId())), test::smallPDF());
}

TEST_F(JobStory, AJobOnlyValidatedIsNotMade) {
  const URL office = addedQueue("office");
  const auto answer = cups().does(IPPRequest::validateJobRequest(office));
  EXPECT_FALSE(answer->jobURI().has_value());
  EXPECT_FALSE(answer->jobId().has_value());
  EXPECT_THAT(waitingOn(office), ElementsAre());
}

TEST_F(JobStory, AJobIsCreatedAndItsDocumentsAreSentLater) {
  const URL office = addedQueue("office");
  cups().does(IPPRequest::printerPauseRequest(office));
  const auto created = cups().does(IPPRequest::jobCreateRequest(office));
  const URL job = created->jobURI().value();
  EXPECT_EQ(created->jobState(), kJobHeld);
  EXPECT_EQ(created->jobStateReason(), "job-incoming");
  const Data first = test::noise(1000);
  const Data second = test::noise(2000);
  const auto half = cups().does(sending(job, false), AskedServer::document(first));
  EXPECT_EQ(half->jobId(), created->jobId());
  cups().does(sending(job, true), AskedServer::document(second));
  EXPECT_EQ(lookAt(job)->jobState(), kJobPending);
  EXPECT_EQ(contentsOf(servers().cupsDocument(*created->jobId(), 1)), first);
  EXPECT_EQ(contentsOf(servers().cupsDocument(*created->jobId(), 2)), second);
}

TEST_F(JobStory, AJobIsHeldReleasedAndRestarted) {
  const URL office = addedQueue("office");
  cups().does(IPPRequest::printerPauseRequest(office));
  const URL job = printedOn(office)->jobURI().value();
  cups().does(IPPRequest::jobHoldRequest(job));
  EXPECT_EQ(lookAt(job)->jobState(), kJobHeld);
  EXPECT_EQ(lookAt(job)->jobStateReason(), "job-hold-until-specified");
  EXPECT_EQ(lookAt(job)->jobTimeCompleted(), Date{}) << "it is not";
  cups().does(IPPRequest::printerResumeRequest(office));
  EXPECT_EQ(lookAt(job)->jobState(), kJobHeld);

  cups().does(IPPRequest::jobReleaseRequest(job));
  ASSERT_TRUE(reaches(job, kJobCompleted));
  const auto first = lookAt(job)->jobTimeCompleted();
  cups().does(IPPRequest::printerPauseRequest(office));
  cups().does(IPPRequest::jobRestartRequest(job));
  EXPECT_EQ(lookAt(job)->jobState(), kJobPending);
  cups().does(IPPRequest::printerResumeRequest(office));
  ASSERT_TRUE(reaches(job, kJobCompleted));
  EXPECT_GE(lookAt(job)->jobTimeCompleted(), first);
}

TEST_F(JobStory, AJobIsMovedToAnotherQueue) {
  const URL office = addedQueue("office");
  const URL cellar = addedQueue("cellar");
  const URL job = heldOn(office)->jobURI().value();
  EXPECT_EQ(lookAt(job)->jobPrinterURI(), office);
  cups().does(IPPRequest::jobMoveRequest(job, cellar));
  EXPECT_EQ(lookAt(job)->jobPrinterURI(), cellar);
  EXPECT_THAT(waitingOn(office), ElementsAre());
  EXPECT_EQ(waitingOn(cellar).size(), 1U);
  cups().answers(IPPRequest::jobMoveRequest(job, queue("attic")), kIPPStatusClientErrorNotFound,
                 "no such queue to move to");
}

TEST_F(JobStory, AJobIsCanceledWhileItIsPrinted) {
  const URL slow = addedQueue("slow", "testdev:/20");
  const URL job = printedOn(slow)->jobURI().value();
  ASSERT_TRUE(reaches(job, kJobProcessing));
  EXPECT_EQ(lookAt(job)->jobStateReason(), "job-printing");
  EXPECT_EQ(lookAt(job)->jobMediaProgress(), 0);
  cups().does(IPPRequest::jobCancelRequest(job));
  ASSERT_TRUE(reaches(job, kJobCanceled));
  EXPECT_THAT(lookAt(job)->jobStateReason(), tellsOrIsStopping("job-canceled-by-user"));
  EXPECT_GE(lookAt(job)->jobTimeCompleted(), lookAt(job)->jobTimeProcessing());
}

TEST_F(JobStory, TheAttributesOfAJobAreSet) {
  const URL job = heldOn(addedQueue("office"))->jobURI().value();
  const auto setting = onJob(kSetJobAttributes, job);
  addJobValue(*setting, IPPValue::integerWithInt(77), "job-priority");
  addJobValue(*setting, IPPValue::nameWithoutLanguage("Renamed"), "job-name");
  cups().does(setting);
  EXPECT_EQ(lookAt(job)->jobPriority(), 77);
  EXPECT_EQ(lookAt(job)->jobName(), "Renamed");
}

TEST_F(JobStory, AJobThatWaitsForCredentialsIsAuthenticated) {
  const URL job = heldOn(addedQueue("office"))->jobURI().value();
  const auto authenticating = onJob(kAuthenticateJob, job);
  addJobValue(*authenticating, IPPValue::textWithoutLanguage("secret"), "auth-info");
  cups().does(authenticating);
  EXPECT_TRUE(reaches(job, kJobCompleted)) << "it was released";

  const URL other = heldOn(queue("office"))->jobURI().value();
  cups().answers(onJob(kAuthenticateJob, other), kIPPStatusClientErrorNotAuthorized,
                 "no credentials in the request");
}

TEST_F(JobStory, TheJobsOfAQueueAreListedAndPurged) {
  const URL office = addedQueue("office");
  const auto first = heldOn(office);
  const auto second = heldOn(office);
  const auto listing = IPPRequest::printerJobsRequest(office);
  listing->setRequestedAttributes(Names{"job-uuid", "job-id", "job-name", "job-uri"});
  const auto list = cups().does(listing);
  ASSERT_EQ(list->availableJobs().size(), 2U);
  const auto uuid = lookAt(second->jobURI().value())->jobUUID();
  EXPECT_THAT(list->availableJobs(), testing::Contains(uuid));
  const auto attributes = list->jobAttributes(uuid);
  ASSERT_TRUE(attributes.has_value());
  EXPECT_THAT(*attributes, testing::Contains(testing::Pointee(testing::ResultOf(
                               [](const IPPAttribute& each) { return each.ippValue()->value(); },
                               RawValue(second->jobURI().value())))));
  EXPECT_FALSE(list->jobAttributes(RawValue("urn:uuid:none")).has_value());

  cups().does(IPPRequest::printerPurgeJobsRequest(office));
  EXPECT_THAT(waitingOn(office), ElementsAre());
  cups().answers(IPPRequest::jobAttributesRequest(first->jobURI().value()),
                 kIPPStatusClientErrorNotFound, "the job was purged");
}

TEST_F(JobStory, TheJobsOfAllQueuesAreListed) {
  const auto first = heldOn(addedQueue("office"));
  const auto second = heldOn(addedQueue("cellar"));
  const auto list = cups().does(IPPRequest::serverAvailableJobsRequest());
  EXPECT_THAT(
      list->attributeValuesForKey("job-uri"),
      UnorderedElementsAre(RawValue(first->jobURI().value()), RawValue(second->jobURI().value())));
}

TEST_F(JobStory, AJobAtTheRootOfTheServerIsNotKnownButTheURIThatTheServerGaveIs) {
  const URL office = addedQueue("office");
  const auto held = heldOn(office);
  const std::string root = "localhost:" + std::to_string(servers().cupsPort());
  const URL job = IPPURI::namedServerJobURI(root, held->jobId()).value();
  for (const auto& request :
       {IPPRequest::jobAttributesRequest(job), IPPRequest::jobHoldRequest(job),
        IPPRequest::jobReleaseRequest(job), IPPRequest::jobRestartRequest(job),
        IPPRequest::jobMoveRequest(job, office), IPPRequest::jobCancelRequest(job),
        onJob(kSetJobAttributes, job), onJob(kAuthenticateJob, job), sending(job, true)}) {
    const auto refusal = cups().answers(request, kIPPStatusClientErrorBadRequest,
                                        "this server has its jobs below /jobs/");
    EXPECT_TRUE(refusal.response->clientError());
  }
  cups().answers(IPPRequest::jobAvailableSubscriptionsRequest(job), kIPPStatusClientErrorNotFound,
                 "this server has its jobs below /jobs/");
  EXPECT_EQ(lookAt(held->jobURI().value())->jobState(), kJobHeld) << "nothing has happened to it";
}

TEST_F(JobStory, ADocumentByReferenceIsNotOffered) {
  const URL office = addedQueue("office");
  const auto printing = onPrinter(kPrintURI, office);
  printing->addOperationValue(IPPValue::uri(url("http://localhost/letter.pdf")), "document-uri");
  cups().answers(printing, kIPPStatusServerErrorOperationNotSupported, "not offered");

  const URL job = cups().does(IPPRequest::jobCreateRequest(office))->jobURI().value();
  const auto sendingURI = onJob(kSendURI, job);
  sendingURI->addOperationValue(IPPValue::uri(url("http://localhost/letter.pdf")), "document-uri");
  sendingURI->addOperationValue(IPPValue::booleanWithBool(true), "last-document");
  const auto refusal =
      cups().answers(sendingURI, kIPPStatusServerErrorOperationNotSupported, "not offered");
  EXPECT_TRUE(refusal.response->serverError());
  EXPECT_FALSE(refusal.response->allowsRequestResubmission());
}

}  // namespace
}  // namespace platen
