// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Answers that are kept as archives, and messages that come back from there.

#include <memory>
#include <string>

#include "platen/Data.h"
#include "platen/IPPMessage.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

/// Writes the whole answer as an archive into the file at `path`, in the place of an earlier one:
/// as CBOR where it ends in ".cbor", else as indented JSON. Raises a `Failure`, also for what
/// `savedMessage` would refuse as too large; then an earlier file is what it was.
void saveAnswer(const IPPResponse& answer, const std::string& path);

/// Whether octets begin as an archive does and as no message: with what opens an object of JSON and
/// its first key, or with a map of CBOR. A message begins with its version, of which the first
/// octet is below 0x80 and no printer's is 123, "{".
bool looksLikeAnArchive(Bytes octets);

/// The message that is the root object of an archive; never null. Raises a `Failure` that names
/// `file` and the key path when there is none.
std::shared_ptr<IPPMessage> savedMessage(Bytes octets, const std::string& file);

}  // namespace platen::tool
