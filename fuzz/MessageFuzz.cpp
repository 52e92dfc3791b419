// SPDX-License-Identifier: Apache-2.0

// Decodes an input as a message. What decodes is asked everything that a message and its values
// can be asked, and must hold these:
//
//   - A reader without memory of its own, which hands out field after field, gives an equal message
//     that ends at the same octet.
//   - A copy of a value is equal to it, and has the same hash.
//   - What is taken out of a message outlives it.
//   - Written and decoded once more it gives an equal message and, written again, the same octets.
//     The messages that LossFinder finds do not: that is what the protocol's rules or ours make of
//     them, and is required of them just as well.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>
#include <vector>

#include "fuzz/LossFinder.h"
#include "platen/IPPBytesReader.h"
#include "platen/IPPMessage.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPUnarchiver.h"

namespace {

using platen::Bytes;
using platen::Data;
using platen::IPPAttributeGroup;
using platen::IPPMessage;
using platen::IPPValue;
using Message = std::shared_ptr<IPPMessage>;

void require(bool isTrue, const char* what) {
  if (!isTrue) {
    std::fprintf(stderr, "not true: %s\n", what);
    std::abort();
  }
}

// Gives what it is asked for and no look ahead, as a reader of a descriptor does.
class FieldReader : public platen::IPPBytesReader {
 public:
  explicit FieldReader(Bytes octets) : left_(octets) {}

  std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length) override {
    const std::size_t count = std::min(length, left_.size());
    std::copy_n(left_.begin(), count, destination);
    left_ = left_.subspan(count);
    return static_cast<std::ptrdiff_t>(count);
  }
  [[nodiscard]] std::size_t left() const { return left_.size(); }

 private:
  Bytes left_;
};

void requireSameFromFields(Bytes input, const Message& message) {
  const auto data = std::make_shared<Data>(input.begin(), input.end());
  const auto whole = std::make_shared<platen::IPPDataReader>(data);
  const auto fields = std::make_shared<FieldReader>(input);
  platen::IPPUnarchiver wholeDecoder(whole);
  platen::IPPUnarchiver fieldDecoder(fields);
  const Message fromWhole = IPPMessage::initWithCoder(wholeDecoder);
  const Message fromFields = IPPMessage::initWithCoder(fieldDecoder);

  require((fromWhole == nullptr) == (message == nullptr), "one input, one outcome");
  require((fromFields == nullptr) == (message == nullptr), "fields decode when the whole does");
  if (message != nullptr) {
    require(fromWhole->isEqual(*message), "one input, one message");
    require(fromFields->isEqual(*message), "fields give the same message");
    require(fields->left() == whole->window().size(), "both stop at the same octet");
  }
}

// An out-of-band value's hash is its identity, and so no two have the same.
bool hasHashOfContent(const IPPValue& value) {
  return dynamic_cast<const platen::IPPValueImpl*>(&value) != nullptr;
}

void askValue(const IPPValue& value) {
  const auto* uri = dynamic_cast<const platen::IPPUri*>(&value);
  require(uri == nullptr || uri->rawValue().isURL() == uri->text().has_value(),
          "the text of a uri is a URL");
  const IPPValue::Pointer copy = value.copy();
  require(copy->isEqual(value) && value.isEqual(*copy), "a copy is equal");
  require(copy->_hasEqualRawValue(value), "a copy has an equal raw object");
  require(!hasHashOfContent(value) || copy->hash() == value.hash(), "a copy has the same hash");
  require(copy->description() == value.description(), "a copy describes itself alike");

  static_cast<void>(value.value().description());
  static_cast<void>(value.stringValue());
  static_cast<void>(value.intValue());
  static_cast<void>(value.boolValue());
  static_cast<void>(value.rangeValue());
  static_cast<void>(value.resolutionValue());
  static_cast<void>(value.dateTimeValue());
  for (const auto& element : value.arrayValue().value_or(platen::IPPValueList())) {
    askValue(*element);
  }
  const auto members = value.dictionaryRepresentationValue();
  for (const auto& [name, member] : members.value_or(platen::IPPValueDictionary())) {
    askValue(*member);
  }
}

void askGroup(const IPPAttributeGroup& group) {
  const IPPAttributeGroup::Pointer copy = group.copy();
  require(copy->isEqual(group) && copy->hash() == group.hash(), "a copied group is equal");
  static_cast<void>(group.namedValues());
  for (const auto& attribute : group.attributes()) {
    require(attribute->name().has_value(), "an attribute of a group has a name");
    require(attribute->copy()->isEqual(*attribute), "a copied attribute is equal");
    static_cast<void>(attribute->hash());
    static_cast<void>(group.attributeForName(*attribute->name()));
    askValue(*attribute->ippValue());
  }
}

void askMessage(const IPPMessage& message) {
  const Message copy = message.copy();
  require(copy->isEqual(message) && copy->hash() == message.hash(), "a copied message is equal");
  static_cast<void>(message.description());
  static_cast<void>(message.namedValues());
  require(message.allNamedValues().size() == message.ippGroups().size(), "a dictionary for each");
  std::size_t attributes = 0;
  for (const auto& group : message.ippGroups()) {
    askGroup(*group);
    attributes += group->attributes().size();
  }
  require(message.attributesForKey("*").size() == attributes, "* finds every attribute");
}

// What an operation group is written as: sorted.
Message sorted(const IPPMessage& message) {
  auto result = std::make_shared<IPPMessage>(message.ippTag(), message.requestId());
  for (const auto& group : message.ippGroups()) {
    const IPPAttributeGroup::Pointer sortedGroup = group->ippClass().make();
    sortedGroup->addAttributesFromArray(group->_sortedForRequestAttributes());
    result->addGroup(sortedGroup);
  }
  return result;
}

void requireRoundTrip(const IPPMessage& message) {
  const Message expected = sorted(message);
  const Data written = message.dataRepresentation();
  require(expected->dataRepresentation() == written, "sorting comes before writing");
  const Message again = IPPMessage::initWithDataRepresentation(written);
  const platen::fuzz::LossFinder losses(*expected);
  if (losses.isUncertain()) {
    return;
  }
  if (losses.isLossy()) {
    require(again == nullptr || !again->isEqual(*expected), "what is lost does not come back");
    return;
  }
  require(again != nullptr, "what is written decodes");
  require(again->isEqual(*expected), "what is written decodes to an equal message");
  require(again->dataRepresentation() == written, "writing again writes the same");
}

// Under the address sanitizer this proves that each of them holds the memory it is in.
void requireLongLife(Message message) {
  std::vector<IPPValue::Pointer> values;
  std::vector<IPPAttributeGroup::Attributes> attributes = message->allAttributes();
  for (const auto& attribute : message->attributesForKey("*")) {
    values.push_back(attribute->ippValue());
    const auto elements = values.back()->arrayValue();
    values.push_back(elements ? elements->back() : values.back());
  }
  message.reset();
  attributes.resize(attributes.size() / 2);
  for (const IPPValue::Pointer& value : values) {
    static_cast<void>(value->description());
  }
  values.clear();
  for (const auto& list : attributes) {
    for (const auto& attribute : list) {
      static_cast<void>(attribute->description());
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes input(data, size);
  Message message = IPPMessage::initWithDataRepresentation(input);
  requireSameFromFields(input, message);
  if (message != nullptr) {
    askMessage(*message);
    requireRoundTrip(*message);
    requireLongLife(std::move(message));
  }
  return 0;
}
