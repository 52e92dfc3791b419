// SPDX-License-Identifier: Apache-2.0

/// Equality and text form of what a key leads to.

#include <typeinfo>

#include "platen/Error.h"
#include "platen/IPPMessageKVCForwarder.h"

namespace platen::inline v0 {

namespace {

struct Describer {
  std::string operator()(std::monostate) const { return "(null)"; }
  std::string operator()(const RawValue& object) const { return object.description(); }
  std::string operator()(const Data& octets) const {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text = "<";
    for (const std::uint8_t octet : octets) {
      text += kDigits[octet >> 4U];
      text += kDigits[octet & 0xFU];
    }
    return text + ">";
  }
  std::string operator()(const KeyValue::Array& list) const {
    std::string text = "(";
    for (const KeyValue& element : list) {
      text += &element == &list.front() ? "" : ", ";
      text += element.description();
    }
    return text + ")";
  }
  std::string operator()(const KeyValue::Dictionary& dictionary) const {
    std::string text = "{";
    for (const auto& [name, value] : dictionary) {
      text += name + " = " + value.description() + "; ";
    }
    return text + "}";
  }
  template <class Object>
  std::string operator()(const std::shared_ptr<Object>& object) const {
    return object->description();
  }
};

bool areEqual(const Error& left, const Error& right) { return left == right; }

bool areEqual(const IPPMessageKVCForwarder& left, const IPPMessageKVCForwarder& right) {
  return typeid(left) == typeid(right) && KeyValue(left.object()) == KeyValue(right.object());
}

// That of a group is one-sided, and so it is asked on both sides.
template <class Object>
bool areEqual(const Object& left, const Object& right) {
  return left.isEqual(right) && right.isEqual(left);
}

struct Equality {
  template <class Left, class Right>
  bool operator()(const Left&, const Right&) const {
    return false;
  }
  template <class Kind>
  bool operator()(const Kind& left, const Kind& right) const {
    return left == right;
  }
  template <class Object>
  bool operator()(const std::shared_ptr<Object>& left, const std::shared_ptr<Object>& right) const {
    return left == right || areEqual(*left, *right);
  }
};

}  // namespace

bool operator==(const KeyValue& left, const KeyValue& right) {
  return std::visit(Equality(), left.object_, right.object_);
}

std::string KeyValue::description() const { return visit(Describer()); }

}  // namespace platen::inline v0
