// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPUriScheme::descriptor =
    stringClass<IPPUriScheme, 64, &IPPCoder::decodeASCIIString>("IPPUriScheme", 0x46, "uriScheme");

namespace {
const IPPValueRegistration registration(IPPUriScheme::descriptor);
}

}  // namespace platen::inline v0
