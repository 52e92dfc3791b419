// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Attribute groups (RFC 8010 §3.1.2, §3.5.1).

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/Dictionary.h"
#include "platen/Export.h"
#include "platen/IPPAttribute.h"
#include "platen/IPPCoder.h"
#include "platen/RawValue.h"

namespace platen::inline v0 {

class IPPAttributeGroup;

/// A group class as an object: its delimiter tag, its name, and how to make one.
///
/// Threads: immutable; may be shared between threads.
class PLATEN_EXPORT IPPGroupClass {
 public:
  /// A new empty group.
  using Make = std::shared_ptr<IPPAttributeGroup> (*)();

  /// A class of these. `className` and `name` must live for the process; `base` is the class that
  /// it is derived from, null for one that is derived from none.
  constexpr IPPGroupClass(std::string_view className, const IPPGroupClass* base, std::int32_t tag,
                          std::string_view name, Make maker) noexcept
      : className_(className), name_(name), base_(base), make_(maker), tag_(tag) {}
  IPPGroupClass(const IPPGroupClass&) = delete;
  IPPGroupClass& operator=(const IPPGroupClass&) = delete;

  /// For example "IPPJobGroup". Lives for the process.
  [[nodiscard]] constexpr std::string_view className() const noexcept { return className_; }
  /// The delimiter tag, RFC 8010 §3.5.1.
  [[nodiscard]] constexpr std::int32_t ippTag() const noexcept { return tag_; }
  /// For example "job-attributes-tag". Lives for the process.
  [[nodiscard]] constexpr std::string_view ippName() const noexcept { return name_; }
  /// A new empty group of this class.
  [[nodiscard]] std::shared_ptr<IPPAttributeGroup> make() const { return make_(); }
  /// A new group of this class read from a keyed coder, never null; raises what the coder raises.
  /// An empty one from a sequential coder, since groups are what `decodeIPPGroups` reads.
  [[nodiscard]] std::shared_ptr<IPPAttributeGroup> initWithCoder(IPPCoder& coder) const;
  /// True when this is `other` itself or derived from it, at whatever remove.
  [[nodiscard]] bool isKindOf(const IPPGroupClass& other) const noexcept;

 private:
  std::string_view className_;
  std::string_view name_;
  const IPPGroupClass* base_;
  Make make_;
  std::int32_t tag_;
};

/// Puts a group class into the catalog, as `IPPValueRegistration` does for value classes. Of two
/// classes with the same name the one registered first is found.
///
/// Threads: made before threads are, or by one thread; lives for the process.
class PLATEN_EXPORT IPPGroupRegistration {
 public:
  /// `groupClass` is not copied and must live for the process.
  explicit IPPGroupRegistration(const IPPGroupClass& groupClass) noexcept;
  IPPGroupRegistration(const IPPGroupRegistration&) = delete;
  IPPGroupRegistration& operator=(const IPPGroupRegistration&) = delete;

  /// The class that was registered.
  [[nodiscard]] const IPPGroupClass& groupClass() const noexcept { return class_; }
  /// The one that was registered after this one, or null.
  [[nodiscard]] const IPPGroupRegistration* next() const noexcept { return next_; }

 private:
  const IPPGroupClass& class_;
  const IPPGroupRegistration* next_ = nullptr;
};

/// An ordered list of attributes of one kind; this class itself is the group of unsupported
/// attributes, and what every unknown delimiter gives.
///
///     group = delimiter-tag *attribute
///
/// Names are looked up as patterns: the key is matched against the whole name, `*` stands for any
/// run of characters, `?` for exactly one, letter case and diacritic marks are ignored.
///
/// Threads: one thread at a time. A reference object: held by `std::shared_ptr`.
class PLATEN_EXPORT IPPAttributeGroup : public IPPCodable {
 public:
  using Pointer = std::shared_ptr<IPPAttributeGroup>;
  using Attributes = std::vector<std::shared_ptr<IPPAttribute>>;
  using Catalog = std::map<std::string_view, const IPPGroupClass*>;

  /// Tag 5, "unsupported-attributes-tag".
  static const IPPGroupClass descriptor;

  /// A new group of unsupported attributes, without any.
  IPPAttributeGroup() = default;
  IPPAttributeGroup(const IPPAttributeGroup&) = delete;
  IPPAttributeGroup& operator=(const IPPAttributeGroup&) = delete;
  ~IPPAttributeGroup() override;

  // Each is a new empty group, never null, and belongs to no message (`IPPMessage::addGroup`).

  /// Tag 1, "operation-attributes-tag".
  static Pointer operationGroup();
  /// Tag 4, "printer-attributes-tag".
  static Pointer printerGroup();
  /// Tag 2, "job-attributes-tag".
  static Pointer jobGroup();
  /// Tag 6, "subscription-attributes-tag".
  static Pointer subscriptionGroup();
  /// Tag 7, "event-notification-attributes-tag".
  static Pointer notificationEventGroup();

  /// Every registered class by its group name. Filled on first use and never freed.
  static const Catalog& ippGroupsCatalog();
  /// The class registered for `tag`; that of unsupported attributes when there is none.
  static const IPPGroupClass& classForIPPTag(std::int32_t tag) noexcept;

  /// This group's class.
  [[nodiscard]] virtual const IPPGroupClass& ippClass() const noexcept;
  /// The delimiter tag of its class, RFC 8010 §3.5.1.
  [[nodiscard]] std::int32_t ippTag() const noexcept { return ippClass().ippTag(); }
  /// The name of its class, for example "job-attributes-tag". Lives for the process.
  [[nodiscard]] std::string_view name() const noexcept { return ippClass().ippName(); }

  /// All attributes in the order in which they were added or came, none of them null; the list is
  /// valid until the group changes, the attributes as long as they are held.
  [[nodiscard]] const Attributes& attributes() const noexcept { return attributes_; }
  /// The attributes whose name matches `pattern`, in order, shared; none when nothing matches. An
  /// attribute without a name matches no pattern.
  [[nodiscard]] Attributes attributesForName(std::string_view pattern) const;
  /// The first of them, or null.
  [[nodiscard]] std::shared_ptr<IPPAttribute> attributeForName(std::string_view pattern) const;
  /// The same as `attributeForName`.
  [[nodiscard]] std::shared_ptr<IPPAttribute> attributeWithName(std::string_view pattern) const;
  /// The raw object (`IPPValue::value`) of the first match's value; absent when nothing matches,
  /// when it has no value, and when its value has no raw object.
  [[nodiscard]] RawValue attributeValueForKey(std::string_view pattern) const;
  /// That raw object when it is an array, otherwise an array of it alone; nothing when absent.
  [[nodiscard]] std::optional<RawValue::Array> attributeValuesArrayForKey(
      std::string_view pattern) const;
  /// The raw object of each attribute's value by its name ("" for one without); null for one
  /// without a value, and the last one where several share a name. Nothing when the group has no
  /// attributes.
  [[nodiscard]] std::optional<RawValue::Dictionary> namedValues() const;

  /// Appends the attribute, which is shared; a null one is ignored, and nothing is ever replaced.
  void addAttribute(std::shared_ptr<IPPAttribute> attribute);
  /// Appends each of them in order; null ones are ignored. It may be the group's own list.
  void addAttributesFromArray(const Attributes& attributes);
  /// Appends a new attribute for each entry, in the order of the dictionary, which shares its
  /// value: a null one makes an attribute without a value.
  void addNamedValues(const IPPValueDictionary& values);
  /// The attributes in the order in which they are written: as they are, unless a class says
  /// otherwise.
  [[nodiscard]] virtual Attributes _sortedForRequestAttributes() const;

  /// A key that is no property of the group: the first attribute whose name matches it, or absent.
  /// By design nothing is raised here, unlike by a message: groups come in lists, where one may
  /// well lack what the next one has.
  [[nodiscard]] KeyValue valueForUndefinedKey(std::string_view key) const override;

  /// The other group's class is this one's or derived from it, and the attributes are equal one by
  /// one. One-sided by design: unsupported attributes equal an operation group with the same
  /// attributes, and not the other way round.
  [[nodiscard]] bool isEqual(const IPPAttributeGroup& other) const;
  /// The attributes are equal one by one, in order (`IPPAttribute::isEqual`), whatever the classes.
  [[nodiscard]] bool _isEqualToAttributeGroup(const IPPAttributeGroup& other) const;
  /// Of the names of the attributes alone. Equal groups have equal hashes.
  [[nodiscard]] std::size_t hash() const;
  /// A new group of the same class with a list of its own of the same attributes, which are shared:
  /// what is changed in one of them is changed in both groups.
  [[nodiscard]] Pointer copy() const;
  /// "NAME = (ATTRIBUTES)", each attribute on a line of its own.
  [[nodiscard]] std::string description() const;

  /// That of its class, for example "IPPJobGroup".
  [[nodiscard]] std::string_view className() const noexcept override;
  /// Writes the delimiter tag and the attributes in the order of `_sortedForRequestAttributes`; to
  /// a keyed coder the attributes as they are.
  void encodeWithCoder(IPPCoder& coder) const override;

 protected:
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  Attributes attributes_;
};

/// Tag 1, "operation-attributes-tag". Written with the attributes of RFC 8011 §4.1.4 and §4.1.5 at
/// its head, whatever order they were added in.
/// Threads: one thread at a time.
class PLATEN_EXPORT IPPOperationGroup : public IPPAttributeGroup {
 public:
  static const IPPGroupClass descriptor;
  [[nodiscard]] const IPPGroupClass& ippClass() const noexcept override { return descriptor; }
  /// By `IPPAttribute::_attributeOrder`; attributes of the same place stay in their order.
  [[nodiscard]] Attributes _sortedForRequestAttributes() const override;
};

/// Tag 2, "job-attributes-tag". Threads: one thread at a time.
class PLATEN_EXPORT IPPJobGroup : public IPPAttributeGroup {
 public:
  static const IPPGroupClass descriptor;
  [[nodiscard]] const IPPGroupClass& ippClass() const noexcept override { return descriptor; }
};

/// Tag 4, "printer-attributes-tag". Threads: one thread at a time.
class PLATEN_EXPORT IPPPrinterGroup : public IPPAttributeGroup {
 public:
  static const IPPGroupClass descriptor;
  [[nodiscard]] const IPPGroupClass& ippClass() const noexcept override { return descriptor; }
};

/// Tag 6, "subscription-attributes-tag" (RFC 3995). Threads: one thread at a time.
class PLATEN_EXPORT IPPSubscriptionGroup : public IPPAttributeGroup {
 public:
  static const IPPGroupClass descriptor;
  [[nodiscard]] const IPPGroupClass& ippClass() const noexcept override { return descriptor; }
};

/// Tag 7, "event-notification-attributes-tag" (RFC 3995). Threads: one thread at a time.
class PLATEN_EXPORT IPPNotificationEventGroup : public IPPAttributeGroup {
 public:
  static const IPPGroupClass descriptor;
  [[nodiscard]] const IPPGroupClass& ippClass() const noexcept override { return descriptor; }
};

}  // namespace platen::inline v0
