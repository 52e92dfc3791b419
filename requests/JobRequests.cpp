// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"
#include "requests/OperationTable.h"
#include "requests/URLAttribute.h"

namespace platen::inline v0 {

IPPRequest::Pointer IPPRequest::jobAttributesRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPGetJobAttributesOperationId, job);
}

IPPRequest::Pointer IPPRequest::jobPrintRequest(const URL& queue) {
  return _requestWithIdPrinterURI(kIPPPrintJobOperationId, queue);
}

void IPPRequest::setJobURI(const URL& job) {
  addOperationValue(IPPValue::uri(job), kIPPJobUriAttributeName);
}

std::optional<URL> IPPRequest::jobURI() const { return urlNamed(*this, kIPPJobUriAttributeName); }

}  // namespace platen::inline v0
