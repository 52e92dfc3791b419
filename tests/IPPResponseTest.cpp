// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPConstants.h"
#include "platen/IPPResponse.h"
#include "tests/support/KeyedTree.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"
#include "tests/support/UserLocale.h"

namespace platen {
namespace {

using test::messageText;
using test::UserLocale;

class Response : public testing::Test {
 protected:
  const UserLocale locale{"en_US.UTF-8"};
};

// --- Made here -----------------------------------------------------------------------------------

TEST_F(Response, OfAStatusCodeHoldsCharsetAndTheLocaleAsItIs) {
  EXPECT_EQ(messageText(*IPPResponse::initWithStatusCode(0x0406), 0),
            "message version=1.1 code=0x0406 request-id=1\n"
            "group 01\n"
            "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
            "01\t\"attributes-natural-language\"\t48:\"en_US\"\n");
}

TEST_F(Response, OfAStatusCodeDoesNotSplitOrLowerTheLocaleAsARequestDoes) {
  struct Case {
    const char* locale;
    const char* identifier;
  };
  const Case cases[] = {
      {"pt_BR.UTF-8", "pt_BR"}, {"ja", "ja"}, {"zh_Hans_CN.UTF-8", "zh_Hans_CN"}, {"C", "en"}};
  for (const auto& [user, identifier] : cases) {
    const UserLocale chosen(user);
    EXPECT_EQ(IPPResponse::initWithStatusCode(0)->attributesLanguage(), identifier);
  }
}

TEST_F(Response, WithAMessageHoldsItInTheOperationGroup) {
  const auto response = IPPResponse::responseWithStatusCode(0x0500, "out of p\xc3\xa4per");
  EXPECT_EQ(messageText(*response, 0),
            messageText(*IPPResponse::initWithStatusCode(0x0500), 0) +
                "01\t\"status-message\"\t41:\"out of p\\xc3\\xa4per\"\n");
  EXPECT_EQ(response->statusMessage(), "out of p\xc3\xa4per");
}

TEST_F(Response, WithoutAMessageHasNone) {
  const auto response = IPPResponse::responseWithStatusCode(0x0500, std::nullopt);
  EXPECT_EQ(messageText(*response, 0), messageText(*IPPResponse::initWithStatusCode(0x0500), 0));
  EXPECT_EQ(response->statusMessage(), std::nullopt);
}

TEST_F(Response, WithAnEmptyMessageHasAnEmptyOne) {
  EXPECT_EQ(IPPResponse::responseWithStatusCode(0x0500, "")->statusMessage(), "");
}

TEST_F(Response, RaisesForAMessageThatIsTooLong) {
  EXPECT_EQ(IPPResponse::responseWithStatusCode(0, std::string(1023, 'x'))->statusMessage(),
            std::string(1023, 'x'));
  EXPECT_THROW(IPPResponse::responseWithStatusCode(0, std::string(1024, 'x')), RangeException);
}

TEST_F(Response, ToARequestHasItsNumberAndSharesItsCharsetAndLanguage) {
  const IPPRequest::Pointer request = IPPRequest::initWithDataRepresentation(
      test::octets("0101 000B 0000 4711 01"
                   "48 <'attributes-natural-language'> <'de'>"
                   "47 <'attributes-charset'> <'iso-8859-1'>"
                   "42 <'requesting-user-name'> <'me'> 03"));
  const auto response = IPPResponse::responseForRequest(*request);
  EXPECT_EQ(messageText(*response, 0),
            "message version=1.1 code=0x0000 request-id=18193\n"
            "group 01\n"
            "01\t\"attributes-charset\"\t47:\"iso-8859-1\"\n"
            "01\t\"attributes-natural-language\"\t48:\"de\"\n"
            "01\t\"status-message\"\t41:\"\"\n");
  const auto& attributes = response->operationGroup()->attributes();
  EXPECT_EQ(attributes.at(0), request->attributeForKey("attributes-charset"));
  EXPECT_EQ(attributes.at(1), request->attributeForKey("attributes-natural-language"));
  EXPECT_EQ(request->operationGroup()->attributes().size(), 3U) << "the request stays as it was";
}

TEST_F(Response, ToARequestWithoutCharsetOrLanguageIsABadRequest) {
  for (const auto* attribute :
       {"47 <'attributes-charset'> <'utf-8'>", "48 <'attributes-natural-language'> <'de'>", ""}) {
    const auto request = IPPRequest::initWithDataRepresentation(
        test::octets("0101 000B 0000 4711 01" + std::string(attribute) + "03"));
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(messageText(*IPPResponse::responseForRequest(*request), 0),
              messageText(*IPPResponse::initWithStatusCode(0x0400), 0) +
                  "01\t\"status-message\"\t41:\"\"\n");
  }
}

TEST_F(Response, ToARequestOfOurOwnSucceeds) {
  const auto response = IPPResponse::responseForRequest(*IPPRequest::requestWithId(0x000B));
  EXPECT_TRUE(response->successfulOk());
  EXPECT_EQ(response->requestId(), 1);
  EXPECT_EQ(response->attributesLanguage(), "en-us");
}

// --- Read ----------------------------------------------------------------------------------------

const char* const kNotFound =
    "0101 0406 0000 0001 01"
    "47 <'attributes-charset'> <'utf-8'>"
    "48 <'attributes-natural-language'> <'en-us'>"
    "41 <'status-message'> <'The printer or class does not exist.'> 03";

/// The response as it comes out of each of the reading constructors.
std::vector<IPPResponse::Pointer> readEveryWay(const Data& data) {
  const auto stream = InputStream::withData(data);
  stream->open();
  std::FILE* const file = std::tmpfile();
  std::fwrite(data.data(), 1, data.size(), file);
  std::rewind(file);
  std::vector<IPPResponse::Pointer> responses{IPPResponse::initWithDataRepresentation(data),
                                              IPPResponse::initWithStream(stream),
                                              IPPResponse::initWithFileHandle(fileno(file))};
  std::fclose(file);
  return responses;
}

TEST(DecodedResponse, TellsStatusMessageCharsetAndLanguage) {
  for (const auto& response : readEveryWay(test::octets(kNotFound))) {
    ASSERT_NE(response, nullptr);
    EXPECT_EQ(response->statusCode(), 0x0406);
    EXPECT_EQ(response->statusMessage(), "The printer or class does not exist.");
    EXPECT_EQ(response->attributesCharset(), "utf-8");
    EXPECT_EQ(response->attributesLanguage(), "en-us");
    EXPECT_EQ(test::hex(response->dataRepresentation()), test::hex(test::octets(kNotFound)));
  }
}

TEST(DecodedResponse, TellsAStatusMessageThatHasALanguage) {
  const auto response = IPPResponse::initWithDataRepresentation(
      test::octets("0101 0406 0000 0001 01"
                   "35 <'status-message'> <<'de'> <'Nicht gefunden'>> 03"));
  EXPECT_EQ(response->statusMessage(), "Nicht gefunden");
}

TEST(DecodedResponse, HasNoMessageCharsetOrLanguageWhereNoneIsSent) {
  const auto response =
      IPPResponse::initWithDataRepresentation(test::octets("0101 0000 0000 0001 03"));
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(response->statusMessage(), std::nullopt);
  EXPECT_EQ(response->attributesCharset(), std::nullopt);
  EXPECT_EQ(response->attributesLanguage(), std::nullopt);
}

TEST(DecodedResponse, IsLeftRightBeforeWhatFollowsIt) {
  Data data = test::octets(kNotFound);
  data.insert(data.end(), {'r', 'e', 's', 't'});
  const auto stream = InputStream::withData(data);
  stream->open();
  ASSERT_NE(IPPResponse::initWithStream(stream), nullptr);
  const auto rest = OutputStream::toMemory();
  rest->open();
  stream->transferContentsTo(rest.get());
  EXPECT_EQ(*rest->data(), (Data{'r', 'e', 's', 't'}));
}

TEST(DecodedResponse, IsNoneWhereTheOctetsDoNotDecode) {
  Data data = test::octets(kNotFound);
  data.pop_back();
  for (const auto& response : readEveryWay(data)) {
    EXPECT_EQ(response, nullptr);
  }
  EXPECT_EQ(IPPResponse::initWithDataRepresentation({}), nullptr);
  EXPECT_EQ(IPPResponse::initWithStream(nullptr), nullptr);
  EXPECT_EQ(IPPResponse::initWithFileHandle(-1), nullptr);
}

TEST(DecodedResponse, KeepsACodeAboveItsTableAsANegativeNumber) {
  const auto response =
      IPPResponse::initWithDataRepresentation(test::octets("0101 8001 0000 0001 03"));
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(response->statusCode(), -32767);
  EXPECT_EQ(test::hex(response->dataRepresentation()), "01 01 80 01 00 00 00 01 03");
}

TEST(DecodedResponse, IsCopiedAndComparedAsAResponse) {
  const auto response = IPPResponse::initWithDataRepresentation(test::octets(kNotFound));
  const auto copy = response->copy();
  EXPECT_NE(std::dynamic_pointer_cast<IPPResponse>(copy), nullptr);
  EXPECT_TRUE(copy->isEqual(*response));
  EXPECT_FALSE(copy->isEqual(IPPMessage(0x0406, 1, response->ippGroups())));
  EXPECT_FALSE(copy->isEqual(IPPResponse(0x0407, 1, response->ippGroups())));
  EXPECT_EQ(copy->ippGroups(), response->ippGroups());
}

TEST(DecodedResponse, ArchivesWhatAMessageArchives) {
  const auto tree = test::KeyedTreeWriter::archive(IPPResponse(0x0406, 7));
  EXPECT_EQ(tree->description(), "IPPResponse{groups=[], request-id=7, tag=1030}");
}

}  // namespace
}  // namespace platen
