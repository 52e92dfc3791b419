// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <numeric>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPUnarchiver.h"
#include "tests/support/Coding.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"
#include "tests/support/PieceStream.h"

namespace platen::test {
namespace {

using ::testing::Each;
using ::testing::ThrowsMessage;

/// Answers every read with one and the same count, and fills what it can.
class FixedReader : public IPPBytesReader {
 public:
  explicit FixedReader(std::ptrdiff_t count) : count_(count) {}
  std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length) override {
    std::fill_n(destination, length, std::uint8_t{1});
    return count_;
  }

 private:
  std::ptrdiff_t count_;
};

constexpr std::string_view kMessage =
    "0101 0002 00000001 01"
    "47 <'attributes-charset'> <'utf-8'>"
    "44 <'requested-attributes'> <'job-id'> 44 <> <'job-name'>"
    "34 <'media-col'> <> 4a <> <'media-size'> 34 <> <>"
    "  4a <> <'x-dimension'> 21 <> <00005208> 37 <> <> 37 <> <>"
    "35 <'job-message'> <<'en'> <'ab'>>"
    "13 <'job-name'> <> 04 33 <'copies-supported'> <00000001 00000063> 03";

constexpr std::string_view kGroups =
    "group 01\n"
    "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
    "01\t\"requested-attributes\"\t44:\"job-id\"\t44:\"job-name\"\n"
    "01\t\"media-col\"\t34:{\"media-size\"=34:{\"x-dimension\"=21:21000}}\n"
    "01\t\"job-message\"\t35:[\"en\"]\"ab\"\n"
    "01\t\"job-name\"\t13:-\n"
    "group 04\n"
    "04\t\"copies-supported\"\t33:1..99\n";

// --- Reading exactly --------------------------------------------------------------------------

TEST(IPPUnarchiver, ReadsExactlyAsManyOctetsAsWereAskedFor) {
  const auto coder = unarchiverOf("01 02 03 04");
  std::array<std::uint8_t, 3> room{};
  EXPECT_EQ(coder->readData(room.data(), 3), 3U);
  EXPECT_EQ(hex(room), "01 02 03");
  EXPECT_EQ(coder->decodeByte(), 4);
}

TEST(IPPUnarchiver, FailsWithBothCountsWhenTheInputEndsEarlier) {
  const auto coder = unarchiverOf("01 02");
  std::array<std::uint8_t, 5> room{};
  EXPECT_THAT(
      [&] { coder->readData(room.data(), 5); },
      ThrowsMessage<InconsistentArchiveException>("Unexpected bytes read: 2 while requested: 5"));
}

TEST(IPPUnarchiver, FailsAtTheEndOfTheInput) {
  for (const auto& data : {std::make_shared<const Data>(), std::shared_ptr<const Data>()}) {
    const auto coder = IPPUnarchiver::initForReadingWithData(data);
    EXPECT_THAT([&] { coder->decodeByte(); }, ThrowsMessage<InconsistentArchiveException>(
                                                  "Unexpected bytes read: 0 while requested: 1"));
    EXPECT_THROW(coder->decodeInt16(), InconsistentArchiveException);
    EXPECT_THROW(coder->decodeInt32(), InconsistentArchiveException);
  }
}

TEST(IPPUnarchiver, FailsOnAReaderThatReportsAnError) {
  IPPUnarchiver coder(std::make_shared<FixedReader>(-1));
  EXPECT_THAT([&] { coder.decodeInt32(); }, ThrowsMessage<InconsistentArchiveException>(
                                                "Unexpected bytes read: -1 while requested: 4"));
}

TEST(IPPUnarchiver, ComparesTheLow32BitsOfTheCountAndNoMore) {
  IPPUnarchiver coder(std::make_shared<FixedReader>((std::ptrdiff_t{1} << 32) + 2));
  EXPECT_EQ(coder.decodeInt16(), 0x0101);
  EXPECT_THROW(coder.decodeByte(), InconsistentArchiveException);
}

TEST(IPPUnarchiver, FailsWhenAStreamIsMissing) {
  const auto coder = IPPUnarchiver::initForReadingWithStream(nullptr);
  EXPECT_THAT([&] { coder->decodeByte(); }, ThrowsMessage<InconsistentArchiveException>(
                                                "Unexpected bytes read: -1 while requested: 1"));
}

TEST(IPPUnarchiver, FailsOnADescriptorThatCannotBeRead) {
  const auto coder = IPPUnarchiver::initForReadingWithFileHandle(-1);
  EXPECT_THAT([&] { coder->decodeByte(); }, ThrowsMessage<InconsistentArchiveException>(
                                                "Unexpected bytes read: -1 while requested: 1"));
}

// --- Fields -----------------------------------------------------------------------------------

TEST(IPPUnarchiver, ReadsNothingForATypeThatItDoesNotKnow) {
  const auto coder = unarchiverOf("0102030405060708");
  std::uint64_t destination = 77;
  for (const char type : {'q', 'C', '\0'}) {
    coder->decodeValueOfType(type, &destination);
  }
  EXPECT_EQ(destination, 77U);
  EXPECT_EQ(coder->decodeByte(), 1);
}

TEST(IPPUnarchiver, GivesNothingForACountOfZero) {
  const auto coder = unarchiverOf("0000 07");
  EXPECT_TRUE(coder->decodeBytesWithReturnedLength().empty());
  EXPECT_EQ(coder->decodeByte(), 7);
}

TEST(IPPUnarchiver, ReadsTheOctetsBehindTheirCount) {
  const auto coder = unarchiverOf("0003 010203 <'x'>");
  EXPECT_EQ(hex(coder->decodeBytesWithReturnedLength()), "01 02 03");
  EXPECT_EQ(hex(coder->decodeBytesWithReturnedLength()), "78");
}

// The words speak of 65535; what is refused is everything above 32767.
TEST(IPPUnarchiver, RefusesACountOf0x8000AndAboveWithItsNegativeNumber) {
  EXPECT_THAT([] { unarchiverOf("8000")->decodeBytesWithReturnedLength(); },
              ThrowsMessage<InconsistentArchiveException>(
                  "Unexpected length decoded - it could not be more then 65535decoded: -32768"));
  EXPECT_THAT([] { unarchiverOf("ffff 01")->decodeASCIIString(); },
              ThrowsMessage<InconsistentArchiveException>(
                  "Unexpected length decoded - it could not be more then 65535decoded: -1"));
}

TEST(IPPUnarchiver, FailsWhenARunIsShorterThanItsCount) {
  EXPECT_THAT(
      [] { unarchiverOf("0005 'abc'")->decodeBytesWithReturnedLength(); },
      ThrowsMessage<InconsistentArchiveException>("Unexpected bytes read: 3 while requested: 5"));
}

TEST(IPPUnarchiver, LendsScratchMemoryThatOnlyGrows) {
  const auto coder = unarchiverOf("");
  std::uint8_t* const small = coder->cacheBufferOfLength(10);
  EXPECT_THAT(std::vector(small, small + 10), Each(0));
  std::fill_n(small, 10, std::uint8_t{9});
  EXPECT_EQ(coder->cacheBufferOfLength(4), small);
  EXPECT_EQ(coder->cacheBufferOfLength(10), small);
  EXPECT_EQ(*small, 9);
  std::uint8_t* const large = coder->cacheBufferOfLength(100'000);
  EXPECT_THAT(std::vector(large, large + 100'000), Each(0));
  EXPECT_EQ(coder->cacheBufferOfLength(10), large);
}

TEST(IPPUnarchiver, NeverDecodesAnObject) {
  EXPECT_EQ(unarchiverOf("01")->decodeObject(), nullptr);
}

TEST(IPPUnarchiver, HoldsItsReader) {
  const auto reader = std::make_shared<FixedReader>(1);
  IPPUnarchiver coder(reader);
  EXPECT_EQ(coder.reader(), reader);
  EXPECT_EQ(coder.naturalLanguageEncoding(), TextEncoding::utf8());
  EXPECT_FALSE(coder.isAtEnd());
}

// --- Values and attributes --------------------------------------------------------------------

TEST(IPPUnarchiver, MakesAValueOfTheClassThatTheCurrentTagNames) {
  const auto coder = unarchiverOf("21 <00000007> 44 <'none'>");
  coder->decodeIPPTag();
  EXPECT_EQ(coder->decodeIPPValue()->description(), "'7' of integer");
  coder->decodeIPPTag();
  EXPECT_EQ(coder->decodeIPPValue()->description(), "'none' of keyword");
}

TEST(IPPUnarchiver, MakesAPlainValueOfAnUnknownTagAndReadsNothing) {
  const auto coder = unarchiverOf("7e <'abc'>");
  coder->decodeIPPTag();
  EXPECT_EQ(coder->decodeIPPValue()->className(), "IPPValue");
  EXPECT_EQ(coder->decodeInt16(), 3);
}

TEST(IPPUnarchiver, ReadsTheNameAndTheValueOfARecord) {
  const auto coder = unarchiverOf("21 <'copies'> <00000002> 21 <> <00000003>");
  coder->decodeIPPTag();
  EXPECT_EQ(coder->decodeIPPAttribute()->description(), "copies = '2' of integer");
  coder->decodeIPPTag();
  const auto nameless = coder->decodeIPPAttribute();
  EXPECT_FALSE(nameless->name());
  EXPECT_EQ(nameless->ippValue()->intValue(), 3);
}

TEST(IPPUnarchiver, TakesTheTextEncodingFromACharsetName) {
  const auto coder = unarchiverOf("");
  const std::vector<std::pair<std::string, TextEncoding>> table = {
      {"iso-8859-1", TextEncoding::latin1()},
      {"utf-8", TextEncoding::utf8()},
      {"ISO-8859-1", TextEncoding::latin1()},
      {"us-ascii", TextEncoding::ascii()},
      {"nonesuch", TextEncoding::utf8()},
      {"latin1", TextEncoding::latin1()},
      {"", TextEncoding::utf8()},
      {"iso_8859-1:1987", TextEncoding::latin1()},
      {"utf-7", TextEncoding::utf8()}};
  for (const auto& [charset, encoding] : table) {
    coder->installCharsetArrived(charset);
    EXPECT_EQ(coder->naturalLanguageEncoding(), encoding) << charset;
  }
}

// --- Sources ----------------------------------------------------------------------------------

TEST(IPPUnarchiver, IsAtEndOnceTheEndOfAttributesTagWasRead) {
  const auto coder = unarchiverOf("01 03 04");
  EXPECT_TRUE(coder->decodeIPPGroups());
  EXPECT_EQ(coder->currentTag(), 3);
  EXPECT_TRUE(coder->isAtEnd());
  EXPECT_EQ(coder->decodeByte(), 4);
}

TEST(IPPUnarchiver, LeavesItsReaderRightBehindTheGroups) {
  const auto coder = unarchiverOf("01 21 <'copies'> <00000002> 03 'document'");
  EXPECT_TRUE(coder->decodeIPPGroups());
  EXPECT_EQ(hex(coder->reader()->window()), hexOf("'document'"));
}

std::string textOf(const std::shared_ptr<IPPMessage>& message) {
  return message == nullptr ? "none" : messageText(*message, 0);
}

std::string expectedText() {
  return "message version=1.1 code=0x0002 request-id=1\n" + std::string(kGroups);
}

TEST(IPPUnarchiver, LeavesAStreamRightBehindTheMessage) {
  for (const bool lends : {false, true}) {
    Data data = octets(kMessage);
    const std::size_t length = data.size();
    data.insert(data.end(), {'d', 'a', 't', 'a'});
    const auto stream = PieceStream::ofPieces(data, 1'000'000);
    stream->setLending(lends);
    EXPECT_EQ(textOf(IPPMessage::initWithStream(stream)), expectedText());
    EXPECT_EQ(stream->position(), length) << lends;
  }
}

TEST(IPPUnarchiver, LeavesEachKindOfStreamRightBehindTheMessage) {
  Data data = octets(kMessage);
  data.insert(data.end(), {'d', 'a', 't', 'a'});
  const auto stream = InputStream::withData(data);
  stream->open();
  EXPECT_EQ(textOf(IPPMessage::initWithStream(stream)), expectedText());
  std::array<std::uint8_t, 16> rest{};
  ASSERT_EQ(stream->read(rest.data(), rest.size()), 4);
  EXPECT_EQ(hex(Bytes(rest).first(4)), hexOf("'data'"));
}

TEST(IPPUnarchiver, LeavesAPipeRightBehindTheMessage) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  Data data = octets(kMessage);
  data.insert(data.end(), {'d', 'a', 't', 'a'});
  ASSERT_EQ(write(ends[1], data.data(), data.size()), static_cast<ssize_t>(data.size()));
  EXPECT_EQ(textOf(IPPMessage::initWithFileHandle(ends[0])), expectedText());
  std::array<std::uint8_t, 16> rest{};
  EXPECT_EQ(read(ends[0], rest.data(), rest.size()), 4);
  close(ends[0]);
  close(ends[1]);
}

TEST(IPPUnarchiver, LeavesTheOffsetOfAFileRightBehindTheMessage) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  const int descriptor = fileno(file);
  Data data = octets(kMessage);
  const auto length = static_cast<off_t>(data.size());
  data.insert(data.end(), 5000, std::uint8_t{'d'});
  ASSERT_EQ(write(descriptor, data.data(), data.size()), static_cast<ssize_t>(data.size()));
  ASSERT_EQ(lseek(descriptor, 0, SEEK_SET), 0);
  EXPECT_EQ(textOf(IPPMessage::initWithFileHandle(descriptor)), expectedText());
  EXPECT_EQ(lseek(descriptor, 0, SEEK_CUR), length);
  std::fclose(file);
}

// --- Pieces -----------------------------------------------------------------------------------

/// Where the fields of the message end: each field is one read.
std::set<std::size_t> fieldEnds() {
  const auto stream = PieceStream::ofPieces(octets(kMessage), 1'000'000);
  EXPECT_NE(IPPMessage::initWithStream(stream), nullptr);
  std::set<std::size_t> ends;
  std::size_t position = 0;
  for (const std::size_t request : stream->requests()) {
    position += request;
    ends.insert(position);
  }
  return ends;
}

TEST(IPPUnarchiver, ReadsEachFieldInOneReadOfExactlyItsLength) {
  const auto stream = PieceStream::ofPieces(octets("0101 0002 00000001 01 21 <'copies'> "
                                                   "<00000002> 03"),
                                            1'000'000);
  EXPECT_NE(IPPMessage::initWithStream(stream), nullptr);
  EXPECT_THAT(stream->requests(), ::testing::ElementsAre(1, 1, 2, 4, 1, 1, 2, 6, 2, 4, 1));
}

TEST(IPPUnarchiver, DecodesAStreamWhosePiecesEndWithFields) {
  const std::set<std::size_t> ends = fieldEnds();
  for (const bool lends : {false, true}) {
    const auto stream = std::make_shared<PieceStream>(
        octets(kMessage), [&](std::size_t position) { return ends.contains(position); });
    stream->setLending(lends);
    EXPECT_EQ(textOf(IPPMessage::initWithStream(stream)), expectedText());
  }
}

// No read is made anew: a stream that gives less than a field fails the decoding.
TEST(IPPUnarchiver, FailsExactlyWhereOneCutGoesThroughAField) {
  const std::set<std::size_t> ends = fieldEnds();
  const Data data = octets(kMessage);
  for (const bool lends : {false, true}) {
    for (std::size_t cut = 1; cut < data.size(); ++cut) {
      const auto stream = std::make_shared<PieceStream>(
          data, [cut](std::size_t position) { return position == cut; });
      stream->setLending(lends);
      EXPECT_EQ(textOf(IPPMessage::initWithStream(stream)),
                ends.contains(cut) ? expectedText() : "none")
          << cut << " " << lends;
    }
  }
}

TEST(IPPUnarchiver, FailsOnPiecesOfOneLengthThatCutAField) {
  const std::set<std::size_t> ends = fieldEnds();
  for (const bool lends : {false, true}) {
    for (const std::size_t length : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 16U, 31U, 1000U}) {
      bool cutsField = false;
      for (std::size_t cut = length; cut < *ends.rbegin(); cut += length) {
        cutsField = cutsField || !ends.contains(cut);
      }
      const auto stream = PieceStream::ofPieces(octets(kMessage), length);
      stream->setLending(lends);
      EXPECT_EQ(textOf(IPPMessage::initWithStream(stream)), cutsField ? "none" : expectedText())
          << length;
    }
  }
}

TEST(IPPUnarchiver, FailsOnAValueOf100OctetsThatArrivesInTwoPieces) {
  const std::string head = "0101 0002 00000001 02 41 <'job-message'> ";
  const Data data = octets(head + "<'" + std::string(100, 'x') + "'> 03");
  for (const std::size_t cut : {octets(head).size() + 2, octets(head).size() + 52}) {
    const auto stream = std::make_shared<PieceStream>(
        data, [cut](std::size_t position) { return position == cut; });
    EXPECT_EQ(IPPMessage::initWithStream(stream) != nullptr, cut == octets(head).size() + 2);
  }
}

/// A stream that lends nothing and raises at its first read, as an application's own may.
class RaisingStream : public PieceStream {
 public:
  RaisingStream() : PieceStream({}, [](std::size_t) { return false; }) {}
  std::ptrdiff_t read(std::uint8_t*, std::size_t) override {
    throw std::runtime_error("the source is gone");
  }
  bool getBuffer(Bytes&) override { throw std::runtime_error("the source is gone"); }
};

TEST(IPPUnarchiver, GivesNoMessageWhenAStreamRaises) {
  EXPECT_EQ(IPPMessage::initWithStream(std::make_shared<RaisingStream>()), nullptr);
}

}  // namespace
}  // namespace platen::test
