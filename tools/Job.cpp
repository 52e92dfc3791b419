// SPDX-License-Identifier: Apache-2.0
#include "Job.h"

#include "EnumNames.h"
#include "ValueText.h"

namespace platen::tool {

namespace {

// RFC 8011 §5.3.7.
constexpr std::int32_t kCanceled = 7;
constexpr std::int32_t kCompleted = 9;

std::optional<std::int32_t> numberIn(const IPPResponse& answer, std::string_view name) {
  const RawValue value = answer.attributeValueForKey(name);
  const Number* number = value.ifNumber();
  return number == nullptr ? std::nullopt : std::optional(number->intValue());
}

std::optional<URL> uriIn(const IPPResponse& answer, std::string_view name) {
  const RawValue value = answer.attributeValueForKey(name);
  const URL* url = value.ifURL();
  return url == nullptr ? std::nullopt : std::optional(*url);
}

// "none" is the keyword for no reason at all.
std::string reasonsIn(const IPPResponse& answer, std::string_view name) {
  const auto attribute = answer.attributeForKey(name);
  if (attribute == nullptr || attribute->ippValue() == nullptr) {
    return "";
  }
  std::string text = valueText(*attribute->ippValue(), name);
  if (text.starts_with('[')) {
    text = text.substr(1, text.size() - 2);
  }
  return text == "none" || text.starts_with('(') ? "" : text;
}

}  // namespace

Job::Job(const IPPResponse& answer)
    : id_(numberIn(answer, "job-id")),
      uri_(uriIn(answer, "job-uri")),
      state_(numberIn(answer, "job-state")),
      reasons_(reasonsIn(answer, "job-state-reasons")) {}

std::string Job::title() const { return id_ ? "job " + std::to_string(*id_) : "the job"; }

std::string Job::stateText() const {
  const std::string state = state_ ? enumText("job-state", *state_) : "(no state)";
  return reasons_.empty() ? state : state + " (" + reasons_ + ")";
}

bool Job::isOver() const { return state_ && *state_ >= kCanceled && *state_ <= kCompleted; }

bool Job::isCompleted() const { return state_ == kCompleted; }

}  // namespace platen::tool
