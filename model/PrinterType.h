// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The bits of "printer-type" and "printer-type-mask", of the CUPS print server extension.

#include <cstdint>

namespace platen::inline v0 {

inline constexpr std::uint32_t kPrinterTypeNone = 0x0;
inline constexpr std::uint32_t kPrinterTypeRemote = 0x2;
inline constexpr std::uint32_t kPrinterTypeGrayscale = 0x4;
inline constexpr std::uint32_t kPrinterTypeColor = 0x8;
inline constexpr std::uint32_t kPrinterTypeDuplex = 0x10;
inline constexpr std::uint32_t kPrinterTypeStaple = 0x20;
inline constexpr std::uint32_t kPrinterTypeCollate = 0x80;
/// Queues with this bit are listed among the remote ones, whether or not they have that bit too.
inline constexpr std::uint32_t kPrinterTypeListedAsRemote = 0x10000;
inline constexpr std::uint32_t kPrinterTypeDefault = 0x20000;
inline constexpr std::uint32_t kPrinterTypeNotShared = 0x200000;
inline constexpr std::uint32_t kPrinterTypeAuthenticated = 0x400000;

}  // namespace platen::inline v0
