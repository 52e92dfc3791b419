// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The exchange of one request for one response over HTTP (RFC 8010 §4).

#include <cstdint>
#include <memory>
#include <optional>

#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/HTTP.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// Carries a request to a printer. Only static members.
///
/// Threads: may be called from every thread; a call blocks its own.
class PLATEN_EXPORT IPPConnection {
 public:
  IPPConnection() = delete;

  /// What `IPPRequest::performOn` does. The whole body is sent at once; connections are kept alive
  /// between the calls of one thread.
  static std::shared_ptr<IPPResponse> performRequest(
      const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream,
      const std::shared_ptr<OutputStream>& returningDataStream,
      std::shared_ptr<const Error>* error);
};

/// The parts that every exchange is made of.
///
/// Threads: may be called from every thread.
class PLATEN_EXPORT IPPConnectionHandler {
 public:
  /// The URL to post to: http, with the host of `target`, its port (631 where it has none or 0,
  /// RFC 3510 §4.2) and its path, "/" where it has none. User, query and fragment are dropped.
  /// Nothing for a target without a host.
  static std::optional<URL> HTTPURLForIPPTargetURL(const URL& target);
  /// A POST of the request followed by the whole of `dataStream`, which may be null. Nothing for a
  /// target without a host.
  static std::optional<HTTPRequest> HTTPRequestForIPPRequest(
      const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream);
  /// The error for an HTTP status other than 200: of `IPPErrorDomain`, with the IPP status-code
  /// that stands for it, and an underlying error of `IPPHTTPErrorDomain` with the HTTP status.
  static std::shared_ptr<const Error> IPPErrorForHTTPErrorCode(int status);
  /// The error for a transport failure: of `IPPErrorDomain`, client-error-timeout for a time-out
  /// and server-error-service-unavailable for every other, with the failure as underlying error.
  static std::shared_ptr<const Error> IPPErrorForNSURLError(
      const std::shared_ptr<const Error>& error);
};

}  // namespace platen::inline v0
