// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPResponse.h"

#include "platen/IPPConstants.h"
#include "platform/UserEnvironment.h"
#include "responses/StatusTable.h"

namespace platen::inline v0 {

IPPResponse::IPPResponse(std::int32_t statusCode, std::int32_t requestId, Groups groups)
    : IPPMessage(statusCode, requestId, std::move(groups)) {}

IPPResponse::~IPPResponse() = default;

IPPResponse::Pointer IPPResponse::initWithDataRepresentation(Bytes data) {
  auto response = std::make_shared<IPPResponse>(0, 0);
  return response->readFromData(data) ? response : nullptr;
}

IPPResponse::Pointer IPPResponse::initWithStream(const std::shared_ptr<InputStream>& stream) {
  auto response = std::make_shared<IPPResponse>(0, 0);
  return response->readFromStream(stream) ? response : nullptr;
}

IPPResponse::Pointer IPPResponse::initWithFileHandle(int descriptor) {
  auto response = std::make_shared<IPPResponse>(0, 0);
  return response->readFromFileHandle(descriptor) ? response : nullptr;
}

IPPResponse::Pointer IPPResponse::initWithCoder(IPPCoder& coder) {
  auto response = std::make_shared<IPPResponse>(0, 0);
  return response->readFrom(coder) ? response : nullptr;
}

namespace {

void addStatusMessage(const IPPResponse& response, std::string_view message) {
  response.operationGroup()->addAttribute(IPPAttribute::attributeWithValue(
      IPPValue::textWithoutLanguage(message), kIPPStatusMessageAttributeName));
}

}  // namespace

IPPResponse::Pointer IPPResponse::initWithStatusCode(std::int32_t statusCode) {
  auto group = IPPAttributeGroup::operationGroup();
  group->addAttribute(IPPAttribute::attributeWithValue(IPPValue::charset("utf-8"),
                                                       kIPPAttributesCharsetAttributeName));
  group->addAttribute(
      IPPAttribute::attributeWithValue(IPPValue::naturalLanguage(currentLocaleIdentifier()),
                                       kIPPAttributesNaturalLanguageAttributeName));
  return std::make_shared<IPPResponse>(statusCode, 1, Groups{std::move(group)});
}

IPPResponse::Pointer IPPResponse::responseWithStatusCode(std::int32_t statusCode,
                                                         std::optional<std::string_view> message) {
  Pointer response = initWithStatusCode(statusCode);
  if (message) {
    addStatusMessage(*response, *message);
  }
  return response;
}

IPPResponse::Pointer IPPResponse::responseForRequest(const IPPRequest& request) {
  const auto charset = request.attributeForKey(kIPPAttributesCharsetAttributeName);
  const auto language = request.attributeForKey(kIPPAttributesNaturalLanguageAttributeName);
  if (charset == nullptr || language == nullptr) {
    return responseWithStatusCode(kClientErrorBadRequestStatusCode, "");
  }
  auto group = IPPAttributeGroup::operationGroup();
  group->addAttributesFromArray({charset, language});
  auto response = std::make_shared<IPPResponse>(kSuccessfulOkStatusCode, request.requestId(),
                                                Groups{std::move(group)});
  addStatusMessage(*response, "");
  return response;
}

const std::map<std::int32_t, std::string_view>& IPPResponse::ippStatusToNameSpec() {
  return platen::ippStatusToNameSpec();
}

std::optional<std::string_view> IPPResponse::statusDescriptionForStatusCode(
    std::int32_t statusCode) noexcept {
  return statusNameForCode(statusCode);
}

std::optional<std::string_view> IPPResponse::statusDescription() const noexcept {
  return statusDescriptionForStatusCode(statusCode());
}

bool IPPResponse::successfulOk() const noexcept {
  return statusDescription().value_or("").starts_with(kIPPStatusSuccess);
}

bool IPPResponse::clientError() const noexcept {
  return statusDescription().value_or("").starts_with(kIPPStatusClientErrorPrefix);
}

bool IPPResponse::serverError() const noexcept {
  return statusDescription().value_or("").starts_with(kIPPStatusServerErrorPrefix);
}

bool IPPResponse::allowsRequestResubmission() const noexcept {
  return statusAllowsResubmission(statusCode());
}

namespace {

std::optional<std::string> stringNamed(const IPPMessage& message, std::string_view name) {
  const RawValue value = message.attributeValueForKey(name);
  return value.isString() ? std::optional(value.asString()) : std::nullopt;
}

}  // namespace

std::optional<std::string> IPPResponse::statusMessage() const {
  return stringNamed(*this, kIPPStatusMessageAttributeName);
}

std::optional<std::string> IPPResponse::attributesCharset() const {
  return stringNamed(*this, kIPPAttributesCharsetAttributeName);
}

std::optional<std::string> IPPResponse::attributesLanguage() const {
  return stringNamed(*this, kIPPAttributesNaturalLanguageAttributeName);
}

std::string IPPResponse::description() const {
  return std::string(statusDescription().value_or("(null)")) + " = " + IPPMessage::description();
}

std::string_view IPPResponse::className() const noexcept { return "IPPResponse"; }

std::shared_ptr<IPPMessage> IPPResponse::makeEmptyCopy() const {
  return std::make_shared<IPPResponse>(0, 0);
}

}  // namespace platen::inline v0
