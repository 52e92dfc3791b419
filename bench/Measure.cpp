// SPDX-License-Identifier: Apache-2.0
#include <time.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <new>

#include "Bench.h"

namespace platen::bench {

namespace {

using Nanoseconds = std::chrono::duration<double, std::nano>;

constexpr auto kShortestLoop = std::chrono::milliseconds(5);
constexpr std::size_t kRepetitions = 7;

HeapUse use;

// The processor time of this process, which does not count while others have the processor.
Nanoseconds processorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

Nanoseconds timeOf(const std::function<void()>& run, std::size_t rounds) {
  const Nanoseconds start = processorTime();
  for (std::size_t round = 0; round < rounds; ++round) {
    run();
  }
  return processorTime() - start;
}

}  // namespace

HeapUse heapUse() noexcept { return use; }

double nanosecondsOf(const std::function<void()>& run) {
  std::size_t rounds = 1;
  while (timeOf(run, rounds) < kShortestLoop) {
    rounds *= 2;
  }
  std::array<double, kRepetitions> times{};
  for (double& time : times) {
    time = timeOf(run, rounds).count() / static_cast<double>(rounds);
  }
  std::sort(times.begin(), times.end());
  return times[kRepetitions / 2];
}

}  // namespace platen::bench

// The array and nothrow forms of the standard library come down to these, the library's own calls
// included. The program has one thread.
void* operator new(std::size_t size) {
  ++platen::bench::use.calls;
  platen::bench::use.octets += size;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) {
    return memory;
  }
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
