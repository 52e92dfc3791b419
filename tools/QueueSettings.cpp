// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <ostream>

#include "Failure.h"
#include "OptionText.h"
#include "Queues.h"
#include "Report.h"
#include "Session.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPRequest.h"

namespace platen::tool {

namespace {

using Names = std::vector<std::string>;

bool exists(Session& session, const URL& queue) {
  const std::array<std::string, 1> name{"printer-name"};
  auto question = IPPRequest::printerAttributesRequest(queue);
  question->setRequestedAttributes(name);
  return session.askForAny(question, queue) != nullptr;
}

void setDevice(IPPRequest& request, const std::string& text) {
  const auto device = URL::parse(text);
  if (!device || !device->scheme()) {
    throw Failure(ExitStatus::usage, "\"" + text + "\" is not the URI of a device");
  }
  withOption("device", text, TextEncoding::ascii(), [&] { request.setDeviceURI(*device); });
}

// Print servers take lists of users from a printer group only, not where the setters of a request
// put them; everything else they take there.
void setUsers(IPPRequest& request, const std::string& option, const Names& users,
              const std::string& name) {
  if (users.empty()) {
    return;
  }
  // A queue for the user without a name would be closed to everybody.
  if (std::find(users.begin(), users.end(), "") != users.end()) {
    throw Failure(ExitStatus::usage, option + " names no user");
  }
  IPPValueList values;
  for (const std::string& user : users) {
    withOption(option, user, TextEncoding::utf8(),
               [&] { values.push_back(IPPValue::nameWithoutLanguage(user)); });
  }
  auto group = IPPAttributeGroup::printerGroup();
  group->addNamedValues({{name, IPPValue::array(values)}});
  request.addGroup(group);
}

void setTexts(IPPRequest& request, const QueueSettingsOptions& options) {
  if (options.info) {
    withOption("--info", *options.info, TextEncoding::utf8(),
               [&] { request.setPrinterInfo(*options.info); });
  }
  if (options.location) {
    withOption("--location", *options.location, TextEncoding::utf8(),
               [&] { request.setPrinterLocation(*options.location); });
  }
}

bool hasSettings(const QueueSettingsOptions& options) {
  return options.device || options.info || options.location || options.shared ||
         options.accepting || !options.allowed.empty() || !options.denied.empty();
}

IPPRequest::Pointer settingsRequest(const QueueSettingsOptions& options, const URL& queue) {
  auto request = IPPRequest::printerAddModifyQueueRequest(queue);
  if (options.device) {
    setDevice(*request, *options.device);
  }
  setTexts(*request, options);
  if (options.shared) {
    request->setPrinterIsShared(*options.shared);
  }
  if (options.accepting) {
    request->setPrinterIsAcceptingJobs(*options.accepting);
  }
  setUsers(*request, "--allow", options.allowed, "requesting-user-name-allowed");
  setUsers(*request, "--deny", options.denied, "requesting-user-name-denied");
  return request;
}

}  // namespace

void addQueue(const QueueSettingsOptions& options, std::ostream& out) {
  const URL queue = queueURI(options.queue, options);
  QueueSettingsOptions settings = options;
  settings.accepting = options.accepting.value_or(true);
  const auto request = settingsRequest(settings, queue);
  constexpr std::int32_t kIdle = 3;  // RFC 8011 §5.4.11; a new queue is stopped otherwise
  request->setPrinterState(kIdle);
  Session session(options);
  if (exists(session, queue)) {
    throw Failure(ExitStatus::failed, queueTitle(queue) + " exists already: see queue modify");
  }
  carryOut(request, queue, queueTitle(queue) + " added", session, options, out);
}

void modifyQueue(const QueueSettingsOptions& options, std::ostream& out) {
  const URL queue = queueURI(options.queue, options);
  const auto request = settingsRequest(options, queue);
  if (!hasSettings(options)) {
    throw Failure(ExitStatus::usage, "nothing to change: see platen queue modify --help");
  }
  Session session(options);
  if (!exists(session, queue)) {  // or it would be added
    throw Failure(ExitStatus::failed, queueTitle(queue) + " does not exist: see queue add");
  }
  carryOut(request, queue, queueTitle(queue) + " modified", session, options, out);
}

}  // namespace platen::tool
