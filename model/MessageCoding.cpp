// SPDX-License-Identifier: Apache-2.0

/// How a message is read and written, RFC 8010 §3.1.1:
///
///     message = version-number tag-INT16 request-id-INT32 *group %x03
///     version-number = %x01.01                        ; written; read: see isAcceptableVersion

#include <unistd.h>

#include <exception>
#include <new>

#include "coding/BorrowedReader.h"
#include "platen/IPPArchiver.h"
#include "platen/IPPMessage.h"
#include "platen/IPPUnarchiver.h"

namespace platen::inline v0 {

namespace {

constexpr std::uint8_t kVersionMajor = 1;
constexpr std::uint8_t kVersionMinor = 1;
constexpr std::uint8_t kEndOfAttributes = 3;

constexpr std::string_view kTagKey = "tag";
constexpr std::string_view kRequestIdKey = "request-id";
constexpr std::string_view kGroupsKey = "groups";

// Taken as one signed 16-bit number, so that 1.1 and everything above is accepted, 1.0 is not, and
// an octet of 0x80 and above, which no version has, makes the number negative.
bool isAcceptableVersion(std::uint8_t major, std::uint8_t minor) {
  const auto high = static_cast<std::uint16_t>(major << 8U);
  const auto low = static_cast<std::uint16_t>(minor < 0x80 ? minor : minor | 0xFF00);
  return static_cast<std::int16_t>(high | low) > 0x0100;
}

}  // namespace

std::shared_ptr<IPPMessage> IPPMessage::initWithDataRepresentation(Bytes data) {
  auto message = std::make_shared<IPPMessage>(0, 0);
  return message->readFromData(data) ? message : nullptr;
}

std::shared_ptr<IPPMessage> IPPMessage::initWithStream(const std::shared_ptr<InputStream>& stream) {
  auto message = std::make_shared<IPPMessage>(0, 0);
  return message->readFromStream(stream) ? message : nullptr;
}

std::shared_ptr<IPPMessage> IPPMessage::initWithFileHandle(int descriptor) {
  auto message = std::make_shared<IPPMessage>(0, 0);
  return message->readFromFileHandle(descriptor) ? message : nullptr;
}

std::shared_ptr<IPPMessage> IPPMessage::initWithCoder(IPPCoder& coder) {
  auto message = std::make_shared<IPPMessage>(0, 0);
  return message->readFrom(coder) ? message : nullptr;
}

// Whatever an application's own stream raises does not come out of a reading constructor.
template <class MakeReader>
bool IPPMessage::readFromReader(MakeReader makeReader) {
  try {
    IPPUnarchiver coder(makeReader());
    return readFrom(coder);
  } catch (...) {
    return false;
  }
}

bool IPPMessage::readFromData(Bytes data) {
  return !data.empty() && readFromReader([&] { return std::make_shared<BorrowedReader>(data); });
}

bool IPPMessage::readFromStream(const std::shared_ptr<InputStream>& stream) {
  return stream != nullptr &&
         readFromReader([&] { return IPPBytesReader::readerWithStream(stream); });
}

bool IPPMessage::readFromFileHandle(int descriptor) {
  return readFromReader([&] { return IPPBytesReader::readerWithFileHandle(descriptor); });
}

bool IPPMessage::readFrom(IPPCoder& coder) {
  try {
    const bool isRead = coder.allowsKeyedCoding() ? readKeys(coder) : readSequence(coder);
    if (isRead) {
      awakeAfterReading();
    }
    return isRead;
  } catch (const std::bad_alloc&) {
    if (coder.allowsKeyedCoding()) {
      throw;  // it says nothing about the archive
    }
    return false;
  } catch (const std::exception&) {
    return false;
  }
}

bool IPPMessage::readSequence(IPPCoder& coder) {
  const std::uint8_t major = coder.decodeByte();
  const std::uint8_t minor = coder.decodeByte();
  if (!isAcceptableVersion(major, minor)) {
    return false;
  }
  tag_ = coder.decodeInt16();
  requestId_ = coder.decodeInt32();
  auto groups = coder.decodeIPPGroups();
  if (groups) {
    groups_ = std::move(*groups);
  }
  return groups.has_value();
}

bool IPPMessage::readKeys(IPPCoder& coder) {
  tag_ = static_cast<std::int32_t>(coder.decodeIntForKey(kTagKey));
  requestId_ = static_cast<std::int32_t>(coder.decodeIntForKey(kRequestIdKey));
  for (const IPPCoder::Object& object : coder.decodeObjectsForKey(kGroupsKey)) {
    // The archive hands out what it has just made for us: nobody else holds it as const.
    addGroup(std::const_pointer_cast<IPPAttributeGroup>(
        std::dynamic_pointer_cast<const IPPAttributeGroup>(object)));
  }
  return true;
}

void IPPMessage::encodeWithCoder(IPPCoder& coder) const {
  if (coder.allowsKeyedCoding()) {
    coder.encodeIntForKey(tag_, kTagKey);
    coder.encodeIntForKey(requestId_, kRequestIdKey);
    coder.encodeObjectsForKey({groups_.begin(), groups_.end()}, kGroupsKey);
    return;
  }
  coder.encodeByte(kVersionMajor);
  coder.encodeByte(kVersionMinor);
  coder.encodeInt16(static_cast<std::int16_t>(tag_));
  coder.encodeInt32(requestId_);
  for (const Group& group : sortedGroupsForIPPCoding()) {
    coder.encodeObject(*group);
  }
  coder.encodeByte(kEndOfAttributes);
}

Data IPPMessage::dataRepresentation() const {
  auto data = std::make_shared<Data>();
  IPPArchiver(data).encodeRootObject(*this);
  return std::move(*data);
}

bool IPPMessage::writeToFileHandle(int descriptor) const {
  const Data data = dataRepresentation();
  // One attempt whose outcome nobody is told: the interface promises true.
  [[maybe_unused]] const auto written = ::write(descriptor, data.data(), data.size());
  return true;
}

bool IPPMessage::writeToStream(OutputStream& stream) const {
  const Data data = dataRepresentation();
  return stream.write(data.data(), data.size()) == static_cast<std::ptrdiff_t>(data.size());
}

}  // namespace platen::inline v0
