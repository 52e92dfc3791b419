// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

namespace platen::tool {

/// What the command ends with. The numbers are what scripts rely on.
enum class ExitStatus : int {
  done = 0,
  /// The printer refused, the job did not complete, or what was read is no IPP message.
  failed = 1,
  /// The command line makes no sense.
  usage = 2,
  /// Nobody answered.
  unreachable = 3,
};

/// Ends the command with one line on standard error.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& line) : std::runtime_error(line), status_(status) {}

  [[nodiscard]] ExitStatus status() const noexcept { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace platen::tool
