// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platen/Data.h"

namespace platen::bench {

/// What the library is compared with: one handle of libcurl that posts octets and looks at nothing
/// that comes back.
class BareCurl {
 public:
  explicit BareCurl(std::string_view url);
  BareCurl(const BareCurl&) = delete;
  BareCurl& operator=(const BareCurl&) = delete;
  ~BareCurl();

  /// Posts `head` and then what the descriptor gives up to its end, in chunks.
  void upload(const Data& head, int descriptor);
  /// Posts `body`; the connection is kept for the next one.
  void post(const Data& body);

 private:
  void perform();

  void* easy_;
  void* headers_ = nullptr;
};

}  // namespace platen::bench
