// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPResolutionValue.h"

#include <limits>

#include "platform/KeyValueProperties.h"
#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kHorizontalKey = "res-horizontal";
constexpr std::string_view kVerticalKey = "res-vertical";
constexpr std::string_view kInchesKey = "unitsAreInches";
constexpr std::uint8_t kDotsPerInch = 3;
constexpr std::uint8_t kDotsPerCentimetre = 4;

Size sizeIn(const RawValue& object) {
  const Size* size = object.ifSize();
  return size == nullptr ? Size() : *size;
}

// A double that no 32-bit integer can hold is held at the nearest one that can.
std::int32_t cutToInt(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t whole = Number(value).int64Value();
  return static_cast<std::int32_t>(
      std::min<std::int64_t>(std::max<std::int64_t>(whole, Limits::min()), Limits::max()));
}

IPPValue::Pointer makeResolution(const RawValue& object) {
  return std::make_shared<const IPPResolutionValue>(sizeIn(object));
}

IPPValue::Pointer decodeResolution(IPPCoder& coder) {
  Size size;
  if (coder.allowsKeyedCoding()) {
    size.width = static_cast<double>(coder.decodeIntForKey(kHorizontalKey));
    size.height = static_cast<double>(coder.decodeIntForKey(kVerticalKey));
    return coder.make<IPPResolutionValue>(size, coder.decodeBoolForKey(kInchesKey));
  }
  requireLength(coder.decodeInt16(), 9, "Invalid length read for IPP resolution value");
  size.width = coder.decodeInt32();
  size.height = coder.decodeInt32();
  return coder.makePlain<IPPResolutionValue>(size, coder.decodeByte() == kDotsPerInch);
}

}  // namespace

constinit const IPPValueClass IPPResolutionValue::descriptor{
    "IPPResolutionValue", 0x32,
    "resolution",         [](const RawValue& object) { return object.isSize(); },
    makeResolution,       decodeResolution};

namespace {
const IPPValueRegistration registration(IPPResolutionValue::descriptor);
}

IPPValue::Pointer IPPResolutionValue::_ippValue(const RawValue& size, bool inInches) {
  if (!descriptor._checkValue(size)) {
    throw InvalidArgumentException(std::string(kInvalidParameter));
  }
  return std::make_shared<const IPPResolutionValue>(size.asSize(), inInches);
}

RawValue IPPResolutionValue::rawValue() const { return size_; }

Size IPPResolutionValue::resolutionValue() const { return size_; }

std::optional<std::string> IPPResolutionValue::stringValue() const { return textOf(size_); }

std::size_t IPPResolutionValue::hash() const { return IPPValueImpl::hash() + (inInches_ ? 1 : 0); }

bool IPPResolutionValue::isEqual(const IPPValue& other) const {
  return IPPValue::isEqual(other) &&
         isEqualToResolution(static_cast<const IPPResolutionValue&>(other));
}

bool IPPResolutionValue::isEqualToResolution(const IPPResolutionValue& other) const noexcept {
  return inInches_ == other.inInches_ && size_ == other.size_;
}

IPPValue::Pointer IPPResolutionValue::copy() const {
  return std::make_shared<const IPPResolutionValue>(size_, inInches_);
}

void IPPResolutionValue::encodeWithCoder(IPPCoder& coder) const {
  const std::int32_t horizontal = cutToInt(size_.width);
  const std::int32_t vertical = cutToInt(size_.height);
  if (coder.allowsKeyedCoding()) {
    coder.encodeIntForKey(horizontal, kHorizontalKey);
    coder.encodeIntForKey(vertical, kVerticalKey);
    coder.encodeBoolForKey(inInches_, kInchesKey);
    return;
  }
  coder.encodeInt16(9);
  coder.encodeInt32(horizontal);
  coder.encodeInt32(vertical);
  coder.encodeByte(inInches_ ? kDotsPerInch : kDotsPerCentimetre);
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPResolutionValue::unitsAreInches>("unitsAreInches"),
};

}  // namespace

const KeyValueProperties& IPPResolutionValue::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPValueImpl::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
