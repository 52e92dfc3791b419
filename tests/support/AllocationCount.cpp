// SPDX-License-Identifier: Apache-2.0

#include "tests/support/AllocationCount.h"

#include <cstdlib>
#include <new>

namespace platen {
namespace {

thread_local std::size_t allocations = 0;

}  // namespace

std::size_t AllocationCount::now() noexcept { return allocations; }

}  // namespace platen

// The array forms of the standard library come down to these, and so does its nothrow form; that of
// the address sanitizer does not, so it is here.
void* operator new(std::size_t size) {
  ++platen::allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  ++platen::allocations;
  return std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
