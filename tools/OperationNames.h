// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace platen::tool {

/// The name of an operation that is registered (IANA, "IPP Operations") or of the CUPS print server
/// and that the library has no name for; "" for every other. Lives for the process.
std::string_view registeredOperationName(std::int32_t operationId) noexcept;

}  // namespace platen::tool
