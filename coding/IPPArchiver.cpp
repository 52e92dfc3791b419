// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPArchiver.h"

#include <cstring>
#include <utility>

namespace platen::inline v0 {

namespace {

template <class Integer>
Integer integerAt(const void* address) noexcept {
  Integer value = 0;
  std::memcpy(&value, address, sizeof value);
  return value;
}

}  // namespace

std::shared_ptr<IPPArchiver> IPPArchiver::initForWritingWithMutableData(
    std::shared_ptr<Data> data) {
  return data == nullptr ? nullptr : std::make_shared<IPPArchiver>(std::move(data));
}

IPPArchiver::IPPArchiver(std::shared_ptr<Data> data) : data_(std::move(data)) {}

void IPPArchiver::encodeRootObject(const IPPCodable& object) { encodeObject(object); }

void IPPArchiver::encodeValueOfType(char type, const void* value) {
  switch (type) {
    case 'c':
      return encodeBigEndian(integerAt<std::uint8_t>(value), 1);
    case 's':
      return encodeBigEndian(integerAt<std::uint16_t>(value), 2);
    case 'i':
      return encodeBigEndian(integerAt<std::uint32_t>(value), 4);
    default:
      return;
  }
}

void IPPArchiver::encodeBytes(const void* bytes, std::size_t length) {
  encodeBigEndian(static_cast<std::uint16_t>(length), 2);
  if (length != 0) {
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    data_->insert(data_->end(), first, first + length);
    cursor_ += length;
  }
}

TextEncoding IPPArchiver::naturalLanguageEncoding() const noexcept {
  return naturalLanguageEncoding_;
}

void IPPArchiver::setNaturalLanguageEncoding(TextEncoding encoding) noexcept {
  naturalLanguageEncoding_ = encoding;
}

void IPPArchiver::encodeBigEndian(std::uint32_t value, std::size_t octets) {
  data_->resize(data_->size() + octets);
  for (std::size_t i = octets; i > 0; --i) {
    (*data_)[cursor_ + i - 1] = static_cast<std::uint8_t>(value);
    value >>= 8U;
  }
  cursor_ += octets;
}

}  // namespace platen::inline v0
