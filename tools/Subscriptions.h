// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Subscriptions to what happens on a print server (RFC 3995).

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Server.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/URL.h"

namespace platen::tool {

struct SubscriptionsOptions : ServerOptions {
  /// The name or the URI of a queue; nothing for the server.
  std::optional<std::string> queue;
};

struct SubscribeOptions : SubscriptionsOptions {
  std::vector<std::string> events;
  /// Only events of this job.
  std::optional<std::int32_t> job;
  /// How long it shall last, in seconds; 0 for ever, nothing for what the server thinks.
  std::optional<std::int32_t> lease;
  /// Where the server shall send events; nothing to have them fetched.
  std::optional<std::string> recipient;
};

struct SubscriptionOptions : SubscriptionsOptions {
  /// Always there.
  std::optional<std::int32_t> id;
  /// For `renewSubscription`, as above.
  std::optional<std::int32_t> lease;
};

/// The request for a subscription as the options want it. Raises a `Failure` of wrong usage when
/// an event is none, or when the options do not go together.
IPPRequest::Pointer subscriptionRequest(const SubscribeOptions& options, const URL& target);

/// The number of the subscription that was made. Raises a `Failure` that tells what the answer says
/// of it when there is none.
std::int32_t subscriptionIdIn(const IPPResponse& answer, const URL& target);

/// The subscription group of a renewal, "notify-lease-duration" (RFC 3995 §5.3.8).
void setLease(IPPRequest& request, std::int32_t seconds);

/// Lists subscriptions.
void listSubscriptions(const SubscriptionsOptions& options, std::ostream& out);
/// Makes a subscription, and tells its number.
void subscribe(const SubscribeOptions& options, std::ostream& out);
void renewSubscription(const SubscriptionOptions& options, std::ostream& out);
void cancelSubscription(const SubscriptionOptions& options, std::ostream& out);

}  // namespace platen::tool
