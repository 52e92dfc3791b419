// SPDX-License-Identifier: Apache-2.0

/// The half of an HTTP exchange that sends a body, and looks at what is said meanwhile.

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "platform/HTTPEarlyAnswer.h"
#include "platform/HTTPExchange.h"

namespace platen::inline v0 {

using std::chrono::milliseconds;

namespace {

// How long to leave a stream alone that has nothing to give, and will not tell when it has.
constexpr milliseconds kDrySourcePause(20);
// How long to leave an answer alone of which only the first octets are there: at first, and when
// nothing is added to them.
constexpr milliseconds kFirstLookPause(10);
constexpr milliseconds kLongestLookPause(160);
// How often to see to a connection that needs neither reading nor writing for now.
constexpr milliseconds kLifeSignPause(500);
// How long to wait for the rest of a refusal, which adds nothing to what its head has said.
constexpr milliseconds kRefusalPatience(500);

}  // namespace

std::optional<std::size_t> HTTPExchange::supplyBody(std::uint8_t* destination, std::size_t room) {
  const auto count = source_ == nullptr ? 0 : source_->take(destination, room);
  wantsBody_ = !count.has_value();
  isSourceUsedUp_ = count == std::size_t{0};
  return count;
}

bool HTTPExchange::transferCloses(int socket) {
  if (socket == answeredSocket_) {
    answeredSocket_ = kNoSocket;
  }
  if (isSending_) {
    salvage_ = std::make_unique<HTTPSalvage>(socket);
  }
  return isSending_;
}

void HTTPExchange::driveBody() {
  if (std::exchange(isFirstLookDue_, false)) {
    transfer_->setLooksAhead(true);
    if (source_ == nullptr) {
      transfer_->resumeSending();
    }
  }
  if (source_ != nullptr && !isSourceUsedUp_) {
    feed();
  } else if (!result_.has_value() && !engine_->isWriting(*transfer_)) {
    stopSending();
  }
}

void HTTPExchange::feed() {
  if (hasEnded() || !isSending_ || isSourceUsedUp_) {
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
  } else if (wantsBody_ && state == HTTPBodySource::State::dry) {
    if (!transfer_->holdsWriting()) {
      idleClock_->suspend();
    }
    waitForSource(*source);
  } else if (wantsBody_) {
    idleClock_->resume();
    wantsBody_ = false;
    transfer_->resumeSending();
  }
}

void HTTPExchange::waitForSource(HTTPBodySource& source) {
  const auto ready = [weak = weak_from_this()] {
    if (const auto client = weak.lock()) {
      static_cast<HTTPExchange&>(*client).feed();
    }
  };
  const bool tells = source.callWhenReady(engine_->loop(), ready);
  if (!tells && !hasEnded()) {
    drySourceTimer_->start(kDrySourcePause);
  }
}

void HTTPExchange::stopSending() {
  isSending_ = false;
  drySourceTimer_->stop();
  lookTimer_->stop();
  idleClock_->resume();
  transfer_->setLooksAhead(false);
  letReceive();
}

void HTTPExchange::letReceive() {
  wantsBody_ = false;
  transfer_->resumeReceiving();
}

void HTTPExchange::lookLater() {
  transfer_->setLooksAhead(false);
  lookTimer_->start(lookPause_);
  lookPause_ = std::min(2 * lookPause_, kLongestLookPause);
}

void HTTPExchange::lookAgain() {
  if (!isSending_ || answeredSocket_ == kNoSocket) {
    transfer_->setLooksAhead(isSending_);
  } else if (isConnectionLost(answeredSocket_)) {
    failAsClosed();
  } else {
    lookTimer_->start(kLifeSignPause);
  }
}

void HTTPExchange::failAsClosed() {
  transfer_->setLooksAhead(false);
  result_ = transfer_->resultWhenClosed();
  engine_->touch(*this);
}

void HTTPExchange::transferIsReadable(int socket) {
  const auto look = lookForEarlyAnswer(socket);
  if (!head_.count(look.interimOctets)) {
    transferEnded({false, HTTPErrorCode::badServerResponse, std::string(kHTTPHeadTooLong)});
    engine_->touch(*this);
    return;
  }
  // What was there at the last look is no traffic.
  if (std::exchange(octetsSeen_, look.octets - look.interimOctets) != look.octets) {
    transferMoved();
    lookPause_ = kFirstLookPause;
  }
  actOn(look.answer, socket);
}

void HTTPExchange::actOn(HTTPEarlyAnswer answer, int socket) {
  switch (answer) {
    case HTTPEarlyAnswer::nothing:
      break;
    case HTTPEarlyAnswer::beginning:
      lookLater();
      break;
    case HTTPEarlyAnswer::refusalBeginning:
      transfer_->setHoldsWriting(true);
      idleClock_->resume();  // from now on it is the server that is waited for
      lookLater();
      break;
    case HTTPEarlyAnswer::refusal:
      isRefused_ = true;
      refusalTimer_->start(kRefusalPatience);
      [[fallthrough]];
    case HTTPEarlyAnswer::malformed:
      transfer_->setHoldsWriting(true);
      stopSending();
      break;
    case HTTPEarlyAnswer::other:
      // The answer waits until the body is sent. What is yet to be seen, since a body that has
      // nothing to give does not touch the connection, is whether there still is one.
      answeredSocket_ = socket;
      transfer_->setLooksAhead(false);
      lookTimer_->start(kLifeSignPause);
      break;
    case HTTPEarlyAnswer::closed:
      failAsClosed();
      break;
  }
}

}  // namespace platen::inline v0
