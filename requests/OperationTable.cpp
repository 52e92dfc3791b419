// SPDX-License-Identifier: Apache-2.0
#include "requests/OperationTable.h"

#include "platen/IPPConstants.h"

namespace platen::inline v0 {

namespace {

constexpr CodeName kOperations[] = {
    {kIPPPrintJobOperationId, kIPPPrintJobOperationName},
    {kIPPPrintURIOperationId, kIPPPrintURIOperationName},
    {kIPPValidateJobOperationId, kIPPValidateJobOperationName},
    {kIPPCreateJobOperationId, kIPPCreateJobOperationName},
    {kIPPSendDocumentOperationId, kIPPSendDocumentOperationName},
    {kIPPSendURIOperationId, kIPPSendURIOperationName},
    {kIPPCancelJobOperationId, kIPPCancelJobOperationName},
    {kIPPGetJobAttributesOperationId, kIPPGetJobAttributesOperationName},
    {kIPPGetJobsOperationId, kIPPGetJobsOperationName},
    {kIPPGetPrinterAttributesOperationId, kIPPGetPrinterAttributesOperationName},
    {kIPPHoldJobOperationId, kIPPHoldJobOperationName},
    {kIPPReleaseJobOperationId, kIPPReleaseJobOperationName},
    {kIPPRestartJobOperationId, kIPPRestartJobOperationName},
    {kIPPPausePrinterOperationId, kIPPPausePrinterOperationName},
    {kIPPResumePrinterOperationId, kIPPResumePrinterOperationName},
    {kIPPPurgeJobsOperationId, kIPPPurgeJobsOperationName},
    {kIPPSetJobAttributesOperationId, kIPPSetJobAttributesOperationName},
    {kIPPCreatePrinterSubscriptionOperationId, kIPPCreatePrinterSubscriptionOperationName},
    {kIPPCreateJobSubscriptionOperationId, kIPPCreateJobSubscriptionOperationName},
    {kIPPGetSubscriptionAttributesOperationId, kIPPGetSubscriptionAttributesOperationName},
    {kIPPGetSubscriptionsOperationId, kIPPGetSubscriptionsOperationName},
    {kIPPRenewSubscriptionOperationId, kIPPRenewSubscriptionOperationName},
    {kIPPCancelSubscriptionOperationId, kIPPCancelSubscriptionOperationName},
    {kIPPGetNotificationsOperationId, kIPPGetNotificationsOperationName},
    {kIPPEnablePrinterOperationId, kIPPEnablePrinterOperationName},
    {kIPPDisablePrinterOperationId, kIPPDisablePrinterOperationName},
    {kCUPSGetDefaultOperationId, kCUPSGetDefaultOperationName},
    {kCUPSGetPrintersOperationId, kCUPSGetPrintersOperationName},
    {kCUPSAddModifyPrinterOperationId, kCUPSAddModifyPrinterOperationName},
    {kCUPSDeletePrinterOperationId, kCUPSDeletePrinterOperationName},
    {kCUPSGetClassesOperationId, kCUPSGetClassesOperationName},
    {kCUPSAddModifyClassOperationId, kCUPSAddModifyClassOperationName},
    {kCUPSDeleteClassOperationId, kCUPSDeleteClassOperationName},
    {kCUPSAcceptJobsOperationId, kCUPSAcceptJobsOperationName},
    {kCUPSRejectJobsOperationId, kCUPSRejectJobsOperationName},
    {kCUPSSetDefaultOperationId, kCUPSSetDefaultOperationName},
    {kCUPSGetDevicesOperationId, kCUPSGetDevicesOperationName},
    {kCUPSGetPPDsOperationId, kCUPSGetPPDsOperationName},
    {kCUPSMoveJobOperationId, kCUPSMoveJobOperationName},
    {kCUPSAuthenticateJobOperationId, kCUPSAuthenticateJobOperationName},
    {kCUPSGetPPDOperationId, kCUPSGetPPDOperationName},
};

static_assert(isStrictlyAscending(kOperations));

}  // namespace

std::span<const CodeName> operationTable() noexcept { return kOperations; }

std::optional<std::string_view> operationNameForId(std::int32_t operationId) noexcept {
  return nameForCode(kOperations, operationId);
}

const std::map<std::int32_t, std::string_view>& operationIdToNameSpec() {
  static const auto* const names =
      new auto(dictionaryFromTable(kOperations));  // lives for the process
  return *names;
}

}  // namespace platen::inline v0
