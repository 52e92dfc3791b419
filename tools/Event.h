// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Json.h"
#include "platen/IPPAttributeGroup.h"

namespace platen::tool {

/// Something that happened, as a print server tells it (RFC 3995 §9).
///
/// Threads: one thread at a time. Refers to the group, which has to live as long.
class Event {
 public:
  /// `now` is the up-time of the printer when it answered.
  Event(const IPPAttributeGroup& group, std::optional<std::int32_t> now)
      : group_(group), now_(now) {}

  /// Counts up within a subscription; 0 when the server does not say.
  [[nodiscard]] std::int32_t sequenceNumber() const;
  /// "2001-02-03T04:05:06Z  job-created  q1 job 12  Job created."
  [[nodiscard]] std::string line() const;
  [[nodiscard]] Json json() const;

 private:
  [[nodiscard]] std::string time() const;

  const IPPAttributeGroup& group_;
  std::optional<std::int32_t> now_;
};

}  // namespace platen::tool
