// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Status codes and their names (RFC 8011 §4.1.6.1 and appendix B).

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

#include "platform/CodeNames.h"

namespace platen::inline v0 {

// The status codes that the library itself gives or asks for.

inline constexpr std::int32_t kSuccessfulOkStatusCode = 0x0000;
inline constexpr std::int32_t kClientErrorBadRequestStatusCode = 0x0400;
inline constexpr std::int32_t kClientErrorNotAuthenticatedStatusCode = 0x0402;
inline constexpr std::int32_t kClientErrorNotAuthorizedStatusCode = 0x0403;
inline constexpr std::int32_t kClientErrorTimeoutStatusCode = 0x0405;
inline constexpr std::int32_t kServerErrorInternalErrorStatusCode = 0x0500;
inline constexpr std::int32_t kServerErrorServiceUnavailableStatusCode = 0x0502;
inline constexpr std::int32_t kServerErrorTemporaryErrorStatusCode = 0x0505;
inline constexpr std::int32_t kServerErrorBusyStatusCode = 0x0507;

/// The whole table, in ascending order of the status code.
std::span<const CodeName> statusTable() noexcept;

/// The name of a status code, or nothing for a code without a row. A response keeps its 16-bit code
/// sign-extended, so codes of 0x8000 and above come as negative numbers; none of them has a name.
std::optional<std::string_view> statusNameForCode(std::int32_t statusCode) noexcept;

/// The table as a dictionary, built at the first call and kept until the process ends.
///
/// Threads: may be called from every thread, also for the first time.
const std::map<std::int32_t, std::string_view>& ippStatusToNameSpec();

/// True for the three conditions that pass by themselves, so that the same request may be sent
/// again: server-error-service-unavailable, -temporary-error and -busy (RFC 8011 §B.1.5).
bool statusAllowsResubmission(std::int32_t statusCode) noexcept;

}  // namespace platen::inline v0
