// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// One HTTP/1.1 exchange (RFC 9110, RFC 9112): what is sent, what comes back, and who is told.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platen/Data.h"
#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/RunLoop.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// Domain of transport failures; the codes are those of `HTTPErrorCode`.
inline constexpr std::string_view kHTTPClientErrorDomain = "HTTPClientErrorDomain";

/// Codes of transport failures; their numbers stay as they are. The description of such an error
/// record says it in English for people.
enum class HTTPErrorCode : int {
  /// Anything that no other code stands for; also a method or a header field that cannot be sent
  /// (RFC 9110 §5.1, §5.5, §9.1), of which nothing was sent.
  unknown = -1,
  /// The URL names no host, or none that can be used.
  badURL = -1000,
  /// Nothing moved for `HTTPRequest::timeoutInterval`: while the name was resolved, while
  /// connecting or afterwards; the description says which.
  timedOut = -1001,
  /// The scheme of the URL is not "http" (in any letter case). There is no TLS: "https" is refused
  /// too.
  unsupportedURL = -1002,
  /// The name of the host could not be resolved.
  cannotFindHost = -1003,
  /// None of the host's addresses took a connection.
  cannotConnectToHost = -1004,
  /// The connection was closed or broke before the whole answer was there, or before the whole body
  /// was sent.
  networkConnectionLost = -1005,
  /// What came is not valid HTTP/1.1 (RFC 9112), or more than 300 KiB of heads.
  badServerResponse = -1011,
  /// `HTTPRequest::bodyStream` could not be opened, failed or raised; its error is the underlying
  /// one, where it has one.
  bodyStreamFailed = -1021,
  /// The body of the answer is longer than `HTTPRequest::maximumBodyLength`.
  dataLengthExceedsMaximum = -1103,
};

/// How long a response body may become before the exchange fails with
/// `HTTPErrorCode::dataLengthExceedsMaximum`, in octets, unless the request says otherwise.
inline constexpr std::size_t kHTTPDefaultMaximumBodyLength = std::size_t{256} * 1024 * 1024;

/// What may be cached. The library asks for nothing but fresh answers, and caches none.
enum class HTTPCachePolicy : int { reloadIgnoringLocalAndRemoteCacheData = 4 };

/// What is sent.
///
/// Threads: a plain value; one thread at a time.
struct PLATEN_EXPORT HTTPRequest {
  /// A GET of `target` without a body.
  explicit HTTPRequest(URL target) : url(std::move(target)) {}

  /// Sets the header field `name` (letter case ignored), in the place of an earlier one, otherwise
  /// at the end. What cannot be sent is not refused here but by the exchange
  /// (`HTTPErrorCode::unknown`).
  void setHeader(std::string_view name, std::string_view value);
  /// The value of the header field `name` (letter case ignored), or nothing; valid until the
  /// headers change.
  [[nodiscard]] std::optional<std::string_view> header(std::string_view name) const;

  /// Where to: its host, port (80 where it has none), path and query. User and fragment are not
  /// sent.
  URL url;
  /// A token of RFC 9110 §9.1, in the letter case in which it is sent.
  std::string method = "GET";
  /// In the order in which they are sent.
  std::vector<std::pair<std::string, std::string>> headers;
  /// The whole body, sent with a Content-Length; null for none. Shared, so that a request can be
  /// copied cheaply; it must not change while an exchange runs.
  std::shared_ptr<const Data> body;
  /// A body of unknown length, sent chunked (RFC 9112 §7.1), in the place of `body`; null for none.
  /// Opened and closed by the exchange, which also becomes its delegate while it waits for it;
  /// events are passed on to the delegate before.
  std::shared_ptr<InputStream> bodyStream;
  /// Without effect: there is no cache.
  HTTPCachePolicy cachePolicy = HTTPCachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  /// Idle time, in seconds, after which the exchange fails with `HTTPErrorCode::timedOut`: no octet
  /// in either direction while the exchange waits on the network, resolving and connecting
  /// included. Time in which `bodyStream` has nothing to give does not count. 0 or less, or not a
  /// number: no time-out.
  double timeoutInterval = 60.0;
  /// The most octets that the body of the answer may have; a longer one fails with
  /// `HTTPErrorCode::dataLengthExceedsMaximum` as soon as it is seen to be. Nothing is allocated
  /// for it beforehand.
  std::size_t maximumBodyLength = kHTTPDefaultMaximumBodyLength;
};

/// The head of what came back.
///
/// Threads: a plain value; one thread at a time.
struct PLATEN_EXPORT HTTPResponse {
  /// The value of the first header field `name` (letter case ignored), or nothing; valid until the
  /// headers change.
  [[nodiscard]] std::optional<std::string_view> header(std::string_view name) const;
  /// The media type of Content-Type in lower case without its parameters; "" when there is none.
  [[nodiscard]] std::string mimeType() const;

  /// The status, RFC 9110 §15: 200 and above in every answer that is told of; 0 before there is
  /// one.
  int statusCode = 0;
  /// The header fields in the order in which they came, without those of the trailer.
  std::vector<std::pair<std::string, std::string>> headers;
};

class HTTPConnection;

/// Is told how an exchange goes, from within the run loop's turns. Every operation has an empty
/// default. After `connectionDidFinishLoading` or `connectionDidFailWithError`, of which there is
/// exactly one unless the exchange is cancelled, nothing follows. Any of them may cancel the
/// connection or drop the last reference to it or to the delegate. What one throws leaves the run
/// loop's call.
///
/// Threads: called on the thread of the run loop only.
class PLATEN_EXPORT HTTPConnectionDelegate {
 public:
  virtual ~HTTPConnectionDelegate();
  /// An answer proposes to send the request elsewhere. This client follows no redirect, whatever is
  /// returned: the redirect is the answer. The request itself, unless overridden.
  virtual std::optional<HTTPRequest> connectionWillSendRequest(
      HTTPConnection& connection, const HTTPRequest& request, const HTTPResponse* redirectResponse);
  /// The server asks for credentials (401 or 407). The client has none: that is the answer.
  virtual void connectionDidReceiveAuthenticationChallenge(HTTPConnection& connection);
  /// The server asks no more. Never told by this client, which leaves no challenge open.
  virtual void connectionDidCancelAuthenticationChallenge(HTTPConnection& connection);
  /// Whether the answer may be cached. This client has no cache and never asks.
  virtual bool connectionWillCacheResponse(HTTPConnection& connection);
  /// The head of a final response (never of 1xx), once, before all of its body. A redirect is a
  /// final response: none is followed. `response` lives for the call.
  virtual void connectionDidReceiveResponse(HTTPConnection& connection,
                                            const HTTPResponse& response);
  /// The next octets of its body, never none, with the framing of chunks taken off; they live for
  /// the call. Not called for an empty body.
  virtual void connectionDidReceiveData(HTTPConnection& connection, Bytes bytes);
  /// The answer is complete, or as complete as that to a refused upload gets (see
  /// `HTTPConnection`). Whatever its status is: 404 is an answer too.
  virtual void connectionDidFinishLoading(HTTPConnection& connection);
  /// There is no whole answer; what was told of it so far is all there will be. `error`, never
  /// null, is of `kHTTPClientErrorDomain` with an `HTTPErrorCode`.
  virtual void connectionDidFailWithError(HTTPConnection& connection,
                                          std::shared_ptr<const Error> error);
};

/// One exchange in progress. Nothing is added to it: no proxy, redirect, cookie, credential or
/// cache, whatever the URL or the environment says.
///
/// Connections that a server keeps alive are used again on the same loop. When one proves to be
/// closed before any octet of an answer, a request with a whole body is sent once more on a fresh
/// connection; a streamed body is sent on a fresh one from the start.
///
/// A status of 400 or above that arrives while the body is being sent ends the sending and is the
/// outcome, with what arrives of its body, even if the connection is reset. Any other final status
/// waits until the body has been sent; if that fails, so does the exchange.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class PLATEN_EXPORT HTTPConnection : public std::enable_shared_from_this<HTTPConnection> {
 public:
  /// Starts the exchange on `loop` and returns it, never null: what is wrong with `request` is told
  /// as every other failure. The delegate, which may be null, is held until the exchange has ended
  /// or was cancelled; it is not called before this returns. The connection ends (as by `cancel`)
  /// when the last reference to it goes.
  static std::shared_ptr<HTTPConnection> start(HTTPRequest request,
                                               std::shared_ptr<HTTPConnectionDelegate> delegate,
                                               RunLoop& loop);
  HTTPConnection(const HTTPConnection&) = delete;
  HTTPConnection& operator=(const HTTPConnection&) = delete;
  /// As `cancel`.
  ~HTTPConnection();

  /// Ends the exchange at once; the delegate is let go and told nothing more. A second call does
  /// nothing.
  void cancel();

  /// The same exchange, driven to its end on a private loop of the calling thread, which it blocks.
  /// Returns the body (perhaps empty) and sets `response`, or nothing and sets `error`. What is not
  /// set stays as it was. Whatever `response` says of its status, the exchange has succeeded.
  static std::optional<Data> sendSynchronousRequest(const HTTPRequest& request,
                                                    HTTPResponse& response,
                                                    std::shared_ptr<const Error>& error);

  struct Private;

 private:
  HTTPConnection();
  std::unique_ptr<Private> private_;
};

}  // namespace platen::inline v0
