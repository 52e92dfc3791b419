// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The encoder of the binary form.

#include <cstddef>
#include <memory>

#include "platen/Data.h"
#include "platen/Export.h"
#include "platen/IPPCoder.h"

namespace platen::inline v0 {

/// Writes model objects in the binary form of RFC 8010 §3 into one byte buffer. A sequential coder:
/// each object writes itself, with neither class names nor references.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPArchiver : public IPPCoder {
 public:
  /// An archiver that writes into `data`, which it shares with the caller and which must be empty:
  /// fixed-width fields go to the number of octets written so far, so the first octets of a buffer
  /// that is not empty are overwritten and zeros are left at its end. That is not checked. Null
  /// when `data` is null.
  static std::shared_ptr<IPPArchiver> initForWritingWithMutableData(std::shared_ptr<Data> data);
  /// The same; `data` must not be null.
  explicit IPPArchiver(std::shared_ptr<Data> data);

  /// The buffer, with everything that was written so far.
  [[nodiscard]] const std::shared_ptr<Data>& archiverData() const noexcept { return data_; }

  /// Has `object` write itself behind what was written so far; the same as `encodeObject`. It is
  /// only read during the call.
  void encodeRootObject(const IPPCodable& object);

  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return false; }
  /// Appends 1, 2 or 4 octets, the most significant first. Types other than 'c', 's' and 'i' write
  /// nothing.
  void encodeValueOfType(char type, const void* value) override;
  /// Appends the low 16 bits of `length` and then all of the octets; `bytes` may be null for none.
  void encodeBytes(const void* bytes, std::size_t length) override;
  /// UTF-8 until it is set. A message does not set it: it is written in UTF-8, which is what the
  /// "attributes-charset" of every new request says (RFC 8011 §4.1.4).
  [[nodiscard]] TextEncoding naturalLanguageEncoding() const noexcept override;
  /// The encoding of text and names from now on.
  void setNaturalLanguageEncoding(TextEncoding encoding) noexcept override;

 private:
  void encodeBigEndian(std::uint32_t value, std::size_t octets);

  std::shared_ptr<Data> data_;
  std::size_t cursor_ = 0;
  TextEncoding naturalLanguageEncoding_;
};

}  // namespace platen::inline v0
