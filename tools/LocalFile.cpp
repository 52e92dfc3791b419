// SPDX-License-Identifier: Apache-2.0
#include "LocalFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "platen/Stream.h"

namespace platen::tool {

LocalFile::LocalFile(std::string path) : path_(std::move(path)) {
  const bool isStandardInput = path_ == "-";
  descriptor_ = isStandardInput ? STDIN_FILENO : ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0) {
    fail(errno);
  }
  if (S_ISDIR(status.st_mode)) {
    fail(EISDIR);
  }
  measure(status);
}

// What standard input has been read of already does not count. Files of a length of 0 are empty, or
// made by the system as they are read.
void LocalFile::measure(const struct stat& status) {
  const off_t position = S_ISREG(status.st_mode) ? ::lseek(descriptor_, 0, SEEK_CUR) : -1;
  if (position >= 0 && status.st_size > position) {
    length_ = static_cast<std::uint64_t>(status.st_size - position);
  }
}

LocalFile::~LocalFile() {
  if (descriptor_ > STDIN_FILENO) {
    ::close(descriptor_);
  }
}

std::string LocalFile::displayName() const { return path_ == "-" ? "standard input" : path_; }

void LocalFile::requireAtMost(std::size_t largest, std::uint64_t length) const {
  if (length > largest) {
    throw Failure(ExitStatus::failed, "cannot read " + displayName() + ": more than " +
                                          std::to_string(largest) + " octets");
  }
}

// One octet beyond the limit is enough to know. What has no length may have no end either.
Data LocalFile::readAll(std::size_t largest) const {
  requireAtMost(largest, length_.value_or(0));
  const auto stream = InputStream::withFileDescriptor(descriptor_);
  stream->open();
  std::array<std::uint8_t, 65536> chunk;
  Data octets;
  std::ptrdiff_t count = 1;
  while (count > 0 && octets.size() <= largest) {
    count = stream->read(chunk.data(), std::min(chunk.size() - 1, largest - octets.size()) + 1);
    octets.insert(octets.end(), chunk.begin(), chunk.begin() + std::max<std::ptrdiff_t>(count, 0));
  }
  requireAtMost(largest, octets.size());
  if (const auto error = stream->streamError()) {
    fail(error->code());
  }
  return octets;
}

void LocalFile::fail(std::int64_t error) const {
  throw Failure(ExitStatus::failed, "cannot read " + displayName() + ": " +
                                        std::generic_category().message(static_cast<int>(error)));
}

}  // namespace platen::tool
