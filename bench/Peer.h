// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "platen/Data.h"

namespace platen::bench {

/// A part of the measurement that must not cost the measured process anything: a child process,
/// which ends with this object at the latest.
class Child {
 public:
  explicit Child(const std::function<void()>& work);
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child();

 private:
  pid_t pid_;
};

/// An HTTP server on loopback that reads whatever is posted and answers 200 with the same octets
/// each time, keeping connections alive. It holds back all answers until `heldUntil` requests are
/// there.
class Peer {
 public:
  explicit Peer(Data answer, std::size_t heldUntil = 1);

  /// "http://127.0.0.1:PORT/ipp/print".
  [[nodiscard]] const std::string& url() const { return url_; }

 private:
  Peer(int listener, Data answer, std::size_t heldUntil);

  std::string url_;
  Child child_;
};

/// A pipe into which a child process writes `octets` octets.
class Source {
 public:
  explicit Source(std::uint64_t octets);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  [[nodiscard]] int descriptor() const { return pipe_.read; }

 private:
  struct Pipe {
    int read;
    int write;
  };
  static Pipe makePipe();

  Pipe pipe_;
  Child child_;
};

}  // namespace platen::bench
