// SPDX-License-Identifier: Apache-2.0
#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace platen::inline v0 {

namespace {

bool writeAll(int descriptor, Bytes data) {
  while (!data.empty()) {
    const ssize_t written = ::write(descriptor, data.data(), data.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    data = data.subspan(static_cast<std::size_t>(written < 0 ? 0 : written));
  }
  return true;
}

// What a rename would put a file in the place of, or 0. Where a link leads to counts, for
// /dev/stdout.
int reasonToKeep(const std::string& path) {
  struct stat facts {};
  if (::stat(path.c_str(), &facts) != 0 || S_ISREG(facts.st_mode)) {
    return 0;
  }
  return S_ISDIR(facts.st_mode) ? EISDIR : EINVAL;
}

}  // namespace

bool writeFileAtomically(const std::string& path, Bytes data) {
  if (const int reason = reasonToKeep(path); reason != 0) {
    errno = reason;
    return false;
  }
  std::string temporary = path + ".XXXXXX";
  const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);  // with the mode 0600
  if (descriptor < 0) {
    return false;
  }
  const bool isWritten = writeAll(descriptor, data) && ::fsync(descriptor) == 0;
  const int writeError = errno;
  ::close(descriptor);
  if (isWritten && std::rename(temporary.c_str(), path.c_str()) == 0) {
    return true;
  }
  const int reason = isWritten ? errno : writeError;
  ::unlink(temporary.c_str());
  errno = reason;  // the first thing that went wrong, not what tidying up made of it
  return false;
}

}  // namespace platen::inline v0
