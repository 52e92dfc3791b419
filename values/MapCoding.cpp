// SPDX-License-Identifier: Apache-2.0

/// The body of a collection, RFC 8010 §3.1.6 and §3.1.7:
///
///     body       = %x00.00 *member end
///     member     = %x4A %x00.00 LENGTH-16 member-name
///                  value-tag %x00.00 value-body *additional
///     additional = value-tag %x00.00 value-body
///     end        = %x37 %x00.00 %x00.00

#include "values/MapCoding.h"

#include "values/ValueClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::uint8_t kEndCollection = 0x37;
constexpr std::uint8_t kMemberName = 0x4A;

class MapReader {
 public:
  explicit MapReader(IPPCoder& coder)
      : coder_(coder),
        members_(coder.scratch().members),
        values_(coder.scratch().values),
        firstMember_(members_.size()),
        firstValue_(values_.size()) {}
  MapReader(const MapReader&) = delete;
  MapReader& operator=(const MapReader&) = delete;
  ~MapReader() {
    members_.erase(members_.begin() + static_cast<std::ptrdiff_t>(firstMember_), members_.end());
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(firstValue_), values_.end());
  }

  IPPValue::Pointer read() {
    coder_.decodeInt16();
    tag_ = coder_.decodeIPPTag();
    while (tag_ != kEndCollection) {
      readMember();
    }
    coder_.decodeInt16();
    coder_.decodeInt16();
    return coder_.makeMap(std::span(members_).subspan(firstMember_));
  }

 private:
  // Values that come before the first name are read as well: a member without a name.
  void readMember() {
    Text name;
    IPPValue::Pointer value;
    if (tag_ == kMemberName) {
      name = readName();
      coder_.decodeIPPTag();
      value = readRecord();
      tag_ = coder_.decodeIPPTag();
    }
    if (tag_ != kMemberName && tag_ != kEndCollection) {
      value = readAdditionalValues(std::move(value));
    }
    if (value != nullptr) {
      store(std::move(name), std::move(value));
    }
  }

  Text readName() {
    if (coder_.decodeInt16() != 0) {
      throw RangeException(std::string(kInvalidParameter));
    }
    return coder_.decodeASCIIString();
  }

  // An attribute record without the attribute: its name says nothing inside of a collection.
  IPPValue::Pointer readRecord() {
    coder_.decodeASCIIString();
    return coder_.decodeIPPValue();
  }

  IPPValue::Pointer readAdditionalValues(IPPValue::Pointer value) {
    do {
      pushValue(std::move(value));
      value = readRecord();
      tag_ = coder_.decodeIPPTag();
    } while (tag_ != kMemberName && tag_ != kEndCollection);
    pushValue(std::move(value));
    if (values_.size() == firstValue_) {
      return nullptr;
    }
    IPPValue::Pointer set = coder_.makeArray(std::span(values_).subspan(firstValue_));
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(firstValue_), values_.end());
    return set;
  }

  void pushValue(IPPValue::Pointer value) {
    if (value != nullptr) {
      values_.push_back(std::move(value));
    }
  }

  void store(Text name, IPPValue::Pointer value) {
    if (name.isAbsent()) {
      throw InvalidArgumentException("A collection's value has no member name");
    }
    members_.emplace_back(std::move(name), std::move(value));
  }

  IPPCoder& coder_;
  std::vector<IPPCoder::Member>& members_;
  std::vector<IPPValue::Pointer>& values_;
  std::size_t firstMember_;
  std::size_t firstValue_;
  std::int32_t tag_ = 0;
};

IPPValue::Pointer decodeKeyedMap(IPPCoder& coder) {
  IPPValueDictionary values;
  for (const auto& [name, object] : coder.decodeNamedObjectsForKey(kValueKey)) {
    if (auto value = std::dynamic_pointer_cast<const IPPValue>(object)) {
      values.set(name, std::move(value));
    }
  }
  return IPPValue::dictionaryWithDictionary(values);
}

}  // namespace

void encodeMap(const IPPMap& map, IPPCoder& coder) {
  coder.encodeInt16(0);
  for (std::size_t i = 0; i < map.size(); ++i) {
    coder.encodeByte(kMemberName);
    coder.encodeInt16(0);
    coder.encodeASCIIString(map.nameAt(i));
    coder.encodeByte(map.valueAt(i).ippTag());
    coder.encodeInt16(0);
    coder.encodeObject(map.valueAt(i));
  }
  coder.encodeByte(kEndCollection);
  coder.encodeInt16(0);
  coder.encodeInt16(0);
}

IPPValue::Pointer decodeMap(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    return decodeKeyedMap(coder);
  }
  const IPPCoder::CollectionScope scope(coder);
  return MapReader(coder).read();
}

}  // namespace platen::inline v0
