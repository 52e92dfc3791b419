// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

#include "platen/IPPResponse.h"
#include "tests/support/Octets.h"

namespace platen::test {

/// A decoded response, successful-ok, with these groups in the spelling of `octets`.
inline IPPResponse::Pointer responseWith(const std::string& groups) {
  auto response =
      IPPResponse::initWithDataRepresentation(octets("0101 0000 0000 0001" + groups + "03"));
  if (response == nullptr) throw std::invalid_argument("does not decode: " + groups);
  return response;
}

}  // namespace platen::test
