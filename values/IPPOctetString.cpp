// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

constinit const IPPValueClass IPPOctetString::descriptor =
    stringClass<IPPOctetString, 1024, &IPPCoder::decodeOctetString>("IPPOctetString", 0x30,
                                                                    "octetString");

namespace {
const IPPValueRegistration registration(IPPOctetString::descriptor);
}

void IPPOctetString::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    encodeKeyed(coder);
  } else {
    coder.encodeOctetString(text());
  }
}

}  // namespace platen::inline v0
