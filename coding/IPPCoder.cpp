// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPCoder.h"

#include "platen/Exception.h"
#include "platform/KeyValueProperties.h"

namespace platen::inline v0 {

IPPCodable::~IPPCodable() = default;

IPPCoder::~IPPCoder() = default;

IPPCoder::CollectionScope::CollectionScope(IPPCoder& coder) : coder_(coder) {
  if (coder.collectionDepth_ == kDeepestCollection) {
    throw InconsistentArchiveException("Collections nested deeper than 64");
  }
  ++coder.collectionDepth_;
}

namespace {

[[noreturn]] void refuseSequential() {
  throw InvalidArgumentException("This coder has no sequence of fields");
}

[[noreturn]] void refuseKeyed() {
  throw InvalidArgumentException("This coder has no named fields");
}

}  // namespace

void IPPCoder::encodeObject(const IPPCodable& object) { object.encodeWithCoder(*this); }

std::shared_ptr<IPPCodable> IPPCoder::decodeObject() { return nullptr; }

void IPPCoder::encodeValueOfType(char /*type*/, const void* /*value*/) { refuseSequential(); }

void IPPCoder::encodeBytes(const void* /*bytes*/, std::size_t /*length*/) { refuseSequential(); }

void IPPCoder::decodeValueOfType(char /*type*/, void* /*destination*/) { refuseSequential(); }

Bytes IPPCoder::decodeBytesWithReturnedLength() { refuseSequential(); }

TextEncoding IPPCoder::naturalLanguageEncoding() const noexcept { return TextEncoding::utf8(); }

void IPPCoder::setNaturalLanguageEncoding(TextEncoding /*encoding*/) noexcept {}

void IPPCoder::setCurrentTag(std::int32_t /*tag*/) noexcept {}

std::optional<std::vector<std::shared_ptr<IPPAttributeGroup>>> IPPCoder::decodeIPPGroups() {
  return std::nullopt;
}

std::shared_ptr<IPPAttribute> IPPCoder::decodeIPPAttribute() { return nullptr; }

std::shared_ptr<const IPPValue> IPPCoder::decodeIPPValue() { return nullptr; }

std::shared_ptr<void> IPPCoder::roomFor(std::size_t /*size*/, std::size_t /*alignment*/) {
  return nullptr;
}

void IPPCoder::destroyInTheEnd(void* /*object*/, void (* /*destroy*/)(void*)) {}

Text IPPCoder::keepText(std::string_view text) { return Text(text); }

void IPPCoder::encodeIntForKey(std::int64_t /*value*/, std::string_view /*key*/) { refuseKeyed(); }

void IPPCoder::encodeBoolForKey(bool /*value*/, std::string_view /*key*/) { refuseKeyed(); }

void IPPCoder::encodeStringForKey(std::optional<std::string_view> /*value*/,
                                  std::string_view /*key*/) {
  refuseKeyed();
}

void IPPCoder::encodeRawValueForKey(const RawValue& /*value*/, std::string_view /*key*/) {
  refuseKeyed();
}

void IPPCoder::encodeObjectForKey(const Object& /*object*/, std::string_view /*key*/) {
  refuseKeyed();
}

void IPPCoder::encodeObjectsForKey(const std::vector<Object>& /*objects*/,
                                   std::string_view /*key*/) {
  refuseKeyed();
}

void IPPCoder::encodeNamedObjectsForKey(const Dictionary<Object>& /*objects*/,
                                        std::string_view /*key*/) {
  refuseKeyed();
}

std::int64_t IPPCoder::decodeIntForKey(std::string_view /*key*/) { refuseKeyed(); }

bool IPPCoder::decodeBoolForKey(std::string_view /*key*/) { refuseKeyed(); }

std::optional<std::string> IPPCoder::decodeStringForKey(std::string_view /*key*/) { refuseKeyed(); }

RawValue IPPCoder::decodeRawValueForKey(std::string_view /*key*/) { refuseKeyed(); }

IPPCoder::Object IPPCoder::decodeObjectForKey(std::string_view /*key*/) { refuseKeyed(); }

std::vector<IPPCoder::Object> IPPCoder::decodeObjectsForKey(std::string_view /*key*/) {
  refuseKeyed();
}

Dictionary<IPPCoder::Object> IPPCoder::decodeNamedObjectsForKey(std::string_view /*key*/) {
  refuseKeyed();
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPCodable::className>("className"),
};

}  // namespace

const KeyValueProperties& IPPCodable::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&KeyValueAccess::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
