// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPResponse.h"

#include "model/TypedValues.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPConstants.h"
#include "platform/KeyValueProperties.h"
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

std::optional<std::string> IPPResponse::statusMessage() const {
  return stringIn(attributeValueForKey(kIPPStatusMessageAttributeName));
}

std::optional<std::string> IPPResponse::attributesCharset() const {
  return stringIn(attributeValueForKey(kIPPAttributesCharsetAttributeName));
}

std::optional<std::string> IPPResponse::attributesLanguage() const {
  return stringIn(attributeValueForKey(kIPPAttributesNaturalLanguageAttributeName));
}

std::string IPPResponse::description() const {
  return std::string(statusDescription().value_or("(null)")) + " = " + IPPMessage::description();
}

namespace {
constinit const IPPCodableClass kCodableClass("IPPResponse",
                                              [](IPPCoder& coder) -> IPPCoder::Object {
                                                return IPPResponse::initWithCoder(coder);
                                              });
const IPPCodableRegistration registration(kCodableClass);
}  // namespace

std::string_view IPPResponse::className() const noexcept { return kCodableClass.className(); }

std::shared_ptr<IPPMessage> IPPResponse::makeEmptyCopy() const {
  return std::make_shared<IPPResponse>(0, 0);
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPResponse::statusCode>("statusCode"),
    property<&IPPResponse::statusDescription>("statusDescription"),
    property<&IPPResponse::successfulOk>("successfulOk"),
    property<&IPPResponse::clientError>("clientError"),
    property<&IPPResponse::serverError>("serverError"),
    property<&IPPResponse::allowsRequestResubmission>("allowsRequestResubmission"),
    property<&IPPResponse::status>("status"),
    property<&IPPResponse::statusMessage>("statusMessage"),
    property<&IPPResponse::attributesCharset>("attributesCharset"),
    property<&IPPResponse::attributesLanguage>("attributesLanguage"),
    property<&IPPResponse::jobURI>("jobURI"),
    property<&IPPResponse::jobPrinterURI>("jobPrinterURI"),
    property<&IPPResponse::jobMoreInfoURI>("jobMoreInfoURI"),
    property<&IPPResponse::jobId>("jobId"),
    property<&IPPResponse::jobUUID>("jobUUID"),
    property<&IPPResponse::jobName>("jobName"),
    property<&IPPResponse::jobState>("jobState"),
    property<&IPPResponse::jobStateReason>("jobStateReason"),
    property<&IPPResponse::jobPrinterStateMessage>("jobPrinterStateMessage"),
    property<&IPPResponse::jobCompletedMediaSheetsCount>("jobCompletedMediaSheetsCount"),
    property<&IPPResponse::jobMediaProgress>("jobMediaProgress"),
    property<&IPPResponse::jobPriority>("jobPriority"),
    property<&IPPResponse::jobOriginatingUserName>("jobOriginatingUserName"),
    property<&IPPResponse::jobOriginatingHostName>("jobOriginatingHostName"),
    property<&IPPResponse::jobTimeCreation>("jobTimeCreation"),
    property<&IPPResponse::jobTimeProcessing>("jobTimeProcessing"),
    property<&IPPResponse::jobTimeCompleted>("jobTimeCompleted"),
    property<&IPPResponse::printerURI>("printerURI"),
    property<&IPPResponse::printerState>("printerState"),
    property<&IPPResponse::printerStateMessage>("printerStateMessage"),
    property<&IPPResponse::printerStateReasons>("printerStateReasons"),
    property<&IPPResponse::isAcceptingJobs>("isAcceptingJobs"),
    property<&IPPResponse::printerAttributes>("printerAttributes"),
    property<&IPPResponse::isPrintQueueRemote>("isPrintQueueRemote"),
    property<&IPPResponse::isPrintQueueLocal>("isPrintQueueLocal"),
    property<&IPPResponse::isPrintQueueColor>("isPrintQueueColor"),
    property<&IPPResponse::isPrintQueueGrayscale>("isPrintQueueGrayscale"),
    property<&IPPResponse::canPrintQueueDuplex>("canPrintQueueDuplex"),
    property<&IPPResponse::canPrintQueueStaple>("canPrintQueueStaple"),
    property<&IPPResponse::canPrintQueueCollate>("canPrintQueueCollate"),
    property<&IPPResponse::isPrintQueueRequiringAuthentication>(
        "isPrintQueueRequiringAuthentication"),
    property<&IPPResponse::isPrintQueueNotShared>("isPrintQueueNotShared"),
    property<&IPPResponse::isPrintQueueDefault>("isPrintQueueDefault"),
    property<&IPPResponse::canPrintQueuePunch>("canPrintQueuePunch"),
    property<&IPPResponse::canPrintQueueCover>("canPrintQueueCover"),
    property<&IPPResponse::canPrintQueueBind>("canPrintQueueBind"),
    property<&IPPResponse::canPrintQueueSort>("canPrintQueueSort"),
    property<&IPPResponse::subscriptionId>("subscriptionId"),
    property<&IPPResponse::notifySubscriptionId>("notifySubscriptionId"),
    property<&IPPResponse::jobSubscriptionId>("jobSubscriptionId"),
    property<&IPPResponse::notifyJobId>("notifyJobId"),
    property<&IPPResponse::notifyPrinterURI>("notifyPrinterURI"),
    property<&IPPResponse::notifyRecipientURI>("notifyRecipientURI"),
    property<&IPPResponse::notifySubscriberName>("notifySubscriberName"),
    property<&IPPResponse::notifyLeaseDuration>("notifyLeaseDuration"),
    property<&IPPResponse::notifyEvents>("notifyEvents"),
    property<&IPPResponse::notifyTimeInterval>("notifyTimeInterval"),
    property<&IPPResponse::notifyGetInternal>("notifyGetInternal"),
    property<&IPPResponse::availablePrintQueues>("availablePrintQueues"),
    property<&IPPResponse::availableDevices>("availableDevices"),
    property<&IPPResponse::availableJobs>("availableJobs"),
    property<&IPPResponse::availableSubscriptions>("availableSubscriptions"),
    property<&IPPResponse::jobAvailableSubscriptions>("jobAvailableSubscriptions"),
    property<&IPPResponse::localPrintQueues>("localPrintQueues"),
    property<&IPPResponse::remotePrintQueues>("remotePrintQueues"),
    property<&IPPResponse::colorPrintQueues>("colorPrintQueues"),
    property<&IPPResponse::grayscalePrintQueues>("grayscalePrintQueues"),
    property<&IPPResponse::requiringAuthenticationPrintQueues>(
        "requiringAuthenticationPrintQueues"),
    property<&IPPResponse::defaultPrintQueue>("defaultPrintQueue"),
};

}  // namespace

const KeyValueProperties& IPPResponse::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPMessage::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
