// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPNaturalLanguage::descriptor =
    stringClass<IPPNaturalLanguage, 64, &IPPCoder::decodeASCIIString>("IPPNaturalLanguage", 0x48,
                                                                      "naturalLanguage");

namespace {
const IPPValueRegistration registration(IPPNaturalLanguage::descriptor);
}

}  // namespace platen::inline v0
