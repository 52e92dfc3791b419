// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The parts of a path of keys:
///
///     path = key *( "." key )        ; no key is empty

#include <string_view>
#include <utility>

namespace platen::inline v0 {

/// True when the text is a path.
inline bool isKeyPath(std::string_view path) noexcept {
  return !path.empty() && path.front() != '.' && path.back() != '.' &&
         path.find("..") == std::string_view::npos;
}

/// Takes the first key off a path, and the "." behind it.
inline std::string_view takeKey(std::string_view& path) noexcept {
  const std::string_view key = path.substr(0, path.find('.'));
  path.remove_prefix(key.size() < path.size() ? key.size() + 1 : key.size());
  return key;
}

}  // namespace platen::inline v0
