// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "platen/Stream.h"

namespace platen {
namespace {

Data dataOf(std::string_view text) { return {text.begin(), text.end()}; }
std::string textOf(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

std::string readText(InputStream& stream, std::size_t maxLength) {
  std::string text(maxLength, '\0');
  const std::ptrdiff_t count = stream.read(reinterpret_cast<std::uint8_t*>(text.data()), maxLength);
  return count < 0 ? "failed" : text.substr(0, static_cast<std::size_t>(count));
}

std::ptrdiff_t readOne(InputStream& stream) {
  std::uint8_t octet = 0;
  return stream.read(&octet, 1);
}

void expectFailed(const Stream& stream, int code) {
  EXPECT_EQ(stream.streamStatus(), StreamStatus::error);
  ASSERT_NE(stream.streamError(), nullptr);
  EXPECT_EQ(stream.streamError()->domain(), "POSIX");
  EXPECT_EQ(stream.streamError()->code(), code);
  EXPECT_TRUE(stream.streamError()->localizedDescription());
}

/// A directory of its own for each test.
class TemporaryDirectory {
 public:
  TemporaryDirectory() { EXPECT_NE(mkdtemp(path_.data()), nullptr); }
  ~TemporaryDirectory() {
    unlink(file().c_str());
    rmdir(path_.c_str());
  }
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string file() const { return path_ + "/file"; }
  void fill(std::string_view text) const { std::ofstream(file(), std::ios::binary) << text; }

 private:
  std::string path_ = testing::TempDir() + "platenXXXXXX";
};

/// Both ends of a pipe.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe2(ends_.data(), O_CLOEXEC), 0); }
  ~Pipe() {
    closeReading();
    closeWriting();
  }
  [[nodiscard]] int readingEnd() const { return ends_[0]; }
  void send(std::string_view text) const {
    EXPECT_EQ(write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void closeReading() { closeEnd(ends_[0]); }
  void closeWriting() { closeEnd(ends_[1]); }

 private:
  static void closeEnd(int& end) {
    if (end >= 0) {
      ::close(std::exchange(end, -1));
    }
  }
  std::array<int, 2> ends_{};
};

// ---- one contract for every kind ----

/// Keeps alive what a stream reads from.
struct Source {
  std::shared_ptr<InputStream> stream;
  std::shared_ptr<void> keeper;
};

Source fromData(std::string_view text) { return {InputStream::withData(dataOf(text)), nullptr}; }

Source fromBytes(std::string_view text) {
  const auto data = std::make_shared<Data>(dataOf(text));
  return {InputStream::withBytes(*data), data};
}

Source fromFile(std::string_view text) {
  const auto directory = std::make_shared<TemporaryDirectory>();
  directory->fill(text);
  return {InputStream::withFileAtPath(directory->file()), directory};
}

Source fromDescriptor(std::string_view text) {
  const auto pipe = std::make_shared<Pipe>();
  pipe->send(text);
  pipe->closeWriting();
  return {InputStream::withFileDescriptor(pipe->readingEnd()), pipe};
}

Source fromStream(std::string_view text) {
  const auto stream = std::make_shared<std::istringstream>(std::string(text));
  return {InputStream::withStream(*stream), stream};
}

struct Kind {
  const char* name;
  Source (*make)(std::string_view text);
};

class EveryInputStream : public testing::TestWithParam<Kind> {
 protected:
  static Source make(std::string_view text) { return GetParam().make(text); }
};

INSTANTIATE_TEST_SUITE_P(Kinds, EveryInputStream,
                         testing::Values(Kind{"Data", fromData}, Kind{"Bytes", fromBytes},
                                         Kind{"File", fromFile}, Kind{"Descriptor", fromDescriptor},
                                         Kind{"Stream", fromStream}),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(EveryInputStream, GivesItsOctetsInPiecesOfAnySize) {
  for (const std::size_t piece : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 16U, 31U}) {
    const std::string text = std::string("0123456789\0\xFF octets", 19);
    const Source source = make(text);
    source.stream->open();
    std::string got;
    for (std::string part = readText(*source.stream, piece); !part.empty();
         part = readText(*source.stream, piece)) {
      EXPECT_LE(part.size(), piece);
      got += part;
    }
    EXPECT_EQ(got, text);
    EXPECT_EQ(source.stream->streamStatus(), StreamStatus::atEnd);
    EXPECT_EQ(readOne(*source.stream), 0);
    EXPECT_FALSE(source.stream->hasBytesAvailable());
  }
}

TEST_P(EveryInputStream, GivesNothingBeforeItIsOpened) {
  const Source source = make("abc");
  EXPECT_EQ(source.stream->streamStatus(), StreamStatus::notOpen);
  EXPECT_FALSE(source.stream->hasBytesAvailable());
  EXPECT_EQ(readOne(*source.stream), -1);
  EXPECT_EQ(source.stream->streamError(), nullptr);
  Bytes buffer;
  EXPECT_FALSE(source.stream->getBuffer(buffer));
  EXPECT_EQ(source.stream->skip(1), 0U);
  source.stream->open();
  EXPECT_EQ(readText(*source.stream, 8), "abc");
}

TEST_P(EveryInputStream, GivesNothingOnceItIsClosed) {
  const Source source = make("abc");
  source.stream->open();
  EXPECT_TRUE(source.stream->hasBytesAvailable());
  EXPECT_EQ(readOne(*source.stream), 1);
  source.stream->close();
  source.stream->close();
  source.stream->open();
  EXPECT_EQ(source.stream->streamStatus(), StreamStatus::closed);
  EXPECT_EQ(source.stream->streamError(), nullptr);
  EXPECT_FALSE(source.stream->hasBytesAvailable());
  EXPECT_EQ(readOne(*source.stream), -1);
  Bytes buffer;
  EXPECT_FALSE(source.stream->getBuffer(buffer));
  EXPECT_EQ(source.stream->skip(1), 0U);
}

TEST_P(EveryInputStream, StaysWhereItIsWhenOpenedTwice) {
  const Source source = make("abc");
  source.stream->open();
  EXPECT_EQ(readOne(*source.stream), 1);
  source.stream->open();
  EXPECT_EQ(readText(*source.stream, 8), "bc");
}

TEST_P(EveryInputStream, IsNotAtItsEndAfterARequestForNothing) {
  const Source source = make("abc");
  source.stream->open();
  EXPECT_EQ(source.stream->read(nullptr, 0), 0);
  EXPECT_EQ(source.stream->streamStatus(), StreamStatus::open);
  EXPECT_EQ(readText(*source.stream, 8), "abc");
}

TEST_P(EveryInputStream, EndsAtOnceWhenThereIsNothing) {
  const Source source = make("");
  source.stream->open();
  EXPECT_EQ(readOne(*source.stream), 0);
  EXPECT_EQ(source.stream->streamStatus(), StreamStatus::atEnd);
}

TEST_P(EveryInputStream, IsDrainedToItsEndAndClosed) {
  for (const std::size_t length : {0U, 1U, 4095U, 4096U, 4097U, 20000U}) {
    std::string text(length, 'x');
    std::generate(text.begin(), text.end(), [n = 0]() mutable { return static_cast<char>(n++); });
    const Source source = make(text);
    EXPECT_EQ(textOf(source.stream->readDataToEndOfStream()), text);
    EXPECT_EQ(source.stream->streamStatus(), StreamStatus::closed);
  }
}

TEST_P(EveryInputStream, IsAppendedToDataWhenDrained) {
  const Source source = make("def");
  Data data = dataOf("abc");
  EXPECT_EQ(&source.stream->readDataToEndOfStreamAppendingToData(data), &data);
  EXPECT_EQ(textOf(data), "abcdef");
}

TEST_P(EveryInputStream, IsDrainedFromWhereItStands) {
  const Source source = make("abcdef");
  source.stream->open();
  EXPECT_EQ(readText(*source.stream, 2), "ab");
  EXPECT_EQ(textOf(source.stream->readDataToEndOfStream()), "cdef");
}

TEST_P(EveryInputStream, KeepsPropertiesAndADelegate) {
  const Source source = make("");
  InputStream& stream = *source.stream;
  EXPECT_EQ(stream.propertyForKey("key"), std::nullopt);
  EXPECT_TRUE(stream.setPropertyForKey("one", "key"));
  EXPECT_TRUE(stream.setPropertyForKey("two", "key"));
  EXPECT_EQ(stream.propertyForKey("key"), "two");
  EXPECT_EQ(stream.propertyForKey("other"), std::nullopt);
  EXPECT_EQ(stream.delegate(), nullptr);
  auto delegate = std::make_shared<StreamDelegate>();
  stream.setDelegate(delegate);
  EXPECT_EQ(stream.delegate(), delegate);
  EXPECT_EQ(delegate.use_count(), 1);
  delegate.reset();
  EXPECT_EQ(stream.delegate(), nullptr);
}

// ---- memory ----

TEST(InputStream, LendsItsMemoryAndPassesOverIt) {
  const Data data = dataOf("abcdef");
  const auto stream = InputStream::withBytes(data);
  stream->open();
  Bytes buffer;
  ASSERT_TRUE(stream->getBuffer(buffer));
  EXPECT_EQ(buffer.data(), data.data());
  EXPECT_EQ(textOf(buffer), "abcdef");
  EXPECT_EQ(stream->skip(2), 2U);
  EXPECT_EQ(readText(*stream, 1), "c");
  ASSERT_TRUE(stream->getBuffer(buffer));
  EXPECT_EQ(textOf(buffer), "def");
  EXPECT_EQ(stream->skip(9), 3U);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::atEnd);
  EXPECT_TRUE(stream->getBuffer(buffer));
  EXPECT_TRUE(buffer.empty());
  EXPECT_EQ(stream->skip(1), 0U);
}

TEST(InputStream, IsAtTheEndWithTheLastOctetOfMemory) {
  const auto stream = InputStream::withData(dataOf("ab"));
  stream->open();
  EXPECT_EQ(readText(*stream, 2), "ab");
  EXPECT_EQ(stream->streamStatus(), StreamStatus::atEnd);
  EXPECT_FALSE(stream->hasBytesAvailable());
}

TEST(InputStream, LendsNothingOfFilesAndStandardStreams) {
  for (const auto make : {fromFile, fromDescriptor, fromStream}) {
    const Source source = make("abc");
    source.stream->open();
    Bytes buffer;
    EXPECT_FALSE(source.stream->getBuffer(buffer));
    EXPECT_EQ(source.stream->skip(2), 0U);
    EXPECT_EQ(readText(*source.stream, 8), "abc");
  }
}

// ---- files and descriptors ----

TEST(InputStream, FailsOnWhatIsNoFile) {
  const TemporaryDirectory directory;
  directory.fill("x");
  const std::pair<std::string, int> cases[] = {
      {directory.path() + "/missing", ENOENT},
      {directory.path(), EISDIR},
      {directory.file() + "/x", ENOTDIR},
      {"", ENOENT},
      {directory.file() + std::string("\0x", 2), EINVAL},
  };
  for (const auto& [path, code] : cases) {
    const auto stream = InputStream::withFileAtPath(path);
    EXPECT_EQ(stream->streamStatus(), StreamStatus::notOpen);
    stream->open();
    expectFailed(*stream, code);
    EXPECT_FALSE(stream->hasBytesAvailable());
    EXPECT_EQ(readOne(*stream), -1);
    stream->close();
    expectFailed(*stream, code);
  }
}

TEST(InputStream, GivesAnEmptyBufferWhenItFailsAtOnce) {
  const auto stream = InputStream::withFileAtPath(testing::TempDir());
  EXPECT_TRUE(stream->readDataToEndOfStream().empty());
  expectFailed(*stream, EISDIR);
}

int lowestFreeDescriptor() {
  const int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
  ::close(descriptor);
  return descriptor;
}

TEST(InputStream, ClosesItsFileForEveryWayToLetItGo) {
  const TemporaryDirectory directory;
  directory.fill("x");
  const int before = lowestFreeDescriptor();
  for (const std::string& path : {directory.file(), directory.path()}) {
    for (const bool closes : {true, false}) {
      const auto stream = InputStream::withFileAtPath(path);
      stream->open();
      if (closes) {
        stream->close();
        EXPECT_EQ(lowestFreeDescriptor(), before);
      }
    }
    EXPECT_EQ(lowestFreeDescriptor(), before);
  }
}

TEST(InputStream, KeepsItsFileFromChildProcesses) {
  const TemporaryDirectory directory;
  directory.fill("x");
  const int descriptor = lowestFreeDescriptor();
  const auto stream = InputStream::withFileAtPath(directory.file());
  stream->open();
  EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
}

TEST(InputStream, LeavesABorrowedDescriptorOpen) {
  const Pipe pipe;
  {
    const auto stream = InputStream::withFileDescriptor(pipe.readingEnd());
    stream->open();
    stream->close();
  }
  EXPECT_NE(fcntl(pipe.readingEnd(), F_GETFD), -1);
}

TEST(InputStream, FailsOnAClosedDescriptor) {
  for (const int descriptor : {-1, lowestFreeDescriptor()}) {
    const auto stream = InputStream::withFileDescriptor(descriptor);
    stream->open();
    expectFailed(*stream, EBADF);
    EXPECT_EQ(readOne(*stream), -1);
  }
}

TEST(InputStream, FailsWhenItsDescriptorIsClosedMeanwhile) {
  Pipe pipe;
  const auto stream = InputStream::withFileDescriptor(pipe.readingEnd());
  stream->open();
  pipe.closeReading();
  EXPECT_TRUE(stream->hasBytesAvailable());
  EXPECT_EQ(readOne(*stream), -1);
  expectFailed(*stream, EBADF);
  EXPECT_EQ(readOne(*stream), -1);
}

TEST(InputStream, FailsOnADescriptorOpenForWritingOnly) {
  const int descriptor = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const auto stream = InputStream::withFileDescriptor(descriptor);
  stream->open();
  EXPECT_EQ(readOne(*stream), -1);
  expectFailed(*stream, EBADF);
  ::close(descriptor);
}

TEST(InputStream, TellsNotReadyFromFailed) {
  Pipe pipe;
  ASSERT_EQ(fcntl(pipe.readingEnd(), F_SETFL, O_NONBLOCK), 0);
  const auto stream = InputStream::withFileDescriptor(pipe.readingEnd());
  stream->open();
  EXPECT_FALSE(stream->hasBytesAvailable());
  EXPECT_EQ(readOne(*stream), -1);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::open);
  EXPECT_EQ(stream->streamError(), nullptr);
  pipe.send("ab");
  EXPECT_TRUE(stream->hasBytesAvailable());
  EXPECT_EQ(readText(*stream, 8), "ab");
  EXPECT_FALSE(stream->hasBytesAvailable());
  pipe.closeWriting();
  EXPECT_TRUE(stream->hasBytesAvailable());
  EXPECT_EQ(readOne(*stream), 0);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::atEnd);
  EXPECT_FALSE(stream->hasBytesAvailable());
}

TEST(InputStream, GivesWhatOneReadOfAPipeGives) {
  const Pipe pipe;
  pipe.send("0123456789");
  const auto stream = InputStream::withFileDescriptor(pipe.readingEnd());
  stream->open();
  EXPECT_EQ(readText(*stream, 20), "0123456789");
}

TEST(InputStream, MakesAnewAReadThatASignalInterrupts) {
  static std::atomic<int> signals = 0;
  struct sigaction action {};
  struct sigaction former {};
  action.sa_handler = [](int) { ++signals; };
  ASSERT_EQ(sigaction(SIGUSR1, &action, &former), 0);
  const Pipe pipe;
  const auto stream = InputStream::withFileDescriptor(pipe.readingEnd());
  stream->open();
  std::thread sender([&pipe, reader = pthread_self()] {
    while (signals < 3) {
      pthread_kill(reader, SIGUSR1);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    pipe.send("late");
  });
  EXPECT_EQ(readText(*stream, 8), "late");
  sender.join();
  sigaction(SIGUSR1, &former, nullptr);
  EXPECT_GE(signals, 3);
}

// ---- standard streams ----

/// Gives a few octets, then fails in the way it is told to.
class FailingBuffer : public std::streambuf {
 public:
  explicit FailingBuffer(std::function<void()> fail) : fail_(std::move(fail)) {
    setg(text_.data(), text_.data(), text_.data() + text_.size());
  }

 protected:
  int_type underflow() override {
    fail_();
    return traits_type::eof();
  }

 private:
  std::function<void()> fail_;
  std::string text_ = "abc";
};

TEST(InputStream, TurnsWhatAStandardStreamThrowsIntoAnError) {
  const std::pair<std::function<void()>, int> cases[] = {
      {[] { throw std::runtime_error("no errno"); }, EIO},
      {[] { throw std::system_error(ENXIO, std::generic_category()); }, ENXIO},
      {[] { throw std::ios_base::failure("no errno"); }, EIO},
      {[] { throw std::bad_alloc(); }, ENOMEM},
      {[] { throw 7; }, EIO},
  };
  for (const auto& [fail, code] : cases) {
    FailingBuffer buffer(fail);
    std::istream source(&buffer);
    const auto stream = InputStream::withStream(source);
    EXPECT_EQ(textOf(stream->readDataToEndOfStream()), "abc");
    expectFailed(*stream, code);
  }
}

TEST(InputStream, FailsOnAStandardStreamThatHasFailed) {
  std::istringstream bad("abc");
  bad.setstate(std::ios::badbit);
  std::ifstream missing(testing::TempDir() + "/missing/file");
  std::istream without(nullptr);
  for (std::istream* source :
       {static_cast<std::istream*>(&bad), static_cast<std::istream*>(&missing), &without}) {
    const auto stream = InputStream::withStream(*source);
    stream->open();
    expectFailed(*stream, EIO);
    EXPECT_EQ(readOne(*stream), -1);
  }
}

TEST(InputStream, FailsWhenAStandardStreamGoesBadMeanwhile) {
  std::istringstream source("abc");
  const auto stream = InputStream::withStream(source);
  stream->open();
  EXPECT_EQ(readText(*stream, 1), "a");
  source.setstate(std::ios::badbit);
  EXPECT_EQ(readOne(*stream), -1);
  expectFailed(*stream, EIO);
}

TEST(InputStream, FailsOnAStandardStreamOverADirectory) {
  std::ifstream source(testing::TempDir());
  const auto stream = InputStream::withStream(source);
  EXPECT_TRUE(stream->readDataToEndOfStream().empty());
  expectFailed(*stream, EISDIR);
}

TEST(InputStream, IsAtItsEndOverAStandardStreamReadToItsEnd) {
  std::istringstream source("abc");
  std::string word;
  while (source >> word) {
  }
  const auto stream = InputStream::withStream(source);
  stream->open();
  EXPECT_EQ(readOne(*stream), 0);
  EXPECT_EQ(stream->streamStatus(), StreamStatus::atEnd);
}

TEST(InputStream, ReadsAStandardStreamWithoutABufferOfItsOwn) {
  class Unbuffered : public std::streambuf {
   protected:
    int_type underflow() override { return left_ > 0 ? 'x' : traits_type::eof(); }
    int_type uflow() override { return left_-- > 0 ? 'x' : traits_type::eof(); }

   private:
    int left_ = 3;
  } buffer;
  std::istream source(&buffer);
  EXPECT_EQ(textOf(InputStream::withStream(source)->readDataToEndOfStream()), "xxx");
}

}  // namespace
}  // namespace platen
