// SPDX-License-Identifier: Apache-2.0

#include <optional>

#include "platen/adapters/GLib.h"
#include "tests/adapters/Host.h"

namespace platen::tests {

namespace {

class GLibHost final : public Host {
 public:
  GLibHost() { makeAdapter(); }
  ~GLibHost() override {
    dropAdapter();
    g_main_context_unref(context_);
  }

  void turn(std::chrono::milliseconds limit) override {
    GSource* const end = addTimer(limit, [] {});
    g_main_context_iteration(context_, TRUE);
    g_source_destroy(end);
    g_source_unref(end);
  }
  void callLater(std::chrono::milliseconds delay, std::function<void()> callback) override {
    g_source_unref(addTimer(delay, std::move(callback)));
  }
  void makeAdapter() override { adapter_.emplace(context_); }
  void dropAdapter() override { adapter_.reset(); }

 private:
  using Callback = std::function<void()>;

  GSource* addTimer(std::chrono::milliseconds delay, Callback callback) {
    GSource* const source = g_timeout_source_new(static_cast<guint>(delay.count()));
    const auto call = [](gpointer data) -> gboolean {
      (*static_cast<Callback*>(data))();
      return G_SOURCE_REMOVE;
    };
    const auto forget = [](gpointer data) { delete static_cast<Callback*>(data); };
    g_source_set_callback(source, call, new Callback(std::move(callback)), forget);
    g_source_attach(source, context_);
    return source;
  }

  GMainContext* context_ = g_main_context_new();
  std::optional<GLibAdapter> adapter_;
};

}  // namespace

std::unique_ptr<Host> makeHost() { return std::make_unique<GLibHost>(); }

}  // namespace platen::tests
