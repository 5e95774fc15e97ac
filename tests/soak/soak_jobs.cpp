// Raced jobs: submitted, cancelled, queried and drained from several threads, with the exact account of what
// the client is sent for each of them.
#include <array>
#include <atomic>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "entry/record/geno_job_settings.h"
#include "host/message_bus.h"
#include "jobs/geno_stat_algo_manager.h"
#include "standalone/services/current.h"
#include "tests/soak/campaign.h"
#include "tests/support/test_host.h"

class GenoStatAlgoManagerTestPeer {
 public:
  static std::unique_ptr<GenoStatAlgoManager> make() {
    return std::unique_ptr<GenoStatAlgoManager>(new GenoStatAlgoManager);
  }
};

namespace {

using genostat::test::Campaign;
using genostat::test::ProcessAccount;

constexpr int kJobsPerRound = 256;
constexpr int kSubmitters = 2;
// More would only wait; fewer would leave nothing to cancel.
constexpr int kMostOpen = 24;

// What the client was sent for one job.
struct JobAccount {
  std::atomic<int> queued = 0;
  std::atomic<int> running = 0;
  std::atomic<int> ended = 0;
  std::atomic<int> empty = 0;
  std::atomic<int> cancelled = 0;  // answered true

  bool isOver() const { return ended > 0 || empty > 0; }
};

// Empty ends that were delivered during this thread's call, and for which job last.
thread_local int emptyEnds = 0;
thread_local int lastEmptyEnd = -1;

class Client : public ZORV_Adapter {
 public:
  explicit Client(const Campaign& run) : campaign(run) {}

  int isInteractiveClient() const override { return 1; }

  void postClientMessage(std::int32_t messageId, const ZorvwMsg* message) override {
    if (messageId == ZorvwMsgStartGenomicProcessing::kMessageId) {
      const auto& start = dynamic_cast<const ZorvwMsgStartGenomicProcessing&>(*message);
      JobAccount& job = jobs[number(start.jobName)];
      campaign.require(!start.started || job.queued == 1, start.jobName, " runs before it was queued");
      ++(start.started ? job.running : job.queued);
      return;
    }
    const auto& end = dynamic_cast<const ZorvwMsgEndGenomicProcessing&>(*message);
    const std::size_t job = number(end.jobName);
    ++(end.message.empty() ? jobs[job].empty : jobs[job].ended);
    if (!end.message.empty()) {
      if (end.message.find("MESSAGE=100") != std::string::npos) ++results;
      return;
    }
    ++emptyEnds;
    lastEmptyEnd = static_cast<int>(job);
  }

  static std::size_t number(const std::string& name) { return std::stoul(name.substr(1)); }

  const Campaign& campaign;
  std::array<JobAccount, kJobsPerRound> jobs;
  std::atomic<std::size_t> results = 0;
};

class Round {
 public:
  Round(const Campaign& campaign, unsigned number)
      : campaign_(campaign),
        number_(number),
        client_(campaign),
        manager_(GenoStatAlgoManagerTestPeer::make()) {
    genostat::test::useCheapLauncher(host_.home());
    genostat::standalone::setCurrentAdapter(&client_);
  }
  void run() {
    std::vector<std::thread> submitters;
    for (int i = 0; i < kSubmitters; ++i) {
      submitters.emplace_back([this, i] { submit(i); });
    }
    std::vector<std::thread> others;
    others.emplace_back([this] { cancel(1); });
    others.emplace_back([this] { cancel(2); });
    others.emplace_back([this] { drain(); });
    others.emplace_back([this] { query(); });
    for (std::thread& thread : submitters)
      thread.join();
    for (int job = 0; job < kJobsPerRound; ++job) {
      waitUntil([&] { return !isOpen(job); }, job, " has no end");
    }
    over_ = true;
    for (std::thread& thread : others)
      thread.join();
    // A name is free once the job's process and file were seen to.
    for (int job = 0; job < kJobsPerRound; ++job) {
      waitUntil([&] { return !manager_->isJobPendingOrRunning(name(job)); }, job, " keeps its name");
    }
    manager_.reset();
    settle();
  }

  int started = 0;
  int cancels = 0;
  int drained = 0;

 private:
  static std::string name(int job) { return "j" + std::to_string(job); }
  static void pause(std::size_t microseconds) {
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
  }

  bool isOpen(int job) const { return !client_.jobs[static_cast<std::size_t>(job)].isOver(); }

  template <typename Condition>
  void waitUntil(Condition condition, int job, const char* otherwise) const {
    bool holds = condition();
    for (int i = 0; i < 240'000 && !holds; ++i, holds = condition()) {
      pause(250);
    }
    const JobAccount& account = client_.jobs[static_cast<std::size_t>(job)];
    campaign_.require(holds, name(job), otherwise, ": ", account.queued, account.running, account.ended,
                      account.empty, account.cancelled);
  }

  int openJobs() const {
    int open = 0;
    for (const JobAccount& job : client_.jobs) {
      open += job.queued > 0 && !job.isOver();
    }
    return open;
  }

  void submit(int submitter) {
    for (int job = submitter; job < kJobsPerRound; job += kSubmitters) {
      waitUntil([this] { return openJobs() < kMostOpen; }, job, " cannot be submitted");
      auto settings = std::make_unique<GenoJobSettings>();
      settings->setJobName(name(job));
      settings->setFastqFolder("in");
      manager_->addJobToQueue(settings.release());
      submitted_ = std::max<int>(submitted_, job + 1);
    }
  }

  void cancel(unsigned thread) {
    std::mt19937 random(campaign_.seed + number_ * 4 + thread);
    while (!over_) {
      const int newest = submitted_;
      // Mostly young ones, so that it meets them in every state.
      const int job =
          std::max(0, newest - 1 - static_cast<int>(random() % (random() % 8 == 0 ? 256 : kMostOpen)));
      emptyEnds = 0;
      const bool answer = cancelGenoJob(manager_.get(), name(job).c_str());
      campaign_.require(emptyEnds == (answer ? 1 : 0), name(job), ": a cancel answered ", answer, " sent ",
                        emptyEnds, " empty ends");
      campaign_.require(!answer || lastEmptyEnd == job, "an empty end of another job than ", name(job));
      if (answer) ++client_.jobs[static_cast<std::size_t>(job)].cancelled;
      pause(random() % 9000);
    }
  }

  void drain() {
    std::mt19937 random(campaign_.seed + number_ * 4 + 3);
    while (!over_) {
      pause(random() % 300000);
      emptyEnds = 0;
      manager_->cancellAllJobsPending();
      drained += emptyEnds;
    }
  }

  void query() {
    std::mt19937 random(campaign_.seed + number_ * 4);
    while (!over_) {
      if (manager_->isQueueFull()) pause(10);
      const int job = static_cast<int>(random() % kJobsPerRound);
      const bool announced = client_.jobs[static_cast<std::size_t>(job)].queued > 0;
      const bool found = manager_->isJobPendingOrRunning(name(job));
      campaign_.require(!announced || found || !isOpen(job), name(job), " is lost");
      pause(random() % 500);
    }
  }

  void settle() {
    int empty = 0;
    for (int number = 0; number < kJobsPerRound; ++number) {
      const JobAccount& job = client_.jobs[static_cast<std::size_t>(number)];
      campaign_.require(job.queued == 1 && job.running <= 1 && job.ended <= job.running &&
                            (job.empty > 0 || job.ended == 1) && job.empty >= job.cancelled &&
                            job.empty <= job.cancelled + 1,
                        name(number), ": ", job.queued, " queued, ", job.running, " running, ", job.ended,
                        " ended, ", job.empty, " empty ends, ", job.cancelled, " cancels answered true");
      started += job.running;
      cancels += job.cancelled;
      empty += job.empty;
    }
    campaign_.require(empty == cancels + drained, empty, " empty ends of ", cancels, " cancels and ", drained,
                      " drained jobs");
    campaign_.require(host_.temporaryFiles().size() == client_.results, host_.temporaryFiles().size(),
                      " files of ", client_.results, " jobs with results");
  }

  const Campaign& campaign_;
  const unsigned number_;
  genostat::test::TestHost host_;
  Client client_;
  std::unique_ptr<GenoStatAlgoManager> manager_;
  std::atomic<int> submitted_ = 0;
  std::atomic<bool> over_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  const Campaign campaign(argc, argv);
  genostat::test::ProcessAccount before;
  unsigned rounds = 0;
  int started = 0;
  int cancels = 0;
  int drained = 0;
  for (; rounds < 2 || campaign.timeLeft(); ++rounds) {
    {
      Round round(campaign, rounds);
      round.run();
      started += round.started;
      cancels += round.cancels;
      drained += round.drained;
    }
    // The first round makes what stays: the libraries' own.
    if (rounds == 0) before = genostat::test::ProcessAccount::now();
    campaign.requireNoMore(before);
  }
  std::cout << rounds * kJobsPerRound << " jobs, " << started << " of them started, " << cancels
            << " cancels, " << drained << " drained\n";
}
