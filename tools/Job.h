// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Json.h"
#include "platen/IPPResponse.h"
#include "platen/URL.h"

namespace platen::tool {

/// What a printer said of a job in one answer. What it left out is absent.
///
/// Threads: a plain value; one thread at a time.
class Job {
 public:
  explicit Job(const IPPResponse& answer);

  /// "job 12", or "the job" when it has no number.
  [[nodiscard]] std::string title() const;
  /// "processing", or "processing (job-printing)" where the printer gives reasons.
  [[nodiscard]] std::string stateText() const;
  [[nodiscard]] const std::optional<URL>& uri() const noexcept { return uri_; }
  [[nodiscard]] bool hasState() const noexcept { return state_.has_value(); }
  /// True when the state will not change any more: canceled, aborted or completed.
  [[nodiscard]] bool isOver() const;
  [[nodiscard]] bool isCompleted() const;
  /// The state as this answer tells it, of the job as `first` did.
  [[nodiscard]] Json json(const Job& first) const;

 private:
  std::optional<std::int32_t> id_;
  std::optional<URL> uri_;
  std::optional<std::int32_t> state_;
  std::vector<std::string> reasons_;
};

}  // namespace platen::tool
