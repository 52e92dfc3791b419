// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "platform/Resolver.h"
#include "platform/RunLoopPrivate.h"
#include "tests/support/FakeNames.h"

namespace platen {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

HostAddresses resolve(const std::string& host) {
  const auto loop = RunLoop::makePrivate();
  std::optional<HostAddresses> result;
  const Resolution resolution(*loop, host, [&](const HostAddresses& found) { result = found; });
  EXPECT_FALSE(result.has_value()) << "told before the first turn";
  while (!result.has_value() && loop->runOnce(std::chrono::seconds(10))) {
  }
  return result.value();
}

TEST(Resolver, FindsAllAddressesInOrder) {
  tests::FakeNames names;
  names.set("printer.test", {"192.0.2.7", "2001:db8::1", "192.0.2.8"});
  const auto found = resolve("printer.test");
  EXPECT_THAT(found.addresses, ElementsAre("192.0.2.7", "2001:db8::1", "192.0.2.8"));
  EXPECT_EQ(found.failure, "");
  EXPECT_EQ(found.zone, 0U);
}

TEST(Resolver, KeepsLinkLocalAddressesOfOneZone) {
  tests::FakeNames names;
  names.set("printer.test", {"fe80::1%1", "fe80::2%7", "fe80::3%1", "2001:db8::1"});
  const auto found = resolve("printer.test");
  EXPECT_THAT(found.addresses, ElementsAre("fe80::1", "fe80::3", "2001:db8::1"));
  EXPECT_EQ(found.zone, 1U);
}

TEST(Resolver, SaysInEnglishWhyThereIsNothing) {
  const tests::FakeNames names;
  const auto found = resolve("nonesuch.test");
  EXPECT_THAT(found.addresses, IsEmpty());
  EXPECT_EQ(found.failure, "unknown node or service");
  EXPECT_NE(resolve(std::string(300, 'a')).failure, "");
}

TEST(Resolver, KnowsWhatNeedsNoResolving) {
  for (const auto* host : {"127.0.0.1", "localhost", "LocalHost", "printer.localhost"}) {
    EXPECT_TRUE(isNumericOrLocal(host)) << host;
  }
  for (const auto* host : {"printer", "localhost.example", "mylocalhost", "127.1", "", ".localhost",
                           "1.2.3.4.5", "localhost."}) {
    EXPECT_FALSE(isNumericOrLocal(host)) << host;
  }
}

TEST(Resolver, IgnoresTheLateAnswerToACancelledQuestion) {
  tests::FakeNames names;
  names.block("stuck.test");
  const auto loop = RunLoop::makePrivate();
  auto resolution =
      std::make_unique<Resolution>(*loop, "stuck.test", [](const HostAddresses&) { FAIL(); });
  names.waitUntilBlocked();
  resolution.reset();
  names.release("stuck.test");
  EXPECT_FALSE(loop->runOnce(milliseconds(50)));
}

TEST(Resolver, MayBeDestroyedByItsCompletion) {
  const tests::FakeNames names;
  const auto loop = RunLoop::makePrivate();
  std::unique_ptr<Resolution> resolution;
  resolution = std::make_unique<Resolution>(*loop, "nonesuch.test",
                                            [&](const HostAddresses&) { resolution.reset(); });
  EXPECT_TRUE(loop->runOnce(std::chrono::seconds(10)));
  EXPECT_EQ(resolution, nullptr);
}

TEST(Resolver, DoesNotKeepALoopThatGoesMeanwhile) {
  tests::FakeNames names;
  names.block("stuck.test");
  auto loop = RunLoop::makePrivate();
  auto resolution =
      std::make_unique<Resolution>(*loop, "stuck.test", [](const HostAddresses&) { FAIL(); });
  names.waitUntilBlocked();
  resolution.reset();
  const auto begin = RunLoop::Clock::now();
  loop.reset();
  EXPECT_LT(RunLoop::Clock::now() - begin, std::chrono::seconds(5));
  EXPECT_EQ(RunLoopCore::reapRetired(), 1U);
  names.release("stuck.test");
  // What is left of the loop goes as soon as the thread has come back.
  const auto deadline = RunLoop::Clock::now() + std::chrono::seconds(10);
  while (RunLoopCore::reapRetired() > 0 && RunLoop::Clock::now() < deadline) {
    std::this_thread::sleep_for(milliseconds(1));
  }
  EXPECT_EQ(RunLoopCore::reapRetired(), 0U);
}

}  // namespace
}  // namespace platen
