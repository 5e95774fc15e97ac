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
  EXPECT_EQ(
      host.run("GENOSTAT /JOB FOLDER='in' NAME='AUTO'.\nGENOSTAT /PRINT.\nGENOSTAT /DELETE FILE='x'.\n"), "");
  EXPECT_THAT(host.adapter.messages(), testing::IsEmpty());
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

TEST(Worker, ReportsEachOutcome) {
  struct Row {
    const char* plan;
    std::string counts;
    bool success;
  };
  const Row rows[] = {
      {"csv a,b,c\\n1,2,3\\n4,5,6\\n\nexit 0", "SAMPLE_COUNT=2 VARIABLE_COUNT=1 MESSAGE=100", true},
      {"csv a,b,c\\n\nexit 0", "SAMPLE_COUNT=-1 VARIABLE_COUNT=-1 MESSAGE=0", true},
      {"exit 0", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=101", false},
      {"csv a\\n1\\n\nexit 5", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=205", false},
      {"exit 255", "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=455", false},
  };
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  std::size_t ends = 0;
  for (const Row& row : rows) {
    host.plan(row.plan);
    submit(*manager, "a b");
    ASSERT_TRUE(host.adapter.waitForEnds(++ends)) << row.plan;
    const std::string last = host.adapter.messages().back();
    const std::string print = "end a b [" + printSyntax("a_b", row.counts);
    EXPECT_EQ(last.substr(0, print.size()), print) << row.plan;
    EXPECT_EQ(last.find("DATASET NAME a_b.") != std::string::npos, row.success) << row.plan;
    EXPECT_EQ(host.temporaryFiles().size(), row.success ? 1u : 0u) << row.plan;
    if (row.success) {
      const std::string csv = host.temp().string() +
                              static_cast<char>(std::filesystem::path::preferred_separator) +
                              host.temporaryFiles()[0];
      EXPECT_EQ(host.adapter.lastEndFields, csv + "|-1|-1");
      std::filesystem::remove(csv);
    }
    waitUntilGone(*manager, "a b");
  }
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

TEST(Worker, HandsOverTheParameterDocument) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.plan("record\nexit 0");
  submit(*manager, "run");
  ASSERT_TRUE(host.adapter.waitForEnds(1));
  std::ifstream file(host.home() / "arguments.txt", std::ios::binary);
  std::string line;
  ASSERT_TRUE(std::getline(file, line));
  EXPECT_THAT(line, testing::StartsWith("2|" + host.home().string()));
  EXPECT_THAT(line, testing::HasSubstr("genostat.pyc|eyJmYXN0cV9kYXRhIjpbey"));
  EXPECT_THAT(line, testing::HasSubstr(
                        "|{\"fastq_data\":[{\"adapter\":\"NONE\",\"custom_sequence\":\"\",\"CSV_Path\":\""));
  EXPECT_THAT(line, testing::EndsWith(".csv\",\"folder\":\"in\"}]}"));
}

TEST(Worker, DropsAJobThatCannotStart) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.removeLauncher();
  submit(*manager, "no launcher");
  waitUntilGone(*manager, "no launcher");
  std::filesystem::remove_all(host.temp());
  submit(*manager, "no folder");
  waitUntilGone(*manager, "no folder");
  EXPECT_EQ(host.adapter.ends(), 0u);
}

TEST(Worker, OutlivesAHostThatThrows) {
  TestHost host;
  host.adapter.onMessage = [](const std::string& message) {
    if (message == "start refused queued" || message == "start lost running")
      throw std::runtime_error("host");
  };
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.plan("exit 0");
  EXPECT_THROW(submit(*manager, "refused"), std::runtime_error);
  EXPECT_FALSE(manager->isJobPendingOrRunning("refused")) << "taken out again";
  submit(*manager, "lost");
  submit(*manager, "next");
  ASSERT_TRUE(host.adapter.waitForEnds(1));
  EXPECT_THAT(host.adapter.messages().back(), testing::StartsWith("end next "));
  EXPECT_FALSE(manager->isJobPendingOrRunning("lost"));
  EXPECT_THAT(host.adapter.messages(), testing::Not(testing::Contains("start refused running")));
}

TEST(Queue, CountsAndFindsWaitingJobs) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  HeldWorker held(host, *manager);
  for (int i = 0; i < 9; ++i) {
    submit(*manager, "job" + std::to_string(i));
  }
  EXPECT_FALSE(manager->isQueueFull()) << "the running job does not count";
  submit(*manager, "job9");
  EXPECT_TRUE(manager->isQueueFull());
  EXPECT_TRUE(manager->isJobPendingOrRunning("held"));
  EXPECT_TRUE(manager->isJobPendingOrRunning("job9"));
  EXPECT_FALSE(manager->isJobPendingOrRunning("JOB9"));
  EXPECT_TRUE(manager->cancelJob("job9"));
  EXPECT_FALSE(manager->isJobPendingOrRunning("job9")) << "a cancelled job gives its name back";
  EXPECT_TRUE(manager->isQueueFull()) << "but keeps its place";
  EXPECT_FALSE(manager->cancelJob("nobody"));
  EXPECT_FALSE(cancelGenoJob(nullptr, "job1"));
  EXPECT_FALSE(cancelGenoJob(manager.get(), nullptr));
  manager->addJobToQueue(nullptr);

  manager->cancellAllJobsPending();
  EXPECT_FALSE(manager->isQueueFull());
  EXPECT_EQ(host.adapter.ends(), 10u) << "one for each job, none twice";
  EXPECT_TRUE(manager->isJobPendingOrRunning("held"));
  held.release();
  ASSERT_TRUE(host.adapter.waitForEnds(11));
}

TEST(Cancel, OfAQueuedJobEndsItOncePerCall) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  HeldWorker held(host, *manager);
  submit(*manager, "q");
  EXPECT_TRUE(cancelGenoJob(manager.get(), "q"));
  EXPECT_TRUE(cancelGenoJob(manager.get(), "q"));
  host.plan("exit 0");
  submit(*manager, "after");
  held.release();
  ASSERT_TRUE(host.adapter.waitForEnds(4));
  const auto noResult = [](const char* name) {
    return end(name, printSyntax(name, "SAMPLE_COUNT=0 VARIABLE_COUNT=0 MESSAGE=101"));
  };
  EXPECT_THAT(host.adapter.messages(),
              ElementsAre("start held queued", "start held running", "start q queued", end("q"), end("q"),
                          "start after queued", noResult("held"), "start after running", noResult("after")));
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

TEST(Cancel, BeforeTheProcessExistsLetsItRunToItsEnd) {
  TestHost host;
  auto manager = GenoStatAlgoManagerTestPeer::make();
  host.adapter.onMessage = [&](const std::string& message) {
    if (message != "start early running") return;
    EXPECT_TRUE(manager->cancelJob("early"));
    EXPECT_TRUE(manager->cancelJob("early"));
  };
  // A job before it, so that the stored process id is stale.
  host.plan("exit 0");
  submit(*manager, "first");
  ASSERT_TRUE(host.adapter.waitForEnds(1));
  host.plan("csv a\\n1\\n\nrecord\nexit 3");
  submit(*manager, "early");
  waitUntilGone(*manager, "early");
  EXPECT_TRUE(std::filesystem::exists(host.home() / "arguments.txt")) << "it was started all the same";
  EXPECT_THAT(host.temporaryFiles(), testing::IsEmpty());
  EXPECT_EQ(host.adapter.ends(), 3u);
  EXPECT_EQ(host.adapter.messages().back(), end("early"));
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
