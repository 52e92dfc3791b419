// SPDX-License-Identifier: Apache-2.0

#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace platen::inline v0 {

namespace {

constexpr mode_t kModeOfNewFiles = 0666;

/// Repeats a system call that a signal interrupts.
template <typename Call>
auto retrying(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) {
    result = call();
  }
  return result;
}

// What is beyond this is left to the next call: POSIX leaves it open what happens to more.
std::size_t clamped(std::size_t length) {
  return std::min(length, static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max()));
}

}  // namespace

std::ptrdiff_t readDescriptor(int descriptor, std::uint8_t* destination, std::size_t maxLength) {
  return retrying([&] { return ::read(descriptor, destination, clamped(maxLength)); });
}

FileDescriptor::~FileDescriptor() { release(); }

int FileDescriptor::openFile(const std::string& path, int flags) {
  // A path cut short at a NUL would be another file's.
  if (path.find('\0') != std::string::npos) {
    return EINVAL;
  }
  release();
  descriptor_ =
      retrying([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, kModeOfNewFiles); });
  isOwned_ = true;
  return descriptor_ < 0 ? errno : inspect();
}

int FileDescriptor::borrow(int descriptor) {
  release();
  descriptor_ = descriptor;
  isOwned_ = false;
  return inspect();
}

int FileDescriptor::release() {
  const bool mustClose = isOwned_ && descriptor_ >= 0;
  const int descriptor = descriptor_;
  descriptor_ = -1;
  // Never retried: on Linux an interrupted close has closed, and the number may be another's.
  return mustClose && ::close(descriptor) != 0 && errno != EINTR ? errno : 0;
}

int FileDescriptor::inspect() {
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0) {
    return errno;
  }
  isSocket_ = S_ISSOCK(status.st_mode);
  return S_ISDIR(status.st_mode) ? EISDIR : 0;
}

std::ptrdiff_t FileDescriptor::read(std::uint8_t* destination, std::size_t maxLength) {
  return readDescriptor(descriptor_, destination, maxLength);
}

std::ptrdiff_t FileDescriptor::write(const std::uint8_t* bytes, std::size_t maxLength) {
  const std::size_t length = clamped(maxLength);
  return retrying([&] {
    return isSocket_ ? ::send(descriptor_, bytes, length, MSG_NOSIGNAL)
                     : ::write(descriptor_, bytes, length);
  });
}

bool FileDescriptor::isReady(short events) const {
  struct pollfd entry {};
  entry.fd = descriptor_;
  entry.events = events;
  return retrying([&] { return ::poll(&entry, 1, 0); }) > 0;
}

}  // namespace platen::inline v0
