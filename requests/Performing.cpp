// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPConnection.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::inline v0 {

std::shared_ptr<IPPResponse> IPPRequest::performOn(const URL& target,
                                                   std::shared_ptr<const Error>* error) {
  return performOn(target, nullptr, nullptr, error);
}

std::shared_ptr<IPPResponse> IPPRequest::performOn(const URL& target, std::nullptr_t,
                                                   std::shared_ptr<const Error>* error) {
  return performOn(target, nullptr, nullptr, error);
}

std::shared_ptr<IPPResponse> IPPRequest::performOn(const URL& target,
                                                   const std::shared_ptr<InputStream>& dataStream,
                                                   std::shared_ptr<const Error>* error) {
  return performOn(target, dataStream, nullptr, error);
}

std::shared_ptr<IPPResponse> IPPRequest::performOn(
    const URL& target, const std::shared_ptr<OutputStream>& returningDataStream,
    std::shared_ptr<const Error>* error) {
  return performOn(target, nullptr, returningDataStream, error);
}

std::shared_ptr<IPPResponse> IPPRequest::performOn(
    const URL& target, const std::shared_ptr<InputStream>& dataStream,
    const std::shared_ptr<OutputStream>& returningDataStream, std::shared_ptr<const Error>* error) {
  return IPPConnection::performRequest(*this, target, dataStream, returningDataStream, error);
}

}  // namespace platen::inline v0
