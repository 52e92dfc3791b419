// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPRequest.h"
#include "tests/support/RequestText.h"

namespace platen {
namespace {

using test::encodedText;

class ServerRequests : public test::RequestTextTest {};

TEST_F(ServerRequests, AskForAllQueuesOrDevicesWithoutTargetAndUser) {
  const auto printers = IPPRequest::serverAvailablePrintersRequest();
  EXPECT_EQ(encodedText(*printers), requestText("0x4002", ""));
  EXPECT_EQ(printers->ippOperationCodename(), "CUPS-Get-Printers");
  const auto devices = IPPRequest::serverAvailableDevicesRequest();
  EXPECT_EQ(encodedText(*devices), requestText("0x400b", ""));
  EXPECT_EQ(devices->ippOperationCodename(), "CUPS-Get-Devices");
}

TEST_F(ServerRequests, AddressTheLocalServerAndNameTheUser) {
  struct Case {
    IPPRequest::Pointer (*make)();
    const char* code;
    const char* name;
  };
  const Case cases[] = {
      {IPPRequest::serverAvailableSubcsriptionsRequest, "0x0019", "Get-Subscriptions"},
      {IPPRequest::serverAvailableJobsRequest, "0x000a", "Get-Jobs"},
      {IPPRequest::serverDefaultPrintQueueRequest, "0x4001", "CUPS-Get-Default"},
  };
  for (const auto& [make, code, name] : cases) {
    EXPECT_EQ(encodedText(*make()),
              requestText(code, targetAndUser("printer-uri", "ipp://localhost/")));
    EXPECT_EQ(make()->ippOperationCodename(), name);
  }
}

TEST_F(ServerRequests, FilterQueuesByAMaskAndATypeThatIsAlwaysZero) {
  struct Case {
    IPPRequest::Pointer (*make)();
    std::string mask;
  };
  const Case cases[] = {
      {IPPRequest::serverAvailableLocalPrintersRequest, "0"},
      {IPPRequest::serverAvailableRemotePrintersRequest, "2"},
      {IPPRequest::serverAvailableColorPrintersRequest, "8"},
      {IPPRequest::serverAvailableGrayscalePrintersRequest, "4"},
      {IPPRequest::serverAvailableNotSharedPrintersRequest, "2097152"},
      {IPPRequest::serverAvailablePrintersRequringAuthenticationRequest, "4194304"},
  };
  for (const auto& [make, mask] : cases) {
    EXPECT_EQ(encodedText(*make()), requestText("0x4002",
                                                "01\t\"printer-type\"\t23:0\n"
                                                "01\t\"printer-type-mask\"\t23:" +
                                                    mask + "\n"));
  }
}

/// Opens what the factories build a filter of.
class OpenRequest : public IPPRequest {
 public:
  using IPPRequest::_addPrinterFilteringAttributes;
  using IPPRequest::IPPRequest;
};

TEST_F(ServerRequests, FilterByAMaskOfAll32Bits) {
  OpenRequest request(0x4002);
  request._addPrinterFilteringAttributes(0xFFFFFFFF);
  EXPECT_EQ(encodedText(request), requestText("0x4002",
                                              "01\t\"printer-type\"\t23:0\n"
                                              "01\t\"printer-type-mask\"\t23:-1\n"));
}

TEST_F(ServerRequests, SubscribeToEvents) {
  const std::vector<std::string> events{"printer-state-changed", "job-completed"};
  const std::string lines =
      "group 06\n"
      "06\t\"notify-events\"\t44:\"printer-state-changed\"\t44:\"job-completed\"\n";
  EXPECT_EQ(encodedText(*IPPRequest::serverCreateSubscriptionRequest(events)),
            requestText("0x0016", targetAndUser("printer-uri", "ipp://localhost/") + lines));
  const auto* queue = "ipp://host/ipp/print";
  EXPECT_EQ(encodedText(*IPPRequest::printerCreateSubscriptionRequest(test::url(queue), events)),
            requestText("0x0016", targetAndUser("printer-uri", queue) + lines));
}

TEST_F(ServerRequests, SubscribeToNothingInParticularWithoutASubscriptionGroup) {
  EXPECT_EQ(encodedText(*IPPRequest::serverCreateSubscriptionRequest({})),
            requestText("0x0016", targetAndUser("printer-uri", "ipp://localhost/")));
  const auto* queue = "ipp://host/ipp/print";
  EXPECT_EQ(encodedText(*IPPRequest::printerCreateSubscriptionRequest(test::url(queue), {})),
            requestText("0x0016", targetAndUser("printer-uri", queue)));
}

}  // namespace
}  // namespace platen
