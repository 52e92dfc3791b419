// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platen/IPPMessageStream.h"
#include "platen/RunLoop.h"

namespace platen {
namespace {

using testing::ElementsAre;

std::shared_ptr<const Data> dataOf(std::string_view text) {
  return std::make_shared<const Data>(text.begin(), text.end());
}

std::shared_ptr<InputStream> streamOf(std::string_view text) {
  return InputStream::withData(Data(text.begin(), text.end()));
}

/// One read of at most `capacity` octets: what it placed, or its negative result.
std::string readOnce(InputStream& stream, std::size_t capacity) {
  std::vector<std::uint8_t> room(capacity + 1, '#');
  const auto count = stream.read(room.data(), capacity);
  if (count < 0) {
    return "failed";
  }
  EXPECT_EQ(room[static_cast<std::size_t>(count)], '#') << "written past the count";
  return {room.begin(), room.begin() + count};
}

/// Answers every operation in its own way, and notes down that it was asked.
class ProbeStream final : public InputStream {
 public:
  void open() override { asked.emplace_back("open"); }
  void close() override { asked.emplace_back("close"); }
  [[nodiscard]] StreamStatus streamStatus() const override { return status; }
  [[nodiscard]] std::shared_ptr<const Error> streamError() const override { return error; }
  std::ptrdiff_t read(std::uint8_t* destination, std::size_t maxLength) override {
    asked.push_back("read " + std::to_string(maxLength));
    if (result > 0) {
      *destination = 'p';
    }
    return result;
  }
  [[nodiscard]] bool hasBytesAvailable() const override { return isAvailable; }
  bool getBuffer(Bytes& buffer) override {
    static const std::array<std::uint8_t, 3> lent{'a', 'b', 'c'};
    buffer = lent;
    return true;
  }
  std::size_t skip(std::size_t count) override {
    asked.emplace_back("skip");
    return count;
  }
  [[nodiscard]] std::optional<std::string> propertyForKey(std::string_view key) const override {
    return key == "known" ? std::optional<std::string>("property") : std::nullopt;
  }
  bool setPropertyForKey(std::string_view property, std::string_view key) override {
    asked.push_back(std::string(key) + " = " + std::string(property));
    return takesProperties;
  }
  bool scheduleInRunLoop(RunLoop& loop, std::string_view mode) override {
    asked.push_back("schedule " + std::string(mode));
    lastLoop = &loop;
    return mode == "default";
  }
  void removeFromRunLoop(RunLoop& loop, std::string_view mode) override {
    asked.push_back("remove " + std::string(mode));
    lastLoop = &loop;
  }

  std::vector<std::string> asked;
  std::ptrdiff_t result = 1;
  StreamStatus status = StreamStatus::notOpen;
  std::shared_ptr<const Error> error;
  bool isAvailable = false;
  bool takesProperties = true;
  RunLoop* lastLoop = nullptr;
};

class IPPMessageStreamForwarding : public testing::Test {
 protected:
  std::shared_ptr<ProbeStream> probe = std::make_shared<ProbeStream>();
  std::shared_ptr<IPPMessageStream> stream =
      IPPMessageStream::initWithMessageHeader(dataOf("message"), probe);
};

TEST(IPPMessageStream, IsNotMadeOfNoMessage) {
  EXPECT_EQ(IPPMessageStream::initWithMessageHeader(nullptr, streamOf("data")), nullptr);
  EXPECT_EQ(IPPMessageStream::initWithMessageHeader(dataOf(""), streamOf("data")), nullptr);
  EXPECT_EQ(IPPMessageStream::initWithMessageHeader(nullptr, nullptr), nullptr);
  EXPECT_EQ(IPPMessageStream::initWithMessageHeader(dataOf(""), nullptr), nullptr);
}

TEST(IPPMessageStream, HoldsTheMessageAndTheDataStream) {
  const auto message = dataOf("message");
  const auto data = streamOf("data");
  const auto stream = IPPMessageStream::initWithMessageHeader(message, data);
  EXPECT_EQ(stream->messageHeader(), message);
  EXPECT_EQ(stream->dataStream(), data);
  EXPECT_EQ(stream->bytesLeftInMessage(), 7U);
  EXPECT_EQ(stream->cursor(), 0U);
  EXPECT_TRUE(stream->shouldReadEncodedMessage());
}

TEST(IPPMessageStream, NeverMixesMessageAndDataInOneRead) {
  const auto stream =
      IPPMessageStream::initWithMessageHeader(dataOf("123456789"), streamOf(std::string(100, 'd')));
  stream->open();
  EXPECT_EQ(readOnce(*stream, 4), "1234");
  EXPECT_EQ(stream->cursor(), 4U);
  EXPECT_EQ(stream->bytesLeftInMessage(), 5U);
  EXPECT_EQ(readOnce(*stream, 4), "5678");
  EXPECT_EQ(readOnce(*stream, 4), "9");
  EXPECT_EQ(stream->cursor(), 9U);
  EXPECT_FALSE(stream->shouldReadEncodedMessage());
  for (int i = 0; i < 25; ++i) {
    EXPECT_EQ(readOnce(*stream, 4), "dddd");
  }
  EXPECT_EQ(readOnce(*stream, 4), "");
  EXPECT_EQ(stream->streamStatus(), StreamStatus::atEnd);
  EXPECT_EQ(stream->cursor(), 9U);
}

TEST(IPPMessageStream, GivesNoMoreThanIsLeftOfTheMessage) {
  const auto stream =
      IPPMessageStream::initWithMessageHeader(dataOf("123456789"), streamOf("data"));
  stream->open();
  EXPECT_EQ(readOnce(*stream, 1000), "123456789");
  EXPECT_EQ(readOnce(*stream, 1000), "data");
}

TEST(IPPMessageStream, GivesTheWholeMessageToAReadOfItsLength) {
  const auto stream =
      IPPMessageStream::initWithMessageHeader(dataOf("123456789"), streamOf("data"));
  EXPECT_EQ(readOnce(*stream, 9), "123456789");
  EXPECT_FALSE(stream->shouldReadEncodedMessage());
}

TEST(IPPMessageStream, KeepsTheOrderOfOctetsAtEveryCapacity) {
  const std::string message = "the message";
  const std::string data = "and then the document";
  for (const std::size_t capacity : {1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 11U, 16U, 31U, 1000U}) {
    const auto stream = IPPMessageStream::initWithMessageHeader(dataOf(message), streamOf(data));
    stream->open();
    std::string all;
    for (auto piece = readOnce(*stream, capacity); !piece.empty();
         piece = readOnce(*stream, capacity)) {
      all += piece;
      EXPECT_EQ(stream->cursor() + stream->bytesLeftInMessage(), message.size());
    }
    EXPECT_EQ(all, message + data) << capacity;
  }
}

TEST(IPPMessageStream, ReadsNothingIntoNoRoom) {
  const auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), streamOf("data"));
  stream->open();
  EXPECT_EQ(stream->read(nullptr, 0), 0);
  EXPECT_EQ(stream->cursor(), 0U);
  EXPECT_EQ(stream->bytesLeftInMessage(), 7U);
  EXPECT_TRUE(stream->hasBytesAvailable());
  EXPECT_EQ(readOnce(*stream, 100), "message");
}

TEST(IPPMessageStream, GivesTheMessageBeforeTheDataStreamIsOpen) {
  const auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), streamOf("data"));
  EXPECT_EQ(stream->streamStatus(), StreamStatus::notOpen);
  EXPECT_TRUE(stream->hasBytesAvailable());
  EXPECT_EQ(readOnce(*stream, 100), "message");
  EXPECT_EQ(readOnce(*stream, 100), "failed");
  stream->open();
  EXPECT_EQ(readOnce(*stream, 100), "data");
}

TEST(IPPMessageStream, WithoutADataStreamIsAStreamOverTheMessage) {
  const auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), nullptr);
  EXPECT_EQ(stream->messageHeader(), nullptr);
  EXPECT_EQ(stream->bytesLeftInMessage(), 0U);
  EXPECT_EQ(stream->cursor(), 0U);
  EXPECT_FALSE(stream->shouldReadEncodedMessage());
  ASSERT_NE(stream->dataStream(), nullptr);
  EXPECT_EQ(readOnce(*stream, 100), "failed");  // a plain stream has to be opened
  stream->open();
  EXPECT_TRUE(stream->dataStream()->hasBytesAvailable());
  EXPECT_EQ(readOnce(*stream, 4), "mess");
  EXPECT_EQ(readOnce(*stream, 100), "age");
  EXPECT_EQ(readOnce(*stream, 100), "");
  EXPECT_EQ(stream->cursor(), 0U);
}

TEST(IPPMessageStream, OutlivesTheMessageThatItWasMadeOf) {
  auto message = dataOf("message");
  const auto stream = IPPMessageStream::initWithMessageHeader(message, nullptr);
  message.reset();
  stream->open();
  EXPECT_EQ(readOnce(*stream, 100), "message");
}

TEST(IPPMessageStream, LetsGoOfWhatASetterReplaces) {
  auto message = dataOf("message");
  auto data = streamOf("data");
  const auto stream = IPPMessageStream::initWithMessageHeader(message, data);
  const std::weak_ptr oldMessage = std::exchange(message, nullptr);
  const std::weak_ptr oldData = std::exchange(data, nullptr);
  EXPECT_FALSE(oldMessage.expired());
  EXPECT_FALSE(oldData.expired());
  const auto newMessage = dataOf("another");
  const auto newData = streamOf("more");
  stream->setMessageHeader(newMessage);
  stream->setDataStream(newData);
  EXPECT_TRUE(oldMessage.expired());
  EXPECT_TRUE(oldData.expired());
  EXPECT_EQ(stream->messageHeader(), newMessage);
  EXPECT_EQ(stream->dataStream(), newData);
  stream->open();
  EXPECT_EQ(readOnce(*stream, 100), "another");
  EXPECT_EQ(readOnce(*stream, 100), "more");
}

TEST(IPPMessageStream, LetsGoOfBothAtItsEnd) {
  auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), streamOf("data"));
  const std::weak_ptr message = stream->messageHeader();
  const std::weak_ptr data = stream->dataStream();
  stream.reset();
  EXPECT_TRUE(message.expired());
  EXPECT_TRUE(data.expired());
}

TEST(IPPMessageStream, GoesOnWhereTheSettersSay) {
  const auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), streamOf("data"));
  stream->open();
  stream->setCursor(4);
  stream->setBytesLeftInMessage(3);
  EXPECT_EQ(readOnce(*stream, 100), "age");
  stream->setCursor(0);
  stream->setBytesLeftInMessage(7);
  EXPECT_TRUE(stream->shouldReadEncodedMessage());
  EXPECT_EQ(readOnce(*stream, 100), "message");
  stream->setBytesLeftInMessage(0);
  EXPECT_EQ(readOnce(*stream, 100), "data");
}

TEST(IPPMessageStream, ReadsNothingFromBeyondTheMessage) {
  const auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), streamOf("data"));
  stream->open();
  stream->setBytesLeftInMessage(~std::uint64_t{0});
  EXPECT_EQ(readOnce(*stream, 100), "message");
  EXPECT_EQ(readOnce(*stream, 100), "");
  stream->setCursor(~std::uint64_t{0});
  EXPECT_EQ(readOnce(*stream, 100), "");
  stream->setMessageHeader(nullptr);
  stream->setCursor(0);
  EXPECT_EQ(readOnce(*stream, 100), "");
}

TEST(IPPMessageStream, IsReadToItsEndLikeAnyStream) {
  const auto stream = IPPMessageStream::initWithMessageHeader(dataOf("message"), streamOf("data"));
  const auto all = stream->readDataToEndOfStream();
  EXPECT_EQ(std::string(all.begin(), all.end()), "messagedata");
  EXPECT_EQ(stream->dataStream()->streamStatus(), StreamStatus::closed);
}

TEST_F(IPPMessageStreamForwarding, PassesOnReadsWithTheirArgumentsAndResults) {
  EXPECT_EQ(readOnce(*stream, 7), "message");
  EXPECT_THAT(probe->asked, ElementsAre());
  EXPECT_EQ(readOnce(*stream, 42), "p");
  probe->result = 0;
  EXPECT_EQ(readOnce(*stream, 1), "");
  probe->result = -1;
  EXPECT_EQ(readOnce(*stream, 65536), "failed");
  EXPECT_EQ(stream->read(nullptr, 0), -1);  // also of no room: the answer is the data stream's
  EXPECT_THAT(probe->asked, ElementsAre("read 42", "read 1", "read 65536", "read 0"));
}

TEST_F(IPPMessageStreamForwarding, HasBytesWhileThereIsMessageThenWhatTheDataStreamSays) {
  EXPECT_TRUE(stream->hasBytesAvailable());
  readOnce(*stream, 6);
  EXPECT_TRUE(stream->hasBytesAvailable());
  readOnce(*stream, 6);
  EXPECT_FALSE(stream->hasBytesAvailable());
  probe->isAvailable = true;
  EXPECT_TRUE(stream->hasBytesAvailable());
}

TEST_F(IPPMessageStreamForwarding, LendsNothingThoughTheDataStreamWould) {
  Bytes buffer;
  EXPECT_FALSE(stream->getBuffer(buffer));
  EXPECT_EQ(stream->skip(3), 0U);
  EXPECT_EQ(readOnce(*stream, 100), "message");
  EXPECT_FALSE(stream->getBuffer(buffer));
  EXPECT_EQ(stream->skip(3), 0U);
  EXPECT_TRUE(buffer.empty());
  EXPECT_THAT(probe->asked, ElementsAre());
}

TEST_F(IPPMessageStreamForwarding, OpensAndClosesTheDataStream) {
  stream->open();
  stream->close();
  stream->open();
  EXPECT_THAT(probe->asked, ElementsAre("open", "close", "open"));
}

TEST_F(IPPMessageStreamForwarding, HasTheStatusOfTheDataStream) {
  for (const auto status :
       {StreamStatus::notOpen, StreamStatus::opening, StreamStatus::open, StreamStatus::reading,
        StreamStatus::writing, StreamStatus::atEnd, StreamStatus::closed, StreamStatus::error}) {
    probe->status = status;
    EXPECT_EQ(stream->streamStatus(), status);
  }
}

TEST_F(IPPMessageStreamForwarding, HasTheErrorOfTheDataStream) {
  EXPECT_EQ(stream->streamError(), nullptr);
  probe->error = std::make_shared<Error>("POSIX", EIO);
  EXPECT_EQ(stream->streamError(), probe->error);
}

TEST_F(IPPMessageStreamForwarding, HasTheDelegateOfTheDataStream) {
  EXPECT_EQ(stream->delegate(), nullptr);
  auto first = std::make_shared<StreamDelegate>();
  stream->setDelegate(first);
  EXPECT_EQ(probe->delegate(), first);
  const auto second = std::make_shared<StreamDelegate>();
  probe->setDelegate(second);
  EXPECT_EQ(stream->delegate(), second);
  stream->setDelegate({});
  EXPECT_EQ(probe->delegate(), nullptr);
}

TEST_F(IPPMessageStreamForwarding, HasThePropertiesOfTheDataStream) {
  EXPECT_EQ(stream->propertyForKey("known"), "property");
  EXPECT_EQ(stream->propertyForKey("unknown"), std::nullopt);
  EXPECT_TRUE(stream->setPropertyForKey("value", "key"));
  probe->takesProperties = false;
  EXPECT_FALSE(stream->setPropertyForKey("other", "key"));
  EXPECT_THAT(probe->asked, ElementsAre("key = value", "key = other"));
}

TEST_F(IPPMessageStreamForwarding, IsScheduledAsTheDataStream) {
  const auto loop = RunLoop::makePrivate();
  EXPECT_FALSE(stream->scheduleInRunLoop(*loop, "other"));
  EXPECT_TRUE(stream->scheduleInRunLoop(*loop, "default"));
  EXPECT_EQ(std::exchange(probe->lastLoop, nullptr), loop.get());
  stream->removeFromRunLoop(*loop, "another");
  EXPECT_EQ(probe->lastLoop, loop.get());
  EXPECT_THAT(probe->asked, ElementsAre("schedule other", "schedule default", "remove another"));
}

}  // namespace
}  // namespace platen
