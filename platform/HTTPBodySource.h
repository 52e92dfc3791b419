// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platen/Data.h"
#include "platen/RunLoop.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

/// How much is read at once; the transfer takes and sends as much at once.
inline constexpr std::size_t kHTTPPieceLength = 65536;

/// A body that is read from a stream, a piece ahead: when libcurl asks for octets, the stream's own
/// code may not be run. What that code throws is a failure of the stream.
///
/// While it waits for the stream it is the stream's delegate, and passes on what it is told to the
/// delegate that the stream had before, which it puts back in the end.
///
/// Threads: one thread at a time. Neither copied nor moved.
class HTTPBodySource final : public StreamDelegate,
                             public std::enable_shared_from_this<HTTPBodySource> {
 public:
  enum class State {
    ready,   ///< there are octets, or the end was seen
    dry,     ///< the stream has nothing to give now
    failed,  ///< the stream reports an error
  };

  explicit HTTPBodySource(std::shared_ptr<InputStream> stream);
  HTTPBodySource(const HTTPBodySource&) = delete;
  HTTPBodySource& operator=(const HTTPBodySource&) = delete;
  /// Closes the stream.
  ~HTTPBodySource() override;

  /// Opens the stream; false when it reports an error.
  bool open();
  /// Reads the next piece when the one before is used up.
  State refill();
  /// Moves octets out of the piece: how many, 0 at the end of the body, or nothing when `refill`
  /// is due.
  std::optional<std::size_t> take(std::uint8_t* destination, std::size_t room);
  /// Has `ready` called from a turn of `loop` when the stream tells that it has octets. False when
  /// it does not tell, and must be asked.
  bool callWhenReady(RunLoop& loop, std::function<void()> ready);
  void streamHandleEvent(Stream& stream, StreamEvent event) override;
  /// Why the stream failed, or null.
  [[nodiscard]] std::shared_ptr<const Error> error();

 private:
  [[nodiscard]] bool mayComeLater() const;
  State refillFromStream();
  void becomeDelegate();
  void leaveLoop();
  void restoreDelegate();
  template <typename Call>
  bool guarded(Call call);

  std::shared_ptr<InputStream> stream_;
  std::weak_ptr<StreamDelegate> formerDelegate_;
  std::weak_ptr<RunLoop> loop_;
  std::function<void()> ready_;
  std::shared_ptr<const Error> thrown_;
  Data piece_;
  std::size_t taken_ = 0;
  /// What the stream reads into. Its code may run the loop, in which libcurl asks for octets; the
  /// stream is then left alone.
  Data next_;
  bool isReading_ = false;
  bool isAtEnd_ = false;
};

}  // namespace platen::inline v0
