// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <system_error>

#include "platen/Stream.h"
#include "platform/POSIXError.h"

namespace platen::inline v0 {

/// The life of a stream that does its work within one call: status and error. `Base` is
/// `InputStream` or `OutputStream`.
template <typename Base>
class ConcreteStream : public Base {
 public:
  void open() final {
    if (status_ == StreamStatus::notOpen) {
      status_ = StreamStatus::open;
      noteOutcome(openResource());
    }
  }

  void close() final {
    const bool wasOpen = status_ == StreamStatus::open || status_ == StreamStatus::atEnd;
    // What failed stays so: the reason is usually asked for after the closing.
    if (status_ != StreamStatus::error) {
      status_ = StreamStatus::closed;
    }
    const int code = closeResource();
    if (wasOpen) {
      noteOutcome(code);
    }
  }

  [[nodiscard]] StreamStatus streamStatus() const final { return status_; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const final { return error_; }

 protected:
  /// Makes the resource ready; returns 0 or an errno.
  virtual int openResource() { return 0; }
  /// Lets the resource go, if it still has it; returns 0 or an errno.
  virtual int closeResource() { return 0; }

  [[nodiscard]] bool isOpen() const { return status_ == StreamStatus::open; }
  [[nodiscard]] bool isAtEnd() const { return status_ == StreamStatus::atEnd; }
  void noteEnd() { status_ = StreamStatus::atEnd; }

  /// An errno makes the stream a failed one; 0 changes nothing.
  void noteOutcome(int code) {
    if (code != 0) {
      status_ = StreamStatus::error;
      error_ = posixError(code);
    }
  }

  /// The result of a system call, its failure noted. A nonblocking descriptor that is not ready has
  /// not failed.
  std::ptrdiff_t checked(std::ptrdiff_t result) {
    if (result < 0 && errno != EAGAIN && errno != EWOULDBLOCK) {
      noteOutcome(errno);
    }
    return result;
  }

 private:
  StreamStatus status_ = StreamStatus::notOpen;
  std::shared_ptr<const Error> error_;
};

/// The errno for the exception that is being handled, which came out of a standard stream. Those of
/// the standard library's files carry one.
inline int errnoOfCurrentException() {
  try {
    throw;
  } catch (const std::system_error& error) {
    const bool isErrno = error.code().category() == std::generic_category() ||
                         error.code().category() == std::system_category();
    return isErrno && error.code().value() != 0 ? error.code().value() : EIO;
  } catch (const std::bad_alloc&) {
    return ENOMEM;
  } catch (...) {
    return EIO;
  }
}

}  // namespace platen::inline v0
