// SPDX-License-Identifier: Apache-2.0

/// Subscriptions to the events of a print server, and the events.

#include <gmock/gmock.h>

#include <algorithm>

#include "tests/support/PrintStory.h"

namespace platen {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

using Numbers = std::vector<std::int32_t>;

class SubscriptionStory : public test::PrintStory {
 protected:
  static IPPRequest::Pointer pulled(IPPRequest::Pointer request) {
    request->setIPPGetDeliverySchema();
    return request;
  }
  /// Subscribes to the events and returns the number of the subscription.
  std::int32_t subscribed(const URL& queue, const Names& events) const {
    const auto answer =
        cups().does(pulled(IPPRequest::printerCreateSubscriptionRequest(queue, events)));
    return answer->subscriptionId().value();
  }
  [[nodiscard]] IPPResponse::Pointer lookAtSubscription(std::int32_t id, const URL& target) const {
    return cups().does(IPPRequest::subscriptionAttributesRequest(id, target));
  }
  [[nodiscard]] IPPResponse::Pointer eventsOf(std::int32_t id, const URL& target) const {
    return cups().does(IPPRequest::subscriptionGetNotificationsRequest(id, target));
  }
  /// The subscribed events that an answer brings, in order.
  static Names eventNames(const IPPResponse& answer) {
    Names names;
    for (const auto& group : answer.notificationEventsGroups()) {
      names.push_back(group->attributeValueForKey("notify-subscribed-event").asString());
    }
    return names;
  }
  static std::vector<std::int64_t> sequenceNumbers(const IPPResponse& answer) {
    std::vector<std::int64_t> numbers;
    for (const auto& group : answer.notificationEventsGroups()) {
      numbers.push_back(
          group->attributeValueForKey("notify-sequence-number").asNumber().int64Value());
    }
    return numbers;
  }
};

TEST_F(SubscriptionStory, AQueueIsSubscribedToAndTheSubscriptionIsRenewedAndCanceled) {
  const URL office = addedQueue("office");
  cups().answers(IPPRequest::printerAvailableSubscriptionsRequest(office),
                 kIPPStatusClientErrorNotFound, "no subscriptions");
  const Names events{"job-created", "job-completed"};
  const auto request = pulled(IPPRequest::printerCreateSubscriptionRequest(office, events));
  request->addSubscriptionValue(IPPValue::integerWithInt(600), "notify-lease-duration");
  request->addSubscriptionValue(IPPValue::integerWithInt(5), "notify-time-interval");
  const auto answer = cups().does(request);
  ASSERT_TRUE(answer->subscriptionId().has_value());
  const auto id = *answer->subscriptionId();

  const auto seen = lookAtSubscription(id, office);
  EXPECT_EQ(seen->notifySubscriptionId(), id);
  EXPECT_EQ(seen->jobSubscriptionId(), id);
  EXPECT_EQ(seen->notifyPrinterURI(), office);
  EXPECT_THAT(seen->notifyEvents().value_or(Names{}),
              UnorderedElementsAre("job-created", "job-completed"));
  EXPECT_EQ(seen->notifyLeaseDuration(), 600);
  EXPECT_EQ(seen->notifyTimeInterval(), 5);
  EXPECT_EQ(seen->notifySubscriberName(),
            request->attributeValueForKey("requesting-user-name").asString());
  EXPECT_FALSE(seen->notifyJobId().has_value());
  EXPECT_FALSE(seen->notifyRecipientURI().has_value());

  const auto renewing = IPPRequest::subscriptionReNewRequest(id, office);
  renewing->addSubscriptionValue(IPPValue::integerWithInt(1200), "notify-lease-duration");
  EXPECT_EQ(cups().does(renewing)->notifyLeaseDuration(), 1200);
  EXPECT_EQ(lookAtSubscription(id, office)->notifyLeaseDuration(), 1200);

  cups().does(IPPRequest::subscriptionCancelRequest(id, office));
  cups().answers(IPPRequest::subscriptionAttributesRequest(id, office),
                 kIPPStatusClientErrorNotFound, "no such subscription");
}

TEST_F(SubscriptionStory, TheSubscriptionsOfAQueueAreListed) {
  const URL office = addedQueue("office");
  const auto first = subscribed(office, {"job-created"});
  const auto second = subscribed(office, {"job-completed", "printer-state-changed"});
  const auto elsewhere = subscribed(addedQueue("cellar"), {"job-created"});
  const auto list = cups().does(IPPRequest::printerAvailableSubscriptionsRequest(office));
  EXPECT_THAT(list->availableSubscriptions(), ElementsAre(first, second));
  EXPECT_TRUE(list->subscriptionAttributes(second).has_value());
  EXPECT_FALSE(list->subscriptionAttributes(elsewhere).has_value());
  EXPECT_EQ(list->notifyEvents(), Names{"job-created"}) << "one event alone";
}

TEST_F(SubscriptionStory, EventsArePolledWhileJobsRun) {
  const URL slow = addedQueue("slow", "testdev:/1");
  const auto id = subscribed(
      slow, {"job-created", "job-state-changed", "job-completed", "printer-state-changed"});
  const auto nothing = eventsOf(id, slow);
  EXPECT_THAT(nothing->notificationEventsGroups(), testing::IsEmpty());
  EXPECT_EQ(nothing->notifyGetInternal(), 60);

  const auto job = printedOn(slow);
  IPPResponse::Pointer events;
  ASSERT_TRUE(becomesTrue([&] {
    events = eventsOf(id, slow);
    const auto names = eventNames(*events);
    return std::count(names.begin(), names.end(), "job-completed") > 0;
  }));
  EXPECT_THAT(eventNames(*events),
              IsSupersetOf({"job-created", "printer-state-changed", "job-completed"}));
  EXPECT_EQ(eventNames(*events).front(), "job-created");
  const auto numbers = sequenceNumbers(*events);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    EXPECT_EQ(numbers[i], static_cast<std::int64_t>(i) + 1);
  }
  EXPECT_EQ(events->subscriptionId(), id);
  EXPECT_EQ(events->notifyJobId(), job->jobId());

  const auto later = IPPRequest::subscriptionGetNotificationsRequest(id, slow);
  later->addOperationValue(IPPValue::integerWithInt(2), "notify-sequence-numbers");
  EXPECT_EQ(sequenceNumbers(*cups().does(later)).front(), 2) << "those that are known are left out";
}

TEST_F(SubscriptionStory, AJobIsSubscribedToUntilItEnds) {
  const URL office = addedQueue("office");
  const auto job = heldOn(office);
  const auto request = pulled(IPPRequest::jobCreateSubscriptionRequest(
      *job, office, Names{"job-state-changed", "job-completed"}));
  const auto id = cups().does(request)->subscriptionId().value();

  const auto seen = lookAtSubscription(id, office);
  EXPECT_EQ(seen->notifyJobId(), job->jobId());
  EXPECT_FALSE(seen->notifyLeaseDuration().has_value()) << "it ends with the job";
  cups().answers(IPPRequest::subscriptionReNewRequest(id, office), kIPPStatusClientErrorNotPossible,
                 "the subscription of a job has no lease");

  cups().does(IPPRequest::jobCancelRequest(job->jobURI().value()));
  cups().answers(IPPRequest::subscriptionGetNotificationsRequest(id, office),
                 kIPPStatusClientErrorNotFound, "the subscription has ended");
}

TEST_F(SubscriptionStory, TheSubscriptionsOfAJobAreListedAndCanceled) {
  const URL office = addedQueue("office");
  const auto job = heldOn(office);
  const auto request =
      pulled(IPPRequest::jobCreateSubscriptionRequest(*job, office, Names{"job-completed"}));
  const auto id = cups().does(request)->subscriptionId().value();
  subscribed(office, {"job-completed"});
  const auto list =
      cups().does(IPPRequest::jobAvailableSubscriptionsRequest(job->jobURI().value()));
  EXPECT_EQ(list->jobAvailableSubscriptions(), Numbers{id});
  EXPECT_TRUE(list->jobSubscriptionAttributes(id).has_value());
  EXPECT_FALSE(list->jobSubscriptionAttributes(id + 1).has_value());

  cups().does(IPPRequest::subscriptionCancelRequest(id, office));
  cups().answers(IPPRequest::subscriptionCancelRequest(id, office), kIPPStatusClientErrorNotFound,
                 "no such subscription");
}

TEST_F(SubscriptionStory, TheServerItselfIsSubscribedTo) {
  const URL server = IPPURI::localServerURI().value();
  cups().answers(IPPRequest::serverAvailableSubcsriptionsRequest(), kIPPStatusClientErrorNotFound,
                 "no subscriptions");
  const Names events{"printer-added", "printer-deleted"};
  const auto id = cups()
                      .does(pulled(IPPRequest::serverCreateSubscriptionRequest(events)))
                      ->subscriptionId()
                      .value();
  const auto list = cups().does(IPPRequest::serverAvailableSubcsriptionsRequest());
  EXPECT_EQ(list->availableSubscriptions(), Numbers{id});

  const URL office = addedQueue("office");
  cups().does(IPPRequest::printerRemoveQueueRequest(office));
  EXPECT_THAT(eventNames(*eventsOf(id, server)), ElementsAre("printer-added", "printer-deleted"));
  cups().does(IPPRequest::subscriptionReNewRequest(id, server));
  EXPECT_EQ(lookAtSubscription(id, server)->notifyLeaseDuration(), 86400);
  cups().does(IPPRequest::subscriptionCancelRequest(id, server));
  cups().answers(IPPRequest::subscriptionGetNotificationsRequest(id, server),
                 kIPPStatusClientErrorNotFound, "no such subscription");
}

TEST_F(SubscriptionStory, EventsArePushedToARecipient) {
  const URL office = addedQueue("office");
  const auto request = IPPRequest::printerCreateSubscriptionRequest(office, Names{"job-created"});
  request->setPushDeliverySchemaWithRecipient(url("rss:///office.rss"));
  const auto id = cups().does(request)->subscriptionId().value();
  EXPECT_EQ(lookAtSubscription(id, office)->notifyRecipientURI(), url("rss:///office.rss"));

  const auto unknown = IPPRequest::printerCreateSubscriptionRequest(office, Names{"job-created"});
  unknown->setPushDeliverySchemaWithRecipient(url("pigeon://roof"));
  cups().answers(unknown, kIPPStatusClientErrorNotPossible, "no such way of delivery");
}

TEST_F(SubscriptionStory, ASubscriptionNeedsNoEventsButAWayOfDelivery) {
  const URL office = addedQueue("office");
  // Without events the queue's default applies.
  EXPECT_EQ(lookAtSubscription(subscribed(office, {}), office)->notifyEvents(),
            Names{"job-completed"});
  cups().answers(IPPRequest::printerCreateSubscriptionRequest(office, Names{"job-created"}),
                 kIPPStatusClientErrorBadRequest, "no way of delivery");
  cups().answers(IPPRequest::printerCreateSubscriptionRequest(office, Names{}),
                 kIPPStatusClientErrorBadRequest, "no subscription group");
}

TEST_F(SubscriptionStory, ASubscriptionExpires) {
  const URL office = addedQueue("office");
  const auto request =
      pulled(IPPRequest::printerCreateSubscriptionRequest(office, Names{"job-created"}));
  request->addSubscriptionValue(IPPValue::integerWithInt(1), "notify-lease-duration");
  const auto id = cups().does(request)->subscriptionId().value();
  const auto looking = IPPRequest::subscriptionAttributesRequest(id, office);
  ASSERT_TRUE(becomesTrue([&] { return looking->performOn(office)->clientError(); }));
  cups().answers(IPPRequest::subscriptionGetNotificationsRequest(id, office),
                 kIPPStatusClientErrorNotFound, "the subscription has ended");
  cups().answers(IPPRequest::subscriptionReNewRequest(id, office), kIPPStatusClientErrorNotFound,
                 "the subscription has ended");
}

}  // namespace
}  // namespace platen
