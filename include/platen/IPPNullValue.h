// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The out-of-band values (RFC 8011 §5.1.1, RFC 8010 §3.5.2).

#include <cstddef>

#include "platen/Export.h"
#include "platen/IPPValue.h"

namespace platen::inline v0 {

/// The abstract value that stands for the absence of one. Its raw object is the null object; it is
/// made by default construction or by a decoder, never from a raw object.
///
///     body = %x00.00                 ; written; a reader reads nothing, and the decoder of groups
///                                    ; passes over the two octets as tags of value 0
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPNullValue : public IPPValue {
 public:
  /// The null object.
  [[nodiscard]] RawValue rawValue() const override;
  /// The null object.
  [[nodiscard]] RawValue value() const override;
  /// Writes a length of 0, and the null object to a keyed coder.
  void encodeWithCoder(IPPCoder& coder) const override;
};

/// unsupported. Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPUnsupported : public IPPNullValue {
 public:
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// no-value. Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPNoValue : public IPPNullValue {
 public:
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// not-settable, RFC 3380 §8.1. Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPNotSettable : public IPPNullValue {
 public:
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

/// admin-define, RFC 3380 §8.1. Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPAdminDefine : public IPPNullValue {
 public:
  static const IPPValueClass descriptor;
  [[nodiscard]] const IPPValueClass& ippClass() const noexcept override { return descriptor; }
};

}  // namespace platen::inline v0
