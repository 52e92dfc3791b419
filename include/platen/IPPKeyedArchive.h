// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What writing and reading an archive have in common: its forms, its limits, and what can be wrong
/// with one. The schema is in docs/archive.md.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace platen::inline v0 {

/// The form of an archive. All hold the same; a reader tells JSON and CBOR apart by the first
/// octet.
enum class IPPArchiveFormat {
  json,          ///< One line of JSON (RFC 8259), without a line end.
  indentedJSON,  ///< JSON for people: indented by 2, with a line end.
  cbor,          ///< CBOR (RFC 8949), all lengths definite.
};

/// The version of the schema, which stands at the top of every archive under the key
/// "$platen-archive". A reader refuses every other one.
inline constexpr std::int64_t kIPPArchiveVersion = 1;

/// Objects are nested in each other at most this deep; the archiver refuses to write what the
/// unarchiver refuses to read. A message off the wire is at most 133 deep.
inline constexpr int kIPPArchiveDeepestObject = 256;
/// The lists and maps of the form itself are nested at most this deep.
inline constexpr int kIPPArchiveDeepestNesting = 1024;
/// An archive that is read has at most this many octets unless the reader is given another limit.
/// Of that limit an object takes 4 octets at least, and everything else (a number, a text, a list,
/// ...) 3. The archiver writes what is larger too.
inline constexpr std::size_t kIPPArchiveLargestSize = std::size_t{64} << 20U;

/// How an archive is read.
///
/// Threads: a plain value; one thread at a time.
struct IPPArchiveReading {
  /// The form, where it must be this one (either kind of JSON stands for both); nothing to have it
  /// recognised.
  std::optional<IPPArchiveFormat> format = std::nullopt;
  /// The largest number of octets to take. More are not read.
  std::size_t largestSize = kIPPArchiveLargestSize;
};

/// Domain of the error records of archives; the code is an `IPPArchiveError`. The description
/// begins with the key path of the offending place, as in
/// `groups[1].attributes[3].value: unknown class "IPPFoo"`; nothing stands before the text where
/// it is the archive as a whole, and of more than 256 octets the middle is left out. Failures of
/// files and streams are in `kPOSIXErrorDomain`.
inline constexpr std::string_view IPPArchiveErrorDomain = "IPPArchiveErrorDomain";

/// Key of the whole key path alone in the user information, a text; "" for the archive as a whole.
inline constexpr std::string_view IPPErrorArchiveKeyPath = "IPPErrorArchiveKeyPath";

/// What is wrong with an archive, or with what was to become one.
enum class IPPArchiveError : std::int64_t {
  notAnArchive = 1,  ///< Neither JSON nor CBOR, or without a version.
  unknownVersion,    ///< Written by a later release.
  malformed,         ///< Not well-formed: cut short, followed by something, or with a bad octet;
                     ///< in JSON also an escape that is half a character.
  tooLarge,          ///< More octets, or more items, than the limit allows.
  tooDeep,           ///< Nested deeper than the limits above.
  duplicateKey,      ///< A key, a member's name, or an id that was there before.
  missingKey,        ///< A key that the class reads and the archive lacks.
  unknownKey,        ///< A key that the class does not write.
  wrongType,         ///< Something of another type or class than belongs there.
  outOfRange,        ///< A number that does not fit.
  invalidText,       ///< Octets that are not UTF-8 (RFC 3629), or base64 that is none (RFC 4648).
  unknownClass,      ///< A class that is not registered.
  unknownReference,  ///< A reference to an id that no object has.
  cycle,             ///< A reference to an object from inside of it.
  inconsistent,      ///< Anything else that the class itself refuses, for example an empty set.
};

}  // namespace platen::inline v0
