// SPDX-License-Identifier: Apache-2.0
#include "Session.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "DisplayText.h"
#include "Exchange.h"
#include "Failure.h"
#include "Interrupt.h"

namespace platen::tool {

namespace {

/// A progress line until the end of a scope.
class Shown {
 public:
  Shown(Progress& progress, Progress::Text text) : progress_(progress) {
    progress_.show(std::move(text));
  }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;
  ~Shown() {
    progress_.show({});
    progress_.erase();
  }

 private:
  Progress& progress_;
};

}  // namespace

void Session::hurry(double seconds) {
  timeout_ = timeout_ > 0 ? std::min(timeout_, seconds) : seconds;  // 0 is never
}

IPPResponse::Pointer Session::ask(IPPRequest::Pointer request, const URL& target) {
  const std::string operation(request->ippOperationCodename());
  try {
    return askUnlessInterrupted(std::move(request), target);
  } catch (const Interrupted& interrupted) {
    throw Failure(interrupted.status(), "canceled before " + std::string(target.absoluteString()) +
                                            " answered " + operation);
  }
}

IPPResponse::Pointer Session::askForAny(IPPRequest::Pointer request, const URL& target) {
  try {
    return ask(std::move(request), target);
  } catch (const Failure& failure) {
    if (failure.ippStatus() == kNotFound) {
      return nullptr;
    }
    throw;
  }
}

IPPResponse::Pointer Session::askUnlessInterrupted(IPPRequest::Pointer request, const URL& target) {
  request->setTimeInterval(timeout_);
  const std::string title = std::string(request->ippOperationCodename()) + ": waiting for " +
                            harmless(target.absoluteString());
  const Shown shown(progress_, [title](auto, auto elapsed) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    return title + ", " + std::to_string(seconds) + " s";
  });
  return answerTo(std::move(request), target, waiting_);
}

}  // namespace platen::tool
