// SPDX-License-Identifier: Apache-2.0

/// A printer that is an IPP server itself, without queues and administration.

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/support/PrintStory.h"

namespace platen {
namespace {

using test::AskedServer;
using test::kJobCompleted;
using testing::Contains;
using testing::ElementsAre;

constexpr std::int32_t kPrintURI = 0x0003;
constexpr std::int32_t kSendDocument = 0x0006;
constexpr std::int32_t kSendURI = 0x0007;

/// What it offers of the operations in the library's table.
constexpr std::int32_t kOffered[] = {0x0002, 0x0003, 0x0004, 0x0005, 0x0006,
                                     0x0007, 0x0008, 0x0009, 0x000A, 0x000B};

class PrinterStory : public test::PrintStory {
 protected:
  [[nodiscard]] URL idlePrinter() const {
    servers().waitForIppeveIdle();
    return printer().target();
  }
  [[nodiscard]] IPPResponse::Pointer lookAtPrinted(const URL& job) const {
    return printer().does(IPPRequest::jobAttributesRequest(job));
  }
  [[nodiscard]] bool becomes(const URL& job, std::int32_t state) const {
    return becomesTrue([&] { return lookAtPrinted(job)->jobState() == state; });
  }
};

TEST_F(PrinterStory, APrinterIsLookedAtAndPrintsAJob) {
  const URL target = idlePrinter();
  const auto seen = printer().does(IPPRequest::printerAttributesRequest(target));
  EXPECT_EQ(seen->availablePrintQueues(), Names{"Test Printer"});
  EXPECT_EQ(seen->printerState(), test::kPrinterIdle);
  EXPECT_EQ(seen->printerStateReasons(), Names{"none"});
  EXPECT_TRUE(seen->isAcceptingJobs());
  EXPECT_EQ(seen->printQueueUri("Test Printer")->path(), target.path());
  EXPECT_EQ(seen->localPrintQueues(), Names{"Test Printer"}) << "it tells no printer-type";
  EXPECT_THAT(seen->colorPrintQueues(), ElementsAre());

  printer().does(IPPRequest::validateJobRequest(target));
  const auto answer =
      printer().does(IPPRequest::jobPrintRequest(target), AskedServer::document(test::smallPDF()));
  const URL job = answer->jobURI().value();
  EXPECT_FALSE(IPPURI::printQueueName(job).has_value());
  EXPECT_EQ(IPPURI::jobId(job), answer->jobId());
  ASSERT_TRUE(becomes(job, kJobCompleted));
  const auto done = lookAtPrinted(job);
  EXPECT_EQ(done->jobId(), answer->jobId());
  EXPECT_EQ(done->jobStateReason(), "job-completed-successfully");
  EXPECT_EQ(done->jobPrinterURI()->path(), target.path());
  EXPECT_TRUE(done->jobUUID().isURL());
  servers().waitForIppeveIdle();
  EXPECT_EQ(contentsOf(servers().ippeveDocument(*answer->jobId())), test::smallPDF());
  const auto listing = IPPRequest::printerJobsRequest(target);
  listing->addOperationValue(IPPValue::keyword("completed"), "which-jobs");
  EXPECT_THAT(printer().does(listing)->attributeValuesForKey("job-uri"), Contains(RawValue(job)));
}

TEST_F(PrinterStory, AJobIsCreatedAndItsDocumentIsSent) {
  const auto created = printer().does(IPPRequest::jobCreateRequest(idlePrinter()));
  const URL job = created->jobURI().value();
  const auto sending = onJob(kSendDocument, job);
  sending->addOperationValue(IPPValue::booleanWithBool(true), "last-document");
  printer().does(sending, AskedServer::document(test::smallPDF()));
  EXPECT_TRUE(becomes(job, kJobCompleted));
  servers().waitForIppeveIdle();
  EXPECT_EQ(contentsOf(servers().ippeveDocument(*created->jobId())), test::smallPDF());
}

TEST_F(PrinterStory, AJobIsCanceled) {
  const auto created = printer().does(IPPRequest::jobCreateRequest(idlePrinter()));
  const URL job = created->jobURI().value();
  printer().does(IPPRequest::jobCancelRequest(job));
  EXPECT_EQ(lookAtPrinted(job)->jobState(), test::kJobCanceled);
  EXPECT_EQ(lookAtPrinted(job)->jobStateReason(), "job-canceled-by-user");
  const auto again = printer().answers(IPPRequest::jobCancelRequest(job),
                                       kIPPStatusClientErrorNotPossible, "the job is finished");
  EXPECT_TRUE(again.response->statusMessage().has_value());
}

TEST_F(PrinterStory, ADocumentIsFetchedByReference) {
  const auto path = servers().ippeveDocuments().parent_path() / "referred.pdf";
  const Data document = test::smallPDF();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(document.data()),
             static_cast<std::streamsize>(document.size()));
  const auto reference = IPPValue::uri(url("file://" + path.string()));
  const auto printing = onPrinter(kPrintURI, idlePrinter());
  printing->addOperationValue(reference, "document-uri");
  printing->addOperationValue(IPPValue::mimeMediaType("application/pdf"), "document-format");
  const auto printed = printer().does(printing);
  EXPECT_TRUE(becomes(printed->jobURI().value(), kJobCompleted));
  servers().waitForIppeveIdle();
  EXPECT_EQ(contentsOf(servers().ippeveDocument(*printed->jobId())), document);

  const auto created = printer().does(IPPRequest::jobCreateRequest(idlePrinter()));
  const auto sending = onJob(kSendURI, created->jobURI().value());
  sending->addOperationValue(IPPValue::booleanWithBool(true), "last-document");
  sending->addOperationValue(reference, "document-uri");
  sending->addOperationValue(IPPValue::mimeMediaType("application/pdf"), "document-format");
  printer().does(sending);
  EXPECT_TRUE(becomes(created->jobURI().value(), kJobCompleted));
  servers().waitForIppeveIdle();
  EXPECT_EQ(contentsOf(servers().ippeveDocument(*created->jobId())), document);
}

TEST_F(PrinterStory, WhatAPrinterDoesNotOfferIsRefused) {
  for (const auto& [operation, name] : IPPRequest::operationIdToNameSpec()) {
    if (std::find(std::begin(kOffered), std::end(kOffered), operation) != std::end(kOffered)) {
      continue;
    }
    const auto refusal =
        printer().answers(onPrinter(operation, printer().target()),
                          kIPPStatusServerErrorOperationNotSupported, "not offered");
    EXPECT_TRUE(refusal.response->serverError()) << name;
    EXPECT_FALSE(refusal.response->allowsRequestResubmission()) << name;
  }
}

TEST_F(PrinterStory, ARequestThatNamesNoPrinterIsBad) {
  for (const auto& request : {IPPRequest::serverAvailablePrintersRequest(),
                              IPPRequest::serverAvailableDevicesRequest()}) {
    printer().answers(request, kIPPStatusClientErrorBadRequest, "no target in the request");
  }
}

}  // namespace
}  // namespace platen
