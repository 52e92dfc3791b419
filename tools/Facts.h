// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/IPPAttributeGroup.h"
#include "platen/IPPValue.h"
#include "platen/RawValue.h"

namespace platen::tool {

/// "2001-02-03T04:05:06Z"; years may have five digits.
std::string instantText(Date instant);

/// What one group of an answer says of a job, a queue, a subscription or an event. What is not
/// there, out of band or of another kind is absent; of a set, where one value is asked for, the
/// first counts.
///
/// Threads: one thread at a time. Refers to the group, which has to live as long.
class Facts {
 public:
  explicit Facts(const IPPAttributeGroup& group) noexcept : group_(group) {}

  /// A text, a name, a keyword, a URI or another string; an empty one is absent.
  [[nodiscard]] std::optional<std::string> text(std::string_view name) const;
  /// `text`; "" when it is absent.
  [[nodiscard]] std::string textOrEmpty(std::string_view name) const;
  /// All strings of a set, in order.
  [[nodiscard]] std::vector<std::string> texts(std::string_view name) const;
  /// `texts` without "none", the keyword for no reason at all.
  [[nodiscard]] std::vector<std::string> reasons(std::string_view name) const;
  [[nodiscard]] std::optional<std::int32_t> number(std::string_view name) const;
  /// The digits of `number`; "" when it is absent.
  [[nodiscard]] std::string numberText(std::string_view name) const;
  /// The name of an enum value, "idle"; the digits of one without a name.
  [[nodiscard]] std::optional<std::string> enumName(std::string_view name) const;
  /// The name of an enum value and what "NAME-reasons" gives as reasons: "stopped (paused)".
  [[nodiscard]] std::string stateText(const std::string& name) const;
  [[nodiscard]] std::optional<bool> flag(std::string_view name) const;
  /// The instant in "date-time-at-WHAT", else in "time-at-WHAT" (RFC 8011 §5.3.14), as text. The
  /// latter counts seconds from 1970, or from the printer's start: then it is told only if the
  /// group also says how long the printer is up.
  [[nodiscard]] std::optional<std::string> instant(const std::string& what) const;

 private:
  [[nodiscard]] IPPValueList values(std::string_view name) const;
  template <class Value>
  [[nodiscard]] const Value* first(std::string_view name) const;

  const IPPAttributeGroup& group_;
};

/// The instant that `seconds` of an up-time name, where the up-time is `now` at present. Print
/// servers count from 1970, which is seen at the size of the number; printers from their start.
std::chrono::sys_seconds instantOfUpTime(std::int32_t seconds, std::int32_t now);

/// Whether so many seconds can only be counted from 1970, and not from a printer's start.
bool isSince1970(std::int32_t seconds);

/// "yes", "no"; "" when it is not known.
std::string yesOrNo(std::optional<bool> value);

/// "a, b".
std::string joined(const std::vector<std::string>& words, std::string_view separator = ", ");

}  // namespace platen::tool
