// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "platen/IPPConstants.h"
#include "responses/StatusTable.h"
#include "tests/support/NameTable.h"

namespace platen {
namespace {

constexpr test::NamedCode kRows[] = {
    {0x0000, kIPPStatusSuccess, "successful-ok"},
    {0x0001, kIPPStatusSuccessIgnoringOrSubstitutedAttributes,
     "successful-ok-ignored-or-substituted-attributes"},
    {0x0002, kIPPStatusSuccessConflictingAttributes, "successful-ok-conflicting-attributes"},
    {0x0003, kIPPStatusSuccessIgnoredSubscriptions, "successful-ok-ignored-subscriptions"},
    {0x0004, kIPPStatusSuccessIgnoredNotifications, "successful-ok-ignored-notifications"},
    {0x0005, kIPPStatusSuccessTooManyEvents, "successful-ok-too-many-events"},
    {0x0006, kIPPStatusSuccessButCancelSubscription, "successful-ok-but-cancel-subscription"},
    {0x0007, kIPPStatusSuccessEventsComplete, "successful-ok-events-complete"},
    {0x0400, kIPPStatusClientErrorBadRequest, "client-error-bad-request"},
    {0x0401, kIPPStatusClientErrorForbidden, "client-error-forbidden"},
    {0x0402, kIPPStatusClientErrorNotAuthenticated, "client-error-not-authenticated"},
    {0x0403, kIPPStatusClientErrorNotAuthorized, "client-error-not-authorized"},
    {0x0404, kIPPStatusClientErrorNotPossible, "client-error-not-possible"},
    {0x0405, kIPPStatusClientErrorTimeout, "client-error-timeout"},
    {0x0406, kIPPStatusClientErrorNotFound, "client-error-not-found"},
    {0x0407, kIPPStatusClientErrorGone, "client-error-gone"},
    {0x0408, kIPPStatusClientErrorRequestEntityTooLarge, "client-error-request-entity-too-large"},
    {0x0409, kIPPStatusClientErrorRequestValueTooLong, "client-error-request-value-too-long"},
    {0x040A, kIPPStatusClientErrorDocumentFormatNotSupported,
     "client-error-document-format-not-supported"},
    {0x040B, kIPPStatusClientErrorAttributesOrValuesNotSupported,
     "client-error-attributes-or-values-not-supported"},
    {0x040C, kIPPStatusClientErrorURISchemeNotSupported, "client-error-uri-scheme-not-supported"},
    {0x040D, kIPPStatusClientErrorCharsetNotSupported, "client-error-charset-not-supported"},
    {0x040E, kIPPStatusClientErrorConflictingAttributes, "client-error-conflicting-attributes"},
    {0x040F, kIPPStatusClientErrorCompressionNotSupported,
     "client-error-compression-not-supported"},
    {0x0410, kIPPStatusClientErrorCompressionError, "client-error-compression-error"},
    {0x0411, kIPPStatusClientErrorDocumentFormatError, "client-error-document-format-error"},
    {0x0412, kIPPStatusClientErrorDocumentAccessError, "client-error-document-access-error"},
    {0x0413, kIPPStatusClientErrorAttributesNotSettable, "client-error-attributes-not-settable"},
    {0x0414, kIPPStatusClientErrorIgnoredAllSubscriptions,
     "client-error-ignored-all-subscriptions"},
    {0x0415, kIPPStatusClientErrorTooManySubscriptions, "client-error-too-many-subscriptions"},
    {0x0416, kIPPStatusClientErrorIgnoredAllNotifications,
     "client-error-ignored-all-notifications"},
    {0x0417, kIPPStatusClientErrorPrintSupportFileNotFound,
     "client-error-print-support-file-not-found"},
    {0x0500, kIPPStatusServerErrorInternalError, "server-error-internal-error"},
    {0x0501, kIPPStatusServerErrorOperationNotSupported, "server-error-operation-not-supported"},
    {0x0502, kIPPStatusServerErrorServiceUnavailable, "server-error-service-unavailable"},
    {0x0503, kIPPStatusServerErrorVersionNotSupported, "server-error-version-not-supported"},
    {0x0504, kIPPStatusServerErrorDeviceError, "server-error-device-error"},
    {0x0505, kIPPStatusServerErrorTemporaryError, "server-error-temporary-error"},
    {0x0506, kIPPStatusServerErrorNotAcceptingJobs, "server-error-not-accepting-jobs"},
    {0x0507, kIPPStatusServerErrorBusy, "server-error-busy"},
    {0x0508, kIPPStatusServerErrorJobCanceled, "server-error-job-canceled"},
    {0x0509, kIPPStatusServerErrorMultipleDocumentJobsNotSupported,
     "server-error-multiple-document-jobs-not-supported"},
    {0x050A, kIPPStatusServerErrorPrinterIsDeactivated, "server-error-printer-is-deactivated"},
};

TEST(StatusTable, NamesEveryStatusAsItsConstantDoes) {
  test::expectNamesOfConstants(kRows, statusNameForCode);
}

TEST(StatusTable, HandsOutTheWholeTableInAscendingOrder) {
  test::expectTable(kRows, statusTable());
}

TEST(StatusTable, HandsOutOneDictionaryOfTheSameRows) {
  EXPECT_EQ(&ippStatusToNameSpec(), &ippStatusToNameSpec());
  test::expectDictionary(kRows, ippStatusToNameSpec());
}

TEST(StatusTable, HasNamesForNoOther16BitNumber) {
  test::expectNamesForNoOther(kRows, statusNameForCode);
}

TEST(StatusTable, LeavesOutCodesThatItHasNoNameFor) {
  for (const std::int32_t statusCode :
       {0x0008, 0x0100, 0x03FF, 0x0418, 0x04FF, 0x050B, -1, -0x7FFF, 0x10400,
        std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(statusNameForCode(statusCode), std::nullopt) << statusCode;
  }
}

TEST(StatusTable, AllowsResubmissionForThreeCodesOnly) {
  std::vector<std::int32_t> allowed;
  for (std::int32_t code = -0x8000; code <= 0xFFFF; ++code) {
    if (statusAllowsResubmission(code)) allowed.push_back(code);
  }
  EXPECT_EQ(allowed, (std::vector<std::int32_t>{0x0502, 0x0505, 0x0507}));
}

TEST(StatusTable, GivesTheCodesOfTheNamesThatTheLibraryUsesItself) {
  EXPECT_EQ(statusNameForCode(kSuccessfulOkStatusCode), kIPPStatusSuccess);
  EXPECT_EQ(statusNameForCode(kClientErrorBadRequestStatusCode), kIPPStatusClientErrorBadRequest);
  EXPECT_EQ(statusNameForCode(kClientErrorNotAuthenticatedStatusCode),
            kIPPStatusClientErrorNotAuthenticated);
  EXPECT_EQ(statusNameForCode(kClientErrorNotAuthorizedStatusCode),
            kIPPStatusClientErrorNotAuthorized);
  EXPECT_EQ(statusNameForCode(kClientErrorTimeoutStatusCode), kIPPStatusClientErrorTimeout);
  EXPECT_EQ(statusNameForCode(kServerErrorInternalErrorStatusCode),
            kIPPStatusServerErrorInternalError);
  EXPECT_EQ(statusNameForCode(kServerErrorServiceUnavailableStatusCode),
            kIPPStatusServerErrorServiceUnavailable);
  EXPECT_EQ(statusNameForCode(kServerErrorTemporaryErrorStatusCode),
            kIPPStatusServerErrorTemporaryError);
  EXPECT_EQ(statusNameForCode(kServerErrorBusyStatusCode), kIPPStatusServerErrorBusy);
}

}  // namespace
}  // namespace platen
