// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platen/IPPBytesReader.h"

namespace platen {
namespace {

std::shared_ptr<const Data> dataOf(std::string_view text) {
  return std::make_shared<const Data>(text.begin(), text.end());
}

std::string textOf(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

std::string readText(IPPBytesReader& reader, std::size_t length) {
  std::string text(length, '\0');
  const std::ptrdiff_t count =
      reader.readData(reinterpret_cast<std::uint8_t*>(text.data()), length);
  return count < 0 ? "failed" : text.substr(0, static_cast<std::size_t>(count));
}

/// Gives at most ten octets per read, and counts the reads.
class TenAtATime : public InputStream {
 public:
  void open() override { ++opened; }
  void close() override {}
  [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return nullptr; }
  [[nodiscard]] bool hasBytesAvailable() const override { return true; }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override {
    ++reads;
    const std::size_t count = std::min<std::size_t>(maxLength, 10);
    std::fill_n(destination, count, std::uint8_t{'x'});
    return static_cast<std::ptrdiff_t>(count);
  }

  int opened = 0;
  int reads = 0;
};

TEST(IPPBytesReader, ReadsNothingItself) {
  IPPBytesReader reader;
  EXPECT_EQ(readText(reader, 1), "failed");
  EXPECT_EQ(readText(reader, 0), "failed");
  reader.advance(1);
  EXPECT_TRUE(reader.window().empty());
}

TEST(IPPBytesReader, MakesTheReaderForEachSource) {
  const auto data = dataOf("abc");
  const auto dataReader =
      std::dynamic_pointer_cast<IPPDataReader>(IPPBytesReader::readerWithData(data));
  ASSERT_TRUE(dataReader);
  EXPECT_EQ(dataReader->data(), data);
  const auto stream = InputStream::withData({});
  const auto streamReader =
      std::dynamic_pointer_cast<IPPStreamReader>(IPPBytesReader::readerWithStream(stream));
  ASSERT_TRUE(streamReader);
  EXPECT_EQ(streamReader->stream(), stream);
  const auto fileReader =
      std::dynamic_pointer_cast<IPPFileHandleReader>(IPPBytesReader::readerWithFileHandle(17));
  ASSERT_TRUE(fileReader);
  EXPECT_EQ(fileReader->fileDescriptor(), 17);
}

TEST(IPPDataReader, GivesTheSmallerOfTheCountAndWhatIsLeft) {
  IPPDataReader reader(dataOf("abc"));
  EXPECT_EQ(readText(reader, 2), "ab");
  EXPECT_EQ(readText(reader, 2), "c");
  EXPECT_EQ(readText(reader, 2), "");
  EXPECT_EQ(reader.readData(nullptr, 0), 0);
}

TEST(IPPDataReader, GivesNothingOfNoData) {
  IPPDataReader reader(nullptr);
  EXPECT_EQ(readText(reader, 2), "");
  EXPECT_TRUE(reader.window().empty());
}

TEST(IPPDataReader, KeepsItsDataAlive) {
  auto data = dataOf("abc");
  const std::weak_ptr<const Data> watch = data;
  auto reader = std::make_unique<IPPDataReader>(std::move(data));
  EXPECT_FALSE(watch.expired());
  EXPECT_EQ(readText(*reader, 3), "abc");
  reader.reset();
  EXPECT_TRUE(watch.expired());
}

TEST(IPPDataReader, ShowsWhatIsLeftWithoutACopy) {
  const auto data = dataOf("abcdef");
  IPPDataReader reader(data);
  EXPECT_EQ(reader.window().data(), data->data());
  reader.advance(2);
  EXPECT_EQ(textOf(reader.window()), "cdef");
  EXPECT_EQ(readText(reader, 1), "c");
  EXPECT_EQ(textOf(reader.window()), "def");
  reader.advance(9);
  EXPECT_TRUE(reader.window().empty());
  EXPECT_EQ(readText(reader, 1), "");
}

TEST(IPPStreamReader, GivesWhatOneReadOfTheStreamGives) {
  const auto stream = std::make_shared<TenAtATime>();
  IPPStreamReader reader(stream);
  EXPECT_EQ(readText(reader, 20).size(), 10U);
  EXPECT_EQ(stream->reads, 1);
  EXPECT_EQ(stream->opened, 0);
  EXPECT_TRUE(reader.window().empty());
}

TEST(IPPStreamReader, FailsOnAStreamThatIsNotOpen) {
  IPPStreamReader reader(InputStream::withData({'a'}));
  EXPECT_EQ(readText(reader, 1), "failed");
  EXPECT_TRUE(reader.window().empty());
}

TEST(IPPStreamReader, FailsWithoutAStream) {
  IPPStreamReader reader(nullptr);
  EXPECT_EQ(readText(reader, 1), "failed");
  EXPECT_TRUE(reader.window().empty());
  reader.advance(1);
}

TEST(IPPStreamReader, LeavesTheStreamRightBehindWhatWasRead) {
  const auto stream = InputStream::withData({'a', 'b', 'c', 'd', 'e', 'f'});
  stream->open();
  IPPStreamReader reader(stream);
  EXPECT_EQ(textOf(reader.window()), "abcdef");
  reader.advance(2);
  EXPECT_EQ(readText(reader, 1), "c");
  reader.advance(1);
  EXPECT_EQ(textOf(reader.window()), "ef");
  std::array<std::uint8_t, 8> rest{};
  EXPECT_EQ(stream->read(rest.data(), rest.size()), 2);
  EXPECT_EQ(rest[0], 'e');
  EXPECT_EQ(readText(reader, 1), "");
}

TEST(IPPStreamReader, HasNoWindowWhenTheStreamRaises) {
  class Raising : public TenAtATime {
   public:
    bool getBuffer(Bytes&) override { throw std::runtime_error("no buffer"); }
    std::size_t skip(std::size_t) override { throw std::runtime_error("no buffer"); }
  };
  IPPStreamReader reader(std::make_shared<Raising>());
  EXPECT_TRUE(reader.window().empty());
  reader.advance(1);
  EXPECT_EQ(readText(reader, 1), "x");
}

TEST(IPPFileHandleReader, GivesWhatOneReadOfTheDescriptorGives) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
  ASSERT_EQ(write(ends[1], "abc", 3), 3);
  IPPFileHandleReader reader(ends[0]);
  EXPECT_EQ(readText(reader, 2), "ab");
  EXPECT_EQ(readText(reader, 2), "c");
  EXPECT_TRUE(reader.window().empty());
  ::close(ends[1]);
  EXPECT_EQ(readText(reader, 2), "");
  ::close(ends[0]);
}

TEST(IPPFileHandleReader, LeavesTheFileRightBehindWhatWasRead) {
  std::FILE* const file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(write(fileno(file), "abcdef", 6), 6);
  ASSERT_EQ(lseek(fileno(file), 0, SEEK_SET), 0);
  {
    IPPFileHandleReader reader(fileno(file));
    EXPECT_EQ(readText(reader, 4), "abcd");
  }
  EXPECT_EQ(lseek(fileno(file), 0, SEEK_CUR), 4);
  std::fclose(file);
}

TEST(IPPFileHandleReader, FailsOnABadDescriptor) {
  IPPFileHandleReader reader(-1);
  EXPECT_EQ(readText(reader, 1), "failed");
  EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace platen
