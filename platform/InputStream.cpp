// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <istream>
#include <streambuf>
#include <string>
#include <utility>

#include "platen/Stream.h"
#include "platform/ConcreteStream.h"
#include "platform/FileDescriptor.h"
#include "platform/StreamSchedule.h"

namespace platen::inline v0 {

namespace {

constexpr std::size_t kChunkSize = 4096;

class MemoryInputStream final : public ConcreteStream<InputStream> {
 public:
  explicit MemoryInputStream(Data data) : data_(std::move(data)), left_(data_) {}
  explicit MemoryInputStream(Bytes bytes) : left_(bytes) {}

  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override {
    if (!isOpen()) {
      return isAtEnd() ? 0 : -1;
    }
    const std::size_t count = std::min(maxLength, left_.size());
    std::copy_n(left_.begin(), count, destination);
    return static_cast<std::ptrdiff_t>(skip(count));
  }

  [[nodiscard]] bool hasBytesAvailable() const override { return isOpen(); }

  bool getBuffer(Bytes& buffer) override {
    if (!isOpen() && !isAtEnd()) {
      return false;
    }
    buffer = left_;
    return true;
  }

  std::size_t skip(std::size_t count) override {
    if (!isOpen()) {
      return 0;
    }
    const std::size_t skipped = std::min(count, left_.size());
    left_ = left_.subspan(skipped);
    noteEndWhenEmpty();
    return skipped;
  }

 protected:
  int openResource() override {
    noteEndWhenEmpty();
    return 0;
  }

 private:
  void noteEndWhenEmpty() {
    if (left_.empty()) {
      noteEnd();
    }
  }

  Data data_;
  Bytes left_;
};

/// What the streams over a file and over another's descriptor share.
class DescriptorInputStream : public ConcreteStream<InputStream> {
 public:
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) final {
    if (!isOpen()) {
      return isAtEnd() ? 0 : -1;
    }
    if (maxLength == 0) {
      return 0;
    }
    const std::ptrdiff_t count = checked(descriptor_.read(destination, maxLength));
    if (count == 0) {
      noteEnd();
    }
    schedule_.rearm();
    return count;
  }

  [[nodiscard]] bool hasBytesAvailable() const final {
    return isOpen() && descriptor_.isReady(POLLIN);
  }

  bool scheduleInRunLoop(RunLoop& loop, std::string_view) final {
    return isOpen() && schedule_.add(loop, descriptor_.number());
  }
  void removeFromRunLoop(RunLoop& loop, std::string_view) final { schedule_.remove(loop); }

 protected:
  int closeResource() final {
    schedule_.clear();
    // Whatever closing finds wrong, all that was wanted has been read.
    descriptor_.release();
    return 0;
  }

  FileDescriptor descriptor_;

 private:
  StreamSchedule schedule_{*this};
};

class FileInputStream final : public DescriptorInputStream {
 public:
  explicit FileInputStream(std::string path) : path_(std::move(path)) {}

 protected:
  int openResource() override { return descriptor_.openFile(path_, O_RDONLY); }

 private:
  std::string path_;
};

class BorrowedDescriptorInputStream final : public DescriptorInputStream {
 public:
  explicit BorrowedDescriptorInputStream(int descriptor) : number_(descriptor) {}

 protected:
  int openResource() override { return descriptor_.borrow(number_); }

 private:
  int number_;
};

class StandardInputStream final : public ConcreteStream<InputStream> {
 public:
  explicit StandardInputStream(std::istream& stream) : stream_(stream) {}

  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override {
    if (!isOpen()) {
      return isAtEnd() ? 0 : -1;
    }
    if (maxLength == 0) {
      return 0;
    }
    try {
      return readOnce(destination, maxLength);
    } catch (...) {
      noteOutcome(errnoOfCurrentException());
      return -1;
    }
  }

  [[nodiscard]] bool hasBytesAvailable() const override { return isOpen(); }

 protected:
  int openResource() override {
    // A stream that was read to its end has failbit beside eofbit; that is an end, no failure.
    return stream_.bad() || (stream_.fail() && !stream_.eof()) ? EIO : 0;
  }

 private:
  /// `istream::read` waits until all is there; this takes what one filling of the buffer gives, so
  /// that a terminal's line or a pipe's message is passed on when it comes.
  std::ptrdiff_t readOnce(std::uint8_t* destination, std::size_t maxLength) {
    using Traits = std::istream::traits_type;
    if (stream_.bad()) {
      noteOutcome(EIO);
      return -1;
    }
    std::streambuf& source = *stream_.rdbuf();
    if (Traits::eq_int_type(source.sgetc(), Traits::eof())) {
      noteEnd();
      return 0;
    }
    // An unbuffered source can tell of nothing but the one octet that it just showed.
    const std::streamsize ready = std::max<std::streamsize>(source.in_avail(), 1);
    const auto count = std::min(static_cast<std::size_t>(ready), maxLength);
    return source.sgetn(reinterpret_cast<char*>(destination), static_cast<std::streamsize>(count));
  }

  std::istream& stream_;
};

}  // namespace

InputStream::~InputStream() = default;

std::shared_ptr<InputStream> InputStream::withData(Data data) {
  return std::make_shared<MemoryInputStream>(std::move(data));
}

std::shared_ptr<InputStream> InputStream::withBytes(Bytes bytes) {
  return std::make_shared<MemoryInputStream>(bytes);
}

std::shared_ptr<InputStream> InputStream::withFileAtPath(std::string path) {
  return std::make_shared<FileInputStream>(std::move(path));
}

std::shared_ptr<InputStream> InputStream::withFileDescriptor(int descriptor) {
  return std::make_shared<BorrowedDescriptorInputStream>(descriptor);
}

std::shared_ptr<InputStream> InputStream::withStream(std::istream& stream) {
  return std::make_shared<StandardInputStream>(stream);
}

bool InputStream::getBuffer(Bytes&) { return false; }

std::size_t InputStream::skip(std::size_t) { return 0; }

Data InputStream::readDataToEndOfStream() {
  Data data;
  readDataToEndOfStreamAppendingToData(data);
  return data;
}

Data& InputStream::readDataToEndOfStreamAppendingToData(Data& data) {
  std::array<std::uint8_t, kChunkSize> chunk;
  open();
  std::ptrdiff_t count = read(chunk.data(), chunk.size());
  while (count > 0) {
    data.insert(data.end(), chunk.begin(), chunk.begin() + count);
    count = read(chunk.data(), chunk.size());
  }
  close();
  return data;
}

void InputStream::transferContentsTo(OutputStream* output) {
  if (output == nullptr) {
    return;
  }
  std::array<std::uint8_t, kChunkSize> chunk;
  std::ptrdiff_t count = read(chunk.data(), chunk.size());
  // One write for each chunk, and what it leaves is dropped, as the header states.
  while (count > 0 && output->write(chunk.data(), static_cast<std::size_t>(count)) > 0) {
    count = read(chunk.data(), chunk.size());
  }
}

}  // namespace platen::inline v0
