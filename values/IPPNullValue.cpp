// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPNullValue.h"

#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

RawValue IPPNullValue::rawValue() const { return Null(); }

RawValue IPPNullValue::value() const { return Null(); }

void IPPNullValue::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeRawValueForKey(Null(), kValueKey);
  } else {
    coder.encodeInt16(0);
  }
}

namespace {

template <class Value>
constexpr IPPValueClass nullClass(std::string_view className, std::uint8_t tag,
                                  std::string_view syntaxName) {
  return {className, tag, syntaxName, acceptsNothing, makeEmpty<Value>, decodeEmpty<Value>};
}

}  // namespace

constinit const IPPValueClass IPPUnsupported::descriptor =
    nullClass<IPPUnsupported>("IPPUnsupported", 0x10, "unsupported");
constinit const IPPValueClass IPPNoValue::descriptor =
    nullClass<IPPNoValue>("IPPNoValue", 0x13, "noValue");
constinit const IPPValueClass IPPNotSettable::descriptor =
    nullClass<IPPNotSettable>("IPPNotSettable", 0x15, "notSettable");
constinit const IPPValueClass IPPAdminDefine::descriptor =
    nullClass<IPPAdminDefine>("IPPAdminDefine", 0x17, "adminDefine");

namespace {
const IPPValueRegistration unsupportedRegistration(IPPUnsupported::descriptor);
const IPPValueRegistration noValueRegistration(IPPNoValue::descriptor);
const IPPValueRegistration notSettableRegistration(IPPNotSettable::descriptor);
const IPPValueRegistration adminDefineRegistration(IPPAdminDefine::descriptor);
}  // namespace

}  // namespace platen::inline v0
