// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// One request and its answer.

#include <memory>
#include <string>

#include "Waiting.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::tool {

/// The URI of a printer as it stands on the command line. Raises a `Failure` unless it is an ipp or
/// http URI with a host that fits into a request; ipps and https are refused because the connection
/// would not be encrypted.
URL targetURI(const std::string& text);

/// One request on its way on this thread's run loop, which has to be turned for it to get on. It is
/// cancelled when it goes before its end.
///
/// Threads: used on one thread only.
class Exchange final : public IPPRequestDelegate {
  struct Key {};

 public:
  /// Sends the request, followed by the document if there is one.
  static std::shared_ptr<Exchange> start(IPPRequest::Pointer request, const URL& target,
                                         std::shared_ptr<InputStream> document = nullptr);
  /// Of use to `start` only.
  Exchange(Key key, IPPRequest::Pointer request, URL target);
  ~Exchange() override;

  [[nodiscard]] bool isOver() const noexcept { return isOver_; }
  /// What came, once it is over. Raises a `Failure` when nothing did, when it is no IPP message, or
  /// when its status is not a success.
  [[nodiscard]] IPPResponse::Pointer answer() const;

  // --- What the request says --------------------------------------------------------------------

  std::shared_ptr<InputStream> dataStreamForRequest(IPPRequest& request) override;
  void requestDidReceiveResponse(IPPRequest& request, const std::shared_ptr<IPPResponse>& response,
                                 const std::shared_ptr<const Error>& error) override;

 private:
  IPPRequest::Pointer request_;
  URL target_;
  std::shared_ptr<InputStream> document_;
  IPPResponse::Pointer answer_;
  std::shared_ptr<const Error> error_;
  bool isOver_ = false;
};

/// Sends the request and waits for its `Exchange::answer`; raises `Interrupted` at a signal.
IPPResponse::Pointer answerTo(IPPRequest::Pointer request, const URL& target, Waiting& waiting);

}  // namespace platen::tool
