// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace platen {

/// Counts what the calling thread allocates with `operator new` (which the source file of this
/// header replaces in the whole test program).
///
/// Threads: each thread has a count of its own.
class AllocationCount {
 public:
  AllocationCount() noexcept : start_(now()) {}

  /// How many allocations were made since this object was.
  [[nodiscard]] std::size_t sinceThen() const noexcept { return now() - start_; }

 private:
  static std::size_t now() noexcept;

  std::size_t start_;
};

}  // namespace platen
