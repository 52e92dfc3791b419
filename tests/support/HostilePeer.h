// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platen/HTTP.h"
#include "tests/support/RequestRecorder.h"

namespace platen::tests {

/// How an exchange is to end.
struct End {
  std::int64_t code;
  std::int64_t underlying;
  /// What may lie behind it too, as things happen to fall out.
  std::int64_t alternative = underlying;
};
inline constexpr End kAnswered{0, 0};
inline constexpr End kTimedOut{0x0405, -1001};
inline constexpr End kLost{0x0502, static_cast<int>(HTTPErrorCode::networkConnectionLost)};
inline constexpr End kNotConnectedOrLost{0x0502,
                                         static_cast<int>(HTTPErrorCode::networkConnectionLost),
                                         static_cast<int>(HTTPErrorCode::cannotConnectToHost)};
inline constexpr End kBadServer{0x0502, static_cast<int>(HTTPErrorCode::badServerResponse)};
inline constexpr End kTooLong{0x0502, static_cast<int>(HTTPErrorCode::dataLengthExceedsMaximum)};
inline constexpr End kMalformed{0x0500, 0};
inline constexpr End kRefused403{0x0502, 403};

struct Hostility {
  const char* name;
  ScriptedPeer::Script script;
  End end;
};

inline std::string chunked(std::string_view chunks) {
  return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(chunks);
}

inline std::string chunkOf(std::string_view octets) {
  char size[20];
  std::snprintf(size, sizeof size, "%zx\r\n", octets.size());
  return size + std::string(octets) + "\r\n";
}

inline std::string withLength(std::size_t length, std::string_view body) {
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) + "\r\n\r\n" +
         std::string(body);
}

inline void stall(PeerConnection& connection) { connection.readToEnd(); }

/// Reads the request, says this, and then nothing any more.
inline ScriptedPeer::Script sayingThenStalling(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
    stall(connection);
  };
}

inline ScriptedPeer::Script sayingThenClosing(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
  };
}

inline ScriptedPeer::Script sayingThenResetting(std::string octets) {
  return [octets = std::move(octets)](PeerConnection& connection) {
    connection.readRequest();
    connection.send(octets);
    connection.sleep(std::chrono::milliseconds(20));
    connection.reset();
  };
}

/// One octet at a time.
inline ScriptedPeer::Script dribbling(std::string octets, std::chrono::milliseconds pause) {
  return [octets = std::move(octets), pause](PeerConnection& connection) {
    connection.readRequest();
    for (const char octet : octets) {
      connection.send({&octet, 1});
      connection.sleep(pause);
    }
    stall(connection);
  };
}

/// What is said again and again, until the other side has enough.
inline ScriptedPeer::Script repeating(std::string once, std::string again, std::size_t count) {
  return [=](PeerConnection& connection) {
    connection.readRequest();
    connection.send(once);
    for (std::size_t i = 0; i < count; ++i) {
      connection.send(again);
    }
    stall(connection);
  };
}

/// One exchange after the other, each with a peer that does what no server should.
class WithHostilePeers : public testing::Test {
 protected:
  // What does not decode is kept in the home directory.
  static void SetUpTestSuite() {
    std::string text = (std::filesystem::temp_directory_path() / "platen-home-XXXXXX").string();
    ASSERT_NE(mkdtemp(text.data()), nullptr);
    home_ = text;
    const char* const before = std::getenv("HOME");
    homeBefore_ = before == nullptr ? "" : before;
    setenv("HOME", home_.c_str(), 1);
  }
  static void TearDownTestSuite() {
    setenv("HOME", homeBefore_.c_str(), 1);
    std::filesystem::remove_all(home_);
  }
  void SetUp() override {
    // What a first exchange sets up for the whole process, or clears away, does not count.
    ScriptedPeer peer({sayingThenClosing("")});
    onOwnThread([&] { expectEnd({"the first", nullptr, kLost}, peer); });
  }

  /// The exchange ends in this way, and leaves no descriptor open.
  void expectEnd(const Hostility& hostility) const {
    const auto before = descriptorCount();
    {
      ScriptedPeer peer({hostility.script});
      onOwnThread([&] { expectEnd(hostility, peer); });
    }
    EXPECT_EQ(descriptorCount(), before) << hostility.name;
  }

  void expectEnd(const Hostility& hostility, const ScriptedPeer& peer) const {
    const auto recorder = std::make_shared<RequestRecorder>();
    recorder->document = makeDocument();
    auto request = makeRequest(recorder);
    request->setTimeInterval(std::chrono::duration<double>(timeOut).count());
    request->setMaximumResponseLength(maximumLength);
    const std::weak_ptr watched = request;
    const auto begin = RunLoop::Clock::now();
    request->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*recorder, std::chrono::seconds(60))) << hostility.name;
    expectOutcome(hostility, *recorder, RunLoop::Clock::now() - begin);
    request.reset();
    driveFor(std::chrono::milliseconds(0));
    EXPECT_TRUE(watched.expired()) << hostility.name;
  }

  std::chrono::milliseconds timeOut{300};
  std::size_t maximumLength = kHTTPDefaultMaximumBodyLength;
  /// Null for a request alone.
  std::function<std::shared_ptr<InputStream>()> makeDocument = [] { return nullptr; };

 private:
  void expectOutcome(const Hostility& hostility, const RequestRecorder& recorder,
                     RunLoop::Clock::duration duration) const {
    // On a machine that has other things to do, too.
    constexpr std::chrono::milliseconds kGrace(4000);
    EXPECT_EQ(recorder.code(), hostility.end.code) << hostility.name << ": " << recorder.text();
    EXPECT_THAT(recorder.underlyingCode(),
                testing::AnyOf(hostility.end.underlying, hostility.end.alternative))
        << hostility.name << ": " << recorder.text();
    EXPECT_EQ(recorder.calls, hostility.end.code == 0 ? "WDORF" : "WDO") << hostility.name;
    if (hostility.end.code == kTimedOut.code) {
      EXPECT_GE(duration, timeOut - std::chrono::milliseconds(10)) << hostility.name;
      EXPECT_LT(duration, timeOut + kGrace) << hostility.name;
    }
  }

  inline static std::filesystem::path home_;
  inline static std::string homeBefore_;
};

}  // namespace platen::tests
