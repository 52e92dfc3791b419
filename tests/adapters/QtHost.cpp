// SPDX-License-Identifier: Apache-2.0

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <optional>
#include <thread>
#include <utility>

#include "platen/adapters/Qt.h"
#include "tests/adapters/Contract.h"

namespace platen::tests {

namespace {

QCoreApplication& application() {
  static int argumentCount = 1;
  static char name[] = "platen-adapter-tests";
  static char* arguments[] = {name, nullptr};
  static QCoreApplication made(argumentCount, arguments);
  return made;
}

class QtHost final : public Host {
 public:
  QtHost() { makeAdapter(); }
  ~QtHost() override {
    dropAdapter();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  void turn(std::chrono::milliseconds limit) override {
    QTimer end;
    end.setSingleShot(true);
    end.start(limit);
    loop_.processEvents(QEventLoop::WaitForMoreEvents);
  }
  void callLater(std::chrono::milliseconds delay, std::function<void()> callback) override {
    QTimer::singleShot(delay, &context_, std::move(callback));
  }
  void makeAdapter() override { adapter_.emplace(); }
  void dropAdapter() override { adapter_.reset(); }

 private:
  QCoreApplication& application_ = application();
  QEventLoop loop_;
  QObject context_;
  std::optional<QtAdapter> adapter_;
};

// Without a wait nothing comes before one.
TEST_F(Adapter, WorksWhereEventsAreOnlyPolledFor) {
  ScriptedPeer peer({answeringAll()});
  const auto recorder = std::make_shared<RequestRecorder>();
  const auto request = makeRequest(recorder);
  host->runFor(std::chrono::milliseconds(10));
  request->sendTo(targetOf(peer));
  for (int count = 0; count < 5000 && !recorder->hasEnded(); ++count) {
    QCoreApplication::processEvents();
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(recorder->calls, "WDORF");
}

}  // namespace

std::unique_ptr<Host> makeHost() { return std::make_unique<QtHost>(); }

}  // namespace platen::tests
