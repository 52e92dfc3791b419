// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platen/IPPCoder.h"
#include "platen/IPPMessage.h"
#include "platen/IPPUnarchiver.h"
#include "platen/IPPValue.h"

namespace platen::test {

// Texts that stand for octets are those of `octets`.

/// What `object` writes to an archiver, as `hex` writes it.
std::string encodedHex(const IPPCodable& object);
/// The octets that `text` spells, as `hex` writes them.
std::string hexOf(std::string_view text);

/// A decoder of the octets that `text` spells.
std::shared_ptr<IPPUnarchiver> unarchiverOf(std::string_view text);
/// The value of `tag` whose length and body `text` spells. Raises what the decoder raises.
IPPValue::Pointer decodedValue(std::uint8_t tag, std::string_view text);
/// The groups that `text` spells, in the form of `groupText`; "none" when they do not decode.
std::string decodedGroups(std::string_view text);
/// The message that `text` spells; null when it does not decode.
std::shared_ptr<IPPMessage> decodedMessage(std::string_view text);

}  // namespace platen::test
