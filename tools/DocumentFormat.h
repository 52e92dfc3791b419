// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "platen/Data.h"

namespace platen::tool {

/// How many octets of a document `guessedFormat` looks at.
inline constexpr std::size_t kFormatHeadLength = 16;

/// The MIME type of a document by its first octets: PDF, PostScript, JPEG, PNG, PWG raster (PWG
/// 5102.4) or Apple raster; "application/octet-stream", which lets the printer guess, for others.
std::string_view guessedFormat(Bytes head) noexcept;

}  // namespace platen::tool
