// SPDX-License-Identifier: Apache-2.0

#include "platen/IPPBytesReader.h"

#include <algorithm>
#include <utility>

#include "platform/FileDescriptor.h"

namespace platen::inline v0 {

IPPBytesReader::IPPBytesReader() = default;
IPPBytesReader::~IPPBytesReader() = default;

std::shared_ptr<IPPBytesReader> IPPBytesReader::readerWithData(std::shared_ptr<const Data> data) {
  return std::make_shared<IPPDataReader>(std::move(data));
}

std::shared_ptr<IPPBytesReader> IPPBytesReader::readerWithStream(
    std::shared_ptr<InputStream> stream) {
  return std::make_shared<IPPStreamReader>(std::move(stream));
}

std::shared_ptr<IPPBytesReader> IPPBytesReader::readerWithFileHandle(int descriptor) {
  return std::make_shared<IPPFileHandleReader>(descriptor);
}

std::ptrdiff_t IPPBytesReader::readData(std::uint8_t*, std::size_t) { return -1; }

Bytes IPPBytesReader::window() const noexcept { return {}; }

void IPPBytesReader::advance(std::size_t) noexcept {}

IPPDataReader::IPPDataReader(std::shared_ptr<const Data> data)
    : data_(std::move(data)), left_(data_ ? Bytes(*data_) : Bytes()) {}

IPPDataReader::~IPPDataReader() = default;

std::ptrdiff_t IPPDataReader::readData(std::uint8_t* destination, std::size_t length) {
  const std::size_t count = std::min(length, left_.size());
  std::copy_n(left_.begin(), count, destination);
  left_ = left_.subspan(count);
  return static_cast<std::ptrdiff_t>(count);
}

Bytes IPPDataReader::window() const noexcept { return left_; }

void IPPDataReader::advance(std::size_t count) noexcept {
  left_ = left_.subspan(std::min(count, left_.size()));
}

IPPStreamReader::IPPStreamReader(std::shared_ptr<InputStream> stream)
    : stream_(std::move(stream)) {}

IPPStreamReader::~IPPStreamReader() = default;

std::ptrdiff_t IPPStreamReader::readData(std::uint8_t* destination, std::size_t length) {
  return stream_ ? stream_->read(destination, length) : -1;
}

// The stream may be an application's own, and raise. Then there is no window: the read that follows
// raises where it can be dealt with.
Bytes IPPStreamReader::window() const noexcept try {
  Bytes buffer;
  return stream_ && stream_->getBuffer(buffer) ? buffer : Bytes();
} catch (...) {
  return {};
}

void IPPStreamReader::advance(std::size_t count) noexcept try {
  if (stream_) {
    stream_->skip(count);
  }
} catch (...) {
  return;
}

IPPFileHandleReader::IPPFileHandleReader(int descriptor) : fileDescriptor_(descriptor) {}

IPPFileHandleReader::~IPPFileHandleReader() = default;

std::ptrdiff_t IPPFileHandleReader::readData(std::uint8_t* destination, std::size_t length) {
  return readDescriptor(fileDescriptor_, destination, length);
}

}  // namespace platen::inline v0
