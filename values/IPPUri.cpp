// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <charconv>

#include "platen/IPPStringValue.h"
#include "values/StringClassSupport.h"

namespace platen::inline v0 {

namespace {

constexpr std::size_t kLimit = 1024;

bool acceptsShortURL(const RawValue& object) {
  const URL* url = object.ifURL();
  return url != nullptr && countCodePoints(url->absoluteString()) < kLimit;
}

IPPValue::Pointer makeUri(const RawValue& object) {
  const URL* url = object.ifURL();
  return url == nullptr ? std::make_shared<const IPPUri>(Text())
                        : std::make_shared<const IPPUri>(*url);
}

bool isAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isOfName(char c) {
  return isAlpha(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_';
}
bool isOfPath(char c) { return isOfName(c) || c == '/'; }

/// Takes the characters of that kind off the front; false when there are none.
bool takeRun(std::string_view& text, bool (*isOfKind)(char)) {
  const auto* const end = std::find_if_not(text.begin(), text.end(), isOfKind);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count != 0;
}

bool takePort(std::string_view& text) {
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return error == std::errc();
}

bool takeLiteral(std::string_view& text, std::string_view literal) {
  const bool isThere = text.starts_with(literal);
  text.remove_prefix(isThere ? literal.size() : 0);
  return isThere;
}

/// Nearly every URI of a message is 1*ALPHA "://" name [ ":" port ] [ "/" path ], of characters
/// that stand for themselves, which is a URL by RFC 3986 §3. Asking the parser about 7 such took
/// 6 % of the instructions to decode the whole answer of a printer.
bool isPlainURL(std::string_view text) {
  if (!takeRun(text, isAlpha) || !takeLiteral(text, "://") || !takeRun(text, isOfName)) {
    return false;
  }
  if (takeLiteral(text, ":") && !takePort(text)) {
    return false;
  }
  return text.empty() || (text.front() == '/' && takeRun(text, isOfPath) && text.empty());
}

// The text stays as it came; whether it is a URL is decided now, the URL is made when asked for.
IPPValue::Pointer decodeUri(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    return makeUri(coder.decodeRawValueForKey(kValueKey));
  }
  Text text = coder.decodeASCIIString();
  const std::string_view view = text.viewOrEmpty();
  return isPlainURL(view) || URL::isValid(view) ? coder.makePlain<IPPUri>(std::move(text))
                                                : coder.makePlain<IPPUri>(Text());
}

}  // namespace

constinit const IPPValueClass IPPUri::descriptor{"IPPUri",        0x45,    "uri",
                                                 acceptsShortURL, makeUri, decodeUri};

namespace {
const IPPValueRegistration registration(IPPUri::descriptor);
}

IPPUri::IPPUri(const URL& url) : IPPStringValue(url.absoluteString()) {}

RawValue IPPUri::rawValue() const { return text() ? RawValue(URL::parse(*text())) : RawValue(); }

std::int32_t IPPUri::intValue() const { return -1; }

bool IPPUri::boolValue() const { return false; }

bool IPPUri::_hasEqualRawValue(const IPPValue& other) const {
  const auto* uri = dynamic_cast<const IPPUri*>(&other);
  return uri != nullptr && text() == uri->text();
}

}  // namespace platen::inline v0
