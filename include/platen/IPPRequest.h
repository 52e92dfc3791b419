// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Requests (RFC 8011 §4.1, §4.2, §4.3).

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/IPPMessage.h"
#include "platen/IPPMessageStream.h"
#include "platen/IPPScheduledRequest.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::inline v0 {

class IPPResponse;

/// What names a job by its number: every class with a const operation `jobId` that returns a
/// `std::int32_t` or an optional one. `IPPResponse` is one.
template <class Job>
concept AnswersJobId = requires(const Job& job) {
  requires std::same_as<std::remove_cvref_t<decltype(job.jobId())>, std::int32_t> ||
      std::same_as<std::remove_cvref_t<decltype(job.jobId())>, std::optional<std::int32_t>>;
};

/// A request: a message whose tag is an operation-id. A new one begins with the charset and the
/// natural language of the user (RFC 8011 §4.1.4) and has the request-id 1.
///
/// Setters append an attribute; they never replace one of the same name. Values that their syntax
/// refuses raise as the factories of `IPPValue` do.
///
///     auto request = IPPRequest::printerAttributesRequest(*URL::parse("ipp://host/ipp/print"));
///     std::shared_ptr<const Error> error;
///     auto response = request->performOn(*request->printerURI(), &error);
///
/// Threads: one thread at a time. A reference object: held by `std::shared_ptr`.
class PLATEN_EXPORT IPPRequest : public IPPMessage, public IPPConnectionDelegate {
 public:
  using Pointer = std::shared_ptr<IPPRequest>;

  // --- Construction -----------------------------------------------------------------------------

  /// A new request for the operation, with the default attributes; never null. The id need not be a
  /// known one, but only its low 16 bits are written.
  static Pointer requestWithId(std::int32_t operationId);
  /// The same. Only a request that a `std::shared_ptr` holds can be sent by `sendTo`, which raises
  /// `std::bad_weak_ptr` for every other.
  explicit IPPRequest(std::int32_t operationId);
  /// Lets go of an exchange that has ended, if one is held; while one runs it holds the request.
  ~IPPRequest() override;

  // As the reading constructors of `IPPMessage`: null when there is no whole message. A decoded
  // request has the default time-out and limit. What is read is not checked to be a request.

  static Pointer initWithDataRepresentation(Bytes data);
  static Pointer initWithStream(const std::shared_ptr<InputStream>& stream);
  static Pointer initWithFileHandle(int descriptor);
  static Pointer initWithCoder(IPPCoder& coder);

  /// The name of every known operation by its id. Lives for the process.
  static const std::map<std::int32_t, std::string_view>& operationIdToNameSpec();
  /// The name of the operation, or "Unknown-Operation". Lives for the process.
  static std::string_view operationName(std::int32_t operationId) noexcept;

  // Every factory below makes a new request for the operation that its line names. Where it takes a
  // URL or addresses the local server, that target follows the default attributes as "job-uri" or
  // "printer-uri", and "requesting-user-name" follows the target. The URL is taken as it is, of any
  // scheme. Factories and setters raise `RangeException` "Invalid parameter" for a URL of 1024
  // characters and more.
  //
  // Every getter tells what the first attribute of its name holds, in a request that was made here
  // or decoded; nothing when there is none or its value is of another kind. A text that is empty on
  // the wire is nothing when it is read.

  // --- Jobs -------------------------------------------------------------------------------------

  /// Get-Job-Attributes, RFC 8011 §4.3.4.
  static Pointer jobAttributesRequest(const URL& job);
  /// Create-Job, RFC 8011 §4.2.4: a job whose documents are sent later.
  static Pointer jobCreateRequest(const URL& queue);
  /// Print-Job, RFC 8011 §4.2.1: the document follows the request.
  static Pointer jobPrintRequest(const URL& queue);
  /// Validate-Job, RFC 8011 §4.2.3: Print-Job without a document and without a job.
  static Pointer validateJobRequest(const URL& queue);
  /// Cancel-Job, RFC 8011 §4.3.3.
  static Pointer jobCancelRequest(const URL& job);
  /// Hold-Job, RFC 8011 §4.3.5.
  static Pointer jobHoldRequest(const URL& job);
  /// Release-Job, RFC 8011 §4.3.6.
  static Pointer jobReleaseRequest(const URL& job);
  /// Restart-Job, RFC 8011 §4.3.7.
  static Pointer jobRestartRequest(const URL& job);
  /// CUPS-Move-Job, a CUPS extension: "job-printer-uri" in the job group is the queue to move to.
  static Pointer jobMoveRequest(const URL& job, const URL& destination);
  /// Get-Subscriptions, RFC 3995 §11.2.5, addressed to a job.
  static Pointer jobAvailableSubscriptionsRequest(const URL& job);
  /// Create-Job-Subscriptions, RFC 3995 §11.1.1, for the job whose number `job.jobId()` is; the
  /// answer to its creation is such a job, as it comes:
  ///
  ///     auto job = IPPRequest::jobCreateRequest(queue)->performOn(queue);
  ///     auto request = IPPRequest::jobCreateSubscriptionRequest(*job, queue, events);
  ///
  /// Addressed to the queue; only "notify-job-id" in the subscription group names the job, behind
  /// the `setNotifyEvents` of `events`. Raises `RangeException` "Invalid parameter" when the job
  /// has no number. `job` is only read during the call.
  template <AnswersJobId Job>
  static Pointer jobCreateSubscriptionRequest(const Job& job, const URL& target,
                                              std::span<const std::string> events) {
    return _jobCreateSubscriptionRequest(job.jobId(), target, events);
  }

  /// "job-uri".
  void setJobURI(const URL& job);
  [[nodiscard]] std::optional<URL> jobURI() const;

  // --- Printers ---------------------------------------------------------------------------------

  /// Get-Printer-Attributes, RFC 8011 §4.2.5.
  static Pointer printerAttributesRequest(const URL& printer);
  /// Get-Jobs, RFC 8011 §4.2.6.
  static Pointer printerJobsRequest(const URL& printer);
  /// Create-Printer-Subscriptions, RFC 3995 §11.1.2, with the `setNotifyEvents` of `events`.
  static Pointer printerCreateSubscriptionRequest(const URL& printer,
                                                  std::span<const std::string> events);
  /// Get-Subscriptions, RFC 3995 §11.2.5.
  static Pointer printerAvailableSubscriptionsRequest(const URL& printer);
  /// Pause-Printer, RFC 8011 §4.2.7.
  static Pointer printerPauseRequest(const URL& printer);
  /// Resume-Printer, RFC 8011 §4.2.8.
  static Pointer printerResumeRequest(const URL& printer);
  /// Purge-Jobs, RFC 8011 §4.2.9.
  static Pointer printerPurgeJobsRequest(const URL& printer);
  /// CUPS-Set-Default, a CUPS extension: makes the queue the server's default.
  static Pointer printerSetDefaultRequest(const URL& printer);
  /// CUPS-Add-Modify-Printer, a CUPS extension; what the queue is to be is set by the queue
  /// settings below.
  static Pointer printerAddModifyQueueRequest(const URL& printer);
  /// CUPS-Delete-Printer, a CUPS extension. The one request of a target that names no user.
  static Pointer printerRemoveQueueRequest(const URL& printer);

  // --- The print server -------------------------------------------------------------------------
  //
  // CUPS-Get-Printers and CUPS-Get-Devices name neither a target nor a user; every other request
  // here is addressed to `IPPURI::localServerURI`, wherever it is sent.

  /// CUPS-Get-Printers, a CUPS extension: all queues.
  static Pointer serverAvailablePrintersRequest();
  /// CUPS-Get-Devices, a CUPS extension.
  static Pointer serverAvailableDevicesRequest();
  /// Get-Subscriptions, RFC 3995 §11.2.5. The name is misspelt and belongs to the interface.
  static Pointer serverAvailableSubcsriptionsRequest();
  /// Create-Printer-Subscriptions, RFC 3995 §11.1.2, with the `setNotifyEvents` of `events`.
  static Pointer serverCreateSubscriptionRequest(std::span<const std::string> events);
  /// Get-Jobs, RFC 8011 §4.2.6.
  static Pointer serverAvailableJobsRequest();
  /// CUPS-Get-Default, a CUPS extension.
  static Pointer serverDefaultPrintQueueRequest();

  // CUPS-Get-Printers with a filter: "printer-type" is always 0, so that the server is asked for
  // the queues in which the bit of "printer-type-mask" is clear. To pick queues in which it is set,
  // ask for all and use the queue lists of `IPPResponse`.

  /// Mask 0: no restriction.
  static Pointer serverAvailableLocalPrintersRequest();
  /// Mask 0x2, remote.
  static Pointer serverAvailableRemotePrintersRequest();
  /// Mask 0x8, color.
  static Pointer serverAvailableColorPrintersRequest();
  /// Mask 0x4, black and white.
  static Pointer serverAvailableGrayscalePrintersRequest();
  /// Mask 0x200000, not shared.
  static Pointer serverAvailableNotSharedPrintersRequest();
  /// Mask 0x400000, requires authentication. The name is misspelt and belongs to the interface.
  static Pointer serverAvailablePrintersRequringAuthenticationRequest();

  // --- Subscriptions ----------------------------------------------------------------------------
  //
  // The target is a queue or a server, always as "printer-uri".

  /// Get-Subscription-Attributes, RFC 3995 §11.2.4.
  static Pointer subscriptionAttributesRequest(std::int32_t subscriptionId, const URL& target);
  /// Renew-Subscription, RFC 3995 §11.2.6.
  static Pointer subscriptionReNewRequest(std::int32_t subscriptionId, const URL& target);
  /// Cancel-Subscription, RFC 3995 §11.2.7.
  static Pointer subscriptionCancelRequest(std::int32_t subscriptionId, const URL& target);
  /// Get-Notifications, RFC 3996 §5, whose "notify-subscription-ids" is a set: of this one.
  static Pointer subscriptionGetNotificationsRequest(std::int32_t subscriptionId,
                                                     const URL& target);

  /// "notify-subscription-id", an operation attribute.
  void setSubscriptionId(std::int32_t subscriptionId);
  [[nodiscard]] std::optional<std::int32_t> subscriptionId() const;

  // What a request that makes a subscription has in its subscription group, in the order of the
  // calls (RFC 3995 §5.3). One way of delivery does not take the place of the other.

  /// "notify-events": keywords. An empty list adds nothing, and no group either.
  void setNotifyEvents(std::span<const std::string> events);
  /// The keywords of a set; empty when the attribute is absent or not a set. So one event alone,
  /// which is a set of one when it is set here, is none any more when it has been encoded and
  /// decoded: the binary form makes no difference between a value and a set of one.
  [[nodiscard]] std::vector<std::string> notifyEvents() const;
  /// "notify-pull-method" = "ippget": events wait at the server for Get-Notifications (RFC 3996).
  void setIPPGetDeliverySchema();
  /// "notify-recipient-uri": the server sends events there.
  void setPushDeliverySchemaWithRecipient(const URL& recipient);

  // --- Queue settings ---------------------------------------------------------------------------
  //
  // What CUPS-Add-Modify-Printer sets. All of these are operation attributes here.

  /// "printer-uri".
  void setPrinterURI(const URL& printer);
  [[nodiscard]] std::optional<URL> printerURI() const;
  /// "device-uri": the device behind the queue.
  void setDeviceURI(const URL& device);
  [[nodiscard]] std::optional<URL> deviceURI() const;
  /// "printer-is-accepting-jobs", RFC 8011 §5.4.23.
  void setPrinterIsAcceptingJobs(bool isAccepting);
  /// False when absent.
  [[nodiscard]] bool printerIsAcceptingJobs() const;
  /// "printer-info", RFC 8011 §5.4.6: below 1024 characters.
  void setPrinterInfo(std::string_view info);
  [[nodiscard]] std::optional<std::string> printerInfo() const;
  /// "printer-location", RFC 8011 §5.4.5: below 1024 characters.
  void setPrinterLocation(std::string_view location);
  [[nodiscard]] std::optional<std::string> printerLocation() const;
  /// "printer-state", RFC 8011 §5.4.11: 3 idle, 5 stopped.
  void setPrinterState(std::int32_t state);
  [[nodiscard]] std::optional<std::int32_t> printerState() const;
  /// "printer-state-message", RFC 8011 §5.4.13: below 1024 characters.
  void setPrinterStateMessage(std::string_view message);
  [[nodiscard]] std::optional<std::string> printerStateMessage() const;
  /// "requesting-user-name-allowed": the only users that may print, each below 256 characters. An
  /// empty list raises as an empty set does. It goes to the operation group, as all settings here
  /// do by design; the CUPS print server takes this one from a printer group only, and says nothing
  /// when it is elsewhere: use `addGroup(IPPAttributeGroup::printerGroup())` and `addNamedValues`.
  void setAllowedUserNames(std::span<const std::string> names);
  /// A single name is a list of one; a value of another kind in a set is left out.
  [[nodiscard]] std::optional<std::vector<std::string>> allowedUserNames() const;
  /// "requesting-user-name-denied": users that may not print, as `setAllowedUserNames`.
  void setDeniedUserNames(std::span<const std::string> names);
  /// As `allowedUserNames`.
  [[nodiscard]] std::optional<std::vector<std::string>> deniedUserNames() const;
  /// "printer-is-shared": the server offers the queue to others. There is no getter by design; a
  /// response tells whether it does.
  void setPrinterIsShared(bool isShared);

  // --- Attributes -------------------------------------------------------------------------------

  /// The operation-id, RFC 8011 §5.4.15.
  [[nodiscard]] std::int32_t ippOperationId() const noexcept { return ippTag(); }
  /// `operationName` of the operation-id. Lives for the process.
  [[nodiscard]] std::string_view ippOperationCodename() const noexcept;
  /// The language and the country of the user's locale as a tag of RFC 5646 in lower case:
  /// "pt-br", "ja".
  [[nodiscard]] std::string currentLanguageTag() const;

  /// Adds "attributes-charset" = "utf-8" and "attributes-natural-language" = `currentLanguageTag`;
  /// done for every new request. A second call adds them once more.
  void addDefaultRequestAttributes();
  /// Adds "requesting-user-name" (RFC 8011 §9.3) = the login name of the user, or the user's number
  /// in decimal where the system knows no name.
  void addRequestingUserNameAttribute();
  /// Adds "requested-attributes", RFC 8011 §4.2.5.1, a set of keywords. Raises `RangeException`
  /// "Invalid parameter" for an empty list and for a name of 256 characters and more; nothing is
  /// added then.
  void setRequestedAttributes(std::span<const std::string> names);

  // Each appends to the request's own group of its kind, which is made when its first attribute
  // comes: the one that this request made itself, or the first of the kind in a decoded one. The
  // attribute is shared and never replaces another; a null one does nothing, and makes no group.

  /// To the operation group.
  void addOperationAttribute(std::shared_ptr<IPPAttribute> attribute);
  /// To the subscription group.
  void addSubscriptionAttribute(std::shared_ptr<IPPAttribute> attribute);
  /// To the job group.
  void addJobAttribute(std::shared_ptr<IPPAttribute> attribute);
  /// To the operation group a new attribute of this name, which is copied, and this value. A null
  /// value makes one without a value, of which no reader of the binary form can make sense.
  void addOperationValue(IPPValue::Pointer value, std::string_view name);
  /// The same to the subscription group.
  void addSubscriptionValue(IPPValue::Pointer value, std::string_view name);
  /// Adds an attribute for each entry, in the order of the dictionary, to the last group whose name
  /// matches `groupName`, a pattern. Where there is none, an operation, subscription or job group
  /// is made for exactly that name, also by an empty dictionary; for every other name nothing is
  /// done.
  void addNamedValues(const IPPValueDictionary& values, std::string_view groupName);

  /// By group tag: operation, job, subscription group, however they were made. Groups of one tag
  /// stay in their order.
  [[nodiscard]] Groups sortedGroupsForIPPCoding() const override;
  /// "OPERATION = (GROUPS)".
  [[nodiscard]] std::string description() const override;
  /// "IPPRequest".
  [[nodiscard]] std::string_view className() const noexcept override;

  // --- Performing, scheduled --------------------------------------------------------------------
  //
  // The exchange happens on the run loop of the calling thread (`RunLoop::current`), which has to
  // be run. While it is in progress it holds the request, so the last reference to the request may
  // be dropped; the delegate is not held.

  /// Starts the exchange; does nothing while one is held. The outcome is told to the delegate,
  /// exactly once, in a later turn of the run loop, whatever is wrong with `target`; after `cancel`
  /// it is not. Whatever the scheme of `target` nothing is encrypted
  /// (`IPPConnectionHandler::HTTPURLForIPPTargetURL`). What the delegate throws from within the
  /// start comes out of here, and nothing was started then.
  ///
  /// A finished exchange is still held: to send the request again, `cancel` it first. That holds
  /// within the delegate's operations too. Within `requestWillSend` and `dataStreamForRequest` a
  /// cancelled exchange never starts, and one that is then asked for begins as soon as they have
  /// returned, with `requestWillSend` again.
  void sendTo(const URL& target);
  /// Ends the exchange at once, if there is one, and lets go of it; the delegate is told nothing
  /// more. Without one it does nothing.
  void cancel();
  /// True from `sendTo` until `cancel`, also when the outcome has long been told.
  [[nodiscard]] bool isInProgress() const noexcept { return requestHandler_ != nullptr; }

  /// The delegate, not held by the request; null when there is none or it is gone.
  [[nodiscard]] std::shared_ptr<IPPRequestDelegate> delegate() const { return delegate_.lock(); }
  /// Takes the place of an earlier delegate, also in the middle of an exchange; an empty pointer is
  /// none. The application keeps it alive.
  void setDelegate(std::weak_ptr<IPPRequestDelegate> delegate) { delegate_ = std::move(delegate); }

  /// A new stream, not yet open, over the request as it is now and then the document that the
  /// delegate supplies, which it is asked for; null when there is none.
  [[nodiscard]] std::shared_ptr<IPPMessageStream> messageStream();
  /// The document that the delegate supplies, which it is asked for; null when there is none.
  [[nodiscard]] std::shared_ptr<InputStream> dataStreamForRequest();

  // The answers to the exchange: each passes the call on to the delegate with this request, and
  // returns what that returns; without a delegate nothing, and null. They are not to be called.

  void requestWillSend(IPPConnectionHandler& handler) override;
  void requestDidReceiveResponse(IPPConnectionHandler& handler,
                                 const std::shared_ptr<IPPResponse>& response,
                                 const std::shared_ptr<const Error>& error) override;
  std::shared_ptr<OutputStream> dataStreamForResponse(const std::shared_ptr<IPPResponse>& response,
                                                      IPPConnectionHandler& handler) override;
  void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& response,
                                    const std::shared_ptr<OutputStream>& stream,
                                    IPPConnectionHandler& handler) override;
  /// As every message answers it (`KeyValueAccess::valueForKey`): the exchange is told
  /// "ippOperationCodename", and an application what it asks for.
  [[nodiscard]] KeyValue valueForKey(std::string_view key) const override;

  // --- Performing, blocking ---------------------------------------------------------------------

  /// Idle time in seconds after which an exchange fails, 60 in every new request: no octet in
  /// either direction (`HTTPRequest::timeoutInterval`). 0 and below, and what is no number: never.
  [[nodiscard]] double timeoutInterval() const noexcept { return timeoutInterval_; }
  /// Sets `timeoutInterval` for exchanges that are started afterwards; the name without "out" is
  /// the interface's own.
  void setTimeInterval(double seconds) noexcept { timeoutInterval_ = seconds; }
  /// How many octets an answer may have, with what follows the message: 256 MiB
  /// (`kHTTPDefaultMaximumBodyLength`) in every new request. A longer one is a transport failure,
  /// `HTTPErrorCode::dataLengthExceedsMaximum`.
  [[nodiscard]] std::size_t maximumResponseLength() const noexcept {
    return maximumResponseLength_;
  }
  /// Sets `maximumResponseLength` for exchanges that are started afterwards.
  void setMaximumResponseLength(std::size_t octets) noexcept { maximumResponseLength_ = octets; }

  /// Posts the request to `target` and blocks until the whole answer is there; the delegate is told
  /// nothing, and the run loop of the thread does not run. `error` may be null; otherwise it is
  /// set.
  ///
  /// - The answer decodes: returns the response. `*error` is its `status` when
  ///   `IPPResponse::successfulOk` is false, and otherwise null, also for a success with
  ///   reservations (successful-ok-ignored-or-substituted-attributes, ...): look at
  ///   `IPPResponse::statusCode`.
  /// - It does not decode: returns null and sets `*error` to null, which is the one way to tell.
  /// - There is no answer: returns null and sets `*error` to the transport failure, of
  ///   `kHTTPClientErrorDomain`; `HTTPErrorCode::badURL` for a target without a host.
  ///
  /// The HTTP status is not looked at. Whatever the scheme of `target` nothing is encrypted, for
  /// "ipps" and "https" neither (`IPPConnectionHandler::HTTPURLForIPPTargetURL`).
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         std::shared_ptr<const Error>* error = nullptr);
  /// The same, for a literal `nullptr` in the place of a stream.
  std::shared_ptr<IPPResponse> performOn(const URL& target, std::nullptr_t,
                                         std::shared_ptr<const Error>* error);
  /// The same with a document, which is opened here, read to its end into memory and closed, and
  /// follows the request. A stream that cannot be opened or fails ends there as an empty or short
  /// document does: only its own `streamError` tells. What it raises comes out of here, and nothing
  /// was sent then.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         const std::shared_ptr<InputStream>& dataStream,
                                         std::shared_ptr<const Error>* error = nullptr);
  /// The same with the octets after the response written to an output stream, which is opened and
  /// closed here when there is an answer. They are written also when the response does not decode:
  /// from there on. Whether all were taken only the stream's own `streamError` tells; what it
  /// raises comes out of here.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         const std::shared_ptr<OutputStream>& returningDataStream,
                                         std::shared_ptr<const Error>* error = nullptr);
  /// Both. Either stream may be null.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         const std::shared_ptr<InputStream>& dataStream,
                                         const std::shared_ptr<OutputStream>& returningDataStream,
                                         std::shared_ptr<const Error>* error = nullptr);

 protected:
  /// An empty request, to be read into.
  IPPRequest();

  void awakeAfterReading() override;
  [[nodiscard]] std::shared_ptr<IPPMessage> makeEmptyCopy() const override;
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

  /// A new request with the default attributes, "job-uri" and the user.
  static Pointer _requestWithIdJobURI(std::int32_t operationId, const URL& job);
  /// A new request with the default attributes, "printer-uri" and the user.
  static Pointer _requestWithIdPrinterURI(std::int32_t operationId, const URL& printer);
  /// What `jobCreateSubscriptionRequest` makes; an absent number raises as said there.
  static Pointer _jobCreateSubscriptionRequest(std::optional<std::int32_t> jobId, const URL& target,
                                               std::span<const std::string> events);
  /// As `_requestWithIdPrinterURI`, and "notify-subscription-id".
  static Pointer _subscriptionOperation(std::int32_t operationId, std::int32_t subscriptionId,
                                        const URL& target);
  /// CUPS-Get-Printers with `_addPrinterFilteringAttributes` of `mask`.
  static Pointer _filteredPrintersRequest(std::uint32_t mask);
  /// "printer-type" = 0 and this "printer-type-mask".
  void _addPrinterFilteringAttributes(std::uint32_t mask);
  /// The request's own group of that kind, which is made and appended when there is none yet; never
  /// null.
  const Group& _operationGroup();
  /// The same.
  const Group& _subscriptionGroup();
  /// The same.
  const Group& _jobGroup();

 private:
  struct ReadingKey {
    explicit ReadingKey() = default;
  };

 public:
  /// Of use to the reading constructors only.
  explicit IPPRequest(ReadingKey /*key*/) : IPPRequest() {}

 private:
  struct LookedUp {
    bool operation = true;
    bool subscription = true;
    bool job = true;
  };

  const Group& demand(Group& field, const IPPGroupClass& groupClass);
  void start(const URL& target, const std::shared_ptr<IPPRequest>& self);
  void letGoOfHandler();

  LookedUp lookedUp_;
  Group operationGroup_;
  Group subscriptionGroup_;
  Group jobGroup_;
  std::weak_ptr<IPPRequestDelegate> delegate_;
  std::shared_ptr<IPPScheduledRequest> requestHandler_;
  bool isStarting_ = false;
  bool isCancelledWhileStarting_ = false;
  /// Asked for while a cancelled start was still under way.
  std::optional<URL> sendNextTo_;
  double timeoutInterval_;
  std::size_t maximumResponseLength_;
};

}  // namespace platen::inline v0
