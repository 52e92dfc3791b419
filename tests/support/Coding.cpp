// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Coding.h"

#include "platen/IPPArchiver.h"
#include "tests/support/MessageText.h"
#include "tests/support/Octets.h"

namespace platen::test {

std::string encodedHex(const IPPCodable& object) {
  const auto data = std::make_shared<Data>();
  IPPArchiver(data).encodeRootObject(object);
  return hex(*data);
}

std::string hexOf(std::string_view text) { return hex(octets(text)); }

std::shared_ptr<IPPUnarchiver> unarchiverOf(std::string_view text) {
  return IPPUnarchiver::initForReadingWithData(std::make_shared<const Data>(octets(text)));
}

IPPValue::Pointer decodedValue(std::uint8_t tag, std::string_view text) {
  const auto coder = unarchiverOf(text);
  coder->setCurrentTag(tag);
  return coder->decodeIPPValue();
}

std::string decodedGroups(std::string_view text) {
  const auto groups = unarchiverOf(text)->decodeIPPGroups();
  if (!groups) {
    return "none";
  }
  std::string result;
  for (const auto& group : *groups) {
    result += groupText(*group);
  }
  return result;
}

std::shared_ptr<IPPMessage> decodedMessage(std::string_view text) {
  return IPPMessage::initWithDataRepresentation(octets(text));
}

}  // namespace platen::test
