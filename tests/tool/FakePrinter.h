// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platen/IPPRequest.h"
#include "platen/Stream.h"
#include "tests/support/ScriptedPeer.h"

namespace platen::test {

/// A server that gives one answer after the other, whatever it is asked, and keeps the questions.
class FakePrinter {
 public:
  using Script = tests::ScriptedPeer::Script;

  /// Answers of HTTP status 200 with these bodies, all on one connection.
  explicit FakePrinter(std::vector<std::string> answers) : peer_({scriptFor(std::move(answers))}) {}
  explicit FakePrinter(Script script) : peer_({std::move(script)}) {}
  /// The same script for each of that many connections, at the same time.
  FakePrinter(std::size_t count, const Script& script) : peer_(count, script) {}

  std::string uri(const std::string& path = "/ipp/print") const {
    return "ipp://127.0.0.1:" + std::to_string(peer_.port()) + path;
  }
  std::size_t connectionCount() const { return peer_.connectionCount(); }
  /// The end of a connection is none.
  std::size_t requestCount() const {
    const auto requests = peer_.requests();
    return requests.size() -
           static_cast<std::size_t>(std::count(requests.begin(), requests.end(), ""));
  }

  /// What followed the HTTP head of that request.
  std::string body(std::size_t index) const {
    const std::string request = peer_.requests().at(index);
    return request.substr(request.find("\r\n\r\n") + 4);
  }
  /// That request, decoded; null when it does not decode.
  IPPRequest::Pointer request(std::size_t index) const { return decoded(index).first; }
  /// What followed the message of that request.
  std::string document(std::size_t index) const { return decoded(index).second; }

 private:
  static Script scriptFor(std::vector<std::string> answers) {
    return [answers = std::move(answers)](tests::PeerConnection& connection) {
      for (const std::string& answer : answers) {
        connection.readRequest();
        connection.answer(200, answer, "Content-Type: application/ipp\r\n");
      }
    };
  }

  std::pair<IPPRequest::Pointer, std::string> decoded(std::size_t index) const {
    const std::string octets = body(index);
    const auto stream = InputStream::withData(Data(octets.begin(), octets.end()));
    stream->open();
    auto request = IPPRequest::initWithStream(stream);
    Bytes rest;
    stream->getBuffer(rest);
    return {std::move(request), std::string(rest.begin(), rest.end())};
  }

  tests::ScriptedPeer peer_;
};

}  // namespace platen::test
