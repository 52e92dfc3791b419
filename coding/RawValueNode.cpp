// SPDX-License-Identifier: Apache-2.0
#include "coding/RawValueNode.h"

#include <array>
#include <cmath>
#include <limits>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveKeys.h"

namespace platen::inline v0 {

namespace {

constexpr std::string_view kNullKey = "$null";
constexpr std::string_view kRealKey = "$real";
constexpr std::string_view kUrlKey = "$url";
constexpr std::string_view kRangeKey = "$range";
constexpr std::string_view kSizeKey = "$size";
constexpr std::string_view kDateKey = "$date";
constexpr std::string_view kDictionaryKey = "$dictionary";

// An entry of a dictionary is two levels of the form: half of what the objects around leave.
constexpr int kDeepestRaw = 64;

constexpr std::string_view kNaN = "NaN";
constexpr std::string_view kInfinity = "Infinity";
constexpr std::string_view kNegativeInfinity = "-Infinity";

ArchiveNode pairNode(ArchiveNode first, ArchiveNode second) {
  ArchiveNode::Array pair;
  pair.push_back(std::move(first));
  pair.push_back(std::move(second));
  return ArchiveNode(std::move(pair));
}

ArchiveNode wordNode(std::uint64_t word) { return ArchiveNode(static_cast<std::int64_t>(word)); }

ArchiveNode realNode(double real) {
  if (std::isfinite(real)) {
    return ArchiveNode(real);
  }
  const std::string_view infinity = real < 0 ? kNegativeInfinity : kInfinity;
  return ArchiveNode::tagged(kRealKey, ArchiveNode(std::isnan(real) ? kNaN : infinity));
}

ArchiveNode numberNode(const Number& number) {
  if (number.isReal()) {
    return realNode(number.doubleValue());
  }
  return number.isBoolean() ? ArchiveNode(number.boolValue()) : ArchiveNode(number.int64Value());
}

ArchiveNode entryNode(const std::string& name, ArchiveNode value) {
  auto entry = std::make_unique<ArchiveNode::Object>();
  entry->set(kEntryNameKey, ArchiveNode(name));
  entry->set(kEntryValueKey, std::move(value));
  return ArchiveNode(std::move(entry));
}

class NodeMaker {
 public:
  explicit NodeMaker(int depth) : depth_(depth) {
    if (depth > kDeepestRaw) {
      throw ArchiveFault{IPPArchiveError::tooDeep, "", "nested too deep"};
    }
  }

  ArchiveNode operator()(std::monostate /*absent*/) const { return {}; }
  ArchiveNode operator()(Null /*null*/) const {
    return ArchiveNode::tagged(kNullKey, ArchiveNode(true));
  }
  ArchiveNode operator()(const std::string& string) const { return ArchiveNode(string); }
  ArchiveNode operator()(const URL& url) const {
    return ArchiveNode::tagged(kUrlKey, ArchiveNode(url.absoluteString()));
  }
  ArchiveNode operator()(const Number& number) const { return numberNode(number); }
  ArchiveNode operator()(const Range& range) const {
    return ArchiveNode::tagged(kRangeKey,
                               pairNode(wordNode(range.location), wordNode(range.length)));
  }
  ArchiveNode operator()(const Size& size) const {
    return ArchiveNode::tagged(kSizeKey, pairNode(realNode(size.width), realNode(size.height)));
  }
  ArchiveNode operator()(const Date& date) const {
    return ArchiveNode::tagged(kDateKey,
                               ArchiveNode(std::int64_t{date.time_since_epoch().count()}));
  }
  ArchiveNode operator()(const RawValue::Array& array) const {
    ArchiveNode::Array items;
    for (const RawValue& item : array) {
      items.push_back(item.visit(NodeMaker(depth_ + 1)));
    }
    return ArchiveNode(std::move(items));
  }
  ArchiveNode operator()(const RawValue::Dictionary& dictionary) const {
    ArchiveNode::Array entries;
    for (const auto& [name, value] : dictionary) {
      entries.push_back(entryNode(name, value.visit(NodeMaker(depth_ + 1))));
    }
    return ArchiveNode::tagged(kDictionaryKey, ArchiveNode(std::move(entries)));
  }

 private:
  int depth_;
};

class RawReader {
 public:
  explicit RawReader(const ArchiveNode& root, int depth = 0) : root_(root), depth_(depth) {}

  // NOLINTNEXTLINE(misc-no-recursion): bounded by kDeepestRaw and kIPPArchiveDeepestNesting
  [[nodiscard]] RawValue read(const ArchiveNode& node) const {
    if (depth_ > kDeepestRaw) {
      throw ArchiveFault{IPPArchiveError::tooDeep, keyPathOf(node, root_), "nested too deep"};
    }
    if (const auto* boolean = node.ifBool()) return Number(*boolean);
    if (const auto* integer = node.ifInt()) return Number(*integer);
    if (const auto* real = node.ifReal()) return Number(*real);
    if (const auto* string = node.ifString()) return *string;
    if (const auto* array = node.ifArray()) return readArray(*array);
    return node.isAbsent() ? RawValue() : readTagged(node);
  }

 private:
  using Read = RawValue (RawReader::*)(const ArchiveNode&) const;
  struct Tag {
    std::string_view key;
    Read read;
  };

  [[nodiscard]] RawValue readTagged(const ArchiveNode& node) const {
    static constexpr std::array<Tag, 7> kTags = {{{kNullKey, &RawReader::readNull},
                                                  {kRealKey, &RawReader::readReal},
                                                  {kUrlKey, &RawReader::readURL},
                                                  {kRangeKey, &RawReader::readRange},
                                                  {kSizeKey, &RawReader::readSize},
                                                  {kDateKey, &RawReader::readDate},
                                                  {kDictionaryKey, &RawReader::readDictionary}}};
    for (const Tag& tag : kTags) {
      if (const ArchiveNode* value = node.findTagged(tag.key)) {
        return (this->*tag.read)(*value);
      }
    }
    refuse(node, "not a raw object");
  }

  [[noreturn]] void refuse(const ArchiveNode& node, std::string what) const {
    throw ArchiveFault{IPPArchiveError::wrongType, keyPathOf(node, root_), std::move(what)};
  }

  template <class T>
  [[nodiscard]] const T& required(const T* found, const ArchiveNode& node, const char* kind) const {
    if (found == nullptr) {
      refuse(node, std::string(node.kind()) + " where " + kind + " is expected");
    }
    return *found;
  }

  [[nodiscard]] std::int64_t intIn(const ArchiveNode& node) const {
    return required(node.ifInt(), node, "a whole number");
  }
  [[nodiscard]] const std::string& stringIn(const ArchiveNode& node) const {
    return required(node.ifString(), node, "a text");
  }
  [[nodiscard]] double realIn(const ArchiveNode& node) const {
    const RawValue value = read(node);
    const double real = required(value.ifNumber(), node, "a number").doubleValue();
    const bool isRounded = node.ifInt() != nullptr && node != ArchiveNode(real);
    if (isRounded || node.ifBool() != nullptr) {
      refuse(node, "not a real number");
    }
    return real;
  }
  [[nodiscard]] const ArchiveNode::Array& pairIn(const ArchiveNode& node) const {
    const auto& pair = required(node.ifArray(), node, "a list of two");
    if (pair.size() != 2) {
      refuse(node, "not a list of two");
    }
    return pair;
  }

  [[nodiscard]] RawValue readNull(const ArchiveNode& node) const {
    if (!required(node.ifBool(), node, "true")) {
      refuse(node, "not true");
    }
    return Null();
  }

  [[nodiscard]] RawValue readReal(const ArchiveNode& node) const {
    const std::string& text = stringIn(node);
    using Limits = std::numeric_limits<double>;
    if (text == kNaN) return Number(Limits::quiet_NaN());
    if (text == kInfinity) return Number(Limits::infinity());
    if (text == kNegativeInfinity) return Number(-Limits::infinity());
    refuse(node, quotedForFault(text) + " is no number");
  }

  [[nodiscard]] RawValue readURL(const ArchiveNode& node) const {
    const std::string& text = stringIn(node);
    auto url = URL::parse(text);
    if (!url) {
      refuse(node, quotedForFault(text) + " is no URL");
    }
    return std::move(*url);
  }

  [[nodiscard]] RawValue readRange(const ArchiveNode& node) const {
    const auto& pair = pairIn(node);
    return Range{static_cast<std::uint64_t>(intIn(pair[0])),
                 static_cast<std::uint64_t>(intIn(pair[1]))};
  }

  [[nodiscard]] RawValue readSize(const ArchiveNode& node) const {
    const auto& pair = pairIn(node);
    return Size{realIn(pair[0]), realIn(pair[1])};
  }

  [[nodiscard]] RawValue readDate(const ArchiveNode& node) const {
    return Date(std::chrono::milliseconds(intIn(node)));
  }

  [[nodiscard]] RawValue readInside(const ArchiveNode& node) const {
    return RawReader(root_, depth_ + 1).read(node);
  }

  [[nodiscard]] RawValue readArray(const ArchiveNode::Array& items) const {
    RawValue::Array array;
    array.reserve(items.size());
    for (const ArchiveNode& item : items) {
      array.push_back(readInside(item));
    }
    return array;
  }

  [[nodiscard]] RawValue readDictionary(const ArchiveNode& node) const {
    RawValue::Dictionary dictionary;
    for (const ArchiveNode& entry : required(node.ifArray(), node, "a list")) {
      const ArchiveNode* name = entry.find(kEntryNameKey);
      const ArchiveNode* value = entry.find(kEntryValueKey);
      if (name == nullptr || value == nullptr || entry.ifObject()->size() != 2) {
        refuse(entry, "not an entry with a name and a value");
      }
      if (dictionary.find(stringIn(*name)) != nullptr) {
        throw ArchiveFault{IPPArchiveError::duplicateKey, keyPathOf(*name, root_),
                           "is there twice"};
      }
      dictionary.set(stringIn(*name), readInside(*value));
    }
    return dictionary;
  }

  const ArchiveNode& root_;
  int depth_;
};

}  // namespace

ArchiveNode nodeOf(const RawValue& value) { return value.visit(NodeMaker(0)); }

RawValue rawValueOf(const ArchiveNode& node, const ArchiveNode& root) {
  return RawReader(root).read(node);
}

}  // namespace platen::inline v0
