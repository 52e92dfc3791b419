// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Responses (RFC 8011 §4.1.6, Appendix B).

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/IPPMessage.h"
#include "platen/IPPRequest.h"
#include "platen/RawValue.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// A response: a message whose tag is a status-code. Whether it is a success or an error is told by
/// the name of its status; one that is not in the table (`ippStatusToNameSpec`) is neither.
///
/// Threads: one thread at a time. A reference object: held by `std::shared_ptr`.
class PLATEN_EXPORT IPPResponse : public IPPMessage {
 public:
  using Pointer = std::shared_ptr<IPPResponse>;

  // As the reading constructors of `IPPMessage`: null when there is no whole message. What is read
  // is not checked to be a response.

  static Pointer initWithDataRepresentation(Bytes data);
  static Pointer initWithStream(const std::shared_ptr<InputStream>& stream);
  static Pointer initWithFileHandle(int descriptor);
  static Pointer initWithCoder(IPPCoder& coder);

  /// A new response with the request-id 1, the charset "utf-8" and the identifier of the user's
  /// locale as it is ("en_US"; a request has it as a language tag); never null. The code need not
  /// be a known one, but only its low 16 bits are written.
  static Pointer initWithStatusCode(std::int32_t statusCode);
  /// The same, with "status-message" where a message is given. Raises `RangeException` "Invalid
  /// parameter" for one of 1024 characters and more.
  static Pointer responseWithStatusCode(std::int32_t statusCode,
                                        std::optional<std::string_view> message);
  /// A new response that answers `request` on the spot, never null: successful-ok, with its
  /// request-id and its own charset and language attributes, shared; what `responseWithStatusCode`
  /// makes of client-error-bad-request, with the request-id 1, when it lacks one of them. Its
  /// "status-message" is empty.
  static Pointer responseForRequest(const IPPRequest& request);
  /// A response of exactly these, without any attribute of its own; null groups are left out.
  IPPResponse(std::int32_t statusCode, std::int32_t requestId, Groups groups = {});
  ~IPPResponse() override;

  /// The name of every known status by its code (RFC 8011 appendix B, RFC 3380, RFC 3995, RFC 3996,
  /// RFC 3998). Lives for the process.
  static const std::map<std::int32_t, std::string_view>& ippStatusToNameSpec();
  /// The name of the status, for example "client-error-not-found"; nothing for an unknown one.
  /// Lives for the process.
  static std::optional<std::string_view> statusDescriptionForStatusCode(
      std::int32_t statusCode) noexcept;

  /// The status-code, RFC 8011 §4.1.6.1; one of 0x8000 and above is negative.
  [[nodiscard]] std::int32_t statusCode() const noexcept { return ippTag(); }
  /// `statusDescriptionForStatusCode` of it.
  [[nodiscard]] std::optional<std::string_view> statusDescription() const noexcept;

  // By the name of the status, RFC 8011 appendix B. A code without a name is none of the three,
  // whatever range it is in.

  /// Whether it begins with "successful-ok": also a success with reservations, 0x0001 to 0x0007.
  [[nodiscard]] bool successfulOk() const noexcept;
  /// Whether it begins with "client-error": the request was at fault.
  [[nodiscard]] bool clientError() const noexcept;
  /// Whether it begins with "server-error": the printer or the server was at fault.
  [[nodiscard]] bool serverError() const noexcept;

  /// True when the same request may succeed later: the service is unavailable (0x0502), had a
  /// temporary error (0x0505) or is busy (0x0507).
  [[nodiscard]] bool allowsRequestResubmission() const noexcept;

  /// The status, also a successful one, as a new error record of `IPPErrorDomain`; never null. Its
  /// code is `statusCode`, its description the name of the status ("unknown status 0x0999" for one
  /// without), and it has lists of the names of unsupported attributes under
  /// `IPPErrorUnsupportedAttributeNames`, `IPPErrorUnknownAttributeValues`,
  /// `IPPErrorNoValueAttributes`, `IPPErrorNotSettableAttributes` and
  /// `IPPErrorAdminDefineAttributes`, each only when there are any (RFC 8011 §4.1.7).
  [[nodiscard]] std::shared_ptr<const Error> status() const;

  /// The text of "status-message", RFC 8011 §4.1.6.2; nothing when absent, empty on the wire, or no
  /// string.
  [[nodiscard]] std::optional<std::string> statusMessage() const;
  /// "attributes-charset", RFC 8011 §4.1.4: how the text of the response was encoded; nothing when
  /// absent or no string.
  [[nodiscard]] std::optional<std::string> attributesCharset() const;
  /// "attributes-natural-language", RFC 8011 §4.1.4, of text that has no language of its own;
  /// nothing when absent or no string.
  [[nodiscard]] std::optional<std::string> attributesLanguage() const;

  /// "STATUS = (GROUPS)"; "(null)" stands for a status without a name.
  [[nodiscard]] std::string description() const override;
  /// "IPPResponse".
  [[nodiscard]] std::string_view className() const noexcept override;

  // --- What an answer says ----------------------------------------------------------------------
  //
  // Every accessor below tells what the first attribute of its name holds, in whatever group. It is
  // nothing when there is none and when its value is of another kind than the result: a set, null
  // (an out-of-band value), text for a URL, a boolean for a number. None of them raises anything,
  // whatever a server sends; `attributeValueForKey` has the value as it came.
  //
  // A number is an integer or an enum of 32 bits. A string is any text, name, keyword or other
  // string syntax, with a language or without; one that is empty on the wire is nothing. A list of
  // strings is the strings of a set, or a single string: values of another kind are left out, and
  // where only those are there the list is nothing too.

  // --- Jobs -------------------------------------------------------------------------------------

  /// "job-uri", RFC 8011 §5.3.2.
  [[nodiscard]] std::optional<URL> jobURI() const;
  /// "job-printer-uri", RFC 8011 §5.3.3.
  [[nodiscard]] std::optional<URL> jobPrinterURI() const;
  /// "job-more-info", RFC 8011 §5.3.4.
  [[nodiscard]] std::optional<URL> jobMoreInfoURI() const;
  /// "job-id", RFC 8011 §5.3.1.
  [[nodiscard]] std::optional<std::int32_t> jobId() const;
  /// "job-uuid" as it came, which `jobAttributes` takes: a URL, or a string from a server that does
  /// not send it as a uri; absent in every other case.
  [[nodiscard]] RawValue jobUUID() const;
  /// "job-name", RFC 8011 §5.3.5.
  [[nodiscard]] std::optional<std::string> jobName() const;
  /// "job-state", RFC 8011 §5.3.7.
  [[nodiscard]] std::optional<std::int32_t> jobState() const;
  /// The first of "job-state-reasons", RFC 8011 §5.3.8.
  [[nodiscard]] std::optional<std::string> jobStateReason() const;
  /// "job-printer-state-message", a CUPS extension.
  [[nodiscard]] std::optional<std::string> jobPrinterStateMessage() const;
  /// "job-media-sheets-completed", RFC 8011 §5.3.18.3.
  [[nodiscard]] std::optional<std::int32_t> jobCompletedMediaSheetsCount() const;
  /// "job-media-progress", per cent of the sheet in hand; a CUPS extension.
  [[nodiscard]] std::optional<std::int32_t> jobMediaProgress() const;
  /// "job-priority", RFC 8011 §5.2.1.
  [[nodiscard]] std::optional<std::int32_t> jobPriority() const;
  /// "job-originating-user-name", RFC 8011 §5.3.6.
  [[nodiscard]] std::optional<std::string> jobOriginatingUserName() const;
  /// "job-originating-host-name", a CUPS extension.
  [[nodiscard]] std::optional<std::string> jobOriginatingHostName() const;

  // Instants, RFC 8011 §5.3.14, where a print server counts signed seconds from the beginning of
  // 1970 (a printer may count from its own start). Never nothing: that beginning itself when the
  // attribute is absent or no number, such as the no-value of a job that is not completed.

  /// "time-at-creation".
  [[nodiscard]] Date jobTimeCreation() const;
  /// "time-at-processing".
  [[nodiscard]] Date jobTimeProcessing() const;
  /// "time-at-completed".
  [[nodiscard]] Date jobTimeCompleted() const;

  // --- Printers ---------------------------------------------------------------------------------

  /// "printer-uri".
  [[nodiscard]] std::optional<URL> printerURI() const;
  /// "printer-state", RFC 8011 §5.4.11.
  [[nodiscard]] std::optional<std::int32_t> printerState() const;
  /// "printer-state-message", RFC 8011 §5.4.13.
  [[nodiscard]] std::optional<std::string> printerStateMessage() const;
  /// "printer-state-reasons", RFC 8011 §5.4.12: a list of strings.
  [[nodiscard]] std::optional<std::vector<std::string>> printerStateReasons() const;
  /// "printer-is-accepting-jobs", RFC 8011 §5.4.23; false when absent or no boolean.
  [[nodiscard]] bool isAcceptingJobs() const;
  /// The `namedValues` of the first printer group; nothing when there is none or it is empty.
  [[nodiscard]] std::optional<RawValue::Dictionary> printerAttributes() const;

  // What the first "printer-type" says, a bit mask of the CUPS print server extension. All bits are
  // clear when it is absent or no number.

  /// Bit 0x2.
  [[nodiscard]] bool isPrintQueueRemote() const;
  /// Not `isPrintQueueRemote`.
  [[nodiscard]] bool isPrintQueueLocal() const;
  /// Bit 0x8.
  [[nodiscard]] bool isPrintQueueColor() const;
  /// Bit 0x4.
  [[nodiscard]] bool isPrintQueueGrayscale() const;
  /// Bit 0x10.
  [[nodiscard]] bool canPrintQueueDuplex() const;
  /// Bit 0x20.
  [[nodiscard]] bool canPrintQueueStaple() const;
  /// Bit 0x80.
  [[nodiscard]] bool canPrintQueueCollate() const;

  // Always false, whatever "printer-type" says: by design these are not told of one queue. The
  // queue lists below tell which queues require authentication and which is the default.

  [[nodiscard]] bool isPrintQueueRequiringAuthentication() const;
  [[nodiscard]] bool isPrintQueueNotShared() const;
  [[nodiscard]] bool isPrintQueueDefault() const;
  [[nodiscard]] bool canPrintQueuePunch() const;
  [[nodiscard]] bool canPrintQueueCover() const;
  [[nodiscard]] bool canPrintQueueBind() const;
  [[nodiscard]] bool canPrintQueueSort() const;

  // --- Subscriptions and events -----------------------------------------------------------------

  /// "notify-subscription-id", RFC 3995 §5.4.
  [[nodiscard]] std::optional<std::int32_t> subscriptionId() const;
  /// The same as `subscriptionId`.
  [[nodiscard]] std::optional<std::int32_t> notifySubscriptionId() const;
  /// The same as `subscriptionId`.
  [[nodiscard]] std::optional<std::int32_t> jobSubscriptionId() const;
  /// "notify-job-id", RFC 3995 §5.4.
  [[nodiscard]] std::optional<std::int32_t> notifyJobId() const;
  /// "notify-printer-uri", RFC 3995 §5.4.
  [[nodiscard]] std::optional<URL> notifyPrinterURI() const;
  /// "notify-recipient-uri", RFC 3995 §5.3.
  [[nodiscard]] std::optional<URL> notifyRecipientURI() const;
  /// "notify-subscriber-user-name", RFC 3995 §5.4.
  [[nodiscard]] std::optional<std::string> notifySubscriberName() const;
  /// "notify-lease-duration" in seconds, RFC 3995 §5.3; 0 never ends.
  [[nodiscard]] std::optional<std::int32_t> notifyLeaseDuration() const;
  /// "notify-events", RFC 3995 §5.3: a list of strings. Unlike that of a request, it has a single
  /// event too.
  [[nodiscard]] std::optional<std::vector<std::string>> notifyEvents() const;
  /// "notify-time-interval" in seconds, RFC 3995 §5.3; 0 when absent or no number.
  [[nodiscard]] double notifyTimeInterval() const;
  /// "notify-get-interval" in seconds, after which to ask for events again, RFC 3996 §5; 0 when
  /// absent or no number. The name is misspelt and belongs to the interface.
  [[nodiscard]] double notifyGetInternal() const;

  // --- Lists of what was asked for, and one of them by its name ---------------------------------
  //
  // Lists have one entry for each attribute of that name in the message, in order, duplicates kept;
  // values of another kind are left out.

  /// Every "printer-name".
  [[nodiscard]] std::vector<std::string> availablePrintQueues() const;
  /// Every "device-info"; a CUPS extension.
  [[nodiscard]] std::vector<std::string> availableDevices() const;
  /// Every "job-uuid", each as `jobUUID` tells it.
  [[nodiscard]] RawValue::Array availableJobs() const;
  /// Every "notify-subscription-id".
  [[nodiscard]] std::vector<std::int32_t> availableSubscriptions() const;
  /// The same as `availableSubscriptions`.
  [[nodiscard]] std::vector<std::int32_t> jobAvailableSubscriptions() const;

  // The attributes of the first group of a kind in which any attribute, whatever its name, has the
  // given value, shared with this message; nothing when there is none, or for an absent value.

  /// Of a printer group; `queue` is normally a name out of `availablePrintQueues`.
  [[nodiscard]] std::optional<Attributes> printQueueAttributes(const RawValue& queue) const;
  /// The same: devices come in printer groups too. `device` is normally out of `availableDevices`.
  [[nodiscard]] std::optional<Attributes> deviceAttributes(const RawValue& device) const;
  /// Of a job group; `jobUUID` is normally out of `availableJobs`.
  [[nodiscard]] std::optional<Attributes> jobAttributes(const RawValue& jobUUID) const;
  using IPPMessage::subscriptionAttributes;
  /// Of a subscription group.
  [[nodiscard]] std::optional<Attributes> subscriptionAttributes(std::int32_t subscriptionId) const;
  /// The same as `subscriptionAttributes`.
  [[nodiscard]] std::optional<Attributes> jobSubscriptionAttributes(
      std::int32_t subscriptionId) const;
  /// "printer-uri-supported" among `printQueueAttributes`, RFC 8011 §5.4.1; the first URL of a set.
  [[nodiscard]] std::optional<URL> printQueueUri(std::string_view queue) const;

  // --- Queues by what they are ------------------------------------------------------------------
  //
  // The "printer-name" of each printer group whose "printer-type" has the bits, in order. A group
  // without a "printer-type" has none of them set; a group without a name is passed over.

  /// Neither 0x2 nor 0x10000.
  [[nodiscard]] std::vector<std::string> localPrintQueues() const;
  /// 0x2 or 0x10000: also a queue of which `isPrintQueueRemote`, which asks for 0x2 only, is false.
  [[nodiscard]] std::vector<std::string> remotePrintQueues() const;
  /// 0x8.
  [[nodiscard]] std::vector<std::string> colorPrintQueues() const;
  /// 0x4.
  [[nodiscard]] std::vector<std::string> grayscalePrintQueues() const;
  /// 0x400000.
  [[nodiscard]] std::vector<std::string> requiringAuthenticationPrintQueues() const;
  /// The first with 0x20000; nothing when no queue has it.
  [[nodiscard]] std::optional<std::string> defaultPrintQueue() const;

 protected:
  [[nodiscard]] std::shared_ptr<IPPMessage> makeEmptyCopy() const override;
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

  // --- Look-ups that the accessors are made of --------------------------------------------------

  // The names of the attributes that an unsupported group (RFC 8011 §4.1.7) has with one
  // out-of-band value, in order, duplicates kept; none when there are none.

  /// Those returned as 'unsupported'.
  [[nodiscard]] std::vector<std::string> _allUnsupportedAttributeNames() const;
  /// Those returned as 'unknown'.
  [[nodiscard]] std::vector<std::string> _allUnknownAttributeNames() const;
  /// Those returned as 'no-value'.
  [[nodiscard]] std::vector<std::string> _allNoValueAttributeNames() const;
  /// Those returned as 'not-settable'.
  [[nodiscard]] std::vector<std::string> _allNotSettableAttributeNames() const;
  /// Those returned as 'admin-define'.
  [[nodiscard]] std::vector<std::string> _allAdminDefineAttributeNames() const;
  /// The names ("" for an attribute without one) of the attributes in the groups whose name matches
  /// `groupName`, a pattern, whose value has that syntax, in order, duplicates kept.
  [[nodiscard]] std::vector<std::string> _allAttributeNamesFromGroupsNamed(
      std::string_view groupName, std::string_view syntaxName) const;
  /// The attributes of the first group whose name matches `groupName`, a pattern, in which one has
  /// the given value; nothing when there is none, or for an absent value.
  [[nodiscard]] std::optional<Attributes> _attributesForGroup(std::string_view groupName,
                                                              const RawValue& value) const;
  /// The same of a printer group.
  [[nodiscard]] std::optional<Attributes> _attributesForPrintQueue(const RawValue& value) const;
  /// The same of a subscription group.
  [[nodiscard]] std::optional<Attributes> _attributesForSubscriptionWithId(
      const RawValue& value) const;
  /// The same of a job group.
  [[nodiscard]] std::optional<Attributes> _attributesForJobWithUUID(const RawValue& value) const;
  /// The raw object of the first attribute of exactly that name with a value among
  /// `_attributesForPrintQueue`; absent when there is none.
  [[nodiscard]] RawValue _attributeValueForPrintQueue(const RawValue& value,
                                                      std::string_view name) const;
  /// The first "printer-type" as 32 bits; 0 when absent or no number.
  [[nodiscard]] std::uint32_t _printerType() const;
  /// The names of the queues whose "printer-type" has any bit of the mask, or those of the others.
  [[nodiscard]] std::vector<std::string> _queuesMatchingPrinterTypeMask(
      std::uint32_t mask, bool excludingResults) const;
};

}  // namespace platen::inline v0
