// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "platen/Exception.h"
#include "platen/IPPRequest.h"
#include "tests/support/Octets.h"
#include "tests/support/RequestText.h"

namespace platen {
namespace {

using test::encodedText;
using test::url;

class RequestFactories : public test::RequestTextTest {};

TEST_F(RequestFactories, AddressAJobOrAQueueAndNameTheUser) {
  struct Case {
    IPPRequest::Pointer (*make)(const URL&);
    const char* code;
    const char* target;
    const char* name;
  };
  const Case cases[] = {
      {IPPRequest::jobAttributesRequest, "0x0009", "job-uri", "Get-Job-Attributes"},
      {IPPRequest::jobCreateRequest, "0x0005", "printer-uri", "Create-Job"},
      {IPPRequest::jobPrintRequest, "0x0002", "printer-uri", "Print-Job"},
      {IPPRequest::validateJobRequest, "0x0004", "printer-uri", "Validate-Job"},
      {IPPRequest::jobCancelRequest, "0x0008", "job-uri", "Cancel-Job"},
      {IPPRequest::jobHoldRequest, "0x000c", "job-uri", "Hold-Job"},
      {IPPRequest::jobReleaseRequest, "0x000d", "job-uri", "Release-Job"},
      {IPPRequest::jobRestartRequest, "0x000e", "job-uri", "Restart-Job"},
      {IPPRequest::jobAvailableSubscriptionsRequest, "0x0019", "job-uri", "Get-Subscriptions"},
      {IPPRequest::printerAttributesRequest, "0x000b", "printer-uri", "Get-Printer-Attributes"},
      {IPPRequest::printerJobsRequest, "0x000a", "printer-uri", "Get-Jobs"},
      {IPPRequest::printerAvailableSubscriptionsRequest, "0x0019", "printer-uri",
       "Get-Subscriptions"},
      {IPPRequest::printerPauseRequest, "0x0010", "printer-uri", "Pause-Printer"},
      {IPPRequest::printerResumeRequest, "0x0011", "printer-uri", "Resume-Printer"},
      {IPPRequest::printerPurgeJobsRequest, "0x0012", "printer-uri", "Purge-Jobs"},
      {IPPRequest::printerSetDefaultRequest, "0x400a", "printer-uri", "CUPS-Set-Default"},
      {IPPRequest::printerAddModifyQueueRequest, "0x4003", "printer-uri",
       "CUPS-Add-Modify-Printer"},
  };
  for (const auto& [make, code, target, name] : cases) {
    const auto request = make(url("ipp://host:8631/a/b%20c/"));
    EXPECT_EQ(encodedText(*request),
              requestText(code, targetAndUser(target, "ipp://host:8631/a/b%20c/")));
    EXPECT_EQ(request->ippOperationCodename(), name);
    EXPECT_EQ(request->timeoutInterval(), 60.0) << name;
  }
}

TEST_F(RequestFactories, NameNoUserWhereAQueueIsRemoved) {
  const auto request = IPPRequest::printerRemoveQueueRequest(url("ipp://localhost/printers/q"));
  EXPECT_EQ(encodedText(*request),
            requestText("0x4004", "01\t\"printer-uri\"\t45:\"ipp://localhost/printers/q\"\n"));
  EXPECT_EQ(request->ippOperationCodename(), "CUPS-Delete-Printer");
}

TEST_F(RequestFactories, PutTheDestinationOfAJobIntoAJobGroup) {
  const auto request =
      IPPRequest::jobMoveRequest(url("ipp://localhost/7"), url("ipp://localhost/printers/b"));
  EXPECT_EQ(encodedText(*request),
            requestText("0x400d", targetAndUser("job-uri", "ipp://localhost/7") +
                                      "group 02\n"
                                      "02\t\"job-printer-uri\"\t45:"
                                      "\"ipp://localhost/printers/b\"\n"));
  EXPECT_EQ(request->ippOperationCodename(), "CUPS-Move-Job");
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
    EXPECT_EQ(encodedText(*request), requestText("0x000b", targetAndUser("printer-uri", target)));
  }
}

TEST_F(RequestFactories, RaiseWhenATargetIsTooLong) {
  const auto longest = url("ipp://host/" + std::string(1023 - 11, 'x'));
  const auto tooLong = url("ipp://host/" + std::string(1024 - 11, 'x'));
  EXPECT_EQ(IPPRequest::jobPrintRequest(longest)->printerURI(), longest);
  EXPECT_THROW(IPPRequest::jobPrintRequest(tooLong), RangeException);
  EXPECT_THROW(IPPRequest::jobAttributesRequest(tooLong), RangeException);
  EXPECT_THROW(IPPRequest::printerAttributesRequest(tooLong), RangeException);
  EXPECT_THROW(IPPRequest::printerRemoveQueueRequest(tooLong), RangeException);
  EXPECT_THROW(IPPRequest::jobMoveRequest(tooLong, longest), RangeException);
  EXPECT_THROW(IPPRequest::jobMoveRequest(longest, tooLong), RangeException);
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
