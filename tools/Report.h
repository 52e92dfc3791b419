// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

#include "Json.h"
#include "Server.h"
#include "Session.h"
#include "platen/IPPRequest.h"
#include "platen/URL.h"

namespace platen::tool {

/// Has the target carry out a request that gives nothing back, and tells that it did: `done` for
/// people, with the reservations of the server, `{"operation":…,"target":…,"status":…,
/// "unsupported":[…]}` for scripts. Raises what `Session::ask` does.
void carryOut(const IPPRequest::Pointer& request, const URL& target, const std::string& done,
              Session& session, const ServerOptions& options, std::ostream& out);

/// Writes one JSON value on a line of its own.
void writeJson(std::ostream& out, const Json& value);

}  // namespace platen::tool
