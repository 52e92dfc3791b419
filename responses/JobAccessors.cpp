// SPDX-License-Identifier: Apache-2.0

/// What a response says of a job.

#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPResponse.h"

namespace platen::inline v0 {

std::optional<URL> IPPResponse::jobURI() const {
  return urlIn(attributeValueForKey(kIPPJobUriAttributeName));
}

std::optional<URL> IPPResponse::jobPrinterURI() const {
  return urlIn(attributeValueForKey(kIPPJobPrinterUriAttributeName));
}

std::optional<URL> IPPResponse::jobMoreInfoURI() const {
  return urlIn(attributeValueForKey(kIPPJobMoreInfoAttributeName));
}

std::optional<std::int32_t> IPPResponse::jobId() const {
  return integerIn(attributeValueForKey(kIPPJobIdAttributeName));
}

RawValue IPPResponse::jobUUID() const {
  return urlOrStringIn(attributeValueForKey(kIPPJobUUIDAttributeName));
}

std::optional<std::string> IPPResponse::jobName() const {
  return stringIn(attributeValueForKey(kIPPJobNameAttributeName));
}

std::optional<std::int32_t> IPPResponse::jobState() const {
  return integerIn(attributeValueForKey(kIPPJobStateAttributeName));
}

std::optional<std::string> IPPResponse::jobStateReason() const {
  return firstStringIn(attributeValueForKey(kIPPJobStateReasonsAttributeName));
}

std::optional<std::string> IPPResponse::jobPrinterStateMessage() const {
  return stringIn(attributeValueForKey(kIPPJobPrinterStateMessageAttributeName));
}

std::optional<std::int32_t> IPPResponse::jobCompletedMediaSheetsCount() const {
  return integerIn(attributeValueForKey(kIPPJobMediaSheetsCompletedAttributeName));
}

std::optional<std::int32_t> IPPResponse::jobMediaProgress() const {
  return integerIn(attributeValueForKey(kIPPJobMediaProgressAttributeName));
}

std::optional<std::int32_t> IPPResponse::jobPriority() const {
  return integerIn(attributeValueForKey(kIPPJobPriorityAttributeName));
}

std::optional<std::string> IPPResponse::jobOriginatingUserName() const {
  return stringIn(attributeValueForKey(kIPPJobOriginatingUserNameAttributeName));
}

std::optional<std::string> IPPResponse::jobOriginatingHostName() const {
  return stringIn(attributeValueForKey(kIPPJobOriginatingHostNameAttributeName));
}

namespace {

// The epoch stands for a time that is not known, by design: dates compare without a special case.
Date instantIn(const RawValue& object) {
  return Date(std::chrono::seconds(integerIn(object).value_or(0)));
}

}  // namespace

Date IPPResponse::jobTimeCreation() const {
  return instantIn(attributeValueForKey(kIPPTimeAtCreationAttributeName));
}

Date IPPResponse::jobTimeProcessing() const {
  return instantIn(attributeValueForKey(kIPPTimeAtProcessingAttributeName));
}

Date IPPResponse::jobTimeCompleted() const {
  return instantIn(attributeValueForKey(kIPPTimeAtCompletedAttributeName));
}

}  // namespace platen::inline v0
