// Jobs followed by the messages of a module that this test plays.
#include "standalone/session/job_follower.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <utility>

#include "host/message_bus.h"
#include "platform/launcher_folder.h"
#include "platform/process.h"
#include "standalone/services/current.h"
#include "standalone/services/host_folders.h"
#include "tests/standalone/session/recorded_view.h"
#include "tests/support/abandoned_part.h"
#include "tests/support/run_program.h"
#include "tests/support/temporary_folder.h"

namespace genostat::standalone {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

void postStart(const std::string& name, bool running) {
  const ZorvwMsgStartGenomicProcessing message(name, running);
  GetAdapter()->postClientMessage(ZorvwMsgStartGenomicProcessing::kMessageId, &message);
}

void postEnd(const std::string& name, const std::string& syntax, const std::string& csv) {
  const ZorvwMsgEndGenomicProcessing message(name, syntax, csv, 1, 1);
  GetAdapter()->postClientMessage(ZorvwMsgEndGenomicProcessing::kMessageId, &message);
}

class PlayedModule : public JobControl {
 public:
  bool isJobPendingOrRunning(const std::string& name) const override {
    const std::lock_guard lock(mutex_);
    return held_.contains(name);
  }
  // The job's processes end with the second cancellation.
  bool cancelJob(const std::string& name) const override {
    std::unique_lock lock(mutex_);
    if (++cancels_[name] == 2) held_.erase(name);
    const bool first = cancels_[name] == 1;
    lock.unlock();
    if (first) postEnd(name, "", csv);
    return true;
  }
  bool isQueueFull() const override { return full; }
  void cancelAllPending() const override {}

  void hold(const std::string& name) {
    held_.insert(name);
    postStart(name, false);
    postStart(name, true);
  }
  void end(const std::string& name, const std::string& syntax) {
    held_.erase(name);
    postEnd(name, syntax, csv);
  }

  std::string csv;
  bool full = false;

 private:
  mutable std::mutex mutex_;
  mutable std::set<std::string> held_;
  mutable std::map<std::string, int> cancels_;
};

constexpr const char* kImport = "GENOSTAT /PRINT MESSAGE=100.\nGET DATA /TYPE=TXT.";
struct Refused {};

class Follower : public testing::Test {
 protected:
  Follower() { module_.csv = folder_.narrow("17.csv"); }

  // What an analysis may leave, beside its result.
  void leave() {
    test::leaveAbandonedPart(folder_.path());
    test::writeWholeFile(folder_.path() / "17.error", R"({"ERROR_MESSAGE":"a.fastq: truncated"})");
    test::writeWholeFile(folder_.path() / "17.csv", "x\n1\n");
  }
  std::vector<std::string> files() const { return test::namesIn(folder_.path()); }
  std::string shown() { return std::exchange(view_.shown, {}); }

  test::TemporaryFolder folder_;
  test::RecordedView view_;
  PlayedModule module_;
  CommandGate gate_{[] { throw Refused(); }};
  JobFollower jobs_{
      {true, {}, folder_.path() / "copies"}, module_, gate_, view_, [this](const SourcePtr& text) {
        view_.showNotice("ran " + text->name + " " + text->text);
      }};
};

TEST_F(Follower, RunsEndSyntaxInOrderAndRemovesTheResult) {
  module_.hold("a");
  leave();
  module_.end("a", "GENOSTAT /PRINT MESSAGE=205.");
  // Before the post returned: a later job may get the names.
  EXPECT_EQ(files(), std::vector<std::string>{"17.csv"});
  module_.hold("b");
  module_.end("b", kImport);
  EXPECT_EQ(view_.open, 0U);
  jobs_.finish();
  EXPECT_EQ(shown(),
            std::string("job 'a' queued\njob 'a' running\nerror: job 'a' failed: a.fastq: truncated\n"
                        "job 'b' queued\njob 'b' running\njob 'b' finished\n"
                        "ran <job 'a'> GENOSTAT /PRINT MESSAGE=205.\nran <job 'b'> ") +
                kImport + "\n");
  EXPECT_EQ(files(), std::vector<std::string>{"copies"});
  EXPECT_EQ(test::readWholeFile(folder_.path() / "copies" / "b.csv"), "x\n1\n");
  EXPECT_TRUE(jobs_.failed());
}

TEST_F(Follower, HoldsEndedJobsWhileTheQueueIsFull) {
  module_.hold("a");
  module_.hold("b");
  jobs_.follow(0ms);
  EXPECT_EQ(jobs_.openJobs().size(), 1U);  // "b" began, so "a" was lost
  EXPECT_EQ(view_.open, 1U);
  module_.full = true;
  module_.end("b", kImport);
  jobs_.follow(0ms);
  EXPECT_EQ(jobs_.endedCount(), 1U);
  EXPECT_FALSE(jobs_.canRunEnded());
  module_.full = false;
  jobs_.runEnded();
  EXPECT_EQ(jobs_.endedCount(), 0U);
  // One that the module forgets is lost as well.
  postStart("c", false);
  shown();
  jobs_.follow(0ms);
  EXPECT_EQ(shown().find("job 'c' queued\nerror: job 'c' could not be started: "), 0U);
}

TEST_F(Follower, SaysWhyAJobWasNotStarted) {
  const fs::path temporary = folder_.path() / "temp";
  setHostFolders({temporary, folder_.path()});
  fs::create_directory(temporary);
  const auto fate = [&](const std::string& file) {
    const auto scanned = scanCommands(
        std::make_shared<const SourceText>(SourceText{"t", "GENOSTAT /JOB FILE='" + file + "'."}));
    const CommandScope running(scanned.items.at(0).command);
    postStart("a", false);
    jobs_.follow(0ms);
    return shown().substr(std::string("job 'a' queued\nerror: job 'a' could not be started: ").size());
  };
  EXPECT_EQ(fate("reads.fastq"),
            "its launcher \"" +
                platform::pathToUtf8(folder_.path() /
                                     ("statisticspython3" + std::string(platform::kLauncherSuffix))) +
                "\" did not start\n");
  EXPECT_EQ(fate(std::string(200'000, 'x')),
            "its command line has some 267336 characters, of which the system takes " +
                std::to_string(platform::longestParameters(folder_.path())) +
                "; name the folder of its files instead of the files\n");
  fs::remove(temporary);
  EXPECT_EQ(fate("reads.fastq"),
            "the temporary folder \"" + platform::pathToUtf8(temporary) + "\" is gone\n");
}

TEST_F(Follower, CancelsUntilTheProcessesHaveEnded) {
  module_.hold("a");
  jobs_.follow(0ms);
  EXPECT_FALSE(jobs_.cancel("b"));
  EXPECT_TRUE(jobs_.cancel("a"));
  leave();
  jobs_.follow(0ms);
  EXPECT_EQ(shown(), "job 'a' queued\njob 'a' running\njob 'a' cancelled\n");
  EXPECT_TRUE(jobs_.openJobs().empty());
  EXPECT_TRUE(jobs_.isCancelling());
  EXPECT_EQ(files().size(), 3U);
  jobs_.finish();
  EXPECT_EQ(files(), std::vector<std::string>{"17.csv"});
  jobs_.follow(0ms);
  EXPECT_FALSE(jobs_.isCancelling());
  EXPECT_FALSE(jobs_.failed());
}

TEST_F(Follower, EndsAllJobsWhenItIsInterrupted) {
  module_.hold("one");
  leave();
  module_.end("one", kImport);
  module_.csv = folder_.narrow("18.csv");
  module_.hold("two");
  jobs_.follow(0ms);
  shown();
  std::stop_source end;
  EXPECT_EQ(gate_.interrupt(), CommandGate::Answer::First);
  std::thread interrupt([&] {
    jobs_.cancelForGood();
    EXPECT_TRUE(jobs_.waitUntilShown(30s));
    end.request_stop();
  });
  // Nothing runs any more.
  EXPECT_THROW(jobs_.finish(), Refused);
  jobs_.showMessagesUntil(end.get_token());
  interrupt.join();
  EXPECT_EQ(shown(), "interrupted: cancelling all jobs\njob 'two' cancelled\n");
  EXPECT_EQ(files(), std::vector<std::string>{});
}

}  // namespace
}  // namespace genostat::standalone
