// SPDX-License-Identifier: Apache-2.0

/// The state machine of group decoding, RFC 8010 §3.1:
///
///     groups     = *( group ) %x03
///     group      = delimiter-tag *record          ; delimiter-tag: 1, 2, 4 to 7, and 80 to FF
///     record     = value-tag LENGTH-16 [name] value-body             ; value-tag: 08 to 7F
///
/// A record without a name is one more value of the named attribute before it. A tag 0 is passed
/// over: the length of an out-of-band value, which its class does not read, arrives as two of them.

#include <exception>

#include "coding/MessageMemory.h"
#include "platen/Exception.h"
#include "platen/IPPConstants.h"
#include "platen/IPPUnarchiver.h"

namespace platen::inline v0 {

namespace {

constexpr std::int32_t kEndOfAttributes = 3;
constexpr std::int32_t kLastDelimiter = 7;
constexpr std::size_t kUsualValues = 64;  // of the longest set in the answer of a printer

}  // namespace

class IPPUnarchiver::GroupDecoder {
 public:
  using Groups = std::vector<std::shared_ptr<IPPAttributeGroup>>;

  explicit GroupDecoder(IPPUnarchiver& decoder) : decoder_(decoder) {
    pending_.reserve(kUsualValues);
  }

  Groups decode() {
    for (auto tag = decoder_.decodeIPPTag(); tag != kEndOfAttributes;
         tag = decoder_.decodeIPPTag()) {
      if (tag > kLastDelimiter) {
        takeRecord();
      } else if (tag != 0) {
        startGroup(tag);
      }
    }
    // Values before the first named attribute are forgotten here, and only here, by design.
    if (named_ != nullptr) {
      foldPendingValues();
    }
    return std::move(groups_);
  }

 private:
  // A record without a name, which most are, makes no attribute.
  void takeRecord() {
    Text name = decoder_.decodeASCIIString();
    IPPValue::Pointer value = decoder_.decodeIPPValue();
    if (name.isAbsent()) {
      addPendingValue(std::move(value));
      return;
    }
    foldPendingValues();
    named_ = decoder_.memory_->makeAttribute(std::move(value), std::move(name));
    if (!groups_.empty()) {
      groups_.back()->addAttribute(named_);
    }
  }

  // The list begins with the attribute's own value, so that nothing is inserted when it is folded.
  void addPendingValue(IPPValue::Pointer value) {
    if (pending_.empty() && named_ != nullptr) {
      pending_.push_back(named_->ippValue());
    }
    pending_.push_back(std::move(value));
  }

  void startGroup(std::int32_t tag) {
    if (!groups_.empty()) {
      installCharset(*groups_.back());
    }
    groups_.push_back(IPPAttributeGroup::classForIPPTag(tag).make());
  }

  // The charset of a message is known once its operation group is complete, so the group's own
  // text is read with the encoding in force before.
  void installCharset(const IPPAttributeGroup& group) {
    if (group.name() != kIPPOperationGroupName) {
      return;
    }
    const RawValue charset = group.attributeValueForKey(kIPPAttributesCharsetAttributeName);
    if (const std::string* name = charset.ifString()) {
      decoder_.installCharsetArrived(*name);
    } else if (!charset.isAbsent()) {
      decoder_.installCharsetArrived({});  // a charset that is no string names none
    }
  }

  // Makes the named attribute's value and those that came after it one set.
  void foldPendingValues() {
    if (pending_.empty()) {
      return;
    }
    if (named_ == nullptr) {
      throw InvalidArgumentException("Additional values have no attribute before them");
    }
    named_->setIppValue(decoder_.makeArray(pending_));
    pending_.clear();
  }

  IPPUnarchiver& decoder_;
  Groups groups_;
  std::shared_ptr<IPPAttribute> named_;
  IPPValueList pending_;
};

std::optional<std::vector<std::shared_ptr<IPPAttributeGroup>>> IPPUnarchiver::decodeIPPGroups() {
  try {
    auto groups = GroupDecoder(*this).decode();
    syncReader();
    return groups;
  } catch (const std::exception&) {
    syncReader();
    return std::nullopt;
  }
}

std::shared_ptr<const IPPValue> IPPUnarchiver::decodeIPPValue() {
  return IPPValue::classForIPPTag(static_cast<std::uint8_t>(currentTag_)).initWithCoder(*this);
}

std::shared_ptr<IPPAttribute> IPPUnarchiver::decodeIPPAttribute() {
  Text name = decodeASCIIString();
  return memory_->makeAttribute(decodeIPPValue(), std::move(name));
}

}  // namespace platen::inline v0
