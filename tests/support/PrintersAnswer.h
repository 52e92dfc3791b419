// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platen/IPPResponse.h"

namespace platen::test {

inline std::shared_ptr<IPPAttribute> attribute(std::string_view name, IPPValue::Pointer value) {
  return IPPAttribute::attributeWithValue(std::move(value), name);
}

/// A print server's answer that tells of two printers, the first with media and a collection, the
/// second with a location: what docs/key-paths.md shows.
inline IPPResponse::Pointer printersAnswer() {
  const auto keyword = [](std::string_view word) { return IPPValue::keyword(word); };
  auto operation = IPPAttributeGroup::operationGroup();
  operation->addAttribute(attribute("attributes-charset", IPPValue::charset("utf-8")));
  auto lobby = IPPAttributeGroup::printerGroup();
  const auto size =
      IPPValue::dictionaryWithObjectsAndKeys({IPPValue::integerWithInt(21000), "x-dimension",
                                              IPPValue::integerWithInt(29700), "y-dimension"});
  lobby->addAttributesFromArray(
      {attribute("printer-name", IPPValue::nameWithoutLanguage("lobby")),
       attribute("printer-state", IPPValue::enumerationWithInt(3)),
       attribute("printer-state-reasons", keyword("none")),
       attribute("media-default", keyword("iso_a4_210x297mm")),
       attribute("media-supported",
                 IPPValue::array({keyword("iso_a4_210x297mm"), keyword("na_letter_8.5x11in")})),
       attribute("media-col-default",
                 IPPValue::dictionaryWithObjectsAndKeys(
                     {size, "media-size", keyword("stationery"), "media-type"}))});
  auto attic = IPPAttributeGroup::printerGroup();
  attic->addAttributesFromArray(
      {attribute("printer-name", IPPValue::nameWithoutLanguage("attic")),
       attribute("printer-location", IPPValue::textWithoutLanguage("Room 7")),
       attribute("printer-state", IPPValue::enumerationWithInt(5)),
       attribute("printer-state-reasons",
                 IPPValue::array({keyword("paused"), keyword("media-empty")})),
       attribute("media-default", keyword("na_letter_8.5x11in"))});
  return std::make_shared<IPPResponse>(0, 7, IPPMessage::Groups{operation, lobby, attic});
}

}  // namespace platen::test
