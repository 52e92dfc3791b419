// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "tests/support/RealServers.h"

namespace platen {
namespace {

// States of a job, RFC 8011 §5.3.7.
constexpr int kProcessing = 5;
constexpr int kCompleted = 9;

class JobAttributes : public test::RealServers {
 protected:
  static test::Exchange stateOf(const URL& job) {
    return perform(*IPPRequest::jobAttributesRequest(job), job);
  }
  static bool reaches(const URL& job, int state) {
    return becomesTrue([&] { return stateOf(job).number("job-state") == state; });
  }
  static URL uriOf(const test::Exchange& job) {
    return job.response->attributeValueForKey("job-uri").asURL();
  }
};

TEST_F(JobAttributes, OfAQueueTellWhenTheJobIsDone) {
  const auto job = print(addedQueue("quick"), test::smallPDF());
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_TRUE(reaches(uriOf(job), kCompleted));
  const auto done = stateOf(uriOf(job));
  EXPECT_EQ(done.error, nullptr);
  EXPECT_EQ(done.response->jobGroups().size(), 1U);
  EXPECT_EQ(done.number("job-id"), job.number("job-id"));
  EXPECT_TRUE(done.response->attributeValueForKey("job-state-reasons").isString());
  EXPECT_GE(done.number("time-at-completed"), done.number("time-at-creation"));
}

TEST_F(JobAttributes, OfAPrinterTellWhenTheJobIsDone) {
  const auto job = print(idlePrinter(), test::smallPDF());
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_TRUE(reaches(uriOf(job), kCompleted));
  EXPECT_EQ(stateOf(uriOf(job)).number("job-id"), job.number("job-id"));
}

TEST_F(JobAttributes, TellThatTheJobIsBeingPrinted) {
  servers().addQueue("slow", "testdev:/1");
  const auto job = print(queue("slow"), test::smallPDF());
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_TRUE(reaches(uriOf(job), kProcessing));
  EXPECT_TRUE(reaches(uriOf(job), kCompleted));
}

TEST_F(JobAttributes, OfAJobThatIsNotThereAreNotFound) {
  for (const auto& job :
       {url(servers().cupsURI() + "jobs/99999"), url(servers().ippeveURI() + "/99999")}) {
    const auto exchange = stateOf(job);
    EXPECT_EQ(exchange.status(), 0x0406) << job.absoluteString();
    ASSERT_NE(exchange.error, nullptr);
    EXPECT_EQ(exchange.error->localizedDescription(), "client-error-not-found");
  }
}

}  // namespace
}  // namespace platen
