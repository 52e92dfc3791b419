// SPDX-License-Identifier: Apache-2.0

/// Requests to the print server as a whole.

#include "model/PrinterType.h"
#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"
#include "platen/IPPURI.h"
#include "requests/OperationTable.h"

namespace platen::inline v0 {

namespace {

// A constant text: there always is one.
URL localServer() { return IPPURI::localServerURI().value(); }

}  // namespace

IPPRequest::Pointer IPPRequest::serverAvailablePrintersRequest() {
  return requestWithId(kCUPSGetPrintersOperationId);
}

IPPRequest::Pointer IPPRequest::serverAvailableDevicesRequest() {
  return requestWithId(kCUPSGetDevicesOperationId);
}

IPPRequest::Pointer IPPRequest::serverAvailableSubcsriptionsRequest() {
  return printerAvailableSubscriptionsRequest(localServer());
}

IPPRequest::Pointer IPPRequest::serverCreateSubscriptionRequest(
    std::span<const std::string> events) {
  return printerCreateSubscriptionRequest(localServer(), events);
}

IPPRequest::Pointer IPPRequest::serverAvailableJobsRequest() {
  return printerJobsRequest(localServer());
}

IPPRequest::Pointer IPPRequest::serverDefaultPrintQueueRequest() {
  return _requestWithIdPrinterURI(kCUPSGetDefaultOperationId, localServer());
}

IPPRequest::Pointer IPPRequest::_filteredPrintersRequest(std::uint32_t mask) {
  Pointer request = serverAvailablePrintersRequest();
  request->_addPrinterFilteringAttributes(mask);
  return request;
}

IPPRequest::Pointer IPPRequest::serverAvailableLocalPrintersRequest() {
  return _filteredPrintersRequest(kPrinterTypeNone);
}

IPPRequest::Pointer IPPRequest::serverAvailableRemotePrintersRequest() {
  return _filteredPrintersRequest(kPrinterTypeRemote);
}

IPPRequest::Pointer IPPRequest::serverAvailableColorPrintersRequest() {
  return _filteredPrintersRequest(kPrinterTypeColor);
}

IPPRequest::Pointer IPPRequest::serverAvailableGrayscalePrintersRequest() {
  return _filteredPrintersRequest(kPrinterTypeGrayscale);
}

IPPRequest::Pointer IPPRequest::serverAvailableNotSharedPrintersRequest() {
  return _filteredPrintersRequest(kPrinterTypeNotShared);
}

IPPRequest::Pointer IPPRequest::serverAvailablePrintersRequringAuthenticationRequest() {
  return _filteredPrintersRequest(kPrinterTypeAuthenticated);
}

// The type that is compared with stays 0 whatever the mask, by design: only the mask tells the
// filters apart.
void IPPRequest::_addPrinterFilteringAttributes(std::uint32_t mask) {
  addOperationValue(IPPValue::enumerationWithInt(0), kIPPPrinterTypeAttributeName);
  addOperationValue(IPPValue::enumeration(mask), kIPPPrinterTypeMaskAttributeName);
}

}  // namespace platen::inline v0
