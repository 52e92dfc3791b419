// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Platen in a program with a libuv loop of its own (libuv 1.12 and later).

#include <uv.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <utility>

#include "platen/RunLoop.h"

namespace platen::inline v0 {

/// Drives a run loop from a program's `uv_loop_t`. That the run loop is made of libuv too does not
/// matter: the two share nothing but the descriptor that one watches of the other.
///
///     platen::LibUVAdapter platen(uv_default_loop());
///     request->sendTo(*printer);
///     uv_run(uv_default_loop(), UV_RUN_DEFAULT);
///
/// `uv_run` does not return by itself while the adapter lives: stop it, or destroy the adapter.
/// That may happen from within a turn that the adapter drives. A delegate must not run the loop, as
/// libuv allows no callback to. What a delegate throws ends the program: libuv cannot pass it on.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class LibUVAdapter {
 public:
  /// Adds handles to `host`, which stays the caller's and must not be null; holds `loop`. Raises
  /// `std::runtime_error` when libuv refuses the descriptor.
  explicit LibUVAdapter(uv_loop_t* host, std::shared_ptr<RunLoop> loop = RunLoop::current()) {
    auto handles = std::make_unique<Handles>();
    if (const int code = uv_poll_init(host, &handles->poll, loop->descriptor())) {
      throw std::runtime_error(uv_strerror(code));
    }
    uv_timer_init(host, &handles->timer);
    uv_prepare_init(host, &handles->prepare);
    handles->loop = std::move(loop);
    handles_ = handles.release();
    handles_->start();
  }
  LibUVAdapter(const LibUVAdapter&) = delete;
  LibUVAdapter& operator=(const LibUVAdapter&) = delete;
  /// Closes the handles. They are gone, and their memory is freed, when the host has run once more;
  /// `uv_loop_close` fails before that. The run loop and its exchanges stay.
  ~LibUVAdapter() { handles_->close(); }

 private:
  struct Handles {
    void start() {
      poll.data = timer.data = prepare.data = this;
      uv_poll_start(&poll, UV_READABLE, [](uv_poll_t* handle, int, int) { turn(handle->data); });
      uv_prepare_start(&prepare, [](uv_prepare_t* handle) { arm(handle->data); });
    }

    void close() {
      const auto closed = [](uv_handle_t* handle) {
        auto* const self = static_cast<Handles*>(handle->data);
        if (--self->openCount == 0) {
          delete self;
        }
      };
      uv_close(reinterpret_cast<uv_handle_t*>(&poll), closed);
      uv_close(reinterpret_cast<uv_handle_t*>(&timer), closed);
      uv_close(reinterpret_cast<uv_handle_t*>(&prepare), closed);
    }

    // The handles outlive the turn, also when it closes them.
    static void turn(void* self) noexcept {
      static_cast<Handles*>(self)->loop->runOnce(std::chrono::milliseconds(0));
    }

    // Before every wait, so that nothing need tell when the time-out changes.
    static void arm(void* data) noexcept {
      auto* const self = static_cast<Handles*>(data);
      if (const auto wait = self->loop->timeout()) {
        const auto expired = [](uv_timer_t* handle) { turn(handle->data); };
        uv_timer_start(&self->timer, expired, static_cast<std::uint64_t>(wait->count()), 0);
      } else {
        uv_timer_stop(&self->timer);
      }
    }

    uv_poll_t poll;
    uv_timer_t timer;
    uv_prepare_t prepare;
    std::shared_ptr<RunLoop> loop;
    int openCount = 3;
  };

  Handles* handles_;
};

}  // namespace platen::inline v0
