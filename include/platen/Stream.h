// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Byte streams: where documents come from and where the octets after an answer go.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Data.h"
#include "platen/Error.h"
#include "platen/Export.h"

namespace platen::inline v0 {

class RunLoop;
class Stream;

/// Where a stream is in its life: `notOpen`, `open`, then `atEnd` or `error`, at last `closed`. One
/// that failed keeps `error` when it is closed. The streams made here are never seen in `opening`,
/// `reading` or `writing`: they do all of that within one call.
enum class StreamStatus {
  notOpen,  ///< `open` has not been called.
  opening,  ///< `open` has been called and is not done.
  open,     ///< Can be read from or written to.
  reading,  ///< A read is under way.
  writing,  ///< A write is under way.
  atEnd,    ///< A read has met the end; further ones give 0.
  closed,   ///< `close` has been called.
  error     ///< Something failed; `Stream::streamError` says why.
};

/// What happens to a stream. The streams made here tell `hasBytesAvailable` and nothing else; all
/// others are for streams of an application.
enum class StreamEvent {
  openCompleted,      ///< `open` has succeeded.
  hasBytesAvailable,  ///< A read would give octets, the end or an error.
  hasSpaceAvailable,  ///< A write would take octets, or give an error.
  errorOccurred,      ///< The status has become `StreamStatus::error`.
  endEncountered      ///< The status has become `StreamStatus::atEnd`.
};

/// Is told what happens to a stream that is scheduled in a run loop. Every operation has an empty
/// default.
///
/// Threads: called on the thread of the run loop only.
class PLATEN_EXPORT StreamDelegate {
 public:
  virtual ~StreamDelegate();
  /// `event` happened on `stream`; called from within the run loop's turn. May read the stream,
  /// close it and let go of it. What it throws leaves the run loop's call.
  virtual void streamHandleEvent(Stream& stream, StreamEvent event);
};

/// What input and output streams share.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT Stream {
 public:
  Stream();
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  virtual ~Stream();

  /// Opens the stream. Opening it a second time does nothing, and nor does opening a closed one: a
  /// stream is used once. A failure shows in `streamStatus`.
  virtual void open() = 0;
  /// Closes it; what it owns (a file that it opened) is let go, and it is scheduled nowhere any
  /// more. Closing twice does nothing; a stream that was never opened is closed for good too.
  virtual void close() = 0;
  /// Where the stream is in its life, after everything that was called so far. A read or a write
  /// that only has to wait (`EAGAIN`) does not change it.
  [[nodiscard]] virtual StreamStatus streamStatus() const = 0;
  /// Why the status is `StreamStatus::error`, in the domain "POSIX" (`kPOSIXErrorDomain`) with
  /// errno as code (EIO where a standard stream tells no better); null otherwise.
  [[nodiscard]] virtual std::shared_ptr<const Error> streamError() const = 0;

  /// The delegate, not held by the stream; null when there is none or it is gone.
  [[nodiscard]] virtual std::shared_ptr<StreamDelegate> delegate() const;
  /// Takes the place of an earlier delegate; an empty pointer is none. The caller keeps it alive.
  /// An exchange that waits for its document (`HTTPRequest::bodyStream`) takes this place, passes
  /// events on to the one before, and gives it back in the end.
  virtual void setDelegate(std::weak_ptr<StreamDelegate> delegate);

  /// A named property, or nothing. Streams of this library have none of their own but keep what
  /// `setPropertyForKey` gives them.
  [[nodiscard]] virtual std::optional<std::string> propertyForKey(std::string_view key) const;
  /// Keeps `property` under `key`, in the place of an earlier one. Returns whether the stream took
  /// it; the streams of this library always do.
  virtual bool setPropertyForKey(std::string_view property, std::string_view key);

  /// Has the delegate told of events from within `loop`'s turns, until removed or closed; to be
  /// called when the stream is open. Returns whether that will happen. Of the streams made here
  /// those over a pipe, a socket or a terminal do it: `hasBytesAvailable` is told when a read would
  /// give octets, the end or an error, once for each time that the stream is read or scheduled
  /// anew. All others are asked, not waited for: they return false, the default. `mode` names a set
  /// of sources; the library has one, "default". The thread is that of `loop`.
  virtual bool scheduleInRunLoop(RunLoop& loop, std::string_view mode);
  /// Takes the stream off `loop`: nothing is told from there any more. Does nothing where it is not
  /// scheduled, the default. `mode` as above.
  virtual void removeFromRunLoop(RunLoop& loop, std::string_view mode);

 private:
  std::weak_ptr<StreamDelegate> delegate_;
  std::map<std::string, std::string, std::less<>> properties_;
};

class OutputStream;

/// A stream to read from.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT InputStream : public Stream {
 public:
  ~InputStream() override;

  // Each is a new stream, never null and not yet open: what is wrong with its source shows when it
  // is opened.

  /// Over octets in memory; the stream owns them.
  static std::shared_ptr<InputStream> withData(Data data);
  /// Over octets that the caller keeps alive and unchanged for the stream's life.
  static std::shared_ptr<InputStream> withBytes(Bytes bytes);
  /// Over the file at `path`, opened by `open()` and closed by `close()` or with the stream. A
  /// missing file or a directory is an error there.
  static std::shared_ptr<InputStream> withFileAtPath(std::string path);
  /// Over a descriptor (file, pipe, socket) that stays the caller's: it is never closed here, and
  /// its file status flags are left as they are.
  static std::shared_ptr<InputStream> withFileDescriptor(int descriptor);
  /// Over a standard stream that the caller keeps alive for this stream's life. Its buffer is read
  /// from directly: what that throws becomes this stream's error, and the standard stream's own
  /// state flags are not touched.
  static std::shared_ptr<InputStream> withStream(std::istream& stream);

  /// Reads at most `maxLength` octets in one attempt, waiting where the source makes one wait; an
  /// attempt that a signal interrupts is made anew. Returns how many were placed; 0 at the end of
  /// the stream (and for a `maxLength` of 0); -1 on an error (see `streamError`), when the stream
  /// is not open, or when a nonblocking descriptor has nothing to give yet. In that last case, and
  /// in no other, the status is still `StreamStatus::open`, and `streamError` is null: try again
  /// later.
  virtual std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) = 0;
  /// False only when a read would certainly give nothing now: the stream is not open, failed, at
  /// its end, or its descriptor is not ready. An end that no read has met yet is news, thus true,
  /// except in memory: there the last octet's read makes the status `StreamStatus::atEnd`.
  [[nodiscard]] virtual bool hasBytesAvailable() const = 0;
  /// Lends the stream's own buffer where it has one: true, and `buffer` holds the octets that a
  /// read would give next, none at the end. They stay valid until the next operation on the stream.
  /// Of the streams made here those in memory do it. The default, and every stream that is not
  /// open: false, and `buffer` stays as it was.
  virtual bool getBuffer(Bytes& buffer);
  /// Passes over octets of what `getBuffer` lends, just as if they had been read. Returns how many:
  /// `count`, or all that are lent when these are fewer. The default, which lends nothing: 0.
  virtual std::size_t skip(std::size_t count);

  /// Opens the stream, reads it to its end, closes it and returns what it gave. An error ends the
  /// reading as the end does, and so does a nonblocking descriptor that has nothing to give yet;
  /// see `streamError`.
  Data readDataToEndOfStream();
  /// The same, appending to `data`, which is also returned. How much that may be is not limited.
  Data& readDataToEndOfStreamAppendingToData(Data& data);
  /// Copies what is left of this stream to `output`, in chunks of at most 4096 octets; does nothing
  /// when `output` is null. Opens and closes neither. Stops at the first read that gives less than
  /// 1 octet, or the first write that takes none. What one write does not take of a chunk is
  /// dropped, by design: an output that cannot take a chunk whole reports so by its own error.
  void transferContentsTo(OutputStream* output);
};

/// A stream to write to.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT OutputStream : public Stream {
 public:
  ~OutputStream() override;

  // Each is a new stream, never null and not yet open: what is wrong with its destination shows
  // when it is opened.

  /// Into memory that the stream owns; see `data`.
  static std::shared_ptr<OutputStream> toMemory();
  /// Into the file at `path`, made or emptied by `open()`, closed by `close()` or with the stream.
  /// A failure of that closing shows in `streamStatus` too.
  static std::shared_ptr<OutputStream> toFileAtPath(std::string path);
  /// Into a descriptor that stays the caller's: it is never closed here, and its file status flags
  /// are left as they are. A socket whose other side is gone is an error (EPIPE) without a signal;
  /// a pipe without a reader raises SIGPIPE, as `write` does, in a program that does not ignore it:
  /// signal handlers are the program's own.
  static std::shared_ptr<OutputStream> toFileDescriptor(int descriptor);
  /// Into a standard stream that the caller keeps alive for this stream's life; flushed by `close`.
  /// Its buffer is written to directly: what that throws becomes this stream's error, and the
  /// standard stream's own state flags are not touched.
  static std::shared_ptr<OutputStream> toStream(std::ostream& stream);

  /// Writes at most `maxLength` octets in one attempt; one that a signal interrupts is made anew.
  /// Returns how many were taken, which may be fewer; -1 on an error (see `streamError`), when the
  /// stream is not open, or when a nonblocking descriptor has no space yet. In that last case, and
  /// in no other, the status is still `StreamStatus::open`, and `streamError` is null.
  virtual std::ptrdiff_t write(const std::uint8_t* bytes, std::size_t maxLength) = 0;
  /// False only when a write would certainly take nothing now: the stream is not open, failed, or
  /// its descriptor is not ready.
  [[nodiscard]] virtual bool hasSpaceAvailable() const = 0;
  /// What was written so far to a memory stream; null for every other kind. Lives as long as the
  /// stream and changes with the next write.
  [[nodiscard]] virtual const Data* data() const;
};

}  // namespace platen::inline v0
