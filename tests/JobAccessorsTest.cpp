// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platen/IPPArray.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPResponse.h"
#include "tests/support/ResponseOctets.h"

namespace platen {
namespace {

using test::responseWith;

/// A response that was not read but made, so that it can hold what no octets give.
IPPResponse responseHolding(IPPValue::Pointer value, std::optional<std::string_view> name) {
  auto group = IPPAttributeGroup::jobGroup();
  group->addAttribute(IPPAttribute::attributeWithValue(std::move(value), name));
  return {0, 1, {std::move(group)}};
}

TEST(JobAccessors, TellOfAJobAsAServerAnswers) {
  const auto response = responseWith(
      "01 47 <'attributes-charset'> <'utf-8'> 48 <'attributes-natural-language'> <'en'>"
      "02 45 <'job-uri'> <'ipp://localhost/jobs/17'> 21 <'job-id'> <0000 0011>"
      "   45 <'job-uuid'> <'urn:uuid:3f0c9bd6-0000-0000-0000-000000000011'>"
      "   45 <'job-printer-uri'> <'ipp://localhost/printers/q'>"
      "   45 <'job-more-info'> <'http://localhost/jobs/17'>"
      "   42 <'job-name'> <'Annual r'c3a9'port'> 23 <'job-state'> <0000 0009>"
      "   44 <'job-state-reasons'> <'job-completed-successfully'>"
      "   41 <'job-printer-state-message'> <'Printed'>"
      "   21 <'job-media-sheets-completed'> <0000 0003> 21 <'job-media-progress'> <0000 0064>"
      "   21 <'job-priority'> <0000 0032> 42 <'job-originating-user-name'> <'anna'>"
      "   42 <'job-originating-host-name'> <'localhost'>"
      "   21 <'time-at-creation'> <3ade 68b1> 21 <'time-at-processing'> <3ade 68b2>"
      "   21 <'time-at-completed'> <3ade 68bb>");
  EXPECT_EQ(response->jobURI(), URL::parse("ipp://localhost/jobs/17"));
  EXPECT_EQ(response->jobId(), 17);
  EXPECT_EQ(response->jobUUID(), *URL::parse("urn:uuid:3f0c9bd6-0000-0000-0000-000000000011"));
  EXPECT_EQ(response->jobPrinterURI(), URL::parse("ipp://localhost/printers/q"));
  EXPECT_EQ(response->jobMoreInfoURI(), URL::parse("http://localhost/jobs/17"));
  EXPECT_EQ(response->jobName(), "Annual r\xc3\xa9port");
  EXPECT_EQ(response->jobState(), 9);
  EXPECT_EQ(response->jobStateReason(), "job-completed-successfully");
  EXPECT_EQ(response->jobPrinterStateMessage(), "Printed");
  EXPECT_EQ(response->jobCompletedMediaSheetsCount(), 3);
  EXPECT_EQ(response->jobMediaProgress(), 100);
  EXPECT_EQ(response->jobPriority(), 50);
  EXPECT_EQ(response->jobOriginatingUserName(), "anna");
  EXPECT_EQ(response->jobOriginatingHostName(), "localhost");
  EXPECT_EQ(textOf(response->jobTimeCreation()), "2001-04-19 04:25:21 +0000");
  EXPECT_EQ(textOf(response->jobTimeProcessing()), "2001-04-19 04:25:22 +0000");
  EXPECT_EQ(textOf(response->jobTimeCompleted()), "2001-04-19 04:25:31 +0000");
}

// --- State reasons -------------------------------------------------------------------------------

TEST(JobStateReason, IsTheFirstOfSeveral) {
  EXPECT_EQ(responseWith("02 44 <'job-state-reasons'> <'job-incoming'>"
                         "   44 <> <'job-hold-until-specified'>")
                ->jobStateReason(),
            "job-incoming");
}

TEST(JobStateReason, IsNothingOfAnEmptySet) {
  const auto response =
      responseHolding(std::make_shared<IPPArray>(IPPValueList()), "job-state-reasons");
  ASSERT_EQ(response.attributeValueForKey("job-state-reasons"), RawValue::Array());
  EXPECT_EQ(response.jobStateReason(), std::nullopt);
}

// --- Times ---------------------------------------------------------------------------------------

TEST(JobTimes, AreTheEpochWhereTheyAreAbsentOrNotYet) {
  for (const auto* groups : {"",
                             "02 13 <'time-at-creation'> <> 13 <'time-at-processing'> <>"
                             "   13 <'time-at-completed'> <>"}) {
    const auto response = responseWith(groups);
    EXPECT_EQ(textOf(response->jobTimeCreation()), "1970-01-01 00:00:00 +0000");
    EXPECT_EQ(response->jobTimeProcessing(), Date());
    EXPECT_EQ(response->jobTimeCompleted(), Date());
  }
}

TEST(JobTimes, AreSignedSecondsOf32Bits) {
  struct Case {
    const char* octets;
    const char* date;
  };
  const Case cases[] = {{"<ffff ffff>", "1969-12-31 23:59:59 +0000"},
                        {"<7fff ffff>", "2038-01-19 03:14:07 +0000"},
                        {"<8000 0000>", "1901-12-13 20:45:52 +0000"}};
  for (const auto& [octets, date] : cases) {
    const auto response = responseWith("02 21 <'time-at-creation'>" + std::string(octets));
    EXPECT_EQ(textOf(response->jobTimeCreation()), date);
  }
}

TEST(JobTimes, AreEachReadFromTheirOwnAttribute) {
  const auto response = responseWith(
      "02 21 <'time-at-completed'> <0000 0003> 21 <'time-at-processing'> <0000 0002>"
      "   21 <'time-at-creation'> <0000 0001>");
  EXPECT_EQ(response->jobTimeCreation(), Date(std::chrono::seconds(1)));
  EXPECT_EQ(response->jobTimeProcessing(), Date(std::chrono::seconds(2)));
  EXPECT_EQ(response->jobTimeCompleted(), Date(std::chrono::seconds(3)));
}

// --- Universally unique names --------------------------------------------------------------------

TEST(JobUUID, IsAURLOrAStringAsItCame) {
  const auto url = responseWith("02 45 <'job-uuid'> <'urn:uuid:1'>");
  EXPECT_TRUE(url->jobUUID().isURL());
  const auto string = responseWith("02 44 <'job-uuid'> <'urn:uuid:1'>");
  EXPECT_EQ(string->jobUUID(), "urn:uuid:1");
  EXPECT_NE(url->jobUUID(), string->jobUUID());
}

TEST(JobUUID, FindsTheAttributesOfItsJob) {
  const auto response = responseWith(
      "02 45 <'job-uuid'> <'urn:uuid:1'> 21 <'job-id'> <0000 0001>"
      "02 44 <'job-uuid'> <'urn:uuid:2'> 21 <'job-id'> <0000 0002>"
      "02 21 <'job-id'> <0000 0003>"
      "04 44 <'job-uuid'> <'urn:uuid:4'>");
  const RawValue::Array jobs = response->availableJobs();
  ASSERT_EQ(jobs, (RawValue::Array{*URL::parse("urn:uuid:1"), "urn:uuid:2", "urn:uuid:4"}));
  EXPECT_EQ(response->jobAttributes(jobs[0]), response->jobGroups()[0]->attributes());
  EXPECT_EQ(response->jobAttributes(jobs[1]), response->jobGroups()[1]->attributes());
  EXPECT_EQ(response->jobAttributes(jobs[2]), std::nullopt) << "not a job's group";
  EXPECT_EQ(response->jobAttributes("urn:uuid:1"), std::nullopt) << "a URL is no string";
  EXPECT_EQ(response->jobAttributes(response->jobUUID()), response->jobGroups()[0]->attributes());
}

// --- What no octets give -------------------------------------------------------------------------

TEST(JobId, IsNothingOfANumberThat32BitsCannotHold) {
  constexpr auto kLeast = std::int64_t{std::numeric_limits<std::int32_t>::min()};
  constexpr auto kGreatest = std::int64_t{std::numeric_limits<std::int32_t>::max()};
  for (const std::int64_t number : {kLeast, kGreatest}) {
    EXPECT_EQ(responseHolding(IPPValue::integer(number), "job-id").jobId(), number);
  }
  for (const Number& number :
       {Number(kLeast - 1), Number(kGreatest + 1), Number(std::numeric_limits<std::int64_t>::max()),
        Number(7.0), Number(std::numeric_limits<double>::infinity()),
        Number(std::numeric_limits<double>::quiet_NaN())}) {
    const auto response = responseHolding(IPPValue::integer(number), "job-id");
    EXPECT_EQ(response.jobId(), std::nullopt) << number.stringValue();
  }
}

TEST(JobAccessors, TellNothingOfAttributesWithoutAValueOrAName) {
  EXPECT_EQ(responseHolding(nullptr, "job-id").jobId(), std::nullopt);
  EXPECT_EQ(responseHolding(nullptr, "time-at-creation").jobTimeCreation(), Date());
  EXPECT_EQ(responseHolding(nullptr, "job-uuid").availableJobs(), RawValue::Array());
  EXPECT_EQ(responseHolding(IPPValue::integer(7), std::nullopt).jobId(), std::nullopt);
}

}  // namespace
}  // namespace platen
