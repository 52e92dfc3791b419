// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace platen::tests {

/// Answers the program's calls of getaddrinfo for names below "test" (RFC 6761 §6.2) as the test
/// says, and counts all calls. Any other name goes to the system.
class FakeNames {
 public:
  /// Forgets the names and the count of an earlier test.
  FakeNames();
  FakeNames(const FakeNames&) = delete;
  FakeNames& operator=(const FakeNames&) = delete;
  /// Releases all that wait, and returns when none does any more.
  ~FakeNames();

  /// Has `name` resolve to IP addresses. A name that was not set does not exist.
  void set(const std::string& name, std::vector<std::string> addresses);
  /// Has the calls for `name` wait until `release`.
  void block(const std::string& name);
  void release(const std::string& name);
  /// How often anybody asked for anything.
  [[nodiscard]] std::size_t callCount() const;
  /// Returns as soon as a call waits.
  void waitUntilBlocked() const;
};

}  // namespace platen::tests
