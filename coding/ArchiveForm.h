// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "coding/ArchiveFault.h"
#include "coding/ArchiveNode.h"
#include "platen/Data.h"
#include "platen/IPPKeyedArchive.h"

namespace platen::inline v0 {

/// The octets of an archive in one of its forms. A field "$id" that is absent is left out.
Data writeArchiveForm(const ArchiveNode& root, IPPArchiveFormat format);

/// The items that `data` spells. Throws `ArchiveFault` when it is in none of the forms or not in
/// the one asked for, and for everything that its form or the limits forbid. A number is 64 bits
/// wide or finite, an object has no key twice, and every key is UTF-8.
ArchiveNode readArchiveForm(Bytes data, const IPPArchiveReading& reading);

/// What the shape of CBOR has wrong. The fault has no key path: what stands before the item that
/// has it wrong says which one it is.
struct CBORFault {
  ArchiveFault fault;
  std::size_t item = 0;  ///< How many octets stand before that item.
};

/// Walks over one CBOR item (RFC 8949 §3) and throws `CBORFault` unless it ends where `data` does,
/// has only definite lengths and no tags, and its numbers fit 64 bits with a sign.
void requireCBORShape(Bytes data);

/// RFC 4648 §4, with padding.
std::string base64Of(std::string_view octets);
/// Throws `ArchiveFault` without a key path for anything that `base64Of` does not give.
std::string octetsOfBase64(std::string_view text);

}  // namespace platen::inline v0
