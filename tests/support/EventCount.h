// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "platen/Stream.h"

namespace platen::tests {

/// Counts what a stream tells, which is that it has octets.
class EventCount final : public StreamDelegate {
 public:
  void streamHandleEvent(Stream& stream, StreamEvent event) override {
    EXPECT_EQ(event, StreamEvent::hasBytesAvailable);
    lastStream = &stream;
    ++count;
    if (onEvent) {
      onEvent();
    }
  }

  int count = 0;
  const Stream* lastStream = nullptr;
  std::function<void()> onEvent;
};

}  // namespace platen::tests
