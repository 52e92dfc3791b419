// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/RealServers.h"

namespace platen {
namespace {

constexpr std::size_t kLarge = 20 * 1024 * 1024;

class Printing : public test::RealServers {
 protected:
  /// Where the server keeps the document of a job that `print` made.
  static std::filesystem::path documentOfCups(const test::Exchange& job) {
    return servers().cupsDocument(job.number("job-id"));
  }
  static std::filesystem::path documentOfIppeve(const test::Exchange& job) {
    servers().waitForIppeveIdle();
    return servers().ippeveDocument(job.number("job-id"));
  }
};

TEST_F(Printing, TakesASmallDocumentToAQueueOctetForOctet) {
  const auto job = print(addedQueue("small"), test::smallPDF());
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_EQ(job.error, nullptr);
  EXPECT_GT(job.number("job-id"), 0);
  EXPECT_TRUE(job.response->attributeValueForKey("job-uri").isURL());
  EXPECT_EQ(contentsOf(documentOfCups(job)), test::smallPDF());
}

TEST_F(Printing, TakesASmallDocumentToAPrinterOctetForOctet) {
  const auto job = print(idlePrinter(), test::smallPDF());
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_EQ(contentsOf(documentOfIppeve(job)), test::smallPDF());
}

TEST_F(Printing, TakesTwentyMegabytesToAQueueOctetForOctet) {
  const Data document = test::noise(kLarge);
  const auto job = print(addedQueue("large"), document);
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_TRUE(contentsOf(documentOfCups(job)) == document);
}

TEST_F(Printing, TakesTwentyMegabytesToAPrinterOctetForOctet) {
  Data document = test::smallPDF();  // by whose beginning the printer knows the format
  const Data rest = test::noise(kLarge);
  document.insert(document.end(), rest.begin(), rest.end());
  const auto job = print(idlePrinter(), document);
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_TRUE(contentsOf(documentOfIppeve(job)) == document);
}

TEST_F(Printing, TakesADocumentFromAFile) {
  const auto path =
      std::filesystem::temp_directory_path() / ("platen-document-" + std::to_string(::getpid()));
  const Data document = test::smallPDF();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(document.data()),
             static_cast<std::streamsize>(document.size()));
  const auto printer = addedQueue("file");
  const auto job = perform(*IPPRequest::jobPrintRequest(printer), printer,
                           InputStream::withFileAtPath(path.string()));
  std::filesystem::remove(path);
  ASSERT_EQ(job.status(), 0) << job.why();
  EXPECT_EQ(contentsOf(documentOfCups(job)), document);
}

TEST_F(Printing, CarriesWhatTheRequestSaysOfTheJob) {
  const auto printer = addedQueue("named");
  const auto request = IPPRequest::jobPrintRequest(printer);
  request->addOperationValue(IPPValue::mimeMediaType("application/octet-stream"),
                             "document-format");
  request->addOperationValue(IPPValue::nameWithoutLanguage("Gr\xc3\xb6\xc3\x9f"
                                                           "e"),
                             "job-name");
  request->addJobAttribute(
      IPPAttribute::attributeWithValue(IPPValue::integerWithInt(7), "job-priority"));
  const auto job = perform(*request, printer, InputStream::withData(test::smallPDF()));
  ASSERT_EQ(job.status(), 0) << job.why();
  const auto uri = job.response->attributeValueForKey("job-uri").asURL();
  const auto attributes = perform(*IPPRequest::jobAttributesRequest(uri), uri);
  ASSERT_EQ(attributes.status(), 0) << attributes.why();
  EXPECT_EQ(attributes.response->attributeValueForKey("job-name"),
            "Gr\xc3\xb6\xc3\x9f"
            "e");
  EXPECT_EQ(attributes.number("job-priority"), 7);
  EXPECT_EQ(attributes.response->attributeValueForKey("job-originating-user-name"),
            request->attributeValueForKey("requesting-user-name"));
}

TEST_F(Printing, GoesOnForSeveralThreadsAtOnce) {
  constexpr std::size_t kThreads = 4;
  const auto printer = addedQueue("threads");
  std::atomic<std::size_t> right = 0;
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      const Data document = test::noise(300'000 + i);
      const auto job = print(printer, document);
      right += job.status() == 0 && contentsOf(documentOfCups(job)) == document ? 1U : 0U;
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(right, kThreads);
}

}  // namespace
}  // namespace platen
