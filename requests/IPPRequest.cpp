// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPRequest.h"

#include <algorithm>
#include <cctype>

#include "platen/HTTP.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPConstants.h"
#include "platform/KeyValueProperties.h"
#include "platform/UserEnvironment.h"
#include "requests/OperationTable.h"

namespace platen::inline v0 {

IPPRequest::IPPRequest()
    : IPPMessage(0, 0),
      timeoutInterval_(kDefaultTimeout),
      maximumResponseLength_(kHTTPDefaultMaximumBodyLength) {}

IPPRequest::IPPRequest(std::int32_t operationId)
    : IPPMessage(operationId, 1),
      timeoutInterval_(kDefaultTimeout),
      maximumResponseLength_(kHTTPDefaultMaximumBodyLength) {
  addDefaultRequestAttributes();
}

IPPRequest::~IPPRequest() = default;

IPPRequest::Pointer IPPRequest::requestWithId(std::int32_t operationId) {
  return std::make_shared<IPPRequest>(operationId);
}

IPPRequest::Pointer IPPRequest::initWithDataRepresentation(Bytes data) {
  auto request = std::make_shared<IPPRequest>(ReadingKey());
  return request->readFromData(data) ? request : nullptr;
}

IPPRequest::Pointer IPPRequest::initWithStream(const std::shared_ptr<InputStream>& stream) {
  auto request = std::make_shared<IPPRequest>(ReadingKey());
  return request->readFromStream(stream) ? request : nullptr;
}

IPPRequest::Pointer IPPRequest::initWithFileHandle(int descriptor) {
  auto request = std::make_shared<IPPRequest>(ReadingKey());
  return request->readFromFileHandle(descriptor) ? request : nullptr;
}

IPPRequest::Pointer IPPRequest::initWithCoder(IPPCoder& coder) {
  auto request = std::make_shared<IPPRequest>(ReadingKey());
  return request->readFrom(coder) ? request : nullptr;
}

IPPRequest::Pointer IPPRequest::_requestWithIdJobURI(std::int32_t operationId, const URL& job) {
  Pointer request = requestWithId(operationId);
  request->setJobURI(job);
  request->addRequestingUserNameAttribute();
  return request;
}

IPPRequest::Pointer IPPRequest::_requestWithIdPrinterURI(std::int32_t operationId,
                                                         const URL& printer) {
  Pointer request = requestWithId(operationId);
  request->setPrinterURI(printer);
  request->addRequestingUserNameAttribute();
  return request;
}

const std::map<std::int32_t, std::string_view>& IPPRequest::operationIdToNameSpec() {
  return platen::operationIdToNameSpec();
}

std::string_view IPPRequest::operationName(std::int32_t operationId) noexcept {
  return operationNameForId(operationId).value_or(kUnknownOperationName);
}

std::string_view IPPRequest::ippOperationCodename() const noexcept {
  return operationName(ippOperationId());
}

std::string IPPRequest::currentLanguageTag() const {
  const LocaleParts locale = componentsOf(currentLocaleIdentifier());
  std::string tag = locale.language + (locale.country.empty() ? "" : "-") + locale.country;
  std::transform(tag.begin(), tag.end(), tag.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? letter | 0x20 : letter;
  });
  return tag;
}

IPPMessage::Groups IPPRequest::sortedGroupsForIPPCoding() const {
  Groups sorted = ippGroups();
  std::stable_sort(sorted.begin(), sorted.end(), [](const Group& left, const Group& right) {
    return left->ippTag() < right->ippTag();
  });
  return sorted;
}

std::string IPPRequest::description() const {
  return std::string(ippOperationCodename()) + " = " + IPPMessage::description();
}

namespace {
constinit const IPPCodableClass kCodableClass("IPPRequest",
                                              [](IPPCoder& coder) -> IPPCoder::Object {
                                                return IPPRequest::initWithCoder(coder);
                                              });
const IPPCodableRegistration registration(kCodableClass);
}  // namespace

std::string_view IPPRequest::className() const noexcept { return kCodableClass.className(); }

std::shared_ptr<IPPMessage> IPPRequest::makeEmptyCopy() const {
  auto copy = std::make_shared<IPPRequest>(ReadingKey());
  copy->lookedUp_ = {operationGroup_ != nullptr, subscriptionGroup_ != nullptr,
                     jobGroup_ != nullptr};
  copy->timeoutInterval_ = timeoutInterval_;
  copy->maximumResponseLength_ = maximumResponseLength_;
  return copy;
}

// A request that was read looks all its groups up; a copy only those that the original had, as it
// would otherwise adopt a group that the original did not call its own.
void IPPRequest::awakeAfterReading() {
  operationGroup_ = lookedUp_.operation ? IPPMessage::operationGroup() : nullptr;
  subscriptionGroup_ = lookedUp_.subscription ? IPPMessage::subscriptionGroup() : nullptr;
  const Groups jobs = lookedUp_.job ? jobGroups() : Groups();
  jobGroup_ = jobs.empty() ? nullptr : jobs.front();
}

namespace {

constexpr KeyValueProperty<KeyValueAccess> kProperties[] = {
    property<&IPPRequest::jobURI>("jobURI"),
    property<&IPPRequest::subscriptionId>("subscriptionId"),
    property<&IPPRequest::notifyEvents>("notifyEvents"),
    property<&IPPRequest::printerURI>("printerURI"),
    property<&IPPRequest::deviceURI>("deviceURI"),
    property<&IPPRequest::printerIsAcceptingJobs>("printerIsAcceptingJobs"),
    property<&IPPRequest::printerInfo>("printerInfo"),
    property<&IPPRequest::printerLocation>("printerLocation"),
    property<&IPPRequest::printerState>("printerState"),
    property<&IPPRequest::printerStateMessage>("printerStateMessage"),
    property<&IPPRequest::allowedUserNames>("allowedUserNames"),
    property<&IPPRequest::deniedUserNames>("deniedUserNames"),
    property<&IPPRequest::ippOperationId>("ippOperationId"),
    property<&IPPRequest::ippOperationCodename>("ippOperationCodename"),
    property<&IPPRequest::currentLanguageTag>("currentLanguageTag"),
    property<&IPPRequest::isInProgress>("isInProgress"),
    property<&IPPRequest::timeoutInterval>("timeoutInterval"),
    property<&IPPRequest::maximumResponseLength>("maximumResponseLength"),
};

}  // namespace

const KeyValueProperties& IPPRequest::_keyValueProperties() const noexcept {
  static const KeyValueProperties properties{&IPPMessage::_keyValueProperties(), kProperties};
  return properties;
}

}  // namespace platen::inline v0
