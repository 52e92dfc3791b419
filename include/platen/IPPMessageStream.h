// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The body of a request that is sent with a document (RFC 8010 §4: the document follows the
/// message).

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Data.h"
#include "platen/Export.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

/// One input stream over an encoded message and, right after it, the octets of a data stream. In
/// everything but the octets that come first it is its data stream: opening, closing, status,
/// errors, properties, delegate and scheduling are the data stream's own.
///
///     stream = message-header *OCTET
///
/// A read never mixes the two: the one that takes the last octet of the message returns short.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPMessageStream : public InputStream {
 public:
  /// A new stream over both, which it holds; the message must not change meanwhile. Null when the
  /// message is null or empty. Without a data stream the stream is one over a copy of the message
  /// alone: `messageHeader` is null then, and the message is the data stream.
  static std::shared_ptr<IPPMessageStream> initWithMessageHeader(
      std::shared_ptr<const Data> messageHeader, std::shared_ptr<InputStream> dataStream);
  /// The same without the checks: a null message counts as none, `dataStream` must not be null.
  IPPMessageStream(std::shared_ptr<const Data> messageHeader,
                   std::shared_ptr<InputStream> dataStream) noexcept;
  ~IPPMessageStream() override;

  /// The encoded message, read or not; may be null.
  [[nodiscard]] const std::shared_ptr<const Data>& messageHeader() const noexcept {
    return messageHeader_;
  }
  /// Takes its place. `bytesLeftInMessage` and `cursor` stay as they are; no more is read than
  /// there is.
  void setMessageHeader(std::shared_ptr<const Data> header) noexcept;
  /// What follows the message.
  [[nodiscard]] const std::shared_ptr<InputStream>& dataStream() const noexcept {
    return dataStream_;
  }
  /// Takes its place, in whatever state it is. The stream must not be null.
  void setDataStream(std::shared_ptr<InputStream> stream) noexcept;
  /// How many octets of the message are still to come.
  [[nodiscard]] std::uint64_t bytesLeftInMessage() const noexcept { return bytesLeftInMessage_; }
  /// Sets how many are to come; 0 passes over the rest of the message.
  void setBytesLeftInMessage(std::uint64_t count) noexcept { bytesLeftInMessage_ = count; }
  /// Where in the message the next octet is, from 0.
  [[nodiscard]] std::uint64_t cursor() const noexcept { return cursor_; }
  /// Sets where it is; `bytesLeftInMessage` stays as it is.
  void setCursor(std::uint64_t cursor) noexcept { cursor_ = cursor; }
  /// True while octets of the message are left.
  [[nodiscard]] bool shouldReadEncodedMessage() const noexcept { return bytesLeftInMessage_ != 0; }

  /// Octets of the message while there are any, whether or not the stream is open; after that what
  /// the data stream gives, with its results.
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override;
  /// True while octets of the message are left; after that what the data stream says.
  [[nodiscard]] bool hasBytesAvailable() const override;
  /// False: the stream never lends a buffer, and `buffer` stays as it was.
  bool getBuffer(Bytes& buffer) override;

  // Everything else is the data stream's own, with its results.

  void open() override;
  void close() override;
  [[nodiscard]] StreamStatus streamStatus() const override;
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override;
  [[nodiscard]] std::shared_ptr<StreamDelegate> delegate() const override;
  void setDelegate(std::weak_ptr<StreamDelegate> delegate) override;
  [[nodiscard]] std::optional<std::string> propertyForKey(std::string_view key) const override;
  bool setPropertyForKey(std::string_view property, std::string_view key) override;
  bool scheduleInRunLoop(RunLoop& loop, std::string_view mode) override;
  void removeFromRunLoop(RunLoop& loop, std::string_view mode) override;

 private:
  std::shared_ptr<const Data> messageHeader_;
  std::shared_ptr<InputStream> dataStream_;
  std::uint64_t bytesLeftInMessage_;
  std::uint64_t cursor_ = 0;
};

}  // namespace platen::inline v0
