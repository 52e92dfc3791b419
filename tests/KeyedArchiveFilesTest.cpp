// SPDX-License-Identifier: Apache-2.0

// Archives in files and streams.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "platen/IPPMessage.h"
#include "tests/support/Archives.h"

namespace platen::test {
namespace {

namespace fs = std::filesystem;
using ErrorPointer = std::shared_ptr<const Error>;

class KeyedArchiveFiles : public testing::Test {
 protected:
  void SetUp() override {
    std::string text = (fs::temp_directory_path() / "platen-archive-XXXXXX").string();
    ASSERT_NE(mkdtemp(text.data()), nullptr);
    directory = text;
  }
  void TearDown() override { fs::remove_all(directory); }

  [[nodiscard]] std::string path(std::string_view name = "kept") const { return directory / name; }
  static std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path directory;
  const IPPMessage message{0x000b, 7, {IPPAttributeGroup::jobGroup()}};
  ErrorPointer error = std::make_shared<const Error>("stale", 1);
};

void expectPosix(const ErrorPointer& error, int code) {
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(error->domain(), "POSIX");
  EXPECT_EQ(error->code(), code) << error->description();
}

TEST_F(KeyedArchiveFiles, ComeBackFromAFile) {
  for (const IPPArchiveFormat format : kArchiveFormats) {
    EXPECT_TRUE(IPPKeyedArchiver::archiveRootObject(message, path(), format, &error));
    EXPECT_EQ(error, nullptr);
    const Data data = archived(message, format);
    EXPECT_EQ(read(path()), std::string(data.begin(), data.end()));
    error = std::make_shared<const Error>("stale", 1);
    const auto back = IPPKeyedUnarchiver::unarchiveObjectWithFile<IPPMessage>(path(), &error);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(error, nullptr);
    EXPECT_TRUE(back->isEqual(message));
  }
}

TEST_F(KeyedArchiveFiles, TakeThePlaceOfAnEarlierOneWhole) {
  std::ofstream(path()) << std::string(100000, 'x');
  std::ifstream reader(path());
  EXPECT_TRUE(IPPKeyedArchiver::archiveRootObject(message, path()));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), std::string(100000, 'x'));
  EXPECT_NE(unarchived<IPPMessage>(read(path())), nullptr);
  struct stat facts {};
  ASSERT_EQ(stat(path().c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0600U);
}

TEST_F(KeyedArchiveFiles, TellWhyTheyCannotBeWritten) {
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(message, path("missing/kept"), {}, &error));
  expectPosix(error, ENOENT);
  fs::create_directory(path("directory"));
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(message, path("directory"), {}, &error));
  expectPosix(error, EISDIR);
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(message, path("missing/kept")));
  EXPECT_EQ(std::distance(fs::directory_iterator(directory), {}), 1);
}

TEST_F(KeyedArchiveFiles, TellWhyTheyCannotBeRead) {
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithFile<>(path("missing"), &error), nullptr);
  expectPosix(error, ENOENT);
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithFile<>(directory, &error), nullptr);
  expectPosix(error, EISDIR);
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithFile<>(path("missing")), nullptr);
}

TEST_F(KeyedArchiveFiles, ReadNoMoreThanTheLimit) {
  std::ofstream(path()) << archivedText(message);
  const std::size_t size = fs::file_size(path());
  const auto readUpTo = [&](std::size_t largest) {
    return IPPKeyedUnarchiver::unarchiveObjectWithFile<>(path(), &error, {std::nullopt, largest});
  };
  EXPECT_NE(readUpTo(size), nullptr);
  EXPECT_NE(readUpTo(SIZE_MAX), nullptr);
  EXPECT_EQ(readUpTo(size - 1), nullptr);
  EXPECT_EQ(error->code(), static_cast<std::int64_t>(IPPArchiveError::tooLarge));
  // It has no end.
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithFile<>("/dev/zero", &error), nullptr);
  EXPECT_EQ(error->code(), static_cast<std::int64_t>(IPPArchiveError::tooLarge));
}

// --- Streams -------------------------------------------------------------------------------------

/// Takes at most 7 octets at a time, and after `most` octets fails.
class SlowOutput : public OutputStream {
 public:
  explicit SlowOutput(std::size_t most) : left_(most) {}

  void open() override {}
  void close() override {}
  [[nodiscard]] StreamStatus streamStatus() const override {
    return left_ == 0 ? StreamStatus::error : StreamStatus::open;
  }
  [[nodiscard]] ErrorPointer streamError() const override {
    return left_ == 0 ? std::make_shared<const Error>("POSIX", ENOSPC) : nullptr;
  }
  std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength) override {
    const std::size_t count = std::min({maxLength, left_, std::size_t{7}});
    taken.append(bytes, bytes + count);
    left_ -= count;
    return count == 0 ? -1 : static_cast<std::ptrdiff_t>(count);
  }
  [[nodiscard]] bool hasSpaceAvailable() const override { return left_ != 0; }

  std::string taken;

 private:
  std::size_t left_;
};

TEST_F(KeyedArchiveFiles, GoIntoAStreamInManyWrites) {
  SlowOutput stream(10000);
  EXPECT_TRUE(IPPKeyedArchiver::archiveRootObject(message, stream, {}, &error));
  EXPECT_EQ(error, nullptr);
  EXPECT_EQ(stream.taken, archivedText(message));
}

TEST_F(KeyedArchiveFiles, TellThatAStreamFailed) {
  SlowOutput full(50);
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(message, full, {}, &error));
  expectPosix(error, ENOSPC);
  EXPECT_EQ(full.taken.size(), 50U);
  const auto closed = OutputStream::toMemory();
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(message, *closed, {}, &error));
  expectPosix(error, EBADF);
}

TEST_F(KeyedArchiveFiles, ComeBackFromAStreamWhichStaysOpen) {
  const auto out = OutputStream::toMemory();
  out->open();
  EXPECT_TRUE(IPPKeyedArchiver::archiveRootObject(message, *out, IPPArchiveFormat::cbor));
  EXPECT_EQ(out->streamStatus(), StreamStatus::open);
  const auto in = InputStream::withData(*out->data());
  in->open();
  const auto back = IPPKeyedUnarchiver::unarchiveObjectWithStream<IPPMessage>(*in, &error);
  ASSERT_NE(back, nullptr);
  EXPECT_TRUE(back->isEqual(message));
  EXPECT_EQ(in->streamStatus(), StreamStatus::atEnd);
}

TEST_F(KeyedArchiveFiles, TellThatAStreamCannotBeRead) {
  const auto closed = InputStream::withData({});
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithStream<>(*closed, &error), nullptr);
  expectPosix(error, EBADF);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_NONBLOCK), 0);
  const auto empty = InputStream::withFileDescriptor(ends[0]);
  empty->open();
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithStream<>(*empty, &error), nullptr);
  expectPosix(error, EAGAIN);
  close(ends[0]);
  close(ends[1]);
}

/// Raises whatever it is asked for.
class RaisingInput : public InputStream {
 public:
  void open() override {}
  void close() override {}
  [[nodiscard]] StreamStatus streamStatus() const override { return StreamStatus::open; }
  [[nodiscard]] ErrorPointer streamError() const override { return nullptr; }
  std::ptrdiff_t read(std::uint8_t*, std::size_t) override { throw std::runtime_error("raised"); }
  [[nodiscard]] bool hasBytesAvailable() const override { return true; }
};

class RaisingOutput : public SlowOutput {
 public:
  RaisingOutput() : SlowOutput(1) {}
  std::ptrdiff_t write(const std::uint8_t*, std::size_t) override {
    throw std::runtime_error("raised");
  }
};

TEST_F(KeyedArchiveFiles, LetNothingOutThatAStreamRaises) {
  RaisingOutput out;
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(message, out, {}, &error));
  expectPosix(error, EIO);
  RaisingInput raising;
  EXPECT_EQ(IPPKeyedUnarchiver::unarchiveObjectWithStream<>(raising, &error), nullptr);
  expectPosix(error, EIO);
}

TEST_F(KeyedArchiveFiles, ChangeNothingForAnObjectThatCannotBeArchived) {
  class Unknown : public IPPCodable {
   public:
    [[nodiscard]] std::string_view className() const noexcept override { return "Unknown"; }
    void encodeWithCoder(IPPCoder& /*coder*/) const override {}
  };
  std::ofstream(path()) << "earlier";
  SlowOutput stream(100);
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(Unknown(), path(), {}, &error));
  EXPECT_EQ(error->code(), static_cast<std::int64_t>(IPPArchiveError::unknownClass));
  EXPECT_FALSE(IPPKeyedArchiver::archiveRootObject(Unknown(), stream, {}, &error));
  EXPECT_EQ(read(path()), "earlier");
  EXPECT_EQ(stream.taken, "");
}

}  // namespace
}  // namespace platen::test
