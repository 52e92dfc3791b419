// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "tests/support/PrintServers.h"

namespace platen::test {

/// What an exchange gave.
struct Exchange {
  IPPResponse::Pointer response;
  std::shared_ptr<const Error> error;

  /// What went wrong, for the message of a failing test.
  [[nodiscard]] std::string why() const {
    return error == nullptr ? "no error" : error->description();
  }
  [[nodiscard]] std::int32_t status() const {
    return response == nullptr ? -1 : response->statusCode();
  }
  /// The number of the attribute of that name; -1 when there is none.
  [[nodiscard]] int number(std::string_view name) const {
    const auto attribute = response == nullptr ? nullptr : response->attributeForKey(name);
    return attribute == nullptr ? -1 : attribute->ippValue()->intValue();
  }
};

/// A test that needs both print servers.
class RealServers : public testing::Test {
 protected:
  void SetUp() override {
    if (!servers().available()) GTEST_SKIP() << servers().whyUnavailable();
  }

  static PrintServers& servers() { return PrintServers::shared(); }
  static URL url(const std::string& text) { return URL::parse(text).value(); }
  /// The URI of a queue of cupsd.
  static URL queue(const std::string& name) {
    return url(servers().cupsURI() + "printers/" + name);
  }
  /// Adds a raw queue and returns its URI.
  static URL addedQueue(const std::string& name) {
    servers().addQueue(name);
    return queue(name);
  }
  /// The printer of ippeveprinter, ready for a job.
  static URL idlePrinter() {
    servers().waitForIppeveIdle();
    return url(servers().ippeveURI());
  }

  static Exchange perform(IPPRequest& request, const URL& target,
                          const std::shared_ptr<InputStream>& document = nullptr) {
    Exchange exchange;
    exchange.response = request.performOn(target, document, &exchange.error);
    return exchange;
  }
  static Exchange attributesOf(const URL& printer) {
    return perform(*IPPRequest::printerAttributesRequest(printer), printer);
  }
  static Exchange print(const URL& printer, const Data& document) {
    return perform(*IPPRequest::jobPrintRequest(printer), printer, InputStream::withData(document));
  }

  static Data contentsOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// Asks every 20 ms until `isDone` says so; false after 15 seconds.
  template <typename Condition>
  static bool becomesTrue(Condition isDone) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (!isDone()) {
      if (std::chrono::steady_clock::now() > limit) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
  }
};

/// A PDF file of one empty page, with octets of every kind in its comment.
inline Data smallPDF() {
  std::string text = "%PDF-1.4\n%";
  for (int octet = 0; octet < 256; ++octet) text += static_cast<char>(octet);
  text +=
      "\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
      "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
      "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]>>endobj\n"
      "trailer<</Root 1 0 R>>\n%%EOF\n";
  return {text.begin(), text.end()};
}

/// `length` octets without a pattern that a lost or doubled piece would leave intact.
inline Data noise(std::size_t length) {
  Data data(length);
  std::uint32_t state = 1;
  for (auto& octet : data) {
    state = state * 1664525U + 1013904223U;
    octet = static_cast<std::uint8_t>(state >> 24U);
  }
  return data;
}

}  // namespace platen::test
