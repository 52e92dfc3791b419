// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPRequest.h"
#include "requests/OperationTable.h"

namespace platen::inline v0 {

IPPRequest::Pointer IPPRequest::printerAttributesRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPGetPrinterAttributesOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerJobsRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPGetJobsOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerCreateSubscriptionRequest(
    const URL& printer, std::span<const std::string> events) {
  Pointer request = _requestWithIdPrinterURI(kIPPCreatePrinterSubscriptionOperationId, printer);
  request->setNotifyEvents(events);
  return request;
}

IPPRequest::Pointer IPPRequest::printerAvailableSubscriptionsRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPGetSubscriptionsOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerPauseRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPPausePrinterOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerResumeRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPResumePrinterOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerPurgeJobsRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kIPPPurgeJobsOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerSetDefaultRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kCUPSSetDefaultOperationId, printer);
}

IPPRequest::Pointer IPPRequest::printerAddModifyQueueRequest(const URL& printer) {
  return _requestWithIdPrinterURI(kCUPSAddModifyPrinterOperationId, printer);
}

// Names no user, by design: taking a queue away is for whom the server has authenticated, which a
// name that anybody may write into a request does not tell.
IPPRequest::Pointer IPPRequest::printerRemoveQueueRequest(const URL& printer) {
  Pointer request = requestWithId(kCUPSDeletePrinterOperationId);
  request->setPrinterURI(printer);
  return request;
}

}  // namespace platen::inline v0
