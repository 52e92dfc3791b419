// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "platen/Stream.h"

namespace platen {
namespace {

std::ptrdiff_t writeText(OutputStream& stream, std::string_view text) {
  return stream.write(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

void expectFailed(const Stream& stream, int code) {
  EXPECT_EQ(stream.streamStatus(), StreamStatus::error);
  ASSERT_NE(stream.streamError(), nullptr);
  EXPECT_EQ(stream.streamError()->domain(), "POSIX");
  EXPECT_EQ(stream.streamError()->code(), code);
}

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A path that nothing stands at yet.
class TemporaryPath {
 public:
  TemporaryPath() {
    ::close(mkstemp(path_.data()));
    unlink(path_.c_str());
  }
  ~TemporaryPath() { unlink(path_.c_str()); }
  [[nodiscard]] const std::string& text() const { return path_; }

 private:
  std::string path_ = testing::TempDir() + "platenXXXXXX";
};

/// Two connected descriptors; what is written into the first comes out of the second.
class Connection {
 public:
  static Connection pipe() {
    Connection connection;
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    connection.ends_ = {ends[1], ends[0]};
    return connection;
  }
  static Connection sockets() {
    Connection connection;
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, connection.ends_.data()), 0);
    return connection;
  }
  Connection(Connection&& other) noexcept : ends_(std::exchange(other.ends_, {-1, -1})) {}
  Connection& operator=(Connection&&) = delete;
  ~Connection() {
    closeEnd(0);
    closeEnd(1);
  }

  [[nodiscard]] int input() const { return ends_[0]; }
  void closeInput() { closeEnd(0); }
  void closeOutput() { closeEnd(1); }
  [[nodiscard]] std::string received() const {
    std::array<char, 64> buffer{};
    const ssize_t count = ::read(ends_[1], buffer.data(), buffer.size());
    return {buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

 private:
  Connection() = default;
  void closeEnd(std::size_t index) {
    if (ends_[index] >= 0) {
      ::close(std::exchange(ends_[index], -1));
    }
  }
  std::array<int, 2> ends_{-1, -1};
};

// ---- one contract for every kind ----

/// A stream and what came out of it.
struct Sink {
  std::shared_ptr<OutputStream> stream;
  std::function<std::string()> contents;
};

Sink toMemory() {
  const auto stream = OutputStream::toMemory();
  return {stream, [stream] { return std::string(stream->data()->begin(), stream->data()->end()); }};
}

Sink toFile() {
  const auto path = std::make_shared<TemporaryPath>();
  return {OutputStream::toFileAtPath(path->text()), [path] { return contentsOf(path->text()); }};
}

Sink toPipe() {
  const auto pipe = std::make_shared<Connection>(Connection::pipe());
  return {OutputStream::toFileDescriptor(pipe->input()), [pipe] {
            pipe->closeInput();
            return pipe->received();
          }};
}

Sink toSocket() {
  const auto sockets = std::make_shared<Connection>(Connection::sockets());
  return {OutputStream::toFileDescriptor(sockets->input()), [sockets] {
            sockets->closeInput();
            return sockets->received();
          }};
}

Sink toStandardStream() {
  const auto stream = std::make_shared<std::ostringstream>();
  return {OutputStream::toStream(*stream), [stream] { return stream->str(); }};
}

struct Kind {
  const char* name;
  Sink (*make)();
};

class EveryOutputStream : public testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(Kinds, EveryOutputStream,
                         testing::Values(Kind{"Memory", toMemory}, Kind{"File", toFile},
                                         Kind{"Pipe", toPipe}, Kind{"Socket", toSocket},
                                         Kind{"Stream", toStandardStream}),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(EveryOutputStream, TakesOctetsInOrder) {
  const Sink sink = GetParam().make();
  sink.stream->open();
  EXPECT_EQ(sink.stream->streamStatus(), StreamStatus::open);
  EXPECT_TRUE(sink.stream->hasSpaceAvailable());
  EXPECT_EQ(writeText(*sink.stream, "abc"), 3);
  EXPECT_EQ(writeText(*sink.stream, ""), 0);
  EXPECT_EQ(writeText(*sink.stream, std::string_view("\0\xFF", 2)), 2);
  EXPECT_EQ(sink.stream->streamStatus(), StreamStatus::open);
  sink.stream->close();
  EXPECT_EQ(sink.stream->streamStatus(), StreamStatus::closed);
  EXPECT_EQ(sink.contents(), std::string("abc\0\xFF", 5));
}

TEST_P(EveryOutputStream, TakesNothingUnlessItIsOpen) {
  const Sink sink = GetParam().make();
  EXPECT_EQ(sink.stream->streamStatus(), StreamStatus::notOpen);
  EXPECT_FALSE(sink.stream->hasSpaceAvailable());
  EXPECT_EQ(writeText(*sink.stream, "x"), -1);
  sink.stream->open();
  EXPECT_EQ(writeText(*sink.stream, "abc"), 3);
  sink.stream->open();
  sink.stream->close();
  sink.stream->close();
  sink.stream->open();
  EXPECT_FALSE(sink.stream->hasSpaceAvailable());
  EXPECT_EQ(writeText(*sink.stream, "y"), -1);
  EXPECT_EQ(sink.stream->streamStatus(), StreamStatus::closed);
  EXPECT_EQ(sink.stream->streamError(), nullptr);
  EXPECT_EQ(sink.contents(), "abc");
}

TEST_P(EveryOutputStream, ShowsDataOnlyWhenItIsMemory) {
  const Sink sink = GetParam().make();
  EXPECT_EQ(sink.stream->data() != nullptr, std::string_view(GetParam().name) == "Memory");
}

// ---- files and descriptors ----

TEST(OutputStream, EmptiesTheFileThatWasThere) {
  const TemporaryPath path;
  std::ofstream(path.text()) << "something longer";
  const auto stream = OutputStream::toFileAtPath(path.text());
  EXPECT_EQ(contentsOf(path.text()), "something longer");
  stream->open();
  EXPECT_EQ(contentsOf(path.text()), "");
  EXPECT_EQ(writeText(*stream, "new"), 3);
  stream->close();
  EXPECT_EQ(contentsOf(path.text()), "new");
}

TEST(OutputStream, FailsWhereNoFileCanBeMade) {
  const std::pair<std::string, int> cases[] = {
      {testing::TempDir(), EISDIR},
      {testing::TempDir() + "/missing/file", ENOENT},
      {"", ENOENT},
      {std::string("a\0b", 3), EINVAL},
  };
  for (const auto& [path, code] : cases) {
    const auto stream = OutputStream::toFileAtPath(path);
    stream->open();
    expectFailed(*stream, code);
    EXPECT_FALSE(stream->hasSpaceAvailable());
    EXPECT_EQ(writeText(*stream, "x"), -1);
    stream->close();
    expectFailed(*stream, code);
  }
}

TEST(OutputStream, FailsOnAFullDevice) {
  const auto stream = OutputStream::toFileAtPath("/dev/full");
  stream->open();
  EXPECT_EQ(writeText(*stream, "x"), -1);
  expectFailed(*stream, ENOSPC);
}

TEST(OutputStream, FailsOnAClosedDescriptor) {
  const auto never = OutputStream::toFileDescriptor(-1);
  never->open();
  expectFailed(*never, EBADF);
  Connection pipe = Connection::pipe();
  const auto stream = OutputStream::toFileDescriptor(pipe.input());
  stream->open();
  pipe.closeInput();
  EXPECT_EQ(writeText(*stream, "x"), -1);
  expectFailed(*stream, EBADF);
}

TEST(OutputStream, LeavesABorrowedDescriptorOpen) {
  const Connection pipe = Connection::pipe();
  {
    const auto stream = OutputStream::toFileDescriptor(pipe.input());
    stream->open();
    stream->close();
  }
  EXPECT_NE(fcntl(pipe.input(), F_GETFD), -1);
}

TEST(OutputStream, RaisesNoSignalOnASocketWhoseOtherSideIsGone) {
  ASSERT_EXIT(
      {
        std::signal(SIGPIPE, SIG_DFL);
        Connection sockets = Connection::sockets();
        sockets.closeOutput();
        const auto stream = OutputStream::toFileDescriptor(sockets.input());
        stream->open();
        const bool hasFailed = writeText(*stream, "x") == -1 && stream->streamError() &&
                               stream->streamError()->code() == EPIPE;
        _exit(hasFailed ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(OutputStream, TellsNotReadyFromFailedAndTakesWhatThereIsSpaceFor) {
  const Connection sockets = Connection::sockets();
  ASSERT_EQ(fcntl(sockets.input(), F_SETFL, O_NONBLOCK), 0);
  const auto stream = OutputStream::toFileDescriptor(sockets.input());
  stream->open();
  const std::string text(4000000, 'x');
  const std::ptrdiff_t taken = writeText(*stream, text);
  EXPECT_GT(taken, 0);
  EXPECT_LT(taken, 4000000);
  EXPECT_EQ(writeText(*stream, text), -1);
  EXPECT_FALSE(stream->hasSpaceAvailable());
  EXPECT_EQ(stream->streamStatus(), StreamStatus::open);
  EXPECT_EQ(stream->streamError(), nullptr);
}

// ---- standard streams ----

/// Takes a few octets, then no more, or throws.
class LimitedBuffer : public std::streambuf {
 public:
  LimitedBuffer(std::streamsize space, bool throws) : space_(space), throws_(throws) {}

 protected:
  std::streamsize xsputn(const char*, std::streamsize count) override {
    const std::streamsize taken = std::min(space_, count);
    if (taken == 0 && throws_) {
      throw std::system_error(ENOSPC, std::generic_category());
    }
    space_ -= taken;
    return taken;
  }
  int sync() override { return -1; }

 private:
  std::streamsize space_;
  bool throws_;
};

TEST(OutputStream, TellsHowMuchAStandardStreamTook) {
  for (const bool throws : {false, true}) {
    LimitedBuffer buffer(3, throws);
    std::ostream target(&buffer);
    const auto stream = OutputStream::toStream(target);
    stream->open();
    EXPECT_EQ(writeText(*stream, "abcde"), 3);
    EXPECT_EQ(writeText(*stream, "de"), -1);
    expectFailed(*stream, throws ? ENOSPC : EIO);
    EXPECT_FALSE(stream->hasSpaceAvailable());
  }
}

TEST(OutputStream, FailsWhenAStandardStreamCannotBeFlushed) {
  LimitedBuffer buffer(3, false);
  std::ostream target(&buffer);
  const auto stream = OutputStream::toStream(target);
  stream->open();
  EXPECT_EQ(writeText(*stream, "abc"), 3);
  stream->close();
  expectFailed(*stream, EIO);
}

TEST(OutputStream, FailsOnAStandardStreamThatHasFailed) {
  std::ofstream missing(testing::TempDir() + "/missing/file");
  std::ostream without(nullptr);
  for (std::ostream* target : {static_cast<std::ostream*>(&missing), &without}) {
    const auto stream = OutputStream::toStream(*target);
    stream->open();
    expectFailed(*stream, EIO);
    EXPECT_EQ(writeText(*stream, "x"), -1);
    stream->close();
  }
  std::ostringstream late;
  const auto stream = OutputStream::toStream(late);
  stream->open();
  late.setstate(std::ios::failbit);
  EXPECT_EQ(writeText(*stream, "x"), -1);
  expectFailed(*stream, EIO);
}

TEST(OutputStream, FlushesAStandardStreamWhenItIsClosed) {
  const TemporaryPath path;
  std::ofstream file(path.text());
  const auto stream = OutputStream::toStream(file);
  stream->open();
  EXPECT_EQ(writeText(*stream, "abc"), 3);
  EXPECT_EQ(contentsOf(path.text()), "");
  stream->close();
  EXPECT_EQ(contentsOf(path.text()), "abc");
}

}  // namespace
}  // namespace platen
