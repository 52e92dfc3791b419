// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Messages (RFC 8010 §3.1.1): what requests and responses have in common.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/Data.h"
#include "platen/Export.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPCoder.h"
#include "platen/RawValue.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

/// An IPP message: a tag (the operation-id of a request, the status-code of a response), a
/// request-id and an ordered list of attribute groups.
///
///     message = %x01.01 tag-INT16 request-id-INT32 *group %x03         ; RFC 8010 §3.1.1
///
/// Attributes are looked up by patterns: the key is matched against the whole name, `*` stands for
/// any run of characters, `?` for exactly one, letter case and diacritic marks are ignored.
///
/// The reading constructors return null, never half a message, when the source is absent or empty,
/// when the version is not 1.1 or above (nor one with an octet of 0x80 and above), and when the
/// octets do not decode. They raise nothing.
///
/// Threads: one thread at a time. A reference object: held by `std::shared_ptr`.
class PLATEN_EXPORT IPPMessage : public IPPCodable,
                                 public std::enable_shared_from_this<IPPMessage> {
 public:
  /// A group; never null in a message.
  using Group = std::shared_ptr<IPPAttributeGroup>;
  using Groups = std::vector<Group>;
  using Attributes = IPPAttributeGroup::Attributes;

  /// A message of these. The groups are shared, in their order; null ones are left out. The tag is
  /// not checked, but only its low 16 bits are written.
  IPPMessage(std::int32_t tag, std::int32_t requestId, Groups groups = {});
  IPPMessage(const IPPMessage&) = delete;
  IPPMessage& operator=(const IPPMessage&) = delete;
  ~IPPMessage() override;

  /// A new message from the octets at the beginning of `data`, which is not needed any more
  /// afterwards; what follows the message is not looked at.
  static std::shared_ptr<IPPMessage> initWithDataRepresentation(Bytes data);
  /// From an open stream, which is neither opened nor closed here and is left right after the
  /// message; after a null result it may be anywhere.
  static std::shared_ptr<IPPMessage> initWithStream(const std::shared_ptr<InputStream>& stream);
  /// From a descriptor, which stays the caller's and is left right after the message; after a null
  /// result it may be anywhere.
  static std::shared_ptr<IPPMessage> initWithFileHandle(int descriptor);
  /// From a coder of either face; a general one (`IPPCoder`) gives no groups, and so no message.
  /// With a keyed one a lack of memory (std::bad_alloc) comes out.
  static std::shared_ptr<IPPMessage> initWithCoder(IPPCoder& coder);

  /// The whole message in its binary form, version 1.1, whatever version was read: the groups in
  /// the order of `sortedGroupsForIPPCoding`.
  [[nodiscard]] Data dataRepresentation() const;
  /// Writes it to a descriptor, which stays the caller's, in one write. Always true, also when only
  /// a part or nothing could be written.
  bool writeToFileHandle(int descriptor) const;  // NOLINT(modernize-use-nodiscard)
  /// Writes it to an open stream in one write; true when the stream took all of it. A partial write
  /// is a failure and is not completed. Raises what the stream raises.
  [[nodiscard]] bool writeToStream(OutputStream& stream) const;

  /// The operation-id or the status-code; a status of 0x8000 and above is negative.
  [[nodiscard]] std::int32_t ippTag() const noexcept { return tag_; }
  /// The number that ties a response to its request, RFC 8011 §4.1.2.
  [[nodiscard]] std::int32_t requestId() const noexcept { return requestId_; }
  /// All groups in the order in which they were added or came, none of them null; the list is valid
  /// until the message changes, the groups as long as they are held.
  [[nodiscard]] const Groups& ippGroups() const noexcept { return groups_; }
  /// Appends the group, which is shared; a null one is ignored, and groups of one kind stay apart.
  void addGroup(Group group);
  /// The groups in the order in which they are written: as they are, unless a class says otherwise.
  [[nodiscard]] virtual Groups sortedGroupsForIPPCoding() const;

  // --- Groups -----------------------------------------------------------------------------------

  /// The groups whose name matches `pattern`, in order, shared; none when nothing matches.
  [[nodiscard]] Groups ippGroupsWithName(std::string_view pattern) const;
  /// The first operation group, or null.
  [[nodiscard]] Group operationGroup() const;
  /// The first subscription group, or null.
  [[nodiscard]] Group subscriptionGroup() const;
  /// The groups named "printer-attributes-tag", in order: one for each queue or device that an
  /// answer tells of. None when there is no such group, as in the three below.
  [[nodiscard]] Groups printerGroups() const;
  /// The groups named "job-attributes-tag", in order.
  [[nodiscard]] Groups jobGroups() const;
  /// The groups named "subscription-attributes-tag" (RFC 3995), in order.
  [[nodiscard]] Groups subscriptionGroups() const;
  /// The groups named "event-notification-attributes-tag" (RFC 3995), in order: one for each event.
  [[nodiscard]] Groups notificationEventsGroups() const;
  /// Those of `operationGroup`; nothing when there is none.
  [[nodiscard]] std::optional<Attributes> operationAttributes() const;
  /// Those of `subscriptionGroup`; nothing when there is none.
  [[nodiscard]] std::optional<Attributes> subscriptionAttributes() const;

  // --- Attributes across all groups -------------------------------------------------------------

  /// The attributes whose name matches `pattern`, in group order and then attribute order, shared;
  /// none when nothing matches.
  [[nodiscard]] Attributes attributesForKey(std::string_view pattern) const;
  /// The first of them, or null.
  [[nodiscard]] std::shared_ptr<IPPAttribute> attributeForKey(std::string_view pattern) const;
  /// The raw object of its value (`IPPValue::value`); absent when there is no match, when that has
  /// no value, and when its value has no raw object.
  [[nodiscard]] RawValue attributeValueForKey(std::string_view pattern) const;
  /// The raw objects of the values of `attributesForKey`, each at the index of its attribute:
  /// absent for one without.
  [[nodiscard]] RawValue::Array attributeValuesForKey(std::string_view pattern) const;
  /// One list for each group, in order, of its attributes, shared.
  [[nodiscard]] std::vector<Attributes> allAttributes() const;
  /// The `namedValues` of each group, in order; an empty dictionary stands for a group without
  /// attributes.
  [[nodiscard]] std::vector<RawValue::Dictionary> allNamedValues() const;
  /// The `namedValues` of the first group; nothing when there is none or it is empty.
  [[nodiscard]] std::optional<RawValue::Dictionary> namedValues() const;

  /// A key that is no property of the message. Exactly "@all", "@default" and "@supported" give a
  /// forwarder to the message (`IPPMessageKVCForwarder`); it holds the message, but for one that no
  /// `std::shared_ptr` holds, which must outlive it. Every other key gives the first attribute of
  /// all groups whose name matches it, and raises `UndefinedKeyException` when there is none.
  [[nodiscard]] KeyValue valueForUndefinedKey(std::string_view key) const override;

  /// The same class, and `isEqualToMessage`.
  [[nodiscard]] bool isEqual(const IPPMessage& other) const;
  /// Equal tags, request-ids and groups, in order.
  [[nodiscard]] bool isEqualToMessage(const IPPMessage& other) const;
  /// Of the groups alone; equal messages have equal hashes.
  [[nodiscard]] std::size_t hash() const;
  /// A new message of the same class with a list of its own of the same groups, which are shared:
  /// what is changed in one of them is changed in both messages.
  [[nodiscard]] std::shared_ptr<IPPMessage> copy() const;
  /// The list of the groups, each on a line of its own: "(GROUPS)".
  [[nodiscard]] virtual std::string description() const;

  /// "IPPMessage".
  [[nodiscard]] std::string_view className() const noexcept override;
  /// Writes the whole message; to a keyed coder "tag", "request-id" and "groups".
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  /// An empty message, to be read into.
  IPPMessage() = default;

  /// Reads header and groups, and then calls `awakeAfterReading`; false when they do not decode,
  /// and the message is of no use then. It raises nothing that is a `std::exception`.
  bool readFrom(IPPCoder& coder);
  /// The same from the sources of the reading constructors. They raise nothing.
  bool readFromData(Bytes data);
  bool readFromStream(const std::shared_ptr<InputStream>& stream);
  bool readFromFileHandle(int descriptor);
  /// Called when everything has been read or copied. Does nothing here.
  virtual void awakeAfterReading();
  /// A new, empty message of this message's class. Every class derived from this one, at whatever
  /// remove, must override it: `copy` fills what it returns, and would otherwise give a message of
  /// the base's class, which is not equal to its original.
  [[nodiscard]] virtual std::shared_ptr<IPPMessage> makeEmptyCopy() const;
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  template <class MakeReader>
  bool readFromReader(MakeReader makeReader);
  bool readSequence(IPPCoder& coder);
  bool readKeys(IPPCoder& coder);

  std::int32_t tag_ = 0;
  std::int32_t requestId_ = 0;
  Groups groups_;
};

}  // namespace platen::inline v0
