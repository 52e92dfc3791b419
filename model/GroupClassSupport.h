// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platen/IPPAttributeGroup.h"

namespace platen::inline v0 {

/// The descriptor of a kind of group.
template <class Group>
constexpr IPPGroupClass groupClass(std::string_view className, std::int32_t tag,
                                   std::string_view name) {
  return {className, &IPPAttributeGroup::descriptor, tag, name,
          [] { return IPPAttributeGroup::Pointer(std::make_shared<Group>()); }};
}

}  // namespace platen::inline v0
