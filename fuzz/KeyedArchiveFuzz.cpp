// SPDX-License-Identifier: Apache-2.0

// Reads an input as a keyed archive, in whatever form it has. There is an object or an error, never
// both and never neither, and the error names its place. What is read must hold these:
//
//   - It can be archived again, in every form, and what is read from that archives to the same
//     octets: nothing is lost, neither what is held nor what is shared.
//   - It is equal to what it was archived from, if it is equal to itself, which a number that is
//     not one prevents. An archive of little size can hold what is huge when it is walked over, so
//     that is asked of small ones only.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "platen/IPPAttributeGroup.h"
#include "platen/IPPKeyedArchiver.h"
#include "platen/IPPKeyedUnarchiver.h"
#include "platen/IPPMessage.h"
#include "platen/IPPValue.h"

namespace {

using platen::Bytes;
using platen::Data;
using platen::IPPArchiveFormat;
using platen::IPPCodable;
using platen::IPPKeyedArchiver;
using platen::IPPKeyedUnarchiver;
using Object = std::shared_ptr<const IPPCodable>;

constexpr IPPArchiveFormat kFormats[] = {IPPArchiveFormat::json, IPPArchiveFormat::indentedJSON,
                                         IPPArchiveFormat::cbor};

void require(bool isTrue, const char* what) {
  if (!isTrue) {
    std::fprintf(stderr, "not true: %s\n", what);
    std::abort();
  }
}

/// Counts the objects that a walk meets, until there are too many.
class Census : public platen::IPPCoder {
 public:
  static bool isSmall(const IPPCodable& object) {
    Census census;
    object.encodeWithCoder(census);
    return census.left_ > 0;
  }

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  void encodeIntForKey(std::int64_t, std::string_view) override {}
  void encodeBoolForKey(bool, std::string_view) override {}
  void encodeStringForKey(std::optional<std::string_view>, std::string_view) override {}
  void encodeRawValueForKey(const platen::RawValue&, std::string_view) override {}
  void encodeObjectForKey(const Object& object, std::string_view) override { count(object); }
  void encodeObjectsForKey(const std::vector<Object>& objects, std::string_view) override {
    for (const Object& object : objects) {
      count(object);
    }
  }
  void encodeNamedObjectsForKey(const platen::Dictionary<Object>& objects,
                                std::string_view) override {
    for (const auto& [name, object] : objects) {
      count(object);
    }
  }

 private:
  void count(const Object& object) {
    if (object != nullptr && left_ > 0) {
      --left_;
      object->encodeWithCoder(*this);
    }
  }

  int left_ = 20000;
};

template <class Kind>
bool areEqualAs(const IPPCodable& left, const IPPCodable& right) {
  const auto* one = dynamic_cast<const Kind*>(&left);
  const auto* other = dynamic_cast<const Kind*>(&right);
  return one != nullptr && other != nullptr && one->isEqual(*other);
}

bool areEqual(const IPPCodable& left, const IPPCodable& right) {
  return areEqualAs<platen::IPPValue>(left, right) ||
         areEqualAs<platen::IPPAttribute>(left, right) ||
         areEqualAs<platen::IPPAttributeGroup>(left, right) ||
         areEqualAs<platen::IPPMessage>(left, right);
}

void requireBack(const IPPCodable& object, IPPArchiveFormat format, bool isComparable) {
  std::shared_ptr<const platen::Error> error;
  const auto archive = IPPKeyedArchiver::archivedDataWithRootObject(object, format, &error);
  require(archive.has_value() && error == nullptr, "what was read can be archived");
  const auto back = IPPKeyedUnarchiver::unarchiveObjectWithData<>(*archive, &error);
  require(back != nullptr && error == nullptr, "what was archived is read");
  require(IPPKeyedArchiver::archivedDataWithRootObject(*back, format) == archive,
          "and archives to the same octets");
  require(!isComparable || areEqual(object, *back), "and is equal");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::shared_ptr<const platen::Error> error;
  const Object object = IPPKeyedUnarchiver::unarchiveObjectWithData<>(Bytes(data, size), &error);
  require((object == nullptr) == (error != nullptr), "an object or an error");
  if (object == nullptr) {
    require(error->localizedDescription().has_value(), "an error says what is wrong");
    return 0;
  }
  const bool isComparable = Census::isSmall(*object) && areEqual(*object, *object);
  for (const IPPArchiveFormat format : kFormats) {
    requireBack(*object, format, isComparable);
  }
  return 0;
}
