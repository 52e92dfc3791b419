// SPDX-License-Identifier: Apache-2.0
#include "platen/KeyValue.h"

#include "platen/Exception.h"

namespace platen::inline v0 {

KeyValue::KeyValue() noexcept = default;
KeyValue::KeyValue(const KeyValue& other) = default;
KeyValue::KeyValue(KeyValue&& other) noexcept = default;
KeyValue& KeyValue::operator=(const KeyValue& other) = default;
KeyValue& KeyValue::operator=(KeyValue&& other) noexcept = default;
KeyValue::~KeyValue() = default;

KeyValue::KeyValue(const RawValue& object) {
  if (const auto* array = object.ifArray()) {
    *this = KeyValue(*array);
  } else if (const auto* dictionary = object.ifDictionary()) {
    *this = KeyValue(*dictionary);
  } else if (!object.isAbsent()) {
    object_ = object;
  }
}

KeyValue::KeyValue(Data octets) noexcept : object_(std::move(octets)) {}
KeyValue::KeyValue(Array list) noexcept : object_(std::move(list)) {}
KeyValue::KeyValue(KeyValue::Dictionary dictionary) : object_(std::move(dictionary)) {}

namespace {

// Without an object the result stays what a new one is: absent.
template <class Variant, class Pointer>
void hold(Variant& object, Pointer pointer) {
  if (pointer != nullptr) {
    object = std::move(pointer);
  }
}

}  // namespace

KeyValue::KeyValue(std::shared_ptr<const IPPValue> value) { hold(object_, std::move(value)); }
KeyValue::KeyValue(std::shared_ptr<IPPAttribute> attribute) { hold(object_, std::move(attribute)); }
KeyValue::KeyValue(std::shared_ptr<IPPAttributeGroup> group) { hold(object_, std::move(group)); }
KeyValue::KeyValue(std::shared_ptr<const IPPMessage> message) { hold(object_, std::move(message)); }
KeyValue::KeyValue(std::shared_ptr<const IPPMessageKVCForwarder> forwarder) {
  hold(object_, std::move(forwarder));
}
KeyValue::KeyValue(std::shared_ptr<const Error> error) { hold(object_, std::move(error)); }

namespace {

// The shared pointer of a kind, or null.
template <class Pointer, class Variant>
Pointer pointerIn(const Variant& object) noexcept {
  const auto* pointer = std::get_if<Pointer>(&object);
  return pointer == nullptr ? nullptr : *pointer;
}

template <class Pointer>
Pointer require(Pointer pointer, const char* kind) {
  if (pointer == nullptr) {
    throw InvalidArgumentException(std::string("The result of the key is not ") + kind);
  }
  return pointer;
}

}  // namespace

bool KeyValue::isAbsent() const noexcept { return std::holds_alternative<std::monostate>(object_); }
bool KeyValue::isNull() const noexcept { return isRaw() && ifRaw()->isNull(); }

const RawValue* KeyValue::ifRaw() const noexcept { return std::get_if<RawValue>(&object_); }
const std::string* KeyValue::ifString() const noexcept {
  return isRaw() ? ifRaw()->ifString() : nullptr;
}
const Number* KeyValue::ifNumber() const noexcept {
  return isRaw() ? ifRaw()->ifNumber() : nullptr;
}
const Data* KeyValue::ifData() const noexcept { return std::get_if<Data>(&object_); }
std::shared_ptr<const IPPValue> KeyValue::ifValue() const noexcept {
  return pointerIn<std::shared_ptr<const IPPValue>>(object_);
}
std::shared_ptr<IPPAttribute> KeyValue::ifAttribute() const noexcept {
  return pointerIn<std::shared_ptr<IPPAttribute>>(object_);
}
std::shared_ptr<IPPAttributeGroup> KeyValue::ifGroup() const noexcept {
  return pointerIn<std::shared_ptr<IPPAttributeGroup>>(object_);
}
std::shared_ptr<const IPPMessage> KeyValue::ifMessage() const noexcept {
  return pointerIn<std::shared_ptr<const IPPMessage>>(object_);
}
std::shared_ptr<const IPPMessageKVCForwarder> KeyValue::ifForwarder() const noexcept {
  return pointerIn<std::shared_ptr<const IPPMessageKVCForwarder>>(object_);
}
std::shared_ptr<const Error> KeyValue::ifError() const noexcept {
  return pointerIn<std::shared_ptr<const Error>>(object_);
}
const KeyValue::Array* KeyValue::ifArray() const noexcept { return std::get_if<Array>(&object_); }
const KeyValue::Dictionary* KeyValue::ifDictionary() const noexcept {
  return std::get_if<KeyValue::Dictionary>(&object_);
}

const RawValue& KeyValue::asRaw() const& { return *require(ifRaw(), "a raw object"); }
RawValue KeyValue::asRaw() && {
  return std::move(*require(std::get_if<RawValue>(&object_), "a raw object"));
}
const std::string& KeyValue::asString() const& { return *require(ifString(), "a string"); }
std::string KeyValue::asString() && { return *require(ifString(), "a string"); }
Number KeyValue::asNumber() const { return *require(ifNumber(), "a number"); }
const Data& KeyValue::asData() const& { return *require(ifData(), "data"); }
Data KeyValue::asData() && { return std::move(*require(std::get_if<Data>(&object_), "data")); }
std::shared_ptr<const IPPValue> KeyValue::asValue() const { return require(ifValue(), "a value"); }
std::shared_ptr<IPPAttribute> KeyValue::asAttribute() const {
  return require(ifAttribute(), "an attribute");
}
std::shared_ptr<IPPAttributeGroup> KeyValue::asGroup() const {
  return require(ifGroup(), "a group");
}
std::shared_ptr<const IPPMessage> KeyValue::asMessage() const {
  return require(ifMessage(), "a message");
}
std::shared_ptr<const IPPMessageKVCForwarder> KeyValue::asForwarder() const {
  return require(ifForwarder(), "a forwarder");
}
std::shared_ptr<const Error> KeyValue::asError() const {
  return require(ifError(), "an error record");
}
const KeyValue::Array& KeyValue::asArray() const& { return *require(ifArray(), "a list"); }
KeyValue::Array KeyValue::asArray() && {
  return std::move(*require(std::get_if<Array>(&object_), "a list"));
}
const KeyValue::Dictionary& KeyValue::asDictionary() const& {
  return *require(ifDictionary(), "a dictionary");
}
KeyValue::Dictionary KeyValue::asDictionary() && {
  return std::move(*require(std::get_if<KeyValue::Dictionary>(&object_), "a dictionary"));
}

}  // namespace platen::inline v0
