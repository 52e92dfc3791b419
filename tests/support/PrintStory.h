// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platen/IPPConstants.h"
#include "platen/IPPURI.h"
#include "tests/support/AskedServer.h"
#include "tests/support/RealServers.h"

namespace platen::test {

// "job-state", RFC 8011 §5.3.7.
constexpr std::int32_t kJobPending = 3;
constexpr std::int32_t kJobHeld = 4;
constexpr std::int32_t kJobProcessing = 5;
constexpr std::int32_t kJobCanceled = 7;
constexpr std::int32_t kJobCompleted = 9;

// "printer-state", RFC 8011 §5.4.11.
constexpr std::int32_t kPrinterIdle = 3;
constexpr std::int32_t kPrinterStopped = 5;

/// A device that swallows everything at once.
constexpr const char* kNoDevice = "file:///dev/null";

/// A story: it takes two print servers, which are as good as fresh ones, through a sequence of
/// operations, each of which goes into the `OperationLog`.
class PrintStory : public RealServers {
 protected:
  using Names = std::vector<std::string>;

  void SetUp() override {
    RealServers::SetUp();
    if (!IsSkipped()) removeEverything();
  }

  /// The print server.
  [[nodiscard]] static AskedServer cups() { return {"cupsd", url(servers().cupsURI())}; }
  /// The printer that is a server itself.
  [[nodiscard]] static AskedServer printer() {
    return {"ippeveprinter", url(servers().ippeveURI())};
  }

  /// What adds or changes a queue so that it prints.
  [[nodiscard]] static IPPRequest::Pointer addingRequest(const URL& queue,
                                                         const std::string& device = kNoDevice) {
    auto request = IPPRequest::printerAddModifyQueueRequest(queue);
    request->setDeviceURI(url(device));
    request->setPrinterState(kPrinterIdle);
    request->setPrinterIsAcceptingJobs(true);
    return request;
  }
  /// Adds a queue and returns its URI.
  [[nodiscard]] static URL addedQueue(const std::string& name,
                                      const std::string& device = kNoDevice) {
    cups().does(addingRequest(queue(name), device));
    return queue(name);
  }

  /// Any operation on a queue.
  static IPPRequest::Pointer onPrinter(std::int32_t operation, const URL& target) {
    auto request = IPPRequest::requestWithId(operation);
    request->setPrinterURI(target);
    request->addRequestingUserNameAttribute();
    return request;
  }
  /// Any operation on a job.
  static IPPRequest::Pointer onJob(std::int32_t operation, const URL& job) {
    auto request = IPPRequest::requestWithId(operation);
    request->setJobURI(job);
    request->addRequestingUserNameAttribute();
    return request;
  }
  static void addJobValue(IPPRequest& request, IPPValue::Pointer value, std::string_view name) {
    request.addJobAttribute(IPPAttribute::attributeWithValue(std::move(value), name));
  }

  /// Prints a small document and returns the answer.
  [[nodiscard]] static IPPResponse::Pointer printedOn(const URL& queue) {
    return cups().does(IPPRequest::jobPrintRequest(queue), AskedServer::document(smallPDF()));
  }
  /// Prints a job that waits to be released.
  [[nodiscard]] static IPPResponse::Pointer heldOn(const URL& queue) {
    const auto request = IPPRequest::jobPrintRequest(queue);
    addJobValue(*request, IPPValue::keyword("indefinite"), "job-hold-until");
    return cups().does(request, AskedServer::document(smallPDF()));
  }
  /// What the server says of a job now.
  [[nodiscard]] static IPPResponse::Pointer lookAt(const URL& job) {
    return cups().does(IPPRequest::jobAttributesRequest(job));
  }
  /// Whether the job comes to that state.
  [[nodiscard]] static bool reaches(const URL& job, std::int32_t state) {
    return becomesTrue([&] { return lookAt(job)->jobState() == state; });
  }

 private:
  /// What an earlier story has left at the print server: queues with their jobs, subscriptions.
  static void removeEverything() {
    const auto queues = answerTo(IPPRequest::serverAvailablePrintersRequest());
    for (const auto& uri : queues->attributeValuesForKey(kIPPPrinterUriSupportedAttributeName)) {
      answerTo(IPPRequest::printerPurgeJobsRequest(uri.asURL()));
      answerTo(IPPRequest::printerRemoveQueueRequest(uri.asURL()));
    }
    const URL root = url(servers().cupsURI());
    const auto list = answerTo(IPPRequest::printerAvailableSubscriptionsRequest(root));
    for (const auto id : list->availableSubscriptions()) {
      answerTo(IPPRequest::subscriptionCancelRequest(id, root));
    }
  }
  /// Whatever the print server answers, which does not go into the log.
  static IPPResponse::Pointer answerTo(const IPPRequest::Pointer& request) {
    auto response = request->performOn(url(servers().cupsURI()));
    if (response == nullptr) throw std::runtime_error("the print server does not answer");
    return response;
  }
};

}  // namespace platen::test
