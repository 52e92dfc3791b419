// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>

#include "platen/IPPCoder.h"

namespace platen::inline v0 {

/// Leaves one member of each name at the front of `members`, in the order in which the names first
/// came, each with the value that came last. Returns how many. No walk over the members is repeated
/// for each of them once there are many: the list comes off the wire.
std::size_t uniteMembers(std::span<IPPCoder::Member> members);

}  // namespace platen::inline v0
