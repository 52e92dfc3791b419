// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <string_view>
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

/// Prints a table of exchanges that are answered with the capture: of "upload", a large document
/// from a pipe; "at-once", many of them; "sequential", one after the other; "exchange", all three.
/// False for any other name.
bool benchExchange(std::string_view which, const Capture& answer);
/// The table of those one after the other, with a printer.
void benchPrinter(const std::string& uri);

}  // namespace platen::bench
