// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>

#include "platform/HTTPEarlyAnswer.h"

namespace platen {

/// For messages of failed tests.
static void PrintTo(HTTPEarlyAnswer answer, std::ostream* stream) {
  *stream << static_cast<int>(answer);
}

namespace {

const std::string kInterim = "HTTP/1.1 100 Continue\r\n\r\n";

struct Judgement {
  std::string received;
  HTTPEarlyAnswer answer;
  std::size_t interim;
};

TEST(HTTPEarlyAnswer, IsJudgedByItsFirstOctets) {
  const Judgement table[] = {
      {"", HTTPEarlyAnswer::nothing, 0},
      {"H", HTTPEarlyAnswer::beginning, 0},
      {"HTTP/1.1 41", HTTPEarlyAnswer::beginning, 0},
      {"HTTP/1.1 413", HTTPEarlyAnswer::refusalBeginning, 0},
      {"HTTP/1.0 503 Busy\r\nX: y\r\n", HTTPEarlyAnswer::refusalBeginning, 0},
      {"HTTP/1.1 413 Too Large\r\n\r\n", HTTPEarlyAnswer::refusal, 0},
      {"HTTP/1.1 413 Too Large\n\n", HTTPEarlyAnswer::refusal, 0},
      {"HTTP/1.1 413 Too Large\r\nX: y\r\n\r\nbody", HTTPEarlyAnswer::refusal, 0},
      {"HTTP/1.1 413 " + std::string(20'000, 'x'), HTTPEarlyAnswer::refusal, 0},
      {"HTTP/1.1 200", HTTPEarlyAnswer::other, 0},
      {"HTTP/1.1 302 Found\r\n\r\n", HTTPEarlyAnswer::other, 0},
      {"HTTP/1.1 100 Continue\r\n", HTTPEarlyAnswer::beginning, 0},
      {"HTTP/1.1 100 " + std::string(20'000, 'x'), HTTPEarlyAnswer::malformed, 0},
      {kInterim, HTTPEarlyAnswer::nothing, kInterim.size()},
      {kInterim + kInterim + "HTTP/1.1 4", HTTPEarlyAnswer::beginning, 2 * kInterim.size()},
      {kInterim + "HTTP/1.1 413 No\r\n\r\n", HTTPEarlyAnswer::refusal, kInterim.size()},
      {"220 ESMTP\r\n", HTTPEarlyAnswer::malformed, 0},
      {"HTTP/2 413\r\n\r\n", HTTPEarlyAnswer::malformed, 0},
      {"HTTP/1.1 x13", HTTPEarlyAnswer::malformed, 0},
      {std::string(1, '\0'), HTTPEarlyAnswer::malformed, 0},
  };
  for (const auto& [received, answer, interim] : table) {
    std::size_t found = 99;
    EXPECT_EQ(judgeEarlyAnswer(received, found), answer) << received.substr(0, 40);
    EXPECT_EQ(found, interim) << received.substr(0, 40);
  }
}

TEST(HTTPEarlyAnswer, TakesNothingButInterimHeadsFromTheSocket) {
  std::array<int, 2> ends{};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
  EXPECT_EQ(lookForEarlyAnswer(ends[0]).answer, HTTPEarlyAnswer::nothing);
  const auto octets = kInterim + "HTTP/1.1 413 No\r\n\r\n";
  ASSERT_EQ(write(ends[1], octets.data(), octets.size()), static_cast<ssize_t>(octets.size()));
  const auto first = lookForEarlyAnswer(ends[0]);
  EXPECT_EQ(first.answer, HTTPEarlyAnswer::refusal);
  EXPECT_EQ(first.octets, octets.size());
  EXPECT_EQ(first.interimOctets, kInterim.size());
  const auto second = lookForEarlyAnswer(ends[0]);
  EXPECT_EQ(second.answer, HTTPEarlyAnswer::refusal);
  EXPECT_EQ(second.octets, octets.size() - kInterim.size());
  EXPECT_EQ(second.interimOctets, 0U);
  std::array<char, 100> left{};
  EXPECT_EQ(read(ends[0], left.data(), left.size()),
            static_cast<ssize_t>(octets.size() - kInterim.size()));
  close(ends[1]);
  EXPECT_EQ(lookForEarlyAnswer(ends[0]).answer, HTTPEarlyAnswer::closed);
  close(ends[0]);
}

TEST(HTTPEarlyAnswer, IsNoneWhenItEndsInTheMiddle) {
  for (const std::string octets : {"H", "HTTP/1.1 4", "HTTP/1.1 503 Busy\r\n"}) {
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    ASSERT_EQ(write(ends[1], octets.data(), octets.size()), static_cast<ssize_t>(octets.size()));
    EXPECT_NE(lookForEarlyAnswer(ends[0]).answer, HTTPEarlyAnswer::malformed);
    close(ends[1]);
    EXPECT_EQ(lookForEarlyAnswer(ends[0]).answer, HTTPEarlyAnswer::closed);
    close(ends[0]);
  }
}

}  // namespace
}  // namespace platen
