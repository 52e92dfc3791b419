// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "platen/URL.h"
#include "tests/support/AllocationCount.h"

namespace platen {
namespace {

using Text = std::optional<std::string_view>;
constexpr std::nullopt_t kNone = std::nullopt;

struct PartsCase {
  std::string_view text;
  Text scheme;
  Text user;
  Text host;
  bool isBracketed;
  std::optional<int> port;
  std::string_view escapedPath;
  std::string_view path;
  std::string_view lastPathComponent;
  Text query;
  Text fragment;
};

void PrintTo(const PartsCase& parts, std::ostream* out) { *out << parts.text; }

const PartsCase kPartsCases[] = {
    {"ipp://printer.local:631/ipp/print", "ipp", kNone, "printer.local", false, 631, "/ipp/print",
     "/ipp/print", "print", kNone, kNone},
    {"ipp://host", "ipp", kNone, "host", false, kNone, "", "", "", kNone, kNone},
    {"ipp://host/", "ipp", kNone, "host", false, kNone, "/", "/", "/", kNone, kNone},
    {"ipp://host//", "ipp", kNone, "host", false, kNone, "//", "/", "/", kNone, kNone},
    {"ipp://host/a/", "ipp", kNone, "host", false, kNone, "/a/", "/a", "a", kNone, kNone},
    {"ipp://host/a//", "ipp", kNone, "host", false, kNone, "/a//", "/a/", "a", kNone, kNone},
    {"ipp://host/a//b", "ipp", kNone, "host", false, kNone, "/a//b", "/a//b", "b", kNone, kNone},
    {"IPP://Host/%41%2fb%20c", "IPP", kNone, "Host", false, kNone, "/%41%2fb%20c", "/A/b c", "b c",
     kNone, kNone},
    {"ipp://host/%C3%A9%00%FF", "ipp", kNone, "host", false, kNone, "/%C3%A9%00%FF",
     std::string_view("/\xC3\xA9\0\xFF", 5), std::string_view("\xC3\xA9\0\xFF", 4), kNone, kNone},
    {"http://u:p@h:8080/q?a=/b?c#f/?", "http", "u", "h", false, 8080, "/q", "/q", "q", "a=/b?c",
     "f/?"},
    {"ipp://u%40v@h/", "ipp", "u%40v", "h", false, kNone, "/", "/", "/", kNone, kNone},
    {"ipp://@h/", "ipp", "", "h", false, kNone, "/", "/", "/", kNone, kNone},
    {"ipp://h?q/r", "ipp", kNone, "h", false, kNone, "", "", "", "q/r", kNone},
    {"ipp://h#f", "ipp", kNone, "h", false, kNone, "", "", "", kNone, "f"},
    {"ipp://h/?#", "ipp", kNone, "h", false, kNone, "/", "/", "/", "", ""},
    {"ipp://h:/x", "ipp", kNone, "h", false, kNone, "/x", "/x", "x", kNone, kNone},
    {"ipp://h:0/", "ipp", kNone, "h", false, 0, "/", "/", "/", kNone, kNone},
    {"ipp://h:000631/", "ipp", kNone, "h", false, 631, "/", "/", "/", kNone, kNone},
    {"ipp://h:65535", "ipp", kNone, "h", false, 65535, "", "", "", kNone, kNone},
    {"ipp:///x", "ipp", kNone, "", false, kNone, "/x", "/x", "x", kNone, kNone},
    {"ipp://:80/x", "ipp", kNone, "", false, 80, "/x", "/x", "x", kNone, kNone},
    {"ipp://a_b-c.d~e/", "ipp", kNone, "a_b-c.d~e", false, kNone, "/", "/", "/", kNone, kNone},
    {"ipp://192.168.0.7:631/", "ipp", kNone, "192.168.0.7", false, 631, "/", "/", "/", kNone,
     kNone},
    {"ipp://[::1]:631/x", "ipp", kNone, "::1", true, 631, "/x", "/x", "x", kNone, kNone},
    {"ipp://u@[2001:db8::1.2.3.4]", "ipp", "u", "2001:db8::1.2.3.4", true, kNone, "", "", "", kNone,
     kNone},
    {"ipp://[v1.fe80::1+eth0]/", "ipp", kNone, "v1.fe80::1+eth0", true, kNone, "/", "/", "/", kNone,
     kNone},
    {"ipp://[fe80::1%25eth0]:631/ipp/print?a#b", "ipp", kNone, "fe80::1%25eth0", true, 631,
     "/ipp/print", "/ipp/print", "print", "a", "b"},
    {"ipp://u@[::%251]", "ipp", "u", "::%251", true, kNone, "", "", "", kNone, kNone},
    {"ipp://[fe80::1%25en%2d1~._-]/%25", "ipp", kNone, "fe80::1%25en%2d1~._-", true, kNone, "/%25",
     "/%", "%", kNone, kNone},
    {"//[fe80::1%25eth0]/x", kNone, kNone, "fe80::1%25eth0", true, kNone, "/x", "/x", "x", kNone,
     kNone},
    {"urn:uuid:4509a320-00a0", "urn", kNone, kNone, false, kNone, "uuid:4509a320-00a0",
     "uuid:4509a320-00a0", "uuid:4509a320-00a0", kNone, kNone},
    {"a+-.1:b", "a+-.1", kNone, kNone, false, kNone, "b", "b", "b", kNone, kNone},
    {"file:/a/b", "file", kNone, kNone, false, kNone, "/a/b", "/a/b", "b", kNone, kNone},
    {"ipp:", "ipp", kNone, kNone, false, kNone, "", "", "", kNone, kNone},
    {"//host/x", kNone, kNone, "host", false, kNone, "/x", "/x", "x", kNone, kNone},
    {"/printers/q", kNone, kNone, kNone, false, kNone, "/printers/q", "/printers/q", "q", kNone,
     kNone},
    {"printers/q?x", kNone, kNone, kNone, false, kNone, "printers/q", "printers/q", "q", "x",
     kNone},
    {"q", kNone, kNone, kNone, false, kNone, "q", "q", "q", kNone, kNone},
    {"a/b:c//d", kNone, kNone, kNone, false, kNone, "a/b:c//d", "a/b:c//d", "d", kNone, kNone},
    {"?q", kNone, kNone, kNone, false, kNone, "", "", "", "q", kNone},
    {"#f", kNone, kNone, kNone, false, kNone, "", "", "", kNone, "f"},
    {"/", kNone, kNone, kNone, false, kNone, "/", "/", "/", kNone, kNone},
};

class URLParts : public testing::TestWithParam<PartsCase> {};

TEST_P(URLParts, AreFoundAsWritten) {
  const PartsCase& expected = GetParam();
  const std::optional<URL> url = URL::parse(expected.text);
  ASSERT_TRUE(url);
  EXPECT_TRUE(URL::isValid(expected.text));
  EXPECT_EQ(url->absoluteString(), expected.text);
  EXPECT_EQ(url->scheme(), expected.scheme);
  EXPECT_EQ(url->user(), expected.user);
  EXPECT_EQ(url->host(), expected.host);
  EXPECT_EQ(url->hostIsBracketed(), expected.isBracketed);
  EXPECT_EQ(url->port(), expected.port);
  EXPECT_EQ(url->escapedPath(), expected.escapedPath);
  EXPECT_EQ(url->path(), expected.path);
  EXPECT_EQ(url->lastPathComponent(), expected.lastPathComponent);
  EXPECT_EQ(url->query(), expected.query);
  EXPECT_EQ(url->fragment(), expected.fragment);
}

/// A password, an empty port and a port's leading zeros are in no part.
bool isWhollyInItsParts(std::string_view text) {
  return text != "http://u:p@h:8080/q?a=/b?c#f/?" && text != "ipp://h:/x" &&
         text != "ipp://h:000631/";
}

std::string textFromParts(const URL& url) {
  const auto with = [](std::string_view before, Text part, std::string_view after) {
    return part ? std::string(before) + std::string(*part) + std::string(after) : "";
  };
  std::string text = with("", url.scheme(), ":");
  text += url.host() ? "//" : "";
  text += with("", url.user(), "@");
  text += url.hostIsBracketed() ? with("[", url.host(), "]") : with("", url.host(), "");
  text += url.port() ? ":" + std::to_string(*url.port()) : "";
  text += url.escapedPath();
  return text + with("?", url.query(), "") + with("#", url.fragment(), "");
}

TEST_P(URLParts, MakeUpTheTextAgain) {
  const URL url = *URL::parse(GetParam().text);
  EXPECT_EQ(textFromParts(url) == GetParam().text, isWhollyInItsParts(GetParam().text))
      << textFromParts(url);
}

INSTANTIATE_TEST_SUITE_P(Table, URLParts, testing::ValuesIn(kPartsCases));

const std::string_view kInvalidTexts[] = {
    "",
    " ",
    "ipp://h/a b",
    " ipp://h/",
    "ipp://h/\n",
    "ipp://h/\t",
    "ipp://h/\x7f",
    "ipp://h/\x80",
    "ipp://h\xC3\xA9/",
    std::string_view("ipp://h/a\0b", 11),
    std::string_view("ipp://h/\0", 9),
    "ipp://h/%",
    "ipp://h/%2",
    "ipp://h/%zz",
    "ipp://h/^",
    "ipp://h/{x}",
    "ipp://h/|",
    "ipp://h/\\",
    "ipp://h/\"",
    "ipp://h/<x>",
    "ipp://h/`",
    "ipp://h/[",
    "ipp://h?[",
    "ipp://h#a#b",
    "ipp://h:8x/",
    "ipp://h:-1/",
    "ipp://h:65536/",
    "ipp://h:99999999999999999999/",
    "ipp://h:1:2/",
    "ipp://u@v@h/",
    "ipp://[::1/",
    "ipp://::1]/",
    "ipp://[]/",
    "ipp://[1::2::3]/",
    "ipp://[1:2:3:4:5:6:7:8:9]/",
    "ipp://[::1]x/",
    "ipp://[v1.]/",
    "ipp://[fe80::1%eth0]/",
    "ipp://[fe80::1%25]/",
    "ipp://[fe80::1%25eth0/",
    "ipp://[fe80::1%25eth 0]/",
    "ipp://[fe80::1%25eth%0]/",
    "ipp://[fe80::1%25eth%2g]/",
    "ipp://[fe80::1%25eth/0]/",
    "ipp://[fe80::1%25[]/",
    "ipp://[fe80%25eth0]/",
    "ipp://[fe80::1@h%25eth0]/",
    "ipp://[v1.a%25eth0]/",
    "ipp://h/[fe80::1%25eth0]",
    "ipp://[fe80::1%25eth0]x/",
    "ipp://[fe80::1%25eth0]:65536/",
    "1a:b",
    ":x",
    ":",
    "%3A:b",
};

TEST(URL, RefusesWhatIsNoURIReference) {
  for (const std::string_view text : kInvalidTexts) {
    EXPECT_FALSE(URL::parse(text)) << text;
    EXPECT_FALSE(URL::isValid(text)) << text;
  }
}

TEST(URL, AgreesWithItsOwnCheckOnEveryPrefix) {
  const std::string_view text = "ipp://u:p@[fe80::1%25eth0]:65535/a%20b/?q=%41#f%7e";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    const std::string prefix(text.substr(0, length));
    const std::optional<URL> url = URL::parse(prefix);
    EXPECT_EQ(URL::isValid(prefix), url.has_value()) << prefix;
    if (url) {
      EXPECT_EQ(url->absoluteString(), prefix);
    }
  }
}

TEST(URL, TakesEveryOctetOfThePathOrRefusesIt) {
  const std::string_view allowed =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~!$&'()*+,;=:@/?#";
  for (int octet = 0; octet < 256; ++octet) {
    const std::string text = std::string("ipp://h/") + static_cast<char>(octet);
    const bool isAllowed = allowed.find(static_cast<char>(octet)) != std::string_view::npos;
    EXPECT_EQ(URL::parse(text).has_value(), isAllowed) << octet;
  }
}

TEST(URL, CopesWithVeryLongTexts) {
  for (const std::string_view piece : {"a", "/", "a/", "%41", "/%2F"}) {
    std::string text = "ipp://host/";
    while (text.size() < 1000000) {
      text += piece;
    }
    const std::optional<URL> url = URL::parse(text);
    ASSERT_TRUE(url) << piece;
    EXPECT_EQ(url->absoluteString(), text);
    EXPECT_EQ(url->escapedPath(), std::string_view(text).substr(10));
  }
}

TEST(URL, KeepsItsTextWhenTheCallersIsGone) {
  std::string text = "ipp://printer.local/ipp/print";
  const std::optional<URL> url = URL::parse(text);
  text.assign(text.size(), 'x');
  ASSERT_TRUE(url);
  EXPECT_EQ(url->absoluteString(), "ipp://printer.local/ipp/print");
}

TEST(URL, SharesItsTextWithItsCopies) {
  std::optional<URL> url = URL::parse("ipp://h/x");
  const URL copy = *url;
  const char* const text = url->absoluteString().data();
  url.reset();
  EXPECT_EQ(copy.absoluteString().data(), text);
  EXPECT_EQ(copy.absoluteString(), "ipp://h/x");
}

TEST(URL, TakesOneBlockOfMemoryAndNoneToBeChecked) {
  const std::string_view text = "ipp://u:p@printer.local:631/a/b/c/d/e/f/g/h?q#a-long-fragment";
  const AllocationCount checking;
  EXPECT_TRUE(URL::isValid(text));
  EXPECT_EQ(checking.sinceThen(), 0U);
  const AllocationCount parsing;
  const std::optional<URL> url = URL::parse(text);
  EXPECT_EQ(parsing.sinceThen(), 1U);
}

TEST(URL, IsEqualWhenTheTextIsLetterForLetter) {
  const URL url = *URL::parse("ipp://h/x");
  EXPECT_EQ(url, URL(url));
  EXPECT_EQ(url, *URL::parse("ipp://h/x"));
  for (const std::string_view other : {"IPP://h/x", "ipp://H/x", "ipp://h/%78", "ipp://h/x/"}) {
    EXPECT_NE(url, *URL::parse(other)) << other;
  }
}

TEST(URL, EscapesWhatAPathMayNotHold) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"", ""},
      {"/printers/q", "/printers/q"},
      {"/a b", "/a%20b"},
      {"/100%", "/100%25"},
      {"/%20", "/%2520"},
      {"/a?b#c[d]", "/a%3Fb%23c%5Bd%5D"},
      {"/\xC3\xA9\xFF\x7f", "/%C3%A9%FF%7F"},
      {std::string_view("/\0", 2), "/%00"},
      {"/-._~!$&'()*+,;=:@", "/-._~!$&'()*+,;=:@"},
      {"\"<>\\^`{|}", "%22%3C%3E%5C%5E%60%7B%7C%7D"},
  };
  for (const auto& [text, escaped] : cases) {
    EXPECT_EQ(URL::escapePath(text), escaped);
  }
}

TEST(URL, DecodesWhatItEscapes) {
  std::string path = "/";
  for (int octet = 0; octet < 256; ++octet) {
    path += static_cast<char>(octet);
  }
  const std::optional<URL> url = URL::parse("ipp://h" + URL::escapePath(path));
  ASSERT_TRUE(url);
  EXPECT_EQ(url->path(), path);
}

}  // namespace
}  // namespace platen
