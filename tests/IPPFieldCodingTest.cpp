// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "platen/Exception.h"
#include "platen/IPPArchiver.h"
#include "platen/IPPMap.h"
#include "platen/IPPStringValue.h"
#include "tests/support/Coding.h"
#include "tests/support/KeyedTree.h"
#include "tests/support/Octets.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

/// What an archiver holds after `write` was given it.
std::string written(const std::function<void(IPPArchiver&)>& write) {
  IPPArchiver archiver(std::make_shared<Data>());
  write(archiver);
  return hex(*archiver.archiverData());
}

/// A sequential coder that knows nothing but the generic entry points, and notes their types.
class GeneralCoder : public IPPCoder {
 public:
  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return false; }
  void encodeValueOfType(char type, const void*) override { types += type; }
  void encodeBytes(const void*, std::size_t length) override {
    types += "[" + std::to_string(length) + "]";
  }
  void decodeValueOfType(char type, void*) override { types += type; }
  Bytes decodeBytesWithReturnedLength() override { return run; }

  std::string types;
  Data run;
};

/// A coder that knows nothing at all.
class BareCoder : public IPPCoder {
 public:
  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return false; }
};

TEST(IPPFieldCoding, WritesAndReadsAnOctetAsItIs) {
  for (const int value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
    const auto octet = static_cast<std::uint8_t>(value);
    EXPECT_EQ(written([&](IPPArchiver& coder) { coder.encodeByte(octet); }), hex(Data{octet}));
    EXPECT_EQ(unarchiverOf(hex(Data{octet}).c_str())->decodeByte(), octet);
  }
}

TEST(IPPFieldCoding, WritesAndReads16BitsMostSignificantOctetFirst) {
  const std::vector<std::pair<int, std::string>> table = {
      {0, "00 00"},  {11, "00 0b"},     {0x1234, "12 34"}, {32767, "7f ff"},
      {-1, "ff ff"}, {-32768, "80 00"}, {-32767, "80 01"}};
  for (const auto& [value, text] : table) {
    const auto number = static_cast<std::int16_t>(value);
    EXPECT_EQ(written([&](IPPArchiver& coder) { coder.encodeInt16(number); }), text);
    EXPECT_EQ(unarchiverOf(text)->decodeInt16(), value);
  }
}

TEST(IPPFieldCoding, WritesAndReads32BitsMostSignificantOctetFirst) {
  const std::vector<std::pair<std::int32_t, std::string>> table = {
      {0, "00 00 00 00"},         {7, "00 00 00 07"},  {0x12345678, "12 34 56 78"},
      {INT32_MAX, "7f ff ff ff"}, {-1, "ff ff ff ff"}, {INT32_MIN, "80 00 00 00"}};
  for (const auto& [value, text] : table) {
    EXPECT_EQ(written([&, number = value](IPPArchiver& coder) { coder.encodeInt32(number); }),
              text);
    EXPECT_EQ(unarchiverOf(text)->decodeInt32(), value);
  }
}

TEST(IPPFieldCoding, UsesTheGenericEntryPointsForEveryField) {
  GeneralCoder coder;
  coder.encodeByte(1);
  coder.encodeInt16(2);
  coder.encodeInt32(3);
  coder.encodeASCIIString("abcd");
  coder.encodeNaturalLanguageString(std::nullopt);
  EXPECT_EQ(coder.types, "csi[4][0]");
}

TEST(IPPFieldCoding, ReadsZeroFromACoderThatWroteNothing) {
  GeneralCoder coder;
  EXPECT_EQ(coder.decodeByte(), 0);
  EXPECT_EQ(coder.decodeInt16(), 0);
  EXPECT_EQ(coder.decodeInt32(), 0);
  EXPECT_EQ(coder.types, "csi");
}

/// A text beside its octets in an encoding.
struct EncodedText {
  TextEncoding encoding;
  std::string text;
  std::string field;
};

TEST(IPPFieldCoding, WritesAndReadsStringsInTheirEncoding) {
  const TextEncoding shiftJIS = TextEncoding::forIANACharSetName("Shift_JIS").value();
  const std::vector<EncodedText> table = {
      {TextEncoding::ascii(), "a", "0001 61"},
      {TextEncoding::ascii(), "copies", "0006 'copies'"},
      {TextEncoding::utf8(), "\u00e9", "0002 c3a9"},
      {TextEncoding::utf8(), "\U0001F5A8", "0004 f09f96a8"},
      {TextEncoding::latin1(), "\u00e9t\u00e9", "0003 e974e9"},
      {TextEncoding::latin1(), "plain", "<'plain'>"},
      {shiftJIS, "\u65e5\u672c", "0004 93fa967b"},
  };
  for (const EncodedText& row : table) {
    const auto write = [&](IPPArchiver& coder) { coder.encodeString(row.text, row.encoding); };
    EXPECT_EQ(written(write), hexOf(row.field));
    EXPECT_EQ(unarchiverOf(row.field)->decodeStringUsingEncoding(row.encoding).view(), row.text);
  }
}

TEST(IPPFieldCoding, WritesANonASCIICharacterInASCIIAsACountOfZeroAndNothingElse) {
  EXPECT_EQ(written([](IPPArchiver& coder) { coder.encodeASCIIString("caf\u00e9"); }), "00 00");
}

TEST(IPPFieldCoding, WritesWhatCannotBeConvertedAsACountOfZero) {
  const auto latin1 = [](IPPArchiver& coder) {
    coder.encodeString("\u20ac", TextEncoding::latin1());
  };
  EXPECT_EQ(written(latin1), "00 00");
  EXPECT_EQ(written([](IPPArchiver& coder) { coder.encodeOctetString("\xff"); }), "00 00");
}

TEST(IPPFieldCoding, WritesAnAbsentStringAndAnEmptyOneAsACountOfZero) {
  EXPECT_EQ(written([](IPPArchiver& coder) { coder.encodeASCIIString(std::nullopt); }), "00 00");
  EXPECT_EQ(written([](IPPArchiver& coder) { coder.encodeASCIIString(""); }), "00 00");
}

TEST(IPPFieldCoding, CutsAStringAtItsFirstZeroCharacter) {
  const std::string text("ab\0cd", 5);
  EXPECT_EQ(written([&](IPPArchiver& coder) { coder.encodeASCIIString(text); }), "00 02 61 62");
  const auto latin1 = [](IPPArchiver& coder) {
    coder.encodeString(std::string("\u00e9\0x", 4), TextEncoding::latin1());
  };
  EXPECT_EQ(written(latin1), "00 01 e9");
  const std::string zeroFirst(3, '\0');
  EXPECT_EQ(written([&](IPPArchiver& coder) { coder.encodeOctetString(zeroFirst); }), "00 00");
}

TEST(IPPFieldCoding, KeepsAZeroCharacterThatItReads) {
  EXPECT_EQ(unarchiverOf("0003 610062")->decodeASCIIString().view(), std::string("a\0b", 3));
}

TEST(IPPFieldCoding, ReadsACountOfZeroAsAnAbsentStringAndNotAsAnEmptyOne) {
  EXPECT_FALSE(unarchiverOf("0000")->decodeASCIIString().view());
  EXPECT_FALSE(unarchiverOf("0000")->decodeOctetString().view());
  EXPECT_FALSE(unarchiverOf("0000")->decodeNaturalLanguageString().view());
}

TEST(IPPFieldCoding, ReadsOctetsThatAreNotValidAsAnAbsentStringAndGoesOnBehindThem) {
  const auto coder = unarchiverOf("<ff> <c3> <'a' e9> 05");
  EXPECT_TRUE(coder->decodeASCIIString().isAbsent());
  EXPECT_TRUE(coder->decodeOctetString().isAbsent());
  EXPECT_TRUE(coder->decodeNaturalLanguageString().isAbsent());
  EXPECT_EQ(coder->decodeByte(), 5);
}

TEST(IPPFieldCoding, ReadsTagsFrom0x80UpAsNegativeNumbersAndNotesThem) {
  const auto coder = unarchiverOf("81 7f ff 03");
  EXPECT_EQ(coder->currentTag(), 0);
  for (const int tag : {-127, 127, -1, 3}) {
    EXPECT_EQ(coder->decodeIPPTag(), tag);
    EXPECT_EQ(coder->currentTag(), tag);
  }
}

TEST(IPPFieldCoding, ReadsATextInLatin1BackOnlyWithTheSameEncoding) {
  const auto write = [](IPPArchiver& coder) {
    coder.setNaturalLanguageEncoding(TextEncoding::latin1());
    EXPECT_EQ(coder.naturalLanguageEncoding(), TextEncoding::latin1());
    coder.encodeNaturalLanguageString("\u00e9t\u00e9");
  };
  EXPECT_EQ(written(write), "00 03 e9 74 e9");
  EXPECT_TRUE(unarchiverOf(written(write))->decodeNaturalLanguageString().isAbsent());
  const auto coder = unarchiverOf(written(write));
  coder->setNaturalLanguageEncoding(TextEncoding::latin1());
  EXPECT_EQ(coder->decodeNaturalLanguageString().view(), "\u00e9t\u00e9");
}

TEST(IPPFieldCoding, LeavesNamesAndOctetStringsAloneWhenTheNaturalLanguageEncodingChanges) {
  const auto write = [](IPPArchiver& coder) {
    coder.setNaturalLanguageEncoding(TextEncoding::latin1());
    coder.encodeOctetString("\u00e9");
    coder.encodeASCIIString("e");
  };
  EXPECT_EQ(written(write), "00 02 c3 a9 00 01 65");
}

TEST(IPPFieldCoding, WritesARunOver65535OctetsWholeBehindTheLowBitsOfItsCount) {
  const std::string text(70000, 'x');
  IPPArchiver archiver(std::make_shared<Data>());
  archiver.encodeASCIIString(text);
  const Data& data = *archiver.archiverData();
  ASSERT_EQ(data.size(), 70002U);
  EXPECT_EQ(hex(Bytes(data).first(3)), "11 70 78");
  EXPECT_EQ(data.back(), 'x');
}

TEST(IPPFieldCoding, ReadsRunsOf32767OctetsAndNoLongerOnes) {
  for (const std::size_t length : {32767U, 32768U}) {
    IPPArchiver archiver(std::make_shared<Data>());
    archiver.encodeASCIIString(std::string(length, 'x'));
    const auto coder = IPPUnarchiver::initForReadingWithData(archiver.archiverData());
    if (length == 32767U) {
      EXPECT_EQ(coder->decodeASCIIString().viewOrEmpty().size(), length);
    } else {
      EXPECT_THROW(coder->decodeASCIIString(), InconsistentArchiveException);
    }
  }
}

TEST(IPPFieldCoding, LeavesWhatOnlyADecoderOfMessagesKnowsToThat) {
  GeneralCoder coder;
  EXPECT_EQ(coder.naturalLanguageEncoding(), TextEncoding::utf8());
  coder.setNaturalLanguageEncoding(TextEncoding::latin1());
  EXPECT_EQ(coder.naturalLanguageEncoding(), TextEncoding::utf8());
  coder.setCurrentTag(5);
  EXPECT_EQ(coder.decodeObject(), nullptr);
  EXPECT_EQ(coder.decodeIPPAttribute(), nullptr);
  EXPECT_EQ(coder.decodeIPPValue(), nullptr);
  EXPECT_FALSE(coder.decodeIPPGroups());
}

TEST(IPPFieldCoding, CopiesTheTextsThatAGeneralCoderReads) {
  GeneralCoder coder;
  coder.run = octets("'text'");
  const Text text = coder.decodeASCIIString();
  coder.run = octets("'else'");
  EXPECT_EQ(text.view(), "text");
}

TEST(IPPFieldCoding, HasAGeneralCoderMakeEachObjectOnItsOwn) {
  GeneralCoder coder;
  const auto value = coder.make<IPPKeyword>("none");
  EXPECT_EQ(value->text(), "none");
  EXPECT_EQ(value.use_count(), 1);
  const IPPValue::Pointer values[] = {value, IPPValue::keyword("both")};
  EXPECT_EQ(coder.makeArray(values)->description(), "(none, both) of keyword");
  EXPECT_THAT([&] { static_cast<void>(coder.makeArray({})); },
              ThrowsMessage<RangeException>("Invalid parameter"));
}

TEST(IPPFieldCoding, HasAGeneralCoderUniteMembersOfTheSameNameInACollection) {
  GeneralCoder coder;
  IPPCoder::Member members[] = {{Text("a"), IPPValue::integerWithInt(1)},
                                {Text("b"), IPPValue::integerWithInt(2)},
                                {Text("a"), IPPValue::integerWithInt(3)}};
  const auto value = std::dynamic_pointer_cast<const IPPMap>(coder.makeMap(members));
  ASSERT_EQ(value->size(), 2U);
  EXPECT_EQ(value->nameAt(0), "a");
  EXPECT_EQ(value->valueAt(0).intValue(), 3);
  EXPECT_EQ(value->valueAt(1).intValue(), 2);
}

TEST(IPPFieldCoding, CountsCollectionsWithinEachOtherUpTo64) {
  GeneralCoder coder;
  std::vector<std::unique_ptr<IPPCoder::CollectionScope>> scopes;
  for (int depth = 0; depth < 64; ++depth) {
    scopes.push_back(std::make_unique<IPPCoder::CollectionScope>(coder));
  }
  EXPECT_THROW(IPPCoder::CollectionScope scope(coder), InconsistentArchiveException);
  scopes.pop_back();
  EXPECT_NO_THROW(IPPCoder::CollectionScope scope(coder));
}

TEST(IPPFieldCoding, RefusesTheSequentialFaceWhereThereIsNone) {
  BareCoder bare;
  std::uint32_t room = 0;
  EXPECT_THROW(bare.encodeByte(1), InvalidArgumentException);
  EXPECT_THROW(bare.encodeASCIIString("a"), InvalidArgumentException);
  EXPECT_THROW(bare.decodeValueOfType('i', &room), InvalidArgumentException);
  EXPECT_THROW(bare.decodeInt32(), InvalidArgumentException);
  EXPECT_THROW(bare.decodeBytesWithReturnedLength(), InvalidArgumentException);
}

TEST(IPPFieldCoding, RefusesToWriteNamedFieldsInASequence) {
  IPPArchiver coder(std::make_shared<Data>());
  EXPECT_FALSE(coder.allowsKeyedCoding());
  EXPECT_THROW(coder.encodeIntForKey(1, "key"), InvalidArgumentException);
  EXPECT_THROW(coder.encodeBoolForKey(true, "key"), InvalidArgumentException);
  EXPECT_THROW(coder.encodeStringForKey("text", "key"), InvalidArgumentException);
  EXPECT_THROW(coder.encodeRawValueForKey(1, "key"), InvalidArgumentException);
  EXPECT_THROW(coder.encodeObjectForKey(nullptr, "key"), InvalidArgumentException);
  EXPECT_THROW(coder.encodeObjectsForKey({}, "key"), InvalidArgumentException);
  EXPECT_THROW(coder.encodeNamedObjectsForKey({}, "key"), InvalidArgumentException);
  EXPECT_TRUE(coder.archiverData()->empty());
}

TEST(IPPFieldCoding, RefusesToReadNamedFieldsFromASequence) {
  const auto coder = unarchiverOf("00 01 02 03");
  EXPECT_FALSE(coder->allowsKeyedCoding());
  EXPECT_THROW(coder->decodeIntForKey("key"), InvalidArgumentException);
  EXPECT_THROW(coder->decodeBoolForKey("key"), InvalidArgumentException);
  EXPECT_THROW(coder->decodeStringForKey("key"), InvalidArgumentException);
  EXPECT_THROW(coder->decodeRawValueForKey("key"), InvalidArgumentException);
  EXPECT_THROW(coder->decodeObjectForKey("key"), InvalidArgumentException);
  EXPECT_THROW(coder->decodeObjectsForKey("key"), InvalidArgumentException);
  EXPECT_THROW(coder->decodeNamedObjectsForKey("key"), InvalidArgumentException);
}

}  // namespace
}  // namespace platen::test
