// SPDX-License-Identifier: Apache-2.0

/// The list of codable classes. Each class puts itself into it; it is initialised by constant, so
/// that no order of start-up matters.

#include "platen/IPPCodableClass.h"

namespace platen::inline v0 {

namespace {

constinit const IPPCodableRegistration* firstRegistration = nullptr;
constinit const IPPCodableRegistration** lastLink = nullptr;

}  // namespace

IPPCodableRegistration::IPPCodableRegistration(const IPPCodableClass& codableClass) noexcept
    : class_(codableClass) {
  (lastLink == nullptr ? firstRegistration : *lastLink) = this;
  lastLink = &next_;
}

const IPPCodableRegistration* IPPCodableRegistration::first() noexcept { return firstRegistration; }

}  // namespace platen::inline v0
