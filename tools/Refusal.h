// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "Failure.h"
#include "platen/Error.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/URL.h"

namespace platen::tool {

/// A line for people about a scheduled exchange that did not succeed, from what its delegate was
/// told: what was tried, and what came back.
Failure failureOf(const IPPRequest& request, const URL& target,
                  const std::shared_ptr<IPPResponse>& answer, const Error& error);

}  // namespace platen::tool
