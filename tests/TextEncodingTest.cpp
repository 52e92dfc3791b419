// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platen/TextEncoding.h"
#include "platform/ICUConverter.h"
#include "platform/Utf8.h"
#include "tests/support/AllocationCount.h"

namespace platen {
namespace {

using namespace std::string_view_literals;

Bytes bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TextEncoding encodingOf(std::string_view name) {
  const auto encoding = TextEncoding::forIANACharSetName(name);
  EXPECT_TRUE(encoding) << name;
  return encoding.value_or(TextEncoding());
}

struct Vector {
  std::string_view charset;
  std::string_view octets;
  std::string_view utf8;
};

constexpr Vector kVectors[] = {
    {"us-ascii", "printer-state\0\x7F"sv, "printer-state\0\x7F"sv},
    {"utf-8", "Gr\xC3\xBC\xC3\x9F\xE2\x82\xAC\xF0\x9F\x96\xA8"sv, "Grüß€🖨"sv},
    {"utf-8", "\xEF\xBB\xBFx"sv, "\uFEFFx"sv},
    {"iso-8859-1", "\0\x7F\x80\x9F\xA0\xE9\xFF"sv, "\0\x7F\u0080\u009F\u00A0éÿ"sv},
    {"iso-8859-2", "\xA3\xF3\x64\xBC"sv, "Łódź"sv},
    {"iso-8859-5", "\xBF\xE0\xD8\xDD\xE2\xD5\xE0 1"sv, "Принтер 1"sv},
    {"iso-8859-15", "\xA4 5"sv, "€ 5"sv},
    {"windows-1252", "\x80\x93x\x94\xE9"sv, "€“x”é"sv},
    {"windows-1251", "\xCF\xF0\xE8"sv, "При"sv},
    {"windows-874", "\xA1\xD4"sv, "กิ"sv},
    {"koi8-r", "\xF0\xD2\xC9\xCE\xD4\xC5\xD2"sv, "Принтер"sv},
    {"shift_jis", "\x83\x76\x83\x8A\x83\x93\x83\x5E A\xB1"sv, "プリンタ Aｱ"sv},
    {"euc-jp", "\xA5\xD7\xA5\xEA\xA5\xF3\xA5\xBF A\x8E\xB1"sv, "プリンタ Aｱ"sv},
    {"gb18030", "\xB4\xF2\xD3\xA1\xBB\xFA\x90\x30\x81\x30"sv, "打印机\U00010000"sv},
    {"gb2312", "\xB4\xF2\xD3\xA1"sv, "打印"sv},
    {"big5", "\xA6\x4C\xAA\xED\xBE\xF7"sv, "印表機"sv},
    {"euc-kr", "\xC7\xC1\xB8\xB0\xC5\xCD"sv, "프린터"sv},
    {"utf-16be", "\0A\0\0 \xAC\xD8\x3D\xDD\xA8"sv, "A\0€🖨"sv},
    {"utf-16le", "A\0\xAC \x3D\xD8\xA8\xDD"sv, "A€🖨"sv},
    {"utf-32be", "\0\0\0A\0\1\xF5\xA8"sv, "A🖨"sv},
    {"ibm037", "\xC8\x85\x93\x93\x96"sv, "Hello"sv},
};

TEST(TextEncoding, ConvertsInBothDirections) {
  for (const auto& [charset, octets, utf8] : kVectors) {
    const TextEncoding encoding = encodingOf(charset);
    EXPECT_EQ(encoding.decode(bytesOf(octets)), utf8) << charset;
    EXPECT_EQ(encoding.encode(utf8), octets) << charset;
  }
}

TEST(TextEncoding, SaysWhatNeedsNoConversion) {
  for (const auto& [charset, octets, utf8] : kVectors) {
    EXPECT_EQ(encodingOf(charset).isIdentity(bytesOf(octets)), octets == utf8) << charset;
  }
  for (const auto* charset : {"us-ascii", "utf-8", "iso-8859-1", "shift_jis", "gb18030"}) {
    EXPECT_TRUE(encodingOf(charset).isIdentity(bytesOf("printer-name \\~\r\n"))) << charset;
    EXPECT_TRUE(encodingOf(charset).isIdentity({})) << charset;
  }
  EXPECT_FALSE(encodingOf("utf-16be").isIdentity(bytesOf("AA")));
  EXPECT_FALSE(encodingOf("ibm037").isIdentity(bytesOf("AA")));
}

struct Refused {
  std::string_view charset;
  std::string_view octets;
};

TEST(TextEncoding, RefusesOctetsThatStandForNothing) {
  constexpr Refused kRefused[] = {
      {"us-ascii", "a\x80"},
      {"utf-8", "\xC0\x80"},          // an overlong form
      {"utf-8", "\xED\xA0\x80"},      // a surrogate
      {"utf-8", "\xF4\x90\x80\x80"},  // above U+10FFFF
      {"iso-8859-3", "a\xA5"},
      {"shift_jis", "\x83\x20"},
      {"shift_jis", "a\xFF"},
      {"euc-jp", "\xA5\x41"},
      {"gb18030", "\x81\x30\x81\x41"},
      {"big5", "\xA6\x20"},
      {"euc-kr", "\xC7\x20"},
      {"utf-16be", "\xDC\x00\x00\x41"sv},  // the second half of a pair first
      {"utf-16be", "\xD8\x00\x00\x41"sv},  // the first half alone
      {"utf-32be", "\x00\x11\x00\x00"sv},
      {"utf-32be", "\x00\x00\xD8\x00"sv},
  };
  for (const auto& [charset, octets] : kRefused) {
    EXPECT_EQ(encodingOf(charset).decode(bytesOf(octets)), std::nullopt)
        << charset << " " << testing::PrintToString(octets);
    EXPECT_FALSE(encodingOf(charset).isIdentity(bytesOf(octets)));
  }
}

TEST(TextEncoding, RefusesTextThatIsCutWithinACharacter) {
  constexpr Refused kWhole[] = {
      {"utf-8", "\xF0\x9F\x96\xA8"sv},
      {"shift_jis", "\x83\x76"sv},
      {"euc-jp", "\x8F\xB0\xA1"sv},
      {"gb18030", "\x90\x30\x81\x30"sv},
      {"big5", "\xA6\x4C"sv},
      {"euc-kr", "\xC7\xC1"sv},
      {"utf-16be", "\xD8\x3D\xDD\xA8"sv},
      {"utf-32le", "\xA8\xF5\x01\x00"sv},
  };
  for (const auto& [charset, octets] : kWhole) {
    const TextEncoding encoding = encodingOf(charset);
    EXPECT_TRUE(encoding.decode(bytesOf(octets))) << charset;
    for (std::size_t length = 1; length < octets.size(); ++length) {
      EXPECT_EQ(encoding.decode(bytesOf(octets.substr(0, length))), std::nullopt)
          << charset << " cut at " << length;
    }
  }
}

TEST(TextEncoding, RefusesCharactersThatTheCharsetLacks) {
  constexpr Vector kLacking[] = {
      {"us-ascii", "", "caf\u00E9"},   {"iso-8859-1", "", "5 \u20AC"},
      {"iso-8859-1", "", "\u0100"},    {"iso-8859-5", "", "\u00E9"},
      {"windows-1252", "", "\u0416"},  {"koi8-r", "", "\u20AC"},
      {"shift_jis", "", "\U0001F5A8"}, {"euc-jp", "", "\U0001F5A8"},
      {"big5", "", "\u0E01"},          {"gb2312", "", "\U00010000"},
      {"windows-1252", "", "\uFF21"},  {"iso-8859-2", "", "x\uFFFD"},
  };
  for (const auto& [charset, unused, utf8] : kLacking) {
    EXPECT_EQ(encodingOf(charset).encode(utf8), std::nullopt) << charset << " " << utf8;
  }
}

TEST(TextEncoding, LeavesNoCharacterOutThoughUnicodeCallsItIgnorable) {
  // A soft hyphen, a joiner, a variation selector, a word joiner, a byte-order mark, a tag.
  for (const auto* character : {"\u00AD", "\u200D", "\uFE0F", "\u2060", "\uFEFF", "\U000E0041"}) {
    const std::string text = std::string("a") + character + "b";
    for (const auto* charset : {"us-ascii", "shift_jis", "koi8-r", "big5", "gbk", "tis-620"}) {
      EXPECT_EQ(encodingOf(charset).encode(text), std::nullopt) << charset << " " << text;
    }
    EXPECT_EQ(encodingOf("gb18030").decode(bytesOf(*encodingOf("gb18030").encode(text))), text);
  }
}

TEST(TextEncoding, RefusesToEncodeWhatIsNotUtf8) {
  for (const auto* charset : {"us-ascii", "utf-8", "iso-8859-1", "koi8-r", "shift_jis", "gb18030",
                              "utf-16be", "utf-32le", "cesu-8"}) {
    for (const auto* text : {"\xFF", "a\xC3",
                             "\xE2\x82"
                             "b",
                             "\xF4\x90\x80\x80", "\xC0\x80", "\xED\xA0\x80"}) {
      EXPECT_EQ(encodingOf(charset).encode(text), std::nullopt) << charset;
    }
  }
}

TEST(TextEncoding, ConvertsEmptyTextToEmptyText) {
  for (const auto* charset : {"us-ascii", "utf-8", "iso-8859-1", "shift_jis", "utf-16"}) {
    EXPECT_EQ(encodingOf(charset).encode({}), "") << charset;
    EXPECT_EQ(encodingOf(charset).decode({}), "") << charset;
  }
}

TEST(TextEncoding, KeepsZeroOctetsInTheMiddle) {
  for (const auto* charset : {"us-ascii", "utf-8", "iso-8859-1", "shift_jis", "koi8-r", "big5"}) {
    EXPECT_EQ(encodingOf(charset).encode("a\0b"sv), "a\0b"sv) << charset;
    EXPECT_EQ(encodingOf(charset).decode(bytesOf("a\0b"sv)), "a\0b"sv) << charset;
  }
}

TEST(TextEncoding, OfNoByteOrderWritesAMarkAndTakesItOff) {
  const TextEncoding encoding = encodingOf("utf-16");
  EXPECT_EQ(encoding.decode(bytesOf("\xFE\xFF\0A"sv)), "A");
  EXPECT_EQ(encoding.decode(bytesOf("\xFF\xFE\x41\0"sv)), "A");
  EXPECT_EQ(encoding.decode(bytesOf("\0A"sv)), "A");  // RFC 2781 §4.3
  const auto octets = encoding.encode("€");
  ASSERT_TRUE(octets);
  EXPECT_EQ(octets->size(), 4U);
  EXPECT_EQ(encoding.decode(bytesOf(*octets)), "€");
}

TEST(TextEncoding, ConvertsTextLongerThanItsPieces) {
  // Every offset of a character against the end of a piece and of the buffers within.
  for (const auto* charset : {"shift_jis", "gb18030", "utf-16le", "koi8-r", "iso-8859-1"}) {
    const TextEncoding encoding = encodingOf(charset);
    const std::string unit = charset == "koi8-r"sv ? "Ж" : charset == "iso-8859-1"sv ? "é" : "タ";
    for (std::size_t before = 0; before < 4; ++before) {
      std::string text(before, 'x');
      while (text.size() < 200'000) text += unit;
      const auto octets = encoding.encode(text);
      ASSERT_TRUE(octets) << charset;
      EXPECT_EQ(encoding.decode(bytesOf(*octets)), text) << charset;
    }
  }
}

TEST(TextEncoding, NamesAreTakenInAnyLetterCaseAndUnderEveryAlias) {
  EXPECT_EQ(encodingOf("UTF-8"), TextEncoding::utf8());
  EXPECT_EQ(encodingOf("csUTF8"), TextEncoding());
  for (const auto* name : {"US-ASCII", "us-ascii", "ASCII", "ansi_x3.4-1968", "iso646-us", "us"}) {
    EXPECT_EQ(encodingOf(name), TextEncoding::ascii()) << name;
  }
  for (const auto* name :
       {"ISO-8859-1", "iso-8859-1", "Latin1", "ISO_8859-1:1987", "l1", "cp819"}) {
    EXPECT_EQ(encodingOf(name), TextEncoding::latin1()) << name;
  }
  EXPECT_EQ(encodingOf("ms_kanji"), encodingOf("Shift_JIS"));
  EXPECT_EQ(encodingOf("csEUCPkdFmtJapanese"), encodingOf("EUC-JP"));
  EXPECT_EQ(encodingOf("cswindows1252"), encodingOf("Windows-1252"));
  EXPECT_NE(encodingOf("windows-1252"), TextEncoding::latin1());
  EXPECT_NE(encodingOf("euc-jp"), encodingOf("shift_jis"));
}

TEST(TextEncoding, NamesThatAreNotRegisteredGiveNothing) {
  for (const auto name : {""sv,
                          "nonesuch"sv,
                          "u_t-f 8"sv,
                          "utf8"sv,
                          "utf_8"sv,
                          "utf-8,version=3"sv,
                          "utf-8 "sv,
                          " utf-8"sv,
                          "utf-8\0"sv,
                          "utf-8\0x"sv,
                          "utf-8;x"sv,
                          "iso88591"sv,
                          "iso-08859-1"sv,
                          "iso 8859 1"sv,
                          "shift-jis"sv,
                          "sjis"sv,
                          "ibm-943_P15A-2003"sv,
                          "windows-1252,swaplfnl"sv,
                          "IMAP-mailbox-name"sv,
                          "LMBCS-1"sv,
                          "x11-compound-text"sv,
                          "UTF16_BigEndian"sv,
                          "-"sv,
                          "*"sv,
                          "../utf-8"sv}) {
    EXPECT_EQ(TextEncoding::forIANACharSetName(name), std::nullopt) << name;
  }
  EXPECT_EQ(TextEncoding::forIANACharSetName(std::string(1'000'000, 'a')), std::nullopt);
}

TEST(TextEncoding, StatefulCharsetsGiveNothing) {
  for (const auto* name : {"utf-7", "UNICODE-1-1-UTF-7", "SCSU", "BOCU-1", "csBOCU-1", "HZ-GB-2312",
                           "ISO-2022-JP", "csISO2022JP", "ISO-2022-JP-2", "JIS_Encoding",
                           "ISO-2022-KR", "ISO-2022-CN", "ISO-2022-CN-EXT"}) {
    EXPECT_EQ(TextEncoding::forIANACharSetName(name), std::nullopt) << name;
  }
}

TEST(TextEncoding, HasAPreferredNameThatLeadsBackToIt) {
  EXPECT_EQ(TextEncoding::utf8().name(), "UTF-8");
  EXPECT_EQ(TextEncoding::ascii().name(), "US-ASCII");
  EXPECT_EQ(TextEncoding::latin1().name(), "ISO-8859-1");
  EXPECT_EQ(encodingOf("csshiftjis").name(), "Shift_JIS");
  EXPECT_EQ(encodingOf("Extended_UNIX_Code_Packed_Format_for_Japanese").name(), "EUC-JP");
  EXPECT_EQ(encodingOf("CSWINDOWS874").name(), "windows-874");
  EXPECT_EQ(encodingOf("latin2").name(), "ISO-8859-2");
}

TEST(CharsetList, HoldsThePlacesThatTheEncodingsCountOn) {
  EXPECT_EQ(charsetOfIANAName("utf-8"), kUtf8Charset);
  EXPECT_EQ(charsetOfIANAName("us-ascii"), kAsciiCharset);
  EXPECT_EQ(charsetOfIANAName("iso-8859-1"), kLatin1Charset);
  ASSERT_GT(charsetCount(), 80U);
  std::set<std::string> names;
  for (std::uint32_t charset = 0; charset < charsetCount(); ++charset) {
    EXPECT_TRUE(names.insert(nameOfCharset(charset)).second) << nameOfCharset(charset);
    EXPECT_EQ(charsetOfIANAName(nameOfCharset(charset)), charset) << nameOfCharset(charset);
  }
}

TEST(CharsetList, NeverCallsAnOctetTheSameThatConversionChanges) {
  for (std::uint32_t charset = 0; charset < charsetCount(); ++charset) {
    std::string same;
    for (char octet = 0; octet >= 0 && octet < 127; ++octet) {
      if (isSameInUtf8(charset, std::string_view(&octet, 1))) same.push_back(octet);
    }
    EXPECT_EQ(convertedToUtf8(charset, same), same) << nameOfCharset(charset);
    EXPECT_EQ(convertedFromUtf8(charset, same), same) << nameOfCharset(charset);
  }
}

TEST(CharsetList, AgreesWithTheFastPathsOnEveryOctet) {
  for (int value = 0; value < 256; ++value) {
    const std::string octet(1, static_cast<char>(value));
    for (const TextEncoding encoding :
         {TextEncoding::utf8(), TextEncoding::ascii(), TextEncoding::latin1()}) {
      const auto charset = *charsetOfIANAName(encoding.name());
      const auto decoded = encoding.decode(bytesOf(octet));
      EXPECT_EQ(decoded, convertedToUtf8(charset, octet)) << encoding.name() << " " << value;
      if (decoded) {
        EXPECT_EQ(encoding.encode(*decoded), octet);
        EXPECT_EQ(convertedFromUtf8(charset, *decoded), octet);
      }
    }
  }
}

TEST(TextEncoding, CommonNamesAreFoundWithoutAllocation) {
  const AllocationCount count;
  for (const auto* name : {"utf-8", "UTF-8", "us-ascii", "US-ASCII", "iso-8859-1", "ISO-8859-1"}) {
    EXPECT_TRUE(TextEncoding::forIANACharSetName(name));
  }
  EXPECT_EQ(count.sinceThen(), 0U);
}

TEST(TextEncoding, ConvertsOnManyThreadsAtOnce) {
  std::array<int, 4> failures{};
  std::vector<std::thread> threads;
  for (int& failed : failures) {
    threads.emplace_back([&failed] {
      for (int round = 0; round < 200; ++round) {
        for (const auto& [charset, octets, utf8] : kVectors) {
          const auto encoding = TextEncoding::forIANACharSetName(charset);
          if (!encoding || encoding->decode(bytesOf(octets)) != utf8) ++failed;
          if (!encoding || encoding->encode(utf8) != octets) ++failed;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, (std::array<int, 4>{}));
}

}  // namespace
}  // namespace platen
