// SPDX-License-Identifier: Apache-2.0
#include "model/GroupClassSupport.h"
#include "platen/IPPConstants.h"

namespace platen::inline v0 {

constinit const IPPGroupClass IPPPrinterGroup::descriptor =
    groupClass<IPPPrinterGroup>("IPPPrinterGroup", 4, kIPPPrinterGroupName);

namespace {
const IPPGroupRegistration registration(IPPPrinterGroup::descriptor);
}

}  // namespace platen::inline v0
