// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace platen::inline v0 {

/// One read of a descriptor; made anew only when a signal came before any octet. -1: see errno.
std::ptrdiff_t readDescriptor(int descriptor, std::uint8_t* destination, std::size_t maxLength);

/// A descriptor that is either owned, thus closed with this object, or another's.
///
/// Threads: one thread at a time. Neither copied nor moved.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  /// Opens and owns the file at `path`, with the flags of open(2) and not for child processes.
  /// Returns 0 or an errno; a directory is refused.
  int openFile(const std::string& path, int flags);
  /// Takes another's descriptor. Returns 0 or an errno.
  int borrow(int descriptor);
  /// Lets it go; returns 0 or the errno of closing.
  int release();

  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength);
  std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength);

  /// Whether any of poll(2)'s `events`, or an end or an error, can be had without waiting.
  [[nodiscard]] bool isReady(short events) const;
  /// -1 when there is none.
  [[nodiscard]] int number() const { return descriptor_; }

 private:
  int inspect();

  int descriptor_ = -1;
  bool isOwned_ = false;
  bool isSocket_ = false;
};

}  // namespace platen::inline v0
