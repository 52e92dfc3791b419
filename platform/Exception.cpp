// SPDX-License-Identifier: Apache-2.0

#include "platen/Exception.h"

#include <algorithm>

namespace platen::inline v0 {

// Destructors live here, so that each class has its type information in the library and nowhere
// else: an exception thrown by the library is then caught in an application by its type.

Exception::~Exception() = default;
RangeException::~RangeException() = default;
InvalidArgumentException::~InvalidArgumentException() = default;
InconsistentArchiveException::~InconsistentArchiveException() = default;
UndefinedKeyException::~UndefinedKeyException() = default;

namespace {

constexpr std::size_t kShownOctets = 128;

// A key may come from anywhere; a reason text goes to terminals and into logs.
std::string shown(std::string_view key) {
  std::string text(key.substr(0, kShownOctets));
  std::replace_if(
      text.begin(), text.end(), [](char octet) { return octet < ' ' || octet > '~'; }, '?');
  return key.size() > kShownOctets ? text + "..." : text;
}

}  // namespace

UndefinedKeyException::UndefinedKeyException(std::string_view className, std::string_view key)
    : Exception(std::string(className) + " has nothing under the key \"" + shown(key) + "\""),
      className_(className),
      key_(std::make_shared<const std::string>(key)) {}

}  // namespace platen::inline v0
