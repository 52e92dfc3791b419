// SPDX-License-Identifier: Apache-2.0

/// How octets become the items of an archive. Every limit holds while they are parsed, so that no
/// tree is ever built that would be too deep to walk or to destroy.

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveForm.h"
#include "coding/ArchiveKeys.h"
#include "platform/Utf8.h"

namespace platen::inline v0 {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kFewItems = 1024;  // That are allowed whatever the limit is.

// Named by the parser that calls it; each says whether to go on, which is told by throwing instead.
class NodeBuilder : public Json::json_sax_t {
 public:
  explicit NodeBuilder(std::size_t mostItems) : itemsLeft_(mostItems) {}

  bool null() override { return add(ArchiveNode()); }
  bool boolean(bool value) override { return add(ArchiveNode(value)); }
  bool number_integer(std::int64_t value) override { return add(ArchiveNode(value)); }
  bool number_unsigned(std::uint64_t value) override {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      refuse(IPPArchiveError::outOfRange, "a number beyond 64 bits");
    }
    return add(ArchiveNode(static_cast<std::int64_t>(value)));
  }
  // The parser makes a double of a whole number that it has no integer for.
  bool number_float(double value, const std::string& text) override {
    const bool isWhole = !text.empty() && text.find_first_of(".eE") == std::string::npos;
    if (isWhole || !std::isfinite(value)) {
      refuse(IPPArchiveError::outOfRange, "a number beyond 64 bits");
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
    return open(ArchiveNode(ArchiveNode::Array()));
  }
  bool end_array() override { return close(); }
  bool start_object(std::size_t /*elements*/) override {
    return open(ArchiveNode(std::make_unique<ArchiveNode::Object>()));
  }
  bool key(std::string& value) override {
    requireText(value);
    if (open_.back().node.find(value) != nullptr) {
      open_.back().key = std::move(value);
      refuse(IPPArchiveError::duplicateKey, "is there twice");
    }
    open_.back().key = std::move(value);
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
    constexpr int kNumberOverflow = 406;
    if (failure.id == kNumberOverflow) {
      refuse(IPPArchiveError::outOfRange, "a number beyond 64 bits");
    }
    refuse(IPPArchiveError::malformed, "not well-formed at octet " + std::to_string(position));
  }

  ArchiveNode takeRoot() { return std::move(root_); }

 private:
  struct Frame {
    ArchiveNode node;
    std::string key;  // Of the field that is being read.
  };

  [[noreturn]] void refuse(IPPArchiveError code, std::string what) const {
    std::string path;
    for (const Frame& frame : open_) {
      const ArchiveNode::Array* array = frame.node.ifArray();
      array == nullptr ? appendKey(path, frame.key) : appendIndex(path, array->size());
    }
    throw ArchiveFault{code, std::move(path), std::move(what)};
  }

  void requireText(const std::string& text) const {
    if (!isValidUtf8(text)) {
      refuse(IPPArchiveError::invalidText, "text that is not UTF-8");
    }
  }

  [[nodiscard]] std::string octetsHere(const std::string& base64) const {
    try {
      return octetsOfBase64(base64);
    } catch (const ArchiveFault& fault) {
      refuse(fault.code, fault.what);
    }
  }

  bool open(ArchiveNode node) {
    countItem();
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
    countItem();
    place(std::move(node));
    return true;
  }

  void countItem() {
    if (itemsLeft_-- == 0) {
      refuse(IPPArchiveError::tooLarge, "too many items");
    }
  }

  void place(ArchiveNode node) {
    if (open_.empty()) {
      root_ = std::move(node);
    } else if (auto* array = open_.back().node.ifArray()) {
      array->push_back(std::move(node));
    } else {
      open_.back().node.ifObject()->set(open_.back().key, std::move(node));
    }
  }

  std::size_t itemsLeft_;
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
  const bool isBinary = *form == IPPArchiveFormat::cbor;
  isBinary ? requireCBORShape(data) : requireNoZero(data);
  NodeBuilder builder(std::max(reading.largestSize / 8, kFewItems));
  Json::sax_parse(data.begin(), data.end(), &builder,
                  isBinary ? Json::input_format_t::cbor : Json::input_format_t::json);
  return builder.takeRoot();
}

}  // namespace platen::inline v0
