// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPCharset::descriptor =
    stringClass<IPPCharset, 64, &IPPCoder::decodeASCIIString>("IPPCharset", 0x47, "charset");

namespace {
const IPPValueRegistration registration(IPPCharset::descriptor);
}

}  // namespace platen::inline v0
