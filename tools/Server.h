// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Print servers, their queues and jobs, as the command line names them.

#include <optional>
#include <string>

#include "platen/IPPConstants.h"
#include "platen/URL.h"

namespace platen::tool {

/// What every command that asks a print server can be told.
struct ServerOptions {
  /// HOST or HOST:PORT.
  std::string server = "localhost:631";
  double timeout = kDefaultTimeout;
  /// For scripts.
  bool json = false;
};

// Each raises a `Failure` of wrong usage for a word that names nothing of the kind.

/// The server as a whole, `ipp://HOST:PORT/`.
URL serverURI(const ServerOptions& options);
/// A queue by its URI, or by its name there, `ipp://HOST:PORT/printers/NAME`.
URL queueURI(const std::string& word, const ServerOptions& options);
/// The same, but the server itself when there is no word.
URL queueOrServerURI(const std::optional<std::string>& word, const ServerOptions& options);
/// A job by its URI, or by its number there, `ipp://HOST:PORT/jobs/NUMBER`.
URL jobURI(const std::string& word, const ServerOptions& options);

/// What to call it to people: "queue NAME", or "the queue URI" where the URI holds no name.
std::string queueTitle(const URL& queue);
/// "job NUMBER", or "the job URI".
std::string jobTitle(const URL& job);

/// The name of a queue from its URI, as both print servers and printers have it: the last part of
/// the path; "" when there is none.
std::string queueName(const std::string& uri);

}  // namespace platen::tool
