// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPResponse.h"
#include "tests/support/ResponseOctets.h"

namespace platen {
namespace {

using test::responseWith;
using Events = std::vector<std::string>;
using Ids = std::vector<std::int32_t>;

TEST(SubscriptionAccessors, TellOfASubscriptionAsAServerAnswers) {
  const auto response = responseWith(
      "01 47 <'attributes-charset'> <'utf-8'> 21 <'notify-get-interval'> <0000 003c>"
      "06 21 <'notify-subscription-id'> <0000 0005> 21 <'notify-job-id'> <0000 0011>"
      "   45 <'notify-printer-uri'> <'ipp://localhost/printers/q'>"
      "   45 <'notify-recipient-uri'> <'mailto:anna@host'>"
      "   42 <'notify-subscriber-user-name'> <'anna'>"
      "   21 <'notify-lease-duration'> <0001 5180> 21 <'notify-time-interval'> <0000 000a>"
      "   44 <'notify-events'> <'job-completed'> 44 <> <'job-stopped'>");
  EXPECT_EQ(response->subscriptionId(), 5);
  EXPECT_EQ(response->notifySubscriptionId(), 5);
  EXPECT_EQ(response->jobSubscriptionId(), 5);
  EXPECT_EQ(response->notifyJobId(), 17);
  EXPECT_EQ(response->notifyPrinterURI(), URL::parse("ipp://localhost/printers/q"));
  EXPECT_EQ(response->notifyRecipientURI(), URL::parse("mailto:anna@host"));
  EXPECT_EQ(response->notifySubscriberName(), "anna");
  EXPECT_EQ(response->notifyLeaseDuration(), 86400);
  EXPECT_EQ(response->notifyTimeInterval(), 10.0);
  EXPECT_EQ(response->notifyGetInternal(), 60.0);
  EXPECT_EQ(response->notifyEvents(), (Events{"job-completed", "job-stopped"}));
}

TEST(SubscriptionAccessors, TellASingleEventToo) {
  EXPECT_EQ(responseWith("06 44 <'notify-events'> <'job-completed'>")->notifyEvents(),
            Events{"job-completed"});
}

TEST(SubscriptionAccessors, TellIntervalsOf32BitsExactly) {
  const auto response = responseWith(
      "07 21 <'notify-time-interval'> <7fff ffff> 21 <'notify-get-interval'> <8000 0000>");
  EXPECT_EQ(response->notifyTimeInterval(), 2147483647.0);
  EXPECT_EQ(response->notifyGetInternal(), -2147483648.0);
}

TEST(SubscriptionLists, HaveEveryIdThatIsANumber) {
  const auto response = responseWith(
      "06 21 <'notify-subscription-id'> <0000 0005>"
      "06 44 <'notify-subscription-id'> <'six'>"
      "06 21 <'notify-subscription-id'> <0000 0007> 21 <> <0000 0008>"
      "07 21 <'notify-subscription-id'> <0000 0005>");
  EXPECT_EQ(response->availableSubscriptions(), (Ids{5, 5}));
  EXPECT_EQ(response->jobAvailableSubscriptions(), (Ids{5, 5}));
  EXPECT_EQ(responseWith("06")->availableSubscriptions(), Ids());
}

TEST(SubscriptionLists, GiveTheAttributesOfOneSubscription) {
  const auto response = responseWith(
      "04 21 <'notify-subscription-id'> <0000 0006>"
      "06 21 <'notify-subscription-id'> <0000 0005> 21 <'notify-lease-duration'> <0000 0064>"
      "06 21 <'notify-subscription-id'> <0000 0006> 21 <'notify-job-id'> <0000 0011>"
      "06 21 <'notify-subscription-id'> <0000 0064>");
  const auto groups = response->subscriptionGroups();
  EXPECT_EQ(response->subscriptionAttributes(5), groups[0]->attributes());
  EXPECT_EQ(response->subscriptionAttributes(6), groups[1]->attributes());
  EXPECT_EQ(response->jobSubscriptionAttributes(6), groups[1]->attributes());
  EXPECT_EQ(response->subscriptionAttributes(17), groups[1]->attributes())
      << "any attribute's value";
  EXPECT_EQ(response->subscriptionAttributes(100), groups[0]->attributes()) << "the first group";
  EXPECT_EQ(response->subscriptionAttributes(7), std::nullopt);
  EXPECT_EQ(response->jobSubscriptionAttributes(7), std::nullopt);
}

TEST(SubscriptionLists, LeaveTheAttributesOfTheFirstGroupWithinReach) {
  const auto response = responseWith("06 21 <'notify-subscription-id'> <0000 0005>");
  EXPECT_EQ(response->subscriptionAttributes(), response->subscriptionAttributes(5));
}

}  // namespace
}  // namespace platen
