// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

#include "platen/IPPMessage.h"
#include "platen/IPPValue.h"

namespace platen::test {

/// A decoded message as text, one line each for the message, every group and every attribute:
///
///     message version=1.1 code=0x000b request-id=1
///     group 01
///     01<TAB>"attributes-charset"<TAB>47:"utf-8"
///     04<TAB>"media-col-default"<TAB>34:{"media-size"=34:{"x-dimension"=21:21000}}
///     data 8
///
/// The last line tells how many octets followed the message, and is left out when that is none.
/// What the library does not keep shows: the version is always 1.1, a dateTime is an instant and
/// stands in UTC without deci-seconds, an octetString is UTF-8 text (written in hexadecimal all
/// the same), a text that was empty or not valid is "". Every line ends with a newline.
std::string messageText(const IPPMessage& message, std::size_t dataOctets);

/// One group in that form: its line and those of its attributes.
std::string groupText(const IPPAttributeGroup& group);

/// One value in that form, for example `21:7`; the values of a set are separated by `separator`.
std::string valueText(const IPPValue& value, const std::string& separator = ",");

/// `text` with every dateTime of that form moved to UTC and its deci-seconds made 0, so that a text
/// which has the octets as they were sent can be compared.
std::string withDatesInUTC(const std::string& text);

}  // namespace platen::test
