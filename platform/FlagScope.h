// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace platen::inline v0 {

/// Holds a flag that must outlive it; lets go of it also when a delegate or a stream raises.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;
  ~FlagScope() { flag_ = false; }

 private:
  bool& flag_;
};

}  // namespace platen::inline v0
