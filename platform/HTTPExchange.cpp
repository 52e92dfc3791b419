// SPDX-License-Identifier: Apache-2.0

#include "platform/HTTPExchange.h"

#include <chrono>
#include <utility>

#include "platform/HTTPEarlyAnswer.h"

namespace platen::inline v0 {

using std::chrono::milliseconds;

namespace {

// How long to leave a stream alone that has nothing to give: streams cannot tell when they have.
constexpr milliseconds kDrySourcePause(20);
// How long to leave an answer alone of which only the first octets are there.
constexpr milliseconds kLookPause(10);

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
  const auto expired = [this] { fail(idleError(stage_, idleClock_->limit(), target_.authority)); };
  idleClock_ =
      std::make_unique<HTTPIdleClock>(loop, request_.timeoutInterval, octetsInFlight, expired);
  plan_.connectTimeout = idleClock_->limit();
  drySourceTimer_ = std::make_unique<Timer>(loop, [this] { feed(); });
  lookTimer_ = std::make_unique<Timer>(loop, [this] { transfer_->setLooksAhead(isSending_); });
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
  transfer_.reset();
  transfer_ = std::make_unique<HTTPTransfer>(std::move(plan), *this, *engine_);
}

void HTTPExchange::transferConnected() {
  stage_ = HTTPStage::exchanging;
  isSending_ = (plan_.body != nullptr || plan_.isStreamed) && !isRefused_;
  isFirstLookDue_ = isSending_;
  if (isSending_) {
    salvage_.reset();  // of a connection that libcurl has replaced by this one
  }
}

bool HTTPExchange::transferReceivedHeaderLine(std::string_view line) {
  if (head_.takeLine(line)) {
    return true;
  }
  ownError_ = httpError(HTTPErrorCode::badServerResponse,
                        "the head of the answer from " + target_.authority + " is too long");
  return false;
}

bool HTTPExchange::transferReceivedBody(Bytes bytes) {
  if (bytes.size() > request_.maximumBodyLength - bodyLength_) {
    ownError_ = httpError(HTTPErrorCode::dataLengthExceedsMaximum,
                          "the answer from " + target_.authority + " is longer than " +
                              std::to_string(request_.maximumBodyLength) + " octets");
    return false;
  }
  bodyLength_ += bytes.size();
  body_.insert(body_.end(), bytes.begin(), bytes.end());
  return true;
}

std::optional<std::size_t> HTTPExchange::supplyBody(std::uint8_t* destination, std::size_t room) {
  const auto count = source_ == nullptr ? 0 : source_->take(destination, room);
  wantsBody_ = !count.has_value();
  isSourceUsedUp_ = count == std::size_t{0};
  return count;
}

bool HTTPExchange::transferCloses(int socket) {
  if (isSending_) {
    salvage_ = std::make_unique<HTTPSalvage>(socket);
  }
  return isSending_;
}

void HTTPExchange::transferMoved() {
  if (idleClock_ != nullptr) {
    idleClock_->noteTraffic();
  }
}

void HTTPExchange::transferEnded(HTTPTransferResult result) { result_ = std::move(result); }

void HTTPExchange::settle() {
  if (hasEnded()) {
    return;
  }
  if (isSending_ && !result_.has_value()) {
    driveBody();
  }
  deliver();
  if (!hasEnded() && result_.has_value()) {
    conclude(*std::exchange(result_, std::nullopt));
  }
}

void HTTPExchange::driveBody() {
  if (std::exchange(isFirstLookDue_, false)) {
    transfer_->setLooksAhead(true);
  }
  if (wantsBody_) {
    feed();
  } else if ((source_ == nullptr || isSourceUsedUp_) && !engine_->isWriting(*transfer_)) {
    stopSending();
  }
}

void HTTPExchange::feed() {
  if (!isSending_ || !wantsBody_) {
    return;
  }
  const auto keep = shared_from_this();
  const auto source = source_;
  const auto state = source->refill();
  if (hasEnded()) {
    return;
  }
  if (state == HTTPBodySource::State::failed) {
    fail(httpError(HTTPErrorCode::bodyStreamFailed, "the document could not be read",
                   source->error()));
  } else if (state == HTTPBodySource::State::dry) {
    idleClock_->suspend();
    drySourceTimer_->start(kDrySourcePause);
  } else {
    idleClock_->resume();
    wantsBody_ = false;
    transfer_->resumeSending();
  }
}

void HTTPExchange::stopSending() {
  isSending_ = false;
  wantsBody_ = false;
  drySourceTimer_->stop();
  lookTimer_->stop();
  idleClock_->resume();
  transfer_->setLooksAhead(false);
  transfer_->resumeReceiving();
}

void HTTPExchange::lookLater() {
  transfer_->setLooksAhead(false);
  lookTimer_->start(kLookPause);
}

void HTTPExchange::transferIsReadable(int socket) {
  std::size_t interimOctets = 0;
  const auto answer = lookForEarlyAnswer(socket, interimOctets);
  if (!head_.count(interimOctets)) {
    fail(httpError(HTTPErrorCode::badServerResponse,
                   "the head of the answer from " + target_.authority + " is too long"));
    return;
  }
  switch (answer) {
    case HTTPEarlyAnswer::nothing:
      break;
    case HTTPEarlyAnswer::beginning:
      lookLater();
      break;
    case HTTPEarlyAnswer::refusalBeginning:
      transfer_->setHoldsWriting(true);
      lookLater();
      break;
    case HTTPEarlyAnswer::refusal:
      isRefused_ = true;
      [[fallthrough]];
    case HTTPEarlyAnswer::malformed:
      transfer_->setHoldsWriting(true);
      stopSending();
      break;
    case HTTPEarlyAnswer::other:
      transfer_->setLooksAhead(false);
      break;
    case HTTPEarlyAnswer::closed:
      transfer_->setLooksAhead(false);
      result_ = transfer_->resultWhenClosed();
      engine_->touch(*this);
      break;
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

void HTTPExchange::deliver() {
  if (const auto response = head_.takeResponse()) {
    tell([&](auto& delegate, auto& connection) {
      delegate.connectionDidReceiveResponse(connection, *response);
    });
  }
  if (!body_.empty()) {
    const Data bytes = std::exchange(body_, {});
    tell([&](auto& delegate, auto& connection) {
      delegate.connectionDidReceiveData(connection, bytes);
    });
  }
}

void HTTPExchange::conclude(const HTTPTransferResult& result) {
  if (ownError_ != nullptr) {
    fail(ownError_);
  } else if ((result.isComplete && !isSending_) || (isRefused_ && head_.isComplete())) {
    end([](auto& delegate, auto& connection) { delegate.connectionDidFinishLoading(connection); });
  } else if (mayTryAgain(result)) {
    hasTriedAgain_ = true;
    auto plan = plan_;
    plan.needsFreshConnection = true;
    idleClock_->noteTraffic();
    startTransfer(std::move(plan));
  } else if (!salvageRefusal()) {
    fail(transferError(result, target_.authority));
  }
}

/// Whether an old connection proved to be closed when it was used again (RFC 9112 §9.3.1).
bool HTTPExchange::mayTryAgain(const HTTPTransferResult& result) const {
  return result.code == HTTPErrorCode::networkConnectionLost && result.usedOldConnection &&
         !hasTriedAgain_ && source_ == nullptr && !head_.hasOctets() &&
         (salvage_ == nullptr || salvage_->isEmpty());
}

bool HTTPExchange::salvageRefusal() {
  if (!isSending_ || salvage_ == nullptr || !salvage_->isRefusal()) {
    return false;
  }
  isRefused_ = true;
  // libcurl reads the answer as that to another request.
  HTTPTransferPlan plan;
  plan.url = "http://127.0.0.1/";
  plan.method = "GET";
  plan.needsFreshConnection = true;
  plan.maximumBodyLength = request_.maximumBodyLength;
  plan.socket = salvage_->replay();
  if (plan.socket < 0) {
    return false;
  }
  startTransfer(std::move(plan));
  return true;
}

void HTTPExchange::fail(const std::shared_ptr<const Error>& error) {
  end([&](auto& delegate, auto& connection) {
    delegate.connectionDidFailWithError(connection, error);
  });
}

}  // namespace platen::inline v0
