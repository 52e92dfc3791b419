// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "tests/support/RequestText.h"
#include "tests/support/ResponseOctets.h"

namespace platen {
namespace {

using test::encodedText;
using test::received;
using test::url;
using Events = std::vector<std::string>;

const auto* const kQueue = "ipp://host/printers/q";

class SubscriptionRequests : public test::RequestTextTest {};

TEST_F(SubscriptionRequests, NameTheSubscriptionBehindTargetAndUser) {
  struct Case {
    IPPRequest::Pointer (*make)(std::int32_t, const URL&);
    const char* code;
    const char* attribute;
    const char* name;
  };
  const Case cases[] = {
      {IPPRequest::subscriptionAttributesRequest, "0x0018", "notify-subscription-id",
       "Get-Subscription-Attributes"},
      {IPPRequest::subscriptionReNewRequest, "0x001a", "notify-subscription-id",
       "Renew-Subscription"},
      {IPPRequest::subscriptionCancelRequest, "0x001b", "notify-subscription-id",
       "Cancel-Subscription"},
      {IPPRequest::subscriptionGetNotificationsRequest, "0x001c", "notify-subscription-ids",
       "Get-Notifications"},
  };
  for (const auto& [make, code, attribute, name] : cases) {
    const auto request = make(42, url("ipp://localhost/"));
    EXPECT_EQ(encodedText(*request),
              requestText(code, targetAndUser("printer-uri", "ipp://localhost/") + "01\t\"" +
                                    attribute + "\"\t21:42\n"));
    EXPECT_EQ(request->ippOperationCodename(), name);
  }
}

TEST_F(SubscriptionRequests, PollASetOfOneSubscription) {
  const auto request = IPPRequest::subscriptionGetNotificationsRequest(7, url(kQueue));
  EXPECT_EQ(request->attributeValueForKey("notify-subscription-ids"), RawValue::Array{7});
  EXPECT_EQ(request->subscriptionId(), std::nullopt);
}

TEST_F(SubscriptionRequests, CarryEveryNumberOf32Bits) {
  for (const std::int32_t number : {0, -1, std::numeric_limits<std::int32_t>::max(),
                                    std::numeric_limits<std::int32_t>::min()}) {
    const auto request = IPPRequest::subscriptionCancelRequest(number, url(kQueue));
    EXPECT_EQ(request->subscriptionId(), number);
    EXPECT_EQ(received(*request)->subscriptionId(), number);
  }
}

TEST_F(SubscriptionRequests, TellTheFirstNumberThatIsOne) {
  const auto request = IPPRequest::requestWithId(0x0018);
  EXPECT_EQ(request->subscriptionId(), std::nullopt);
  request->setSubscriptionId(1);
  request->setSubscriptionId(2);
  EXPECT_EQ(request->subscriptionId(), 1);
  EXPECT_EQ(request->attributesForKey("notify-subscription-id").size(), 2U);
  const auto other = IPPRequest::requestWithId(0x0018);
  other->addOperationValue(IPPValue::keyword("7"), "notify-subscription-id");
  EXPECT_EQ(other->subscriptionId(), std::nullopt);
}

// --- What a request that makes a subscription says -----------------------------------------------

TEST(NotifyEvents, AreASetInTheSubscriptionGroup) {
  const auto request = IPPRequest::requestWithId(0x0016);
  EXPECT_EQ(request->notifyEvents(), Events());
  request->setNotifyEvents(Events{"job-created", "job-completed"});
  EXPECT_EQ(request->subscriptionGroup()->attributes().size(), 1U);
  EXPECT_EQ(request->notifyEvents(), (Events{"job-created", "job-completed"}));
  EXPECT_EQ(received(*request)->notifyEvents(), (Events{"job-created", "job-completed"}));
}

TEST(NotifyEvents, MakeNoGroupWhenThereAreNone) {
  const auto request = IPPRequest::requestWithId(0x0016);
  request->setNotifyEvents({});
  EXPECT_EQ(request->subscriptionGroup(), nullptr);
  EXPECT_EQ(request->notifyEvents(), Events());
}

TEST(NotifyEvents, AreASetOfOneUntilTheyHaveTravelled) {
  const auto request = IPPRequest::requestWithId(0x0016);
  request->setNotifyEvents(Events{"job-completed"});
  EXPECT_EQ(request->notifyEvents(), Events{"job-completed"});
  EXPECT_EQ(received(*request)->attributeValueForKey("notify-events"), "job-completed");
  EXPECT_EQ(received(*request)->notifyEvents(), Events()) << "a single value is not a set";
}

TEST(NotifyEvents, AreTheFirstSetAndOfItOnlyWhatIsAnEvent) {
  const auto request = IPPRequest::requestWithId(0x0016);
  request->addSubscriptionValue(
      IPPValue::array({IPPValue::integerWithInt(1), IPPValue::keyword("job-stopped")}),
      "notify-events");
  request->setNotifyEvents(Events{"job-created"});
  EXPECT_EQ(request->attributesForKey("notify-events").size(), 2U);
  EXPECT_EQ(request->notifyEvents(), Events{"job-stopped"});
  const auto numbers = IPPRequest::requestWithId(0x0016);
  numbers->addSubscriptionValue(IPPValue::array({IPPValue::integerWithInt(1)}), "notify-events");
  EXPECT_EQ(numbers->notifyEvents(), Events());
}

TEST(NotifyEvents, RaiseForAnEventThatIsNoKeyword) {
  const auto request = IPPRequest::requestWithId(0x0016);
  EXPECT_THROW(request->setNotifyEvents(Events{"job-created", std::string(256, 'x')}),
               RangeException);
}

TEST(Delivery, IsToldInTheOrderOfTheCallsAndNeitherWayTakesTheOthersPlace) {
  const std::string pull = "06\t\"notify-pull-method\"\t44:\"ippget\"\n";
  const std::string push = "06\t\"notify-recipient-uri\"\t45:\"mailto:me@host\"\n";
  const auto pullFirst = IPPRequest::requestWithId(0x0016);
  pullFirst->setIPPGetDeliverySchema();
  pullFirst->setPushDeliverySchemaWithRecipient(url("mailto:me@host"));
  EXPECT_EQ(test::groupText(*received(*pullFirst)->subscriptionGroup()),
            "group 06\n" + pull + push);
  const auto pushFirst = IPPRequest::requestWithId(0x0016);
  pushFirst->setPushDeliverySchemaWithRecipient(url("mailto:me@host"));
  pushFirst->setIPPGetDeliverySchema();
  EXPECT_EQ(test::groupText(*received(*pushFirst)->subscriptionGroup()),
            "group 06\n" + push + pull);
}

TEST(Delivery, RaisesForARecipientThatIsTooLong) {
  const auto request = IPPRequest::requestWithId(0x0016);
  EXPECT_THROW(request->setPushDeliverySchemaWithRecipient(url("mailto:" + std::string(1017, 'x'))),
               RangeException);
  EXPECT_NO_THROW(
      request->setPushDeliverySchemaWithRecipient(url("mailto:" + std::string(1016, 'x'))));
}

// --- A subscription to a job ---------------------------------------------------------------------

class JobSubscription : public test::RequestTextTest {
 protected:
  const IPPResponse::Pointer job =
      test::responseWith("02 45 <'job-uri'> <'ipp://host/jobs/17'> 21 <'job-id'> <0000 0011>");
};

TEST_F(JobSubscription, IsAddressedToTheQueueAndNamesTheJobInItsGroup) {
  const IPPResponse& answer = *job;
  const auto request = IPPRequest::jobCreateSubscriptionRequest(
      answer, url(kQueue), Events{"job-completed", "job-stopped"});
  EXPECT_EQ(encodedText(*request),
            requestText("0x0017", targetAndUser("printer-uri", kQueue) +
                                      "group 06\n"
                                      "06\t\"notify-events\"\t44:\"job-completed\"\t"
                                      "44:\"job-stopped\"\n"
                                      "06\t\"notify-job-id\"\t21:17\n"));
  EXPECT_EQ(request->ippOperationCodename(), "Create-Job-Subscription");
  EXPECT_EQ(request->jobURI(), std::nullopt);
}

TEST_F(JobSubscription, HoldsTheNumberAloneWithoutEvents) {
  const auto request = IPPRequest::jobCreateSubscriptionRequest(*job, url(kQueue), {});
  EXPECT_EQ(encodedText(*request), requestText("0x0017", targetAndUser("printer-uri", kQueue) +
                                                             "group 06\n"
                                                             "06\t\"notify-job-id\"\t21:17\n"));
}

struct RememberedJob {
  std::int32_t number;
  [[nodiscard]] std::int32_t jobId() const { return number; }
};

TEST_F(JobSubscription, TakesWhateverAnswersJobId) {
  const auto request =
      IPPRequest::jobCreateSubscriptionRequest(RememberedJob{17}, url(kQueue), Events{"job-x"});
  EXPECT_EQ(encodedText(*request), encodedText(*IPPRequest::jobCreateSubscriptionRequest(
                                       *job, url(kQueue), Events{"job-x"})));
  struct WideJob {
    [[nodiscard]] std::int64_t jobId() const { return 17; }
  };
  struct ChangingJob {
    std::int32_t jobId() { return 17; }
  };
  static_assert(AnswersJobId<IPPResponse> && AnswersJobId<RememberedJob>);
  static_assert(!AnswersJobId<WideJob>, "a number that would have to be cut is refused");
  static_assert(!AnswersJobId<ChangingJob> && !AnswersJobId<IPPRequest>);
}

TEST_F(JobSubscription, RaisesForAJobWithoutANumber) {
  const auto nameless = test::responseWith("02 45 <'job-uri'> <'ipp://host/jobs/17'>");
  EXPECT_THROW(IPPRequest::jobCreateSubscriptionRequest(*nameless, url(kQueue), {}),
               RangeException);
}

}  // namespace
}  // namespace platen
