// SPDX-License-Identifier: Apache-2.0

/// What a response says of an event subscription.

#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPResponse.h"

namespace platen::inline v0 {

std::optional<std::int32_t> IPPResponse::subscriptionId() const {
  return integerIn(attributeValueForKey(kIPPNotifySubscriptionIdAttributeName));
}

std::optional<std::int32_t> IPPResponse::notifySubscriptionId() const { return subscriptionId(); }

std::optional<std::int32_t> IPPResponse::jobSubscriptionId() const { return subscriptionId(); }

std::optional<std::int32_t> IPPResponse::notifyJobId() const {
  return integerIn(attributeValueForKey(kIPPSubscriptionJobIdNotificationAttributeName));
}

std::optional<URL> IPPResponse::notifyPrinterURI() const {
  return urlIn(attributeValueForKey(kIPPNotifyPrinterUriAttributeName));
}

std::optional<URL> IPPResponse::notifyRecipientURI() const {
  return urlIn(attributeValueForKey(kIPPNotifyRecipientUriAttributeName));
}

std::optional<std::string> IPPResponse::notifySubscriberName() const {
  return stringIn(attributeValueForKey(kIPPNotifySubscriberUserNameAttributeName));
}

std::optional<std::int32_t> IPPResponse::notifyLeaseDuration() const {
  return integerIn(attributeValueForKey(kIPPNotifyLeaseDurationAttributeName));
}

std::optional<std::vector<std::string>> IPPResponse::notifyEvents() const {
  return stringsIn(attributeValueForKey(kIPPNotifyEventsAttributeName));
}

double IPPResponse::notifyTimeInterval() const {
  return integerIn(attributeValueForKey(kIPPNotifyTimeIntervalAttributeName)).value_or(0);
}

double IPPResponse::notifyGetInternal() const {
  return integerIn(attributeValueForKey(kIPPNotifyGetIntervalAttributeName)).value_or(0);
}

}  // namespace platen::inline v0
