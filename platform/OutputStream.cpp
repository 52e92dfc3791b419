// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <poll.h>

#include <algorithm>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>

#include "platen/Stream.h"
#include "platform/ConcreteStream.h"
#include "platform/FileDescriptor.h"

namespace platen::inline v0 {

namespace {

class MemoryOutputStream final : public ConcreteStream<OutputStream> {
 public:
  std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength) override {
    if (!isOpen()) {
      return -1;
    }
    data_.insert(data_.end(), bytes, bytes + maxLength);
    return static_cast<std::ptrdiff_t>(maxLength);
  }

  [[nodiscard]] bool hasSpaceAvailable() const override { return isOpen(); }
  [[nodiscard]] const Data* data() const override { return &data_; }

 private:
  Data data_;
};

/// What the streams into a file and into another's descriptor share.
class DescriptorOutputStream : public ConcreteStream<OutputStream> {
 public:
  std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength) final {
    if (!isOpen()) {
      return -1;
    }
    return maxLength == 0 ? 0 : checked(descriptor_.write(bytes, maxLength));
  }

  [[nodiscard]] bool hasSpaceAvailable() const final {
    return isOpen() && descriptor_.isReady(POLLOUT);
  }

 protected:
  int closeResource() final { return descriptor_.release(); }

  FileDescriptor descriptor_;
};

class FileOutputStream final : public DescriptorOutputStream {
 public:
  explicit FileOutputStream(std::string path) : path_(std::move(path)) {}

 protected:
  int openResource() override { return descriptor_.openFile(path_, O_WRONLY | O_CREAT | O_TRUNC); }

 private:
  std::string path_;
};

class BorrowedDescriptorOutputStream final : public DescriptorOutputStream {
 public:
  explicit BorrowedDescriptorOutputStream(int descriptor) : number_(descriptor) {}

 protected:
  int openResource() override { return descriptor_.borrow(number_); }

 private:
  int number_;
};

class StandardOutputStream final : public ConcreteStream<OutputStream> {
 public:
  explicit StandardOutputStream(std::ostream& stream) : stream_(stream) {}

  std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength) override {
    if (!isOpen()) {
      return -1;
    }
    return maxLength == 0 ? 0 : writeOnce(bytes, maxLength);
  }

  [[nodiscard]] bool hasSpaceAvailable() const override { return isOpen(); }

 protected:
  int openResource() override { return stream_.fail() ? EIO : 0; }

  int closeResource() override {
    // Only an open stream is surely still there: the caller keeps it until it closes this one.
    const bool mustFlush = std::exchange(mayHoldOctets_, false);
    try {
      return mustFlush && stream_.rdbuf()->pubsync() == -1 ? EIO : 0;
    } catch (...) {
      return errnoOfCurrentException();
    }
  }

 private:
  std::ptrdiff_t writeOnce(const std::uint8_t* bytes, std::size_t maxLength) {
    constexpr auto kMaximum = static_cast<std::size_t>(std::numeric_limits<std::streamsize>::max());
    try {
      const std::streamsize count =
          stream_.fail()
              ? 0
              : stream_.rdbuf()->sputn(reinterpret_cast<const char*>(bytes),
                                       static_cast<std::streamsize>(std::min(maxLength, kMaximum)));
      mayHoldOctets_ = true;
      if (count > 0) {
        return count;
      }
      noteOutcome(EIO);
    } catch (...) {
      noteOutcome(errnoOfCurrentException());
    }
    return -1;
  }

  std::ostream& stream_;
  bool mayHoldOctets_ = false;
};

}  // namespace

OutputStream::~OutputStream() = default;

std::shared_ptr<OutputStream> OutputStream::toMemory() {
  return std::make_shared<MemoryOutputStream>();
}

std::shared_ptr<OutputStream> OutputStream::toFileAtPath(std::string path) {
  return std::make_shared<FileOutputStream>(std::move(path));
}

std::shared_ptr<OutputStream> OutputStream::toFileDescriptor(int descriptor) {
  return std::make_shared<BorrowedDescriptorOutputStream>(descriptor);
}

std::shared_ptr<OutputStream> OutputStream::toStream(std::ostream& stream) {
  return std::make_shared<StandardOutputStream>(stream);
}

const Data* OutputStream::data() const { return nullptr; }

}  // namespace platen::inline v0
