// SPDX-License-Identifier: Apache-2.0

#include "platen/Error.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/KeyValueProperties.h"
#include "platform/POSIXError.h"

namespace platen::inline v0 {

namespace {

// Records nest as deep as the caller likes; what walks down into them must not.
constexpr int kMaximumComparedDepth = 64;
constexpr int kMaximumDescribedDepth = 16;

bool areEqual(const Error& left, const Error& right, int depth);

bool areEqual(const Error::Entry& left, const Error::Entry& right, int depth) {
  const auto* leftError = std::get_if<std::shared_ptr<const Error>>(&left);
  const auto* rightError = std::get_if<std::shared_ptr<const Error>>(&right);
  if (leftError == nullptr || rightError == nullptr || *leftError == *rightError) {
    return left == right;
  }
  return *leftError && *rightError && depth < kMaximumComparedDepth &&
         areEqual(**leftError, **rightError, depth + 1);
}

bool areEqual(const Error& left, const Error& right, int depth) {
  const auto sameEntry = [depth](const auto& a, const auto& b) {
    return a.first == b.first && areEqual(a.second, b.second, depth);
  };
  return left.domain() == right.domain() && left.code() == right.code() &&
         left.userInfo().size() == right.userInfo().size() &&
         std::equal(left.userInfo().begin(), left.userInfo().end(), right.userInfo().begin(),
                    sameEntry);
}

/// What is under `key`, when it is of that type; null otherwise.
template <typename T>
const T* entry(const Error::UserInfo& userInfo, std::string_view key) {
  const auto found = userInfo.find(key);
  return found == userInfo.end() ? nullptr : std::get_if<T>(&found->second);
}

bool isControl(char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }

}  // namespace

Error::Error(std::string domain, std::int64_t code, UserInfo userInfo)
    : domain_(std::move(domain)), code_(code), userInfo_(std::move(userInfo)) {}

std::optional<std::string_view> Error::localizedDescription() const {
  const auto* text = entry<std::string>(userInfo_, kLocalizedDescriptionKey);
  return text == nullptr ? std::nullopt : std::optional<std::string_view>(*text);
}

std::shared_ptr<const Error> Error::underlyingError() const {
  const auto* error = entry<std::shared_ptr<const Error>>(userInfo_, kUnderlyingErrorKey);
  return error == nullptr ? nullptr : *error;
}

std::vector<std::string> Error::names(std::string_view key) const {
  const auto* names = entry<std::vector<std::string>>(userInfo_, key);
  return names == nullptr ? std::vector<std::string>() : *names;
}

std::string Error::description() const {
  std::string line;
  const Error* error = this;
  std::shared_ptr<const Error> underlying;
  for (int depth = 0; error != nullptr && depth < kMaximumDescribedDepth; ++depth) {
    line += depth == 0 ? "" : "; caused by ";
    line += error->domain_ + " " + std::to_string(error->code_);
    if (const auto text = error->localizedDescription()) {
      line += ": " + std::string(*text);
    }
    underlying = error->underlyingError();
    error = underlying.get();
  }
  // Texts come from printers too: none may start a line of its own in somebody's log.
  std::replace_if(
      line.begin(), line.end(), [](char c) { return isControl(c); }, ' ');
  return line;
}

bool operator==(const Error& left, const Error& right) { return areEqual(left, right, 0); }

namespace {

KeyValue userInfoOf(const Error& error) {
  KeyValue::Dictionary entries;
  for (const auto& [key, entry] : error.userInfo()) {
    entries.set(key, std::visit([](const auto& object) { return KeyValue(object); }, entry));
  }
  return entries;
}

constexpr KeyValueProperty<Error> kProperties[] = {
    property<&Error::domain>("domain"),
    property<&Error::code>("code"),
    {"userInfo", userInfoOf},
    property<&Error::localizedDescription>("localizedDescription"),
    property<&Error::underlyingError>("underlyingError"),
    property<&Error::description>("description"),
};

}  // namespace

std::optional<KeyValue> errorProperty(const Error& error, std::string_view name) {
  for (const auto& property : kProperties) {
    if (property.name == name) {
      return property.get(error);
    }
  }
  return std::nullopt;
}

std::shared_ptr<const Error> posixError(int code) {
  Error::UserInfo userInfo;
  userInfo.emplace(kLocalizedDescriptionKey, std::generic_category().message(code));
  return std::make_shared<const Error>(std::string(kPOSIXErrorDomain), code, std::move(userInfo));
}

}  // namespace platen::inline v0
