// SPDX-License-Identifier: Apache-2.0

#include "platform/Resolver.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <uv.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "platform/RunLoopPrivate.h"

namespace platen::inline v0 {

namespace {

void appendAddress(HostAddresses& found, const sockaddr_in& address) {
  std::array<char, INET_ADDRSTRLEN> text{};
  uv_ip4_name(&address, text.data(), text.size());
  found.addresses.emplace_back(text.data());
}

void appendAddress(HostAddresses& found, const sockaddr_in6& address) {
  if (IN6_IS_ADDR_LINKLOCAL(&address.sin6_addr)) {
    // A connection can be told of one zone only; the first one seen is as good as any.
    found.zone = found.zone == 0 ? address.sin6_scope_id : found.zone;
    if (address.sin6_scope_id != found.zone) {
      return;
    }
  }
  std::array<char, INET6_ADDRSTRLEN> text{};
  uv_ip6_name(&address, text.data(), text.size());
  found.addresses.emplace_back(text.data());
}

HostAddresses collect(const addrinfo* list) {
  HostAddresses found;
  for (const auto* entry = list; entry != nullptr; entry = entry->ai_next) {
    if (entry->ai_family == AF_INET) {
      appendAddress(found, *reinterpret_cast<const sockaddr_in*>(entry->ai_addr));
    } else if (entry->ai_family == AF_INET6) {
      appendAddress(found, *reinterpret_cast<const sockaddr_in6*>(entry->ai_addr));
    }
  }
  return found;
}

HostAddresses outcome(int status, const addrinfo* list) {
  HostAddresses found = collect(list);
  if (found.addresses.empty()) {
    found.failure = uv_strerror(status < 0 ? status : UV_EAI_NODATA);
  }
  return found;
}

bool equalIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
  });
}

}  // namespace

/// Lives until libuv has answered, be it on a loop that was put aside; the loop's thread may be
/// gone by then.
struct Resolution::State : std::enable_shared_from_this<State> {
  State(RunLoop& owner, Completion function)
      : core(owner.internals().core()), completion(std::move(function)) {}

  void start(const std::string& host);
  void answer(HostAddresses found);

  RunLoopCore& core;
  /// Empty once cancelled.
  Completion completion;
  uv_getaddrinfo_t request{};
  /// Keeps the request's memory while libuv uses it.
  std::shared_ptr<State> self;
};

void Resolution::State::start(const std::string& host) {
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  request.data = this;
  self = shared_from_this();
  const auto done = [](uv_getaddrinfo_t* finished, int status, addrinfo* list) {
    const auto state = std::move(static_cast<State*>(finished->data)->self);
    state->answer(outcome(status, list));
    uv_freeaddrinfo(list);
  };
  const int status = uv_getaddrinfo(core.native(), &request, done, host.c_str(), nullptr, &hints);
  if (status < 0) {
    self.reset();
    answer(outcome(status, nullptr));
  }
}

void Resolution::State::answer(HostAddresses found) {
  if (completion == nullptr) {
    return;
  }
  core.enqueue([state = shared_from_this(), found = std::move(found)] {
    // Moved out, for it may destroy what it is kept in.
    if (const auto call = std::exchange(state->completion, nullptr)) {
      call(found);
    }
  });
}

Resolution::Resolution(RunLoop& loop, const std::string& host, Completion completion)
    : state_(std::make_shared<State>(loop, std::move(completion))) {
  state_->start(host);
}

Resolution::~Resolution() {
  state_->completion = nullptr;
  if (state_->self != nullptr) {
    // Succeeds only when no thread has begun with it.
    uv_cancel(reinterpret_cast<uv_req_t*>(&state_->request));
  }
}

bool isNumericOrLocal(std::string_view host) {
  constexpr std::string_view kLocalhost = "localhost";
  constexpr std::string_view kBelowLocalhost = ".localhost";
  const std::string text(host);
  in_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1 || equalIgnoringCase(host, kLocalhost) ||
         (host.size() > kBelowLocalhost.size() &&
          equalIgnoringCase(host.substr(host.size() - kBelowLocalhost.size()), kBelowLocalhost));
}

}  // namespace platen::inline v0
