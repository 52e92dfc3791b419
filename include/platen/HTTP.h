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

/// Codes of transport failures.
enum class HTTPErrorCode : int {
  unknown = -1,
  badURL = -1000,
  timedOut = -1001,
  unsupportedURL = -1002,
  cannotFindHost = -1003,
  cannotConnectToHost = -1004,
  networkConnectionLost = -1005,
  badServerResponse = -1011,
  bodyStreamFailed = -1021,
  dataLengthExceedsMaximum = -1103,
};

/// How long a response body may become before the exchange fails with
/// `HTTPErrorCode::dataLengthExceedsMaximum`, in octets, unless the request says otherwise.
inline constexpr std::size_t kHTTPDefaultMaximumBodyLength = std::size_t{256} * 1024 * 1024;

/// What may be cached. The library asks for nothing but fresh answers.
enum class HTTPCachePolicy : int { reloadIgnoringLocalAndRemoteCacheData = 4 };

/// What is sent.
///
/// Threads: a plain value; one thread at a time.
struct PLATEN_EXPORT HTTPRequest {
  explicit HTTPRequest(URL target) : url(std::move(target)) {}

  /// Sets the header field `name` (letter case ignored), in the place of an earlier one.
  void setHeader(std::string_view name, std::string_view value);
  /// The value of the header field `name` (letter case ignored), or nothing.
  [[nodiscard]] std::optional<std::string_view> header(std::string_view name) const;

  URL url;
  std::string method = "GET";
  /// In the order in which they are sent.
  std::vector<std::pair<std::string, std::string>> headers;
  /// The whole body, sent with a Content-Length; shared, so that a request can be copied cheaply.
  std::shared_ptr<const Data> body;
  /// A body of unknown length, sent chunked, in the place of `body`. Opened and closed by the
  /// exchange.
  std::shared_ptr<InputStream> bodyStream;
  HTTPCachePolicy cachePolicy = HTTPCachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  /// Idle time, in seconds, after which the exchange fails with `HTTPErrorCode::timedOut`: no octet
  /// in either direction while the exchange waits on the network, resolving and connecting
  /// included. Time in which `bodyStream` has nothing to give does not count. 0 or less, or not a
  /// number: no time-out.
  double timeoutInterval = 60.0;
  std::size_t maximumBodyLength = kHTTPDefaultMaximumBodyLength;
};

/// The head of what came back.
///
/// Threads: a plain value; one thread at a time.
struct PLATEN_EXPORT HTTPResponse {
  /// The value of the first header field `name` (letter case ignored), or nothing.
  [[nodiscard]] std::optional<std::string_view> header(std::string_view name) const;
  /// The media type of Content-Type in lower case without its parameters; "" when there is none.
  [[nodiscard]] std::string mimeType() const;

  int statusCode = 0;
  std::vector<std::pair<std::string, std::string>> headers;
};

class HTTPConnection;

/// Is told how an exchange goes, from within the run loop's turns. Every operation has an empty
/// default. After `connectionDidFinishLoading` or `connectionDidFailWithError` nothing follows. Any
/// of them may cancel the connection or drop the last reference to it or to the delegate.
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
  /// The head of a final response (never of 1xx). A redirect is a final response: none is followed.
  virtual void connectionDidReceiveResponse(HTTPConnection& connection,
                                            const HTTPResponse& response);
  /// The next octets of its body; they live for the call.
  virtual void connectionDidReceiveData(HTTPConnection& connection, Bytes bytes);
  virtual void connectionDidFinishLoading(HTTPConnection& connection);
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
  /// Starts the exchange on `loop`. The delegate is held until the exchange has ended or was
  /// cancelled; it is not called before this returns. The connection ends (as by `cancel`) when the
  /// last reference to it goes.
  static std::shared_ptr<HTTPConnection> start(HTTPRequest request,
                                               std::shared_ptr<HTTPConnectionDelegate> delegate,
                                               RunLoop& loop);
  HTTPConnection(const HTTPConnection&) = delete;
  HTTPConnection& operator=(const HTTPConnection&) = delete;
  ~HTTPConnection();

  /// Ends the exchange at once; the delegate is let go and told nothing more. A second call does
  /// nothing.
  void cancel();

  /// The same exchange, driven to its end on a private loop of the calling thread, which it blocks.
  /// Returns the body (perhaps empty) and sets `response`, or nothing and sets `error`.
  static std::optional<Data> sendSynchronousRequest(const HTTPRequest& request,
                                                    HTTPResponse& response,
                                                    std::shared_ptr<const Error>& error);

  struct Private;

 private:
  HTTPConnection();
  std::unique_ptr<Private> private_;
};

}  // namespace platen::inline v0
