// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace platen::inline v0 {

// The keys of the archive itself. No class has a key that begins with "$".

inline constexpr std::string_view kArchiveKey = "$platen-archive";
inline constexpr std::string_view kClassKey = "$class";
inline constexpr std::string_view kIdKey = "$id";
inline constexpr std::string_view kReferenceKey = "$ref";
inline constexpr std::string_view kOctetsKey = "$octets";

// What an entry of a list of named things has.

inline constexpr std::string_view kEntryNameKey = "name";
inline constexpr std::string_view kEntryValueKey = "value";

}  // namespace platen::inline v0
