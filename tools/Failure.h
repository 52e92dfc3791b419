// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
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
  /// This and the number of the signal that ended the command, as shells have it.
  signal = 128,
};

/// client-error-not-found (RFC 8011 §B.1.4.7), among the status-codes of `Failure::ippStatus`.
constexpr std::int32_t kNotFound = 0x0406;

/// Ends the command with one line on standard error; with none when the line is empty, because all
/// has been told.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const std::string& line, std::optional<std::int32_t> ippStatus = {})
      : std::runtime_error(line), status_(status), ippStatus_(ippStatus) {}

  [[nodiscard]] ExitStatus status() const noexcept { return status_; }
  /// The status-code of the answer that was a refusal (RFC 8011 §B.1); nothing for every other
  /// failure.
  [[nodiscard]] std::optional<std::int32_t> ippStatus() const noexcept { return ippStatus_; }

 private:
  ExitStatus status_;
  std::optional<std::int32_t> ippStatus_;
};

/// Tells of a failure on standard error, in one line whatever a printer or a file has put into it,
/// after all that went to standard output before.
void complain(const std::string& line);

}  // namespace platen::tool
