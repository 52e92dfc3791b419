// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <memory>
#include <ostream>
#include <utility>

#include "Commands.h"
#include "EnumNames.h"
#include "LocalFile.h"
#include "MessageView.h"
#include "platen/IPPMessage.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/Stream.h"

namespace platen::tool {

namespace {

using Kind = DumpOptions::Kind;

struct Captured {
  std::shared_ptr<IPPMessage> message;
  /// Octets behind the message.
  std::size_t documentLength = 0;
};

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

Captured decoded(const Data& octets) {
  const auto stream = InputStream::withBytes(octets);
  stream->open();
  auto message = IPPMessage::initWithStream(stream);
  Bytes rest;
  stream->getBuffer(rest);
  return {std::move(message), rest.size()};
}

std::string headerOf(const IPPMessage& message, Kind kind, const Data& octets) {
  const std::int32_t code = message.ippTag();
  const bool isRequest =
      kind == Kind::request || (kind == Kind::guessed && looksLikeARequest(message));
  const std::string name =
      isRequest ? "Request " + operationText(code) : "Response " + statusText(code);
  // The version is not part of a decoded message.
  return name + " (" + hexText(code) + "), IPP " + std::to_string(octets[0]) + "." +
         std::to_string(octets[1]) + ", request-id " + std::to_string(message.requestId());
}

std::string documentText(std::size_t length) {
  return length == 1 ? "1 octet of document data follows"
                     : std::to_string(length) + " octets of document data follow";
}

}  // namespace

void dumpMessage(const DumpOptions& options, std::ostream& out) {
  const LocalFile file(options.file);
  const Data octets = file.readAll();
  if (octets.empty()) {
    throw Failure(ExitStatus::failed, file.displayName() + " is empty");
  }
  const Captured captured = decoded(octets);
  if (captured.message == nullptr) {
    throw Failure(
        ExitStatus::failed,
        file.displayName() + " does not decode as an IPP message of version 1.1 or above");
  }
  const Display display = Display::ofStandardOutput(options.width);
  out << display.strong(headerOf(*captured.message, options.kind, octets)) << "\n\n";
  showGroups(out, captured.message->ippGroups(), display);
  if (captured.documentLength > 0) {
    out << '\n' << documentText(captured.documentLength) << '\n';
  }
}

}  // namespace platen::tool
