// SPDX-License-Identifier: Apache-2.0
#include "Queues.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <unordered_set>

#include "DisplayText.h"
#include "Facts.h"
#include "GroupList.h"
#include "Report.h"
#include "Session.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

using Names = std::vector<std::string>;
using NameSet = std::unordered_set<std::string>;

// Bits of "printer-type" of the CUPS print server.
constexpr std::uint32_t kClass = 0x1;
constexpr std::uint32_t kGrayscale = 0x4;
constexpr std::uint32_t kColor = 0x8;
constexpr std::uint32_t kDuplex = 0x10;
constexpr std::uint32_t kDefault = 0x20000;
constexpr std::uint32_t kAuthenticated = 0x400000;
constexpr std::uint32_t kRemote = 0x10002;

// The operation-id of CUPS-Get-Default.
constexpr std::int32_t kGetDefault = 0x4001;

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

// The lists that the options ask for; a queue is shown when it is in all of them. The requests that
// filter at the server cannot tell in which queues a bit is set, only in which it is clear.
std::vector<NameSet> wantedSets(const QueuesOptions& options, const IPPResponse& answer) {
  std::vector<NameSet> sets;
  const auto add = [&](bool isWanted, Names (IPPResponse::*list)() const) {
    if (isWanted) {
      const Names names = (answer.*list)();
      sets.emplace_back(names.begin(), names.end());
    }
  };
  add(options.local, &IPPResponse::localPrintQueues);
  add(options.remote, &IPPResponse::remotePrintQueues);
  add(options.color, &IPPResponse::colorPrintQueues);
  add(options.grayscale, &IPPResponse::grayscalePrintQueues);
  add(options.requiringAuthentication, &IPPResponse::requiringAuthenticationPrintQueues);
  if (options.isDefault) {
    const auto name = answer.defaultPrintQueue();
    sets.push_back(name ? NameSet{*name} : NameSet());
  }
  return sets;
}

bool isWanted(const Facts& queue, const QueuesOptions& options, const std::vector<NameSet>& sets) {
  const auto name = queue.text("printer-name");
  const bool isShared = queue.flag("printer-is-shared").value_or(false);
  return name && !(options.shared && !isShared) && !(options.notShared && isShared) &&
         std::all_of(sets.begin(), sets.end(),
                     [&](const NameSet& names) { return names.contains(*name); });
}

IPPMessage::Groups wantedQueues(const QueuesOptions& options, const IPPResponse& answer) {
  const auto sets = wantedSets(options, answer);
  auto queues = answer.printerGroups();
  std::erase_if(queues, [&](const auto& group) { return !isWanted(Facts(*group), options, sets); });
  return queues;
}

std::optional<std::uint32_t> typeOf(const Facts& queue) {
  const auto number = queue.number("printer-type");
  return number ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
}

bool hasBit(const Facts& queue, std::uint32_t bit) {
  return (typeOf(queue).value_or(0) & bit) != 0;
}

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
  return {queue.textOrEmpty("printer-name"),
          hasBit(queue, kDefault) ? "yes" : "no",
          yesOrNo(queue.flag("printer-is-accepting-jobs")),
          yesOrNo(queue.flag("printer-is-shared")),
          queue.numberText("queued-job-count"),
          queue.stateText("printer-state"),
          queue.textOrEmpty("device-uri"),
          queue.textOrEmpty("printer-info")};
}

const ListForm kList{"queues",
                     {"Name", "Default", "Accepting", "Shared", "Jobs", "State", "Device", "Info"},
                     &jsonOf,
                     &rowOf};

std::optional<std::string> defaultName(Session& session, const ServerOptions& options) {
  const URL server = serverURI(options);
  // Not by the factory, whose target is the server of this machine.
  auto request = IPPRequest::requestWithId(kGetDefault);
  request->setPrinterURI(server);
  request->addRequestingUserNameAttribute();
  const auto answer = session.askForAny(request, server);
  const auto groups = answer == nullptr ? IPPMessage::Groups() : answer->printerGroups();
  return groups.empty() ? std::nullopt : Facts(*groups.front()).text("printer-name");
}

// Sends what `make` makes for a queue.
template <class Make>
void act(const std::string& word, const ServerOptions& options, std::ostream& out, Make make,
         const std::string& before, const std::string& after) {
  const URL queue = queueURI(word, options);
  Session session(options);
  carryOut(make(queue), queue, before + queueTitle(queue) + after, session, options, out);
}

}  // namespace

void listQueues(const QueuesOptions& options, std::ostream& out) {
  auto request = IPPRequest::serverAvailablePrintersRequest();
  request->setRequestedAttributes(kAttributes);
  Session session(options);
  const auto answer = session.askForAny(request, serverURI(options));
  showList(answer == nullptr ? IPPMessage::Groups() : wantedQueues(options, *answer), kList,
           options, out);
}

void showOrSetDefault(const DefaultOptions& options, std::ostream& out) {
  if (options.queue) {
    return act(*options.queue, options, out, &IPPRequest::printerSetDefaultRequest, "",
               " is the default");
  }
  Session session(options);
  const auto name = defaultName(session, options);
  if (options.json) {
    return writeJson(out, Json::object({{"name", name}}));
  }
  out << (name ? harmless(*name) : "no default queue") << '\n';
}

void removeQueue(const QueueOptions& options, std::ostream& out) {
  act(options.queue, options, out, &IPPRequest::printerRemoveQueueRequest, "", " removed");
}

void pauseQueue(const QueueOptions& options, std::ostream& out) {
  act(options.queue, options, out, &IPPRequest::printerPauseRequest, "", " paused");
}

void resumeQueue(const QueueOptions& options, std::ostream& out) {
  act(options.queue, options, out, &IPPRequest::printerResumeRequest, "", " resumed");
}

void purgeQueue(const QueueOptions& options, std::ostream& out) {
  act(options.queue, options, out, &IPPRequest::printerPurgeJobsRequest, "all jobs of ", " purged");
}

}  // namespace platen::tool
