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
        firstMember_(coder.scratch().members.size()),
        firstPending_(coder.scratch().values.size()) {}
  MapReader(const MapReader&) = delete;
  MapReader& operator=(const MapReader&) = delete;
  ~MapReader() {
    coder_.scratch().members.resize(firstMember_);
    coder_.scratch().values.resize(firstPending_);
  }

  IPPValue::Pointer read() {
    coder_.decodeInt16();
    for (auto tag = coder_.decodeIPPTag(); tag != kEndCollection; tag = coder_.decodeIPPTag()) {
      tag == kMemberName ? readMember() : readAdditionalValue();
    }
    coder_.decodeInt16();
    coder_.decodeInt16();
    storeMemberInHand();
    return coder_.makeMap(std::span(coder_.scratch().members).subspan(firstMember_));
  }

 private:
  void readMember() {
    storeMemberInHand();
    if (coder_.decodeInt16() != 0) {
      throw RangeException(std::string(kInvalidParameter));
    }
    name_ = coder_.decodeASCIIString();
    coder_.decodeIPPTag();
    current_ = readRecord();
  }

  // Any tag but those two: one more value of the member in hand.
  void readAdditionalValue() {
    if (current_ != nullptr) {
      coder_.scratch().values.push_back(std::move(current_));
      current_ = nullptr;
    }
    if (IPPValue::Pointer value = readRecord()) {
      coder_.scratch().values.push_back(std::move(value));
    }
  }

  // An attribute record without the attribute: its name says nothing inside of a collection.
  IPPValue::Pointer readRecord() {
    coder_.decodeASCIIString();
    return coder_.decodeIPPValue();
  }

  void storeMemberInHand() {
    IPPValue::Pointer value = takeValueInHand();
    if (value == nullptr) {
      return;
    }
    if (name_.isAbsent()) {
      throw InvalidArgumentException("A collection's value has no member name");
    }
    coder_.scratch().members.emplace_back(std::move(name_), std::move(value));
    name_ = Text();
  }

  IPPValue::Pointer takeValueInHand() {
    auto& values = coder_.scratch().values;
    if (values.size() == firstPending_) {
      return std::exchange(current_, nullptr);
    }
    IPPValue::Pointer array = coder_.makeArray(std::span(values).subspan(firstPending_));
    values.resize(firstPending_);
    return array;
  }

  IPPCoder& coder_;
  std::size_t firstMember_;
  std::size_t firstPending_;
  Text name_;
  IPPValue::Pointer current_;
};

IPPValue::Pointer decodeKeyedMap(IPPCoder& coder) {
  IPPValueDictionary values;
  for (const auto& [name, object] : coder.decodeNamedObjectsForKey(kValueKey)) {
    if (auto value = std::dynamic_pointer_cast<const IPPValue>(object)) {
      values.set(name, std::move(value));
    }
  }
  return IPPValue::dictionaryWithDictionary(std::move(values));
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
