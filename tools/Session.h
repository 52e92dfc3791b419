// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Progress.h"
#include "Server.h"
#include "Waiting.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/URL.h"

namespace platen::tool {

/// One run of a command that asks servers, one question after the other. While an answer is slow,
/// a line on the terminal says what is waited for.
///
/// Threads: used on one thread only; one at a time in a process.
class Session {
 public:
  explicit Session(const ServerOptions& options) : timeout_(options.timeout) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() = default;

  /// The answer to `request`. Raises a `Failure` when there is none or it is a refusal, and when a
  /// signal ends the wait.
  IPPResponse::Pointer ask(IPPRequest::Pointer request, const URL& target);
  /// The same, but null when the server has nothing of the kind, client-error-not-found: the way of
  /// print servers to say that a list is empty.
  IPPResponse::Pointer askForAny(IPPRequest::Pointer request, const URL& target);
  /// As `ask`, but lets `Interrupted` pass, for those who have to tidy up.
  IPPResponse::Pointer askUnlessInterrupted(IPPRequest::Pointer request, const URL& target);

  /// Has all further questions give up after `seconds` without an octet, if not sooner.
  void hurry(double seconds);

  /// For the time between two questions.
  [[nodiscard]] Waiting& waiting() noexcept { return waiting_; }

 private:
  double timeout_;
  Progress progress_{true};
  Waiting waiting_{progress_};
};

}  // namespace platen::tool
