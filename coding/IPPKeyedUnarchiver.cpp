// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPKeyedUnarchiver.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>

#include "coding/ArchiveForm.h"
#include "coding/ArchiveKeys.h"
#include "coding/ArchiveReader.h"
#include "platen/Exception.h"
#include "platform/POSIXError.h"

namespace platen::inline v0 {

IPPKeyedUnarchiver::IPPKeyedUnarchiver(std::unique_ptr<ArchiveReader> reader)
    : reader_(std::move(reader)) {}

IPPKeyedUnarchiver::~IPPKeyedUnarchiver() = default;

std::shared_ptr<const Error> IPPKeyedUnarchiver::error() const { return reader_->error(); }

// The top of the archive is the root object, and not a field of something.
IPPCoder::Object IPPKeyedUnarchiver::decodeRootObject() {
  return reader_->objectIn(reader_->root(), *this);
}

bool IPPKeyedUnarchiver::containsValueForKey(std::string_view key) const {
  return reader_->findField(key) != nullptr;
}

std::int64_t IPPKeyedUnarchiver::decodeIntForKey(std::string_view key) {
  return reader_->intIn(reader_->field(key));
}

bool IPPKeyedUnarchiver::decodeBoolForKey(std::string_view key) {
  return reader_->boolIn(reader_->field(key));
}

std::optional<std::string> IPPKeyedUnarchiver::decodeStringForKey(std::string_view key) {
  return reader_->stringIn(reader_->field(key));
}

RawValue IPPKeyedUnarchiver::decodeRawValueForKey(std::string_view key) {
  return reader_->rawValueIn(reader_->field(key));
}

IPPCoder::Object IPPKeyedUnarchiver::decodeObjectForKey(std::string_view key) {
  return reader_->objectIn(reader_->field(key), *this);
}

std::vector<IPPCoder::Object> IPPKeyedUnarchiver::decodeObjectsForKey(std::string_view key) {
  std::vector<Object> objects;
  for (const ArchiveNode& item : reader_->listIn(reader_->field(key))) {
    objects.push_back(reader_->objectIn(item, *this));
  }
  return objects;
}

Dictionary<IPPCoder::Object> IPPKeyedUnarchiver::decodeNamedObjectsForKey(std::string_view key) {
  Dictionary<Object> objects;
  for (const ArchiveNode& member : reader_->listIn(reader_->field(key))) {
    const ArchiveNode& nameNode = reader_->memberPart(member, kEntryNameKey);
    const auto name = reader_->stringIn(nameNode);
    if (!name) {
      reader_->refuse(nameNode, IPPArchiveError::wrongType, "a member without a name");
    }
    if (objects.find(*name) != nullptr) {
      reader_->refuse(nameNode, IPPArchiveError::duplicateKey, "a member of this name was before");
    }
    objects.set(*name, reader_->objectIn(reader_->memberPart(member, kEntryValueKey), *this));
  }
  return objects;
}

// --- Entry points: whatever is wrong becomes an error record -------------------------------------

namespace {

std::shared_ptr<const Error> errorOf(const InputStream& stream) {
  const auto error = stream.streamError();
  return error != nullptr
             ? error
             : posixError(stream.streamStatus() == StreamStatus::open ? EAGAIN : EBADF);
}

// One octet beyond the limit is enough to know.
std::shared_ptr<const Error> readUpTo(std::size_t limit, InputStream& stream, Data& data) {
  std::array<std::uint8_t, 16384> chunk;
  std::ptrdiff_t count = 1;
  while (count > 0 && data.size() <= limit) {
    count = stream.read(chunk.data(), std::min(chunk.size() - 1, limit - data.size()) + 1);
    data.insert(data.end(), chunk.begin(), chunk.begin() + std::max<std::ptrdiff_t>(count, 0));
  }
  return count < 0 ? errorOf(stream) : nullptr;
}

}  // namespace

std::shared_ptr<IPPKeyedUnarchiver> IPPKeyedUnarchiver::initForReadingWithData(
    Bytes data, std::shared_ptr<const Error>* error, const IPPArchiveReading& reading) {
  try {
    auto reader = std::make_unique<ArchiveReader>(readArchiveForm(data, reading));
    report(error, nullptr);
    return std::shared_ptr<IPPKeyedUnarchiver>(new IPPKeyedUnarchiver(std::move(reader)));
  } catch (const ArchiveFault& fault) {
    report(error, fault.error());
    return nullptr;
  }
}

std::shared_ptr<IPPKeyedUnarchiver> IPPKeyedUnarchiver::initForReadingWithStream(
    InputStream& stream, std::shared_ptr<const Error>* error, const IPPArchiveReading& reading) {
  Data data;
  std::shared_ptr<const Error> failure;
  try {
    failure = readUpTo(reading.largestSize, stream, data);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {  // what an application's own stream raises
    failure = posixError(EIO);
  }
  if (failure != nullptr) {
    report(error, std::move(failure));
    return nullptr;
  }
  return initForReadingWithData(data, error, reading);
}

std::shared_ptr<IPPKeyedUnarchiver> IPPKeyedUnarchiver::initForReadingWithFile(
    const std::string& path, std::shared_ptr<const Error>* error,
    const IPPArchiveReading& reading) {
  const auto stream = InputStream::withFileAtPath(path);
  stream->open();
  return initForReadingWithStream(*stream, error, reading);
}

IPPCoder::Object IPPKeyedUnarchiver::rootObjectOf(
    const std::shared_ptr<IPPKeyedUnarchiver>& unarchiver, std::shared_ptr<const Error>* error) {
  if (unarchiver == nullptr) {
    return nullptr;
  }
  try {
    return unarchiver->decodeRootObject();
  } catch (const Exception&) {
    report(error, unarchiver->error());
    return nullptr;
  }
}

void IPPKeyedUnarchiver::refuseKind(std::string_view className,
                                    std::shared_ptr<const Error>* error) {
  report(error, ArchiveFault{IPPArchiveError::wrongType, "",
                             "the root object is of another class: " + quotedForFault(className)}
                    .error());
}

}  // namespace platen::inline v0
