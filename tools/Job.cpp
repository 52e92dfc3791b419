// SPDX-License-Identifier: Apache-2.0
#include "Job.h"

#include "DisplayText.h"
#include "EnumNames.h"
#include "Facts.h"

namespace platen::tool {

namespace {

// RFC 8011 §5.3.7.
constexpr std::int32_t kCanceled = 7;
constexpr std::int32_t kCompleted = 9;

// "none" is the keyword for no reason at all.
std::vector<std::string> reasonsIn(const IPPResponse& answer) {
  const auto groups = answer.jobGroups();
  return groups.empty() ? std::vector<std::string>()
                        : Facts(*groups.front()).reasons("job-state-reasons");
}

}  // namespace

Job::Job(const IPPResponse& answer)
    : id_(answer.jobId()),
      uri_(answer.jobURI()),
      state_(answer.jobState()),
      reasons_(reasonsIn(answer)) {}

std::string Job::title() const { return id_ ? "job " + std::to_string(*id_) : "the job"; }

std::string Job::stateText() const {
  const std::string state = state_ ? enumText("job-state", *state_) : "(no state)";
  return reasons_.empty() ? state : state + " (" + harmless(joined(reasons_)) + ")";
}

bool Job::isOver() const { return state_ && *state_ >= kCanceled && *state_ <= kCompleted; }

bool Job::isCompleted() const { return state_ == kCompleted; }

Json Job::json(const Job& first) const {
  const auto state = state_ ? std::optional(enumText("job-state", *state_)) : std::nullopt;
  const auto uri = first.uri_ ? std::optional(first.uri_->absoluteString()) : std::nullopt;
  return Json::object(
      {{"id", first.id_}, {"uri", uri}, {"state", state}, {"state_reasons", reasons_}});
}

}  // namespace platen::tool
