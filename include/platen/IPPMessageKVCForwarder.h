// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// What the operator keys of a message lead to: objects whose keys are names of attributes.

#include <memory>
#include <string>
#include <string_view>

#include "platen/Export.h"
#include "platen/IPPMessage.h"
#include "platen/KeyValueAccess.h"

namespace platen::inline v0 {

/// Stands for a message while a key path goes on. It has two keys of its own, "object" and
/// "description"; every other key is for its kinds to answer and undefined here. Unlike in other
/// objects no further operation is a key: a forwarder has to leave all other names to attributes.
///
/// Threads: one thread at a time, as the message.
class PLATEN_EXPORT IPPMessageKVCForwarder : public KeyValueAccess {
 public:
  /// A new forwarder of this class to `object`, which it holds; never null. To null: every key but
  /// its own is undefined.
  static std::shared_ptr<IPPMessageKVCForwarder> forwarderWithObject(
      std::shared_ptr<const IPPMessage> object);
  /// The same.
  explicit IPPMessageKVCForwarder(std::shared_ptr<const IPPMessage> object) noexcept;
  IPPMessageKVCForwarder(const IPPMessageKVCForwarder&) = delete;
  IPPMessageKVCForwarder& operator=(const IPPMessageKVCForwarder&) = delete;
  ~IPPMessageKVCForwarder() override;

  /// The message, or null.
  [[nodiscard]] const std::shared_ptr<const IPPMessage>& object() const noexcept { return object_; }
  /// That of the message; "(null)" without one.
  [[nodiscard]] virtual std::string description() const;
  /// The name of its class; for this one "IPPMessageKVCForwarder".
  [[nodiscard]] std::string_view className() const noexcept override;

 protected:
  /// The list of all attributes that match `key` followed by `suffix`, empty when none does.
  /// Raises `UndefinedKeyException` when there is no message.
  [[nodiscard]] KeyValue _attributesForKey(std::string_view key, std::string_view suffix) const;
  /// The text form of the list of the attributes whose name has `part` in it, letter case and
  /// diacritic marks ignored; "(null)" without a message.
  [[nodiscard]] std::string _descriptionOfAttributesWith(std::string_view part) const;
  [[nodiscard]] const KeyValueProperties& _keyValueProperties() const noexcept override;

 private:
  std::shared_ptr<const IPPMessage> object_;
};

/// "@all": a key leads to the list of every attribute of that name, in all groups.
/// Threads: one thread at a time, as the message.
class PLATEN_EXPORT IPPMessageKVCOperatorAllForwarder : public IPPMessageKVCForwarder {
 public:
  using IPPMessageKVCForwarder::IPPMessageKVCForwarder;
  /// A new forwarder to `object`, as in the base class.
  static std::shared_ptr<IPPMessageKVCOperatorAllForwarder> forwarderWithObject(
      std::shared_ptr<const IPPMessage> object);
  /// The attributes whose name matches `key`, in group order and then attribute order; an empty
  /// list when none does. Raises `UndefinedKeyException` when there is no message.
  [[nodiscard]] KeyValue valueForUndefinedKey(std::string_view key) const override;
  [[nodiscard]] std::string_view className() const noexcept override;
};

/// "@default": a key leads to the list of the attributes named by it and "-default".
/// Threads: one thread at a time, as the message.
class PLATEN_EXPORT IPPMessageKVCOperatorDefaultForwarder : public IPPMessageKVCForwarder {
 public:
  using IPPMessageKVCForwarder::IPPMessageKVCForwarder;
  /// A new forwarder to `object`, as in the base class.
  static std::shared_ptr<IPPMessageKVCOperatorDefaultForwarder> forwarderWithObject(
      std::shared_ptr<const IPPMessage> object);
  /// The attributes whose name matches `key` followed by "-default", in group order and then
  /// attribute order; an empty list when none does. Raises `UndefinedKeyException` when there is no
  /// message.
  [[nodiscard]] KeyValue valueForUndefinedKey(std::string_view key) const override;
  /// The list of the attributes with "-default" in their name; "(null)" without a message.
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] std::string_view className() const noexcept override;
};

/// "@supported": a key leads to the list of the attributes named by it and "-supported".
/// Threads: one thread at a time, as the message.
class PLATEN_EXPORT IPPMessageKVCOperatorSupportedForwarder : public IPPMessageKVCForwarder {
 public:
  using IPPMessageKVCForwarder::IPPMessageKVCForwarder;
  /// A new forwarder to `object`, as in the base class.
  static std::shared_ptr<IPPMessageKVCOperatorSupportedForwarder> forwarderWithObject(
      std::shared_ptr<const IPPMessage> object);
  /// The attributes whose name matches `key` followed by "-supported", in group order and then
  /// attribute order; an empty list when none does. Raises `UndefinedKeyException` when there is no
  /// message.
  [[nodiscard]] KeyValue valueForUndefinedKey(std::string_view key) const override;
  /// The list of the attributes with "-supported" in their name; "(null)" without a message.
  [[nodiscard]] std::string description() const override;
  [[nodiscard]] std::string_view className() const noexcept override;
};

}  // namespace platen::inline v0
