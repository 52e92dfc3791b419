// SPDX-License-Identifier: Apache-2.0
#include "responses/StatusTable.h"

#include <algorithm>

#include "platen/IPPConstants.h"

namespace platen::inline v0 {

namespace {

constexpr CodeName kStatuses[] = {
    {0x0000, kIPPStatusSuccess},
    {0x0001, kIPPStatusSuccessIgnoringOrSubstitutedAttributes},
    {0x0002, kIPPStatusSuccessConflictingAttributes},
    {0x0003, kIPPStatusSuccessIgnoredSubscriptions},
    {0x0004, kIPPStatusSuccessIgnoredNotifications},
    {0x0005, kIPPStatusSuccessTooManyEvents},
    {0x0006, kIPPStatusSuccessButCancelSubscription},
    {0x0007, kIPPStatusSuccessEventsComplete},
    {0x0400, kIPPStatusClientErrorBadRequest},
    {0x0401, kIPPStatusClientErrorForbidden},
    {0x0402, kIPPStatusClientErrorNotAuthenticated},
    {0x0403, kIPPStatusClientErrorNotAuthorized},
    {0x0404, kIPPStatusClientErrorNotPossible},
    {0x0405, kIPPStatusClientErrorTimeout},
    {0x0406, kIPPStatusClientErrorNotFound},
    {0x0407, kIPPStatusClientErrorGone},
    {0x0408, kIPPStatusClientErrorRequestEntityTooLarge},
    {0x0409, kIPPStatusClientErrorRequestValueTooLong},
    {0x040A, kIPPStatusClientErrorDocumentFormatNotSupported},
    {0x040B, kIPPStatusClientErrorAttributesOrValuesNotSupported},
    {0x040C, kIPPStatusClientErrorURISchemeNotSupported},
    {0x040D, kIPPStatusClientErrorCharsetNotSupported},
    {0x040E, kIPPStatusClientErrorConflictingAttributes},
    {0x040F, kIPPStatusClientErrorCompressionNotSupported},
    {0x0410, kIPPStatusClientErrorCompressionError},
    {0x0411, kIPPStatusClientErrorDocumentFormatError},
    {0x0412, kIPPStatusClientErrorDocumentAccessError},
    {0x0413, kIPPStatusClientErrorAttributesNotSettable},
    {0x0414, kIPPStatusClientErrorIgnoredAllSubscriptions},
    {0x0415, kIPPStatusClientErrorTooManySubscriptions},
    {0x0416, kIPPStatusClientErrorIgnoredAllNotifications},
    {0x0417, kIPPStatusClientErrorPrintSupportFileNotFound},
    {0x0500, kIPPStatusServerErrorInternalError},
    {0x0501, kIPPStatusServerErrorOperationNotSupported},
    {0x0502, kIPPStatusServerErrorServiceUnavailable},
    {0x0503, kIPPStatusServerErrorVersionNotSupported},
    {0x0504, kIPPStatusServerErrorDeviceError},
    {0x0505, kIPPStatusServerErrorTemporaryError},
    {0x0506, kIPPStatusServerErrorNotAcceptingJobs},
    {0x0507, kIPPStatusServerErrorBusy},
    {0x0508, kIPPStatusServerErrorJobCanceled},
    {0x0509, kIPPStatusServerErrorMultipleDocumentJobsNotSupported},
    {0x050A, kIPPStatusServerErrorPrinterIsDeactivated},
};

static_assert(isStrictlyAscending(kStatuses));

constexpr std::int32_t kResubmissionStatuses[] = {kServerErrorServiceUnavailableStatusCode,
                                                  kServerErrorTemporaryErrorStatusCode,
                                                  kServerErrorBusyStatusCode};

}  // namespace

std::span<const CodeName> statusTable() noexcept { return kStatuses; }

std::optional<std::string_view> statusNameForCode(std::int32_t statusCode) noexcept {
  return nameForCode(kStatuses, statusCode);
}

const std::map<std::int32_t, std::string_view>& ippStatusToNameSpec() {
  static const auto* const names =
      new auto(dictionaryFromTable(kStatuses));  // lives for the process
  return *names;
}

bool statusAllowsResubmission(std::int32_t statusCode) noexcept {
  return std::ranges::find(kResubmissionStatuses, statusCode) != std::end(kResubmissionStatuses);
}

}  // namespace platen::inline v0
