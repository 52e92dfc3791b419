// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// In what two messages differ.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platen/IPPMap.h"
#include "platen/IPPMessage.h"
#include "platen/IPPValue.h"

namespace platen::tool {

enum class Change { added, removed, changed };

/// Of one attribute, or of one member of a collection. It refers to the messages.
struct ValueDifference {
  Change change;
  std::string_view name;
  /// Null where there is none.
  const IPPValue* before;
  const IPPValue* after;
};
using ValueDifferences = std::vector<ValueDifference>;

struct GroupDifference {
  /// Of the group as a whole; `changed` for one that is in both messages.
  Change change;
  /// Its name, "job-attributes-tag".
  std::string_view kind;
  /// What tells it from others of its kind, "job-id 12"; empty when nothing needs to.
  std::string identity;
  /// By name.
  ValueDifferences values;
};

/// The groups that differ, without the attributes whose names match one of the patterns `ignored`:
/// those of `before` in their order, then those that `after` alone has. Groups of one kind are the
/// same one when they tell the same printer-name, job-id or job-uuid, or notify-subscription-id;
/// those that tell none are taken in their order, and the only printer of both messages is the same
/// one whatever its name. Of several attributes of one name the first is compared with the first.
/// The order of attributes and of members is no difference, that of the values of a set is.
std::vector<GroupDifference> differencesBetween(const IPPMessage& before, const IPPMessage& after,
                                                const std::vector<std::string>& ignored);

/// Of the members of two collections, by name.
ValueDifferences differencesBetween(const IPPMap& before, const IPPMap& after);

}  // namespace platen::tool
