// The queue, the worker and cancellation, with real processes: what the client sees of a job's life.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "entry/record/geno_job_settings.h"
#include "entry/record/genomic_parser_exception.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "tests/support/test_host.h"

class GenoStatAlgoManagerTestPeer {
 public:
  static std::unique_ptr<GenoStatAlgoManager> make() {
    return std::unique_ptr<GenoStatAlgoManager>(new GenoStatAlgoManager);
  }

  // What the members that no other code calls add to the units they stand for.
  static void tryInterfaceMembers() {
    const auto manager = make();
    std::string text = "kept ";
    manager->generateParameterJSON(nullptr, text);
    manager->preparePostJobSyntax(nullptr, text, true);
    EXPECT_EQ(text, "kept ");
    const GenoJobSettings job;
    manager->preparePostJobSyntax(&job, text, true);
    EXPECT_TRUE(text.starts_with("kept GENOSTAT\n")) << text;
    manager->generateParameterJSON(&job, text);
    EXPECT_TRUE(text.starts_with("{\"fastq_data\":")) << text;
    std::int32_t samples = 7;
    std::int32_t variables = 8;
    EXPECT_FALSE(manager->parseCSVForCounts("missing.csv", samples, variables));
    EXPECT_EQ(samples + variables, 15) << "left as they were";
    std::string hint = "hint";
    EXPECT_EQ(manager->generateUniqueFilename("missing folder", hint) + hint, "hint");
    EXPECT_EQ(manager->replacePlaceholders("{{A}}{{B}}", {{"A", "1"}}), "1{{B}}");
    EXPECT_EQ(manager->getTranslatedErrorMessage("key"), "key");
    EXPECT_EQ(manager->waitForPythonProcessToEnd(), 0);
  }
};

namespace {

namespace platform = genostat::platform;
using genostat::test::TestHost;
using testing::ElementsAre;

void submit(GenoStatAlgoManager& manager, const std::string& name) {
  auto job = std::make_unique<GenoJobSettings>();
  job->setJobName(name);
  job->setFastqFolder("in");
  manager.addJobToQueue(job.release());
}

// Submits a job that holds the worker until release() is called.
class HeldWorker {
 public:
  HeldWorker(TestHost& host, GenoStatAlgoManager& manager) : host_(host) {
    host.plan("wait go\nexit 0");
    submit(manager, "held");
    EXPECT_TRUE(host.adapter.waitFor("start held running"));
  }
  void release() { host_.signal("go"); }

 private:
  TestHost& host_;
};

std::string printSyntax(const std::string& name, const std::string& counts) {
  const std::string pad(40, ' ');
  return "GENOSTAT\n" + pad + "/JOB FILE='' NAME='" + name + "' ADAPTERS=NONE\n" + pad + "/PRINT " + counts +
         ".\n";
}

std::string end(const std::string& name, const std::string& syntax = "") {
  return "end " + name + " [" + syntax + "]";
}

void waitUntilGone(GenoStatAlgoManager& manager, const std::string& name) {
  for (int i = 0; i < 3000 && manager.isJobPendingOrRunning(name); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_FALSE(manager.isJobPendingOrRunning(name));
}

TEST(Manager, IsOneInstanceForAllThreadsUntilTheHostDeletesIt) {
  TestHost host;
  std::set<GenoStatAlgoManager*> seen;
  std::mutex mutex;
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      GenoStatAlgoManager* manager = getGenoManagerInstance();
      const std::lock_guard lock(mutex);
      seen.insert(manager);
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  ASSERT_THAT(seen, ElementsAre(testing::NotNull()));
  GenoStatAlgoManagerTestPeer::make().reset();
  EXPECT_EQ(getGenoManagerInstance(), *seen.begin()) << "another manager's end is not its own";
  delete *seen.begin();
  EXPECT_EQ(getGenoManagerInstance(), nullptr);
}

TEST(Manager, KeepsTheMembersOfItsInterface) {
  GenoStatAlgoManagerTestPeer::tryInterfaceMembers();
}

TEST(Manager, EndsWithTheRunningJobAndDropsTheRestSilently) {
  TestHost host;
  { const auto idle = GenoStatAlgoManagerTestPeer::make(); }
  auto manager = GenoStatAlgoManagerTestPeer::make();
  HeldWorker held(host, *manager);
  submit(*manager, "never");
  std::thread releaser([&held] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    held.release();
  });
  manager.reset();
  releaser.join();
  EXPECT_THAT(host.adapter.messages(),
              ElementsAre("start held queued", "start held running", "start never queued",
                          end("held", printSyntax("held", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=101"))));
}

TEST(Worker, TakesOnlyAFileForResults) {
  TestHost host;
  if (platform::kPathSeparator != '/') GTEST_SKIP() << "no pipes and devices among files";
  const std::string file = (host.home() / "plan.txt").string();
  const std::pair<std::string, std::string> rows[] = {
      {"mkfifo", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=101"},
      {"mkdir", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=101"},
      {"ln -s /dev/zero", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=101"},
      {"ln -s " + file, "SAMPLE_COUNT=1 VARIABLE_COUNT=-1 MESSAGE=100"},
  };
  auto manager = GenoStatAlgoManagerTestPeer::make();
  std::size_t ends = 0;
  for (const auto& [command, counts] : rows) {
    host.plan("shell " + command + "\nexit 0");
    submit(*manager, "odd");
    ASSERT_TRUE(host.adapter.waitForEnds(++ends)) << command;
    EXPECT_THAT(host.adapter.messages().back(), testing::StartsWith("end odd [" + printSyntax("odd", counts)))
        << command;
    for (const std::string& name : host.temporaryFiles())
      std::filesystem::remove(host.temp() / name);
    waitUntilGone(*manager, "odd");
  }
}

TEST(Cancel, OfARunningJobEndsItsWholeTree) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.plan("csv a\\n1\\n\nchild\nbeat");
  submit(*manager, "tree");
  // The stub, its child and the child's child.
  for (int i = 0; i < 3000 && host.beats().first < 3; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  ASSERT_EQ(host.beats().first, 3u);
  EXPECT_TRUE(manager->cancelJob("tree"));
  waitUntilGone(*manager, "tree");
  EXPECT_TRUE(host.beatsStop());
  EXPECT_THAT(host.temporaryFiles(), testing::IsEmpty());
  EXPECT_THAT(host.adapter.messages(), ElementsAre("start tree queued", "start tree running", end("tree")));
}

TEST(Cancel, InTheEndMessageStillAnswers) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.plan("exit 4");
  bool found = false;
  host.adapter.onMessage = [&](const std::string& message) {
    if (message.starts_with("end late [G")) found = manager->cancelJob("late");
  };
  submit(*manager, "late");
  waitUntilGone(*manager, "late");
  EXPECT_TRUE(found);
  EXPECT_EQ(host.adapter.messages().back(), end("late"));
}

TEST(Cancel, AtRandomMomentsLosesNothing) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.plan("csv a\\n1\\n\nexit 0");
  constexpr int kJobs = 40;
  std::atomic<int> submitted = 0;
  std::vector<std::thread> cancellers;
  for (unsigned seed = 1; seed <= 3; ++seed) {
    cancellers.emplace_back([&, seed] {
      std::mt19937 random(seed);
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
      while ((submitted < kJobs || manager->isJobPendingOrRunning("job" + std::to_string(kJobs - 1))) &&
             std::chrono::steady_clock::now() < deadline) {
        manager->cancelJob("job" + std::to_string(random() % kJobs));
        if (random() % 64 == 0) manager->cancellAllJobsPending();
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
      }
    });
  }
  for (int i = 0; i < kJobs; ++i) {
    submit(*manager, "job" + std::to_string(i));
    ++submitted;
    std::this_thread::sleep_for(std::chrono::milliseconds(i % 5));
  }
  for (std::thread& canceller : cancellers) {
    canceller.join();
  }
  manager->cancellAllJobsPending();
  for (int i = 0; i < kJobs; ++i) {
    waitUntilGone(*manager, "job" + std::to_string(i));
  }
  // Every job was announced once and ended at least once; files remain of uncancelled jobs only.
  const std::vector<std::string> messages = host.adapter.messages();
  std::size_t results = 0;
  for (int i = 0; i < kJobs; ++i) {
    const std::string name = "job" + std::to_string(i);
    EXPECT_EQ(std::count(messages.begin(), messages.end(), "start " + name + " queued"), 1);
    EXPECT_GE(std::count_if(messages.begin(), messages.end(),
                            [&](const std::string& text) { return text.starts_with("end " + name + " ["); }),
              1)
        << name;
    results += static_cast<std::size_t>(
        std::count_if(messages.begin(), messages.end(),
                      [&](const std::string& text) { return text.starts_with("end " + name + " [G"); }));
  }
  EXPECT_EQ(host.temporaryFiles().size(), results);
}

}  // namespace
