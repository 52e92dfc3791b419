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

  /// What `IPPRequest::performOn` does; blocks the calling thread. The whole body is sent at once;
  /// connections are kept alive between the calls of one thread.
  static std::shared_ptr<IPPResponse> performRequest(
      const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream,
      const std::shared_ptr<OutputStream>& returningDataStream,
      std::shared_ptr<const Error>* error);

  /// What `IPPRequest::sendTo` does: starts an exchange on the calling thread's run loop, which has
  /// to be run for it to get on. It goes on when the result is dropped.
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

  /// The URL to post to: http, with the host of `target`, its port (631 where it has none or 0,
  /// RFC 3510 §4.2) and its path, "/" where it has none. User, query and fragment are dropped.
  /// Nothing for a target without a host.
  static std::optional<URL> HTTPURLForIPPTargetURL(const URL& target);
  /// A POST of the request followed by the whole of `dataStream`, which may be null. Nothing for a
  /// target without a host.
  static std::optional<HTTPRequest> HTTPRequestForIPPRequest(
      const IPPRequest& request, const URL& target, const std::shared_ptr<InputStream>& dataStream);
  /// A POST of the request's `messageStream`, chunked, or of the request alone when there is none.
  /// Nothing for a target without a host.
  static std::optional<HTTPRequest> HTTPRequestForIPPRequest(IPPRequest& request,
                                                             const URL& target);
  /// The error for an HTTP status other than 200: of `IPPErrorDomain`, with the IPP status-code
  /// that stands for it, and an underlying error of `IPPHTTPErrorDomain` with the HTTP status.
  static std::shared_ptr<const Error> IPPErrorForHTTPErrorCode(int status);
  /// The error for a transport failure: of `IPPErrorDomain`, client-error-timeout for a time-out
  /// and server-error-service-unavailable for every other, with the failure as underlying error.
  static std::shared_ptr<const Error> IPPErrorForNSURLError(
      const std::shared_ptr<const Error>& error);

  // --- The exchange ------------------------------------------------------------------------------

  /// Starts an exchange; see `IPPConnection::schedulePerformRequest`. A target without a host fails
  /// as a transport failure, in a later turn of the run loop as every outcome.
  static std::shared_ptr<IPPConnectionHandler> initWithRequest(
      IPPRequest& request, const URL& target, std::shared_ptr<IPPConnectionDelegate> delegate);
  ~IPPConnectionHandler() override;

  /// Ends the exchange at once; the delegate is let go and told nothing more.
  void cancel() override;
  /// The same.
  void stopConnection();

  /// Null once the exchange has ended.
  [[nodiscard]] const std::shared_ptr<IPPConnectionDelegate>& delegate() const noexcept {
    return delegate_;
  }
  /// The body collected so far; changes as the exchange gets on.
  [[nodiscard]] const Data& data() const noexcept { return data_; }
  /// The media type of the answer, which is kept and never checked.
  [[nodiscard]] const std::string& responseMimeType() const noexcept { return responseMimeType_; }
  void setResponseMimeType(std::string type) { responseMimeType_ = std::move(type); }
  /// The head of the answer; nothing before it is there.
  [[nodiscard]] const std::optional<platen::HTTPResponse>& HTTPResponse() const noexcept {
    return httpResponse_;
  }
  void setHTTPResponse(std::optional<platen::HTTPResponse> response) {
    httpResponse_ = std::move(response);
  }

  /// Decodes what was collected and tells the delegate: the response, and its status as error
  /// unless it is successful-ok; then the octets after it. What does not decode is kept in a file
  /// (`dumpMalformedIPPMessageData`) and told as server-error-internal-error without a description.
  void decodeIPPMessage();
  /// Tells the delegate of a failure: no response, and the error.
  void notifyIPPError(const std::shared_ptr<const Error>& error);
  /// Writes a body that does not decode to "ResponseOn-OPERATION.ippdata" in the home directory,
  /// whole or not at all, in the place of an earlier one, readable by its owner only. A failure to
  /// write is ignored.
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
  /// A fresh response restarts the body.
  void connectionDidReceiveResponse(HTTPConnection& connection,
                                    const platen::HTTPResponse& response) override;
  void connectionDidReceiveData(HTTPConnection& connection, Bytes bytes) override;
  void connectionDidFinishLoading(HTTPConnection& connection) override;
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
