// SPDX-License-Identifier: Apache-2.0

/// How octets become the items of an archive. Every limit holds while they are parsed, so that no
/// tree is ever built that would be too deep to walk or to destroy.

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveForm.h"
#include "coding/ArchiveKeys.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {

namespace {

using Json = nlohmann::json;

// What the least of them takes that an archiver writes of objects: {"$ref":1} is 7 octets of CBOR.
// So each item has the room of these, and everything that is within the limit fits.
constexpr std::size_t kSmallestItem = 3;
constexpr std::size_t kSmallestObject = 4;
constexpr std::size_t kLeastRoom = 4096;  // That there is whatever the limit is.

// How many octets stand before the first one that is no UTF-8.
std::size_t lengthOfText(std::string_view octets) {
  std::size_t length = 0;
  while (const std::size_t size = firstCodePoint(octets.substr(length)).size) {
    length += size;
  }
  return length;
}

// The parser makes 0 of numbers that are closer to it than 64 bits can say.
bool isZero(std::string_view number) {
  const std::string_view digits = number.substr(0, number.find_first_of("eE"));
  return digits.find_first_of("123456789") == std::string_view::npos;
}

// Named by the parser that calls it; each says whether to go on, which is told by throwing instead.
class NodeBuilder : public Json::json_sax_t {
 public:
  /// `data` is what is parsed; where that ends too early it is for `fault`, if there is one.
  NodeBuilder(std::string_view data, std::size_t largestSize, const ArchiveFault* fault = nullptr)
      : data_(data), roomLeft_(std::max(largestSize, kLeastRoom)), faultAtEnd_(fault) {}

  bool null() override { return add(ArchiveNode()); }
  bool boolean(bool value) override { return add(ArchiveNode(value)); }
  bool number_integer(std::int64_t value) override { return add(ArchiveNode(value)); }
  bool number_unsigned(std::uint64_t value) override {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      refuse(IPPArchiveError::outOfRange, "a number beyond 64 bits");
    }
    return add(ArchiveNode(static_cast<std::int64_t>(value)));
  }
  // The parser makes a double of a whole number that it has no integer for. CBOR has no text.
  bool number_float(double value, const std::string& text) override {
    const bool isWhole = !text.empty() && text.find_first_of(".eE") == std::string::npos;
    if (text.empty() && !std::isfinite(value)) {
      refuse(IPPArchiveError::outOfRange, "a number that is not finite");
    }
    if (isWhole || !std::isfinite(value)) {
      refuse(IPPArchiveError::outOfRange, "a number beyond 64 bits");
    }
    if (value == 0 && !isZero(text)) {
      refuse(IPPArchiveError::outOfRange, "a number too close to 0 for 64 bits");
    }
    return add(ArchiveNode(value));
  }
  bool string(std::string& value) override {
    requireText(value);
    return add(ArchiveNode(std::move(value)));
  }
  bool binary(Json::binary_t& value) override {
    return add(ArchiveNode(std::string(value.begin(), value.end())));
  }
  bool start_array(std::size_t /*elements*/) override {
    return open(ArchiveNode(ArchiveNode::Array()), kSmallestItem);
  }
  bool end_array() override { return close(); }
  bool start_object(std::size_t /*elements*/) override {
    return open(ArchiveNode(std::make_unique<ArchiveNode::Object>()), kSmallestObject);
  }
  bool key(std::string& value) override {
    requireText(value);
    const bool isThere = open_.back().node.find(value) != nullptr;
    open_.back().key = std::move(value);
    if (isThere) {
      refuse(IPPArchiveError::duplicateKey, "is there twice");
    }
    return true;
  }
  bool end_object() override {
    ArchiveNode& object = open_.back().node;
    const ArchiveNode* octets = object.findTagged(kOctetsKey);
    if (octets != nullptr && octets->ifString() != nullptr) {
      object = ArchiveNode(octetsHere(*octets->ifString()));
    }
    return close();
  }
  bool parse_error(std::size_t position, const std::string& /*token*/,
                   const Json::exception& failure) override {
    constexpr int kEndOfCBOR = 110;
    constexpr int kNumberOverflow = 406;
    if (failure.id == kNumberOverflow) {
      refuse(IPPArchiveError::outOfRange, "a number beyond 64 bits");
    }
    if (failure.id == kEndOfCBOR && faultAtEnd_ != nullptr) {
      refuse(faultAtEnd_->code, faultAtEnd_->what);
    }
    if (failure.id == kNoJSON && lengthOfText(data_) < std::min(position, data_.size())) {
      refuse(IPPArchiveError::invalidText, kNoText);
    }
    refuse(IPPArchiveError::malformed, "not well-formed at octet " + std::to_string(position));
  }

  ArchiveNode takeRoot() { return std::move(root_); }

 private:
  static constexpr const char* kNoText = "text that is not UTF-8";
  static constexpr int kNoJSON = 101;

  struct Frame {
    ArchiveNode node;
    std::optional<std::string> key;  // Of the field that is being read, between two of them none.
  };

  [[noreturn]] void refuse(IPPArchiveError code, std::string what) const {
    std::string path;
    for (const Frame& frame : open_) {
      if (const auto* array = frame.node.ifArray()) {
        appendIndex(path, array->size());
      } else if (frame.key) {
        appendKey(path, *frame.key);
      }
    }
    throw ArchiveFault{code, std::move(path), std::move(what)};
  }

  void requireText(const std::string& text) const {
    if (!isValidUtf8(text)) {
      refuse(IPPArchiveError::invalidText, kNoText);
    }
  }

  [[nodiscard]] std::string octetsHere(const std::string& base64) {
    try {
      return octetsOfBase64(base64);
    } catch (const ArchiveFault& fault) {
      open_.back().key = kOctetsKey;
      refuse(fault.code, fault.what);
    }
  }

  bool open(ArchiveNode node, std::size_t size) {
    takeRoom(size);
    if (open_.size() == kIPPArchiveDeepestNesting) {
      refuse(IPPArchiveError::tooDeep, "nested too deep");
    }
    open_.push_back({std::move(node), {}});
    return true;
  }

  bool close() {
    ArchiveNode node = std::move(open_.back().node);
    open_.pop_back();
    place(std::move(node));
    return true;
  }

  bool add(ArchiveNode node) {
    takeRoom(kSmallestItem);
    place(std::move(node));
    return true;
  }

  void takeRoom(std::size_t size) {
    if (roomLeft_ < size) {
      refuse(IPPArchiveError::tooLarge, "too many items");
    }
    roomLeft_ -= size;
  }

  void place(ArchiveNode node) {
    if (open_.empty()) {
      root_ = std::move(node);
    } else if (auto* array = open_.back().node.ifArray()) {
      array->push_back(std::move(node));
    } else {
      open_.back().node.ifObject()->set(*open_.back().key, std::move(node));
      open_.back().key.reset();
    }
  }

  std::string_view data_;
  std::size_t roomLeft_;
  const ArchiveFault* faultAtEnd_;
  std::vector<Frame> open_;
  ArchiveNode root_;
};

// The first octet that is no blank: an object's brace, or the head of a map. JSON may have a byte
// order mark in front.
std::optional<IPPArchiveFormat> formIn(Bytes data) {
  for (const std::uint8_t octet : data) {
    if (octet >> 5U == 5) return IPPArchiveFormat::cbor;
    if (octet == '{' || octet == 0xEF) return IPPArchiveFormat::json;
    if (octet != ' ' && octet != '\t' && octet != '\n' && octet != '\r') break;
  }
  return std::nullopt;
}

// The parser takes a zero octet for the end of its input. None stands anywhere in JSON.
void requireNoZero(Bytes text) {
  const auto zero = std::find(text.begin(), text.end(), 0);
  if (zero != text.end()) {
    throw ArchiveFault{IPPArchiveError::malformed, "",
                       "not well-formed at octet " + std::to_string(zero - text.begin() + 1)};
  }
}

ArchiveNode readJSON(Bytes data, std::size_t largestSize) {
  requireNoZero(data);
  const char* text = reinterpret_cast<const char*>(data.data());
  NodeBuilder builder({text, data.size()}, largestSize);
  Json::sax_parse(text, text + data.size(), &builder);
  return builder.takeRoot();
}

ArchiveNode buildCBOR(Bytes data, NodeBuilder& builder) {
  Json::sax_parse(data.begin(), data.end(), &builder, Json::input_format_t::cbor);
  return builder.takeRoot();
}

// What stands before a fault of the shape says where it is, or has a fault of its own.
[[noreturn]] void refuseShape(Bytes data, const CBORFault& shape, std::size_t largestSize) {
  NodeBuilder before({}, largestSize, &shape.fault);
  buildCBOR(data.first(shape.item), before);
  throw shape.fault;
}

ArchiveNode readCBOR(Bytes data, std::size_t largestSize) {
  try {
    requireCBORShape(data);
  } catch (const CBORFault& shape) {
    refuseShape(data, shape, largestSize);
  }
  NodeBuilder builder({}, largestSize);
  return buildCBOR(data, builder);
}

bool isOfForm(IPPArchiveFormat form, IPPArchiveFormat wanted) {
  return (form == IPPArchiveFormat::cbor) == (wanted == IPPArchiveFormat::cbor);
}

}  // namespace

ArchiveNode readArchiveForm(Bytes data, const IPPArchiveReading& reading) {
  if (data.size() > reading.largestSize) {
    throw ArchiveFault{IPPArchiveError::tooLarge, "",
                       "more than " + std::to_string(reading.largestSize) + " octets"};
  }
  const std::optional<IPPArchiveFormat> form = formIn(data);
  if (!form || (reading.format && !isOfForm(*form, *reading.format))) {
    throw ArchiveFault{IPPArchiveError::notAnArchive, "", "not an archive in the form expected"};
  }
  return *form == IPPArchiveFormat::cbor ? readCBOR(data, reading.largestSize)
                                         : readJSON(data, reading.largestSize);
}

}  // namespace platen::inline v0
