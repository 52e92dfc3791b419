// SPDX-License-Identifier: Apache-2.0
#include "Exchange.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "Failure.h"
#include "Refusal.h"
#include "platen/IPPConstants.h"

namespace platen::tool {

namespace {

// RFC 8011 §5.1.6: the longest uri value.
constexpr std::size_t kLongestURI = 1023;

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

Failure badURI(const std::string& text, const std::string& reason) {
  return {ExitStatus::usage, "\"" + text + "\" " + reason};
}

void requireScheme(const URL& url, const std::string& text) {
  const std::string scheme = lowerCase(url.scheme().value_or(""));
  if (scheme == "ipps" || scheme == "https") {
    throw badURI(text, "asks for an encrypted connection, which platen does not have");
  }
  if (scheme != kIPPURLScheme && scheme != kHTTPURLScheme) {
    throw badURI(text, "is not a printer's URI: it must begin with ipp:// or http://");
  }
}

}  // namespace

URL targetURI(const std::string& text) {
  const auto url = URL::parse(text);
  if (!url) {
    throw badURI(text, "is not a URI");
  }
  requireScheme(*url, text);
  if (url->host().value_or("").empty()) {
    throw badURI(text, "names no host");
  }
  if (text.size() > kLongestURI) {
    throw Failure(ExitStatus::usage, "a printer's URI has at most 1023 characters");
  }
  return *url;
}

std::shared_ptr<Exchange> Exchange::start(IPPRequest::Pointer request, const URL& target,
                                          std::shared_ptr<InputStream> document) {
  auto exchange = std::make_shared<Exchange>(Key(), std::move(request), target);
  exchange->document_ = std::move(document);
  exchange->request_->setDelegate(exchange);
  exchange->request_->sendTo(target);
  return exchange;
}

Exchange::Exchange(Key /*key*/, IPPRequest::Pointer request, URL target)
    : request_(std::move(request)), target_(std::move(target)) {}

Exchange::~Exchange() { request_->cancel(); }

IPPResponse::Pointer Exchange::answer() const {
  if (error_ != nullptr) {
    throw failureOf(*request_, target_, answer_, *error_);
  }
  return answer_;
}

std::shared_ptr<InputStream> Exchange::dataStreamForRequest(IPPRequest& /*request*/) {
  return document_;
}

void Exchange::requestDidReceiveResponse(IPPRequest& /*request*/,
                                         const std::shared_ptr<IPPResponse>& response,
                                         const std::shared_ptr<const Error>& error) {
  answer_ = response;
  error_ = error;
  isOver_ = true;
}

IPPResponse::Pointer answerTo(IPPRequest::Pointer request, const URL& target, Waiting& waiting) {
  const auto exchange = Exchange::start(std::move(request), target);
  waiting.until([&] { return exchange->isOver(); });
  return exchange->answer();
}

}  // namespace platen::tool
