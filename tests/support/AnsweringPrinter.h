// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "tests/support/Octets.h"
#include "tests/support/ScriptedPeer.h"

namespace platen::tests {

/// The octets that `text` spells as `test::octets` has it.
inline std::string octetText(std::string_view text) {
  const Data data = test::octets(text);
  return {data.begin(), data.end()};
}

/// A whole response: successful-ok with the request-id 1 unless said otherwise.
inline std::string responseOctets(std::string_view code = "0000",
                                  std::string_view requestId = "0001") {
  return octetText("0101" + std::string(code) + "0000" + std::string(requestId) +
                   "01 47 <'attributes-charset'> <'utf-8'>"
                   "48 <'attributes-natural-language'> <'en'> 03");
}

/// Reads one request and answers it with these octets.
inline ScriptedPeer::Script sending(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
  };
}

/// Reads one request and answers it with this status and this body.
inline ScriptedPeer::Script answering(int status, std::string body, std::string headers = "") {
  return
      [status, body = std::move(body), headers = std::move(headers)](PeerConnection& connection) {
        connection.readRequest();
        connection.answer(status, body, headers);
      };
}

/// Answers each of `count` requests on the connection with a successful response, and then keeps it
/// until the client closes.
inline ScriptedPeer::Script answeringAll(std::size_t count) {
  return [count](PeerConnection& connection) {
    for (std::size_t i = 0; i < count; ++i) {
      connection.readRequest();
      connection.answer(200, responseOctets());
    }
    connection.leaveOpen();
  };
}

inline URL targetAt(const ScriptedPeer& peer, std::string_view path = "/printers/q",
                    std::string_view host = "127.0.0.1") {
  return URL::parse("ipp://" + std::string(host) + ":" + std::to_string(peer.port()) +
                    std::string(path))
      .value();
}

/// Get-Printer-Attributes for `target`, with a time-out that fails a test soon.
inline IPPRequest::Pointer requestTo(const URL& target) {
  auto request = IPPRequest::printerAttributesRequest(target);
  request->setTimeInterval(10);
  return request;
}

/// What an exchange gave.
struct Outcome {
  IPPResponse::Pointer response;
  std::shared_ptr<const Error> error;
};

inline Outcome performOn(const URL& target) {
  Outcome outcome;
  outcome.response = requestTo(target)->performOn(target, &outcome.error);
  return outcome;
}

}  // namespace platen::tests
