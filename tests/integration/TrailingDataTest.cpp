// SPDX-License-Identifier: Apache-2.0

/// What follows a response: the print server sends a printer's description file (PPD) so.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/RealServers.h"

namespace platen {
namespace {

constexpr std::int32_t kGetPPD = 0x400F;

class TrailingData : public test::RealServers {
 protected:
  void SetUp() override {
    test::RealServers::SetUp();
    if (!IsSkipped()) {
      servers().addQueue("described", "file:///dev/null", ppdFile_);
      servers().addQueue("raw");
    }
  }

  static IPPRequest::Pointer requestFor(const std::string& name) {
    auto request = IPPRequest::requestWithId(kGetPPD);
    request->setPrinterURI(queue(name));
    return request;
  }
  [[nodiscard]] Data ppd() const { return contentsOf(ppdFile_); }

 private:
  const std::filesystem::path ppdFile_ =
      std::filesystem::path(PLATEN_SOURCE_DIR) / "tests/servers/lab.ppd";
};

TEST_F(TrailingData, IsTheDescriptionOfAQueueOctetForOctet) {
  const auto output = OutputStream::toMemory();
  test::Exchange exchange;
  exchange.response =
      requestFor("described")->performOn(url(servers().cupsURI()), output, &exchange.error);
  ASSERT_EQ(exchange.status(), 0) << exchange.why();
  EXPECT_EQ(exchange.error, nullptr);
  ASSERT_GT(ppd().size(), 1000U);
  EXPECT_EQ(*output->data(), ppd());
}

TEST_F(TrailingData, IsWrittenToAFile) {
  const auto path =
      std::filesystem::temp_directory_path() / ("platen-ppd-" + std::to_string(::getpid()));
  const auto output = OutputStream::toFileAtPath(path.string());
  const auto response = requestFor("described")->performOn(url(servers().cupsURI()), output);
  const auto written = contentsOf(path);
  std::filesystem::remove(path);
  ASSERT_NE(response, nullptr);
  EXPECT_EQ(output->streamStatus(), StreamStatus::closed);
  EXPECT_EQ(written, ppd());
}

TEST_F(TrailingData, IsDiscardedWhereNobodyWantsIt) {
  const auto exchange = perform(*requestFor("described"), url(servers().cupsURI()));
  EXPECT_EQ(exchange.status(), 0) << exchange.why();
}

TEST_F(TrailingData, IsEmptyWhereTheResponseIsAll) {
  const auto output = OutputStream::toMemory();
  test::Exchange exchange;
  exchange.response =
      requestFor("raw")->performOn(url(servers().cupsURI()), output, &exchange.error);
  EXPECT_EQ(exchange.status(), 0x0406) << "a raw queue has no description";
  ASSERT_NE(exchange.error, nullptr);
  EXPECT_EQ(exchange.error->code(), 0x0406);
  EXPECT_EQ(output->streamStatus(), StreamStatus::closed);
  EXPECT_TRUE(output->data()->empty());
}

}  // namespace
}  // namespace platen
