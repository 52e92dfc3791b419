// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>

#include "platform/HTTPHead.h"

namespace platen {
namespace {

TEST(HTTPRequest, ReplacesAHeaderInItsPlace) {
  HTTPRequest request(URL::parse("http://h/").value());
  request.setHeader("Content-Type", "a/b");
  request.setHeader("X", "y");
  request.setHeader("content-type", "c/d");
  ASSERT_EQ(request.headers.size(), 2U);
  EXPECT_EQ(request.headers[0].first, "Content-Type");
  EXPECT_EQ(request.header("CONTENT-TYPE"), "c/d");
  EXPECT_EQ(request.header("Content"), std::nullopt);
}

TEST(HTTPRequest, HasItsDefaults) {
  const HTTPRequest request(URL::parse("http://h/").value());
  EXPECT_EQ(request.method, "GET");
  EXPECT_EQ(request.timeoutInterval, 60.0);
  EXPECT_EQ(request.cachePolicy, HTTPCachePolicy::reloadIgnoringLocalAndRemoteCacheData);
  EXPECT_EQ(static_cast<int>(request.cachePolicy), 4);
}

TEST(HTTPResponse, NamesItsMimeType) {
  struct Case {
    const char* field;
    const char* type;
  };
  const Case cases[] = {{"application/ipp", "application/ipp"},
                        {" Text/HTML ; charset=x", "text/html"},
                        {"", ""},
                        {";", ""}};
  for (const auto& [field, type] : cases) {
    HTTPResponse response;
    response.headers.emplace_back("content-TYPE", field);
    EXPECT_EQ(response.mimeType(), type);
  }
  EXPECT_EQ(HTTPResponse().mimeType(), "");
}

HTTPHeadReader readerOf(std::initializer_list<std::string_view> lines) {
  HTTPHeadReader reader;
  for (const auto line : lines) {
    EXPECT_TRUE(reader.takeLine(line));
  }
  return reader;
}

TEST(HTTPHeadReader, GivesTheFinalHeadOnce) {
  auto reader =
      readerOf({"HTTP/1.1 100 Continue\r\n", "X: interim\r\n", "\r\n", "HTTP/1.1 200 OK\r\n",
                "A:b\r\n", "C:   d  \r\n", "A: e\r\n", "F:\r\n", "\r\n", "X: trailer\r\n", "\r\n"});
  EXPECT_TRUE(reader.isComplete());
  const auto response = reader.takeResponse();
  ASSERT_TRUE(response.has_value());
  EXPECT_EQ(response->statusCode, 200);
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"A", "b"}, {"C", "d"}, {"A", "e"}, {"F", ""}};
  EXPECT_EQ(response->headers, expected);
  EXPECT_EQ(response->header("a"), "b");
  EXPECT_EQ(reader.takeResponse(), std::nullopt);
}

TEST(HTTPHeadReader, JoinsFoldedLines) {
  auto reader =
      readerOf({"HTTP/1.1 200\r\n", " lost\r\n", "A: b\r\n", "\t c\r\n", "none\r\n", "\r\n"});
  const auto response = reader.takeResponse();
  ASSERT_EQ(response->headers.size(), 1U);
  EXPECT_EQ(response->header("A"), "b c");
}

TEST(HTTPHeadReader, GivesNothingBeforeTheEnd) {
  auto reader = readerOf({"HTTP/1.1 200 OK\r\n", "A: b\r\n"});
  EXPECT_EQ(reader.takeResponse(), std::nullopt);
  EXPECT_FALSE(reader.isComplete());
}

TEST(HTTPHeadReader, BoundsAllLinesTogether) {
  HTTPHeadReader reader;
  const auto line = "X: " + std::string(1021, 'x') + "\r\n";
  int taken = 0;
  while (taken < 1000 && reader.takeLine(line)) {
    ++taken;
  }
  EXPECT_EQ(taken, 300 * 1024 / static_cast<int>(line.size()));
}

}  // namespace
}  // namespace platen
