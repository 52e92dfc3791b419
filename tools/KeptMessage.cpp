// SPDX-License-Identifier: Apache-2.0
#include "KeptMessage.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "EnumNames.h"
#include "Failure.h"
#include "MessageView.h"
#include "SavedAnswer.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/Stream.h"

namespace platen::tool {

namespace {

using Kind = DumpOptions::Kind;
using Form = DumpOptions::Form;

constexpr std::size_t kLargestFile = std::size_t{256} << 20U;

// RFC 8011 §4.1.5: what requests say of whom they ask, and no response does.
bool namesATarget(const IPPMessage& message) {
  constexpr std::array<std::string_view, 4> kTargets{"printer-uri", "job-uri", "system-uri",
                                                     "requesting-user-name"};
  const auto group = message.operationGroup();
  return group != nullptr && std::any_of(kTargets.begin(), kTargets.end(), [&](auto name) {
           return group->attributeForName(name) != nullptr;
         });
}

// The number in the header is an operation-id or a status-code, and nothing says which. Status
// codes are 0 to 7 and 0x0400 to 0x05FF (RFC 8011 §B.1); operation-ids begin at 2.
bool looksLikeARequest(const IPPMessage& message) {
  const std::int32_t code = message.ippTag();
  const bool mayBeStatus = code < 8 || (code >= 0x0400 && code <= 0x05FF);
  return !mayBeStatus || namesATarget(message);
}

bool isRequest(const IPPMessage& message, Kind kind) {
  return kind == Kind::request || (kind == Kind::guessed && looksLikeARequest(message));
}

// As the class that has the properties of its kind, for key paths.
std::shared_ptr<IPPMessage> decodedAs(bool isRequest, const Data& octets) {
  if (isRequest) {
    return IPPRequest::initWithDataRepresentation(octets);
  }
  return IPPResponse::initWithDataRepresentation(octets);
}

std::optional<KeptMessage> decoded(const Data& octets, Kind kind) {
  const auto stream = InputStream::withBytes(octets);
  stream->open();
  const auto message = IPPMessage::initWithStream(stream);
  if (message == nullptr) {
    return std::nullopt;
  }
  Bytes rest;
  stream->getBuffer(rest);
  const bool asked = isRequest(*message, kind);
  // The version is not part of a decoded message.
  return KeptMessage{decodedAs(asked, octets), asked,
                     std::to_string(octets[0]) + "." + std::to_string(octets[1]), rest.size()};
}

KeptMessage unarchived(const Data& octets, const LocalFile& file, Kind kind) {
  auto message = savedMessage(octets, file.displayName());
  if (kind == Kind::guessed && dynamic_cast<const IPPRequest*>(message.get()) != nullptr) {
    kind = Kind::request;
  }
  if (kind == Kind::guessed && dynamic_cast<const IPPResponse*>(message.get()) != nullptr) {
    kind = Kind::response;
  }
  const bool asked = isRequest(*message, kind);
  return {std::move(message), asked};
}

}  // namespace

KeptMessage messageIn(const LocalFile& file, Kind kind, Form form) {
  const Data octets = file.readAll(kLargestFile);
  if (octets.empty()) {
    throw Failure(ExitStatus::failed, file.displayName() + " is empty");
  }
  if (form == Form::archive || looksLikeAnArchive(octets)) {
    return unarchived(octets, file, kind);
  }
  if (auto kept = decoded(octets, kind)) {
    return *std::move(kept);
  }
  throw Failure(ExitStatus::failed,
                file.displayName() + " does not decode as an IPP message of version 1.1 or above");
}

std::string codeText(const IPPMessage& message, bool isRequest) {
  const std::int32_t code = message.ippTag();
  const std::string name =
      isRequest ? "Request " + operationText(code) : "Response " + statusText(code);
  return name + " (" + hexText(code) + ")";
}

}  // namespace platen::tool
