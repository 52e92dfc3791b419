// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <sys/resource.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace platen::bench {

namespace {

constexpr std::size_t kKibi = 1024;

// proc(5): "VmRSS:     1234 kB".
std::size_t statusField(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == name) {
      std::size_t kibibytes = 0;
      status >> kibibytes;
      return kibibytes * kKibi;
    }
  }
  return 0;
}

}  // namespace

double secondsOf(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::size_t residentMemory() { return statusField("VmRSS:"); }
std::size_t peakMemory() { return statusField("VmHWM:"); }

void forgetPeak() {
  constexpr char kResetPeak = '5';
  std::ofstream("/proc/self/clear_refs") << kResetPeak;
}

std::size_t openDescriptors() {
  const std::filesystem::directory_iterator entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries))) - 1;
}

void allowManyDescriptors() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace platen::bench
