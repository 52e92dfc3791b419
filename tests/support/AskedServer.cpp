// SPDX-License-Identifier: Apache-2.0
#include "tests/support/AskedServer.h"

#include <stdexcept>

#include "platen/IPPConstants.h"
#include "tests/support/OperationLog.h"

namespace platen::test {
namespace {

std::string shapeWith(const IPPRequest& request, const AskedServer::With& with) {
  const std::string shape = shapeOf(request);
  return with.document == nullptr ? shape : shape + (shape.empty() ? "" : "; ") + "document";
}

[[noreturn]] void fail(const IPPRequest& request, const std::string& what) {
  throw std::runtime_error(std::string(request.ippOperationCodename()) + " (" + shapeOf(request) +
                           "): " + what);
}

/// A refusal comes as response and error together, which say the same.
void checkError(const IPPRequest& request, const IPPResponse& response, const Error* error) {
  if (response.successfulOk() != (error == nullptr)) fail(request, "an error, or none, too many");
  if (error == nullptr) return;
  const auto name = IPPResponse::statusDescriptionForStatusCode(response.statusCode());
  if (error->domain() != IPPErrorDomain || error->code() != response.statusCode() ||
      error->localizedDescription() != name) {
    fail(request, "an error that is not the status: " + error->description());
  }
}

}  // namespace

AskedServer::Answer AskedServer::ask(IPPRequest& request, std::string_view expected,
                                     const std::string& why, const With& with) const {
  Answer answer;
  answer.response = request.performOn(target_, with.document, with.output, &answer.error);
  if (answer.response == nullptr) {
    fail(request, answer.error == nullptr ? "no answer that decodes" : answer.error->description());
  }
  if (answer.response->statusDescription() != expected) {
    fail(request, answer.response->description());
  }
  checkError(request, *answer.response, answer.error.get());
  OperationLog::shared().add({.operation = request.ippOperationId(),
                              .server = name_,
                              .isRefusal = !answer.response->successfulOk(),
                              .shape = shapeWith(request, with),
                              .status = std::string(expected),
                              .why = why});
  return answer;
}

IPPResponse::Pointer AskedServer::does(const IPPRequest::Pointer& request) const {
  return does(request, With{});
}

IPPResponse::Pointer AskedServer::does(const IPPRequest::Pointer& request, const With& with) const {
  return ask(*request, kIPPStatusSuccess, "", with).response;
}

AskedServer::Answer AskedServer::answers(const IPPRequest::Pointer& request,
                                         std::string_view status, const std::string& why,
                                         const With& with) const {
  return ask(*request, status, why, with);
}

}  // namespace platen::test
