// SPDX-License-Identifier: Apache-2.0

#include "tests/support/ThreadCount.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define PLATEN_SANITIZED_THREADS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
    __has_feature(memory_sanitizer)
#define PLATEN_SANITIZED_THREADS
#endif
#endif

#ifdef PLATEN_SANITIZED_THREADS

std::optional<std::size_t> platen::tests::startedThreadCount() { return std::nullopt; }

#else

namespace {

std::atomic<std::size_t> startedCount = 0;

}  // namespace

std::optional<std::size_t> platen::tests::startedThreadCount() { return startedCount; }

/// Takes the place of the system's in the whole program, the libraries included.
extern "C" __attribute__((visibility("default"))) int pthread_create(
    pthread_t* thread, const pthread_attr_t* attributes, void* (*routine)(void*), void* argument) {
  static const auto function =
      reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
  ++startedCount;
  return function(thread, attributes, routine, argument);
}

#endif
