// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "platen/Exception.h"
#include "platen/IPPRequest.h"
#include "platform/UserEnvironment.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"
#include "tests/support/UserLocale.h"

namespace platen {
namespace {

/// What stands on the wire, with the groups and attributes in their order.
std::string encodedText(const IPPRequest& request) {
  const auto message = IPPMessage::initWithDataRepresentation(request.dataRepresentation());
  return message == nullptr ? "" : test::messageText(*message, 0);
}

URL url(std::string_view text) { return URL::parse(text).value(); }

class RequestFactories : public testing::Test {
 protected:
  const test::UserLocale locale{"pt_BR.UTF-8"};
  const std::string user = loginName();
};

/// A request of exactly four operation attributes in one group.
std::string fourAttributes(std::string_view code, std::string_view target, std::string_view uri,
                           std::string_view user) {
  const std::string message = "message version=1.1 code=";
  return message + std::string(code) +
         " request-id=1\n"
         "group 01\n"
         "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
         "01\t\"attributes-natural-language\"\t48:\"pt-br\"\n"
         "01\t\"" +
         std::string(target) + "\"\t45:\"" + std::string(uri) +
         "\"\n"
         "01\t\"requesting-user-name\"\t42:\"" +
         std::string(user) + "\"\n";
}

TEST_F(RequestFactories, AddressAJobOrAQueueAndNameTheUser) {
  struct Case {
    IPPRequest::Pointer (*make)(const URL&);
    const char* code;
    const char* target;
    const char* name;
  };
  const Case cases[] = {
      {IPPRequest::jobAttributesRequest, "0x0009", "job-uri", "Get-Job-Attributes"},
      {IPPRequest::jobPrintRequest, "0x0002", "printer-uri", "Print-Job"},
      {IPPRequest::printerAttributesRequest, "0x000b", "printer-uri", "Get-Printer-Attributes"},
  };
  for (const auto& [make, code, target, name] : cases) {
    const auto request = make(url("ipp://host:8631/a/b%20c/"));
    EXPECT_EQ(encodedText(*request),
              fourAttributes(code, target, "ipp://host:8631/a/b%20c/", user));
    EXPECT_EQ(request->ippOperationCodename(), name);
    EXPECT_EQ(request->timeoutInterval(), 60.0) << name;
  }
}

TEST_F(RequestFactories, EncodeToTheseOctets) {
  const auto request = IPPRequest::jobAttributesRequest(url("ipp://host/jobs/7"));
  const std::string octets =
      "0101 0009 0000 0001 01"
      "47 <'attributes-charset'> <'utf-8'>"
      "48 <'attributes-natural-language'> <'pt-br'>"
      "45 <'job-uri'> <'ipp://host/jobs/7'>"
      "42 <'requesting-user-name'> <'" +
      user + "'> 03";
  EXPECT_EQ(test::hex(request->dataRepresentation()), test::hex(test::octets(octets)));
}

TEST_F(RequestFactories, KeepATargetOfAnySchemeLetterForLetter) {
  for (const auto* target : {"http://host/printers/q", "IPPS://Host:443/x?y#z", "/relative/path"}) {
    const auto request = IPPRequest::printerAttributesRequest(url(target));
    EXPECT_EQ(encodedText(*request), fourAttributes("0x000b", "printer-uri", target, user));
  }
}

TEST_F(RequestFactories, RaiseWhenATargetIsTooLong) {
  const auto longest = url("ipp://host/" + std::string(1023 - 11, 'x'));
  const auto tooLong = url("ipp://host/" + std::string(1024 - 11, 'x'));
  EXPECT_EQ(IPPRequest::jobPrintRequest(longest)->printerURI(), longest);
  EXPECT_THROW(IPPRequest::jobPrintRequest(tooLong), RangeException);
  EXPECT_THROW(IPPRequest::jobAttributesRequest(tooLong), RangeException);
  EXPECT_THROW(IPPRequest::printerAttributesRequest(tooLong), RangeException);
}

TEST(RequestTargets, AreWhatWasSet) {
  const auto request = IPPRequest::requestWithId(0x0008);
  EXPECT_EQ(request->jobURI(), std::nullopt);
  EXPECT_EQ(request->printerURI(), std::nullopt);
  request->setJobURI(url("ipp://host/jobs/1"));
  EXPECT_EQ(request->jobURI(), url("ipp://host/jobs/1"));
  EXPECT_EQ(request->printerURI(), std::nullopt);
  request->setPrinterURI(url("ipp://host/printers/q"));
  EXPECT_EQ(request->printerURI(), url("ipp://host/printers/q"));
  EXPECT_EQ(request->jobURI(), url("ipp://host/jobs/1"));
}

TEST(RequestTargets, AreAppendedWhenSetAgainAndTheFirstOneIsRead) {
  const auto request = IPPRequest::requestWithId(0x0008);
  for (const auto* target : {"ipp://host/1", "ipp://host/2"}) {
    request->setJobURI(url(target));
    request->setPrinterURI(url(target));
  }
  EXPECT_EQ(request->attributesForKey("job-uri").size(), 2U);
  EXPECT_EQ(request->attributesForKey("printer-uri").size(), 2U);
  EXPECT_EQ(request->jobURI(), url("ipp://host/1"));
  EXPECT_EQ(request->printerURI(), url("ipp://host/1"));
}

TEST(RequestTargets, AreReadOutOfADecodedRequest) {
  const auto job = IPPRequest::jobAttributesRequest(url("ipp://host/jobs/1"));
  EXPECT_EQ(IPPRequest::initWithDataRepresentation(job->dataRepresentation())->jobURI(),
            url("ipp://host/jobs/1"));
  const auto queue = IPPRequest::jobPrintRequest(url("ipp://host/printers/q"));
  EXPECT_EQ(IPPRequest::initWithDataRepresentation(queue->dataRepresentation())->printerURI(),
            url("ipp://host/printers/q"));
}

TEST(RequestTargets, AreNothingWhereTheAttributeIsNoURL) {
  const auto request = IPPRequest::requestWithId(0x0008);
  request->addOperationValue(IPPValue::keyword("none"), "job-uri");
  request->addOperationValue(IPPValue::integerWithInt(7), "printer-uri");
  EXPECT_EQ(request->jobURI(), std::nullopt);
  EXPECT_EQ(request->printerURI(), std::nullopt);
}

TEST(RequestTargets, StayUnsetWhenTheyAreTooLong) {
  const auto request = IPPRequest::requestWithId(0x0008);
  EXPECT_THROW(request->setJobURI(url("ipp://host/" + std::string(1024, 'x'))), RangeException);
  EXPECT_THROW(request->setPrinterURI(url("ipp://host/" + std::string(1024, 'x'))), RangeException);
  EXPECT_EQ(request->operationGroup()->attributes().size(), 2U);
}

}  // namespace
}  // namespace platen
