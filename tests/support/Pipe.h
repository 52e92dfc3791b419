// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platen/Stream.h"

namespace platen::tests {

enum class Through { pipe, socket };

/// A pipe or a pair of sockets, as a stream that somebody else is still filling.
class Source {
 public:
  explicit Source(Through through) {
    EXPECT_EQ(through == Through::pipe
                  ? pipe2(ends_.data(), O_CLOEXEC)
                  : socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_.data()),
              0);
  }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source() {
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

class Pipe : public Source {
 public:
  Pipe() : Source(Through::pipe) {}
};

/// A test that is run with both.
class WithEachSource : public testing::WithParamInterface<Through> {
 public:
  static std::string nameOf(const testing::TestParamInfo<Through>& tested) {
    return tested.param == Through::pipe ? "Pipe" : "Socket";
  }
};

}  // namespace platen::tests
