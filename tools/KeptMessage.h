// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Messages from files: captured octets, and archives.

#include <cstddef>
#include <memory>
#include <string>

#include "Commands.h"
#include "LocalFile.h"
#include "platen/IPPMessage.h"

namespace platen::tool {

/// A message that was captured or kept.
struct KeptMessage {
  /// Never null; from octets an `IPPRequest` or an `IPPResponse`, from an archive what it says.
  std::shared_ptr<IPPMessage> message;
  bool isRequest = false;
  /// "1.1"; empty when it came from an archive, which does not keep it.
  std::string version = {};
  /// Octets behind the message.
  std::size_t documentLength = 0;
};

/// The message in `file`, as its octets (RFC 8010 §3) or in an archive. Raises a `Failure` that
/// names the file when there is none, with the key path of what is wrong with an archive. Archives
/// that hold little and refer to it often are refused where their values, written out, would be
/// more than 64 MiB, each of them counted as 32 octets and its text. Files of more than 256 MiB are
/// refused, also where they have no end.
KeptMessage messageIn(const LocalFile& file, DumpOptions::Kind kind = DumpOptions::Kind::guessed,
                      DumpOptions::Form form = DumpOptions::Form::guessed);

/// "Response successful-ok (0x0000)".
std::string codeText(const IPPMessage& message, bool isRequest);

}  // namespace platen::tool
