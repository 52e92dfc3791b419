// SPDX-License-Identifier: Apache-2.0

/// Every accessor of a response against every kind of value that a server may send.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platen/IPPResponse.h"
#include "tests/support/ResponseOctets.h"

namespace platen {
namespace {

using test::responseWith;

// --- What an accessor tells, as text -------------------------------------------------------------

std::string text(const URL& url) { return std::string(url.absoluteString()); }
std::string text(const std::string& string) { return string; }
std::string text(std::int32_t number) { return std::to_string(number); }
std::string text(bool flag) { return flag ? "true" : "false"; }
std::string text(double seconds) { return std::to_string(seconds); }
std::string text(const Date& date) { return textOf(date); }
std::string text(const RawValue& object) {
  return object.isAbsent() ? "nothing" : object.description();
}
std::string text(const std::vector<std::string>& list) {
  std::string joined = "[";
  for (const std::string& string : list) {
    joined += (&string == &list.front() ? "" : ",") + string;
  }
  return joined + "]";
}
template <class T>
std::string text(const std::optional<T>& result) {
  return result ? text(*result) : "nothing";
}

template <auto kAccessor>
std::string told(const IPPResponse& response) {
  return text((response.*kAccessor)());
}

// --- What a server sends -------------------------------------------------------------------------

/// A value in the spelling of `octets` ("@" stands for the name of the attribute) and what each
/// kind of accessor has to make of it.
struct Sent {
  std::string what;
  std::string record;
  std::string url = "nothing";
  std::string string = "nothing";
  std::string number = "nothing";
  std::string boolean = "false";
  std::string list = "nothing";
  std::string first = "nothing";
};

Sent sentString(const std::string& what, const std::string& record) {
  return {.what = what, .record = record, .string = "seven", .list = "[seven]", .first = "seven"};
}

Sent sentOther(const std::string& what, const std::string& record) {
  return {.what = what, .record = record};
}

std::string nest(std::size_t depth) {
  std::string record = "34 <'@'> <>";
  for (std::size_t i = 1; i < depth; ++i) record += "4A <> <'m'> 34 <> <>";
  for (std::size_t i = 0; i < depth; ++i) record += "37 <> <>";
  return record;
}

std::vector<Sent> stringsSent() {
  return {
      sentString("octetString", "30 <'@'> <'seven'>"),
      sentString("textWithLanguage", "35 <'@'> <<'en'> <'seven'>>"),
      sentString("nameWithLanguage", "36 <'@'> <<'en.iso-8859-1'> <'seven'>>"),
      sentString("text", "41 <'@'> <'seven'>"),
      sentString("name", "42 <'@'> <'seven'>"),
      sentString("keyword", "44 <'@'> <'seven'>"),
      sentString("uriScheme", "46 <'@'> <'seven'>"),
      sentString("charset", "47 <'@'> <'seven'>"),
      sentString("naturalLanguage", "48 <'@'> <'seven'>"),
      sentString("mimeMediaType", "49 <'@'> <'seven'>"),
      sentOther("empty text", "41 <'@'> <>"),
      sentOther("empty textWithLanguage", "35 <'@'> <>"),
      sentOther("text that is no UTF-8", "41 <'@'> <ff fe>"),
  };
}

std::vector<Sent> numbersSent() {
  return {
      {.what = "integer", .record = "21 <'@'> <0000 0007>", .number = "7"},
      {.what = "enum", .record = "23 <'@'> <0000 0007>", .number = "7"},
      {.what = "zero", .record = "21 <'@'> <0000 0000>", .number = "0"},
      {.what = "negative", .record = "21 <'@'> <ffff ffff>", .number = "-1"},
      {.what = "greatest", .record = "21 <'@'> <7fff ffff>", .number = "2147483647"},
      {.what = "least enum", .record = "23 <'@'> <8000 0000>", .number = "-2147483648"},
      {.what = "true", .record = "22 <'@'> <01>", .boolean = "true"},
      {.what = "another true", .record = "22 <'@'> <ff>", .boolean = "true"},
      sentOther("false", "22 <'@'> <00>"),
  };
}

std::vector<Sent> othersSent() {
  return {
      {.what = "uri", .record = "45 <'@'> <'ipp://host/7'>", .url = "ipp://host/7"},
      {.what = "relative uri", .record = "45 <'@'> <'/7'>", .url = "/7"},
      sentOther("uri that is none", "45 <'@'> <'no uri'>"),
      sentOther("dateTime", "31 <'@'> <07d0 01 01 00 00 07 00 2b 00 00>"),
      sentOther("resolution", "32 <'@'> <0000 0007 0000 0007 03>"),
      sentOther("rangeOfInteger", "33 <'@'> <0000 0007 0000 0007>"),
      sentOther("backward range", "33 <'@'> <7fff ffff 8000 0000>"),
      sentOther("unsupported", "10 <'@'> <>"),
      sentOther("unknown", "12 <'@'> <>"),
      sentOther("no-value", "13 <'@'> <>"),
      sentOther("not-settable", "15 <'@'> <>"),
      sentOther("admin-define", "17 <'@'> <>"),
      sentOther("empty collection", nest(1)),
      sentOther("collection", "34 <'@'> <> 4A <> <'@'> 21 <> <0000 0007> 37 <> <>"),
      sentOther("deep nest", nest(64)),
  };
}

std::vector<Sent> setsSent() {
  return {
      {.what = "keywords", .record = "44 <'@'> <'a'> 44 <> <'b'>", .list = "[a,b]", .first = "a"},
      {.what = "the same twice",
       .record = "44 <'@'> <'a'> 44 <> <'a'>",
       .list = "[a,a]",
       .first = "a"},
      {.what = "texts and an integer",
       .record = "41 <'@'> <'a'> 21 <> <0000 0001> 35 <> <<'de'> <'b'>>",
       .list = "[a,b]",
       .first = "a"},
      {.what = "an integer first", .record = "21 <'@'> <0000 0001> 44 <> <'b'>", .list = "[b]"},
      {.what = "a null first", .record = "13 <'@'> <> 44 <> <'b'>", .list = "[b]"},
      {.what = "a null last", .record = "44 <'@'> <'a'> 13 <> <>", .list = "[a]", .first = "a"},
      {.what = "an empty text first", .record = "41 <'@'> <> 41 <> <'b'>", .list = "[b]"},
      sentOther("integers", "21 <'@'> <0000 0001> 21 <> <0000 0002>"),
      sentOther("booleans", "22 <'@'> <01> 22 <> <01>"),
      sentOther("uris", "45 <'@'> <'ipp://a'> 45 <> <'ipp://b'>"),
      sentOther("nulls", "13 <'@'> <> 10 <> <>"),
      sentOther("collections", nest(3) + "34 <> <> 37 <> <>"),
  };
}

/// Every kind of value, alone and in sets.
std::vector<Sent> everythingSent() {
  std::vector<Sent> all;
  for (const auto& some : {stringsSent(), numbersSent(), othersSent(), setsSent()}) {
    all.insert(all.end(), some.begin(), some.end());
  }
  return all;
}

/// As the answers of `Sent`, from what each kind of accessor makes of a value.
std::string urlOf(const Sent& sent) { return sent.url; }
std::string stringOf(const Sent& sent) { return sent.string; }
std::string numberOf(const Sent& sent) { return sent.number; }
std::string booleanOf(const Sent& sent) { return sent.boolean; }
std::string listOf(const Sent& sent) { return sent.list; }
std::string firstOf(const Sent& sent) { return sent.first; }
std::string urlOrStringOf(const Sent& sent) {
  return sent.url != "nothing" ? sent.url : sent.string;
}
std::int32_t numberOrZero(const Sent& sent) {
  return sent.number == "nothing" ? 0 : std::stoi(sent.number);
}
std::string secondsOf(const Sent& sent) { return text(double{1} * numberOrZero(sent)); }
std::string instantOf(const Sent& sent) {
  return textOf(Date(std::chrono::seconds(numberOrZero(sent))));
}
std::string alwaysFalse(const Sent& /*sent*/) { return "false"; }
template <int kBit, bool kWhenSet = true>
std::string bitOf(const Sent& sent) {
  return text(((numberOrZero(sent) & kBit) != 0) == kWhenSet);
}

// --- The accessors -------------------------------------------------------------------------------

struct Accessor {
  std::string_view name;
  std::string attribute;
  std::string (*tell)(const IPPResponse&);
  std::string (*expected)(const Sent&);
};

// One row: the accessor, the attribute that it reads, and what is expected of it.
#define ACCESSOR(name, attribute, expected) \
  Accessor { #name, attribute, told < &IPPResponse::name>, expected }

const std::vector<Accessor> kAccessors = {
    ACCESSOR(jobURI, "job-uri", urlOf),
    ACCESSOR(jobPrinterURI, "job-printer-uri", urlOf),
    ACCESSOR(jobMoreInfoURI, "job-more-info", urlOf),
    ACCESSOR(jobId, "job-id", numberOf),
    ACCESSOR(jobUUID, "job-uuid", urlOrStringOf),
    ACCESSOR(jobName, "job-name", stringOf),
    ACCESSOR(jobState, "job-state", numberOf),
    ACCESSOR(jobStateReason, "job-state-reasons", firstOf),
    ACCESSOR(jobPrinterStateMessage, "job-printer-state-message", stringOf),
    ACCESSOR(jobCompletedMediaSheetsCount, "job-media-sheets-completed", numberOf),
    ACCESSOR(jobMediaProgress, "job-media-progress", numberOf),
    ACCESSOR(jobPriority, "job-priority", numberOf),
    ACCESSOR(jobOriginatingUserName, "job-originating-user-name", stringOf),
    ACCESSOR(jobOriginatingHostName, "job-originating-host-name", stringOf),
    ACCESSOR(jobTimeCreation, "time-at-creation", instantOf),
    ACCESSOR(jobTimeProcessing, "time-at-processing", instantOf),
    ACCESSOR(jobTimeCompleted, "time-at-completed", instantOf),
    ACCESSOR(printerURI, "printer-uri", urlOf),
    ACCESSOR(printerState, "printer-state", numberOf),
    ACCESSOR(printerStateMessage, "printer-state-message", stringOf),
    ACCESSOR(printerStateReasons, "printer-state-reasons", listOf),
    ACCESSOR(isAcceptingJobs, "printer-is-accepting-jobs", booleanOf),
    ACCESSOR(isPrintQueueRemote, "printer-type", bitOf<0x2>),
    ACCESSOR(isPrintQueueLocal, "printer-type", (bitOf<0x2, false>)),
    ACCESSOR(isPrintQueueColor, "printer-type", bitOf<0x8>),
    ACCESSOR(isPrintQueueGrayscale, "printer-type", bitOf<0x4>),
    ACCESSOR(canPrintQueueDuplex, "printer-type", bitOf<0x10>),
    ACCESSOR(canPrintQueueStaple, "printer-type", bitOf<0x20>),
    ACCESSOR(canPrintQueueCollate, "printer-type", bitOf<0x80>),
    ACCESSOR(isPrintQueueRequiringAuthentication, "printer-type", alwaysFalse),
    ACCESSOR(isPrintQueueNotShared, "printer-type", alwaysFalse),
    ACCESSOR(isPrintQueueDefault, "printer-type", alwaysFalse),
    ACCESSOR(canPrintQueuePunch, "printer-type", alwaysFalse),
    ACCESSOR(canPrintQueueCover, "printer-type", alwaysFalse),
    ACCESSOR(canPrintQueueBind, "printer-type", alwaysFalse),
    ACCESSOR(canPrintQueueSort, "printer-type", alwaysFalse),
    ACCESSOR(subscriptionId, "notify-subscription-id", numberOf),
    ACCESSOR(notifySubscriptionId, "notify-subscription-id", numberOf),
    ACCESSOR(jobSubscriptionId, "notify-subscription-id", numberOf),
    ACCESSOR(notifyJobId, "notify-job-id", numberOf),
    ACCESSOR(notifyPrinterURI, "notify-printer-uri", urlOf),
    ACCESSOR(notifyRecipientURI, "notify-recipient-uri", urlOf),
    ACCESSOR(notifySubscriberName, "notify-subscriber-user-name", stringOf),
    ACCESSOR(notifyLeaseDuration, "notify-lease-duration", numberOf),
    ACCESSOR(notifyEvents, "notify-events", listOf),
    ACCESSOR(notifyTimeInterval, "notify-time-interval", secondsOf),
    ACCESSOR(notifyGetInternal, "notify-get-interval", secondsOf),
    ACCESSOR(statusMessage, "status-message", stringOf),
    ACCESSOR(attributesCharset, "attributes-charset", stringOf),
    ACCESSOR(attributesLanguage, "attributes-natural-language", stringOf),
};

#undef ACCESSOR

std::string recordOf(const Sent& sent, const std::string& attribute) {
  std::string record = sent.record;
  for (std::size_t at = record.find('@'); at != std::string::npos; at = record.find('@')) {
    record.replace(at, 1, attribute);
  }
  return record;
}

/// Every attribute that an accessor reads, once, with this value.
std::string everyAttribute(const Sent& sent) {
  std::set<std::string> names{"printer-name", "device-info", "printer-uri-supported"};
  for (const Accessor& accessor : kAccessors) names.insert(accessor.attribute);
  std::string records;
  for (const std::string& name : names) records += recordOf(sent, name);
  return records;
}

TEST(ResponseAccessors, TellEveryKindOfValueThatTheyPromiseAndNoOther) {
  for (const Sent& sent : everythingSent()) {
    for (const Accessor& accessor : kAccessors) {
      const auto response = responseWith("02" + recordOf(sent, accessor.attribute));
      EXPECT_EQ(accessor.tell(*response), accessor.expected(sent))
          << accessor.name << " of " << sent.what;
    }
  }
}

TEST(ResponseAccessors, TellNothingOfWhatIsAbsent) {
  const Sent nothing{};
  std::string otherAttributes;
  for (const Accessor& accessor : kAccessors) {
    otherAttributes += "41 <'x-" + accessor.attribute + "'> <'seven'>";
  }
  for (const std::string& groups :
       {std::string(), std::string("01 02 04 05 06 07"), "04" + otherAttributes}) {
    const auto response = responseWith(groups);
    for (const Accessor& accessor : kAccessors) {
      EXPECT_EQ(accessor.tell(*response), accessor.expected(nothing)) << accessor.name;
    }
  }
}

TEST(ResponseAccessors, TellTheFirstOfSeveralAttributesInWhateverGroup) {
  const Sent number{.what = "", .record = "21 <'@'> <0000 009e>", .number = "158"};
  const Sent word = sentString("", "44 <'@'> <'seven'>");
  for (const char* group : {"01", "02", "04", "05", "06", "07"}) {
    for (const Accessor& accessor : kAccessors) {
      const std::string a = group + recordOf(number, accessor.attribute);
      const std::string b = group + recordOf(word, accessor.attribute);
      EXPECT_EQ(accessor.tell(*responseWith(a + b)), accessor.expected(number)) << accessor.name;
      EXPECT_EQ(accessor.tell(*responseWith(b + a)), accessor.expected(word)) << accessor.name;
    }
  }
}

TEST(ResponseAccessors, LeaveTheRawValueWithinReachWhereTheyTellNothing) {
  const auto response = responseWith("02 21 <'job-name'> <0000 0007> 13 <'time-at-completed'> <>");
  EXPECT_EQ(response->jobName(), std::nullopt);
  EXPECT_EQ(response->attributeValueForKey("job-name"), 7);
  EXPECT_EQ(response->jobTimeCompleted(), Date());
  EXPECT_TRUE(response->attributeValueForKey("time-at-completed").isNull());
}

TEST(ResponseAccessors, FindGroupsByValuesOfEveryKindButNotByNone) {
  const auto response = responseWith(
      "04 41 <'empty'> <>"
      "04 45 <'uri'> <'ipp://host/7'>"
      "04 21 <'set'> <0000 0007> 21 <> <0000 0008>");
  const auto nameOf = [&](const RawValue& value) {
    const auto found = response->printQueueAttributes(value);
    return found ? std::string(found->front()->name().value_or("")) : "nothing";
  };
  ASSERT_TRUE(response->attributeForKey("empty")->ippValue()->value().isAbsent());
  EXPECT_EQ(nameOf(RawValue()), "nothing");
  EXPECT_EQ(nameOf(*URL::parse("ipp://host/7")), "uri");
  EXPECT_EQ(nameOf("ipp://host/7"), "nothing");
  EXPECT_EQ(nameOf(RawValue::Array{7, 8}), "set");
  EXPECT_EQ(nameOf(7), "nothing");
}

// --- Hostile answers -----------------------------------------------------------------------------

bool hold(const IPPMessage::Attributes& attributes, const RawValue& value) {
  return std::any_of(attributes.begin(), attributes.end(), [&](const auto& attribute) {
    return attribute->ippValue()->value() == value;
  });
}

/// Every look-up by value, with arguments of every kind.
void askForGroups(const IPPResponse& response) {
  const RawValue arguments[] = {RawValue(),
                                Null(),
                                "seven",
                                7,
                                true,
                                *URL::parse("ipp://host/7"),
                                RawValue::Array{},
                                RawValue::Dictionary{},
                                Range{7, 1},
                                Date()};
  for (const RawValue& argument : arguments) {
    const auto queue = response.printQueueAttributes(argument);
    EXPECT_TRUE(!queue || hold(*queue, argument)) << argument.description();
    EXPECT_FALSE(queue && argument.isAbsent()) << "an empty text has no value either";
    EXPECT_EQ(queue, response.deviceAttributes(argument));
    const auto job = response.jobAttributes(argument);
    EXPECT_TRUE(!job || hold(*job, argument)) << argument.description();
  }
  for (const std::int32_t id : {0, 1, 7, -1}) {
    const auto subscription = response.subscriptionAttributes(id);
    EXPECT_TRUE(!subscription || hold(*subscription, id)) << id;
    EXPECT_EQ(subscription, response.jobSubscriptionAttributes(id));
  }
  EXPECT_EQ(response.printQueueUri("no such queue"), std::nullopt);
}

TEST(HostileResponse, IsToldOfAsIfItsFirstValuesWereAlone) {
  for (const Sent& sent : everythingSent()) {
    std::string groups;
    for (const char* group : {"01", "02", "04", "06", "07"}) groups += group + everyAttribute(sent);
    const auto response = responseWith(groups);
    for (const Accessor& accessor : kAccessors) {
      EXPECT_EQ(accessor.tell(*response), accessor.expected(sent))
          << accessor.name << " of " << sent.what;
    }
    askForGroups(*response);
    const bool isNamed = sent.string != "nothing";
    EXPECT_EQ(response->availablePrintQueues().size(), isNamed ? 5U : 0U) << sent.what;
    EXPECT_EQ(response->availableDevices(), response->availablePrintQueues()) << sent.what;
    EXPECT_EQ(response->localPrintQueues(), std::vector<std::string>(isNamed ? 1 : 0, "seven"));
    EXPECT_EQ(response->remotePrintQueues(), std::vector<std::string>()) << sent.what;
  }
}

TEST(HostileResponse, ThatHoldsEverythingAtOnceIsToldOfByItsFirstValues) {
  const Sent nothing = sentOther("no-value", "13 <'@'> <>");
  std::string attributes = everyAttribute(nothing);
  for (const Sent& sent : everythingSent()) attributes += everyAttribute(sent);
  const auto response = responseWith("04" + attributes);
  for (const Accessor& accessor : kAccessors) {
    EXPECT_EQ(accessor.tell(*response), accessor.expected(nothing)) << accessor.name;
  }
  askForGroups(*response);
  EXPECT_EQ(response->availableSubscriptions(),
            (std::vector<std::int32_t>{7, 7, 0, -1, 2147483647, -2147483647 - 1}));
  EXPECT_EQ(response->availableJobs().size(), 12U) << "ten strings and two URLs";
}

}  // namespace
}  // namespace platen
