// SPDX-License-Identifier: Apache-2.0

/// What a request says of the queue that it makes or changes.

#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPRequest.h"

namespace platen::inline v0 {

namespace {

IPPValue::Pointer setOfNames(std::span<const std::string> names) {
  const RawValue::Array objects(names.begin(), names.end());
  return IPPValue::array(objects, kIPPNameWithoutLanguageSyntaxName);
}

}  // namespace

void IPPRequest::setPrinterURI(const URL& printer) {
  addOperationValue(IPPValue::uri(printer), kIPPPrinterUriAttributeName);
}

std::optional<URL> IPPRequest::printerURI() const {
  return urlIn(attributeValueForKey(kIPPPrinterUriAttributeName));
}

void IPPRequest::setDeviceURI(const URL& device) {
  addOperationValue(IPPValue::uri(device), kIPPDeviceUriAttributeName);
}

std::optional<URL> IPPRequest::deviceURI() const {
  return urlIn(attributeValueForKey(kIPPDeviceUriAttributeName));
}

void IPPRequest::setPrinterIsAcceptingJobs(bool isAccepting) {
  addOperationValue(IPPValue::boolean(isAccepting), kIPPPrinterIsAcceptingJobsAttributeName);
}

bool IPPRequest::printerIsAcceptingJobs() const {
  return booleanIn(attributeValueForKey(kIPPPrinterIsAcceptingJobsAttributeName)).value_or(false);
}

void IPPRequest::setPrinterInfo(std::string_view info) {
  addOperationValue(IPPValue::textWithoutLanguage(info), kIPPPrinterInfoAttributeName);
}

std::optional<std::string> IPPRequest::printerInfo() const {
  return stringIn(attributeValueForKey(kIPPPrinterInfoAttributeName));
}

void IPPRequest::setPrinterLocation(std::string_view location) {
  addOperationValue(IPPValue::textWithoutLanguage(location), kIPPPrinterLocationAttributeName);
}

std::optional<std::string> IPPRequest::printerLocation() const {
  return stringIn(attributeValueForKey(kIPPPrinterLocationAttributeName));
}

void IPPRequest::setPrinterState(std::int32_t state) {
  addOperationValue(IPPValue::enumeration(state), kIPPPrinterStateAttributeName);
}

std::optional<std::int32_t> IPPRequest::printerState() const {
  return integerIn(attributeValueForKey(kIPPPrinterStateAttributeName));
}

void IPPRequest::setPrinterStateMessage(std::string_view message) {
  addOperationValue(IPPValue::textWithoutLanguage(message), kIPPPrinterStateMessageAttributeName);
}

std::optional<std::string> IPPRequest::printerStateMessage() const {
  return stringIn(attributeValueForKey(kIPPPrinterStateMessageAttributeName));
}

void IPPRequest::setAllowedUserNames(std::span<const std::string> names) {
  addOperationValue(setOfNames(names), kIPPRequestingUserNameAllowedAttributeName);
}

std::optional<std::vector<std::string>> IPPRequest::allowedUserNames() const {
  return stringsIn(attributeValueForKey(kIPPRequestingUserNameAllowedAttributeName));
}

void IPPRequest::setDeniedUserNames(std::span<const std::string> names) {
  addOperationValue(setOfNames(names), kIPPRequestingUserNameDeniedAttributeName);
}

std::optional<std::vector<std::string>> IPPRequest::deniedUserNames() const {
  return stringsIn(attributeValueForKey(kIPPRequestingUserNameDeniedAttributeName));
}

void IPPRequest::setPrinterIsShared(bool isShared) {
  addOperationValue(IPPValue::booleanWithBool(isShared), kIPPPrinterIsSharedAttributeName);
}

}  // namespace platen::inline v0
