// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPConnection.h"
#include "platen/IPPConstants.h"
#include "tests/support/RealServers.h"

namespace platen {
namespace {

using testing::Contains;
using testing::UnorderedElementsAre;

class PrinterAttributes : public test::RealServers {};

RawValue valueOf(const test::Exchange& exchange, std::string_view name) {
  return exchange.response->attributeValueForKey(name);
}

std::vector<std::string> namesIn(const IPPMessage::Group& group) {
  std::vector<std::string> names;
  for (const auto& attribute : group->attributes()) {
    names.emplace_back(attribute->name().value_or(""));
  }
  return names;
}

TEST_F(PrinterAttributes, OfAQueueAreThoseItWasAddedWith) {
  const auto printer = addedQueue("attributes");
  const auto exchange = attributesOf(printer);
  ASSERT_NE(exchange.response, nullptr) << exchange.why();
  EXPECT_EQ(exchange.error, nullptr) << exchange.why();
  EXPECT_TRUE(exchange.response->successfulOk());
  EXPECT_EQ(exchange.response->requestId(), 1);
  EXPECT_EQ(exchange.response->attributesCharset(), "utf-8");
  EXPECT_EQ(exchange.response->printerGroups().size(), 1U);
  EXPECT_EQ(valueOf(exchange, "printer-name"), "attributes");
  EXPECT_EQ(valueOf(exchange, "printer-uri-supported"), printer);
  EXPECT_EQ(exchange.number("printer-state"), 3);
  EXPECT_EQ(exchange.number("printer-is-accepting-jobs"), 1);
}

TEST_F(PrinterAttributes, OfAPrinterTellWhatItCanDo) {
  const auto exchange = attributesOf(url(servers().ippeveURI()));
  ASSERT_NE(exchange.response, nullptr) << exchange.why();
  EXPECT_EQ(exchange.error, nullptr) << exchange.why();
  EXPECT_EQ(valueOf(exchange, "printer-name"), "Test Printer");
  EXPECT_THAT(valueOf(exchange, "document-format-supported").asArray(),
              Contains(RawValue("application/pdf")));
  EXPECT_EQ(valueOf(exchange, "copies-supported"), (Range{1, 999}));
  EXPECT_TRUE(valueOf(exchange, "printer-resolution-default").isSize());
  const auto media = valueOf(exchange, "media-col-default");
  const auto* size = media.asDictionary().find("media-size");
  ASSERT_NE(size, nullptr);
  EXPECT_EQ(size->asDictionary().size(), 2U) << "a collection inside of one";
}

TEST_F(PrinterAttributes, AreThoseAskedForAndNoOthers) {
  for (const auto& printer : {addedQueue("some"), url(servers().ippeveURI())}) {
    const auto request = IPPRequest::printerAttributesRequest(printer);
    request->setRequestedAttributes(std::vector<std::string>{"printer-state", "printer-name"});
    const auto exchange = perform(*request, printer);
    ASSERT_NE(exchange.response, nullptr) << exchange.why();
    ASSERT_EQ(exchange.response->printerGroups().size(), 1U);
    EXPECT_THAT(namesIn(exchange.response->printerGroups()[0]),
                UnorderedElementsAre("printer-name", "printer-state"));
  }
}

TEST_F(PrinterAttributes, AreEncodedAgainOctetForOctet) {
  for (const auto& printer : {addedQueue("octets"), url(servers().ippeveURI())}) {
    const auto posted = IPPConnectionHandler::HTTPRequestForIPPRequest(
        *IPPRequest::printerAttributesRequest(printer), printer, nullptr);
    HTTPResponse head;
    std::shared_ptr<const Error> error;
    const auto body = HTTPConnection::sendSynchronousRequest(*posted, head, error);
    ASSERT_TRUE(body.has_value()) << error->description();
    EXPECT_EQ(head.statusCode, 200);
    EXPECT_EQ(head.mimeType(), "application/ipp");
    const auto response = IPPResponse::initWithDataRepresentation(*body);
    ASSERT_NE(response, nullptr);
    EXPECT_GT(body->size(), 5000U);
    EXPECT_TRUE(response->dataRepresentation() == *body) << response->description();
  }
}

TEST_F(PrinterAttributes, OfTheServerItselfListItsQueues) {
  addedQueue("listed1");
  addedQueue("listed2");
  const auto exchange =
      perform(*IPPRequest::requestWithId(0x4002), url(servers().cupsURI()));  // CUPS-Get-Printers
  ASSERT_NE(exchange.response, nullptr) << exchange.why();
  const auto names = exchange.response->attributeValuesForKey(kIPPPrinterNameAttributeName);
  EXPECT_THAT(names, Contains(RawValue("listed1")));
  EXPECT_THAT(names, Contains(RawValue("listed2")));
  EXPECT_EQ(names.size(), exchange.response->printerGroups().size());
}

TEST_F(PrinterAttributes, AreFoundByEveryNameOfTheHost) {
  addedQueue("hosts");
  for (const auto* host : {"localhost", "127.0.0.1", "LOCALHOST", "user:secret@localhost"}) {
    const auto target = url("http://" + std::string(host) + ":" +
                            std::to_string(servers().cupsPort()) + "/printers/hosts/?x#y");
    const auto exchange = perform(*IPPRequest::printerAttributesRequest(queue("hosts")), target);
    EXPECT_EQ(exchange.status(), 0) << host << ": " << exchange.why();
  }
}

}  // namespace
}  // namespace platen
