// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platen/Error.h"
#include "platen/HTTP.h"

namespace platen::inline v0 {

struct HTTPTransferResult;

/// How far an exchange has come.
enum class HTTPStage { resolving, connecting, exchanging };

/// An error of `kHTTPClientErrorDomain`.
std::shared_ptr<const Error> httpError(HTTPErrorCode code, std::string description,
                                       std::shared_ptr<const Error> underlying = nullptr);

/// The error for a transfer with `authority` ("host:port") that has failed.
std::shared_ptr<const Error> transferError(const HTTPTransferResult& result,
                                           const std::string& authority);

/// The error for an exchange in which nothing has moved for `limit`.
std::shared_ptr<const Error> idleError(HTTPStage stage, std::chrono::milliseconds limit,
                                       const std::string& authority);

}  // namespace platen::inline v0
