// SPDX-License-Identifier: Apache-2.0

/// What a print server tells of itself: its queues, classes, devices and drivers.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/PrintStory.h"

namespace platen {
namespace {

using test::AskedServer;
using testing::Contains;
using testing::ElementsAre;

constexpr std::int32_t kGetClasses = 0x4005;
constexpr std::int32_t kAddModifyClass = 0x4006;
constexpr std::int32_t kDeleteClass = 0x4007;
constexpr std::int32_t kGetPPDs = 0x400C;
constexpr std::int32_t kGetPPD = 0x400F;

/// Why a server without the programs of the Debian package cups cannot list devices or drivers.
constexpr const char* kNoHelpers = "the programs of the package cups are missing";

class ServerStory : public test::PrintStory {
 protected:
  [[nodiscard]] static Data description() {
    return contentsOf(std::filesystem::path(PLATEN_SOURCE_DIR) / "tests/servers/lab.ppd");
  }
  /// The same of a printer that prints in color.
  [[nodiscard]] static Data colorDescription() {
    const Data data = description();
    std::string text(data.begin(), data.end());
    const std::string no = "*ColorDevice: False";
    text.replace(text.find(no), no.size(), "*ColorDevice: True");
    return {text.begin(), text.end()};
  }
  void addDescribedQueue(const std::string& name, const Data& ppd) const {
    cups().does(addingRequest(queue(name)), AskedServer::document(ppd));
  }
  [[nodiscard]] Names namesFrom(const IPPRequest::Pointer& request) const {
    return cups().does(request)->availablePrintQueues();
  }
  [[nodiscard]] URL classURI(const std::string& name) const {
    return url(servers().cupsURI() + "classes/" + name);
  }
};

TEST_F(ServerStory, AServerWithoutQueuesSaysSo) {
  for (const auto& request : {IPPRequest::serverAvailablePrintersRequest(),
                              IPPRequest::serverAvailableColorPrintersRequest()}) {
    const auto answer =
        cups().answers(request, kIPPStatusClientErrorNotFound, "no queues at all").response;
    EXPECT_THAT(answer->availablePrintQueues(), ElementsAre());
    EXPECT_FALSE(answer->defaultPrintQueue().has_value());
    EXPECT_FALSE(answer->printerAttributes().has_value());
  }
  const auto jobs = cups().does(IPPRequest::serverAvailableJobsRequest());
  EXPECT_THAT(jobs->availableJobs(), ElementsAre());
}

TEST_F(ServerStory, QueuesAreListedByWhatTheyAre) {
  addDescribedQueue("gray", description());
  addDescribedQueue("color", colorDescription());
  const auto shared = addingRequest(queue("shared"));
  shared->setPrinterIsShared(true);
  cups().does(shared);

  const auto list = cups().does(IPPRequest::serverAvailablePrintersRequest());
  EXPECT_THAT(list->availablePrintQueues(), ElementsAre("color", "gray", "shared"));
  EXPECT_THAT(list->localPrintQueues(), ElementsAre("color", "gray", "shared"));
  EXPECT_THAT(list->remotePrintQueues(), ElementsAre());
  EXPECT_THAT(list->colorPrintQueues(), ElementsAre("color"));
  EXPECT_THAT(list->grayscalePrintQueues(), ElementsAre("color", "gray", "shared"));
  EXPECT_THAT(list->requiringAuthenticationPrintQueues(), ElementsAre());
  EXPECT_EQ(list->printQueueUri("gray"), queue("gray"));
  EXPECT_FALSE(list->printQueueUri("beige").has_value());
  ASSERT_TRUE(list->printQueueAttributes("gray").has_value());
  EXPECT_FALSE(list->printQueueAttributes("beige").has_value());

  const auto color = cups().does(IPPRequest::printerAttributesRequest(queue("color")));
  EXPECT_TRUE(color->isPrintQueueColor());
  EXPECT_TRUE(color->isPrintQueueGrayscale());
  const auto gray = cups().does(IPPRequest::printerAttributesRequest(queue("gray")));
  EXPECT_FALSE(gray->isPrintQueueColor());
  EXPECT_TRUE(gray->isPrintQueueGrayscale());
  EXPECT_FALSE(gray->canPrintQueueDuplex());
  EXPECT_FALSE(gray->canPrintQueueStaple());
}

// Each filter asks for the queues whose bit is clear, as the factories say.
TEST_F(ServerStory, FiltersLeaveOutTheQueuesWithTheBit) {
  addDescribedQueue("gray", description());
  addDescribedQueue("color", colorDescription());
  const auto shared = addingRequest(queue("shared"));
  shared->setPrinterIsShared(true);
  cups().does(shared);
  const Names all{"color", "gray", "shared"};
  EXPECT_EQ(namesFrom(IPPRequest::serverAvailableLocalPrintersRequest()), all);
  EXPECT_EQ(namesFrom(IPPRequest::serverAvailableRemotePrintersRequest()), all);
  EXPECT_EQ(namesFrom(IPPRequest::serverAvailablePrintersRequringAuthenticationRequest()), all);
  EXPECT_THAT(namesFrom(IPPRequest::serverAvailableColorPrintersRequest()),
              ElementsAre("gray", "shared"));
  // What is not shared shows in "printer-type", but this server does not filter by it.
  EXPECT_EQ(namesFrom(IPPRequest::serverAvailableNotSharedPrintersRequest()), all);
  const auto none = cups().does(IPPRequest::serverAvailableGrayscalePrintersRequest());
  EXPECT_THAT(none->availablePrintQueues(), ElementsAre()) << "all print in black";
  EXPECT_THAT(none->printerGroups(), testing::IsEmpty());
}

TEST_F(ServerStory, DevicesAreListed) {
  const auto request = IPPRequest::serverAvailableDevicesRequest();
  if (!servers().cupsListsDevices()) {
    cups().answers(request, kIPPStatusServerErrorInternalError, kNoHelpers);
    return;
  }
  const auto list = cups().does(request);
  EXPECT_THAT(list->availableDevices(), Contains("Test Device Zero"));
  const auto attributes = list->deviceAttributes("Test Device Zero");
  ASSERT_TRUE(attributes.has_value());
  const auto device = std::find_if(attributes->begin(), attributes->end(),
                                   [](const auto& each) { return each->name() == "device-uri"; });
  ASSERT_NE(device, attributes->end());
  EXPECT_EQ((*device)->ippValue()->value(), url("testdev:/0"));
  EXPECT_FALSE(list->deviceAttributes("No Such Device").has_value());
}

TEST_F(ServerStory, DriversAreListedAndDescribed) {
  const auto listing = IPPRequest::requestWithId(kGetPPDs);
  const auto describing = IPPRequest::requestWithId(kGetPPD);
  describing->addOperationValue(IPPValue::nameWithoutLanguage("lab.ppd"), "ppd-name");
  if (!servers().cupsListsDevices()) {
    cups().answers(listing, kIPPStatusServerErrorInternalError, kNoHelpers);
    cups().answers(describing, kIPPStatusServerErrorInternalError, kNoHelpers);
    return;
  }
  const auto list = cups().does(listing);
  EXPECT_THAT(list->attributeValuesForKey("ppd-make-and-model"),
              Contains(RawValue("Lab Printer, 1.0")));
  EXPECT_THAT(list->attributeValuesForKey("ppd-name"), Contains(RawValue("lab.ppd")));
  const auto output = OutputStream::toMemory();
  cups().does(describing, {nullptr, output});
  EXPECT_EQ(*output->data(), description());
}

TEST_F(ServerStory, TheDescriptionOfAQueueFollowsTheAnswerOctetForOctet) {
  addDescribedQueue("described", description());
  const auto output = OutputStream::toMemory();
  cups().does(onPrinter(kGetPPD, queue("described")), {nullptr, output});
  EXPECT_GT(description().size(), 1000U);
  EXPECT_EQ(*output->data(), description());

  cups().does(addingRequest(queue("raw")));
  const auto nothing = OutputStream::toMemory();
  cups().answers(onPrinter(kGetPPD, queue("raw")), kIPPStatusClientErrorNotFound,
                 "a raw queue has no description", {nullptr, nothing});
  EXPECT_TRUE(nothing->data()->empty());
}

TEST_F(ServerStory, AClassOfQueuesIsMadeUsedAndRemoved) {
  cups().answers(IPPRequest::requestWithId(kGetClasses), kIPPStatusClientErrorNotFound,
                 "no queues at all");
  const URL office = addedQueue("office");
  const URL cellar = addedQueue("cellar");
  const URL both = classURI("both");
  const auto adding = onPrinter(kAddModifyClass, both);
  adding->addOperationValue(
      IPPValue::array(IPPValueList{IPPValue::uri(office), IPPValue::uri(cellar)}), "member-uris");
  adding->setPrinterState(test::kPrinterIdle);
  adding->setPrinterIsAcceptingJobs(true);
  cups().does(adding);

  const auto list = cups().does(IPPRequest::requestWithId(kGetClasses));
  EXPECT_EQ(list->availablePrintQueues(), Names{"both"});
  EXPECT_EQ(list->attributeValueForKey("member-names"),
            (RawValue::Array{RawValue("office"), RawValue("cellar")}));
  EXPECT_TRUE(reaches(printedOn(both)->jobURI().value(), test::kJobCompleted));

  // By its bare name at the root of the server this server does not know a class.
  const std::string root = "localhost:" + std::to_string(servers().cupsPort());
  const URL atRoot = IPPURI::namedServerNamedClassURI(root, "both").value();
  cups().answers(onPrinter(kDeleteClass, atRoot), kIPPStatusClientErrorNotFound,
                 "this server has its classes below /classes/");
  cups().does(onPrinter(kDeleteClass, both));
  const auto empty = cups().does(IPPRequest::requestWithId(kGetClasses));
  EXPECT_THAT(empty->availablePrintQueues(), ElementsAre());
}

}  // namespace
}  // namespace platen
