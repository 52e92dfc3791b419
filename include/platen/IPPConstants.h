// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Every name that the Internet Printing Protocol and this library's interface spell out:
/// operations, status codes, value syntaxes, attribute groups, attributes, transport words and
/// error keys.
///
/// Threads: constants, readable from every thread at any time; only the two variables at the end
/// may change, and only by the application's own hand.

#include <cstdint>
#include <string_view>

#include "platen/Export.h"

namespace platen::inline v0 {

// ---- Operations
// Each name belongs to one operation-id (RFC 8011 §5.4.15), given in its comment.

/// 0x0002, RFC 8011 §4.2.1.
inline constexpr std::string_view kIPPPrintJobOperationName = "Print-Job";
/// 0x0003, RFC 8011 §4.2.2.
inline constexpr std::string_view kIPPPrintURIOperationName = "Print-URI";
/// 0x0004, RFC 8011 §4.2.3.
inline constexpr std::string_view kIPPValidateJobOperationName = "Validate-Job";
/// 0x0005, RFC 8011 §4.2.4.
inline constexpr std::string_view kIPPCreateJobOperationName = "Create-Job";
/// 0x0006, RFC 8011 §4.3.1.
inline constexpr std::string_view kIPPSendDocumentOperationName = "Send-Document";
/// 0x0007, RFC 8011 §4.3.2.
inline constexpr std::string_view kIPPSendURIOperationName = "Send-URI";
/// 0x0008, RFC 8011 §4.3.3.
inline constexpr std::string_view kIPPCancelJobOperationName = "Cancel-Job";
/// 0x0009, RFC 8011 §4.3.4.
inline constexpr std::string_view kIPPGetJobAttributesOperationName = "Get-Job-Attributes";
/// 0x000A, RFC 8011 §4.2.6.
inline constexpr std::string_view kIPPGetJobsOperationName = "Get-Jobs";
/// 0x000B, RFC 8011 §4.2.5.
inline constexpr std::string_view kIPPGetPrinterAttributesOperationName = "Get-Printer-Attributes";
/// 0x000C, RFC 8011 §4.3.5.
inline constexpr std::string_view kIPPHoldJobOperationName = "Hold-Job";
/// 0x000D, RFC 8011 §4.3.6.
inline constexpr std::string_view kIPPReleaseJobOperationName = "Release-Job";
/// 0x000E, RFC 8011 §4.3.7.
inline constexpr std::string_view kIPPRestartJobOperationName = "Restart-Job";
/// 0x0010, RFC 8011 §4.2.7.
inline constexpr std::string_view kIPPPausePrinterOperationName = "Pause-Printer";
/// 0x0011, RFC 8011 §4.2.8.
inline constexpr std::string_view kIPPResumePrinterOperationName = "Resume-Printer";
/// 0x0012, RFC 8011 §4.2.9.
inline constexpr std::string_view kIPPPurgeJobsOperationName = "Purge-Jobs";
/// 0x0014, RFC 3380 §4.2.
inline constexpr std::string_view kIPPSetJobAttributesOperationName = "Set-Job-Attributes";
/// 0x0016, RFC 3995 §11, which writes the name in the plural.
inline constexpr std::string_view kIPPCreatePrinterSubscriptionOperationName =
    "Create-Printer-Subscription";
/// 0x0017, RFC 3995 §11, which writes the name in the plural.
inline constexpr std::string_view kIPPCreateJobSubscriptionOperationName =
    "Create-Job-Subscription";
/// 0x0018, RFC 3995 §11.
inline constexpr std::string_view kIPPGetSubscriptionAttributesOperationName =
    "Get-Subscription-Attributes";
/// 0x0019, RFC 3995 §11.
inline constexpr std::string_view kIPPGetSubscriptionsOperationName = "Get-Subscriptions";
/// 0x001A, RFC 3995 §11.
inline constexpr std::string_view kIPPRenewSubscriptionOperationName = "Renew-Subscription";
/// 0x001B, RFC 3995 §11.
inline constexpr std::string_view kIPPCancelSubscriptionOperationName = "Cancel-Subscription";
/// 0x001C, RFC 3996 §5.
inline constexpr std::string_view kIPPGetNotificationsOperationName = "Get-Notifications";
/// 0x0022, RFC 3998 §3.
inline constexpr std::string_view kIPPEnablePrinterOperationName = "Enable-Printer";
/// 0x0023, RFC 3998 §3.
inline constexpr std::string_view kIPPDisablePrinterOperationName = "Disable-Printer";

// Extension operations of the CUPS print server; no RFC covers them.

/// 0x4001.
inline constexpr std::string_view kCUPSGetDefaultOperationName = "CUPS-Get-Default";
/// 0x4002.
inline constexpr std::string_view kCUPSGetPrintersOperationName = "CUPS-Get-Printers";
/// 0x4003.
inline constexpr std::string_view kCUPSAddModifyPrinterOperationName = "CUPS-Add-Modify-Printer";
/// 0x4004.
inline constexpr std::string_view kCUPSDeletePrinterOperationName = "CUPS-Delete-Printer";
/// 0x4005.
inline constexpr std::string_view kCUPSGetClassesOperationName = "CUPS-Get-Classes";
/// 0x4006.
inline constexpr std::string_view kCUPSAddModifyClassOperationName = "CUPS-Add-Modify-Class";
/// 0x4007.
inline constexpr std::string_view kCUPSDeleteClassOperationName = "CUPS-Delete-Class";
/// 0x4008.
inline constexpr std::string_view kCUPSAcceptJobsOperationName = "CUPS-Accept-Jobs";
/// 0x4009.
inline constexpr std::string_view kCUPSRejectJobsOperationName = "CUPS-Reject-Jobs";
/// 0x400A.
inline constexpr std::string_view kCUPSSetDefaultOperationName = "CUPS-Set-Default";
/// 0x400B.
inline constexpr std::string_view kCUPSGetDevicesOperationName = "CUPS-Get-Devices";
/// 0x400C.
inline constexpr std::string_view kCUPSGetPPDsOperationName = "CUPS-Get-PPDs";
/// 0x400D.
inline constexpr std::string_view kCUPSMoveJobOperationName = "CUPS-Move-Job";
/// 0x400E.
inline constexpr std::string_view kCUPSAuthenticateJobOperationName = "CUPS-Authenticate-Job";
/// 0x400F.
inline constexpr std::string_view kCUPSGetPPDOperationName = "CUPS-Get-PPD";

// ---- Status codes
// The names of status-code values (RFC 8011 §4.1.6.1, appendix B); the code is in the comment.

/// 0x0000.
inline constexpr std::string_view kIPPStatusSuccess = "successful-ok";
/// 0x0001.
inline constexpr std::string_view kIPPStatusSuccessIgnoringOrSubstitutedAttributes =
    "successful-ok-ignored-or-substituted-attributes";
/// 0x0002.
inline constexpr std::string_view kIPPStatusSuccessConflictingAttributes =
    "successful-ok-conflicting-attributes";
/// 0x0003, RFC 3995 §12.
inline constexpr std::string_view kIPPStatusSuccessIgnoredSubscriptions =
    "successful-ok-ignored-subscriptions";
/// 0x0004, from the drafts of RFC 3995.
inline constexpr std::string_view kIPPStatusSuccessIgnoredNotifications =
    "successful-ok-ignored-notifications";
/// 0x0005, RFC 3995 §12.
inline constexpr std::string_view kIPPStatusSuccessTooManyEvents = "successful-ok-too-many-events";
/// 0x0006, from the drafts of RFC 3995.
inline constexpr std::string_view kIPPStatusSuccessButCancelSubscription =
    "successful-ok-but-cancel-subscription";
/// 0x0007, RFC 3996.
inline constexpr std::string_view kIPPStatusSuccessEventsComplete = "successful-ok-events-complete";

// The request was at fault (RFC 8011 §B.1.4).

/// 0x0400.
inline constexpr std::string_view kIPPStatusClientErrorBadRequest = "client-error-bad-request";
/// 0x0401.
inline constexpr std::string_view kIPPStatusClientErrorForbidden = "client-error-forbidden";
/// 0x0402.
inline constexpr std::string_view kIPPStatusClientErrorNotAuthenticated =
    "client-error-not-authenticated";
/// 0x0403.
inline constexpr std::string_view kIPPStatusClientErrorNotAuthorized =
    "client-error-not-authorized";
/// 0x0404.
inline constexpr std::string_view kIPPStatusClientErrorNotPossible = "client-error-not-possible";
/// 0x0405.
inline constexpr std::string_view kIPPStatusClientErrorTimeout = "client-error-timeout";
/// 0x0406.
inline constexpr std::string_view kIPPStatusClientErrorNotFound = "client-error-not-found";
/// 0x0407.
inline constexpr std::string_view kIPPStatusClientErrorGone = "client-error-gone";
/// 0x0408.
inline constexpr std::string_view kIPPStatusClientErrorRequestEntityTooLarge =
    "client-error-request-entity-too-large";
/// 0x0409.
inline constexpr std::string_view kIPPStatusClientErrorRequestValueTooLong =
    "client-error-request-value-too-long";
/// 0x040A.
inline constexpr std::string_view kIPPStatusClientErrorDocumentFormatNotSupported =
    "client-error-document-format-not-supported";
/// 0x040B.
inline constexpr std::string_view kIPPStatusClientErrorAttributesOrValuesNotSupported =
    "client-error-attributes-or-values-not-supported";
/// 0x040C.
inline constexpr std::string_view kIPPStatusClientErrorURISchemeNotSupported =
    "client-error-uri-scheme-not-supported";
/// 0x040D.
inline constexpr std::string_view kIPPStatusClientErrorCharsetNotSupported =
    "client-error-charset-not-supported";
/// 0x040E.
inline constexpr std::string_view kIPPStatusClientErrorConflictingAttributes =
    "client-error-conflicting-attributes";
/// 0x040F.
inline constexpr std::string_view kIPPStatusClientErrorCompressionNotSupported =
    "client-error-compression-not-supported";
/// 0x0410.
inline constexpr std::string_view kIPPStatusClientErrorCompressionError =
    "client-error-compression-error";
/// 0x0411.
inline constexpr std::string_view kIPPStatusClientErrorDocumentFormatError =
    "client-error-document-format-error";
/// 0x0412.
inline constexpr std::string_view kIPPStatusClientErrorDocumentAccessError =
    "client-error-document-access-error";
/// 0x0413, RFC 3380.
inline constexpr std::string_view kIPPStatusClientErrorAttributesNotSettable =
    "client-error-attributes-not-settable";
/// 0x0414, RFC 3995 §12.
inline constexpr std::string_view kIPPStatusClientErrorIgnoredAllSubscriptions =
    "client-error-ignored-all-subscriptions";
/// 0x0415, RFC 3995 §12.
inline constexpr std::string_view kIPPStatusClientErrorTooManySubscriptions =
    "client-error-too-many-subscriptions";
/// 0x0416, from the drafts of RFC 3995.
inline constexpr std::string_view kIPPStatusClientErrorIgnoredAllNotifications =
    "client-error-ignored-all-notifications";
/// 0x0417, from a draft on print support files.
inline constexpr std::string_view kIPPStatusClientErrorPrintSupportFileNotFound =
    "client-error-print-support-file-not-found";

// The printer or the server was at fault (RFC 8011 §B.1.5).

/// 0x0500.
inline constexpr std::string_view kIPPStatusServerErrorInternalError =
    "server-error-internal-error";
/// 0x0501.
inline constexpr std::string_view kIPPStatusServerErrorOperationNotSupported =
    "server-error-operation-not-supported";
/// 0x0502.
inline constexpr std::string_view kIPPStatusServerErrorServiceUnavailable =
    "server-error-service-unavailable";
/// 0x0503.
inline constexpr std::string_view kIPPStatusServerErrorVersionNotSupported =
    "server-error-version-not-supported";
/// 0x0504.
inline constexpr std::string_view kIPPStatusServerErrorDeviceError = "server-error-device-error";
/// 0x0505.
inline constexpr std::string_view kIPPStatusServerErrorTemporaryError =
    "server-error-temporary-error";
/// 0x0506.
inline constexpr std::string_view kIPPStatusServerErrorNotAcceptingJobs =
    "server-error-not-accepting-jobs";
/// 0x0507.
inline constexpr std::string_view kIPPStatusServerErrorBusy = "server-error-busy";
/// 0x0508.
inline constexpr std::string_view kIPPStatusServerErrorJobCanceled = "server-error-job-canceled";
/// 0x0509.
inline constexpr std::string_view kIPPStatusServerErrorMultipleDocumentJobsNotSupported =
    "server-error-multiple-document-jobs-not-supported";
/// 0x050A, RFC 3998.
inline constexpr std::string_view kIPPStatusServerErrorPrinterIsDeactivated =
    "server-error-printer-is-deactivated";

// What the names of a class of status codes begin with.

/// Begins the name of every status that blames the request.
inline constexpr std::string_view kIPPStatusClientErrorPrefix = "client-error";
/// Begins the name of every status that blames the printer or the server.
inline constexpr std::string_view kIPPStatusServerErrorPrefix = "server-error";

// ---- Value syntaxes
// The name of each syntax; its value tag (RFC 8010 §3.5.2) is in the comment.

/// 0x10. Out-of-band: the attribute is not supported, RFC 8011 §5.1.1.
inline constexpr std::string_view kIPPUnsupportedSyntaxName = "unsupported";
/// 0x12. Out-of-band: the value is not known, RFC 8011 §5.1.1.
inline constexpr std::string_view kIPPUnknownSyntaxName = "unknown";
/// 0x13. Out-of-band: there is no value, RFC 8011 §5.1.1.
inline constexpr std::string_view kIPPNoValueSyntaxName = "noValue";
/// 0x15. Out-of-band: the attribute cannot be set, RFC 3380 §8.
inline constexpr std::string_view kIPPNotSettableSyntaxName = "notSettable";
/// 0x17. Out-of-band: the administrator decides, RFC 3380 §8.
inline constexpr std::string_view kIPPAdminDefineSyntaxName = "adminDefine";
/// 0x21, RFC 8011 §5.1.13.
inline constexpr std::string_view kIPPIntegerSyntaxName = "integer";
/// 0x22, RFC 8011 §5.1.12.
inline constexpr std::string_view kIPPBooleanSyntaxName = "boolean";
/// 0x23, RFC 8011 §5.1.5.
inline constexpr std::string_view kIPPEnumSyntaxName = "enum";
/// 0x30, RFC 8011 §5.1.11.
inline constexpr std::string_view kIPPOctetStringSyntaxName = "octetString";
/// 0x31, RFC 8011 §5.1.15.
inline constexpr std::string_view kIPPDateTimeSyntaxName = "dateTime";
/// 0x32, RFC 8011 §5.1.16.
inline constexpr std::string_view kIPPResolutionSyntaxName = "resolution";
/// 0x33, RFC 8011 §5.1.14.
inline constexpr std::string_view kIPPRangeOfIntegerSyntaxName = "rangeOfInteger";
/// 0x34. Opens a collection, RFC 8010 §3.1.6.
inline constexpr std::string_view kIPPDictionaryBeginSyntaxName = "begCollection";
/// 0x35, RFC 8011 §5.1.2.
inline constexpr std::string_view kIPPTextWithLanguageSyntaxName = "textWithLanguage";
/// 0x36, RFC 8011 §5.1.3.
inline constexpr std::string_view kIPPNameWithLanguageSyntaxName = "nameWithLanguage";
/// 0x37. Closes a collection, RFC 8010 §3.1.6.
inline constexpr std::string_view kIPPDictionaryEndSyntaxName = "endCollection";
/// 0x41, RFC 8011 §5.1.2.
inline constexpr std::string_view kIPPTextWithoutLanguageSyntaxName = "textWithoutLanguage";
/// 0x42, RFC 8011 §5.1.3.
inline constexpr std::string_view kIPPNameWithoutLanguageSyntaxName = "nameWithoutLanguage";
/// 0x44, RFC 8011 §5.1.4.
inline constexpr std::string_view kIPPKeywordSyntaxName = "keyword";
/// 0x45, RFC 8011 §5.1.6.
inline constexpr std::string_view kIPPUriSyntaxName = "uri";
/// 0x46, RFC 8011 §5.1.7.
inline constexpr std::string_view kIPPUriSchemeSyntaxName = "uriScheme";
/// 0x47, RFC 8011 §5.1.8.
inline constexpr std::string_view kIPPCharsetSyntaxName = "charset";
/// 0x48, RFC 8011 §5.1.9.
inline constexpr std::string_view kIPPNaturalLanguageSyntaxName = "naturalLanguage";
/// 0x49, RFC 8011 §5.1.10.
inline constexpr std::string_view kIPPMimeMediaSyntaxName = "mimeMediaName";
/// 0x4A. Names a member of a collection, RFC 8010 §3.1.7.
inline constexpr std::string_view kIPPMemberAttrNameSyntaxName = "memberAttrName";

// ---- Attribute groups
// The name of each group; its delimiter tag (RFC 8010 §3.5.1) is in the comment.

/// 0x01. What is asked, and of whom (RFC 8011 §4.1.3).
inline constexpr std::string_view kIPPOperationGroupName = "operation-attributes-tag";
/// 0x02. A job.
inline constexpr std::string_view kIPPJobGroupName = "job-attributes-tag";
/// 0x03. The end marker of a message; no group has this name.
inline constexpr std::string_view kIPPEndOfAttributesGroupName = "end-of-attributes-tag";
/// 0x04. A printer, a queue or a device.
inline constexpr std::string_view kIPPPrinterGroupName = "printer-attributes-tag";
/// 0x05. What the printer ignored (RFC 8011 §4.1.7).
inline constexpr std::string_view kIPPUnsupportedAttributesGroupName = "unsupported-attributes-tag";
/// 0x06. An event subscription (RFC 3995).
inline constexpr std::string_view kIPPSubscriptionGroupName = "subscription-attributes-tag";
/// 0x07. One event (RFC 3995).
inline constexpr std::string_view kIPPNotificationEventGroupName =
    "event-notification-attributes-tag";

// ---- Operation attributes
// Their group is `kIPPOperationGroupName`.

/// charset: how text and names are encoded, RFC 8011 §4.1.4.
inline constexpr std::string_view kIPPAttributesCharsetAttributeName = "attributes-charset";
/// naturalLanguage of text and names that carry none of their own, RFC 8011 §4.1.4.
inline constexpr std::string_view kIPPAttributesNaturalLanguageAttributeName =
    "attributes-natural-language";
/// uri of the queue or server that is addressed, RFC 8011 §4.1.5.
inline constexpr std::string_view kIPPPrinterUriAttributeName = "printer-uri";
/// uri of the job that is addressed, RFC 8011 §4.1.5; also a job attribute, §5.3.2.
inline constexpr std::string_view kIPPJobUriAttributeName = "job-uri";
/// name of the user who asks, RFC 8011 §9.3.
inline constexpr std::string_view kIPPRequestingUserNameAttributeName = "requesting-user-name";
/// 1setOf keyword: which attributes to return, RFC 8011 §4.2.5.1.
inline constexpr std::string_view kIPPRequestedAttributesAttributeName = "requested-attributes";
/// text that explains a status to people, RFC 8011 §4.1.6.2.
inline constexpr std::string_view kIPPStatusMessageAttributeName = "status-message";

// ---- Job attributes
// Their group is `kIPPJobGroupName`.

/// integer: the job's number at its printer, RFC 8011 §5.3.1.
inline constexpr std::string_view kIPPJobIdAttributeName = "job-id";
/// uri: the job's universally unique name (a "urn:uuid:" URI).
inline constexpr std::string_view kIPPJobUUIDAttributeName = "job-uuid";
/// name of the job, RFC 8011 §5.3.5.
inline constexpr std::string_view kIPPJobNameAttributeName = "job-name";
/// uri of the queue that holds the job, RFC 8011 §5.3.3.
inline constexpr std::string_view kIPPJobPrinterUriAttributeName = "job-printer-uri";
/// uri of a page about the job, RFC 8011 §5.3.4.
inline constexpr std::string_view kIPPJobMoreInfoAttributeName = "job-more-info";
/// enum, RFC 8011 §5.3.7.
inline constexpr std::string_view kIPPJobStateAttributeName = "job-state";
/// 1setOf keyword, RFC 8011 §5.3.8.
inline constexpr std::string_view kIPPJobStateReasonsAttributeName = "job-state-reasons";
/// text: what the printer says while it works on the job; a CUPS extension.
inline constexpr std::string_view kIPPJobPrinterStateMessageAttributeName =
    "job-printer-state-message";
/// integer, sheets, RFC 8011 §5.3.18.3.
inline constexpr std::string_view kIPPJobMediaSheetsCompletedAttributeName =
    "job-media-sheets-completed";
/// integer, per cent of the sheet in hand; a CUPS extension.
inline constexpr std::string_view kIPPJobMediaProgressAttributeName = "job-media-progress";
/// integer from 1 to 100, RFC 8011 §5.2.1.
inline constexpr std::string_view kIPPJobPriorityAttributeName = "job-priority";
/// name of the user who made the job, RFC 8011 §5.3.6.
inline constexpr std::string_view kIPPJobOriginatingUserNameAttributeName =
    "job-originating-user-name";
/// name of the host that the job came from; a CUPS extension.
inline constexpr std::string_view kIPPJobOriginatingHostNameAttributeName =
    "job-originating-host-name";
/// integer, seconds, RFC 8011 §5.3.14.1; a print server counts from 1970-01-01T00:00:00 UTC.
inline constexpr std::string_view kIPPTimeAtCreationAttributeName = "time-at-creation";
/// As `kIPPTimeAtCreationAttributeName`, RFC 8011 §5.3.14.2.
inline constexpr std::string_view kIPPTimeAtProcessingAttributeName = "time-at-processing";
/// As `kIPPTimeAtCreationAttributeName`, RFC 8011 §5.3.14.3.
inline constexpr std::string_view kIPPTimeAtCompletedAttributeName = "time-at-completed";

// What a job asks of the printer.

/// integer, RFC 8011 §5.2.5.
inline constexpr std::string_view kIPPCopiesAttributeName = "copies";
/// keyword, RFC 8011 §5.2.8.
inline constexpr std::string_view kIPPSidesAttributeName = "sides";
/// keyword or name, RFC 8011 §5.2.11.
inline constexpr std::string_view kIPPMediaAttributeName = "media";

// ---- Printer attributes
// Their group is `kIPPPrinterGroupName`; a request that makes or changes a queue carries them among
// its operation attributes.

/// name of the queue, RFC 8011 §5.4.4.
inline constexpr std::string_view kIPPPrinterNameAttributeName = "printer-name";
/// 1setOf uri under which the queue is reached, RFC 8011 §5.4.1.
inline constexpr std::string_view kIPPPrinterUriSupportedAttributeName = "printer-uri-supported";
/// text for people, RFC 8011 §5.4.6.
inline constexpr std::string_view kIPPPrinterInfoAttributeName = "printer-info";
/// text, RFC 8011 §5.4.5.
inline constexpr std::string_view kIPPPrinterLocationAttributeName = "printer-location";
/// enum, RFC 8011 §5.4.11.
inline constexpr std::string_view kIPPPrinterStateAttributeName = "printer-state";
/// 1setOf keyword, RFC 8011 §5.4.12.
inline constexpr std::string_view kIPPPrinterStateReasonsAttributeName = "printer-state-reasons";
/// text, RFC 8011 §5.4.13.
inline constexpr std::string_view kIPPPrinterStateMessageAttributeName = "printer-state-message";
/// boolean, RFC 8011 §5.4.23.
inline constexpr std::string_view kIPPPrinterIsAcceptingJobsAttributeName =
    "printer-is-accepting-jobs";
/// boolean: the server offers the queue to others; a CUPS extension.
inline constexpr std::string_view kIPPPrinterIsSharedAttributeName = "printer-is-shared";
/// enum, a bit mask of what the queue is and can do; a CUPS extension.
inline constexpr std::string_view kIPPPrinterTypeAttributeName = "printer-type";
/// enum: the bits of "printer-type" that a query compares; a CUPS extension.
inline constexpr std::string_view kIPPPrinterTypeMaskAttributeName = "printer-type-mask";
/// 1setOf name: the only users that may print; a CUPS extension.
inline constexpr std::string_view kIPPRequestingUserNameAllowedAttributeName =
    "requesting-user-name-allowed";
/// 1setOf name: users that may not print; a CUPS extension.
inline constexpr std::string_view kIPPRequestingUserNameDeniedAttributeName =
    "requesting-user-name-denied";
/// keyword or name: the medium used when a job names none, RFC 8011 §5.2.11.
inline constexpr std::string_view kIPPMediaDefaultAttributeName = "media-default";
/// 1setOf keyword or name, RFC 8011 §5.2.11.
inline constexpr std::string_view kIPPMediaSupportedAttributeName = "media-supported";
/// 1setOf enum, RFC 8011 §5.2.6. The constant's name is misspelt and says "printer"; both belong to
/// the interface. The attribute on the wire is the one that printers send.
inline constexpr std::string_view kIPPPrinterFinishingsSuportedAttributeName =
    "finishings-supported";
/// uri of the device behind the queue; a CUPS extension.
inline constexpr std::string_view kIPPDeviceUriAttributeName = "device-uri";
/// text that describes a device to people; a CUPS extension.
inline constexpr std::string_view kIPPDeviceInfoAttributeName = "device-info";

// ---- Subscription and event attributes
// Their groups are `kIPPSubscriptionGroupName` and `kIPPNotificationEventGroupName`.

/// 1setOf keyword: the events to report, RFC 3995 §5.3.
inline constexpr std::string_view kIPPNotifyEventsAttributeName = "notify-events";
/// keyword: how events are fetched ("ippget"), RFC 3995 §5.3.
inline constexpr std::string_view kIPPNotifyPullMethodAttributeName = "notify-pull-method";
/// uri to which events are pushed, RFC 3995 §5.3.
inline constexpr std::string_view kIPPNotifyRecipientUriAttributeName = "notify-recipient-uri";
/// integer, seconds; 0 never ends, RFC 3995 §5.3.
inline constexpr std::string_view kIPPNotifyLeaseDurationAttributeName = "notify-lease-duration";
/// integer, seconds between two reports of progress at least, RFC 3995 §5.3.
inline constexpr std::string_view kIPPNotifyTimeIntervalAttributeName = "notify-time-interval";
/// integer, RFC 3995 §5.4; also an operation attribute.
inline constexpr std::string_view kIPPNotifySubscriptionIdAttributeName = "notify-subscription-id";
/// integer: the job subscribed to, RFC 3995 §5.4. The constant's name stands alone in its form and
/// belongs to the interface.
inline constexpr std::string_view kIPPSubscriptionJobIdNotificationAttributeName = "notify-job-id";
/// uri of the queue subscribed to, RFC 3995 §5.4.
inline constexpr std::string_view kIPPNotifyPrinterUriAttributeName = "notify-printer-uri";
/// name of the user who subscribed, RFC 3995 §5.4.
inline constexpr std::string_view kIPPNotifySubscriberUserNameAttributeName =
    "notify-subscriber-user-name";
/// 1setOf integer, an operation attribute of Get-Notifications, RFC 3996 §5.
inline constexpr std::string_view kIPPNotifySubscriptionIdsAttributeName =
    "notify-subscription-ids";
/// integer, seconds after which to ask again, an operation attribute, RFC 3996 §5.
inline constexpr std::string_view kIPPNotifyGetIntervalAttributeName = "notify-get-interval";

// ---- Transport
// An IPP message is the body of an HTTP POST (RFC 8010 §4).

/// Method of every exchange, RFC 9110 §9.3.3.
inline constexpr std::string_view kHTTPMethodPost = "POST";
/// Header field, RFC 9110 §8.3.
inline constexpr std::string_view kHTTPContentTypeField = "Content-Type";
/// Media type of an IPP message, RFC 8010 §4.
inline constexpr std::string_view kIPPContentTypeValue = "application/ipp";
/// Header field, RFC 9112 §6.1.
inline constexpr std::string_view kHTTPTransferEncodingField = "Transfer-Encoding";
/// Transfer coding of a body of unknown length, RFC 9112 §7.1.
inline constexpr std::string_view kIPPTransferEncodingValue = "chunked";
/// Scheme of the URL that is posted to, RFC 9110 §4.2.1.
inline constexpr std::string_view kHTTPURLScheme = "http";
/// Scheme of printer and job URIs, RFC 3510.
inline constexpr std::string_view kIPPURLScheme = "ipp";
/// The local print server's host.
inline constexpr std::string_view kIPPLocalhostName = "localhost";
/// Idle time after which an exchange fails, in seconds, unless the request says otherwise.
inline constexpr double kDefaultTimeout = 60.0;

// ---- Error records
// Domains, and keys of the user information beside those of platen/Error.h.

/// Domain of errors whose code is an IPP status-code.
inline constexpr std::string_view IPPErrorDomain = "IPPErrorDomain";
/// Domain of underlying errors whose code is an HTTP status.
inline constexpr std::string_view IPPHTTPErrorDomain = "IPPHTTPErrorDomain";

// Each key holds a list of attribute names, in the order of the response; it is absent when the
// list would be empty. The lists are what the unsupported group says (RFC 8011 §4.1.7).

/// Attributes returned as 'unsupported'.
inline constexpr std::string_view IPPErrorUnsupportedAttributeNames =
    "IPPErrorUnsupportedAttributeNames";
/// Attributes returned as 'unknown'.
inline constexpr std::string_view IPPErrorUnknownAttributeValues = "IPPErrorUnknownAttributeValues";
/// Attributes returned as 'no-value'.
inline constexpr std::string_view IPPErrorNoValueAttributes = "IPPErrorNoValueAttributes";
/// Attributes returned as 'not-settable'.
inline constexpr std::string_view IPPErrorNotSettableAttributes = "IPPErrorNotSettableAttributes";
/// Attributes returned as 'admin-define'.
inline constexpr std::string_view IPPErrorAdminDefineAttributes = "IPPErrorAdminDefineAttributes";
/// For the application's own records; the library never fills it.
inline constexpr std::string_view IPPErrorUnknownReasonAttributes =
    "IPPErrorUnknownReasonAttributes";

// ---- Variables
// For the application alone: 0 at start, and never read or written by the library. The spelling
// belongs to the interface.

/// Yours to use. Threads: unguarded.
extern "C" PLATEN_EXPORT std::int32_t IPP_DELIMETER_TAG;
/// Yours to use. Threads: unguarded.
extern "C" PLATEN_EXPORT std::int32_t IPP_RESOLUTUION_UNIT;

}  // namespace platen::inline v0
