// SPDX-License-Identifier: Apache-2.0
#include "model/GroupClassSupport.h"
#include "platen/IPPConstants.h"

namespace platen::inline v0 {

constinit const IPPGroupClass IPPJobGroup::descriptor =
    groupClass<IPPJobGroup>("IPPJobGroup", 2, kIPPJobGroupName);

namespace {
const IPPGroupRegistration registration(IPPJobGroup::descriptor);
}

}  // namespace platen::inline v0
