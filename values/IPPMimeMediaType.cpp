// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPMimeMediaType::descriptor =
    stringClass<IPPMimeMediaType, 256, &IPPCoder::decodeASCIIString>("IPPMimeMediaType", 0x49,
                                                                     "mimeMediaName");

namespace {
const IPPValueRegistration registration(IPPMimeMediaType::descriptor);
}

}  // namespace platen::inline v0
