// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The classes that an archive finds by their name.

#include <memory>
#include <string_view>

#include "platen/Export.h"
#include "platen/IPPCoder.h"

namespace platen::inline v0 {

/// A class of codable objects as an object: its name, and how one is read. Value classes and group
/// classes have descriptors of their own (`IPPValueClass`, `IPPGroupClass`), whose catalogs an
/// archive looks into as well; this one is for everything else.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPCodableClass {
 public:
  /// A new object read from a keyed coder; null when there is none to be had. May raise.
  using Decode = IPPCoder::Object (*)(IPPCoder&);

  /// A class of these. `className` must live for the process; `decode` must not be null.
  constexpr IPPCodableClass(std::string_view className, Decode decode) noexcept
      : className_(className), decode_(decode) {}
  IPPCodableClass(const IPPCodableClass&) = delete;
  IPPCodableClass& operator=(const IPPCodableClass&) = delete;

  /// What `IPPCodable::className` answers for objects of this class. Lives for the process.
  [[nodiscard]] constexpr std::string_view className() const noexcept { return className_; }
  /// A new object of this class, read from `coder`; null when there is none to be had. Raises what
  /// the coder raises.
  [[nodiscard]] IPPCoder::Object initWithCoder(IPPCoder& coder) const { return decode_(coder); }

 private:
  std::string_view className_;
  Decode decode_;
};

/// Puts a class where archives find it, as `IPPValueRegistration` does for value classes: one
/// static object of this type in the class's own source file. An application does the same for
/// classes of its own, before the first archive is written or read. Of two classes with the same
/// name the one registered first is found.
///
/// Threads: made before threads are, or by one thread; lives for the process.
class PLATEN_EXPORT IPPCodableRegistration {
 public:
  /// `codableClass` is not copied and must live for the process.
  explicit IPPCodableRegistration(const IPPCodableClass& codableClass) noexcept;
  IPPCodableRegistration(const IPPCodableRegistration&) = delete;
  IPPCodableRegistration& operator=(const IPPCodableRegistration&) = delete;

  /// The first one that was registered, or null.
  static const IPPCodableRegistration* first() noexcept;
  /// The one that was registered after this one, or null.
  [[nodiscard]] const IPPCodableRegistration* next() const noexcept { return next_; }
  /// The class that was registered.
  [[nodiscard]] const IPPCodableClass& codableClass() const noexcept { return class_; }

 private:
  const IPPCodableClass& class_;
  const IPPCodableRegistration* next_ = nullptr;
};

}  // namespace platen::inline v0
