// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Key-value access: reaching what an object holds by names that are known at run time.

#include <string_view>
#include <vector>

#include "platen/Export.h"
#include "platen/KeyValue.h"

namespace platen::inline v0 {

struct KeyValueProperties;

/// An object that is asked by keys: a message, a group, an attribute, a value, a forwarder.
///
///     path = key *( "." key )
///     key  = property / attribute-name-pattern / "@all" / "@default" / "@supported"
///
/// A key is looked for among the object's own properties first, letter for letter: every public
/// operation of its class that takes no argument and changes nothing is one, under its own name
/// ("statusCode", "jobId", "printerGroups", "name", "ippValue", "intValue"), and those of its base
/// classes are. Not among them are the operations whose result is none of the kinds of `KeyValue`:
/// `ippClass`, and the `delegate` of a request. What happens to any other key is for the kind of
/// object to say (`valueForUndefinedKey`): a message and a group take it for the name of an
/// attribute. So an attribute that is named as a property is not reached by that key.
///
/// docs/key-paths.md has a page of examples.
///
/// Threads: as the object.
class PLATEN_EXPORT KeyValueAccess {
 public:
  virtual ~KeyValueAccess();
  /// The name of the object's class, for example "IPPKeyword". Lives for the process.
  [[nodiscard]] virtual std::string_view className() const noexcept = 0;

  /// The object's own property of that name; what `valueForUndefinedKey` says when it has none.
  /// The key is taken as it is: a "." in it is a character like any other. Raises what
  /// `valueForUndefinedKey` raises.
  [[nodiscard]] virtual KeyValue valueForKey(std::string_view key) const;
  /// Follows a path of keys: the first from this object, each further one from the result so far
  /// (`KeyValue::valueForKey`), through lists element by element and through dictionaries by name.
  /// Raises `UndefinedKeyException` with the whole path for an empty path and for one with an empty
  /// key in it, and otherwise as each key does. Steps and memory grow with the length of the path,
  /// the stack does not.
  ///
  /// A path is split at every ".". The grammar of RFC 8010 §3.2 lets the name of an attribute have
  /// one, but no registered name has; such an attribute is reached by `valueForKey`, or with a `?`
  /// in the place of the ".".
  [[nodiscard]] KeyValue valueForKeyPath(std::string_view path) const;
  /// Called for a key that names none of the object's own properties. Raises
  /// `UndefinedKeyException` unless a class says otherwise.
  [[nodiscard]] virtual KeyValue valueForUndefinedKey(std::string_view key) const;

  /// The names of the object's own properties, those of base classes first. They live for the
  /// process.
  [[nodiscard]] std::vector<std::string_view> propertyNames() const;

 protected:
  KeyValueAccess() = default;
  KeyValueAccess(const KeyValueAccess&) = default;
  KeyValueAccess& operator=(const KeyValueAccess&) = default;

  /// What the class declares beside its operations; a class of an application has those of its
  /// base. Lives for the process. Of use to the library only.
  [[nodiscard]] virtual const KeyValueProperties& _keyValueProperties() const noexcept;
};

}  // namespace platen::inline v0
