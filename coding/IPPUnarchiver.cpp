// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPUnarchiver.h"

#include <cstring>
#include <string>

#include "coding/MessageMemory.h"
#include "platen/Exception.h"

namespace platen::inline v0 {

namespace {

// Up to this many octets of input are copied once, in one piece, for the strings of the message to
// be borrowed from. More than that means that a document follows, which is not to be kept.
constexpr std::size_t kLargestCopiedInput = std::size_t{256} * 1024;

}  // namespace

IPPUnarchiver::IPPUnarchiver(std::shared_ptr<IPPBytesReader> reader) : reader_(std::move(reader)) {
  openWindow();
}

std::shared_ptr<IPPUnarchiver> IPPUnarchiver::initForReadingWithData(
    std::shared_ptr<const Data> data) {
  return std::make_shared<IPPUnarchiver>(IPPBytesReader::readerWithData(std::move(data)));
}

std::shared_ptr<IPPUnarchiver> IPPUnarchiver::initForReadingWithStream(
    std::shared_ptr<InputStream> stream) {
  return std::make_shared<IPPUnarchiver>(IPPBytesReader::readerWithStream(std::move(stream)));
}

std::shared_ptr<IPPUnarchiver> IPPUnarchiver::initForReadingWithFileHandle(int descriptor) {
  return std::make_shared<IPPUnarchiver>(IPPBytesReader::readerWithFileHandle(descriptor));
}

IPPUnarchiver::~IPPUnarchiver() { syncReader(); }

void IPPUnarchiver::openWindow() {
  const Bytes input = reader_->window();
  memory_ = std::make_unique<Memory>(input.size() <= kLargestCopiedInput ? input.size() : 0);
  isWindowKept_ = input.size() <= kLargestCopiedInput;
  const Bytes window = isWindowKept_ ? memory_->keepInput(input) : input;
  windowBegin_ = next_ = window.data();
  end_ = next_ + window.size();
}

// The reader learns how much of its window was read when somebody else may look at it.
void IPPUnarchiver::syncReader() {
  if (next_ != windowBegin_) {
    reader_->advance(static_cast<std::size_t>(next_ - windowBegin_));
    windowBegin_ = next_;
  }
}

// What the window cannot give whole is the reader's to give.
void IPPUnarchiver::closeWindow() {
  syncReader();
  windowBegin_ = next_ = end_ = nullptr;
}

std::size_t IPPUnarchiver::readData(std::uint8_t* destination, std::size_t length) {
  if (length <= static_cast<std::size_t>(end_ - next_)) {
    std::memcpy(destination, next_, length);
    next_ += length;
    return length;
  }
  closeWindow();
  const std::ptrdiff_t count = reader_->readData(destination, length);
  if (static_cast<std::uint32_t>(count) != static_cast<std::uint32_t>(length)) {
    throw InconsistentArchiveException("Unexpected bytes read: " + std::to_string(count) +
                                       " while requested: " + std::to_string(length));
  }
  return length;
}

std::uint8_t* IPPUnarchiver::cacheBufferOfLength(std::uint32_t length) {
  if (cacheBuffer_.size() < length) {
    cacheBuffer_ = std::vector<std::uint8_t>(length);
  }
  return cacheBuffer_.data();
}

// The next octets: in place where they are in memory, else read into the scratch buffer.
const std::uint8_t* IPPUnarchiver::take(std::size_t length) {
  if (length <= static_cast<std::size_t>(end_ - next_)) {
    next_ += length;
    return next_ - length;
  }
  std::uint8_t* scratch = cacheBufferOfLength(static_cast<std::uint32_t>(length));
  readData(scratch, length);
  return scratch;
}

void IPPUnarchiver::decodeValueOfType(char type, void* destination) {
  if (type == 'c') {
    std::memcpy(destination, take(1), 1);
  } else if (type == 's') {
    const std::uint8_t* octets = take(2);
    const auto value = static_cast<std::uint16_t>(octets[0] << 8U | octets[1]);
    std::memcpy(destination, &value, sizeof value);
  } else if (type == 'i') {
    const std::uint8_t* octets = take(4);
    const std::uint32_t value = std::uint32_t{octets[0]} << 24U | std::uint32_t{octets[1]} << 16U |
                                std::uint32_t{octets[2]} << 8U | octets[3];
    std::memcpy(destination, &value, sizeof value);
  }
}

Bytes IPPUnarchiver::decodeBytesWithReturnedLength() {
  const std::int16_t length = decodeInt16();
  if (length < 0) {
    throw InconsistentArchiveException(
        "Unexpected length decoded - it could not be more then 65535decoded: " +
        std::to_string(length));
  }
  const auto count = static_cast<std::size_t>(length);
  return count == 0 ? Bytes() : Bytes(take(count), count);
}

void IPPUnarchiver::installCharsetArrived(std::string_view charset) {
  naturalLanguageEncoding_ =
      TextEncoding::forIANACharSetName(charset).value_or(TextEncoding::utf8());
}

TextEncoding IPPUnarchiver::naturalLanguageEncoding() const noexcept {
  return naturalLanguageEncoding_;
}

void IPPUnarchiver::setNaturalLanguageEncoding(TextEncoding encoding) noexcept {
  naturalLanguageEncoding_ = encoding;
}

std::shared_ptr<void> IPPUnarchiver::roomFor(std::size_t size, std::size_t alignment) {
  return {memory_->sharedArena(), memory_->arena().allocate(size, alignment)};
}

void IPPUnarchiver::destroyInTheEnd(void* object, void (*destroy)(void*)) {
  memory_->arena().onRelease(object, destroy);
}

Text IPPUnarchiver::keepText(std::string_view text) {
  return Text::borrowed(memory_->isKept(text) ? text : memory_->arena().copy(text));
}

std::shared_ptr<const IPPValue> IPPUnarchiver::makeArray(
    std::span<const std::shared_ptr<const IPPValue>> values) {
  return memory_->makeArray(values);
}

std::shared_ptr<const IPPValue> IPPUnarchiver::makeMap(std::span<Member> members) {
  return memory_->makeMap(members);
}

}  // namespace platen::inline v0
