// SPDX-License-Identifier: Apache-2.0
#include "platform/AtomicFile.h"

#include <fcntl.h>
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

}  // namespace

bool writeFileAtomically(const std::string& path, Bytes data) {
  std::string temporary = path + ".XXXXXX";
  const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);  // with the mode 0600
  if (descriptor < 0) {
    return false;
  }
  const bool isWritten = writeAll(descriptor, data) && ::fsync(descriptor) == 0;
  ::close(descriptor);
  if (isWritten && std::rename(temporary.c_str(), path.c_str()) == 0) {
    return true;
  }
  ::unlink(temporary.c_str());
  return false;
}

}  // namespace platen::inline v0
