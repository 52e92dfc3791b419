// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <set>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platen/IPPConstants.h"

namespace platen {
namespace {

/// A constant beside the text that it has to hold.
struct Spelling {
  std::string_view constant;
  std::string_view text;
};

void expectSpellings(const std::vector<Spelling>& spellings) {
  std::set<std::string_view> texts;
  for (const Spelling& spelling : spellings) {
    EXPECT_EQ(spelling.constant, spelling.text);
    EXPECT_TRUE(texts.insert(spelling.text).second) << spelling.text << " is listed twice";
  }
}

TEST(IPPConstants, SpellsEverySyntaxName) {
  expectSpellings({
      {kIPPUnsupportedSyntaxName, "unsupported"},
      {kIPPUnknownSyntaxName, "unknown"},
      {kIPPNoValueSyntaxName, "noValue"},
      {kIPPNotSettableSyntaxName, "notSettable"},
      {kIPPAdminDefineSyntaxName, "adminDefine"},
      {kIPPIntegerSyntaxName, "integer"},
      {kIPPBooleanSyntaxName, "boolean"},
      {kIPPEnumSyntaxName, "enum"},
      {kIPPOctetStringSyntaxName, "octetString"},
      {kIPPDateTimeSyntaxName, "dateTime"},
      {kIPPResolutionSyntaxName, "resolution"},
      {kIPPRangeOfIntegerSyntaxName, "rangeOfInteger"},
      {kIPPDictionaryBeginSyntaxName, "begCollection"},
      {kIPPTextWithLanguageSyntaxName, "textWithLanguage"},
      {kIPPNameWithLanguageSyntaxName, "nameWithLanguage"},
      {kIPPDictionaryEndSyntaxName, "endCollection"},
      {kIPPTextWithoutLanguageSyntaxName, "textWithoutLanguage"},
      {kIPPNameWithoutLanguageSyntaxName, "nameWithoutLanguage"},
      {kIPPKeywordSyntaxName, "keyword"},
      {kIPPUriSyntaxName, "uri"},
      {kIPPUriSchemeSyntaxName, "uriScheme"},
      {kIPPCharsetSyntaxName, "charset"},
      {kIPPNaturalLanguageSyntaxName, "naturalLanguage"},
      {kIPPMimeMediaSyntaxName, "mimeMediaName"},
      {kIPPMemberAttrNameSyntaxName, "memberAttrName"},
  });
}

TEST(IPPConstants, SpellsEveryGroupName) {
  expectSpellings({
      {kIPPOperationGroupName, "operation-attributes-tag"},
      {kIPPJobGroupName, "job-attributes-tag"},
      {kIPPEndOfAttributesGroupName, "end-of-attributes-tag"},
      {kIPPPrinterGroupName, "printer-attributes-tag"},
      {kIPPUnsupportedAttributesGroupName, "unsupported-attributes-tag"},
      {kIPPSubscriptionGroupName, "subscription-attributes-tag"},
      {kIPPNotificationEventGroupName, "event-notification-attributes-tag"},
  });
}

TEST(IPPConstants, SpellsEveryAttributeName) {
  expectSpellings({
      {kIPPAttributesCharsetAttributeName, "attributes-charset"},
      {kIPPAttributesNaturalLanguageAttributeName, "attributes-natural-language"},
      {kIPPPrinterUriAttributeName, "printer-uri"},
      {kIPPJobUriAttributeName, "job-uri"},
      {kIPPRequestingUserNameAttributeName, "requesting-user-name"},
      {kIPPRequestedAttributesAttributeName, "requested-attributes"},
      {kIPPStatusMessageAttributeName, "status-message"},
      {kIPPJobIdAttributeName, "job-id"},
      {kIPPJobUUIDAttributeName, "job-uuid"},
      {kIPPJobNameAttributeName, "job-name"},
      {kIPPJobPrinterUriAttributeName, "job-printer-uri"},
      {kIPPJobMoreInfoAttributeName, "job-more-info"},
      {kIPPJobStateAttributeName, "job-state"},
      {kIPPJobStateReasonsAttributeName, "job-state-reasons"},
      {kIPPJobPrinterStateMessageAttributeName, "job-printer-state-message"},
      {kIPPJobMediaSheetsCompletedAttributeName, "job-media-sheets-completed"},
      {kIPPJobMediaProgressAttributeName, "job-media-progress"},
      {kIPPJobPriorityAttributeName, "job-priority"},
      {kIPPJobOriginatingUserNameAttributeName, "job-originating-user-name"},
      {kIPPJobOriginatingHostNameAttributeName, "job-originating-host-name"},
      {kIPPTimeAtCreationAttributeName, "time-at-creation"},
      {kIPPTimeAtProcessingAttributeName, "time-at-processing"},
      {kIPPTimeAtCompletedAttributeName, "time-at-completed"},
      {kIPPCopiesAttributeName, "copies"},
      {kIPPSidesAttributeName, "sides"},
      {kIPPMediaAttributeName, "media"},
      {kIPPPrinterNameAttributeName, "printer-name"},
      {kIPPPrinterUriSupportedAttributeName, "printer-uri-supported"},
      {kIPPPrinterInfoAttributeName, "printer-info"},
      {kIPPPrinterLocationAttributeName, "printer-location"},
      {kIPPPrinterStateAttributeName, "printer-state"},
      {kIPPPrinterStateReasonsAttributeName, "printer-state-reasons"},
      {kIPPPrinterStateMessageAttributeName, "printer-state-message"},
      {kIPPPrinterIsAcceptingJobsAttributeName, "printer-is-accepting-jobs"},
      {kIPPPrinterIsSharedAttributeName, "printer-is-shared"},
      {kIPPPrinterTypeAttributeName, "printer-type"},
      {kIPPPrinterTypeMaskAttributeName, "printer-type-mask"},
      {kIPPRequestingUserNameAllowedAttributeName, "requesting-user-name-allowed"},
      {kIPPRequestingUserNameDeniedAttributeName, "requesting-user-name-denied"},
      {kIPPMediaDefaultAttributeName, "media-default"},
      {kIPPMediaSupportedAttributeName, "media-supported"},
      {kIPPPrinterFinishingsSuportedAttributeName, "finishings-supported"},
      {kIPPDeviceUriAttributeName, "device-uri"},
      {kIPPDeviceInfoAttributeName, "device-info"},
      {kIPPNotifyEventsAttributeName, "notify-events"},
      {kIPPNotifyPullMethodAttributeName, "notify-pull-method"},
      {kIPPNotifyRecipientUriAttributeName, "notify-recipient-uri"},
      {kIPPNotifyLeaseDurationAttributeName, "notify-lease-duration"},
      {kIPPNotifyTimeIntervalAttributeName, "notify-time-interval"},
      {kIPPNotifySubscriptionIdAttributeName, "notify-subscription-id"},
      {kIPPSubscriptionJobIdNotificationAttributeName, "notify-job-id"},
      {kIPPNotifyPrinterUriAttributeName, "notify-printer-uri"},
      {kIPPNotifySubscriberUserNameAttributeName, "notify-subscriber-user-name"},
      {kIPPNotifySubscriptionIdsAttributeName, "notify-subscription-ids"},
      {kIPPNotifyGetIntervalAttributeName, "notify-get-interval"},
  });
}

TEST(IPPConstants, SpellsTheTransportWords) {
  expectSpellings({
      {kHTTPMethodPost, "POST"},
      {kHTTPContentTypeField, "Content-Type"},
      {kIPPContentTypeValue, "application/ipp"},
      {kHTTPTransferEncodingField, "Transfer-Encoding"},
      {kIPPTransferEncodingValue, "chunked"},
      {kHTTPURLScheme, "http"},
      {kIPPURLScheme, "ipp"},
      {kIPPLocalhostName, "localhost"},
  });
}

TEST(IPPConstants, SpellsTheErrorDomainsAndKeysLikeTheirNames) {
  expectSpellings({
      {IPPErrorDomain, "IPPErrorDomain"},
      {IPPHTTPErrorDomain, "IPPHTTPErrorDomain"},
      {IPPErrorUnsupportedAttributeNames, "IPPErrorUnsupportedAttributeNames"},
      {IPPErrorUnknownAttributeValues, "IPPErrorUnknownAttributeValues"},
      {IPPErrorNoValueAttributes, "IPPErrorNoValueAttributes"},
      {IPPErrorNotSettableAttributes, "IPPErrorNotSettableAttributes"},
      {IPPErrorAdminDefineAttributes, "IPPErrorAdminDefineAttributes"},
      {IPPErrorUnknownReasonAttributes, "IPPErrorUnknownReasonAttributes"},
  });
}

TEST(IPPConstants, SpellsTheStatusPrefixes) {
  expectSpellings({
      {kIPPStatusClientErrorPrefix, "client-error"},
      {kIPPStatusServerErrorPrefix, "server-error"},
  });
}

TEST(IPPConstants, GivesADoubleOfSixtySecondsAsTheDefaultTimeout) {
  static_assert(std::is_same_v<decltype(kDefaultTimeout), const double>);
  EXPECT_EQ(kDefaultTimeout, 60.0);
}

TEST(IPPConstants, ExportsTwoVariablesThatAreZeroAndTheCallersToChange) {
  static_assert(std::is_same_v<decltype(IPP_DELIMETER_TAG), std::int32_t>);
  static_assert(std::is_same_v<decltype(IPP_RESOLUTUION_UNIT), std::int32_t>);
  EXPECT_EQ(IPP_DELIMETER_TAG, 0);
  EXPECT_EQ(IPP_RESOLUTUION_UNIT, 0);

  IPP_DELIMETER_TAG = -7;
  EXPECT_EQ(IPP_DELIMETER_TAG, -7);
  EXPECT_EQ(IPP_RESOLUTUION_UNIT, 0);
  IPP_DELIMETER_TAG = 0;
}

}  // namespace
}  // namespace platen
