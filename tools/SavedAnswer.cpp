// SPDX-License-Identifier: Apache-2.0
#include "SavedAnswer.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "Failure.h"
#include "platen/Error.h"
#include "platen/IPPArray.h"
#include "platen/IPPKeyedArchiver.h"
#include "platen/IPPKeyedUnarchiver.h"
#include "platen/IPPMap.h"

namespace platen::tool {

namespace {

constexpr std::size_t kLargest = std::size_t{64} << 20U;

std::string reasonOf(const std::shared_ptr<const Error>& error) {
  return std::string(error->localizedDescription().value_or(error->domain()));
}

// How much is there for whoever walks over a message. References make sets of sets of sets out of a
// small archive that nobody could ever show.
class Walk {
 public:
  bool takes(const IPPMessage& message) {
    return std::all_of(message.ippGroups().begin(), message.ippGroups().end(),
                       [this](const auto& group) { return takesGroup(*group); });
  }

 private:
  bool takesGroup(const IPPAttributeGroup& group) {
    return takesSize(0) &&
           std::all_of(group.attributes().begin(), group.attributes().end(), [this](auto& one) {
             const auto& value = one->ippValue();
             return takesSize(one->name().value_or("").size()) &&
                    (value == nullptr || takesValue(*value));
           });
  }

  bool takesValue(const IPPValue& value) {
    if (const auto* set = dynamic_cast<const IPPArray*>(&value)) {
      return takesAll(set->size(), [&](std::size_t index) { return takesValue(set->at(index)); });
    }
    if (const auto* members = dynamic_cast<const IPPMap*>(&value)) {
      return takesAll(members->size(), [&](std::size_t index) {
        return takesSize(members->nameAt(index).size()) && takesValue(members->valueAt(index));
      });
    }
    return takesSize(value.stringValue().value_or("").size());
  }

  template <class Takes>
  bool takesAll(std::size_t count, Takes takes) {
    bool isTaken = takesSize(0);
    for (std::size_t index = 0; isTaken && index < count; ++index) {
      isTaken = takes(index);
    }
    return isTaken;
  }

  bool takesSize(std::size_t size) {
    constexpr std::size_t kEach = 32;  // what is empty takes its time too
    left_ -= std::min(left_, kEach + size);
    return left_ > 0;
  }

  std::size_t left_ = kLargest;
};

std::string_view skippingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

// What this command would refuse to read is not worth the place of an earlier file.
void requireReadable(const IPPResponse& answer, IPPArchiveFormat format, const std::string& path) {
  const auto octets = IPPKeyedArchiver::archivedDataWithRootObject(answer, format);
  if ((octets && octets->size() > kLargest) || !Walk().takes(answer)) {
    throw Failure(ExitStatus::failed, "cannot write " + path + ": more than the " +
                                          std::to_string(kLargest) + " octets that can be read");
  }
}

}  // namespace

void saveAnswer(const IPPResponse& answer, const std::string& path) {
  const auto format =
      path.ends_with(".cbor") ? IPPArchiveFormat::cbor : IPPArchiveFormat::indentedJSON;
  requireReadable(answer, format, path);
  std::shared_ptr<const Error> error;
  if (!IPPKeyedArchiver::archiveRootObject(answer, path, format, &error)) {
    throw Failure(ExitStatus::failed, "cannot write " + path + ": " + reasonOf(error));
  }
}

bool looksLikeAnArchive(Bytes octets) {
  constexpr std::size_t kLongestBegin = 256;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string text(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(
                                                        std::min(octets.size(), kLongestBegin)));
  std::string_view rest = text;
  if (!rest.empty() && (static_cast<unsigned char>(rest.front()) & 0xE0U) == 0xA0U) {
    return true;  // RFC 8949 §3.1: major type 5
  }
  if (rest.starts_with(kByteOrderMark)) {
    rest.remove_prefix(kByteOrderMark.size());
  }
  rest = skippingBlanks(rest);
  return rest.starts_with("{") && skippingBlanks(rest.substr(1)).starts_with("\"");
}

std::shared_ptr<IPPMessage> savedMessage(Bytes octets, const std::string& file) {
  std::shared_ptr<const Error> error;
  IPPArchiveReading reading;
  reading.largestSize = kLargest;
  auto message = IPPKeyedUnarchiver::unarchiveObjectWithData<IPPMessage>(octets, &error, reading);
  if (message == nullptr) {
    throw Failure(ExitStatus::failed, file + " is not an archive of a message: " + reasonOf(error));
  }
  if (!Walk().takes(*message)) {
    throw Failure(ExitStatus::failed, file + " refers to so much that it cannot be shown");
  }
  return message;
}

}  // namespace platen::tool
