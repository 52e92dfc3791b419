// SPDX-License-Identifier: Apache-2.0
#include "Subscriptions.h"

#include <algorithm>
#include <array>
#include <ostream>

#include "AnswerStatus.h"
#include "DisplayText.h"
#include "Facts.h"
#include "Failure.h"
#include "GroupList.h"
#include "MessageView.h"
#include "OptionText.h"
#include "Report.h"
#include "Session.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

/// A job by its number, for the factory that wants one.
struct NumberedJob {
  std::int32_t number;

  [[nodiscard]] std::int32_t jobId() const noexcept { return number; }
};

std::string leaseText(std::optional<std::int32_t> seconds) {
  return seconds ? *seconds == 0 ? "for ever" : std::to_string(*seconds) + " s" : "";
}

Json jsonOf(const Facts& subscription) {
  return Json::object({{"id", subscription.number("notify-subscription-id")},
                       {"events", subscription.texts("notify-events")},
                       {"job_id", subscription.number("notify-job-id")},
                       {"printer_uri", subscription.text("notify-printer-uri")},
                       {"user", subscription.text("notify-subscriber-user-name")},
                       {"pull_method", subscription.text("notify-pull-method")},
                       {"recipient_uri", subscription.text("notify-recipient-uri")},
                       {"lease_seconds", subscription.number("notify-lease-duration")},
                       {"interval_seconds", subscription.number("notify-time-interval")}});
}

Table::Row rowOf(const Facts& subscription) {
  const auto pull = subscription.text("notify-pull-method");
  return {subscription.numberText("notify-subscription-id"),
          queueName(subscription.textOrEmpty("notify-printer-uri")),
          subscription.numberText("notify-job-id"),
          subscription.textOrEmpty("notify-subscriber-user-name"),
          leaseText(subscription.number("notify-lease-duration")),
          subscription.text("notify-recipient-uri").value_or(pull.value_or("")),
          joined(subscription.texts("notify-events"), ",")};
}

const ListForm kList{"subscriptions",
                     {"Subscription", "Queue", "Job", "User", "Lease", "Delivery", "Events"},
                     &jsonOf,
                     &rowOf};

// That there are none is client-error-not-found, and so is that there is no such queue.
IPPMessage::Groups subscriptionsOf(Session& session, const URL& target, bool isQueue) {
  auto request = IPPRequest::printerAvailableSubscriptionsRequest(target);
  if (const auto answer = session.askForAny(request, target)) {
    return answer->subscriptionGroups();
  }
  if (isQueue) {
    const std::array<std::string, 1> name{"printer-name"};
    auto question = IPPRequest::printerAttributesRequest(target);
    question->setRequestedAttributes(name);
    session.ask(question, target);
  }
  return {};
}

// RFC 8011 §5.1.4.
void requireKeywords(const std::vector<std::string>& events) {
  for (const std::string& event : events) {
    withOption("--events", event, TextEncoding::ascii(), [&] { IPPValue::keyword(event); });
  }
  if (events.empty() || std::find(events.begin(), events.end(), "") != events.end()) {
    throw Failure(ExitStatus::usage, "no event is named: see --events");
  }
}

IPPRequest::Pointer requestForEvents(const SubscribeOptions& options, const URL& target) {
  return options.job ? IPPRequest::jobCreateSubscriptionRequest(NumberedJob{*options.job}, target,
                                                                options.events)
                     : IPPRequest::printerCreateSubscriptionRequest(target, options.events);
}

void setDelivery(IPPRequest& request, const SubscribeOptions& options) {
  if (!options.recipient) {
    return request.setIPPGetDeliverySchema();
  }
  const auto recipient = URL::parse(*options.recipient);
  if (!recipient || !recipient->scheme()) {
    throw Failure(ExitStatus::usage, "\"" + *options.recipient + "\" is not a URI");
  }
  withOption("--recipient", *options.recipient, TextEncoding::ascii(),
             [&] { request.setPushDeliverySchemaWithRecipient(*recipient); });
}

}  // namespace

void setLease(IPPRequest& request, std::int32_t seconds) {
  request.addSubscriptionValue(IPPValue::integer(seconds), "notify-lease-duration");
}

IPPRequest::Pointer subscriptionRequest(const SubscribeOptions& options, const URL& target) {
  requireKeywords(options.events);
  auto request = requestForEvents(options, target);
  setDelivery(*request, options);
  if (options.lease) {
    setLease(*request, *options.lease);
  }
  return request;
}

std::int32_t subscriptionIdIn(const IPPResponse& answer, const URL& target) {
  const auto id = answer.subscriptionId();
  if (!id) {
    throw Failure(ExitStatus::failed,
                  std::string(target.absoluteString()) +
                      " gave the subscription no number: " + answerStatus(answer));
  }
  return *id;
}

void listSubscriptions(const SubscriptionsOptions& options, std::ostream& out) {
  const URL target = queueOrServerURI(options.queue, options);
  Session session(options);
  showList(subscriptionsOf(session, target, options.queue.has_value()), kList, options, out);
}

void subscribe(const SubscribeOptions& options, std::ostream& out) {
  const URL target = queueOrServerURI(options.queue, options);
  const auto request = subscriptionRequest(options, target);
  Session session(options);
  const auto answer = session.ask(request, target);
  const auto id = subscriptionIdIn(*answer, target);
  const auto lease = answer->notifyLeaseDuration();
  if (options.json) {
    return writeJson(out, Json::object({{"id", id},
                                        {"lease_seconds", lease},
                                        {"status", statusText(answer->statusCode())},
                                        {"unsupported", unsupportedNames(*answer)}}));
  }
  out << "subscription " << id << (lease ? ", lease " + leaseText(lease) : "")
      << harmless(reservations(*answer)) << '\n';
}

void renewSubscription(const SubscriptionOptions& options, std::ostream& out) {
  const URL target = queueOrServerURI(options.queue, options);
  const auto request = IPPRequest::subscriptionReNewRequest(options.id.value(), target);
  if (options.lease) {
    setLease(*request, *options.lease);
  }
  Session session(options);
  carryOut(request, target, "subscription " + std::to_string(options.id.value()) + " renewed",
           session, options, out);
}

void cancelSubscription(const SubscriptionOptions& options, std::ostream& out) {
  const URL target = queueOrServerURI(options.queue, options);
  Session session(options);
  carryOut(IPPRequest::subscriptionCancelRequest(options.id.value(), target), target,
           "subscription " + std::to_string(options.id.value()) + " canceled", session, options,
           out);
}

}  // namespace platen::tool
