// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <thread>

#include "tests/tool/ToolRun.h"

namespace platen::test {

/// Asks every few milliseconds until `isTrue` says so; false after 10 seconds.
inline bool becomesTrue(const std::function<bool()>& isTrue) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!isTrue()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

/// The command while it runs, with a pipe at its standard input that stays open until told.
class RunningTool {
 public:
  explicit RunningTool(const Arguments& arguments) {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
      throw std::runtime_error("no pipe");
    }
    input_ = pipe[1];
    process_ = startTool(arguments, pipe[0], out_.descriptor(), err_.descriptor());
    ::close(pipe[0]);
  }
  RunningTool(const RunningTool&) = delete;
  RunningTool& operator=(const RunningTool&) = delete;
  ~RunningTool() {
    if (process_ > 0) {
      ::kill(process_, SIGKILL);
      end();
    }
  }

  /// Writes to its standard input, waiting for it to read.
  void write(std::string_view octets) {
    while (!octets.empty()) {
      const auto count = ::write(input_, octets.data(), octets.size());
      if (count <= 0) {
        return;
      }
      octets.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  void closeInput() {
    if (const int descriptor = std::exchange(input_, -1); descriptor >= 0) {
      ::close(descriptor);
    }
  }

  void signal(int number) const { ::kill(process_, number); }
  /// Waits until it handles that signal; false when it does not for 10 seconds.
  bool waitUntilHandling(int number) const {
    return becomesTrue([&] { return isHandling(number); });
  }
  bool isHandling(int number) const {
    std::ifstream status("/proc/" + std::to_string(process_) + "/status");
    for (std::string word; status >> word;) {
      if (word == "SigCgt:" && status >> word) {
        return ((std::stoull(word, nullptr, 16) >> static_cast<unsigned>(number - 1)) & 1U) != 0;
      }
    }
    return false;
  }
  /// Waits until its standard output has `text` in it; false when that does not come for 10
  /// seconds.
  bool waitForOutput(const std::string& text) const {
    return becomesTrue([&] { return contentsOf(out_).find(text) != std::string::npos; });
  }

  /// Waits for its end, and ends it when that takes more than 10 seconds.
  ToolRun end() {
    int status = 0;
    rusage usage{};
    const auto hasEnded = [&] { return ::wait4(process_, &status, WNOHANG, &usage) == process_; };
    if (!becomesTrue(hasEnded)) {
      ::kill(process_, SIGKILL);
      ::wait4(process_, &status, 0, &usage);
    }
    process_ = -1;
    closeInput();
    peakMemory_ = usage.ru_maxrss;
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return {code, out_.contents(), err_.contents()};
  }
  /// After its end: how much memory it has had at most, in KiB.
  long peakMemory() const { return peakMemory_; }

 private:
  // Without moving the place where the command writes next.
  static std::string contentsOf(const ScratchFile& file) {
    std::string text(65536, '\0');
    const auto count = ::pread(file.descriptor(), text.data(), text.size(), 0);
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return text;
  }

  const ScratchFile out_;
  const ScratchFile err_;
  int input_ = -1;
  pid_t process_ = -1;
  long peakMemory_ = 0;
};

}  // namespace platen::test
