// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPTransfer.h"

#include <curl/curl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "platform/HTTPBodySource.h"
#include "platform/HTTPEngine.h"

namespace platen::inline v0 {

namespace {

constexpr const char* kUserAgent = "platen/0.1";
// What libcurl keeps free in its buffer for the frame of a chunk. With a buffer of less than a
// piece and this, each piece would end in a chunk of a few octets, with a system call of its own.
constexpr long kChunkFrame = 12;

template <typename Value>
void set(CURL* easy, CURLoption option, Value value) {
  // Fails only for want of memory, or for an option that this libcurl was built without, which it
  // then does not do anyway.
  curl_easy_setopt(easy, option, value);
}

HTTPErrorCode errorCode(CURLcode code, bool systemCallFailed) {
  switch (code) {
    case CURLE_URL_MALFORMAT:
      return HTTPErrorCode::badURL;
    case CURLE_COULDNT_RESOLVE_HOST:
      return HTTPErrorCode::cannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return HTTPErrorCode::cannotConnectToHost;
    case CURLE_OPERATION_TIMEDOUT:
      return HTTPErrorCode::timedOut;
    case CURLE_FILESIZE_EXCEEDED:
      return HTTPErrorCode::dataLengthExceedsMaximum;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
      return HTTPErrorCode::networkConnectionLost;
    case CURLE_RECV_ERROR:
      // Also what libcurl calls a chunked body that it cannot decode; no system call failed then.
      return systemCallFailed ? HTTPErrorCode::networkConnectionLost
                              : HTTPErrorCode::badServerResponse;
    case CURLE_UNSUPPORTED_PROTOCOL:  // an answer of HTTP/0.9
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_OUT_OF_MEMORY:  // an endless header line
    case CURLE_WRITE_ERROR:
      return HTTPErrorCode::badServerResponse;
    default:
      return HTTPErrorCode::unknown;
  }
}

/// What the system said to the call that failed, in English whatever the locale; null when libcurl
/// itself was not content.
const char* systemReason(CURL* easy, CURLcode code, std::string_view curlReason) {
  const bool isSystems = code == CURLE_COULDNT_CONNECT || code == CURLE_SEND_ERROR ||
                         (code == CURLE_RECV_ERROR && curlReason.starts_with("Recv failure"));
  long number = 0;
  curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &number);
  return isSystems && number != 0 ? strerrordesc_np(static_cast<int>(number)) : nullptr;
}

}  // namespace

struct HTTPTransfer::Callbacks {
  static HTTPTransfer& self(void* transfer) { return *static_cast<HTTPTransfer*>(transfer); }
  static HTTPEngine& engine(void* engine) { return *static_cast<HTTPEngine*>(engine); }

  static int connected(void* transfer, char*, char*, int, int) {
    self(transfer).noteConnection();
    return CURL_PREREQFUNC_OK;
  }

  static std::size_t header(char* text, std::size_t, std::size_t length, void* transfer) {
    const bool goesOn = self(transfer).client_.transferReceivedHeaderLine({text, length});
    self(transfer).engine_.touch(self(transfer).client_);
    return goesOn ? length : 0;
  }

  static std::size_t body(char* octets, std::size_t, std::size_t count, void* transfer) {
    const Bytes bytes(reinterpret_cast<const std::uint8_t*>(octets), count);
    const bool goesOn = self(transfer).client_.transferReceivedBody(bytes);
    self(transfer).engine_.touch(self(transfer).client_);
    return goesOn ? count : count + 1;
  }

  static std::size_t read(char* destination, std::size_t, std::size_t room, void* transfer) {
    const auto count =
        self(transfer).client_.supplyBody(reinterpret_cast<std::uint8_t*>(destination), room);
    self(transfer).engine_.touch(self(transfer).client_);
    self(transfer).isSendingPaused_ = !count.has_value();
    return count.value_or(CURL_READFUNC_PAUSE);
  }

  static curl_socket_t open(void* engineOfAll, curlsocktype, curl_sockaddr* address) {
    return engine(engineOfAll).openSocket(address->family, address->socktype, address->protocol);
  }

  static int close(void* engineOfAll, curl_socket_t descriptor) {
    engine(engineOfAll).closeSocket(descriptor);
    return 0;
  }

  /// libcurl wants to resolve a name by itself, for which it would start a thread that cannot be
  /// stopped. Only reached when a name as libcurl knows it differs from ours.
  static int refuseToResolve(void*, void*, void*) { return 1; }
};

HTTPTransfer::HTTPTransfer(HTTPTransferPlan plan, HTTPTransferClient& client, HTTPEngine& engine)
    : plan_(std::move(plan)),
      client_(client),
      engine_(engine),
      easy_(curl_easy_init()),
      reason_(std::make_unique<char[]>(CURL_ERROR_SIZE)) {
  if (easy_ == nullptr) {
    throw std::bad_alloc();
  }
  configure();
  engine_.add(easy_);
}

HTTPTransfer::~HTTPTransfer() {
  engine_.remove(*this, easy_);
  curl_easy_cleanup(easy_);
  curl_slist_free_all(static_cast<curl_slist*>(headers_));
  curl_slist_free_all(static_cast<curl_slist*>(resolved_));
}

HTTPTransfer* HTTPTransfer::of(void* easy) {
  char* transfer = nullptr;
  curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
  return reinterpret_cast<HTTPTransfer*>(transfer);
}

void HTTPTransfer::configure() {
  set(easy_, CURLOPT_PRIVATE, this);
  set(easy_, CURLOPT_ERRORBUFFER, reason_.get());
  set(easy_, CURLOPT_URL, plan_.url.c_str());
  forbidWhatIsNotAsked();
  configureConnection();
  configureMethod();
  configureCallbacks();
}

void HTTPTransfer::forbidWhatIsNotAsked() {
  set(easy_, CURLOPT_NOSIGNAL, 1L);
  set(easy_, CURLOPT_PROTOCOLS_STR, "http");
  set(easy_, CURLOPT_REDIR_PROTOCOLS_STR, "http");
  set(easy_, CURLOPT_FOLLOWLOCATION, 0L);
  // An empty proxy, unlike none, also turns off the environment's.
  set(easy_, CURLOPT_PROXY, "");
  set(easy_, CURLOPT_NOPROXY, "*");
  set(easy_, CURLOPT_NETRC, long{CURL_NETRC_IGNORED});
  set(easy_, CURLOPT_HTTPAUTH, long{CURLAUTH_NONE});
  set(easy_, CURLOPT_PATH_AS_IS, 1L);
  set(easy_, CURLOPT_HTTP09_ALLOWED, 0L);
}

void HTTPTransfer::configureConnection() {
  constexpr auto kNoTimeout = std::chrono::milliseconds(std::numeric_limits<int>::max());
  const auto timeout = plan_.connectTimeout.count() > 0 ? plan_.connectTimeout : kNoTimeout;
  set(easy_, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(std::min(timeout, kNoTimeout).count()));
  set(easy_, CURLOPT_TCP_KEEPALIVE, 1L);
  set(easy_, CURLOPT_FRESH_CONNECT, plan_.needsFreshConnection ? 1L : 0L);
  if (!plan_.resolved.empty()) {
    auto* const list = curl_slist_append(nullptr, plan_.resolved.c_str());
    resolved_ = list;
    set(easy_, CURLOPT_RESOLVE, list);
    set(easy_, CURLOPT_RESOLVER_START_FUNCTION, Callbacks::refuseToResolve);
  }
  set(easy_, CURLOPT_ADDRESS_SCOPE, static_cast<long>(plan_.zone));
  set(easy_, CURLOPT_OPENSOCKETFUNCTION, Callbacks::open);
  set(easy_, CURLOPT_OPENSOCKETDATA, &engine_);
  // Outlives the transfer along with the connection.
  set(easy_, CURLOPT_CLOSESOCKETFUNCTION, Callbacks::close);
  set(easy_, CURLOPT_CLOSESOCKETDATA, &engine_);
}

void HTTPTransfer::configureMethod() {
  set(easy_, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
  set(easy_, CURLOPT_USERAGENT, kUserAgent);
  curl_slist* list = nullptr;
  for (const auto& header : plan_.headers) {
    list = curl_slist_append(list, header.c_str());
  }
  headers_ = list;
  set(easy_, CURLOPT_HTTPHEADER, list);
  if (hasBody() || plan_.method == "POST") {
    set(easy_, CURLOPT_POST, 1L);
    if (!plan_.isStreamed) {
      const auto size = plan_.body == nullptr ? 0 : plan_.body->size();
      const void* const octets = size == 0 ? "" : static_cast<const void*>(plan_.body->data());
      set(easy_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
      set(easy_, CURLOPT_POSTFIELDS, octets);
    }
  } else if (plan_.method == "HEAD") {
    set(easy_, CURLOPT_NOBODY, 1L);
  } else {
    set(easy_, CURLOPT_HTTPGET, 1L);
  }
  if (plan_.method != "HEAD") {
    set(easy_, CURLOPT_CUSTOMREQUEST, plan_.method.c_str());
  }
}

void HTTPTransfer::configureCallbacks() {
  constexpr auto kLargest = static_cast<std::size_t>(std::numeric_limits<curl_off_t>::max());
  const auto maximum = std::min(plan_.maximumBodyLength, kLargest);
  set(easy_, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(maximum));
  set(easy_, CURLOPT_PREREQFUNCTION, Callbacks::connected);
  set(easy_, CURLOPT_PREREQDATA, this);
  set(easy_, CURLOPT_HEADERFUNCTION, Callbacks::header);
  set(easy_, CURLOPT_HEADERDATA, this);
  set(easy_, CURLOPT_WRITEFUNCTION, Callbacks::body);
  set(easy_, CURLOPT_WRITEDATA, this);
  if (plan_.isStreamed) {
    set(easy_, CURLOPT_READFUNCTION, Callbacks::read);
    set(easy_, CURLOPT_READDATA, this);
    set(easy_, CURLOPT_UPLOAD_BUFFERSIZE, long{kHTTPPieceLength} + kChunkFrame);
  }
}

void HTTPTransfer::noteSocket(int descriptor) {
  if (std::find(sockets_.begin(), sockets_.end(), descriptor) == sockets_.end()) {
    sockets_.push_back(descriptor);
  }
}

void HTTPTransfer::noteConnection() {
  isReceivingPaused_ = hasBody();
  isSendingPaused_ = hasBody();
  looksAhead_ = false;
  holdsWriting_ = false;
  if (isReceivingPaused_) {
    applyPauses();
  }
  client_.transferConnected();
  engine_.touch(client_);
}

void HTTPTransfer::applyPauses() {
  curl_easy_pause(
      easy_, (isReceivingPaused_ ? CURLPAUSE_RECV : 0) | (isSendingPaused_ ? CURLPAUSE_SEND : 0));
}

void HTTPTransfer::resumeReceiving() {
  isReceivingPaused_ = false;
  isSendingPaused_ = false;
  applyPauses();
  engine_.nudge(*this, CURL_POLL_IN);
}

void HTTPTransfer::resumeSending() {
  isSendingPaused_ = false;
  applyPauses();
  // Lifting one pause makes libcurl try both directions once, the other pause notwithstanding,
  // unless it is told at once which one is ready.
  engine_.nudge(*this, CURL_POLL_OUT);
}

void HTTPTransfer::setLooksAhead(bool looksAhead) {
  looksAhead_ = looksAhead;
  engine_.refresh(*this);
}

void HTTPTransfer::setHoldsWriting(bool holdsWriting) {
  holdsWriting_ = holdsWriting;
  engine_.refresh(*this);
}

HTTPTransferResult HTTPTransfer::result(int code) const {
  const auto curlCode = static_cast<CURLcode>(code);
  const char* const systemText = systemReason(easy_, curlCode, reason_.get());
  HTTPTransferResult result;
  result.isComplete = curlCode == CURLE_OK;
  result.code = errorCode(curlCode, systemText != nullptr);
  result.reason = systemText != nullptr ? systemText : reason_.get();
  if (result.reason.empty()) {
    result.reason = curl_easy_strerror(curlCode);
  }
  long connections = 0;
  curl_easy_getinfo(easy_, CURLINFO_NUM_CONNECTS, &connections);
  result.usedOldConnection = connections == 0;
  return result;
}

HTTPTransferResult HTTPTransfer::resultWhenClosed() const { return result(CURLE_GOT_NOTHING); }

}  // namespace platen::inline v0
