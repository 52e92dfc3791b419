// SPDX-License-Identifier: Apache-2.0
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

// The text stays as it came; whether it is a URL is decided now, the URL is made when asked for.
IPPValue::Pointer decodeUri(IPPCoder& coder) {
  if (coder.allowsKeyedCoding()) {
    return makeUri(coder.decodeRawValueForKey(kValueKey));
  }
  Text text = coder.decodeASCIIString();
  return URL::isValid(text.viewOrEmpty()) ? coder.make<IPPUri>(std::move(text))
                                          : coder.make<IPPUri>(Text());
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
