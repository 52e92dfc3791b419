// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platen/IPPConstants.h"
#include "platen/IPPNullValue.h"
#include "platen/IPPResponse.h"
#include "tests/support/Octets.h"

namespace platen {
namespace {

using Names = std::vector<std::string>;

IPPResponse::Pointer decoded(std::string_view octets) {
  return IPPResponse::initWithDataRepresentation(test::octets(octets));
}

/// The look-ups that the accessors are made of, which no application sees.
struct Inside : IPPResponse {
  using IPPResponse::_allAdminDefineAttributeNames;
  using IPPResponse::_allAttributeNamesFromGroupsNamed;
  using IPPResponse::_allNotSettableAttributeNames;
  using IPPResponse::_allNoValueAttributeNames;
  using IPPResponse::_allUnknownAttributeNames;
  using IPPResponse::_allUnsupportedAttributeNames;
  using IPPResponse::_attributesForGroup;
  using IPPResponse::_attributesForJobWithUUID;
  using IPPResponse::_attributesForPrintQueue;
  using IPPResponse::_attributesForSubscriptionWithId;
  using IPPResponse::_attributeValueForPrintQueue;
};

template <auto LookUp, typename... Arguments>
auto ask(const IPPResponse& response, const Arguments&... arguments) {
  return (response.*LookUp)(arguments...);
}

/// "success", "client", "server", or "none"; more than one when the tests overlap.
std::string classOf(const IPPResponse& response) {
  std::string text;
  text += response.successfulOk() ? "success" : "";
  text += response.clientError() ? "client" : "";
  text += response.serverError() ? "server" : "";
  return text.empty() ? "none" : text;
}

TEST(ResponseStatus, IsOfTheClassThatItsNameSays) {
  for (const auto& [code, name] : IPPResponse::ippStatusToNameSpec()) {
    const std::string expected =
        name.starts_with("successful-ok") ? "success" : std::string(name.substr(0, 6));
    EXPECT_EQ(classOf(IPPResponse(code, 1)), expected) << name;
    EXPECT_EQ(IPPResponse(code, 1).statusDescription(), name);
    EXPECT_EQ(IPPResponse::statusDescriptionForStatusCode(code), name);
  }
  EXPECT_EQ(IPPResponse::ippStatusToNameSpec().size(), 43U);
}

TEST(ResponseStatus, OutsideOfTheTableHasNeitherNameNorClass) {
  for (const std::int32_t code :
       {0x0418, 0x050B, 0x0008, 0x0100, 0x0300, 0x03FF, 0x04FF, 0x0600, 0x10000, -32767, -1}) {
    const IPPResponse response(code, 1);
    EXPECT_EQ(response.statusDescription(), std::nullopt) << code;
    EXPECT_EQ(IPPResponse::statusDescriptionForStatusCode(code), std::nullopt) << code;
    EXPECT_EQ(classOf(response), "none") << code;
    EXPECT_FALSE(response.allowsRequestResubmission()) << code;
  }
}

TEST(ResponseStatus, AllowsResubmissionInThreeCases) {
  Names allowed;
  for (const auto& [code, name] : IPPResponse::ippStatusToNameSpec()) {
    if (IPPResponse(code, 1).allowsRequestResubmission()) {
      allowed.emplace_back(name);
    }
  }
  EXPECT_EQ(allowed, (Names{"server-error-service-unavailable", "server-error-temporary-error",
                            "server-error-busy"}));
}

TEST(ResponseStatus, StandsInFrontOfTheDescription) {
  const IPPResponse known(0x0406, 1);
  EXPECT_EQ(known.description(), "client-error-not-found = " + known.IPPMessage::description());
  const IPPResponse unknown(0x0418, 1);
  EXPECT_EQ(unknown.description(), "(null) = " + unknown.IPPMessage::description());
}

// --- The error record ----------------------------------------------------------------------------

TEST(ResponseError, HasTheStatusAsCodeAndItsNameAsDescription) {
  const auto error = IPPResponse(0x0406, 1).status();
  EXPECT_EQ(*error, Error("IPPErrorDomain", 1030,
                          {{"NSLocalizedDescription", std::string("client-error-not-found")}}));
}

TEST(ResponseError, IsAlsoMadeOfASuccess) {
  const auto error = IPPResponse(0x0000, 1).status();
  EXPECT_EQ(error->code(), 0);
  EXPECT_EQ(error->localizedDescription(), "successful-ok");
}

TEST(ResponseError, ShowsAnUnknownStatusInHexadecimal) {
  EXPECT_EQ(IPPResponse(0x0418, 1).status()->localizedDescription(), "unknown status 0x0418");
  const auto negative = decoded("0101 8001 0000 0001 03")->status();
  EXPECT_EQ(negative->localizedDescription(), "unknown status 0x8001");
  EXPECT_EQ(negative->code(), -32767);
}

TEST(ResponseError, ListsUnsupportedAttributesByTheirSyntax) {
  const auto error = decoded("0101 040B 0000 0001 05 10 <'sides'> <> 13 <'media'> <> 03")->status();
  EXPECT_EQ(*error, Error("IPPErrorDomain", 1035,
                          {{"NSLocalizedDescription",
                            std::string("client-error-attributes-or-values-not-supported")},
                           {"IPPErrorUnsupportedAttributeNames", Names{"sides"}},
                           {"IPPErrorNoValueAttributes", Names{"media"}}}));
}

TEST(ResponseError, HasAListForEachOfFiveSyntaxes) {
  struct Case {
    const char* tag;
    std::string_view key;
  };
  const Case cases[] = {
      {"10", IPPErrorUnsupportedAttributeNames}, {"12", IPPErrorUnknownAttributeValues},
      {"13", IPPErrorNoValueAttributes},         {"15", IPPErrorNotSettableAttributes},
      {"17", IPPErrorAdminDefineAttributes},
  };
  for (const auto& [tag, key] : cases) {
    const auto error =
        decoded("0101 0001 0000 0001 05" + std::string(tag) + "<'x'> <> 03")->status();
    EXPECT_EQ(error->names(key), Names{"x"}) << tag;
    EXPECT_EQ(error->userInfo().size(), 2U) << "no other list but that of " << tag;
  }
}

TEST(ResponseError, ListsNothingOfOtherSyntaxesAndOtherGroups) {
  // An unsupported value comes back as it was sent, RFC 8011 §4.1.7.
  const auto error = decoded(
                         "0101 0001 0000 0001"
                         "01 10 <'a'> <> 02 10 <'b'> <> 04 13 <'c'> <>"
                         "05 44 <'sides'> <'three-sided'>"
                         "   44 <'media'> <'a4'> 44 <> <'a5'> 03")
                         ->status();
  EXPECT_EQ(error->userInfo().size(), 1U) << error->description();
}

TEST(ResponseError, CountsATagThatNobodyKnowsAsUnknown) {
  const auto error =
      decoded("0101 0001 0000 0001 05 14 <'a'> <> 16 <'b'> <> 12 <'c'> <> 03")->status();
  EXPECT_EQ(error->names(IPPErrorUnknownAttributeValues), (Names{"a", "b", "c"}));
  EXPECT_EQ(error->userInfo().size(), 2U) << error->description();
}

TEST(ResponseError, ListsTheNamesOfAllGroupsInOrderAndKeepsDuplicates) {
  const auto error = decoded(
                         "0101 0001 0000 0001"
                         "05 10 <'b'> <> 10 <'a'> <>"
                         "02 10 <'x'> <>"
                         "05 13 <'n'> <> 10 <'b'> <> 03")
                         ->status();
  EXPECT_EQ(error->names(IPPErrorUnsupportedAttributeNames), (Names{"b", "a", "b"}));
  EXPECT_EQ(error->names(IPPErrorNoValueAttributes), Names{"n"});
}

TEST(ResponseError, HasKeysThatAreTheirOwnText) {
  EXPECT_EQ(IPPErrorDomain, "IPPErrorDomain");
  EXPECT_EQ(IPPErrorUnsupportedAttributeNames, "IPPErrorUnsupportedAttributeNames");
  EXPECT_EQ(IPPErrorUnknownAttributeValues, "IPPErrorUnknownAttributeValues");
  EXPECT_EQ(IPPErrorNoValueAttributes, "IPPErrorNoValueAttributes");
  EXPECT_EQ(IPPErrorNotSettableAttributes, "IPPErrorNotSettableAttributes");
  EXPECT_EQ(IPPErrorAdminDefineAttributes, "IPPErrorAdminDefineAttributes");
  EXPECT_EQ(IPPErrorUnknownReasonAttributes, "IPPErrorUnknownReasonAttributes");
}

// --- Look-ups ------------------------------------------------------------------------------------

const char* const kLists =
    "0101 0000 0000 0001"
    "05 10 <'u'> <> 12 <'k'> <> 13 <'n'> <> 15 <'s'> <> 17 <'d'> <>"
    "04 42 <'printer-name'> <'one'> 42 <'printer-info'> <'first'>"
    "04 42 <'printer-name'> <'two'> 42 <'printer-info'> <'second'>"
    "   42 <'printer-info'> <'third'> 10 <'printer-location'> <>"
    "02 45 <'job-uuid'> <'urn:uuid:1'> 21 <'job-id'> <0000 0007>"
    "06 21 <'notify-subscription-id'> <0000 0007> 42 <'name'> <'two'> 03";

TEST(ResponseLookUps, ListTheNamesOfEachOutOfBandSyntax) {
  const auto response = decoded(kLists);
  EXPECT_EQ(ask<&Inside::_allUnsupportedAttributeNames>(*response), Names{"u"});
  EXPECT_EQ(ask<&Inside::_allUnknownAttributeNames>(*response), Names{"k"});
  EXPECT_EQ(ask<&Inside::_allNoValueAttributeNames>(*response), Names{"n"});
  EXPECT_EQ(ask<&Inside::_allNotSettableAttributeNames>(*response), Names{"s"});
  EXPECT_EQ(ask<&Inside::_allAdminDefineAttributeNames>(*response), Names{"d"});
}

TEST(ResponseLookUps, ListTheNamesOfAnyGroupAndSyntax) {
  const auto response = decoded(kLists);
  EXPECT_EQ(
      ask<&Inside::_allAttributeNamesFromGroupsNamed>(*response, kIPPPrinterGroupName,
                                                      kIPPNameWithoutLanguageSyntaxName),
      (Names{"printer-name", "printer-info", "printer-name", "printer-info", "printer-info"}));
  EXPECT_EQ(
      ask<&Inside::_allAttributeNamesFromGroupsNamed>(*response, kIPPPrinterGroupName, "integer"),
      Names{});
  EXPECT_EQ(ask<&Inside::_allAttributeNamesFromGroupsNamed>(*response, "no-such-group", "integer"),
            Names{});
  EXPECT_EQ(ask<&Inside::_allAttributeNamesFromGroupsNamed>(*response, kIPPJobGroupName, "INTEGER"),
            Names{})
      << "syntaxes are compared letter for letter";
}

/// The names of the attributes; "none" when there is no group.
std::string namesOf(const std::optional<IPPMessage::Attributes>& attributes) {
  if (!attributes) {
    return "none";
  }
  std::string text;
  for (const auto& attribute : *attributes) {
    text += (text.empty() ? "" : " ") + std::string(attribute->name().value_or("?"));
  }
  return text;
}

TEST(ResponseLookUps, FindTheFirstGroupThatHoldsAValue) {
  const auto response = decoded(kLists);
  const std::string second = "printer-name printer-info printer-info printer-location";
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForPrintQueue>(*response, "one")),
            "printer-name printer-info");
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForPrintQueue>(*response, "two")), second);
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForPrintQueue>(*response, "third")), second);
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForPrintQueue>(*response, "four")), "none");
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForJobWithUUID>(*response, *URL::parse("urn:uuid:1"))),
            "job-uuid job-id");
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForSubscriptionWithId>(*response, 7)),
            "notify-subscription-id name");
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForSubscriptionWithId>(*response, 8)), "none");
  EXPECT_EQ(namesOf(ask<&Inside::_attributesForGroup>(*response, kIPPOperationGroupName, 7)),
            "none");
}

TEST(ResponseLookUps, FindAnAttributeOfThePrintQueueThatHoldsAValue) {
  const auto response = decoded(kLists);
  EXPECT_EQ(ask<&Inside::_attributeValueForPrintQueue>(*response, "one", "printer-info"), "first");
  EXPECT_EQ(ask<&Inside::_attributeValueForPrintQueue>(*response, "two", "printer-info"), "second");
  EXPECT_TRUE(
      ask<&Inside::_attributeValueForPrintQueue>(*response, "two", "printer-state").isAbsent());
  EXPECT_TRUE(
      ask<&Inside::_attributeValueForPrintQueue>(*response, "four", "printer-info").isAbsent());
}

}  // namespace
}  // namespace platen
