// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPRangeOfInteger.h"

#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kLocationKey = "range-location";
constexpr std::string_view kLengthKey = "range-length";

IPPValue::Pointer makeRange(const RawValue& object) {
  const Range* range = object.ifRange();
  return std::make_shared<const IPPRangeOfInteger>(range == nullptr ? Range() : *range);
}

std::uint64_t signedWord(std::int64_t value) { return static_cast<std::uint64_t>(value); }

IPPValue::Pointer decodeRange(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    return coder.make<IPPRangeOfInteger>(Range{signedWord(coder.decodeIntForKey(kLocationKey)),
                                               signedWord(coder.decodeIntForKey(kLengthKey))});
  }
  requireLength(coder.decodeInt16(), 8, "Invalid length read for IPP range value");
  const std::uint64_t lower = signedWord(coder.decodeInt32());
  const std::uint64_t upper = signedWord(coder.decodeInt32());
  return coder.makePlain<IPPRangeOfInteger>(Range{lower, upper - lower + 1});
}

}  // namespace

constinit const IPPValueClass IPPRangeOfInteger::descriptor{
    "IPPRangeOfInteger", 0x33,
    "rangeOfInteger",    [](const RawValue& object) { return object.isRange(); },
    makeRange,           decodeRange};

namespace {
const IPPValueRegistration registration(IPPRangeOfInteger::descriptor);
}

RawValue IPPRangeOfInteger::rawValue() const { return range_; }

Range IPPRangeOfInteger::rangeValue() const { return range_; }

std::optional<std::string> IPPRangeOfInteger::stringValue() const { return textOf(range_); }

void IPPRangeOfInteger::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    // As wide as the range has them, although the wire has 32 bits: whatever bounds an application
    // gave it come back, and those that fit 32 bits are the same text either way.
    coder.encodeIntForKey(static_cast<std::int64_t>(range_.location), kLocationKey);
    coder.encodeIntForKey(static_cast<std::int64_t>(range_.length), kLengthKey);
    return;
  }
  coder.encodeInt16(8);
  coder.encodeInt32(static_cast<std::int32_t>(range_.location));
  coder.encodeInt32(static_cast<std::int32_t>(range_.location + range_.length - 1));
}

}  // namespace platen::inline v0
