// SPDX-License-Identifier: Apache-2.0
#include "LocalFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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
  isRegular_ = S_ISREG(status.st_mode) && !isStandardInput;
}

LocalFile::~LocalFile() {
  if (descriptor_ > STDIN_FILENO) {
    ::close(descriptor_);
  }
}

std::string LocalFile::displayName() const { return path_ == "-" ? "standard input" : path_; }

Data LocalFile::peek(std::size_t length) const {
  Data octets(length);
  const ssize_t count = ::pread(descriptor_, octets.data(), length, 0);
  if (count < 0) {
    fail(errno);
  }
  octets.resize(static_cast<std::size_t>(count));
  return octets;
}

Data LocalFile::readAll() const {
  const auto stream = InputStream::withFileDescriptor(descriptor_);
  Data octets = stream->readDataToEndOfStream();
  if (const auto error = stream->streamError()) {
    fail(static_cast<int>(error->code()));
  }
  return octets;
}

void LocalFile::fail(int error) const {
  throw Failure(ExitStatus::failed,
                "cannot read " + displayName() + ": " + std::generic_category().message(error));
}

}  // namespace platen::tool
