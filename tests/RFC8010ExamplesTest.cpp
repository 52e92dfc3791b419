// SPDX-License-Identifier: Apache-2.0

/// The messages of RFC 8010 Appendix A, each beside the calls that make it and its text.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/IPPMessage.h"
#include "platen/IPPNullValue.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

const std::string kPrinter = "ipp://printer.example.com/ipp/print/pinetree";

IPPValue::Pointer uri(std::string_view text) { return IPPValue::uri(URL::parse(text).value()); }

IPPAttributeGroup::Pointer filled(IPPAttributeGroup::Pointer group,
                                  const IPPValueDictionary& values) {
  group->addNamedValues(values);
  return group;
}

/// The operation group that every message begins with, and more.
IPPAttributeGroup::Pointer operation(const IPPValueDictionary& values) {
  return filled(filled(IPPAttributeGroup::operationGroup(),
                       {{"attributes-charset", IPPValue::charset("utf-8")},
                        {"attributes-natural-language", IPPValue::naturalLanguage("en-us")}}),
                values);
}

IPPAttributeGroup::Pointer job(const IPPValueDictionary& values) {
  return filled(IPPAttributeGroup::jobGroup(), values);
}

IPPAttributeGroup::Pointer unsupported(const IPPValueDictionary& values) {
  return filled(std::make_shared<IPPAttributeGroup>(), values);
}

const std::string kOperationOctets =
    "01 47 0012 'attributes-charset' 0005 'utf-8'"
    "48 001b 'attributes-natural-language' 0005 'en-us'";

const std::string kPrinterOctets = "45 000b 'printer-uri' 002c '" + kPrinter + "'";

const std::string kOperationText =
    "group 01\n01\t\"attributes-charset\"\t47:\"utf-8\"\n"
    "01\t\"attributes-natural-language\"\t48:\"en-us\"\n";

const std::string kPrinterText = "01\t\"printer-uri\"\t45:\"" + kPrinter + "\"\n";

void expectExample(const IPPMessage& message, const std::string& text, const std::string& spelled) {
  EXPECT_EQ(encodedHex(message), hexOf(spelled));
  const auto decoded = decodedMessage(spelled);
  ASSERT_NE(decoded, nullptr);
  EXPECT_TRUE(decoded->isEqual(message)) << decoded->description();
  EXPECT_EQ(encodedHex(*decoded), hexOf(spelled));
  EXPECT_EQ(messageText(*decoded, 0), text);
}

TEST(RFC8010Examples, PrintJobRequest) {
  const IPPMessage message(
      0x0002, 1,
      {operation({{"printer-uri", uri(kPrinter)},
                  {"job-name", IPPValue::nameWithoutLanguage("foobar")},
                  {"ipp-attribute-fidelity", IPPValue::booleanWithBool(true)}}),
       job({{"copies", IPPValue::integerWithInt(20)},
            {"sides", IPPValue::keyword("two-sided-long-edge")}})});
  expectExample(message,
                "message version=1.1 code=0x0002 request-id=1\n" + kOperationText + kPrinterText +
                    "01\t\"job-name\"\t42:\"foobar\"\n01\t\"ipp-attribute-fidelity\"\t22:true\n"
                    "group 02\n02\t\"copies\"\t21:20\n02\t\"sides\"\t44:\"two-sided-long-edge\"\n",
                "0101 0002 00000001" + kOperationOctets + kPrinterOctets +
                    "42 0008 'job-name' 0006 'foobar'"
                    "22 0016 'ipp-attribute-fidelity' 0001 01"
                    "02 21 0006 'copies' 0004 00000014"
                    "44 0005 'sides' 0013 'two-sided-long-edge' 03");
}

TEST(RFC8010Examples, PrintJobRequestIsFollowedByTheDocument) {
  Data data = octets("0101 0002 00000001" + kOperationOctets + kPrinterOctets + "03 '%!PDF...'");
  const auto stream = InputStream::withData(data);
  stream->open();
  EXPECT_NE(IPPMessage::initWithStream(stream), nullptr);
  Data rest(100);
  const std::ptrdiff_t count = stream->read(rest.data(), rest.size());
  EXPECT_EQ(hex(Bytes(rest).first(static_cast<std::size_t>(count))), hexOf("'%!PDF...'"));
}

TEST(RFC8010Examples, PrintJobResponseThatSucceeds) {
  const IPPMessage message(
      0, 1,
      {operation({{"status-message", IPPValue::textWithoutLanguage("successful-ok")}}),
       job({{"job-id", IPPValue::integerWithInt(147)},
            {"job-uri", uri(kPrinter + "/147")},
            {"job-state", IPPValue::enumerationWithInt(3)}})});
  expectExample(message,
                "message version=1.1 code=0x0000 request-id=1\n" + kOperationText +
                    "01\t\"status-message\"\t41:\"successful-ok\"\n"
                    "group 02\n02\t\"job-id\"\t21:147\n02\t\"job-uri\"\t45:\"" +
                    kPrinter + "/147\"\n02\t\"job-state\"\t23:3\n",
                "0101 0000 00000001" + kOperationOctets +
                    "41 000e 'status-message' 000d 'successful-ok'"
                    "02 21 0006 'job-id' 0004 00000093"
                    "45 0007 'job-uri' 0030 '" +
                    kPrinter + "/147' 23 0009 'job-state' 0004 00000003 03");
}

TEST(RFC8010Examples, PrintJobResponseThatFails) {
  const IPPMessage message(
      0x040b, 1,
      {operation({{"status-message", IPPValue::textWithoutLanguage(
                                         "client-error-attributes-or-values-not-supported")}}),
       unsupported({{"copies", IPPValue::integerWithInt(20)},
                    {"sides", std::make_shared<const IPPUnsupported>()}})});
  expectExample(message,
                "message version=1.1 code=0x040b request-id=1\n" + kOperationText +
                    "01\t\"status-message\"\t41:"
                    "\"client-error-attributes-or-values-not-supported\"\n"
                    "group 05\n05\t\"copies\"\t21:20\n05\t\"sides\"\t10:-\n",
                "0101 040b 00000001" + kOperationOctets +
                    "41 000e 'status-message' 002f"
                    "'client-error-attributes-or-values-not-supported'"
                    "05 21 0006 'copies' 0004 00000014 10 0005 'sides' 0000 03");
}

TEST(RFC8010Examples, PrintJobResponseThatSucceedsWithAttributesIgnored) {
  const IPPMessage message(
      1, 1,
      {operation({{"status-message", IPPValue::textWithoutLanguage(
                                         "successful-ok-ignored-or-substituted-attributes")}}),
       unsupported({{"copies", IPPValue::integerWithInt(20)},
                    {"sides", std::make_shared<const IPPUnsupported>()}}),
       job({{"job-id", IPPValue::integerWithInt(147)},
            {"job-uri", uri(kPrinter + "/147")},
            {"job-state", IPPValue::enumerationWithInt(3)}})});
  expectExample(message,
                "message version=1.1 code=0x0001 request-id=1\n" + kOperationText +
                    "01\t\"status-message\"\t41:"
                    "\"successful-ok-ignored-or-substituted-attributes\"\n"
                    "group 05\n05\t\"copies\"\t21:20\n05\t\"sides\"\t10:-\n"
                    "group 02\n02\t\"job-id\"\t21:147\n02\t\"job-uri\"\t45:\"" +
                    kPrinter + "/147\"\n02\t\"job-state\"\t23:3\n",
                "0101 0001 00000001" + kOperationOctets +
                    "41 000e 'status-message' 002f"
                    "'successful-ok-ignored-or-substituted-attributes'"
                    "05 21 0006 'copies' 0004 00000014 10 0005 'sides' 0000"
                    "02 21 0006 'job-id' 0004 00000093 45 0007 'job-uri' 0030 '" +
                    kPrinter + "/147' 23 0009 'job-state' 0004 00000003 03");
}

TEST(RFC8010Examples, PrintURIRequest) {
  const IPPMessage message(0x0003, 1,
                           {operation({{"printer-uri", uri(kPrinter)},
                                       {"document-uri", uri("ftp://foo.example.com/foo")},
                                       {"job-name", IPPValue::nameWithoutLanguage("foobar")}}),
                            job({{"copies", IPPValue::integerWithInt(1)}})});
  expectExample(message,
                "message version=1.1 code=0x0003 request-id=1\n" + kOperationText + kPrinterText +
                    "01\t\"document-uri\"\t45:\"ftp://foo.example.com/foo\"\n"
                    "01\t\"job-name\"\t42:\"foobar\"\ngroup 02\n02\t\"copies\"\t21:1\n",
                "0101 0003 00000001" + kOperationOctets + kPrinterOctets +
                    "45 000c 'document-uri' 0019 'ftp://foo.example.com/foo'"
                    "42 0008 'job-name' 0006 'foobar' 02 21 0006 'copies' 0004 00000001 03");
}

TEST(RFC8010Examples, CreateJobRequest) {
  const IPPMessage message(0x0005, 1, {operation({{"printer-uri", uri(kPrinter)}})});
  expectExample(message,
                "message version=1.1 code=0x0005 request-id=1\n" + kOperationText + kPrinterText,
                "0101 0005 00000001" + kOperationOctets + kPrinterOctets + "03");
}

TEST(RFC8010Examples, CreateJobRequestWithCollectionAttributes) {
  const auto size =
      IPPValue::dictionaryWithObjectsAndKeys({IPPValue::integerWithInt(21000), "x-dimension",
                                              IPPValue::integerWithInt(29700), "y-dimension"});
  const auto media = IPPValue::dictionaryWithObjectsAndKeys(
      {size, "media-size", IPPValue::keyword("stationery"), "media-type"});
  const IPPMessage message(
      0x0005, 1, {operation({{"printer-uri", uri(kPrinter)}}), job({{"media-col", media}})});
  expectExample(message,
                "message version=1.1 code=0x0005 request-id=1\n" + kOperationText + kPrinterText +
                    "group 02\n02\t\"media-col\"\t34:{\"media-size\"=34:{\"x-dimension\"=21:21000;"
                    "\"y-dimension\"=21:29700};\"media-type\"=44:\"stationery\"}\n",
                "0101 0005 00000001" + kOperationOctets + kPrinterOctets +
                    "02 34 0009 'media-col' 0000"
                    "4a 0000 000a 'media-size' 34 0000 0000"
                    "4a 0000 000b 'x-dimension' 21 0000 0004 00005208"
                    "4a 0000 000b 'y-dimension' 21 0000 0004 00007404 37 0000 0000"
                    "4a 0000 000a 'media-type' 44 0000 000a 'stationery' 37 0000 0000 03");
}

TEST(RFC8010Examples, GetJobsRequest) {
  const std::vector<std::string> requested = {"job-id", "job-name", "document-format"};
  const IPPMessage message(
      0x000a, 123,
      {operation({{"printer-uri", uri(kPrinter)},
                  {"limit", IPPValue::integerWithInt(50)},
                  {"requested-attributes", IPPValue::arrayOfKeywords(requested)}})});
  expectExample(message,
                "message version=1.1 code=0x000a request-id=123\n" + kOperationText + kPrinterText +
                    "01\t\"limit\"\t21:50\n01\t\"requested-attributes\"\t44:\"job-id\"\t"
                    "44:\"job-name\"\t44:\"document-format\"\n",
                "0101 000a 0000007b" + kOperationOctets + kPrinterOctets +
                    "21 0005 'limit' 0004 00000032"
                    "44 0014 'requested-attributes' 0006 'job-id' 44 0000 0008 'job-name'"
                    "44 0000 000f 'document-format' 03");
}

TEST(RFC8010Examples, GetJobsResponse) {
  const IPPMessage message(
      0, 123,
      {operation({{"status-message", IPPValue::textWithoutLanguage("successful-ok")}}),
       job({{"job-id", IPPValue::integerWithInt(147)},
            {"job-name", IPPValue::name("fou", "fr-ca")}}),
       job({}),
       job({{"job-id", IPPValue::integerWithInt(149)},
            {"job-name", IPPValue::name("isch guet", "de-CH")}})});
  expectExample(message,
                "message version=1.1 code=0x0000 request-id=123\n" + kOperationText +
                    "01\t\"status-message\"\t41:\"successful-ok\"\n"
                    "group 02\n02\t\"job-id\"\t21:147\n02\t\"job-name\"\t36:[\"fr-ca\"]\"fou\"\n"
                    "group 02\n"
                    "group 02\n02\t\"job-id\"\t21:149\n"
                    "02\t\"job-name\"\t36:[\"de-CH\"]\"isch guet\"\n",
                "0101 0000 0000007b" + kOperationOctets +
                    "41 000e 'status-message' 000d 'successful-ok'"
                    "02 21 0006 'job-id' 0004 00000093"
                    "36 0008 'job-name' 000c 0005 'fr-ca' 0003 'fou'"
                    "02 02 21 0006 'job-id' 0004 00000095"
                    "36 0008 'job-name' 0012 0005 'de-CH' 0009 'isch guet' 03");
}

}  // namespace
}  // namespace platen::test
