// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Where the decoder takes the octets of an encoded message (RFC 8010 §3.1) from.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platen/Data.h"
#include "platen/Export.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

/// A source of octets, read in order and once. The base itself reads nothing.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPBytesReader {
 public:
  IPPBytesReader();
  IPPBytesReader(const IPPBytesReader&) = delete;
  IPPBytesReader& operator=(const IPPBytesReader&) = delete;
  virtual ~IPPBytesReader();

  /// A new `IPPDataReader` over `data`, which it keeps alive; null counts as no octets.
  static std::shared_ptr<IPPBytesReader> readerWithData(std::shared_ptr<const Data> data);
  /// A new `IPPStreamReader` over `stream`, which it keeps alive and which the caller has opened.
  static std::shared_ptr<IPPBytesReader> readerWithStream(std::shared_ptr<InputStream> stream);
  /// A new `IPPFileHandleReader` over an open descriptor, which stays the caller's and must stay
  /// open as long as the reader is used.
  static std::shared_ptr<IPPBytesReader> readerWithFileHandle(int descriptor);

  /// Places at most `length` octets at `destination`, in one attempt: a source that gives fewer is
  /// not asked again. Returns how many were placed, 0 at the end, -1 on an error. The base: -1.
  virtual std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length);

  /// The octets that can be had without copying, which `readData` would give next; empty when the
  /// source has none such, or is at its end. They stay valid until the next `readData` or
  /// `advance`, where a class promises no more. The base: empty.
  [[nodiscard]] virtual Bytes window() const noexcept;
  /// Marks `count` octets of the window as read, at most all of it. The base does nothing.
  virtual void advance(std::size_t count) noexcept;
};

/// Reads from memory.
///
/// Threads: one thread at a time; readers on several threads may share their data. Neither copied
/// nor moved.
class PLATEN_EXPORT IPPDataReader : public IPPBytesReader {
 public:
  /// Over `data`, which must not change meanwhile; null counts as no octets.
  explicit IPPDataReader(std::shared_ptr<const Data> data);
  ~IPPDataReader() override;

  /// All of what it was made over, read or not, to be held by those who want to keep octets of the
  /// window; null when it was made over null.
  [[nodiscard]] const std::shared_ptr<const Data>& data() const noexcept { return data_; }

  /// As many octets as are left, at most `length`; 0 at the end, never -1.
  std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length) override;
  /// All octets that are left. They stay valid as long as `data` lives.
  [[nodiscard]] Bytes window() const noexcept override;
  /// Moves past `count` octets, at most to the end.
  void advance(std::size_t count) noexcept override;

 private:
  std::shared_ptr<const Data> data_;
  Bytes left_;
};

/// Reads from an input stream: one `InputStream::read` for each `readData`, with its result.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPStreamReader : public IPPBytesReader {
 public:
  /// Over `stream`, which is neither opened nor closed here. A null one gives nothing but -1.
  explicit IPPStreamReader(std::shared_ptr<InputStream> stream);
  ~IPPStreamReader() override;

  /// What it was made over; may be null.
  [[nodiscard]] const std::shared_ptr<InputStream>& stream() const noexcept { return stream_; }

  /// The result of one `InputStream::read`; -1 without a stream. Raises what the stream raises.
  std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length) override;
  /// What the stream lends (`InputStream::getBuffer`); empty when it raises.
  [[nodiscard]] Bytes window() const noexcept override;
  /// Takes the octets from the stream too (`InputStream::skip`), so that it always stands right
  /// behind what was read here. What the stream raises ends here.
  void advance(std::size_t count) noexcept override;

 private:
  std::shared_ptr<InputStream> stream_;
};

/// Reads from a descriptor: one read(2) for each `readData`, with its result.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPFileHandleReader : public IPPBytesReader {
 public:
  /// Over an open descriptor, which stays the caller's and must stay open as long as the reader is
  /// used.
  explicit IPPFileHandleReader(int descriptor);
  ~IPPFileHandleReader() override;

  /// What it was made over.
  [[nodiscard]] int fileDescriptor() const noexcept { return fileDescriptor_; }

  /// The result of one read(2): fewer octets than `length` where a pipe or a socket has no more, 0
  /// at the end, -1 on an error, also of a nonblocking descriptor that has nothing to give yet; why
  /// is in errno. A read that a signal interrupts before any octet came is made anew.
  std::ptrdiff_t readData(std::uint8_t* destination, std::size_t length) override;

 private:
  int fileDescriptor_;
};

}  // namespace platen::inline v0
