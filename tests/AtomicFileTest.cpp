// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <thread>

#include "platform/AtomicFile.h"

namespace platen {
namespace {

namespace fs = std::filesystem;

class AtomicFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string text = (fs::temp_directory_path() / "platen-atomic-XXXXXX").string();
    ASSERT_NE(mkdtemp(text.data()), nullptr);
    directory = text;
  }
  void TearDown() override { fs::remove_all(directory); }

  [[nodiscard]] std::string path(std::string_view name = "file") const { return directory / name; }
  static bool write(const std::string& path, std::string_view text) {
    return writeFileAtomically(path,
                               {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
  static std::string read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static unsigned modeOf(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 ? facts.st_mode & 07777U : 0;
  }
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator(directory)) {
      found.insert(entry.path().filename());
    }
    return found;
  }

  fs::path directory;
};

TEST_F(AtomicFile, HoldsTheOctetsAndNothingElseIsLeft) {
  const std::string large(3'000'000, 'x');
  for (const auto& text : {std::string(), std::string("a\0b\r\n\xff", 6), large}) {
    EXPECT_TRUE(write(path(), text));
    EXPECT_TRUE(read(path()) == text) << text.size();
    EXPECT_EQ(names(), std::set<std::string>{"file"});
  }
}

TEST_F(AtomicFile, IsForItsOwnerOnly) {
  EXPECT_TRUE(write(path(), "secret"));
  EXPECT_EQ(modeOf(path()), 0600U);
}

TEST_F(AtomicFile, TakesThePlaceOfAnEarlierOneAndOfItsMode) {
  std::ofstream(path()) << "something earlier and longer";
  fs::permissions(path(), fs::perms(0666));
  EXPECT_TRUE(write(path(), "new"));
  EXPECT_EQ(read(path()), "new");
  EXPECT_EQ(modeOf(path()), 0600U);
}

TEST_F(AtomicFile, LeavesTheEarlierOneToWhoeverHasItOpen) {
  EXPECT_TRUE(write(path(), "old"));
  std::ifstream reader(path());
  EXPECT_TRUE(write(path(), "new"));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "old");
}

TEST_F(AtomicFile, ReplacesALinkAndNotWhatItPointsTo) {
  std::ofstream(path("precious")) << "precious";
  fs::create_symlink(path("precious"), path());
  EXPECT_TRUE(write(path(), "new"));
  EXPECT_FALSE(fs::is_symlink(path()));
  EXPECT_EQ(read(path("precious")), "precious");
}

TEST_F(AtomicFile, IsNeverSeenInPart) {
  const std::string one(200'000, '1');
  const std::string two(100'000, '2');
  ASSERT_TRUE(write(path(), one));
  std::atomic<bool> isOver = false;
  std::thread reader([&] {
    while (!isOver) {
      const auto seen = read(path());
      EXPECT_TRUE(seen == one || seen == two) << seen.size();
    }
  });
  for (int i = 0; i < 50; ++i) {
    EXPECT_TRUE(write(path(), i % 2 == 0 ? two : one));
  }
  isOver = true;
  reader.join();
}

TEST_F(AtomicFile, FailsWithoutItsDirectory) {
  EXPECT_FALSE(write(path("missing/file"), "text"));
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(write("", "text"));
  EXPECT_TRUE(names().empty());
}

TEST_F(AtomicFile, LeavesADirectoryAsItIs) {
  fs::create_directory(path());
  EXPECT_FALSE(write(path(), "text"));
  EXPECT_EQ(errno, EISDIR);
  EXPECT_EQ(names(), std::set<std::string>{"file"});
  EXPECT_TRUE(fs::is_directory(path()));
}

TEST_F(AtomicFile, LeavesWhatIsNoRegularFileAsItIs) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  fs::create_symlink("pipe", path("link"));
  for (const char* const name : {"pipe", "link"}) {
    EXPECT_FALSE(write(path(name), "text")) << name;
    EXPECT_EQ(errno, EINVAL) << name;
  }
  EXPECT_TRUE(fs::is_fifo(path("pipe")));
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_EQ(names(), (std::set<std::string>{"link", "pipe"}));
}

TEST_F(AtomicFile, ChangesNothingWhenThereIsNoSpace) {
  ASSERT_TRUE(write(path(), "old"));
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit small = before;
  small.rlim_cur = 1000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const bool isWritten = write(path(), std::string(2000, 'x'));
  const int reason = errno;
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(isWritten);
  EXPECT_EQ(reason, EFBIG);
  EXPECT_EQ(read(path()), "old");
  EXPECT_EQ(names(), std::set<std::string>{"file"});
}

}  // namespace
}  // namespace platen
