// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/support/RealServers.h"

namespace platen {
namespace {

class KeepAlive : public test::RealServers {
 protected:
  /// How many connections a server has taken, by what it has logged.
  static int acceptedBy(const std::filesystem::path& log, std::string_view mark) {
    const Data data = contentsOf(log);
    const std::string text(data.begin(), data.end());
    int count = 0;
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1)) {
      ++count;
    }
    return count;
  }
  static int acceptedByCups() { return acceptedBy(servers().cupsLog(), "] Accepted from "); }
  static int acceptedByIppeve() {
    return acceptedBy(servers().ippeveLog(), "Accepted connection ");
  }
};

constexpr int kExchanges = 50;

TEST_F(KeepAlive, TakesOneConnectionToAQueueForManyExchanges) {
  const auto printer = addedQueue("kept");
  const int before = acceptedByCups();
  // A thread of its own has no connection yet.
  std::thread([&] {
    for (int i = 0; i < kExchanges; ++i) {
      EXPECT_EQ(attributesOf(printer).status(), 0) << i;
    }
    EXPECT_EQ(print(printer, test::smallPDF()).status(), 0);
    EXPECT_EQ(attributesOf(queue("missing")).status(), 0x0406);
    EXPECT_EQ(attributesOf(printer).status(), 0);
  }).join();
  EXPECT_EQ(acceptedByCups() - before, 1);
}

TEST_F(KeepAlive, TakesOneConnectionToAPrinterForManyExchanges) {
  const auto printer = idlePrinter();
  const int before = acceptedByIppeve();
  std::thread([&] {
    for (int i = 0; i < kExchanges; ++i) {
      EXPECT_EQ(attributesOf(printer).status(), 0) << i;
    }
    EXPECT_EQ(print(printer, test::smallPDF()).status(), 0);
    EXPECT_EQ(attributesOf(printer).status(), 0);
  }).join();
  EXPECT_EQ(acceptedByIppeve() - before, 1);
}

TEST_F(KeepAlive, TakesANewConnectionAfterAServerHasClosedTheOldOne) {
  servers().addQueue("private");
  const auto printer = addedQueue("closed");
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(attributesOf(printer).status(), 0) << i;
    // After such an answer the server closes.
    EXPECT_EQ(attributesOf(queue("private")).response, nullptr);
  }
}

}  // namespace
}  // namespace platen
