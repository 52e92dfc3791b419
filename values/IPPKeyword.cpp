// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPKeyword::descriptor =
    stringClass<IPPKeyword, 256, &IPPCoder::decodeASCIIString>("IPPKeyword", 0x44, "keyword");

namespace {
const IPPValueRegistration registration(IPPKeyword::descriptor);
}

}  // namespace platen::inline v0
