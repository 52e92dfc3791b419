// SPDX-License-Identifier: Apache-2.0

/// Requests to an event subscription, and what a request that makes one says of it.

#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"
#include "requests/OperationTable.h"

namespace platen::inline v0 {

namespace {

/// The pull method of RFC 3996.
constexpr std::string_view kIPPGetMethod = "ippget";

}  // namespace

IPPRequest::Pointer IPPRequest::_subscriptionOperation(std::int32_t operationId,
                                                       std::int32_t subscriptionId,
                                                       const URL& target) {
  Pointer request = _requestWithIdPrinterURI(operationId, target);
  request->setSubscriptionId(subscriptionId);
  return request;
}

IPPRequest::Pointer IPPRequest::subscriptionAttributesRequest(std::int32_t subscriptionId,
                                                              const URL& target) {
  return _subscriptionOperation(kIPPGetSubscriptionAttributesOperationId, subscriptionId, target);
}

IPPRequest::Pointer IPPRequest::subscriptionReNewRequest(std::int32_t subscriptionId,
                                                         const URL& target) {
  return _subscriptionOperation(kIPPRenewSubscriptionOperationId, subscriptionId, target);
}

IPPRequest::Pointer IPPRequest::subscriptionCancelRequest(std::int32_t subscriptionId,
                                                          const URL& target) {
  return _subscriptionOperation(kIPPCancelSubscriptionOperationId, subscriptionId, target);
}

IPPRequest::Pointer IPPRequest::subscriptionGetNotificationsRequest(std::int32_t subscriptionId,
                                                                    const URL& target) {
  Pointer request = _requestWithIdPrinterURI(kIPPGetNotificationsOperationId, target);
  request->addOperationValue(IPPValue::array({IPPValue::integerWithInt(subscriptionId)}),
                             kIPPNotifySubscriptionIdsAttributeName);
  return request;
}

void IPPRequest::setSubscriptionId(std::int32_t subscriptionId) {
  addOperationValue(IPPValue::integerWithInt(subscriptionId),
                    kIPPNotifySubscriptionIdAttributeName);
}

std::optional<std::int32_t> IPPRequest::subscriptionId() const {
  return integerIn(attributeValueForKey(kIPPNotifySubscriptionIdAttributeName));
}

void IPPRequest::setNotifyEvents(std::span<const std::string> events) {
  if (!events.empty()) {
    addSubscriptionValue(IPPValue::arrayOfKeywords(events), kIPPNotifyEventsAttributeName);
  }
}

// A single value is not read, by design: the events of a request are the set that was set.
std::vector<std::string> IPPRequest::notifyEvents() const {
  const RawValue events = attributeValueForKey(kIPPNotifyEventsAttributeName);
  return events.isArray() ? stringsIn(events).value_or(std::vector<std::string>())
                          : std::vector<std::string>();
}

void IPPRequest::setIPPGetDeliverySchema() {
  addSubscriptionValue(IPPValue::keyword(kIPPGetMethod), kIPPNotifyPullMethodAttributeName);
}

void IPPRequest::setPushDeliverySchemaWithRecipient(const URL& recipient) {
  addSubscriptionValue(IPPValue::uri(recipient), kIPPNotifyRecipientUriAttributeName);
}

}  // namespace platen::inline v0
