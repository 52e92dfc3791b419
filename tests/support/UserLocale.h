// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace platen::test {

/// Makes `locale` the user's, by the environment, for as long as it lives.
///
/// Threads: while no other thread reads the environment.
class UserLocale {
 public:
  explicit UserLocale(const char* locale) {
    if (const char* const before = std::getenv("LC_ALL")) {
      before_ = before;
    }
    setenv("LC_ALL", locale, 1);
  }
  ~UserLocale() {
    if (before_) {
      setenv("LC_ALL", before_->c_str(), 1);
    } else {
      unsetenv("LC_ALL");
    }
  }
  UserLocale(const UserLocale&) = delete;
  UserLocale& operator=(const UserLocale&) = delete;

 private:
  std::optional<std::string> before_;
};

}  // namespace platen::test
