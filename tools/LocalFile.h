// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
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
  /// True when the file can be looked at without using up what is looked at.
  [[nodiscard]] bool isRegular() const noexcept { return isRegular_; }
  /// At most `length` octets from the start of a regular file, which stays where it is.
  [[nodiscard]] Data peek(std::size_t length) const;
  /// All of it.
  [[nodiscard]] Data readAll() const;

 private:
  [[noreturn]] void fail(int error) const;

  std::string path_;
  int descriptor_ = -1;
  bool isRegular_ = false;
};

}  // namespace platen::tool
