// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Platen in a program with a GLib main loop (GLib 2.36 and later).

#include <glib.h>

#include <chrono>
#include <memory>
#include <utility>

#include "platen/RunLoop.h"
#include "platen/adapters/Wait.h"

namespace platen::inline v0 {

/// Drives a run loop as a source of a GLib main context. That context must be iterated on the
/// thread of the run loop, and on no other.
///
///     platen::GLibAdapter platen;
///     request->sendTo(*printer);
///     g_main_loop_run(loop);
///
/// The adapter may be destroyed from within a turn that it drives, and a delegate may iterate the
/// context. What a delegate throws ends the program: GLib cannot pass it on.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class GLibAdapter {
 public:
  /// Adds a source of the default priority to `context`; null is the thread's default context.
  /// Holds `loop`.
  explicit GLibAdapter(GMainContext* context = nullptr,
                       std::shared_ptr<RunLoop> loop = RunLoop::current())
      : loop_(std::move(loop)), source_(g_source_new(&kFunctions, sizeof(Source))) {
    auto* const source = reinterpret_cast<Source*>(source_);
    source->loop = loop_.get();
    source->tag = g_source_add_unix_fd(source_, loop_->descriptor(), G_IO_IN);
    g_source_set_name(source_, "platen");
    g_source_set_can_recurse(source_, TRUE);
    g_source_attach(source_, context == nullptr ? g_main_context_get_thread_default() : context);
  }
  GLibAdapter(const GLibAdapter&) = delete;
  GLibAdapter& operator=(const GLibAdapter&) = delete;
  /// Removes the source. The run loop and its exchanges stay.
  ~GLibAdapter() {
    g_source_destroy(source_);
    g_source_unref(source_);
  }

 private:
  /// What GLib allocates: zeroed memory that it frees without a destructor.
  struct Source {
    GSource base;
    RunLoop* loop;
    gpointer tag;
  };

  static gboolean prepare(GSource* base, gint* timeout) noexcept {
    *timeout = shorterTimeout(*reinterpret_cast<Source*>(base)->loop, -1);
    return *timeout == 0 ? TRUE : FALSE;
  }
  static gboolean check(GSource* base) noexcept {
    const auto* const source = reinterpret_cast<Source*>(base);
    const bool isReadable = g_source_query_unix_fd(base, source->tag) != 0;
    return isReadable || shorterTimeout(*source->loop, -1) == 0 ? TRUE : FALSE;
  }
  // GLib holds the source for the length of the call, and the run loop itself for its turn.
  static gboolean dispatch(GSource* base, GSourceFunc /*callback*/, gpointer /*data*/) noexcept {
    reinterpret_cast<Source*>(base)->loop->runOnce(std::chrono::milliseconds(0));
    return G_SOURCE_CONTINUE;
  }

  static inline GSourceFuncs kFunctions{prepare, check, dispatch, nullptr, nullptr, nullptr};

  std::shared_ptr<RunLoop> loop_;
  GSource* source_;
};

}  // namespace platen::inline v0
