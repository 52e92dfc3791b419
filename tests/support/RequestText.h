// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "platen/IPPRequest.h"
#include "platform/UserEnvironment.h"
#include "tests/support/MessageText.h"
#include "tests/support/UserLocale.h"

namespace platen::test {

inline URL url(std::string_view text) { return URL::parse(text).value(); }

/// What stands on the wire, with the groups and attributes in their order; "" when what was written
/// does not decode.
inline std::string encodedText(const IPPRequest& request) {
  const auto message = IPPMessage::initWithDataRepresentation(request.dataRepresentation());
  return message == nullptr ? "" : messageText(*message, 0);
}

/// The request as it comes out at the other end.
inline IPPRequest::Pointer received(const IPPRequest& request) {
  return IPPRequest::initWithDataRepresentation(request.dataRepresentation());
}

/// Tests of what a request says, for a user whose locale is known.
class RequestTextTest : public testing::Test {
 protected:
  /// A request of this operation whose operation group holds the two default attributes and then
  /// what `rest` has lines for; further groups may follow in it.
  static std::string requestText(std::string_view code, std::string_view rest) {
    return "message version=1.1 code=" + std::string(code) +
           " request-id=1\n"
           "group 01\n"
           "01\t\"attributes-charset\"\t47:\"utf-8\"\n"
           "01\t\"attributes-natural-language\"\t48:\"pt-br\"\n" +
           std::string(rest);
  }

  /// The lines of a target and of the user who asks.
  [[nodiscard]] std::string targetAndUser(std::string_view target, std::string_view uri) const {
    return "01\t\"" + std::string(target) + "\"\t45:\"" + std::string(uri) +
           "\"\n"
           "01\t\"requesting-user-name\"\t42:\"" +
           user + "\"\n";
  }

  const UserLocale locale{"pt_BR.UTF-8"};
  const std::string user = loginName();
};

}  // namespace platen::test
