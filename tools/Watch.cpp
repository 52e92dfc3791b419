// SPDX-License-Identifier: Apache-2.0
#include "Watch.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <limits>
#include <ostream>
#include <utility>

#include "AnswerStatus.h"
#include "Event.h"
#include "Facts.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Session.h"
#include "Subscriptions.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// Long enough for every interval that servers want, short enough that a subscription whose watcher
// was killed soon goes away.
constexpr std::int32_t kLease = 600;
// A server that names no interval, or one that would keep it busy.
constexpr double kUsualInterval = 5;
constexpr double kLeastInterval = 1;
// Beyond a day the wait is no wait for events any more.
constexpr double kLongestInterval = 86'400;

// Seconds that a server has for each of the last questions, once a signal has come.
constexpr double kPatience = 5;

constexpr std::int64_t kLastNumber = std::numeric_limits<std::int32_t>::max();

/// A subscription from its beginning to its end.
class Watch {
 public:
  Watch(const WatchOptions& options, std::ostream& out)
      : options_(options),
        out_(out),
        target_(queueOrServerURI(options.queue, options)),
        session_(options) {}

  void run() {
    const auto request = subscriptionRequest(subscription(), target_);
    try {
      begin(*session_.askUnlessInterrupted(request, target_));
      follow();
    } catch (const Interrupted& interrupted) {
      session_.hurry(kPatience);
      showRest();
      throw Failure(interrupted.status(), end());
    } catch (const Failure& failure) {
      // Else there is nothing to take back, or nobody who could.
      if (id_ && failure.ippStatus() != kNotFound && failure.status() != ExitStatus::unreachable) {
        end();
      }
      throw;
    }
    end();  // nobody reads any more, which is told where the command ends
  }

 private:
  [[nodiscard]] SubscribeOptions subscription() const {
    SubscribeOptions result;
    result.events = options_.events;
    result.lease = kLease;
    return result;
  }

  void begin(const IPPResponse& answer) {
    id_ = subscriptionIdIn(answer, target_);
    if (const std::string remark = reservations(answer); !remark.empty()) {
      complain("subscription " + std::to_string(*id_) + remark);
    }
    lease_ = answer.notifyLeaseDuration() ? *answer.notifyLeaseDuration() : grantedLease();
    beginLease();
  }

  // Not all servers tell with the subscription for how long they have granted it.
  std::int32_t grantedLease() {
    try {
      const auto answer = session_.askUnlessInterrupted(
          IPPRequest::subscriptionAttributesRequest(*id_, target_), target_);
      return answer->notifyLeaseDuration().value_or(kLease);
    } catch (const Failure&) {  // nor later
      return kLease;
    }
  }

  void beginLease() {
    renewal_.reset();
    hasFailedToRenew_ = false;
    if (lease_ > 0) {  // 0 never ends
      leaseEnd_ = Clock::now() + std::chrono::seconds(lease_);
      renewInHalfOfTheRest();
    }
  }

  void renewInHalfOfTheRest() {
    const auto now = Clock::now();
    renewal_ = now + (leaseEnd_ - now) / 2;
  }

  void follow() {
    while (out_) {
      const auto answer = session_.askUnlessInterrupted(eventsRequest(), target_);
      show(*answer);
      pause(intervalFrom(*answer));
    }
  }

  // Half of the lease is left when it is renewed, for a second attempt and for slow networks.
  void pause(milliseconds duration) {
    const auto next = Clock::now() + duration;
    while (out_ && Clock::now() < next) {
      const auto until = renewal_ ? std::min(next, *renewal_) : next;
      session_.waiting().pause(
          std::max(milliseconds(0), std::chrono::ceil<milliseconds>(until - Clock::now())));
      if (renewal_ && Clock::now() >= *renewal_) {
        renew();
      }
    }
  }

  void renew() {
    try {
      askToRenew();
    } catch (const Failure& failure) {
      const bool isOver = failure.ippStatus() == kNotFound || Clock::now() >= leaseEnd_;
      if (isOver || std::exchange(hasFailedToRenew_, true)) {
        throw;
      }
      renewInHalfOfTheRest();
    }
  }

  void askToRenew() {
    auto request = IPPRequest::subscriptionReNewRequest(*id_, target_);
    setLease(*request, kLease);
    const auto answer = session_.askUnlessInterrupted(request, target_);
    lease_ = answer->notifyLeaseDuration().value_or(lease_);
    beginLease();
  }

  // Only what was not told yet (RFC 3996 §5.1.1).
  [[nodiscard]] IPPRequest::Pointer eventsRequest() const {
    auto request = IPPRequest::subscriptionGetNotificationsRequest(*id_, target_);
    request->addOperationValue(IPPValue::integer(std::min(next_, kLastNumber)),
                               "notify-sequence-numbers");
    return request;
  }

  [[nodiscard]] milliseconds intervalFrom(const IPPResponse& answer) const {
    const double told = answer.notifyGetInternal();
    const double wanted =
        options_.interval.value_or(std::max(told > 0 ? told : kUsualInterval, kLeastInterval));
    return milliseconds(static_cast<std::int64_t>(std::min(wanted, kLongestInterval) * 1000));
  }

  void show(const IPPResponse& answer) {
    const auto now = upTimeIn(answer);
    for (const auto& group : answer.notificationEventsGroups()) {
      const Event event(*group, now);
      // A server may tell once more what was told.
      if (event.sequenceNumber() != 0 && event.sequenceNumber() < next_) {
        continue;
      }
      next_ = std::max(next_, std::int64_t{event.sequenceNumber()} + 1);
      out_ << (options_.json ? event.json().text() : event.line()) << std::endl;
    }
  }

  static std::optional<std::int32_t> upTimeIn(const IPPResponse& answer) {
    const auto group = answer.operationGroup();
    return group == nullptr ? std::nullopt : Facts(*group).number("printer-up-time");
  }

  // What has happened since the server was asked last, which may be a minute ago.
  void showRest() {
    try {
      if (id_) {
        show(*session_.ask(eventsRequest(), target_));
      }
    } catch (const Failure&) {  // told when the subscription cannot be canceled either
    }
  }

  // What is to be said of it.
  std::string end() {
    if (!id_) {
      return "canceled before " + std::string(target_.absoluteString()) +
             " answered Create-Printer-Subscription";
    }
    try {
      session_.ask(IPPRequest::subscriptionCancelRequest(*id_, target_), target_);
      return "subscription " + std::to_string(*id_) + " canceled";
    } catch (const Failure& failure) {
      return "subscription " + std::to_string(*id_) + " was not canceled: " + failure.what();
    }
  }

  const WatchOptions& options_;
  std::ostream& out_;
  const URL target_;
  Session session_;
  std::optional<std::int32_t> id_;
  /// In seconds, as granted.
  std::int32_t lease_ = kLease;
  /// When to renew the lease; never for a subscription without end.
  std::optional<Clock::time_point> renewal_;
  Clock::time_point leaseEnd_;
  bool hasFailedToRenew_ = false;
  /// The sequence number of the first event that was not told yet.
  std::int64_t next_ = 1;
};

}  // namespace

void watch(const WatchOptions& options, std::ostream& out) {
  // A reader that goes away is no reason to leave the subscription behind.
  std::signal(SIGPIPE, SIG_IGN);
  Watch(options, out).run();
}

}  // namespace platen::tool
