// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "model/GroupClassSupport.h"
#include "platen/IPPConstants.h"

namespace platen::inline v0 {

constinit const IPPGroupClass IPPOperationGroup::descriptor =
    groupClass<IPPOperationGroup>("IPPOperationGroup", 1, kIPPOperationGroupName);

namespace {
const IPPGroupRegistration registration(IPPOperationGroup::descriptor);
}

IPPAttributeGroup::Attributes IPPOperationGroup::_sortedForRequestAttributes() const {
  Attributes sorted = attributes();
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto& left, const auto& right) {
    return left->_attributeOrder() < right->_attributeOrder();
  });
  return sorted;
}

}  // namespace platen::inline v0
