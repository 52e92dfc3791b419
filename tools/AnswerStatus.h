// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What an answer says of how the request went, a refusal or a success.

#include <string>
#include <vector>

#include "platen/IPPResponse.h"

namespace platen::tool {

/// The name of the status, what the server says of it, and what it refused or ignored: the
/// attributes that it gives back as unsupported, and why a subscription is none, or not as it was
/// asked for (RFC 3995, "notify-status-code"): "successful-ok-… (message); unsupported: a, b".
std::string answerStatus(const IPPResponse& answer);

/// The same in parentheses behind a blank where a success is one with reservations; "" for one
/// without.
std::string reservations(const IPPResponse& answer);

/// The names of all attributes that the server gives back as unsupported, in their order.
std::vector<std::string> unsupportedNames(const IPPResponse& answer);

}  // namespace platen::tool
