// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"
#include "requests/OperationTable.h"
#include "requests/URLAttribute.h"

namespace platen::inline v0 {

IPPRequest::Pointer IPPRequest::printerAttributesRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPGetPrinterAttributesOperationId, printer);
}

void IPPRequest::setPrinterURI(const URL& printer) {
  addOperationValue(IPPValue::uri(printer), kIPPPrinterUriAttributeName);
}

std::optional<URL> IPPRequest::printerURI() const {
  return urlNamed(*this, kIPPPrinterUriAttributeName);
}

}  // namespace platen::inline v0
