// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "platen/Data.h"

namespace platen::tool {

/// A file that is open for reading; "-" is standard input. Open from its construction on, so what
/// was found readable cannot vanish before it is read. Everything that fails raises a `Failure`
/// that names the file.
///
/// Threads: one thread at a time. Neither copied nor moved.
class LocalFile {
 public:
  explicit LocalFile(std::string path);
  LocalFile(const LocalFile&) = delete;
  LocalFile& operator=(const LocalFile&) = delete;
  ~LocalFile();

  /// The path, or "standard input".
  [[nodiscard]] std::string displayName() const;
  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }
  /// How many octets there are to read; nothing for what only its end tells (a pipe).
  [[nodiscard]] std::optional<std::uint64_t> length() const noexcept { return length_; }
  /// All of it. Raises that it cannot be read when that is more than `largest` octets, of which no
  /// more are read.
  [[nodiscard]] Data readAll(std::size_t largest) const;
  /// Raises that it cannot be read, for the reason `error` (an errno).
  [[noreturn]] void fail(std::int64_t error) const;

 private:
  void measure(const struct stat& status);
  void requireAtMost(std::size_t largest, std::uint64_t length) const;

  std::string path_;
  int descriptor_ = -1;
  std::optional<std::uint64_t> length_;
};

}  // namespace platen::tool
