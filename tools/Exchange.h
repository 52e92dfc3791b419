// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// One request and its answer, with failures turned into lines for people.

#include <memory>
#include <string>

#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::tool {

/// The URI of a printer as it stands on the command line. Raises a `Failure` unless it is an ipp or
/// http URI with a host that fits into a request; ipps and https are refused because the connection
/// would not be encrypted.
URL targetURI(const std::string& text);

/// Sends the request, with the document if there is one, and waits for the answer. Raises a
/// `Failure` when none comes, when it is no IPP message, or when its status is not a success.
IPPResponse::Pointer perform(IPPRequest& request, const URL& target,
                             const std::shared_ptr<InputStream>& document = nullptr);

}  // namespace platen::tool
