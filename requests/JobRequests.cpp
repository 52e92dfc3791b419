// SPDX-License-Identifier: Apache-2.0
#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPNumberValue.h"
#include "platen/IPPRequest.h"
#include "requests/OperationTable.h"

namespace platen::inline v0 {

IPPRequest::Pointer IPPRequest::jobAttributesRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPGetJobAttributesOperationId, job);
}

IPPRequest::Pointer IPPRequest::jobCreateRequest(const URL& queue) {
  return _requestWithIdPrinterURI(kIPPCreateJobOperationId, queue);
}

IPPRequest::Pointer IPPRequest::jobPrintRequest(const URL& queue) {
  return _requestWithIdPrinterURI(kIPPPrintJobOperationId, queue);
}

IPPRequest::Pointer IPPRequest::validateJobRequest(const URL& queue) {
  return _requestWithIdPrinterURI(kIPPValidateJobOperationId, queue);
}

IPPRequest::Pointer IPPRequest::jobCancelRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPCancelJobOperationId, job);
}

IPPRequest::Pointer IPPRequest::jobHoldRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPHoldJobOperationId, job);
}

IPPRequest::Pointer IPPRequest::jobReleaseRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPReleaseJobOperationId, job);
}

IPPRequest::Pointer IPPRequest::jobRestartRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPRestartJobOperationId, job);
}

IPPRequest::Pointer IPPRequest::jobMoveRequest(const URL& job, const URL& destination) {
  Pointer request = _requestWithIdJobURI(kCUPSMoveJobOperationId, job);
  request->addJobAttribute(
      IPPAttribute::attributeWithValue(IPPValue::uri(destination), kIPPJobPrinterUriAttributeName));
  return request;
}

IPPRequest::Pointer IPPRequest::jobAvailableSubscriptionsRequest(const URL& job) {
  return _requestWithIdJobURI(kIPPGetSubscriptionsOperationId, job);
}

IPPRequest::Pointer IPPRequest::_jobCreateSubscriptionRequest(std::optional<std::int32_t> jobId,
                                                              const URL& target,
                                                              std::span<const std::string> events) {
  Pointer request = _requestWithIdPrinterURI(kIPPCreateJobSubscriptionOperationId, target);
  request->setNotifyEvents(events);
  // An absent number is refused here, as every object that is no number.
  request->addSubscriptionValue(IPPInteger::descriptor._ippValue(RawValue(jobId)),
                                kIPPSubscriptionJobIdNotificationAttributeName);
  return request;
}

void IPPRequest::setJobURI(const URL& job) {
  addOperationValue(IPPValue::uri(job), kIPPJobUriAttributeName);
}

std::optional<URL> IPPRequest::jobURI() const {
  return urlIn(attributeValueForKey(kIPPJobUriAttributeName));
}

}  // namespace platen::inline v0
