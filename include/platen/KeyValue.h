// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What a key of a message, of a group or of anything in them leads to.

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platen/Data.h"
#include "platen/Dictionary.h"
#include "platen/Export.h"
#include "platen/RawValue.h"
#include "platen/URL.h"

namespace platen::inline v0 {

class Error;
class IPPAttribute;
class IPPAttributeGroup;
class IPPMessage;
class IPPMessageKVCForwarder;
class IPPValue;

/// The kinds of raw object that are neither absent nor a list nor a dictionary.
template <class T>
concept RawKind = Arithmetic<T> || std::same_as<T, Null> || std::same_as<T, std::string> ||
    std::same_as<T, std::string_view> || std::same_as<T, const char*> || std::same_as<T, URL> ||
    std::same_as<T, Number> || std::same_as<T, Range> || std::same_as<T, Size> ||
    std::same_as<T, Date>;

/// The result of key-value access, of a closed list of kinds: absent, a raw object, octets, a
/// value, an attribute, a group, a message, a forwarder, an error record, a list and a dictionary
/// of those. Lists and dictionaries of raw objects are lists and dictionaries here; the kind "raw
/// object" is what is left of `RawValue`: null, string, URL, number, range, size, date.
///
///     for (const KeyValue& name :
///          response->valueForKeyPath("@all.printer-name.ippValue.value").asArray()) {
///       use(name.asString());
///     }
///
/// `isX()` asks for a kind, `ifX()` gives it or null, `asX()` gives it or raises
/// `InvalidArgumentException`. Raw pointers and references live until this object changes; shared
/// pointers, which are never null in an object of their kind, as long as they are held.
///
/// Threads: one thread at a time; a const one may be shared between threads as far as what it
/// leads to may be.
class PLATEN_EXPORT KeyValue {
 public:
  using Array = std::vector<KeyValue>;
  using Dictionary = platen::Dictionary<KeyValue>;

  /// Absent.
  KeyValue() noexcept;

  /// Copies are deep as far as raw objects, octets, lists and dictionaries go; objects are shared.
  /// What was moved from stays of its kind, holding something or nothing.
  KeyValue(const KeyValue& other);
  KeyValue(KeyValue&& other) noexcept;
  KeyValue& operator=(const KeyValue& other);
  KeyValue& operator=(KeyValue&& other) noexcept;
  ~KeyValue();

  // Each kind converts into a result by itself, as it does into a raw object; so do optional
  // objects, of which an absent one is absent, and lists and dictionaries of any kind. A null
  // pointer is absent. Raw objects, octets, lists and dictionaries are copied or moved in, objects
  // are shared.

  KeyValue(const RawValue& object);                             // NOLINT(google-explicit-*)
  KeyValue(Data octets) noexcept;                               // NOLINT(google-explicit-*)
  KeyValue(std::shared_ptr<const IPPValue> value);              // NOLINT(google-explicit-*)
  KeyValue(std::shared_ptr<IPPAttribute> attribute);            // NOLINT(google-explicit-*)
  KeyValue(std::shared_ptr<IPPAttributeGroup> group);           // NOLINT(google-explicit-*)
  KeyValue(std::shared_ptr<const IPPMessage> message);          // NOLINT(google-explicit-*)
  KeyValue(std::shared_ptr<const IPPMessageKVCForwarder> all);  // NOLINT(google-explicit-*)
  KeyValue(std::shared_ptr<const Error> error);                 // NOLINT(google-explicit-*)
  KeyValue(Array list) noexcept;                                // NOLINT(google-explicit-*)
  KeyValue(KeyValue::Dictionary dictionary);                    // NOLINT(google-explicit-*)
  template <RawKind T>
  KeyValue(T object)  // NOLINT(google-explicit-constructor)
      : KeyValue(RawValue(std::move(object))) {}
  template <class T>
  KeyValue(const std::optional<T>& object)  // NOLINT(google-explicit-constructor)
      : KeyValue(object ? KeyValue(*object) : KeyValue()) {}
  template <class T>
  KeyValue(const std::vector<T>& list)  // NOLINT(google-explicit-constructor)
      : KeyValue(Array(list.begin(), list.end())) {}
  template <class T>
  KeyValue(const platen::Dictionary<T>& dictionary)  // NOLINT(google-explicit-constructor)
      : KeyValue(converted(dictionary)) {}

  // Each is true for that kind alone. A string and a number are raw objects too.

  [[nodiscard]] bool isAbsent() const noexcept;
  [[nodiscard]] bool isNull() const noexcept;
  /// A raw object, null among them.
  [[nodiscard]] bool isRaw() const noexcept { return ifRaw() != nullptr; }
  [[nodiscard]] bool isString() const noexcept { return ifString() != nullptr; }
  [[nodiscard]] bool isNumber() const noexcept { return ifNumber() != nullptr; }
  [[nodiscard]] bool isData() const noexcept { return ifData() != nullptr; }
  [[nodiscard]] bool isValue() const noexcept { return ifValue() != nullptr; }
  [[nodiscard]] bool isAttribute() const noexcept { return ifAttribute() != nullptr; }
  [[nodiscard]] bool isGroup() const noexcept { return ifGroup() != nullptr; }
  [[nodiscard]] bool isMessage() const noexcept { return ifMessage() != nullptr; }
  [[nodiscard]] bool isForwarder() const noexcept { return ifForwarder() != nullptr; }
  [[nodiscard]] bool isError() const noexcept { return ifError() != nullptr; }
  [[nodiscard]] bool isArray() const noexcept { return ifArray() != nullptr; }
  [[nodiscard]] bool isDictionary() const noexcept { return ifDictionary() != nullptr; }

  // Each gives the object when it is of that kind, and null otherwise.

  [[nodiscard]] const RawValue* ifRaw() const noexcept;
  /// The string in a raw object, or null.
  [[nodiscard]] const std::string* ifString() const noexcept;
  /// The number in a raw object, or null.
  [[nodiscard]] const Number* ifNumber() const noexcept;
  [[nodiscard]] const Data* ifData() const noexcept;
  [[nodiscard]] std::shared_ptr<const IPPValue> ifValue() const noexcept;
  [[nodiscard]] std::shared_ptr<IPPAttribute> ifAttribute() const noexcept;
  [[nodiscard]] std::shared_ptr<IPPAttributeGroup> ifGroup() const noexcept;
  [[nodiscard]] std::shared_ptr<const IPPMessage> ifMessage() const noexcept;
  [[nodiscard]] std::shared_ptr<const IPPMessageKVCForwarder> ifForwarder() const noexcept;
  [[nodiscard]] std::shared_ptr<const Error> ifError() const noexcept;
  [[nodiscard]] const Array* ifArray() const noexcept;
  [[nodiscard]] const KeyValue::Dictionary* ifDictionary() const noexcept;

  // Each gives the object when it is of that kind, and raises `InvalidArgumentException` otherwise.
  // Of a result that goes away, as in a loop over `valueForKeyPath(path).asArray()`, the objects
  // come by value.

  [[nodiscard]] const RawValue& asRaw() const&;
  [[nodiscard]] RawValue asRaw() &&;
  [[nodiscard]] const std::string& asString() const&;
  [[nodiscard]] std::string asString() &&;
  [[nodiscard]] Number asNumber() const;
  [[nodiscard]] const Data& asData() const&;
  [[nodiscard]] Data asData() &&;
  [[nodiscard]] std::shared_ptr<const IPPValue> asValue() const;
  [[nodiscard]] std::shared_ptr<IPPAttribute> asAttribute() const;
  [[nodiscard]] std::shared_ptr<IPPAttributeGroup> asGroup() const;
  [[nodiscard]] std::shared_ptr<const IPPMessage> asMessage() const;
  [[nodiscard]] std::shared_ptr<const IPPMessageKVCForwarder> asForwarder() const;
  [[nodiscard]] std::shared_ptr<const Error> asError() const;
  [[nodiscard]] const Array& asArray() const&;
  [[nodiscard]] Array asArray() &&;
  [[nodiscard]] const KeyValue::Dictionary& asDictionary() const&;
  [[nodiscard]] KeyValue::Dictionary asDictionary() &&;

  /// Calls `visitor` with the object as its own kind (`std::monostate` when absent).
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), object_);
  }

  /// What `key` leads to from here:
  ///
  /// - from an object (value, attribute, group, message, forwarder): its own `valueForKey`;
  /// - from an error record: its property of that name, as "code" or "localizedDescription";
  /// - from a dictionary: the entry of exactly that name; absent when there is none;
  /// - from a list: the list of what the key leads to from each element, in order. Null stands for
  ///   an element that is null or absent, and for one from which the key leads to nothing, so that
  ///   element and result stand at the same index;
  /// - from null: null; from absent: absent.
  ///
  /// Raises `UndefinedKeyException` where an object does, for one element of a list too; for every
  /// other key of an error record; and for every key of octets, of a string, of a number and of
  /// all other raw objects, whose class is then named by their kind: "string", "number", "data".
  [[nodiscard]] KeyValue valueForKey(std::string_view key) const;
  /// Takes the keys of a path one after the other, as `KeyValueAccess::valueForKeyPath`, and raises
  /// as that does.
  [[nodiscard]] KeyValue valueForKeyPath(std::string_view path) const;

  /// The same kind and equal: raw objects by their value, objects as their `isEqual` says in both
  /// directions, forwarders of one class by their messages, dictionaries whatever their order.
  friend PLATEN_EXPORT bool operator==(const KeyValue& left, const KeyValue& right);
  /// The text form: that of the raw object or of the object itself, "(null)" when absent,
  /// "<0a0b>" for octets, "(a, b)" and "{name = value; }".
  [[nodiscard]] std::string description() const;

 private:
  template <class T>
  static KeyValue::Dictionary converted(const platen::Dictionary<T>& dictionary) {
    KeyValue::Dictionary entries;
    for (const auto& [name, object] : dictionary) {
      entries.set(name, KeyValue(object));
    }
    return entries;
  }

  std::variant<std::monostate, RawValue, Data, std::shared_ptr<const IPPValue>,
               std::shared_ptr<IPPAttribute>, std::shared_ptr<IPPAttributeGroup>,
               std::shared_ptr<const IPPMessage>, std::shared_ptr<const IPPMessageKVCForwarder>,
               std::shared_ptr<const Error>, Array, platen::Dictionary<KeyValue>>
      object_;
};

}  // namespace platen::inline v0
