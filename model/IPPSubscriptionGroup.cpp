// SPDX-License-Identifier: Apache-2.0
#include "model/GroupClassSupport.h"
#include "platen/IPPConstants.h"

namespace platen::inline v0 {

constinit const IPPGroupClass IPPSubscriptionGroup::descriptor =
    groupClass<IPPSubscriptionGroup>("IPPSubscriptionGroup", 6, kIPPSubscriptionGroupName);

namespace {
const IPPGroupRegistration registration(IPPSubscriptionGroup::descriptor);
}

}  // namespace platen::inline v0
