// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "tests/support/PrintServers.h"
#include "tests/tool/RunningTool.h"
#include "tests/tool/ToolRun.h"

namespace platen::test {
namespace {

/// A day of an administrator with cupsd.
class PrintServersStory : public testing::Test {
 protected:
  void SetUp() override {
    if (!servers_.available()) GTEST_SKIP() << servers_.whyUnavailable();
  }

  Arguments at(Arguments words) const {
    words.insert(words.end(), {"--server", "localhost:" + std::to_string(servers_.cupsPort())});
    return words;
  }
  /// What a command says that has to succeed.
  std::string told(const Arguments& words) const {
    const ToolRun run = runTool(at(words));
    EXPECT_EQ(run.status, 0) << words.front() << ": " << run.err;
    return run.out;
  }
  std::string queue(const std::string& name) const {
    return servers_.cupsURI() + "printers/" + name;
  }
  /// Prints a document on a queue; the number of the job.
  std::string print(const std::string& name) const {
    const std::string file = folder_.add("letter.pdf", "%PDF-1.4\nnot much of a document\n");
    const ToolRun run = runTool({"print", queue(name), file, "--json"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.find("{\"id\":"), 0U) << run.out;
    return std::to_string(std::stoi(run.out.substr(6)));
  }

  static bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  PrintServers& servers_ = PrintServers::shared();
  const ScratchFolder folder_;
};

TEST_F(PrintServersStory, OfAQueueItsJobAndTheOneWhoWatches) {
  EXPECT_EQ(told({"queue", "add", "story", "testdev:/1", "--info", "A story", "--allow", "root,ann",
                  "--shared"}),
            "queue story added\n");
  const std::string queues = told({"queues", "--json"});
  EXPECT_TRUE(has(queues, "\"name\":\"story\"")) << queues;
  EXPECT_TRUE(has(queues, "\"info\":\"A story\"")) << queues;
  EXPECT_TRUE(has(queues, "\"ann\"")) << queues;
  EXPECT_EQ(told({"queue", "modify", "story", "--allow", "all"}), "queue story modified\n");
  EXPECT_EQ(told({"pause", "story"}), "queue story paused\n");
  EXPECT_TRUE(has(told({"queues"}), " stopped (paused) "));

  RunningTool watch(at({"watch", "--interval", "0.1"}));
  const auto isWatched = [&] { return has(runTool(at({"subscriptions"})).out, " ippget "); };
  ASSERT_TRUE(becomesTrue(isWatched));

  const std::string job = print("story");
  EXPECT_EQ(told({"hold", job}), "job " + job + " held\n");
  EXPECT_TRUE(has(told({"jobs", "story"}), " pending-held (job-hold-until-specified) "));
  EXPECT_EQ(told({"release", job}), "job " + job + " released\n");
  EXPECT_TRUE(has(told({"job", job}), "\nQueue      story\nState      pending"));
  EXPECT_EQ(told({"cancel", job}), "job " + job + " canceled\n");
  EXPECT_TRUE(has(told({"jobs", "story", "--completed"}), " canceled"));
  EXPECT_EQ(told({"jobs", "story"}), "no jobs\n");

  EXPECT_TRUE(watch.waitForOutput("  job-created            story job " + job + "  "));
  // Of a job that waits, cupsd tells the end only to those who watch the whole server.
  EXPECT_TRUE(watch.waitForOutput("  job-completed          story job " + job + "  "));
  watch.signal(SIGINT);
  const ToolRun run = watch.end();
  EXPECT_EQ(run.status, 130);
  EXPECT_TRUE(has(run.err, " canceled\n")) << run.err;
  EXPECT_FALSE(isWatched());

  EXPECT_EQ(told({"queue", "remove", "story"}), "queue story removed\n");
  EXPECT_FALSE(has(told({"queues"}), "\nstory "));
}

TEST_F(PrintServersStory, OfAJobThatMovesAndIsPrintedAgain) {
  told({"queue", "add", "from", "file:///dev/null"});
  told({"queue", "add", "to", "file:///dev/null"});
  told({"pause", "from"});
  const std::string job = print("from");
  EXPECT_EQ(told({"move", job, "to"}), "job " + job + " moved to queue to\n");
  const auto isCompleted = [&] {
    return has(runTool(at({"job", job, "--json"})).out, "\"state\":\"completed\"");
  };
  EXPECT_TRUE(becomesTrue(isCompleted));
  EXPECT_EQ(runTool(at({"cancel", job})).status, 1) << "it is over";
  EXPECT_EQ(told({"restart", job}), "job " + job + " restarted\n");
  EXPECT_TRUE(becomesTrue(isCompleted));
  EXPECT_EQ(told({"purge", "to"}), "all jobs of queue to purged\n");
  EXPECT_EQ(told({"jobs", "to", "--all"}), "no jobs\n");
  EXPECT_EQ(told({"resume", "from"}), "queue from resumed\n");
  told({"queue", "remove", "from"});
  told({"queue", "remove", "to"});
}

TEST_F(PrintServersStory, OfTheDefault) {
  told({"queue", "add", "first", "file:///dev/null"});
  EXPECT_EQ(told({"default", "first"}), "queue first is the default\n");
  EXPECT_EQ(told({"default"}), "first\n");
  EXPECT_TRUE(has(told({"queues", "--default"}), "\nfirst  yes "));
  told({"queue", "remove", "first"});
}

TEST_F(PrintServersStory, OfASubscriptionByHand) {
  const std::string made = told({"subscribe", "--events", "job-completed", "--lease", "300"});
  const std::string number = made.substr(13, made.find_first_of(",\n") - 13);
  EXPECT_TRUE(has(told({"subscriptions"}), "\n" + number + " "));
  EXPECT_EQ(told({"renew", number, "--lease", "900"}), "subscription " + number + " renewed\n");
  EXPECT_TRUE(has(told({"subscriptions", "--json"}), "\"lease_seconds\":900"));
  EXPECT_EQ(told({"unsubscribe", number}), "subscription " + number + " canceled\n");
}

TEST_F(PrintServersStory, OfThingsThatAreNotThere) {
  for (const Arguments& words : {Arguments{"pause", "none"},
                                 {"jobs", "none"},
                                 {"subscriptions", "none"},
                                 {"job", "9999"},
                                 {"queue", "remove", "none"},
                                 {"unsubscribe", "9999"},
                                 {"subscribe", "none", "--events", "all"}}) {
    const ToolRun run = runTool(at(words));
    EXPECT_EQ(run.status, 1) << words.front();
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(has(run.err, ": client-error-not-found (")) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
}

}  // namespace
}  // namespace platen::test
