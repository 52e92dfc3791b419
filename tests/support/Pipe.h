// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include "platen/Stream.h"

namespace platen::tests {

/// A pipe, as a stream that somebody else is still filling.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe2(ends_.data(), O_CLOEXEC), 0); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    finish();
    close(ends_[0]);
  }

  [[nodiscard]] std::shared_ptr<InputStream> stream() const {
    return InputStream::withFileDescriptor(ends_[0]);
  }
  void write(std::string_view text) const {
    EXPECT_EQ(::write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  [[nodiscard]] int readingEnd() const { return ends_[0]; }
  void finish() {
    if (ends_[1] >= 0) {
      close(std::exchange(ends_[1], -1));
    }
  }

 private:
  std::array<int, 2> ends_{-1, -1};
};

}  // namespace platen::tests
