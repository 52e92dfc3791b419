// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Platen in a Qt application (QtCore 5.12 and later, 6).

#include <QAbstractEventDispatcher>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <memory>
#include <utility>

#include "platen/RunLoop.h"
#include "platen/adapters/Wait.h"

namespace platen::inline v0 {

/// Drives a run loop from the event loop of its thread, nested event loops included.
///
///     QCoreApplication application(argc, argv);
///     platen::QtAdapter platen;
///     request->sendTo(*printer);
///     return application.exec();
///
/// The adapter may be destroyed from within a turn that it drives. What a delegate throws ends the
/// program: Qt cannot pass it on.
///
/// Threads: used on the thread of its run loop only. Neither copied nor moved.
class QtAdapter {
 public:
  /// To be made when the thread has an event dispatcher: in the main thread after the
  /// QCoreApplication, within a QThread, elsewhere after a QEventLoop. Takes `RunLoop::setWakeUp`
  /// for itself and holds `loop`.
  explicit QtAdapter(std::shared_ptr<RunLoop> loop = RunLoop::current())
      : driver_(new Driver(std::move(loop))) {}
  QtAdapter(const QtAdapter&) = delete;
  QtAdapter& operator=(const QtAdapter&) = delete;
  /// Nothing is driven any more, and `setWakeUp` is empty. The run loop and its exchanges stay.
  ~QtAdapter() { driver_->end(); }

 private:
  /// The receiver of Qt's signals; it goes after the last turn that it drives.
  class Driver : public QObject {
   public:
    explicit Driver(std::shared_ptr<RunLoop> loop)
        : loop_(std::move(loop)), notifier_(loop_->descriptor(), QSocketNotifier::Read) {
      timer_.setSingleShot(true);
      timer_.setTimerType(::Qt::PreciseTimer);
      connect(&notifier_, &QSocketNotifier::activated, this, [this] { turn(); });
      connect(&timer_, &QTimer::timeout, this, [this] { turn(); });
      // Called before each wait, but not by an application that only polls for events.
      aboutToBlock_ = connect(QAbstractEventDispatcher::instance(),
                              &QAbstractEventDispatcher::aboutToBlock, this, [this] { arm(); });
      loop_->setWakeUp([this] { timer_.start(0); });
      arm();
    }

    void end() {
      hasEnded_ = true;
      loop_->setWakeUp(nullptr);
      disconnect(aboutToBlock_);
      notifier_.setEnabled(false);
      timer_.stop();
      if (turnsInProgress_ == 0) {
        delete this;
      }
    }

   private:
    void turn() noexcept {
      ++turnsInProgress_;
      loop_->runOnce(std::chrono::milliseconds(0));
      --turnsInProgress_;
      if (!hasEnded_) {
        arm();
      } else if (turnsInProgress_ == 0) {
        deleteLater();
      }
    }

    void arm() {
      const int wait = shorterTimeout(*loop_, -1);
      if (wait < 0) {
        timer_.stop();
      } else {
        timer_.start(wait);
      }
    }

    std::shared_ptr<RunLoop> loop_;
    QSocketNotifier notifier_;
    QTimer timer_;
    QMetaObject::Connection aboutToBlock_;
    int turnsInProgress_ = 0;
    bool hasEnded_ = false;
  };

  Driver* driver_;
};

}  // namespace platen::inline v0
