// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPArray.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPResponse.h"
#include "tests/support/ResponseOctets.h"

namespace platen {
namespace {

using test::responseWith;
using Reasons = std::vector<std::string>;

TEST(PrinterAccessors, TellOfAPrinterAsItAnswers) {
  const auto response = responseWith(
      "04 45 <'printer-uri'> <'ipp://host/ipp/print'> 23 <'printer-state'> <0000 0005>"
      "   35 <'printer-state-message'> <<'de'> <'Papierstau'>>"
      "   44 <'printer-state-reasons'> <'media-jam'> 44 <> <'paused'>"
      "   22 <'printer-is-accepting-jobs'> <01>");
  EXPECT_EQ(response->printerURI(), URL::parse("ipp://host/ipp/print"));
  EXPECT_EQ(response->printerState(), 5);
  EXPECT_EQ(response->printerStateMessage(), "Papierstau");
  EXPECT_EQ(response->printerStateReasons(), (Reasons{"media-jam", "paused"}));
  EXPECT_TRUE(response->isAcceptingJobs());
}

TEST(PrinterStateReasons, AreAListOfOneForASingleValue) {
  EXPECT_EQ(responseWith("04 44 <'printer-state-reasons'> <'none'>")->printerStateReasons(),
            Reasons{"none"});
}

TEST(PrinterStateReasons, AreNothingOnlyWhereNoneIsTold) {
  EXPECT_EQ(responseWith("04")->printerStateReasons(), std::nullopt);
  auto group = IPPAttributeGroup::printerGroup();
  group->addAttribute(IPPAttribute::attributeWithValue(std::make_shared<IPPArray>(IPPValueList()),
                                                       "printer-state-reasons"));
  EXPECT_EQ(IPPResponse(0, 1, {group}).printerStateReasons(), Reasons()) << "a set of none";
}

TEST(PrinterAttributes, AreTheNamedValuesOfTheFirstPrinterGroup) {
  const auto response = responseWith(
      "01 47 <'attributes-charset'> <'utf-8'> 02 21 <'job-id'> <0000 0001>"
      "04 42 <'printer-name'> <'a'> 44 <'sides'> <'one'> 44 <> <'two'> 13 <'media'> <>"
      "   42 <'printer-name'> <'last'>"
      "04 42 <'printer-name'> <'b'>");
  const RawValue::Dictionary expected{
      {"printer-name", "last"}, {"sides", RawValue::Array{"one", "two"}}, {"media", Null()}};
  EXPECT_EQ(response->printerAttributes(), expected);
}

TEST(PrinterAttributes, AreNothingWithoutAPrinterGroupOrAttributesInIt) {
  EXPECT_EQ(responseWith("")->printerAttributes(), std::nullopt);
  EXPECT_EQ(responseWith("02 42 <'printer-name'> <'a'>")->printerAttributes(), std::nullopt);
  EXPECT_EQ(responseWith("04 04 42 <'printer-name'> <'b'>")->printerAttributes(), std::nullopt);
}

// --- Printer types -------------------------------------------------------------------------------

/// The names of the tests that are true of a queue whose "printer-type" is this.
std::string traitsOf(const IPPResponse& response) {
  struct Trait {
    bool (IPPResponse::*test)() const;
    const char* name;
  };
  const Trait traits[] = {
      {&IPPResponse::isPrintQueueRemote, "remote "},
      {&IPPResponse::isPrintQueueLocal, "local "},
      {&IPPResponse::isPrintQueueColor, "color "},
      {&IPPResponse::isPrintQueueGrayscale, "grayscale "},
      {&IPPResponse::canPrintQueueDuplex, "duplex "},
      {&IPPResponse::canPrintQueueStaple, "staple "},
      {&IPPResponse::canPrintQueueCollate, "collate "},
      {&IPPResponse::isPrintQueueRequiringAuthentication, "authentication "},
      {&IPPResponse::isPrintQueueNotShared, "not-shared "},
      {&IPPResponse::isPrintQueueDefault, "default "},
      {&IPPResponse::canPrintQueuePunch, "punch "},
      {&IPPResponse::canPrintQueueCover, "cover "},
      {&IPPResponse::canPrintQueueBind, "bind "},
      {&IPPResponse::canPrintQueueSort, "sort "},
  };
  std::string names;
  for (const auto& [test, name] : traits) {
    names += (response.*test)() ? name : "";
  }
  return names;
}

IPPResponse responseOfType(IPPValue::Pointer value) {
  auto group = IPPAttributeGroup::printerGroup();
  group->addAttribute(IPPAttribute::attributeWithValue(std::move(value), "printer-type"));
  return {0, 1, {std::move(group)}};
}

TEST(PrinterType, IsTestedBitByBit) {
  for (int bit = 0; bit < 32; ++bit) {
    const std::uint32_t type = std::uint32_t{1} << static_cast<unsigned>(bit);
    const std::string expected = type == 0x2    ? "remote "
                                 : type == 0x4  ? "local grayscale "
                                 : type == 0x8  ? "local color "
                                 : type == 0x10 ? "local duplex "
                                 : type == 0x20 ? "local staple "
                                 : type == 0x80 ? "local collate "
                                                : "local ";
    EXPECT_EQ(traitsOf(responseOfType(IPPValue::enumeration(type))), expected) << bit;
    const auto asInteger = static_cast<std::int32_t>(type);
    EXPECT_EQ(traitsOf(responseOfType(IPPValue::integerWithInt(asInteger))), expected) << bit;
  }
}

TEST(PrinterType, MayHaveAllBitsAndAnswersSevenTestsWithNoAllTheSame) {
  const std::string expected = "remote color grayscale duplex staple collate ";
  EXPECT_EQ(traitsOf(*responseWith("04 23 <'printer-type'> <ffff ffff>")), expected);
  EXPECT_EQ(traitsOf(responseOfType(IPPValue::enumeration(std::int64_t{-1}))), expected);
}

TEST(PrinterType, HasNoBitsWhereItIsAbsentOrNoInteger) {
  EXPECT_EQ(traitsOf(*responseWith("")), "local ");
  EXPECT_EQ(traitsOf(*responseWith("04 44 <'printer-type'> <'65535'>")), "local ");
  EXPECT_EQ(traitsOf(responseOfType(IPPValue::enumeration(Number(65535.0)))), "local ");
  EXPECT_EQ(traitsOf(responseOfType(nullptr)), "local ");
}

TEST(PrinterType, IsThatOfTheFirstQueue) {
  EXPECT_EQ(traitsOf(*responseWith("04 23 <'printer-type'> <0000 0008>"
                                   "04 23 <'printer-type'> <0000 0012>")),
            "local color ");
}

}  // namespace
}  // namespace platen
