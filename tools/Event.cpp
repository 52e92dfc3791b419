// SPDX-License-Identifier: Apache-2.0
#include "Event.h"

#include <chrono>

#include "DisplayText.h"
#include "Facts.h"
#include "Server.h"

namespace platen::tool {

namespace {

// As wide as the longest event that is usually asked for, "printer-state-changed".
constexpr std::size_t kEventWidth = 21;

std::string subjectOf(const Facts& event) {
  const auto name = event.text("printer-name");
  const std::string queue = name.value_or(queueName(event.textOrEmpty("notify-printer-uri")));
  const auto job = event.number("notify-job-id");
  const std::string title = job ? "job " + std::to_string(*job) : "";
  return queue + (queue.empty() || title.empty() ? "" : " ") + title;
}

// The text is for people, in the server's words; not all servers have one.
std::string textOf(const Facts& event) {
  return event.text("notify-text")
      .value_or(
          event.enumName(event.number("job-state") ? "job-state" : "printer-state").value_or(""));
}

}  // namespace

std::int32_t Event::sequenceNumber() const {
  return Facts(group_).number("notify-sequence-number").value_or(0);
}

std::string Event::time() const {
  const auto upTime = Facts(group_).number("printer-up-time");
  const bool isKnown = upTime && (now_ || isSince1970(*upTime));
  return instantText(
      isKnown ? instantOfUpTime(*upTime, now_.value_or(0))
              : std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
}

std::string Event::line() const {
  const Facts event(group_);
  const std::string name = event.text("notify-subscribed-event").value_or("(no event)");
  std::string line = time() + "  " + padded(harmless(name), kEventWidth);
  for (const std::string& part : {subjectOf(event), textOf(event)}) {
    line += part.empty() ? "" : "  " + harmless(part);
  }
  return line;
}

Json Event::json() const {
  const Facts event(group_);
  return Json::object({{"time", time()},
                       {"event", event.text("notify-subscribed-event")},
                       {"subscription_id", event.number("notify-subscription-id")},
                       {"sequence_number", event.number("notify-sequence-number")},
                       {"text", event.text("notify-text")},
                       {"printer_uri", event.text("notify-printer-uri")},
                       {"printer_name", event.text("printer-name")},
                       {"printer_state", event.enumName("printer-state")},
                       {"printer_state_reasons", event.reasons("printer-state-reasons")},
                       {"accepting", event.flag("printer-is-accepting-jobs")},
                       {"job_id", event.number("notify-job-id")},
                       {"job_name", event.text("job-name")},
                       {"job_state", event.enumName("job-state")},
                       {"job_state_reasons", event.reasons("job-state-reasons")}});
}

}  // namespace platen::tool
