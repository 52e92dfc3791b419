// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The interfaces of a scheduled exchange: its handle, and those who are told how it goes.

#include <memory>
#include <string_view>

#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/KeyValue.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

class IPPConnectionHandler;
class IPPRequest;
class IPPResponse;

/// An exchange that is in progress on a run loop.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class PLATEN_EXPORT IPPScheduledRequest {
 public:
  IPPScheduledRequest() = default;
  IPPScheduledRequest(const IPPScheduledRequest&) = delete;
  IPPScheduledRequest& operator=(const IPPScheduledRequest&) = delete;
  virtual ~IPPScheduledRequest();

  /// Ends the exchange at once; nobody is told anything more. A second call does nothing.
  virtual void cancel() = 0;
};

/// An application's receiver of what happens to a request that it sent. Every operation has an
/// empty default. All are called on the thread and from within the run loop that `sendTo` was
/// called on, `requestWillSend` and `dataStreamForRequest` from within `sendTo` itself. From within
/// each an application may cancel the request or drop its last reference to it, and from all but
/// those two send it again. What an operation throws ends the exchange, of which nothing more is
/// told, and leaves the call that led to it: `sendTo` in the first two, the run loop's in the
/// others. What a stream for the octets after the response throws leaves the run loop's call too,
/// when the last operation has been called.
///
/// Threads: called on the thread of `sendTo` only.
class PLATEN_EXPORT IPPRequestDelegate {
 public:
  virtual ~IPPRequestDelegate();

  /// The exchange is about to be built. Called once, first.
  virtual void requestWillSend(IPPRequest& request);
  /// The document to send after the request, or null for none: the request is then sent whole.
  /// Called once, second, when the target has a host. The stream is held, opened and closed by the
  /// exchange; one that fails is a transport failure.
  virtual std::shared_ptr<InputStream> dataStreamForRequest(IPPRequest& request);
  /// The outcome; called exactly once unless the exchange is cancelled. Either a response, with its
  /// `status` as `error` when `IPPResponse::successfulOk` is false: a success with reservations
  /// (successful-ok-ignored-or-substituted-attributes, ...) gives no error, look at
  /// `IPPResponse::statusCode`. Or no response, and the failure as `error`, of `IPPErrorDomain`:
  /// what `IPPConnectionHandler::IPPErrorForNSURLError` makes of a transport failure and
  /// `IPPErrorForHTTPErrorCode` of an HTTP status other than 200, and server-error-internal-error
  /// for an answer that does not decode.
  virtual void requestDidReceiveResponse(IPPRequest& request,
                                         const std::shared_ptr<IPPResponse>& response,
                                         const std::shared_ptr<const Error>& error);
  /// Where to put the octets after the response, or null to have them discarded. Called after the
  /// outcome when that is a response. The stream is held, opened and closed by the exchange.
  virtual std::shared_ptr<OutputStream> dataStreamForResponse(
      const std::shared_ptr<IPPResponse>& response, IPPRequest& request);
  /// They were put there, as far as the stream took them: its `streamError` tells of a failure.
  /// `stream` is null when there was no stream. Called last.
  virtual void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& response,
                                            const std::shared_ptr<OutputStream>& stream,
                                            IPPRequest& request);
};

/// The receiver of what happens to an exchange: the same operations, with the handler in the place
/// of the request. `IPPRequest` is one, and passes everything on to its own delegate.
///
/// Threads: called on the thread that started the exchange only.
class PLATEN_EXPORT IPPConnectionDelegate {
 public:
  virtual ~IPPConnectionDelegate();

  /// As `IPPRequestDelegate::requestWillSend`. The handler has neither a delegate nor an exchange
  /// yet.
  virtual void requestWillSend(IPPConnectionHandler& handler);
  /// As `IPPRequestDelegate::requestDidReceiveResponse`, with the same responses and errors.
  virtual void requestDidReceiveResponse(IPPConnectionHandler& handler,
                                         const std::shared_ptr<IPPResponse>& response,
                                         const std::shared_ptr<const Error>& error);
  /// As `IPPRequestDelegate::dataStreamForResponse`. Null here.
  virtual std::shared_ptr<OutputStream> dataStreamForResponse(
      const std::shared_ptr<IPPResponse>& response, IPPConnectionHandler& handler);
  /// As `IPPRequestDelegate::responseDidReceiveDataStream`. Called last; the delegate is let go
  /// then.
  virtual void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& response,
                                            const std::shared_ptr<OutputStream>& stream,
                                            IPPConnectionHandler& handler);
  /// Asked for "ippOperationCodename" when a malformed answer is kept: the name of the operation.
  /// When it is not a string, or has a "/" in it, the answer is not kept. Absent here.
  [[nodiscard]] virtual KeyValue valueForKey(std::string_view key) const;
};

}  // namespace platen::inline v0
