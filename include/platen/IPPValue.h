// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The abstract attribute value, the value classes as objects, and the factories.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platen/Dictionary.h"
#include "platen/Export.h"
#include "platen/IPPCoder.h"
#include "platen/RawValue.h"
#include "platen/TextEncoding.h"

namespace platen::inline v0 {

class IPPValue;

/// The values of an attribute or of a collection's member, in order.
using IPPValueList = std::vector<std::shared_ptr<const IPPValue>>;
/// The members of a collection, in arrival order.
using IPPValueDictionary = Dictionary<std::shared_ptr<const IPPValue>>;

/// A value class as an object: what can be asked without having a value. Every value class has one,
/// its static member `descriptor`.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPValueClass {
 public:
  using Value = std::shared_ptr<const IPPValue>;
  /// Whether a raw object is acceptable.
  using Check = bool (*)(const RawValue&);
  /// A new value holding a copy of a raw object that was found acceptable.
  using Make = Value (*)(const RawValue&);
  /// A new value read from a coder of either face.
  using Decode = Value (*)(IPPCoder&);

  /// A class of these. `className` and `syntaxName` must live for the process; no function may be
  /// null.
  constexpr IPPValueClass(std::string_view className, std::uint8_t tag, std::string_view syntaxName,
                          Check check, Make make, Decode decode) noexcept
      : className_(className),
        syntaxName_(syntaxName),
        check_(check),
        make_(make),
        decode_(decode),
        tag_(tag) {}
  IPPValueClass(const IPPValueClass&) = delete;
  IPPValueClass& operator=(const IPPValueClass&) = delete;

  /// For example "IPPKeyword". Lives for the process.
  [[nodiscard]] constexpr std::string_view className() const noexcept { return className_; }
  /// The value tag, RFC 8010 §3.5.2.
  [[nodiscard]] constexpr std::uint8_t ippTag() const noexcept { return tag_; }
  /// The name of the syntax, RFC 8011 §5.1, for example "keyword". Lives for the process.
  [[nodiscard]] constexpr std::string_view syntaxName() const noexcept { return syntaxName_; }

  /// True when `object` is of a kind and a size that this class takes.
  [[nodiscard]] bool _checkValue(const RawValue& object) const { return check_(object); }
  /// A new value of this class that holds a copy of `object`. Raises `RangeException` "Invalid
  /// parameter" when `_checkValue` refuses it.
  [[nodiscard]] Value _ippValue(const RawValue& object) const;
  /// A new value of this class, read from `coder`: its length and body from a sequential one.
  /// Raises what the coder raises, and `RangeException` for a body of the wrong length (RFC 8010
  /// §3.9).
  [[nodiscard]] Value initWithCoder(IPPCoder& coder) const { return decode_(coder); }
  /// A new value holding a copy of `object`, which is not checked: one of another kind counts as
  /// absent, 0 or empty. Null from the class of sets and that of collections.
  [[nodiscard]] Value initWithValue(const RawValue& object) const { return make_(object); }

 private:
  std::string_view className_;
  std::string_view syntaxName_;
  Check check_;
  Make make_;
  Decode decode_;
  std::uint8_t tag_;
};

/// Puts a value class into the catalog. One static object of this type in the class's own source
/// file does it, before `main`; an application may register classes of its own the same way, before
/// the first message is decoded. Of two classes with the same tag or syntax name the one registered
/// first is found.
///
/// Threads: made before threads are, or by one thread; lives for the process.
class PLATEN_EXPORT IPPValueRegistration {
 public:
  /// `valueClass` is not copied and must live for the process.
  explicit IPPValueRegistration(const IPPValueClass& valueClass) noexcept;
  IPPValueRegistration(const IPPValueRegistration&) = delete;
  IPPValueRegistration& operator=(const IPPValueRegistration&) = delete;

  /// The class that was registered.
  [[nodiscard]] const IPPValueClass& valueClass() const noexcept { return class_; }
  /// The one that was registered after this one, or null.
  [[nodiscard]] const IPPValueRegistration* next() const noexcept { return next_; }

 private:
  const IPPValueClass& class_;
  const IPPValueRegistration* next_ = nullptr;
};

/// The value of an attribute (RFC 8011 §5.1): one syntax, one raw object. Every value answers every
/// conversion; one that makes no sense for its syntax gives the neutral answer stated here.
///
/// Values that a decoder made share the memory of their message: holding one holds that memory.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPValue : public IPPCodable {
 public:
  using Pointer = std::shared_ptr<const IPPValue>;
  using Catalog = std::map<std::string_view, const IPPValueClass*>;

  /// "IPPValue", tag 0x12, "unknown". Refuses every raw object.
  static const IPPValueClass descriptor;

  IPPValue() = default;
  IPPValue(const IPPValue&) = delete;
  IPPValue& operator=(const IPPValue&) = delete;

  // --- Asked of the classes ---------------------------------------------------------------------

  /// Every registered class by its syntax name. Filled on first use and never freed.
  static const Catalog& ippValuesCatalog();
  /// The class registered for exactly `syntaxName`, or null. Lives for the process.
  static const IPPValueClass* classForSyntaxName(std::string_view syntaxName);
  /// The class registered for `tag`; `IPPValue` itself when there is none.
  static const IPPValueClass& classForIPPTag(std::uint8_t tag) noexcept;
  /// The text encoding that a natural-language tag names after its one ".": "ja-jp.shift_jis" gives
  /// Shift JIS; UTF-8 for every tag that names none, or none that is known.
  static TextEncoding _encodingFromLanguage(std::string_view language);

  // --- Asked of a value -------------------------------------------------------------------------

  /// This value's class. Lives for the process.
  [[nodiscard]] virtual const IPPValueClass& ippClass() const noexcept;
  /// The value tag of its class, RFC 8010 §3.5.2.
  [[nodiscard]] virtual std::uint8_t ippTag() const noexcept;
  /// The name of the syntax of its class, for example "keyword". Lives for the process.
  [[nodiscard]] virtual std::string_view syntaxName() const noexcept;
  /// The name of its class, for example "IPPKeyword".
  [[nodiscard]] std::string_view className() const noexcept override;

  /// The raw object that was stored. Absent here.
  [[nodiscard]] virtual RawValue rawValue() const;
  /// The raw object with values replaced by their raw objects. Absent here.
  [[nodiscard]] virtual RawValue value() const;
  /// The text of the raw object. Nothing here.
  [[nodiscard]] virtual std::optional<std::string> stringValue() const;
  /// The number of the raw object. -1 here.
  [[nodiscard]] virtual std::int32_t intValue() const;
  /// Whether the raw object is true. False here.
  [[nodiscard]] virtual bool boolValue() const;
  /// The range that the raw object is. (0, 0) here.
  [[nodiscard]] virtual Range rangeValue() const;
  /// The size that the raw object is. (0, 0) here.
  [[nodiscard]] virtual Size resolutionValue() const;
  /// The date that the raw object is. Nothing here.
  [[nodiscard]] virtual std::optional<Date> dateTimeValue() const;
  /// The values of a set. Nothing here.
  [[nodiscard]] virtual std::optional<IPPValueList> arrayValue() const;
  /// The members of a collection. Nothing here.
  [[nodiscard]] virtual std::optional<IPPValueDictionary> dictionaryRepresentationValue() const;

  /// "'VALUE' of SYNTAX", with the text form of `value`.
  [[nodiscard]] virtual std::string description() const;
  /// True here when both are of exactly the same class.
  [[nodiscard]] virtual bool isEqual(const IPPValue& other) const;
  /// Equal values have equal hashes, but for values without a raw object of their own (out-of-band
  /// values): their hash is their identity.
  [[nodiscard]] virtual std::size_t hash() const;
  /// A new value of the same class holding a copy of this one's raw object; never null.
  [[nodiscard]] virtual Pointer copy() const;
  /// True when the raw objects of both are equal, whatever the classes; values inside of sets and
  /// collections compare as values.
  [[nodiscard]] virtual bool _hasEqualRawValue(const IPPValue& other) const;

  /// Writes the length and the body of the value; a length of 0 and nothing else here. To a keyed
  /// coder the raw object.
  void encodeWithCoder(IPPCoder& coder) const override;

  // --- Factories (RFC 8011 §5.1) ----------------------------------------------------------------
  //
  // Each makes a new value of copies of its arguments, never null where it does not say so, and
  // raises `RangeException` "Invalid parameter" on an argument that its class refuses; text and
  // name with a language raise `InvalidArgumentException` with the same words. Lengths count
  // Unicode characters, and "" is a string too; which characters a syntax has is not checked. See
  // `IPPStringValue::encodeWithCoder` for what of a string is written.

  /// §5.1.11: below 1024 characters.
  static Pointer octetString(std::string_view string);
  /// §5.1.2: below 1024 characters.
  static Pointer textWithoutLanguage(std::string_view string);
  /// §5.1.3: below 256 characters.
  static Pointer nameWithoutLanguage(std::string_view string);
  /// §5.1.2: below 1024 characters, the language below 64.
  static Pointer text(std::string_view string, std::string_view language);
  /// §5.1.3: below 256 characters, the language below 64.
  static Pointer name(std::string_view string, std::string_view language);
  /// §5.1.4: below 256 characters.
  static Pointer keyword(std::string_view string);
  /// §5.1.6: below 1024 characters.
  static Pointer uri(const URL& url);
  /// §5.1.7: below 64 characters.
  static Pointer uriScheme(std::string_view string);
  /// §5.1.10: below 256 characters.
  static Pointer mimeMediaType(std::string_view string);
  /// §5.1.8: below 64 characters.
  static Pointer charset(std::string_view string);
  /// §5.1.9: below 64 characters.
  static Pointer naturalLanguage(std::string_view string);
  /// §5.1.13: every number is taken and kept as it is. What is written is
  /// `IPPNumberValue::intValue`, its low 32 bits: a number out of range is neither refused nor held
  /// at the limits, and 5000000000 becomes 705032704. A double is cut toward zero first.
  static Pointer integer(Number number);
  /// §5.1.5: every number, as by `integer`.
  static Pointer enumeration(Number number);
  /// §5.1.12: every number, kept as it is; one that is not zero is written as true.
  static Pointer boolean(Number number);
  /// §5.1.14: every range, kept as it is. The bounds that are written are the low 32 bits of its
  /// location and of location + length - 1, so of (1, 10) 1 and 10.
  static Pointer rangeOfInteger(Range range);
  /// §5.1.16: every size, in dots per inch, or per centimetre when `inches` is false. The numbers
  /// are written cut to whole ones, held at the limits of 32 bits.
  static Pointer resolution(Size size, bool inches);
  /// §5.1.15: every date, kept as it is. It is written to the second, and only from 1901-12-13 to
  /// 2038-01-19 as it is (`IPPDateTime`).
  static Pointer dateTime(Date date);
  /// 1setOf, §5.1.18: a set of the values, shared. An empty list and a null value are refused.
  /// Values of different syntaxes are not, but all are written with the tag of the last.
  static Pointer array(IPPValueList values);
  /// A set of values of the class registered for `syntaxName`, one for each raw object. An empty
  /// list and an object that the class refuses are refused, thus all for a class that is not made
  /// from raw objects. Null when no class is registered for that name, whatever the list.
  static Pointer array(std::span<const RawValue> rawObjects, std::string_view syntaxName);
  /// A set of keywords, each below 256 characters. An empty list is refused.
  static Pointer arrayOfKeywords(std::span<const std::string> keywords);
  /// collection, §5.1.17: the members in their order, the values shared; perhaps none. A null value
  /// is refused.
  static Pointer dictionaryWithDictionary(const IPPValueDictionary& values);
  /// One argument of `dictionaryWithObjectsAndKeys`: a value, a name, which is copied, or neither,
  /// which null pointers of every kind are.
  ///
  /// Threads: a plain value; one thread at a time.
  struct PLATEN_EXPORT ObjectOrKey {
    ObjectOrKey(Pointer value);         // NOLINT(google-explicit-constructor): reads as a list
    ObjectOrKey(std::nullptr_t none);   // NOLINT(google-explicit-constructor)
    ObjectOrKey(std::string_view key);  // NOLINT(google-explicit-constructor)
    ObjectOrKey(const char* key);       // NOLINT(google-explicit-constructor)

    /// The value; null in a name.
    Pointer object;
    /// The name; nothing in a value.
    std::optional<std::string> key;
  };
  /// collection, §5.1.17, of pairs of a value and its name, up to the first pair in which either is
  /// absent or both stand the wrong way round: `{value, "name", value, "name"}`. A later pair takes
  /// the place of an earlier one with the same name; an unpaired last value is ignored. No pairs
  /// make an empty collection.
  static Pointer dictionaryWithObjectsAndKeys(std::initializer_list<ObjectOrKey> objectsAndKeys);
  /// §5.1.12: `boolean` of true or false.
  static Pointer booleanWithBool(bool value);
  /// §5.1.13: `integer` of a number that is always written as it is.
  static Pointer integerWithInt(std::int32_t value);
  /// §5.1.5: `enumeration` of a number that is always written as it is.
  static Pointer enumerationWithInt(std::int32_t value);

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;
};

/// A value that stores one raw object.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPValueImpl : public IPPValue {
 public:
  /// `rawValue`, unless a class says otherwise.
  [[nodiscard]] RawValue value() const override;
  /// Of the raw object; equal values have equal hashes.
  [[nodiscard]] std::size_t hash() const override;
  /// The same class, and `isEqualToValueImpl`.
  [[nodiscard]] bool isEqual(const IPPValue& other) const override;
  /// Equal raw objects (`_hasEqualRawValue`).
  [[nodiscard]] bool isEqualToValueImpl(const IPPValueImpl& other) const;
  /// A new value of the same class holding a copy of the raw object.
  [[nodiscard]] Pointer copy() const override;

 protected:
  /// The raw object under the key "value".
  void encodeKeyed(IPPCoder& coder) const;
};

}  // namespace platen::inline v0
