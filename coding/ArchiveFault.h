// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "coding/ArchiveNode.h"
#include "platen/Error.h"
#include "platen/IPPKeyedArchive.h"

namespace platen::inline v0 {

/// What is wrong with an archive, and where. Thrown inside of the archiver and the unarchiver only.
///
/// Threads: one thread at a time.
struct ArchiveFault {
  IPPArchiveError code = IPPArchiveError::malformed;
  std::string keyPath;
  std::string what;

  /// "KEY-PATH: WHAT". Of a key path of more than 256 octets the middle is left out.
  [[nodiscard]] std::string description() const;
  [[nodiscard]] std::shared_ptr<const Error> error() const;
};

/// Tells a caller who wants to know: sets `*error`, null for a success, unless `error` is null.
void report(std::shared_ptr<const Error>* error, std::shared_ptr<const Error> outcome);

/// `text` in quotes, for an error text: the first 64 characters of it, with a question mark for
/// every control character and every octet that is no text.
std::string quotedForFault(std::string_view text);

// Key paths: "groups[1].attributes[3].value". A key that is no plain word is quoted in brackets.

void appendKey(std::string& keyPath, std::string_view key);
void appendIndex(std::string& keyPath, std::size_t index);
/// The key path of `wanted`, which is `root` or somewhere in it.
std::string keyPathOf(const ArchiveNode& wanted, const ArchiveNode& root);

}  // namespace platen::inline v0
