// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platen/Data.h"
#include "platen/Error.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::test {

/// A print server that is asked things, and what it is expected to do. Every exchange goes into the
/// `OperationLog`. An expectation that fails throws std::runtime_error, which ends the test: what a
/// story goes on with must be there.
class AskedServer {
 public:
  /// What may go with a request.
  struct With {
    std::shared_ptr<InputStream> document;
    std::shared_ptr<OutputStream> output;
  };

  struct Answer {
    IPPResponse::Pointer response;
    std::shared_ptr<const Error> error;
  };

  AskedServer(std::string name, URL target) : name_(std::move(name)), target_(std::move(target)) {}

  /// Where requests are sent to.
  [[nodiscard]] const URL& target() const { return target_; }

  /// The answer, which is successful-ok and comes without an error.
  IPPResponse::Pointer does(const IPPRequest::Pointer& request) const;
  IPPResponse::Pointer does(const IPPRequest::Pointer& request, const With& with) const;

  /// The answer and its error, which is the status of that name; `why` says what the server has
  /// against the request.
  Answer answers(const IPPRequest::Pointer& request, std::string_view status,
                 const std::string& why, const With& with = {}) const;

  /// What goes with a request that has a document.
  static With document(const Data& octets) { return {InputStream::withData(octets), nullptr}; }

 private:
  Answer ask(IPPRequest& request, std::string_view expected, const std::string& why,
             const With& with) const;

  std::string name_;
  URL target_;
};

}  // namespace platen::test
