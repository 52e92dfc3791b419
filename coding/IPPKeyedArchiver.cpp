// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPKeyedArchiver.h"

#include <cerrno>
#include <new>

#include "coding/ArchiveForm.h"
#include "coding/ArchiveKeys.h"
#include "coding/ArchiveWriter.h"
#include "platform/AtomicFile.h"
#include "platform/POSIXError.h"

namespace platen::inline v0 {

IPPKeyedArchiver::IPPKeyedArchiver() : writer_(std::make_unique<ArchiveWriter>()) {}

IPPKeyedArchiver::~IPPKeyedArchiver() = default;

void IPPKeyedArchiver::encodeRootObject(const IPPCodable& root) { writer_->writeRoot(root, *this); }

Data IPPKeyedArchiver::archivedData(IPPArchiveFormat format) const {
  return writeArchiveForm(writer_->top(), format);
}

std::shared_ptr<const Error> IPPKeyedArchiver::error() const { return writer_->error(); }

void IPPKeyedArchiver::encodeIntForKey(std::int64_t value, std::string_view key) {
  writer_->set(key, ArchiveNode(value));
}

void IPPKeyedArchiver::encodeBoolForKey(bool value, std::string_view key) {
  writer_->set(key, ArchiveNode(value));
}

void IPPKeyedArchiver::encodeStringForKey(std::optional<std::string_view> value,
                                          std::string_view key) {
  writer_->set(key, value ? ArchiveNode(*value) : ArchiveNode());
}

void IPPKeyedArchiver::encodeRawValueForKey(const RawValue& value, std::string_view key) {
  writer_->setRaw(key, value);
}

void IPPKeyedArchiver::encodeObjectForKey(const Object& object, std::string_view key) {
  writer_->setMade(key, [&] { return writer_->nodeFor(object, *this); });
}

void IPPKeyedArchiver::encodeObjectsForKey(const std::vector<Object>& objects,
                                           std::string_view key) {
  writer_->setMade(key, [&] {
    ArchiveNode::Array items;
    for (const Object& object : objects) {
      items.push_back(writer_->itemFor(object, items.size(), *this));
    }
    return ArchiveNode(std::move(items));
  });
}

void IPPKeyedArchiver::encodeNamedObjectsForKey(const Dictionary<Object>& objects,
                                                std::string_view key) {
  writer_->setMade(key, [&] {
    ArchiveNode::Array members;
    for (const auto& [name, object] : objects) {
      auto member = std::make_unique<ArchiveNode::Object>();
      member->set(kEntryNameKey, ArchiveNode(name));
      member->set(kEntryValueKey, writer_->itemFor(object, members.size(), *this));
      members.emplace_back(std::move(member));
    }
    return ArchiveNode(std::move(members));
  });
}

namespace {

std::shared_ptr<const Error> writeAll(OutputStream& stream, Bytes data) try {
  while (!data.empty()) {
    const std::ptrdiff_t taken = stream.write(data.data(), data.size());
    if (taken <= 0) {
      const auto error = stream.streamError();
      return error != nullptr
                 ? error
                 : posixError(stream.streamStatus() == StreamStatus::open ? EAGAIN : EBADF);
    }
    data = data.subspan(static_cast<std::size_t>(taken));
  }
  return nullptr;
} catch (const std::bad_alloc&) {
  throw;
} catch (...) {  // what an application's own stream raises
  return posixError(EIO);
}

}  // namespace

std::optional<Data> IPPKeyedArchiver::archivedDataWithRootObject(
    const IPPCodable& root, IPPArchiveFormat format, std::shared_ptr<const Error>* error) {
  IPPKeyedArchiver archiver;
  try {
    archiver.encodeRootObject(root);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {  // also what a class of an application throws, which the archiver remembers
    report(error, archiver.error());
    return std::nullopt;
  }
  report(error, nullptr);
  return archiver.archivedData(format);
}

bool IPPKeyedArchiver::archiveRootObject(const IPPCodable& root, OutputStream& stream,
                                         IPPArchiveFormat format,
                                         std::shared_ptr<const Error>* error) {
  const auto data = archivedDataWithRootObject(root, format, error);
  if (!data) {
    return false;
  }
  auto failure = writeAll(stream, *data);
  const bool isWritten = failure == nullptr;
  report(error, std::move(failure));
  return isWritten;
}

bool IPPKeyedArchiver::archiveRootObject(const IPPCodable& root, const std::string& path,
                                         IPPArchiveFormat format,
                                         std::shared_ptr<const Error>* error) {
  const auto data = archivedDataWithRootObject(root, format, error);
  if (!data) {
    return false;
  }
  const bool isWritten = writeFileAtomically(path, *data);
  report(error, isWritten ? nullptr : posixError(errno));
  return isWritten;
}

}  // namespace platen::inline v0
