// SPDX-License-Identifier: Apache-2.0

#include <optional>

#include "platen/adapters/Asio.h"
#include "tests/adapters/Host.h"

namespace platen::tests {

namespace {

class AsioHost final : public Host {
 public:
  AsioHost() { makeAdapter(); }

  void turn(std::chrono::milliseconds limit) override {
    context_.restart();
    context_.run_one_for(limit);
  }
  void callLater(std::chrono::milliseconds delay, std::function<void()> callback) override {
    auto timer = std::make_shared<asio::steady_timer>(context_, delay);
    timer->async_wait([timer, callback = std::move(callback)](const auto&) { callback(); });
  }
  void makeAdapter() override { adapter_.emplace(context_); }
  void dropAdapter() override { adapter_.reset(); }
  [[nodiscard]] bool passesExceptions() const override { return true; }

 private:
  asio::io_context context_;
  std::optional<AsioAdapter> adapter_;
};

}  // namespace

std::unique_ptr<Host> makeHost() { return std::make_unique<AsioHost>(); }

}  // namespace platen::tests
