// SPDX-License-Identifier: Apache-2.0
#include "coding/ArchiveFault.h"

#include <algorithm>

#include "platform/Utf8.h"

namespace platen::inline v0 {

namespace {

constexpr std::size_t kLongestQuote = 64;

bool isPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '_' || c == '$';
}

bool isPlainKey(std::string_view key) {
  return !key.empty() && key.size() <= kLongestQuote &&
         std::all_of(key.begin(), key.end(), isPlain);
}

bool isPrintable(const CodePoint& point) {
  return point.size != 0 && point.value >= 0x20 && (point.value < 0x7F || point.value >= 0xA0);
}

// Sought when there is something to tell, so that reading keeps no paths.
bool findPath(const ArchiveNode& wanted, const ArchiveNode& node, std::string& path) {
  if (&node == &wanted) {
    return true;
  }
  const std::size_t length = path.size();
  if (const auto* array = node.ifArray()) {
    for (std::size_t i = 0; i < array->size(); ++i) {
      appendIndex(path, i);
      if (findPath(wanted, (*array)[i], path)) return true;
      path.resize(length);
    }
  } else if (const auto* object = node.ifObject()) {
    for (const auto& [key, value] : *object) {
      appendKey(path, key);
      if (findPath(wanted, value, path)) return true;
      path.resize(length);
    }
  }
  return false;
}

bool isInsideCharacter(char octet) { return (static_cast<unsigned char>(octet) & 0xC0U) == 0x80; }

// What is nested deep has a key path of thousands of letters, of which the ends say most.
std::string shortened(const std::string& keyPath) {
  constexpr std::size_t kLongest = 256;
  constexpr std::string_view kGap = "...";
  if (keyPath.size() <= kLongest) {
    return keyPath;
  }
  std::size_t head = (kLongest - kGap.size()) / 2;
  std::size_t tail = keyPath.size() - (kLongest - kGap.size() - head);
  for (; isInsideCharacter(keyPath[head]); --head) {
  }
  for (; isInsideCharacter(keyPath[tail]); ++tail) {
  }
  return keyPath.substr(0, head).append(kGap).append(keyPath, tail);
}

}  // namespace

std::string ArchiveFault::description() const {
  return keyPath.empty() ? what : shortened(keyPath) + ": " + what;
}

std::shared_ptr<const Error> ArchiveFault::error() const {
  return std::make_shared<const Error>(
      std::string(IPPArchiveErrorDomain), static_cast<std::int64_t>(code),
      Error::UserInfo{{std::string(kLocalizedDescriptionKey), description()},
                      {std::string(IPPErrorArchiveKeyPath), keyPath}});
}

void report(std::shared_ptr<const Error>* error, std::shared_ptr<const Error> outcome) {
  if (error != nullptr) {
    *error = std::move(outcome);
  }
}

std::string quotedForFault(std::string_view text) {
  std::string quoted = "\"";
  for (std::size_t count = 0; !text.empty() && count < kLongestQuote; ++count) {
    const CodePoint point = firstCodePoint(text);
    const std::size_t size = std::max<std::size_t>(point.size, 1);
    quoted += isPrintable(point) ? text.substr(0, size) : "?";
    text.remove_prefix(size);
  }
  return quoted + (text.empty() ? "\"" : "...\"");
}

void appendKey(std::string& keyPath, std::string_view key) {
  if (!isPlainKey(key)) {
    keyPath += "[" + quotedForFault(key) + "]";
    return;
  }
  keyPath += keyPath.empty() ? "" : ".";
  keyPath += key;
}

void appendIndex(std::string& keyPath, std::size_t index) {
  keyPath += "[" + std::to_string(index) + "]";
}

std::string keyPathOf(const ArchiveNode& wanted, const ArchiveNode& root) {
  std::string path;
  findPath(wanted, root, path);
  return path;
}

}  // namespace platen::inline v0
