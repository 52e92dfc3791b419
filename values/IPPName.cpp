// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPName::descriptor =
    stringClass<IPPName, 256, &IPPCoder::decodeNaturalLanguageString>("IPPName", 0x42,
                                                                      "nameWithoutLanguage");

namespace {
const IPPValueRegistration registration(IPPName::descriptor);
}

}  // namespace platen::inline v0
