// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platen/Data.h"

namespace platen::bench {

/// One captured message; document data may follow it in the octets.
struct Capture {
  std::string name;  ///< Of the file, without directory and suffix.
  Data octets;
};

/// What the process took from `operator new` so far.
struct HeapUse {
  std::size_t calls = 0;
  std::size_t octets = 0;
};
HeapUse heapUse() noexcept;

/// Nanoseconds of processor time of one run: the median of 7 repetitions, each a loop of at least 5
/// ms.
double nanosecondsOf(const std::function<void()>& run);

/// Print one line of tab-separated fields for each capture, below a line that names the fields.
void benchCodec(const std::vector<Capture>& captures);
void benchLimits(const std::vector<Capture>& captures);

/// Prints three tables: a large document from a pipe, many exchanges at once, one after the other.
void benchExchange(const Capture& answer);
/// The last of these tables, with a printer.
void benchPrinter(const std::string& uri);

}  // namespace platen::bench
