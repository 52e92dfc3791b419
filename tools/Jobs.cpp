// SPDX-License-Identifier: Apache-2.0
#include "Jobs.h"

#include <ostream>
#include <vector>

#include "Facts.h"
#include "Failure.h"
#include "GroupList.h"
#include "Report.h"
#include "Session.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

// Printers tell nothing but the number and the URI of each job unless they are asked.
const std::vector<std::string> kAttributes{"job-id",
                                           "job-uri",
                                           "job-name",
                                           "job-state",
                                           "job-state-reasons",
                                           "job-printer-uri",
                                           "job-originating-user-name",
                                           "job-originating-host-name",
                                           "job-priority",
                                           "job-k-octets",
                                           "job-media-sheets-completed",
                                           "job-printer-state-message",
                                           "job-printer-up-time",
                                           "time-at-creation",
                                           "time-at-processing",
                                           "time-at-completed",
                                           "date-time-at-creation",
                                           "date-time-at-processing",
                                           "date-time-at-completed"};

std::optional<std::string> queueOf(const Facts& job) {
  const std::string name = queueName(job.textOrEmpty("job-printer-uri"));
  return name.empty() ? std::nullopt : std::optional(name);
}

Json jsonOf(const Facts& job) {
  return Json::object({{"id", job.number("job-id")},
                       {"uri", job.text("job-uri")},
                       {"name", job.text("job-name")},
                       {"user", job.text("job-originating-user-name")},
                       {"host", job.text("job-originating-host-name")},
                       {"queue", queueOf(job)},
                       {"queue_uri", job.text("job-printer-uri")},
                       {"state", job.enumName("job-state")},
                       {"state_reasons", job.reasons("job-state-reasons")},
                       {"printer_message", job.text("job-printer-state-message")},
                       {"priority", job.number("job-priority")},
                       {"kilobytes", job.number("job-k-octets")},
                       {"sheets_completed", job.number("job-media-sheets-completed")},
                       {"created", job.instant("creation")},
                       {"started", job.instant("processing")},
                       {"completed", job.instant("completed")}});
}

Table::Row rowOf(const Facts& job) {
  return {job.numberText("job-id"),
          queueOf(job).value_or(""),
          job.textOrEmpty("job-originating-user-name"),
          job.instant("creation").value_or(""),
          job.numberText("job-k-octets"),
          job.stateText("job-state"),
          job.textOrEmpty("job-name")};
}

const ListForm kList{
    "jobs", {"Job", "Queue", "User", "Created", "KB", "State", "Name"}, &jsonOf, &rowOf};

Table uprightTableOf(const Facts& job) {
  Table table({"Job", "URI", "Name", "User", "Host", "Queue", "State", "Message", "Priority", "KB",
               "Sheets", "Created", "Started", "Completed"});
  table.add({job.numberText("job-id"), job.textOrEmpty("job-uri"), job.textOrEmpty("job-name"),
             job.textOrEmpty("job-originating-user-name"),
             job.textOrEmpty("job-originating-host-name"), queueOf(job).value_or(""),
             job.stateText("job-state"), job.textOrEmpty("job-printer-state-message"),
             job.numberText("job-priority"), job.numberText("job-k-octets"),
             job.numberText("job-media-sheets-completed"), job.instant("creation").value_or(""),
             job.instant("processing").value_or(""), job.instant("completed").value_or("")});
  return table;
}

// RFC 8011 §4.2.6.1.
IPPRequest::Pointer listRequest(const JobsOptions& options, const URL& target) {
  auto request = IPPRequest::printerJobsRequest(target);
  if (options.limit) {
    request->addOperationValue(IPPValue::integer(*options.limit), "limit");
  }
  request->setRequestedAttributes(kAttributes);
  if (options.which != JobsOptions::Which::active) {
    const bool isAll = options.which == JobsOptions::Which::all;
    request->addOperationValue(IPPValue::keyword(isAll ? "all" : "completed"), "which-jobs");
  }
  if (options.mine) {
    request->addOperationValue(IPPValue::booleanWithBool(true), "my-jobs");
  }
  return request;
}

// Sends what `make` makes for a job.
template <class Make>
void act(const JobOptions& options, std::ostream& out, Make make, const std::string& done) {
  const URL job = jobURI(options.job, options);
  Session session(options);
  carryOut(make(job), job, jobTitle(job) + done, session, options, out);
}

}  // namespace

void listJobs(const JobsOptions& options, std::ostream& out) {
  const URL target = queueOrServerURI(options.queue, options);
  Session session(options);
  const auto answer = session.ask(listRequest(options, target), target);
  showList(answer->jobGroups(), kList, options, out);
}

void showJob(const JobOptions& options, std::ostream& out) {
  const URL job = jobURI(options.job, options);
  auto request = IPPRequest::jobAttributesRequest(job);
  request->setRequestedAttributes(kAttributes);
  Session session(options);
  const auto groups = session.ask(request, job)->jobGroups();
  if (groups.empty()) {
    throw Failure(ExitStatus::failed, std::string(job.absoluteString()) + " tells nothing");
  }
  const Facts facts(*groups.front());
  if (options.json) {
    return writeJson(out, jsonOf(facts));
  }
  uprightTableOf(facts).showUpright(out, Display::ofStandardOutput({}));
}

void holdJob(const JobOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::jobHoldRequest, " held");
}

void releaseJob(const JobOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::jobReleaseRequest, " released");
}

void restartJob(const JobOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::jobRestartRequest, " restarted");
}

void cancelJob(const JobOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::jobCancelRequest, " canceled");
}

void moveJob(const MoveOptions& options, std::ostream& out) {
  const URL queue = queueURI(options.queue, options);
  const auto make = [&](const URL& job) { return IPPRequest::jobMoveRequest(job, queue); };
  act(options, out, make, " moved to " + queueTitle(queue));
}

}  // namespace platen::tool
