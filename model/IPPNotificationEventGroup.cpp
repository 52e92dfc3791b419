// SPDX-License-Identifier: Apache-2.0
#include "model/GroupClassSupport.h"
#include "platen/IPPConstants.h"

namespace platen::inline v0 {

constinit const IPPGroupClass IPPNotificationEventGroup::descriptor =
    groupClass<IPPNotificationEventGroup>("IPPNotificationEventGroup", 7,
                                          kIPPNotificationEventGroupName);

namespace {
const IPPGroupRegistration registration(IPPNotificationEventGroup::descriptor);
}

}  // namespace platen::inline v0
