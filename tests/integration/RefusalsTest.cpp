// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "platen/HTTP.h"
#include "platen/IPPConstants.h"
#include "tests/support/RealServers.h"

namespace platen {
namespace {

class Refusals : public test::RealServers {};

TEST_F(Refusals, OfAQueueThatIsNotThereAreResponseAndErrorTogether) {
  for (const auto& exchange :
       {attributesOf(queue("missing")), print(queue("missing"), test::smallPDF())}) {
    ASSERT_NE(exchange.response, nullptr) << exchange.why();
    EXPECT_EQ(exchange.response->statusCode(), 0x0406);
    EXPECT_TRUE(exchange.response->clientError());
    EXPECT_EQ(exchange.response->statusMessage(), "The printer or class does not exist.");
    ASSERT_NE(exchange.error, nullptr);
    EXPECT_EQ(exchange.error->domain(), IPPErrorDomain);
    EXPECT_EQ(exchange.error->code(), 0x0406);
    EXPECT_EQ(exchange.error->localizedDescription(), "client-error-not-found");
  }
}

TEST_F(Refusals, OfALargeDocumentForAQueueThatIsNotThereAreStillAnAnswer) {
  const auto exchange = print(queue("missing"), test::noise(8 * 1024 * 1024));
  EXPECT_EQ(exchange.status(), 0x0406) << exchange.why();
}

TEST_F(Refusals, OfAnOperationThatTheServerDoesNotKnow) {
  const auto printer = addedQueue("operations");
  const auto request = IPPRequest::requestWithId(0x4010);
  request->setPrinterURI(printer);
  const auto exchange = perform(*request, printer);
  ASSERT_NE(exchange.response, nullptr) << exchange.why();
  EXPECT_EQ(exchange.status(), 0x0501);
  EXPECT_TRUE(exchange.response->serverError());
  EXPECT_FALSE(exchange.response->allowsRequestResubmission());
}

TEST_F(Refusals, OfAFormatNameTheAttributeThatIsNotSupported) {
  const auto printer = idlePrinter();
  const auto request = IPPRequest::jobPrintRequest(printer);
  request->addOperationValue(IPPValue::mimeMediaType("application/x-odd"), "document-format");
  const auto exchange = perform(*request, printer, InputStream::withData(test::smallPDF()));
  ASSERT_NE(exchange.response, nullptr) << exchange.why();
  EXPECT_EQ(exchange.status(), 0x040B);
  EXPECT_EQ(exchange.response->ippGroupsWithName(kIPPUnsupportedAttributesGroupName).size(), 1U);
  EXPECT_EQ(exchange.response->attributeValueForKey("document-format"), "application/x-odd");
}

TEST_F(Refusals, OfABusyPrinterAllowToTryAgain) {
  const auto printer = idlePrinter();
  servers().setIppeveDelay(1);
  ASSERT_EQ(print(printer, test::smallPDF()).status(), 0);
  const auto refused = print(printer, test::smallPDF());
  servers().setIppeveDelay(0);
  ASSERT_EQ(refused.status(), 0x0507) << refused.why();
  EXPECT_TRUE(refused.response->serverError());
  EXPECT_TRUE(refused.response->allowsRequestResubmission());
  EXPECT_EQ(print(idlePrinter(), test::smallPDF()).status(), 0) << "and later it works";
}

TEST_F(Refusals, OfALocationThatAsksWhoIsThereAreNeitherResponseNorError) {
  servers().addQueue("private");
  servers().addQueue("secure");
  for (const auto* name : {"private", "secure"}) {
    // The server answers with a page of HTML and the HTTP status 401, which is not looked at.
    const auto asked = attributesOf(queue(name));
    EXPECT_EQ(asked.response, nullptr);
    EXPECT_EQ(asked.error, nullptr) << asked.why();
    const auto printed = print(queue(name), test::noise(2'000'000));
    EXPECT_EQ(printed.response, nullptr);
    EXPECT_EQ(printed.error, nullptr) << printed.why();
  }
}

TEST_F(Refusals, OfARequestThatNamesNoPrinter) {
  for (const auto* path : {"/", "/ipp/print", "/no/such/page.html"}) {
    const auto target = url("ipp://localhost:" + std::to_string(servers().ippevePort()) + path);
    const auto exchange = perform(*IPPRequest::requestWithId(0x000B), target);
    EXPECT_EQ(exchange.status(), 0x0400) << path << ": " << exchange.why();
    EXPECT_EQ(exchange.error->localizedDescription(), "client-error-bad-request");
  }
}

TEST_F(Refusals, OfAServerThatHasEndedAreTransportFailures) {
  std::string printer;
  {
    const test::PrintServers gone;
    printer = gone.ippeveURI();
    ASSERT_EQ(attributesOf(url(printer)).status(), 0);
  }
  const auto exchange = attributesOf(url(printer));
  EXPECT_EQ(exchange.response, nullptr);
  ASSERT_NE(exchange.error, nullptr);
  EXPECT_EQ(exchange.error->domain(), kHTTPClientErrorDomain);
  EXPECT_EQ(exchange.error->code(), static_cast<int>(HTTPErrorCode::cannotConnectToHost))
      << exchange.why();
}

}  // namespace
}  // namespace platen
