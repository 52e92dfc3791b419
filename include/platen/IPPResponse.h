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

namespace platen::inline v0 {

/// A response: a message whose tag is a status-code. Whether it is a success or an error is told by
/// the name of its status; one that is not in the table (`ippStatusToNameSpec`) is neither.
///
/// Threads: one thread at a time. A reference object: held by `std::shared_ptr`.
class PLATEN_EXPORT IPPResponse : public IPPMessage {
 public:
  using Pointer = std::shared_ptr<IPPResponse>;

  // As the reading constructors of `IPPMessage`.

  static Pointer initWithDataRepresentation(Bytes data);
  static Pointer initWithStream(const std::shared_ptr<InputStream>& stream);
  static Pointer initWithFileHandle(int descriptor);
  static Pointer initWithCoder(IPPCoder& coder);

  /// A response with the request-id 1, the charset "utf-8" and the identifier of the user's locale
  /// as it is ("en_US"; a request has it as a language tag).
  static Pointer initWithStatusCode(std::int32_t statusCode);
  /// The same, with "status-message" where a message is given.
  static Pointer responseWithStatusCode(std::int32_t statusCode,
                                        std::optional<std::string_view> message);
  /// A response that answers `request` on the spot: successful-ok, with its request-id and its own
  /// charset and language attributes, shared; client-error-bad-request when it lacks one of them.
  /// Its "status-message" is empty.
  static Pointer responseForRequest(const IPPRequest& request);
  IPPResponse(std::int32_t statusCode, std::int32_t requestId, Groups groups = {});
  ~IPPResponse() override;

  /// The name of every known status by its code.
  static const std::map<std::int32_t, std::string_view>& ippStatusToNameSpec();
  /// The name of the status, for example "client-error-not-found"; nothing for an unknown one.
  /// Lives for the process.
  static std::optional<std::string_view> statusDescriptionForStatusCode(
      std::int32_t statusCode) noexcept;

  [[nodiscard]] std::int32_t statusCode() const noexcept { return ippTag(); }
  [[nodiscard]] std::optional<std::string_view> statusDescription() const noexcept;
  [[nodiscard]] bool successfulOk() const noexcept;
  [[nodiscard]] bool clientError() const noexcept;
  [[nodiscard]] bool serverError() const noexcept;
  /// True when the same request may succeed later: the service is unavailable, had a temporary
  /// error or is busy.
  [[nodiscard]] bool allowsRequestResubmission() const noexcept;

  /// The status as an error record of `IPPErrorDomain`: its name as the description (for an unknown
  /// status its code in hexadecimal), and lists of the names of unsupported attributes under
  /// `IPPErrorUnsupportedAttributeNames`, `IPPErrorUnknownAttributeValues`,
  /// `IPPErrorNoValueAttributes`, `IPPErrorNotSettableAttributes` and
  /// `IPPErrorAdminDefineAttributes`, each only when there are any.
  [[nodiscard]] std::shared_ptr<const Error> status() const;

  /// The text of "status-message"; nothing when absent.
  [[nodiscard]] std::optional<std::string> statusMessage() const;
  [[nodiscard]] std::optional<std::string> attributesCharset() const;
  [[nodiscard]] std::optional<std::string> attributesLanguage() const;

  /// "STATUS = GROUPS".
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] std::string_view className() const noexcept override;

  // --- Look-ups that the accessors are made of
  // ----------------------------------------------------

  [[nodiscard]] std::vector<std::string> _allUnsupportedAttributeNames() const;
  [[nodiscard]] std::vector<std::string> _allUnknownAttributeNames() const;
  [[nodiscard]] std::vector<std::string> _allNoValueAttributeNames() const;
  [[nodiscard]] std::vector<std::string> _allNotSettableAttributeNames() const;
  [[nodiscard]] std::vector<std::string> _allAdminDefineAttributeNames() const;
  /// The names of the attributes in the groups of that name whose value has that syntax, in order,
  /// duplicates kept.
  [[nodiscard]] std::vector<std::string> _allAttributeNamesFromGroupsNamed(
      std::string_view groupName, std::string_view syntaxName) const;
  /// The attributes of the first group of that name in which one has the given value.
  [[nodiscard]] std::optional<Attributes> _attributesForGroup(std::string_view groupName,
                                                              const RawValue& value) const;
  [[nodiscard]] std::optional<Attributes> _attributesForPrintQueue(const RawValue& value) const;
  [[nodiscard]] std::optional<Attributes> _attributesForSubscriptionWithId(
      const RawValue& value) const;
  [[nodiscard]] std::optional<Attributes> _attributesForJobWithUUID(const RawValue& value) const;
  /// The raw object of the attribute of that name among `_attributesForPrintQueue`; absent when
  /// there is none.
  [[nodiscard]] RawValue _attributeValueForPrintQueue(const RawValue& value,
                                                      std::string_view name) const;

 protected:
  [[nodiscard]] std::shared_ptr<IPPMessage> makeEmptyCopy() const override;
};

}  // namespace platen::inline v0
