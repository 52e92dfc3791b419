// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>

namespace platen::bench {

/// Seconds that `work` takes by the clock on the wall.
double secondsOf(const std::function<void()>& work);

/// Resident memory of the process in octets: now, and the most since the last `forgetPeak`.
std::size_t residentMemory();
std::size_t peakMemory();
void forgetPeak();

/// How many descriptors the process has open.
std::size_t openDescriptors();
/// Allows as many descriptors as the system does.
void allowManyDescriptors();

}  // namespace platen::bench
