// SPDX-License-Identifier: Apache-2.0
//
// Peers that refuse a document on its way in ways in which no server should.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/HostilePeer.h"
#include "tests/support/TrickleStream.h"

namespace platen::tests {
namespace {

/// Each while a large document is on its way (false) and while a document is dry (true).
class HostileRefusal : public WithHostilePeers, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    WithHostilePeers::SetUp();
    timeOut = std::chrono::milliseconds(2000);
    makeDocument = []() -> std::shared_ptr<InputStream> {
      if (GetParam()) {
        return std::make_shared<TrickleStream>(5, std::chrono::hours(1), 1);
      }
      return streamOf(std::string(20'000'000, 'x'));
    };
  }

  /// Says this once it has got the head, and reads on, or goes.
  void expectEndAfter(const char* name, const std::string& octets, End end) const {
    expectEnd({name,
               [&octets](PeerConnection& connection) {
                 connection.readHead();
                 connection.send(octets);
                 stall(connection);
               },
               end});
    expectEnd({name,
               [&octets](PeerConnection& connection) {
                 connection.readHead();
                 connection.send(octets);
               },
               end});
  }
};

const std::string kRefusal = "HTTP/1.1 403 No\r\nContent-Length: 0\r\n\r\n";

INSTANTIATE_TEST_SUITE_P(Document, HostileRefusal, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Dry" : "Large"; });

TEST_P(HostileRefusal, ComesTwice) {
  expectEndAfter("the same", kRefusal + kRefusal, kRefused403);
  expectEndAfter("another", kRefusal + "HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n",
                 kRefused403);
  expectEndAfter("then a success", kRefusal + withLength(makeAnswer().size(), makeAnswer()),
                 kRefused403);
}

TEST_P(HostileRefusal, HasGarbageForChunks) {
  const std::string head = "HTTP/1.1 403 No\r\nTransfer-Encoding: chunked\r\n\r\n";
  for (const auto* chunks :
       {"no length\r\n", "-5\r\nabcde\r\n", "2\r\nabcdef", "3\r\nabc\r\nzz\r\n"}) {
    expectEndAfter(chunks, head + chunks, kRefused403);
  }
}

TEST_P(HostileRefusal, LiesAboutTheLength) {
  const std::string head = "HTTP/1.1 403 No\r\nContent-Length: ";
  expectEndAfter("too long", head + "100\r\n\r\nabc", kRefused403);
  expectEndAfter("too short", head + "1\r\n\r\nabc", kRefused403);
  expectEndAfter("absurd", head + "9223372036854775807\r\n\r\nabc", kTooLong);
  expectEndAfter("negative", head + "-1\r\n\r\nabc", kBadServer);
}

TEST_P(HostileRefusal, HasALongHead) {
  const std::string field = "X: " + std::string(1000, 'y') + "\r\n";
  std::string head = "HTTP/1.1 403 No\r\n";
  for (int i = 0; i < 20; ++i) {
    head += field;
  }
  expectEndAfter("20 KiB", head + "Content-Length: 0\r\n\r\n", kRefused403);
}

TEST_P(HostileRefusal, EndsLinesWithALoneLineFeed) {
  expectEndAfter("all of them", "HTTP/1.1 403 No\nContent-Length: 2\n\nno", kRefused403);
  expectEndAfter("the last", "HTTP/1.1 403 No\r\nContent-Length: 2\r\n\nno", kRefused403);
}

}  // namespace
}  // namespace platen::tests
