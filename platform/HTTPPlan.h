// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "platform/HTTPTransfer.h"

namespace platen::inline v0 {

/// Where a request goes.
struct HTTPTarget {
  /// As written, without brackets.
  std::string host;
  /// "host:port", with brackets where needed.
  std::string authority;
  bool needsResolving = false;
};

/// Finds the target of a request and fills in the plan, all but the addresses. Returns why the
/// request cannot be sent, or null.
std::shared_ptr<const Error> planRequest(const HTTPRequest& request, HTTPTarget& target,
                                         HTTPTransferPlan& plan);

}  // namespace platen::inline v0
