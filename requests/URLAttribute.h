// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platen/IPPMessage.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// The URL that the first attribute of that name holds; nothing when it is absent or of another
/// kind.
inline std::optional<URL> urlNamed(const IPPMessage& message, std::string_view name) {
  const RawValue value = message.attributeValueForKey(name);
  return value.isURL() ? std::optional(value.asURL()) : std::nullopt;
}

}  // namespace platen::inline v0
