// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Requests (RFC 8011 §4.1, §4.2, §4.3).

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/IPPMessage.h"
#include "platen/IPPMessageStream.h"
#include "platen/IPPScheduledRequest.h"
#include "platen/Stream.h"
#include "platen/URL.h"

namespace platen::inline v0 {

class IPPResponse;

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
class PLATEN_EXPORT IPPRequest : public IPPMessage,
                                 public IPPConnectionDelegate,
                                 public std::enable_shared_from_this<IPPRequest> {
 public:
  using Pointer = std::shared_ptr<IPPRequest>;

  // --- Construction -----------------------------------------------------------------------------

  /// A new request for the operation, with the default attributes.
  static Pointer requestWithId(std::int32_t operationId);
  explicit IPPRequest(std::int32_t operationId);
  ~IPPRequest() override;

  // As the reading constructors of `IPPMessage`. A decoded request has the default time-out.

  static Pointer initWithDataRepresentation(Bytes data);
  static Pointer initWithStream(const std::shared_ptr<InputStream>& stream);
  static Pointer initWithFileHandle(int descriptor);
  static Pointer initWithCoder(IPPCoder& coder);

  /// The name of every known operation by its id.
  static const std::map<std::int32_t, std::string_view>& operationIdToNameSpec();
  /// The name of the operation, or "Unknown-Operation". Lives for the process.
  static std::string_view operationName(std::int32_t operationId) noexcept;

  // The factories and setters below raise `RangeException` "Invalid parameter" for a URL of 1024
  // characters and more.

  // --- Jobs -------------------------------------------------------------------------------------

  /// Get-Job-Attributes, RFC 8011 §4.3.4.
  static Pointer jobAttributesRequest(const URL& job);
  /// Print-Job, RFC 8011 §4.2.1: the document follows the request.
  static Pointer jobPrintRequest(const URL& queue);

  /// "job-uri".
  void setJobURI(const URL& job);
  /// The URL of "job-uri"; nothing when absent.
  [[nodiscard]] std::optional<URL> jobURI() const;

  // --- Printers ---------------------------------------------------------------------------------

  /// Get-Printer-Attributes, RFC 8011 §4.2.5.
  static Pointer printerAttributesRequest(const URL& printer);

  /// "printer-uri".
  void setPrinterURI(const URL& printer);
  /// The URL of "printer-uri"; nothing when absent.
  [[nodiscard]] std::optional<URL> printerURI() const;

  // --- Attributes -------------------------------------------------------------------------------

  [[nodiscard]] std::int32_t ippOperationId() const noexcept { return ippTag(); }
  /// `operationName` of the operation-id.
  [[nodiscard]] std::string_view ippOperationCodename() const noexcept;
  /// The language and the country of the user's locale as a tag of RFC 5646 in lower case:
  /// "pt-br", "ja".
  [[nodiscard]] std::string currentLanguageTag() const;

  /// Adds "attributes-charset" = "utf-8" and "attributes-natural-language" = `currentLanguageTag`;
  /// done for every new request.
  void addDefaultRequestAttributes();
  /// Adds "requesting-user-name" = the login name of the user.
  void addRequestingUserNameAttribute();
  /// Adds "requested-attributes", RFC 8011 §4.2.5.1. An empty list raises as an empty set does.
  void setRequestedAttributes(std::span<const std::string> names);

  // Each adds to the group of its kind, which is made when it is needed first.

  void addOperationAttribute(std::shared_ptr<IPPAttribute> attribute);
  void addSubscriptionAttribute(std::shared_ptr<IPPAttribute> attribute);
  void addJobAttribute(std::shared_ptr<IPPAttribute> attribute);
  void addOperationValue(IPPValue::Pointer value, std::string_view name);
  void addSubscriptionValue(IPPValue::Pointer value, std::string_view name);
  /// Adds an attribute for each entry to the last group of that name. A missing operation,
  /// subscription or job group is made; for every other name nothing is done.
  void addNamedValues(const IPPValueDictionary& values, std::string_view groupName);

  /// By group tag: operation, job, subscription group, however they were made.
  [[nodiscard]] Groups sortedGroupsForIPPCoding() const override;
  /// "OPERATION = GROUPS".
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] std::string_view className() const noexcept override;

  // --- Performing, scheduled
  // ----------------------------------------------------------------------
  //
  // The exchange happens on the run loop of the calling thread (`RunLoop::current`), which has to
  // be run. While it is in progress it holds the request, so the last reference to the request may
  // be dropped; the delegate is not held.

  /// Starts the exchange; does nothing while one is held. The outcome is told to the delegate,
  /// exactly once, in a later turn of the run loop; after `cancel` it is not.
  ///
  /// A finished exchange is still held: to send the request again, `cancel` it first. That holds
  /// within the delegate's operations too, but for `requestWillSend` and `dataStreamForRequest`,
  /// where only `cancel` has an effect: the exchange then never starts.
  void sendTo(const URL& target);
  /// Ends the exchange at once, if there is one, and lets go of it; the delegate is told nothing
  /// more.
  void cancel();
  /// True from `sendTo` until `cancel`, also when the outcome has long been told.
  [[nodiscard]] bool isInProgress() const noexcept { return requestHandler_ != nullptr; }

  /// Null when there is none or it is gone.
  [[nodiscard]] std::shared_ptr<IPPRequestDelegate> delegate() const { return delegate_.lock(); }
  void setDelegate(std::weak_ptr<IPPRequestDelegate> delegate) { delegate_ = std::move(delegate); }

  /// A stream over the request and then the document that the delegate supplies, which it is asked
  /// for; null when there is none.
  [[nodiscard]] std::shared_ptr<IPPMessageStream> messageStream();
  /// The delegate's document, or null.
  [[nodiscard]] std::shared_ptr<InputStream> dataStreamForRequest();

  // The answers to the exchange: each passes the call on to the delegate with this request.

  void requestWillSend(IPPConnectionHandler& handler) override;
  void requestDidReceiveResponse(IPPConnectionHandler& handler,
                                 const std::shared_ptr<IPPResponse>& response,
                                 const std::shared_ptr<const Error>& error) override;
  std::shared_ptr<OutputStream> dataStreamForResponse(const std::shared_ptr<IPPResponse>& response,
                                                      IPPConnectionHandler& handler) override;
  void responseDidReceiveDataStream(const std::shared_ptr<IPPResponse>& response,
                                    const std::shared_ptr<OutputStream>& stream,
                                    IPPConnectionHandler& handler) override;
  /// `ippOperationCodename` under that key; nothing under every other.
  [[nodiscard]] std::optional<std::string> valueForKey(std::string_view key) const override;

  // --- Performing, blocking
  // -----------------------------------------------------------------------

  /// Idle time in seconds after which an exchange fails, 60 in every new request: no octet in
  /// either direction. 0 and below: never.
  [[nodiscard]] double timeoutInterval() const noexcept { return timeoutInterval_; }
  /// Sets `timeoutInterval`; the name without "out" is the interface's own.
  void setTimeInterval(double seconds) noexcept { timeoutInterval_ = seconds; }

  /// Posts the request to `target` and blocks until the whole answer is there. Returns the
  /// response, also when its status is an error; `error` is then its `status`, and null when all
  /// went well. Returns null and sets `error` to the transport failure when there is no answer;
  /// returns null and sets no error when the answer does not decode, which is the one way to tell.
  /// The HTTP status is not looked at. `error` may be null.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         std::shared_ptr<const Error>* error = nullptr);
  /// The same with a document, which is read to its end into memory and follows the request. A
  /// stream that cannot be opened or fails ends there as an empty or short document does: only its
  /// own `streamError` tells.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         const std::shared_ptr<InputStream>& dataStream,
                                         std::shared_ptr<const Error>* error = nullptr);
  /// The same with the octets after the response written to an output stream, which is opened and
  /// closed here. They are written also when the response does not decode: from there on.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         const std::shared_ptr<OutputStream>& returningDataStream,
                                         std::shared_ptr<const Error>* error = nullptr);
  /// Both. Either stream may be null; this is the one to give a literal `nullptr` to.
  std::shared_ptr<IPPResponse> performOn(const URL& target,
                                         const std::shared_ptr<InputStream>& dataStream,
                                         const std::shared_ptr<OutputStream>& returningDataStream,
                                         std::shared_ptr<const Error>* error = nullptr);

 protected:
  /// An empty request, to be read into.
  IPPRequest();

  void awakeAfterReading() override;
  [[nodiscard]] std::shared_ptr<IPPMessage> makeEmptyCopy() const override;

  static Pointer _requestWithIdJobURI(std::int32_t operationId, const URL& job);
  static Pointer _requestWithIdPrinterURI(std::int32_t operationId, const URL& printer);
  const Group& _operationGroup();
  const Group& _subscriptionGroup();
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

  LookedUp lookedUp_;
  Group operationGroup_;
  Group subscriptionGroup_;
  Group jobGroup_;
  std::weak_ptr<IPPRequestDelegate> delegate_;
  std::shared_ptr<IPPScheduledRequest> requestHandler_;
  bool isStarting_ = false;
  bool isCancelledWhileStarting_ = false;
  double timeoutInterval_;
};

}  // namespace platen::inline v0
