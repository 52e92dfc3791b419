// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPExchange.h"

#include <chrono>
#include <utility>

#include "platform/FlagScope.h"

namespace platen::inline v0 {

namespace {

/// The form in which libcurl takes the addresses of a name.
std::string resolvedEntry(const HTTPTarget& target, const HostAddresses& found) {
  std::string entry = target.authority;
  char separator = ':';
  for (const auto& address : found.addresses) {
    const bool isIPv6 = address.find(':') != std::string::npos;
    entry += separator;
    entry += isIPv6 ? "[" + address + "]" : address;
    separator = ',';
  }
  return entry;
}

}  // namespace

HTTPExchange::HTTPExchange(HTTPRequest request, std::shared_ptr<HTTPConnectionDelegate> delegate,
                           HTTPEngine& engine)
    : request_(std::move(request)), delegate_(std::move(delegate)), engine_(&engine) {
  engine_->enrol(*this);
}

HTTPExchange::~HTTPExchange() { cancel(); }

void HTTPExchange::start(std::weak_ptr<HTTPConnection> connection) {
  connection_ = std::move(connection);
  const auto weak = std::weak_ptr(std::static_pointer_cast<HTTPExchange>(shared_from_this()));
  engine_->loop().internals().callSoon([weak] {
    if (const auto exchange = weak.lock(); exchange != nullptr && !exchange->hasEnded()) {
      exchange->begin();
    }
  });
}

void HTTPExchange::cancel() {
  if (hasEnded()) {
    return;
  }
  std::exchange(engine_, nullptr)->dismiss(*this);
  resolution_.reset();
  transfer_.reset();
  salvage_.reset();
  idleClock_.reset();
  drySourceTimer_.reset();
  lookTimer_.reset();
  refusalTimer_.reset();
  // These two are the caller's, and may do anything when they go.
  const auto source = std::move(source_);
  const auto delegate = std::move(delegate_);
}

void HTTPExchange::begin() {
  auto& loop = engine_->loop();
  if (const auto error = planRequest(request_, target_, plan_)) {
    fail(error);
    return;
  }
  if (request_.bodyStream != nullptr && !openSource()) {
    return;
  }
  const auto octetsInFlight = [this] {
    return transfer_ == nullptr ? 0 : engine_->octetsInFlight(*transfer_);
  };
  const auto expired = [this] { failIdle(); };
  idleClock_ =
      std::make_unique<HTTPIdleClock>(loop, request_.timeoutInterval, octetsInFlight, expired);
  if (idleClock_->limit().count() > 0) {
    // libcurl divides it among the host's addresses; that it ends is for the idle clock to say.
    plan_.connectTimeout = idleClock_->limit() + std::chrono::seconds(1);
  }
  drySourceTimer_ = std::make_unique<Timer>(loop, [this] { feed(); });
  lookTimer_ = std::make_unique<Timer>(loop, [this] { lookAgain(); });
  refusalTimer_ = std::make_unique<Timer>(loop, [this] { endImpatiently(); });
  if (target_.needsResolving) {
    resolve();
  } else {
    startTransfer(plan_);
  }
}

/// False when the exchange has ended.
bool HTTPExchange::openSource() {
  const auto source = std::make_shared<HTTPBodySource>(request_.bodyStream);
  source_ = source;
  const bool isOpen = source->open();
  if (!isOpen) {
    fail(httpError(HTTPErrorCode::bodyStreamFailed, "the document could not be opened",
                   source->error()));
  }
  return !hasEnded();
}

void HTTPExchange::resolve() {
  // A registered name may hold escapes (RFC 3986 §3.2.2), but no host's name does.
  if (target_.host.find('%') != std::string::npos) {
    useAddresses({{}, 0, "not a host name"});
    return;
  }
  const auto done = [this](const HostAddresses& found) { useAddresses(found); };
  resolution_ = std::make_unique<Resolution>(engine_->loop(), target_.host, done);
}

void HTTPExchange::useAddresses(const HostAddresses& found) {
  resolution_.reset();
  if (found.addresses.empty()) {
    fail(httpError(HTTPErrorCode::cannotFindHost, "could not resolve the host name \"" +
                                                      target_.host + "\" (" + found.failure + ")"));
    return;
  }
  idleClock_->noteTraffic();
  plan_.resolved = resolvedEntry(target_, found);
  plan_.zone = found.zone;
  startTransfer(plan_);
}

void HTTPExchange::startTransfer(HTTPTransferPlan plan) {
  stage_ = HTTPStage::connecting;
  isSending_ = false;
  head_ = {};
  lookTimer_->stop();
  refusalTimer_->stop();
  transfer_.reset();
  transfer_ = std::make_unique<HTTPTransfer>(std::move(plan), *this, *engine_);
}

void HTTPExchange::transferConnected() {
  stage_ = HTTPStage::exchanging;
  isSending_ = plan_.body != nullptr || plan_.isStreamed;
  isFirstLookDue_ = isSending_;
  octetsSeen_ = 0;
  answeredSocket_ = kNoSocket;
  wantsBody_ = isSending_;
  isSourceUsedUp_ = false;
  salvage_.reset();  // of a connection that libcurl has replaced by this one
}

bool HTTPExchange::transferReceivedHeaderLine(std::string_view line) {
  if (head_.takeLine(line)) {
    return true;
  }
  ownCode_ = HTTPErrorCode::badServerResponse;
  return false;
}

bool HTTPExchange::transferReceivedBody(Bytes bytes) {
  if (bytes.size() > request_.maximumBodyLength - bodyLength_) {
    ownCode_ = HTTPErrorCode::dataLengthExceedsMaximum;
    return false;
  }
  bodyLength_ += bytes.size();
  body_.insert(body_.end(), bytes.begin(), bytes.end());
  return true;
}

void HTTPExchange::transferMoved() {
  if (idleClock_ != nullptr) {
    idleClock_->noteTraffic();
  }
}

void HTTPExchange::settle() {
  if (hasEnded() || isTellingOfHead_) {
    return;
  }
  if (isSending_ && !result_.has_value()) {
    driveBody();
  } else if (wantsBody_ && isRefused_) {
    letReceive();  // libcurl waits for a body that nobody wants any more
  }
  deliver();
  if (!hasEnded() && result_.has_value()) {
    conclude(*std::exchange(result_, std::nullopt));
  }
}

template <typename Function>
void HTTPExchange::tell(Function function) {
  const auto delegate = delegate_;
  const auto connection = connection_.lock();
  if (delegate != nullptr && connection != nullptr) {
    function(*delegate, *connection);
  }
}

template <typename Function>
void HTTPExchange::end(Function tellLast) {
  const auto delegate = delegate_;
  const auto connection = connection_.lock();
  cancel();
  if (delegate != nullptr && connection != nullptr) {
    tellLast(*delegate, *connection);
  }
}

// A delegate is asked what it would be asked by a client that follows redirects or has credentials.
// This one does neither, whatever is answered.
void HTTPExchange::tellOfHead(const HTTPResponse& response) {
  const int status = response.statusCode;
  if (status >= 300 && status < 400 && response.header("Location")) {
    tell([&](auto& delegate, auto& connection) {
      delegate.connectionWillSendRequest(connection, request_, &response);
    });
  }
  if (status == 401 || status == 407) {
    tell([](auto& delegate, auto& connection) {
      delegate.connectionDidReceiveAuthenticationChallenge(connection);
    });
  }
  tell([&](auto& delegate, auto& connection) {
    delegate.connectionDidReceiveResponse(connection, response);
  });
}

void HTTPExchange::deliver() {
  if (const auto response = head_.takeResponse()) {
    const FlagScope telling(isTellingOfHead_);
    tellOfHead(*response);
  }
  if (!body_.empty()) {
    const Data bytes = std::exchange(body_, {});
    tell([&](auto& delegate, auto& connection) {
      delegate.connectionDidReceiveData(connection, bytes);
    });
  }
}

void HTTPExchange::transferEnded(HTTPTransferResult result) {
  if (ownCode_.has_value()) {
    result.code = *ownCode_;
    result.reason = kHTTPHeadTooLong;
  }
  if (result.code == HTTPErrorCode::dataLengthExceedsMaximum) {
    result.reason = "more than " + std::to_string(request_.maximumBodyLength) + " octets";
  }
  if (result.isComplete && (isSending_ || !head_.isComplete())) {
    // libcurl is content with half a head, too.
    result = {false, HTTPErrorCode::networkConnectionLost, "closed too early"};
  }
  result_ = std::move(result);
}

void HTTPExchange::conclude(const HTTPTransferResult& result) {
  if (result.isComplete || hasRefusal()) {
    finish();
  } else if (mayTryAgain(result)) {
    tryAgain();
  } else if (!salvageRefusal()) {
    fail(transferError(result, target_.authority));
  }
}

void HTTPExchange::tryAgain() {
  hasTriedAgain_ = true;
  auto plan = plan_;
  plan.needsFreshConnection = true;
  idleClock_->noteTraffic();
  startTransfer(std::move(plan));
}

/// Whether the server has refused while it was being sent the body: that is the outcome, whatever
/// happens to the rest of the answer.
bool HTTPExchange::hasRefusal() const { return isRefused_ && head_.isComplete(); }

/// A refusal that has been waited for long enough.
void HTTPExchange::endImpatiently() {
  if (hasRefusal()) {
    finish();
  }
}

void HTTPExchange::failIdle() {
  if (hasRefusal()) {
    finish();
  } else {
    fail(idleError(stage_, idleClock_->limit(), target_.authority));
  }
}

/// Whether an old connection proved to be closed when it was used again (RFC 9112 §9.3.1).
bool HTTPExchange::mayTryAgain(const HTTPTransferResult& result) const {
  return result.code == HTTPErrorCode::networkConnectionLost && result.usedOldConnection &&
         !hasTriedAgain_ && source_ == nullptr && !head_.hasOctets() &&
         answeredSocket_ == kNoSocket && (salvage_ == nullptr || salvage_->isEmpty());
}

bool HTTPExchange::salvageRefusal() {
  if (!isSending_ || salvage_ == nullptr || !salvage_->isRefusal() ||
      !salvage_->readRefusal(head_, body_, request_.maximumBodyLength)) {
    return false;
  }
  // To be told as every other outcome, of which nothing is lost when a delegate raises.
  isSending_ = false;
  wantsBody_ = false;
  isRefused_ = true;
  result_.emplace().isComplete = true;
  engine_->touch(*this);
  return true;
}

void HTTPExchange::finish() {
  end([](auto& delegate, auto& connection) { delegate.connectionDidFinishLoading(connection); });
}

void HTTPExchange::fail(const std::shared_ptr<const Error>& error) {
  end([&](auto& delegate, auto& connection) {
    delegate.connectionDidFailWithError(connection, error);
  });
}

}  // namespace platen::inline v0
