// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The coder: what a model object is given to write itself to, or to read itself from.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platen/Data.h"
#include "platen/Dictionary.h"
#include "platen/Export.h"
#include "platen/KeyValueAccess.h"
#include "platen/RawValue.h"
#include "platen/Text.h"
#include "platen/TextEncoding.h"

namespace platen::inline v0 {

class IPPAttribute;
class IPPAttributeGroup;
class IPPCoder;
class IPPValue;

/// An object that a coder can write: a value, an attribute, a group, a message.
///
/// Threads: as the class of the object says.
class PLATEN_EXPORT IPPCodable : public KeyValueAccess {
 public:
  ~IPPCodable() override;
  /// Writes the object to `coder`: as a sequence of fields when the coder is a sequential one, as
  /// named fields when it allows keyed coding. One operation serves both. Raises what the coder
  /// raises, and may have written a part then.
  virtual void encodeWithCoder(IPPCoder& coder) const = 0;

 protected:
  IPPCodable() = default;
  IPPCodable(const IPPCodable&) = default;
  IPPCodable& operator=(const IPPCodable&) = default;

  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;
};

/// The abstract coder. It has two faces: a sequence of primitive fields in a fixed order, which is
/// the binary form of RFC 8010 §3, and named fields in any order, which is an archive.
/// `allowsKeyedCoding` tells which of the two a coder has; asking for the other one raises
/// `InvalidArgumentException`.
///
/// The sequential face knows one octet, 16 and 32 bits with the most significant octet first, and
/// a run of octets behind a 16-bit count of them:
///
///     string = LENGTH-16 *OCTET
///
/// A string kind chooses the encoding: names and keywords are ASCII, octet strings UTF-8, text and
/// names of things are in the coder's natural-language encoding (RFC 8011 §5.1).
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPCoder {
 public:
  /// What a keyed coder is given and gives: shared, and null where there is none.
  using Object = std::shared_ptr<const IPPCodable>;

  IPPCoder() = default;
  IPPCoder(const IPPCoder&) = delete;
  IPPCoder& operator=(const IPPCoder&) = delete;
  virtual ~IPPCoder();

  /// True when the coder has the keyed face, false when it has the sequential one.
  [[nodiscard]] virtual bool allowsKeyedCoding() const noexcept = 0;

  // --- Both faces -------------------------------------------------------------------------------

  /// Has the object write itself (`IPPCodable::encodeWithCoder`).
  virtual void encodeObject(const IPPCodable& object);
  /// The next object of the sequence; null on every coder that does not say otherwise.
  virtual std::shared_ptr<IPPCodable> decodeObject();

  // --- The sequential face: generic entry points ------------------------------------------------

  /// Writes one fixed-width field: 'c' a `std::uint8_t`, 's' a `std::uint16_t`, 'i' a
  /// `std::uint32_t`, read from `value`. What other types do is for a coder to say.
  virtual void encodeValueOfType(char type, const void* value);
  /// Writes the low 16 bits of `length` and then all of the octets.
  virtual void encodeBytes(const void* bytes, std::size_t length);
  /// Reads one fixed-width field of the same types into `destination`. Raises
  /// `InconsistentArchiveException` when the input ends before.
  virtual void decodeValueOfType(char type, void* destination);
  /// Reads a count and as many octets; empty for a count of 0. They live until the next field is
  /// read. Raises `InconsistentArchiveException` on a count of 0x8000 and above, and when the input
  /// ends before.
  virtual Bytes decodeBytesWithReturnedLength();

  // --- The sequential face: primitive fields ----------------------------------------------------

  /// One octet, 'c'.
  void encodeByte(std::uint8_t value);
  /// Two octets, 's', in two's complement.
  void encodeInt16(std::int16_t value);
  /// Four octets, 'i', in two's complement.
  void encodeInt32(std::int32_t value);
  /// Writes `string` in `encoding`, up to its first zero octet. An absent string, and one that the
  /// encoding cannot express, is written as a count of 0 and nothing else. A run longer than 65535
  /// octets is written whole behind the low 16 bits of its count: 32767 octets is the most that a
  /// reader takes.
  void encodeString(std::optional<std::string_view> string, TextEncoding encoding);
  /// `encodeString` in `naturalLanguageEncoding`.
  void encodeNaturalLanguageString(std::optional<std::string_view> string);
  /// `encodeString` in ASCII.
  void encodeASCIIString(std::optional<std::string_view> string);
  /// `encodeString` in UTF-8.
  void encodeOctetString(std::optional<std::string_view> string);

  // Each raises `InconsistentArchiveException` when the input ends before the field does; a string
  // also on a count of 0x8000 and above. Texts live as long as the decoded message where the coder
  // keeps one, and as long as the result otherwise.

  /// One octet, from 0 to 255.
  std::uint8_t decodeByte();
  /// Two octets as a signed number.
  std::int16_t decodeInt16();
  /// Four octets as a signed number.
  std::int32_t decodeInt32();
  /// Absent for a count of 0, and when the octets are not valid in `encoding`.
  Text decodeStringUsingEncoding(TextEncoding encoding);
  /// `decodeStringUsingEncoding` of `naturalLanguageEncoding`.
  Text decodeNaturalLanguageString();
  /// `decodeStringUsingEncoding` of ASCII.
  Text decodeASCIIString();
  /// `decodeStringUsingEncoding` of UTF-8.
  Text decodeOctetString();
  /// One octet, sign-extended, so that 0x80 and above are negative. A coder that keeps a current
  /// tag notes it.
  std::int32_t decodeIPPTag();

  /// The encoding of text and name values: UTF-8 unless the coder keeps another one.
  [[nodiscard]] virtual TextEncoding naturalLanguageEncoding() const noexcept;
  /// Ignored by a coder that keeps none.
  virtual void setNaturalLanguageEncoding(TextEncoding encoding) noexcept;
  /// Ignored by a coder that keeps no current tag.
  virtual void setCurrentTag(std::int32_t tag) noexcept;

  // --- The sequential face: what the decoder of messages replaces --------------------------------

  /// The groups up to the end-of-attributes tag, or nothing when they do not decode. On a general
  /// coder nothing, since its `decodeObject` gives no list of groups.
  virtual std::optional<std::vector<std::shared_ptr<IPPAttributeGroup>>> decodeIPPGroups();
  /// One attribute record after its tag; null on a general coder.
  virtual std::shared_ptr<IPPAttribute> decodeIPPAttribute();
  /// The body of a value of the current tag; null on a general coder.
  virtual std::shared_ptr<const IPPValue> decodeIPPValue();

  /// Collections nest at most this deep; a deeper one is a decoding failure.
  static constexpr int kDeepestCollection = 64;

  /// Held while the members of a collection are read.
  ///
  /// Threads: as its coder. Neither copied nor moved.
  class PLATEN_EXPORT CollectionScope {
   public:
    /// Enters one more collection of `coder`, which must outlive this. Raises
    /// `InconsistentArchiveException` when that would be one too deep.
    explicit CollectionScope(IPPCoder& coder);
    CollectionScope(const CollectionScope&) = delete;
    CollectionScope& operator=(const CollectionScope&) = delete;
    /// Leaves it.
    ~CollectionScope() { --coder_.collectionDepth_; }

   private:
    IPPCoder& coder_;
  };

  // --- The keyed face ---------------------------------------------------------------------------

  // Each writes one field of the object that is being written, under a key that it has once.

  /// A number.
  virtual void encodeIntForKey(std::int64_t value, std::string_view key);
  /// True or false, which is no number.
  virtual void encodeBoolForKey(bool value, std::string_view key);
  /// An absent string is written as absent.
  virtual void encodeStringForKey(std::optional<std::string_view> value, std::string_view key);
  /// Absent, null and every kind of raw object told apart.
  virtual void encodeRawValueForKey(const RawValue& value, std::string_view key);
  /// A null pointer is written as absent.
  virtual void encodeObjectForKey(const Object& object, std::string_view key);
  /// The objects in order, null ones in their places.
  virtual void encodeObjectsForKey(const std::vector<Object>& objects, std::string_view key);
  /// The objects by their names, in the order of the dictionary.
  virtual void encodeNamedObjectsForKey(const Dictionary<Object>& objects, std::string_view key);

  // Each reads one field of the object that is being read. A missing key reads as 0, false, absent,
  // null or empty, unless the coder refuses it, as `IPPKeyedUnarchiver` does. What was encoded
  // comes back equal.

  /// What `encodeIntForKey` wrote.
  virtual std::int64_t decodeIntForKey(std::string_view key);
  /// What `encodeBoolForKey` wrote.
  virtual bool decodeBoolForKey(std::string_view key);
  /// What `encodeStringForKey` wrote; absent where an absent one was written.
  virtual std::optional<std::string> decodeStringForKey(std::string_view key);
  /// What `encodeRawValueForKey` wrote, of the same kind.
  virtual RawValue decodeRawValueForKey(std::string_view key);
  /// A new object of the class that was written; null where null was written.
  virtual Object decodeObjectForKey(std::string_view key);
  /// What `encodeObjectsForKey` wrote, in order.
  virtual std::vector<Object> decodeObjectsForKey(std::string_view key);
  /// What `encodeNamedObjectsForKey` wrote, in the same order.
  virtual Dictionary<Object> decodeNamedObjectsForKey(std::string_view key);

  // --- Memory -----------------------------------------------------------------------------------

  /// A new value, made where this coder keeps the objects that it decodes. Holding the result
  /// holds what the value has borrowed.
  template <class Value, class... Arguments>
  std::shared_ptr<const Value> make(Arguments&&... arguments) {
    std::shared_ptr<void> room = roomFor(sizeof(Value), alignof(Value));
    if (room == nullptr) {
      return std::make_shared<const Value>(std::forward<Arguments>(arguments)...);
    }
    auto* value = new (room.get()) Value(std::forward<Arguments>(arguments)...);
    destroyInTheEnd(value, [](void* object) { static_cast<Value*>(object)->~Value(); });
    return {std::move(room), value};
  }

  /// The same for a value that owns nothing: its texts, if any, are those that this coder read.
  /// Where the coder keeps it, its destructor is not run.
  template <class Value, class... Arguments>
  std::shared_ptr<const Value> makePlain(Arguments&&... arguments) {
    std::shared_ptr<void> room = roomFor(sizeof(Value), alignof(Value));
    if (room == nullptr) {
      return std::make_shared<const Value>(std::forward<Arguments>(arguments)...);
    }
    auto* value = new (room.get()) Value(std::forward<Arguments>(arguments)...);
    return {std::move(room), value};
  }

  /// The name and the value of a member of a collection.
  using Member = std::pair<Text, std::shared_ptr<const IPPValue>>;
  /// A new set of values (`IPPArray`) that this coder decoded. Raises `RangeException` "Invalid
  /// parameter" when there is none.
  virtual std::shared_ptr<const IPPValue> makeArray(
      std::span<const std::shared_ptr<const IPPValue>> values);
  /// A new collection (`IPPMap`) of members that this coder decoded, which are moved from. Of
  /// several with the same name the last value stays, in the place of the first.
  virtual std::shared_ptr<const IPPValue> makeMap(std::span<Member> members);

  /// Stacks on which the members and values of the collections in progress are gathered: an inner
  /// collection takes off what it put on before the outer one goes on. Of use to decoding classes
  /// only.
  ///
  /// Threads: as its coder.
  struct Scratch {
    std::vector<Member> members;
    std::vector<std::shared_ptr<const IPPValue>> values;
  };
  /// The stacks of this coder; valid as long as it.
  [[nodiscard]] Scratch& scratch() noexcept { return scratch_; }

 protected:
  /// Room for an object of a message being decoded, or null when each object is on its own. The
  /// result holds the room, and all else that is in the same memory.
  virtual std::shared_ptr<void> roomFor(std::size_t size, std::size_t alignment);
  /// Has `destroy(object)` called for an object made in such room when the memory goes.
  virtual void destroyInTheEnd(void* object, void (*destroy)(void*));
  /// `text`, which lives until the next field is read, as long as the decoded message does.
  virtual Text keepText(std::string_view text);

  /// Octets in memory that fields can be taken from directly; empty when every field is to be had
  /// from `decodeValueOfType`.
  const std::uint8_t* next_ = nullptr;
  const std::uint8_t* end_ = nullptr;
  /// True when those octets live as long as the decoded message: text in them need not be kept.
  bool isWindowKept_ = false;

 private:
  // The two rare ends of reading a string stand apart from the one that every string goes through.
  bool takeRun(Bytes& run) noexcept;
  [[gnu::noinline]] Text decodeRunFromReader(TextEncoding encoding);
  [[gnu::noinline]] Text keepDecoded(Bytes octets, TextEncoding encoding);

  Scratch scratch_;
  int collectionDepth_ = 0;
};

}  // namespace platen::inline v0
