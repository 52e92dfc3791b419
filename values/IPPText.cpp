// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPText::descriptor =
    stringClass<IPPText, 1024, &IPPCoder::decodeNaturalLanguageString>("IPPText", 0x41,
                                                                       "textWithoutLanguage");

namespace {
const IPPValueRegistration registration(IPPText::descriptor);
}

}  // namespace platen::inline v0
