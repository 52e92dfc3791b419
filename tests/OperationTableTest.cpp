// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <barrier>
#include <cstdint>
#include <limits>
#include <optional>
#include <thread>
#include <vector>

#include "platen/IPPConstants.h"
#include "requests/OperationTable.h"
#include "tests/support/NameTable.h"

namespace platen {
namespace {

constexpr test::NamedCode kRows[] = {
    {0x0002, kIPPPrintJobOperationName, "Print-Job"},
    {0x0003, kIPPPrintURIOperationName, "Print-URI"},
    {0x0004, kIPPValidateJobOperationName, "Validate-Job"},
    {0x0005, kIPPCreateJobOperationName, "Create-Job"},
    {0x0006, kIPPSendDocumentOperationName, "Send-Document"},
    {0x0007, kIPPSendURIOperationName, "Send-URI"},
    {0x0008, kIPPCancelJobOperationName, "Cancel-Job"},
    {0x0009, kIPPGetJobAttributesOperationName, "Get-Job-Attributes"},
    {0x000A, kIPPGetJobsOperationName, "Get-Jobs"},
    {0x000B, kIPPGetPrinterAttributesOperationName, "Get-Printer-Attributes"},
    {0x000C, kIPPHoldJobOperationName, "Hold-Job"},
    {0x000D, kIPPReleaseJobOperationName, "Release-Job"},
    {0x000E, kIPPRestartJobOperationName, "Restart-Job"},
    {0x0010, kIPPPausePrinterOperationName, "Pause-Printer"},
    {0x0011, kIPPResumePrinterOperationName, "Resume-Printer"},
    {0x0012, kIPPPurgeJobsOperationName, "Purge-Jobs"},
    {0x0014, kIPPSetJobAttributesOperationName, "Set-Job-Attributes"},
    {0x0016, kIPPCreatePrinterSubscriptionOperationName, "Create-Printer-Subscription"},
    {0x0017, kIPPCreateJobSubscriptionOperationName, "Create-Job-Subscription"},
    {0x0018, kIPPGetSubscriptionAttributesOperationName, "Get-Subscription-Attributes"},
    {0x0019, kIPPGetSubscriptionsOperationName, "Get-Subscriptions"},
    {0x001A, kIPPRenewSubscriptionOperationName, "Renew-Subscription"},
    {0x001B, kIPPCancelSubscriptionOperationName, "Cancel-Subscription"},
    {0x001C, kIPPGetNotificationsOperationName, "Get-Notifications"},
    {0x0022, kIPPEnablePrinterOperationName, "Enable-Printer"},
    {0x0023, kIPPDisablePrinterOperationName, "Disable-Printer"},
    {0x4001, kCUPSGetDefaultOperationName, "CUPS-Get-Default"},
    {0x4002, kCUPSGetPrintersOperationName, "CUPS-Get-Printers"},
    {0x4003, kCUPSAddModifyPrinterOperationName, "CUPS-Add-Modify-Printer"},
    {0x4004, kCUPSDeletePrinterOperationName, "CUPS-Delete-Printer"},
    {0x4005, kCUPSGetClassesOperationName, "CUPS-Get-Classes"},
    {0x4006, kCUPSAddModifyClassOperationName, "CUPS-Add-Modify-Class"},
    {0x4007, kCUPSDeleteClassOperationName, "CUPS-Delete-Class"},
    {0x4008, kCUPSAcceptJobsOperationName, "CUPS-Accept-Jobs"},
    {0x4009, kCUPSRejectJobsOperationName, "CUPS-Reject-Jobs"},
    {0x400A, kCUPSSetDefaultOperationName, "CUPS-Set-Default"},
    {0x400B, kCUPSGetDevicesOperationName, "CUPS-Get-Devices"},
    {0x400C, kCUPSGetPPDsOperationName, "CUPS-Get-PPDs"},
    {0x400D, kCUPSMoveJobOperationName, "CUPS-Move-Job"},
    {0x400E, kCUPSAuthenticateJobOperationName, "CUPS-Authenticate-Job"},
    {0x400F, kCUPSGetPPDOperationName, "CUPS-Get-PPD"},
};

TEST(OperationTable, NamesEveryOperationAsItsConstantDoes) {
  test::expectNamesOfConstants(kRows, operationNameForId);
}

TEST(OperationTable, HandsOutTheWholeTableInAscendingOrder) {
  test::expectTable(kRows, operationTable());
}

TEST(OperationTable, HandsOutOneDictionaryOfTheSameRows) {
  EXPECT_EQ(&operationIdToNameSpec(), &operationIdToNameSpec());
  test::expectDictionary(kRows, operationIdToNameSpec());
}

TEST(OperationTable, HasNamesForNoOther16BitNumber) {
  test::expectNamesForNoOther(kRows, operationNameForId);
}

TEST(OperationTable, LeavesOutIdsThatItHasNoNameFor) {
  for (const std::int32_t operationId :
       {0x0000, 0x0001, 0x000F, 0x0013, 0x0015, 0x001D, 0x001E, 0x001F, 0x0020, 0x0021, 0x0024,
        0x4000, 0x4010, -1, 0x10002, std::numeric_limits<std::int32_t>::min(),
        std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(operationNameForId(operationId), std::nullopt) << operationId;
  }
}

TEST(OperationTable, CallsAnIdWithoutARowUnknownOperation) {
  EXPECT_EQ(operationNameForId(0x0013).value_or(kUnknownOperationName), "Unknown-Operation");
  EXPECT_EQ(operationNameForId(0x400F).value_or(kUnknownOperationName), "CUPS-Get-PPD");
}

TEST(OperationTable, BuildsItsDictionaryOnceForThreadsThatAskAtTheSameTime) {
  constexpr int kThreads = 4;
  std::barrier start(kThreads);
  std::vector<const void*> seen(kThreads);
  std::vector<std::jthread> threads;
  for (const void*& address : seen) {
    threads.emplace_back([&start, &address] {
      start.arrive_and_wait();
      address = &operationIdToNameSpec();
    });
  }
  threads.clear();
  for (const void* address : seen) EXPECT_EQ(address, &operationIdToNameSpec());
}

}  // namespace
}  // namespace platen
