// SPDX-License-Identifier: Apache-2.0

/// The lists of what a response tells of, and one of them by its name.

#include "model/PrinterType.h"
#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPResponse.h"

namespace platen::inline v0 {

namespace {

/// What `typed` makes of each object, without those of which it makes nothing.
template <class T>
std::vector<T> eachIn(const RawValue::Array& objects, std::optional<T> (*typed)(const RawValue&)) {
  std::vector<T> list;
  for (const RawValue& object : objects) {
    if (auto value = typed(object)) list.push_back(*std::move(value));
  }
  return list;
}

}  // namespace

std::vector<std::string> IPPResponse::availablePrintQueues() const {
  return eachIn(attributeValuesForKey(kIPPPrinterNameAttributeName), stringIn);
}

std::vector<std::string> IPPResponse::availableDevices() const {
  return eachIn(attributeValuesForKey(kIPPDeviceInfoAttributeName), stringIn);
}

RawValue::Array IPPResponse::availableJobs() const {
  RawValue::Array jobs;
  for (const RawValue& object : attributeValuesForKey(kIPPJobUUIDAttributeName)) {
    if (RawValue uuid = urlOrStringIn(object); !uuid.isAbsent()) jobs.push_back(std::move(uuid));
  }
  return jobs;
}

std::vector<std::int32_t> IPPResponse::availableSubscriptions() const {
  return eachIn(attributeValuesForKey(kIPPNotifySubscriptionIdAttributeName), integerIn);
}

std::vector<std::int32_t> IPPResponse::jobAvailableSubscriptions() const {
  return availableSubscriptions();
}

std::optional<IPPMessage::Attributes> IPPResponse::printQueueAttributes(
    const RawValue& queue) const {
  return _attributesForPrintQueue(queue);
}

std::optional<IPPMessage::Attributes> IPPResponse::deviceAttributes(const RawValue& device) const {
  return _attributesForPrintQueue(device);
}

std::optional<IPPMessage::Attributes> IPPResponse::jobAttributes(const RawValue& jobUUID) const {
  return _attributesForJobWithUUID(jobUUID);
}

std::optional<IPPMessage::Attributes> IPPResponse::subscriptionAttributes(
    std::int32_t subscriptionId) const {
  return _attributesForSubscriptionWithId(subscriptionId);
}

std::optional<IPPMessage::Attributes> IPPResponse::jobSubscriptionAttributes(
    std::int32_t subscriptionId) const {
  return subscriptionAttributes(subscriptionId);
}

std::optional<URL> IPPResponse::printQueueUri(std::string_view queue) const {
  const RawValue uri = _attributeValueForPrintQueue(queue, kIPPPrinterUriSupportedAttributeName);
  const auto urls = eachIn(uri.isArray() ? uri.asArray() : RawValue::Array{uri}, urlIn);
  return urls.empty() ? std::nullopt : std::optional(urls.front());
}

// A group without a name is passed over whichever list is asked for: nobody could address it.
std::vector<std::string> IPPResponse::_queuesMatchingPrinterTypeMask(std::uint32_t mask,
                                                                     bool excludingResults) const {
  std::vector<std::string> matching;
  std::vector<std::string> other;
  for (const Group& group : printerGroups()) {
    const auto type = printerTypeIn(group->attributeValueForKey(kIPPPrinterTypeAttributeName));
    if (auto name = stringIn(group->attributeValueForKey(kIPPPrinterNameAttributeName))) {
      ((type & mask) != 0 ? matching : other).push_back(*std::move(name));
    }
  }
  return excludingResults ? other : matching;
}

namespace {

// Either bit makes a queue a remote one here, although one of them does not in
// `isPrintQueueRemote`.
constexpr std::uint32_t kListedAsRemote = kPrinterTypeRemote | kPrinterTypeListedAsRemote;

}  // namespace

std::vector<std::string> IPPResponse::localPrintQueues() const {
  return _queuesMatchingPrinterTypeMask(kListedAsRemote, true);
}

std::vector<std::string> IPPResponse::remotePrintQueues() const {
  return _queuesMatchingPrinterTypeMask(kListedAsRemote, false);
}

std::vector<std::string> IPPResponse::colorPrintQueues() const {
  return _queuesMatchingPrinterTypeMask(kPrinterTypeColor, false);
}

std::vector<std::string> IPPResponse::grayscalePrintQueues() const {
  return _queuesMatchingPrinterTypeMask(kPrinterTypeGrayscale, false);
}

std::vector<std::string> IPPResponse::requiringAuthenticationPrintQueues() const {
  return _queuesMatchingPrinterTypeMask(kPrinterTypeAuthenticated, false);
}

std::optional<std::string> IPPResponse::defaultPrintQueue() const {
  const auto queues = _queuesMatchingPrinterTypeMask(kPrinterTypeDefault, false);
  return queues.empty() ? std::nullopt : std::optional(queues.front());
}

}  // namespace platen::inline v0
