// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The exchange of one request for one response over HTTP (RFC 8010 §4).

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platen/Data.h"
#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/HTTP.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/IPPScheduledRequest.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::inline v0 {

class IPPConnectionHandler;

/// Carries a request to a printer. Only static members.
///
/// Threads: may be called from every thread.
class PLATEN_EXPORT IPPConnection {
 public:
  IPPConnection() = delete;

  /// What `IPPRequest::performOn` does, with its results; blocks the calling thread and nothing of
  /// its run loop is run. The whole body is sent at once; connections are kept alive between the
  /// calls of one thread.
  static std::shared_ptr<IPPResponse> performRequest(
      const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream,
      const std::shared_ptr<OutputStream>& returningDataStream,
      std::shared_ptr<const Error>* error);

  /// What `IPPRequest::sendTo` does: starts an exchange on the calling thread's run loop, which has
  /// to be run for it to get on. Returns its handler, never null; the exchange goes on when the
  /// result is dropped. The same as `IPPConnectionHandler::initWithRequest`.
  static std::shared_ptr<IPPConnectionHandler> schedulePerformRequest(
      IPPRequest& request, const URL& target, std::shared_ptr<IPPConnectionDelegate> delegate);
};

/// One scheduled exchange, and the parts that every exchange is made of.
///
/// It runs from its start until it has told the outcome or was cancelled, then it is stopped for
/// good. While it runs it holds its delegate, and the HTTP connection holds it.
///
/// Threads: used on the thread of its run loop only; its static members from every thread. Neither
/// copied nor moved.
class PLATEN_EXPORT IPPConnectionHandler
    : public IPPScheduledRequest,
      public HTTPConnectionDelegate,
      public std::enable_shared_from_this<IPPConnectionHandler> {
 public:
  // --- The parts ---------------------------------------------------------------------------------

  /// The URL to post to: http, with the host of `target`, its port (631 where it has none or 0, RFC
  /// 3510 §4.2) and its path, "/" where it has none. User, query and fragment are dropped. Nothing
  /// for a target without a host.
  ///
  /// The scheme of `target` makes no difference: nothing is encrypted, for "ipps" and "https"
  /// neither. Where that matters refuse such a target before it is used; `IPPURI::isIPPURL` is true
  /// for "ipp" and "http" only.
  static std::optional<URL> HTTPURLForIPPTargetURL(const URL& target);
  /// A POST of the request followed by the whole of `dataStream`, which may be null and is read to
  /// its end here, as `InputStream::readDataToEndOfStream` does. It has the time-out and the limit
  /// of the request. Nothing for a target without a host; the stream is not read then.
  static std::optional<HTTPRequest> HTTPRequestForIPPRequest(
      const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream);
  /// A POST of the request's `messageStream`, chunked, or of the request alone when there is none,
  /// with the time-out and the limit of the request. Nothing for a target without a host; the
  /// delegate is not asked for a document then.
  static std::optional<HTTPRequest> HTTPRequestForIPPRequest(IPPRequest& request,
                                                             const URL& target);
  /// The error for an HTTP status other than 200: of `IPPErrorDomain`, with the IPP status-code
  /// that stands for it (client-error-not-authorized for 401 and 407,
  /// client-error-not-authenticated for 426, server-error-service-unavailable for every other), its
  /// name as description, and an underlying error of `IPPHTTPErrorDomain` with the HTTP status.
  /// Never null.
  static std::shared_ptr<const Error> IPPErrorForHTTPErrorCode(int status);
  /// The error for a transport failure: of `IPPErrorDomain`, client-error-timeout for a time-out
  /// and server-error-service-unavailable for every other, its name as description, with the
  /// failure as underlying error. Never null.
  static std::shared_ptr<const Error> IPPErrorForNSURLError(
      const std::shared_ptr<const Error>& error);

  // --- The exchange ------------------------------------------------------------------------------

  /// Starts an exchange; see `IPPConnection::schedulePerformRequest`. `delegate` may be null; it is
  /// held until the exchange has ended, and its `requestWillSend` is called before this returns.
  /// `request` is encoded and not needed any more afterwards. A target without a host fails as a
  /// transport failure, in a later turn of the run loop as every outcome. What the delegate throws
  /// comes out of here, and nothing was started then.
  static std::shared_ptr<IPPConnectionHandler> initWithRequest(
      IPPRequest& request, const URL& target, std::shared_ptr<IPPConnectionDelegate> delegate);
  ~IPPConnectionHandler() override;

  /// Ends the exchange at once; the delegate is let go and told nothing more. Does nothing once it
  /// has ended.
  void cancel() override;
  /// The same.
  void stopConnection();

  /// The delegate; null when there is none and once the exchange has ended.
  [[nodiscard]] const std::shared_ptr<IPPConnectionDelegate>& delegate() const noexcept {
    return delegate_;
  }
  /// The body collected so far, without the framing of chunks; changes as the exchange gets on and
  /// stays as it is after it. Valid as long as this handler.
  [[nodiscard]] const Data& data() const noexcept { return data_; }
  /// The media type of the answer (`HTTPResponse::mimeType`), which is kept and never checked; ""
  /// before the answer is there.
  [[nodiscard]] const std::string& responseMimeType() const noexcept { return responseMimeType_; }
  /// Takes its place until the head of an answer comes. It has no effect on the exchange.
  void setResponseMimeType(std::string type) { responseMimeType_ = std::move(type); }
  /// The head of the answer; nothing before it is there. It stays after the exchange.
  [[nodiscard]] const std::optional<platen::HTTPResponse>& HTTPResponse() const noexcept {
    return httpResponse_;
  }
  /// Takes its place until the head of an answer comes. Its status is what
  /// `connectionDidFinishLoading` looks at.
  void setHTTPResponse(std::optional<platen::HTTPResponse> response) {
    httpResponse_ = std::move(response);
  }

  /// Decodes what was collected and tells the delegate, which may be null: the response, with its
  /// `status` as error when `IPPResponse::successfulOk` is false, and a null error otherwise, also
  /// for a success with reservations; then the octets after it. What does not decode is kept in a
  /// file (`dumpMalformedIPPMessageData`) and told as server-error-internal-error without a
  /// description. What the delegate or its stream throws comes out of here.
  void decodeIPPMessage();
  /// Tells the delegate, if there is one, of a failure: no response, and the error.
  void notifyIPPError(const std::shared_ptr<const Error>& error);
  /// Writes a body that does not decode to "ResponseOn-OPERATION.ippdata" in the home directory,
  /// whole or not at all, in the place of an earlier one, readable by its owner only. OPERATION is
  /// what the delegate answers for "ippOperationCodename": nothing is written without a delegate,
  /// and when that is no string or has a "/" in it. A failure to write is ignored.
  void dumpMalformedIPPMessageData(Bytes data) const;

  // --- What the HTTP connection says -------------------------------------------------------------

  /// Nothing when a redirect is proposed, so that none is followed; otherwise the request itself.
  std::optional<HTTPRequest> connectionWillSendRequest(
      HTTPConnection& connection, const HTTPRequest& request,
      const platen::HTTPResponse* redirectResponse) override;
  /// Does nothing: the library has no credentials.
  void connectionDidReceiveAuthenticationChallenge(HTTPConnection& connection) override;
  /// Does nothing.
  void connectionDidCancelAuthenticationChallenge(HTTPConnection& connection) override;
  /// Keeps the head and its media type; a fresh response restarts the body.
  void connectionDidReceiveResponse(HTTPConnection& connection,
                                    const platen::HTTPResponse& response) override;
  /// Appends to the body. How long it may become is for the HTTP connection to say
  /// (`HTTPRequest::maximumBodyLength`).
  void connectionDidReceiveData(HTTPConnection& connection, Bytes bytes) override;
  /// Tells the outcome and then stops for good: `decodeIPPMessage` after the status 200,
  /// `IPPErrorForHTTPErrorCode` after every other one.
  void connectionDidFinishLoading(HTTPConnection& connection) override;
  /// Tells `IPPErrorForNSURLError` of `error` and then stops for good.
  void connectionDidFailWithError(HTTPConnection& connection,
                                  std::shared_ptr<const Error> error) override;
  /// False: nothing is cached.
  bool connectionWillCacheResponse(HTTPConnection& connection) override;

 private:
  struct Key {};

 public:
  /// Of use to `initWithRequest` only.
  explicit IPPConnectionHandler(Key /*key*/) {}

 private:
  void tellResponse(const std::shared_ptr<IPPResponse>& response, InputStream& rest);

  bool isStopped_ = false;
  std::shared_ptr<HTTPConnection> connection_;
  std::shared_ptr<IPPConnectionDelegate> delegate_;
  Data data_;
  std::string responseMimeType_;
  std::optional<platen::HTTPResponse> httpResponse_;
};

}  // namespace platen::inline v0
