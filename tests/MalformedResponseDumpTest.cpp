// SPDX-License-Identifier: Apache-2.0
//
// Answers that do not decode, and the file in which the last of each operation is kept for whoever
// has to find out why.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include "platen/IPPConnection.h"
#include "platen/IPPConstants.h"
#include "tests/support/RequestRecorder.h"

namespace platen {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using tests::answering;
using tests::drive;
using tests::makeAnswer;
using tests::makeRequest;
using tests::RequestRecorder;
using tests::ScriptedPeer;
using tests::targetOf;

constexpr const char* kFile = "ResponseOn-Get-Printer-Attributes.ippdata";

/// With a home of its own.
class MalformedResponseDump : public testing::Test {
 protected:
  void SetUp() override {
    std::string text = (fs::temp_directory_path() / "platen-home-XXXXXX").string();
    ASSERT_NE(mkdtemp(text.data()), nullptr);
    home = text;
    if (const char* const before = std::getenv("HOME")) {
      homeBefore = before;
    }
    setenv("HOME", home.c_str(), 1);
  }
  void TearDown() override {
    if (homeBefore) {
      setenv("HOME", homeBefore->c_str(), 1);
    } else {
      unsetenv("HOME");
    }
    fs::remove_all(home);
  }

  /// Sends the request to a peer that answers with this; waits for the outcome.
  void exchange(const std::string& body, int status = 200) {
    ScriptedPeer peer({answering(status, body)});
    request->cancel();
    recorder->calls.clear();
    request->sendTo(targetOf(peer));
    ASSERT_TRUE(drive(*recorder));
  }
  void expectMalformed() const {
    EXPECT_EQ(recorder->calls, "WDO");
    EXPECT_EQ(recorder->response, nullptr);
    ASSERT_NE(recorder->error, nullptr);
    EXPECT_EQ(recorder->error->domain(), IPPErrorDomain);
    EXPECT_EQ(recorder->error->code(), 0x0500);
    EXPECT_THAT(recorder->error->userInfo(), IsEmpty());
  }
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator(home)) {
      found.insert(entry.path().filename());
    }
    return found;
  }
  [[nodiscard]] std::string read(const std::string& name = kFile) const {
    std::ifstream file(home / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path home;
  std::optional<std::string> homeBefore;
  std::shared_ptr<RequestRecorder> recorder = std::make_shared<RequestRecorder>();
  std::shared_ptr<IPPRequest> request = makeRequest(recorder);
};

TEST_F(MalformedResponseDump, HoldsTheBodyAsItCame) {
  const std::string body("\x01\x01\0\0\0\0\0\x01 no message at all \xff\r\n", 30);
  exchange(body);
  expectMalformed();
  EXPECT_THAT(names(), ElementsAre(kFile));
  EXPECT_EQ(read(), body);
}

TEST_F(MalformedResponseDump, IsForItsOwnerOnly) {
  exchange("malformed");
  struct stat facts {};
  ASSERT_EQ(stat((home / kFile).c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777U, 0600U);
}

TEST_F(MalformedResponseDump, TakesThePlaceOfAnEarlierOne) {
  exchange("the first, which is longer");
  EXPECT_EQ(read(), "the first, which is longer");
  std::ifstream reader(home / kFile);
  exchange("the second");
  EXPECT_EQ(read(), "the second");
  EXPECT_THAT(names(), ElementsAre(kFile));
  // Whoever was reading the first still has it whole.
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "the first, which is longer");
}

TEST_F(MalformedResponseDump, IsWrittenOfAnAnswerWithoutOctetsToo) {
  exchange("");
  expectMalformed();
  EXPECT_THAT(names(), ElementsAre(kFile));
  EXPECT_EQ(read(), "");
}

TEST_F(MalformedResponseDump, IsWrittenOfAnAnswerThatIsCutShortAnywhere) {
  const auto answer = makeAnswer();
  for (std::size_t length = 0; length < answer.size(); length += 1 + length / 9) {
    exchange(answer.substr(0, length));
    expectMalformed();
    EXPECT_EQ(read(), answer.substr(0, length));
  }
}

TEST_F(MalformedResponseDump, IsWrittenBeforeTheOutcomeIsTold) {
  std::string seen;
  recorder->onCall = [&](char call, IPPRequest&) {
    if (call == 'O') {
      seen = read();
    }
  };
  exchange("malformed");
  EXPECT_EQ(seen, "malformed");
}

TEST_F(MalformedResponseDump, IsNamedAfterTheOperation) {
  request = IPPRequest::jobPrintRequest(*URL::parse("ipp://printer.test/ipp/print"));
  request->setDelegate(recorder);
  exchange("malformed");
  request = IPPRequest::requestWithId(0x7123);
  request->setDelegate(recorder);
  exchange("malformed");
  EXPECT_THAT(names(),
              ElementsAre("ResponseOn-Print-Job.ippdata", "ResponseOn-Unknown-Operation.ippdata"));
}

TEST_F(MalformedResponseDump, IsWrittenThoughNobodyIsTold) {
  request->setDelegate({});
  ScriptedPeer peer({answering(200, "malformed")});
  request->sendTo(targetOf(peer));
  EXPECT_TRUE(tests::driveUntil([this] { return names().count(kFile) == 1; }));
  EXPECT_EQ(read(), "malformed");
}

TEST_F(MalformedResponseDump, IsNotWrittenOfWhatDecodesOrWasRefused) {
  exchange(makeAnswer());
  exchange(makeAnswer(0x0406) + "trailing");
  exchange("an error page", 500);
  exchange("another", 302);
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MalformedResponseDump, IsNotWrittenByTheBlockingCall) {
  ScriptedPeer peer({answering(200, "malformed")});
  std::shared_ptr<const Error> error;
  EXPECT_EQ(request->performOn(targetOf(peer), &error), nullptr);
  EXPECT_EQ(error, nullptr);
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MalformedResponseDump, IsNotWrittenOfACancelledExchange) {
  ScriptedPeer peer({answering(200, "malformed")});
  request->sendTo(targetOf(peer));
  request->cancel();
  tests::driveFor(std::chrono::milliseconds(50));
  EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MalformedResponseDump, IsDoneWithoutWhereItCannotBeWritten) {
  setenv("HOME", (home / "missing").c_str(), 1);
  exchange("malformed");
  expectMalformed();
  setenv("HOME", home.c_str(), 1);
  fs::create_directories(home / kFile / "inside");
  exchange("malformed");
  expectMalformed();
  EXPECT_THAT(names(), ElementsAre(kFile));
  EXPECT_TRUE(fs::is_directory(home / kFile / "inside"));
}

/// Names its operation as it likes, or not at all.
class NamingDelegate final : public IPPConnectionDelegate {
 public:
  void requestDidReceiveResponse(IPPConnectionHandler&, const std::shared_ptr<IPPResponse>&,
                                 const std::shared_ptr<const Error>& reason) override {
    error = reason;
  }
  [[nodiscard]] KeyValue valueForKey(std::string_view key) const override {
    EXPECT_EQ(key, "ippOperationCodename");
    return name;
  }
  std::optional<std::string> name;
  std::shared_ptr<const Error> error;
};

TEST_F(MalformedResponseDump, StaysInTheHomeDirectoryUnderTheNameThatTheDelegateGives) {
  ScriptedPeer peer(3, answering(200, "malformed"));
  for (const auto& name : {std::optional<std::string>(), std::optional<std::string>("../escaped"),
                           std::optional<std::string>("My-Own")}) {
    const auto delegate = std::make_shared<NamingDelegate>();
    delegate->name = name;
    IPPConnection::schedulePerformRequest(*request, targetOf(peer), delegate);
    EXPECT_TRUE(tests::driveUntil([&] { return delegate->error != nullptr; }));
    EXPECT_EQ(delegate->error->code(), 0x0500);
  }
  EXPECT_THAT(names(), ElementsAre("ResponseOn-My-Own.ippdata"));
}

}  // namespace
}  // namespace platen
