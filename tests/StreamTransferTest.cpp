// SPDX-License-Identifier: Apache-2.0
// Draining a stream and copying it into another, over streams of a test's own.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "platen/Stream.h"

namespace platen {
namespace {

std::string textOf(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

/// Counts what is asked of it.
class CountingInput : public InputStream {
 public:
  explicit CountingInput(std::size_t length) : left_(length) {}
  void open() override { ++opened; }
  void close() override { ++closed; }
  [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  [[nodiscard]] bool hasBytesAvailable() const override { return left_ > 0; }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override {
    ++reads;
    largestRead = std::max(largestRead, maxLength);
    const std::size_t count = std::min(maxLength, left_);
    std::fill_n(destination, count, static_cast<std::uint8_t>('a' + reads));
    left_ -= count;
    return count == 0 ? result : static_cast<std::ptrdiff_t>(count);
  }

  int opened = 0;
  int closed = 0;
  int reads = 0;
  std::size_t largestRead = 0;
  std::ptrdiff_t result = 0;

 private:
  std::size_t left_;
};

/// Takes at most so much of each write.
class ShortOutput : public OutputStream {
 public:
  explicit ShortOutput(std::ptrdiff_t most) : most_(most) {}
  void open() override { ++opened; }
  void close() override { ++closed; }
  [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  [[nodiscard]] bool hasSpaceAvailable() const override { return true; }
  std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength) override {
    ++writes;
    const std::ptrdiff_t count = std::min(most_, static_cast<std::ptrdiff_t>(maxLength));
    taken.insert(taken.end(), bytes, bytes + std::max<std::ptrdiff_t>(count, 0));
    return count;
  }

  int opened = 0;
  int closed = 0;
  int writes = 0;
  Data taken;

 private:
  std::ptrdiff_t most_;
};

TEST(StreamTransfer, ReadsNothingWhenThereIsNoOutput) {
  CountingInput input(10);
  input.transferContentsTo(nullptr);
  EXPECT_EQ(input.reads, 0);
}

TEST(StreamTransfer, TransfersInChunksAndOpensAndClosesNothing) {
  CountingInput input(10000);
  ShortOutput output(5000);
  input.transferContentsTo(&output);
  EXPECT_EQ(output.taken.size(), 10000U);
  EXPECT_EQ(input.reads, 4);
  EXPECT_EQ(input.largestRead, 4096U);
  EXPECT_EQ(output.writes, 3);
  EXPECT_EQ(input.opened + input.closed + output.opened + output.closed, 0);
}

TEST(StreamTransfer, DropsWhatAWriteLeavesOfAChunk) {
  CountingInput input(2 * 4096);
  ShortOutput output(3);
  input.transferContentsTo(&output);
  EXPECT_EQ(textOf(output.taken), "bbbccc");
  EXPECT_EQ(output.writes, 2);
}

TEST(StreamTransfer, StopsTransferringAtTheFirstWriteThatTakesNothing) {
  for (const std::ptrdiff_t result : {0, -1}) {
    CountingInput input(3 * 4096);
    ShortOutput output(result);
    input.transferContentsTo(&output);
    EXPECT_EQ(input.reads, 1);
    EXPECT_EQ(output.writes, 1);
  }
}

TEST(StreamTransfer, StopsTransferringAtAReadError) {
  CountingInput input(5);
  input.result = -1;
  ShortOutput output(5000);
  input.transferContentsTo(&output);
  EXPECT_EQ(output.taken.size(), 5U);
  EXPECT_EQ(input.reads, 2);
}

TEST(StreamTransfer, TransfersNothingFromAStreamThatIsNotOpen) {
  ShortOutput output(5000);
  InputStream::withData({1, 2, 3})->transferContentsTo(&output);
  EXPECT_EQ(output.writes, 0);
}

TEST(StreamTransfer, EndsTheDrainingAtAReadError) {
  CountingInput input(5);
  input.result = -1;
  EXPECT_EQ(textOf(input.readDataToEndOfStream()), "bbbbb");
  EXPECT_EQ(input.opened, 1);
  EXPECT_EQ(input.closed, 1);
  EXPECT_EQ(input.largestRead, 4096U);
}

TEST(StreamTransfer, LendsAndPassesOverNothingUnlessAClassSaysOtherwise) {
  CountingInput input(5);
  Bytes buffer;
  EXPECT_FALSE(input.getBuffer(buffer));
  EXPECT_EQ(input.skip(3), 0U);
  EXPECT_EQ(textOf(input.readDataToEndOfStream()), "bbbbb");
}

}  // namespace
}  // namespace platen
