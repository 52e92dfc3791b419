// SPDX-License-Identifier: Apache-2.0
#include "Queues.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <utility>

#include "DisplayText.h"
#include "Facts.h"
#include "Report.h"
#include "Session.h"
#include "Table.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

using Names = std::vector<std::string>;

// Bits of "printer-type" of the CUPS print server.
constexpr std::uint32_t kClass = 0x1;
constexpr std::uint32_t kGrayscale = 0x4;
constexpr std::uint32_t kColor = 0x8;
constexpr std::uint32_t kDuplex = 0x10;
constexpr std::uint32_t kDefault = 0x20000;
constexpr std::uint32_t kAuthenticated = 0x400000;
constexpr std::uint32_t kRemote = 0x10002;

// What a queue is shown by; the server would tell ten times as much.
const Names kAttributes{"printer-name",
                        "printer-uri-supported",
                        "printer-info",
                        "printer-location",
                        "printer-make-and-model",
                        "device-uri",
                        "printer-state",
                        "printer-state-reasons",
                        "printer-state-message",
                        "printer-is-accepting-jobs",
                        "printer-is-shared",
                        "queued-job-count",
                        "printer-type",
                        "requesting-user-name-allowed",
                        "requesting-user-name-denied"};

bool has(const Names& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// The lists that the options ask for; a queue is shown when it is in all of them. The requests that
// filter at the server cannot tell in which queues a bit is set, only in which it is clear.
std::vector<Names> wantedLists(const QueuesOptions& options, const IPPResponse& answer) {
  std::vector<Names> lists;
  const auto add = [&](bool isWanted, Names names) {
    if (isWanted) {
      lists.push_back(std::move(names));
    }
  };
  add(options.local, answer.localPrintQueues());
  add(options.remote, answer.remotePrintQueues());
  add(options.color, answer.colorPrintQueues());
  add(options.grayscale, answer.grayscalePrintQueues());
  add(options.requiringAuthentication, answer.requiringAuthenticationPrintQueues());
  const auto byDefault = answer.defaultPrintQueue();
  add(options.isDefault, byDefault ? Names{*byDefault} : Names());
  return lists;
}

bool isWanted(const Facts& queue, const QueuesOptions& options, const std::vector<Names>& lists) {
  const auto name = queue.text("printer-name");
  const bool isShared = queue.flag("printer-is-shared").value_or(false);
  return name && !(options.shared && !isShared) && !(options.notShared && isShared) &&
         std::all_of(lists.begin(), lists.end(),
                     [&](const Names& list) { return has(list, *name); });
}

std::uint32_t typeOf(const Facts& queue) {
  return static_cast<std::uint32_t>(queue.number("printer-type").value_or(0));
}

bool hasBit(const Facts& queue, std::uint32_t bit) { return (typeOf(queue) & bit) != 0; }

Json jsonOf(const Facts& queue) {
  return Json::object({{"name", queue.text("printer-name")},
                       {"uri", queue.text("printer-uri-supported")},
                       {"info", queue.text("printer-info")},
                       {"location", queue.text("printer-location")},
                       {"make_and_model", queue.text("printer-make-and-model")},
                       {"device_uri", queue.text("device-uri")},
                       {"state", queue.enumName("printer-state")},
                       {"state_reasons", queue.reasons("printer-state-reasons")},
                       {"state_message", queue.text("printer-state-message")},
                       {"accepting", queue.flag("printer-is-accepting-jobs")},
                       {"shared", queue.flag("printer-is-shared")},
                       {"jobs", queue.number("queued-job-count")},
                       {"default", hasBit(queue, kDefault)},
                       {"class", hasBit(queue, kClass)},
                       {"remote", hasBit(queue, kRemote)},
                       {"color", hasBit(queue, kColor)},
                       {"grayscale", hasBit(queue, kGrayscale)},
                       {"duplex", hasBit(queue, kDuplex)},
                       {"requires_authentication", hasBit(queue, kAuthenticated)},
                       {"type", typeOf(queue)},
                       {"allowed_users", queue.texts("requesting-user-name-allowed")},
                       {"denied_users", queue.texts("requesting-user-name-denied")}});
}

Table::Row rowOf(const Facts& queue) {
  const auto jobs = queue.number("queued-job-count");
  return {queue.text("printer-name").value_or(""),
          hasBit(queue, kDefault) ? "yes" : "no",
          yesOrNo(queue.flag("printer-is-accepting-jobs")),
          yesOrNo(queue.flag("printer-is-shared")),
          jobs ? std::to_string(*jobs) : "",
          queue.stateText("printer-state"),
          queue.text("device-uri").value_or(""),
          queue.text("printer-info").value_or("")};
}

void show(const IPPMessage::Groups& queues, const QueuesOptions& options, std::ostream& out) {
  if (options.json) {
    std::vector<Json> values;
    std::transform(queues.begin(), queues.end(), std::back_inserter(values),
                   [](const auto& group) { return jsonOf(Facts(*group)); });
    return writeJson(out, Json::array(values));
  }
  if (queues.empty()) {
    out << "no queues\n";
    return;
  }
  Table table({"Name", "Default", "Accepting", "Shared", "Jobs", "State", "Device", "Info"});
  for (const auto& group : queues) {
    table.add(rowOf(Facts(*group)));
  }
  table.show(out, Display::ofStandardOutput({}));
}

std::optional<std::string> defaultName(Session& session, const ServerOptions& options) {
  const auto answer =
      session.askForAny(IPPRequest::serverDefaultPrintQueueRequest(), serverURI(options));
  const auto groups = answer == nullptr ? IPPMessage::Groups() : answer->printerGroups();
  return groups.empty() ? std::nullopt : Facts(*groups.front()).text("printer-name");
}

// Sends what `make` makes for a queue.
template <class Make>
void act(const QueueOptions& options, std::ostream& out, Make make, const std::string& before,
         const std::string& after) {
  const URL queue = queueURI(options.queue, options);
  Session session(options);
  carryOut(make(queue), queue, before + queueTitle(queue) + after, session, options, out);
}

}  // namespace

void listQueues(const QueuesOptions& options, std::ostream& out) {
  auto request = IPPRequest::serverAvailablePrintersRequest();
  request->setRequestedAttributes(kAttributes);
  Session session(options);
  const auto answer = session.askForAny(request, serverURI(options));
  IPPMessage::Groups queues;
  if (answer != nullptr) {
    const auto lists = wantedLists(options, *answer);
    for (const auto& group : answer->printerGroups()) {
      if (isWanted(Facts(*group), options, lists)) {
        queues.push_back(group);
      }
    }
  }
  show(queues, options, out);
}

void showOrSetDefault(const QueueOptions& options, std::ostream& out) {
  if (!options.queue.empty()) {
    return act(options, out, &IPPRequest::printerSetDefaultRequest, "", " is the default");
  }
  Session session(options);
  const auto name = defaultName(session, options);
  if (options.json) {
    return writeJson(out, Json::object({{"name", name}}));
  }
  out << (name ? harmless(*name) : "no default queue") << '\n';
}

void removeQueue(const QueueOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::printerRemoveQueueRequest, "", " removed");
}

void pauseQueue(const QueueOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::printerPauseRequest, "", " paused");
}

void resumeQueue(const QueueOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::printerResumeRequest, "", " resumed");
}

void purgeQueue(const QueueOptions& options, std::ostream& out) {
  act(options, out, &IPPRequest::printerPurgeJobsRequest, "all jobs of ", " purged");
}

}  // namespace platen::tool
