// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The decoder of the binary form.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platen/Data.h"
#include "platen/Export.h"
#include "platen/IPPAttribute.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPBytesReader.h"
#include "platen/IPPCoder.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

/// Reads the binary form of RFC 8010 §3 from a reader. A sequential coder that makes groups,
/// attributes and values by their tags:
///
///     message   = version-number code request-id *group %x03
///     group     = delimiter-tag *( attribute *additional )
///     attribute = value-tag name-length name value-length value
///     additional = value-tag %x00.00 value-length value
///
/// What it makes shares one piece of memory: holding one value of a message holds that memory.
/// One decoder decodes one message, and stops right after its end-of-attributes tag.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPUnarchiver : public IPPCoder {
 public:
  /// Over `reader`, which it holds and which must not be null; a stream behind it must be open.
  /// What the reader lends is looked at right here.
  explicit IPPUnarchiver(std::shared_ptr<IPPBytesReader> reader);
  /// A new one over `data`, which is held and must stay unchanged until the decoder is gone; never
  /// null, and null `data` counts as no octets.
  static std::shared_ptr<IPPUnarchiver> initForReadingWithData(std::shared_ptr<const Data> data);
  /// A new one over an open stream, which is held; never null, and a null stream gives nothing but
  /// errors.
  static std::shared_ptr<IPPUnarchiver> initForReadingWithStream(
      std::shared_ptr<InputStream> stream);
  /// A new one over a descriptor that stays the caller's and open; never null.
  static std::shared_ptr<IPPUnarchiver> initForReadingWithFileHandle(int descriptor);
  /// Leaves the reader right behind what was read. What was made stays.
  ~IPPUnarchiver() override;

  /// Reads exactly `length` octets in one attempt and returns `length`. Anything else that the
  /// reader gives raises `InconsistentArchiveException`: a short read is not tried again.
  std::size_t readData(std::uint8_t* destination, std::size_t length);
  /// Scratch memory of at least `length` octets, never given back before the decoder goes; valid
  /// until the next call with a greater `length`. Fields that a reader does not lend are read into
  /// it.
  std::uint8_t* cacheBufferOfLength(std::uint32_t length);

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return false; }
  /// Reads 1, 2 or 4 octets. Types other than 'c', 's' and 'i' read nothing and leave the
  /// destination as it was.
  void decodeValueOfType(char type, void* destination) override;
  /// As the base says, in place where the octets are in memory.
  Bytes decodeBytesWithReturnedLength() override;

  /// A new value of the class that the current tag names (`IPPValue::classForIPPTag`), which reads
  /// its own body; never null. Raises `RangeException` for a body of the wrong length, and as the
  /// fields do.
  std::shared_ptr<const IPPValue> decodeIPPValue() override;
  /// A new attribute of the name (absent when its length is 0 or it is not ASCII) and the value of
  /// one record, whose tag was read before. Raises as `decodeIPPValue`.
  std::shared_ptr<IPPAttribute> decodeIPPAttribute() override;
  /// All groups up to the end-of-attributes tag, in message order; nothing on any decoding failure.
  ///
  /// Values without a name are added to the named attribute before them, whichever group that is
  /// in. Attributes before the first delimiter are dropped. Tag 0 is passed over: that is how the
  /// length of an out-of-band value is got past. An unknown delimiter makes a group of unsupported
  /// attributes.
  std::optional<std::vector<std::shared_ptr<IPPAttributeGroup>>> decodeIPPGroups() override;

  /// True once the end-of-attributes tag was the last tag read. A tag that was set counts as read.
  [[nodiscard]] bool isAtEnd() const noexcept { return currentTag_ == 3; }
  /// Sets the natural-language encoding from an IANA charset name; UTF-8 for an unknown one.
  void installCharsetArrived(std::string_view charset);

  /// UTF-8 until it is set, or an operation group with an "attributes-charset" (RFC 8011 §4.1.4) is
  /// complete.
  [[nodiscard]] TextEncoding naturalLanguageEncoding() const noexcept override;
  /// The encoding of text and names from now on.
  void setNaturalLanguageEncoding(TextEncoding encoding) noexcept override;
  /// The last tag read, sign-extended; 0 before the first one.
  [[nodiscard]] std::int32_t currentTag() const noexcept { return currentTag_; }
  /// Takes the place of the last tag read.
  void setCurrentTag(std::int32_t tag) noexcept override { currentTag_ = tag; }
  /// The source. It may be a part of the message behind until the groups are decoded or the decoder
  /// is gone: nobody else may read from it meanwhile.
  [[nodiscard]] const std::shared_ptr<IPPBytesReader>& reader() const noexcept { return reader_; }

  std::shared_ptr<const IPPValue> makeArray(
      std::span<const std::shared_ptr<const IPPValue>> values) override;
  std::shared_ptr<const IPPValue> makeMap(std::span<Member> members) override;

 protected:
  std::shared_ptr<void> roomFor(std::size_t size, std::size_t alignment) override;
  void destroyInTheEnd(void* object, void (*destroy)(void*)) override;
  Text keepText(std::string_view text) override;

 private:
  class GroupDecoder;
  struct Memory;

  const std::uint8_t* take(std::size_t length);
  void openWindow();
  void syncReader();
  void closeWindow();

  std::shared_ptr<IPPBytesReader> reader_;
  std::vector<std::uint8_t> cacheBuffer_;
  std::int32_t currentTag_ = 0;
  TextEncoding naturalLanguageEncoding_;
  std::unique_ptr<Memory> memory_;
  const std::uint8_t* windowBegin_ = nullptr;
};

}  // namespace platen::inline v0
