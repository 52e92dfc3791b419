// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Operation-ids and their names (RFC 8011 §5.4.15).

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

#include "platform/CodeNames.h"

namespace platen::inline v0 {

// The operation-id that belongs to each `k...OperationName` of platen/IPPConstants.h.

inline constexpr std::int32_t kIPPPrintJobOperationId = 0x0002;
inline constexpr std::int32_t kIPPPrintURIOperationId = 0x0003;
inline constexpr std::int32_t kIPPValidateJobOperationId = 0x0004;
inline constexpr std::int32_t kIPPCreateJobOperationId = 0x0005;
inline constexpr std::int32_t kIPPSendDocumentOperationId = 0x0006;
inline constexpr std::int32_t kIPPSendURIOperationId = 0x0007;
inline constexpr std::int32_t kIPPCancelJobOperationId = 0x0008;
inline constexpr std::int32_t kIPPGetJobAttributesOperationId = 0x0009;
inline constexpr std::int32_t kIPPGetJobsOperationId = 0x000A;
inline constexpr std::int32_t kIPPGetPrinterAttributesOperationId = 0x000B;
inline constexpr std::int32_t kIPPHoldJobOperationId = 0x000C;
inline constexpr std::int32_t kIPPReleaseJobOperationId = 0x000D;
inline constexpr std::int32_t kIPPRestartJobOperationId = 0x000E;
inline constexpr std::int32_t kIPPPausePrinterOperationId = 0x0010;
inline constexpr std::int32_t kIPPResumePrinterOperationId = 0x0011;
inline constexpr std::int32_t kIPPPurgeJobsOperationId = 0x0012;
inline constexpr std::int32_t kIPPSetJobAttributesOperationId = 0x0014;
inline constexpr std::int32_t kIPPCreatePrinterSubscriptionOperationId = 0x0016;
inline constexpr std::int32_t kIPPCreateJobSubscriptionOperationId = 0x0017;
inline constexpr std::int32_t kIPPGetSubscriptionAttributesOperationId = 0x0018;
inline constexpr std::int32_t kIPPGetSubscriptionsOperationId = 0x0019;
inline constexpr std::int32_t kIPPRenewSubscriptionOperationId = 0x001A;
inline constexpr std::int32_t kIPPCancelSubscriptionOperationId = 0x001B;
inline constexpr std::int32_t kIPPGetNotificationsOperationId = 0x001C;
inline constexpr std::int32_t kIPPEnablePrinterOperationId = 0x0022;
inline constexpr std::int32_t kIPPDisablePrinterOperationId = 0x0023;

inline constexpr std::int32_t kCUPSGetDefaultOperationId = 0x4001;
inline constexpr std::int32_t kCUPSGetPrintersOperationId = 0x4002;
inline constexpr std::int32_t kCUPSAddModifyPrinterOperationId = 0x4003;
inline constexpr std::int32_t kCUPSDeletePrinterOperationId = 0x4004;
inline constexpr std::int32_t kCUPSGetClassesOperationId = 0x4005;
inline constexpr std::int32_t kCUPSAddModifyClassOperationId = 0x4006;
inline constexpr std::int32_t kCUPSDeleteClassOperationId = 0x4007;
inline constexpr std::int32_t kCUPSAcceptJobsOperationId = 0x4008;
inline constexpr std::int32_t kCUPSRejectJobsOperationId = 0x4009;
inline constexpr std::int32_t kCUPSSetDefaultOperationId = 0x400A;
inline constexpr std::int32_t kCUPSGetDevicesOperationId = 0x400B;
inline constexpr std::int32_t kCUPSGetPPDsOperationId = 0x400C;
inline constexpr std::int32_t kCUPSMoveJobOperationId = 0x400D;
inline constexpr std::int32_t kCUPSAuthenticateJobOperationId = 0x400E;
inline constexpr std::int32_t kCUPSGetPPDOperationId = 0x400F;

/// What an operation-id without a row in the table is called.
inline constexpr std::string_view kUnknownOperationName = "Unknown-Operation";

/// The whole table, in ascending order of the operation-id.
std::span<const CodeName> operationTable() noexcept;

/// The name of an operation-id, or nothing. Some ids have no row although an RFC assigns them
/// (Set-Printer-Attributes, 0x0013, for one): the table lists what the library has names for.
std::optional<std::string_view> operationNameForId(std::int32_t operationId) noexcept;

/// The table as a dictionary, built at the first call and kept until the process ends.
///
/// Threads: may be called from every thread, also for the first time.
const std::map<std::int32_t, std::string_view>& operationIdToNameSpec();

}  // namespace platen::inline v0
