// A whole job (submitted, run, shown, deleted) again and again, each time with another call to the host that
// throws. Afterwards the next job must run, and nothing may be left.
#include <algorithm>
#include <atomic>
#include <memory>
#include <numeric>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

#include "entry/genostat.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/path_text.h"
#include "tests/recording_host/record.h"
#include "tests/soak/campaign.h"
#include "tests/support/temporary_folder.h"

class GenoStatAlgoManagerTestPeer {
 public:
  static void makeManager() { GenoStatAlgoManager::m_pAlgoMgr = new GenoStatAlgoManager; }
};

namespace {

using Command = decltype(recording::State::command);

const Command kEverything = {
    {"JOB", {{"NAME", {"job"}}, {"ADAPTERS", {"CUSTOM", "acgt"}}}},
    {"DESCRIPTIVES", {{"VARIABLES", {"GC", "qc_score"}}, {"SKEWNESS", {}}}},
    {"FREQUENCIES", {{"VARIABLES", {"GC"}}, {"NTILES", {"10"}}, {"PERCENTILES", {"5", "95"}}}},
    {"CORRELATIONS", {{"VARIABLES", {"GC", "qc_score"}}, {"PEARSON", {"TRUE"}}, {"KENDALL", {}}}},
    {"REGRESSION", {{"DEPENDENT", {"GC"}}, {"INDEPENDENT", {"qc_score"}}, {"CI", {"90"}}}}};
const Command kPrint = {
    {"JOB", {{"NAME", {"job"}}, {"FILE", {}}}},
    {"PRINT", {{"SAMPLE_COUNT", {"1"}}, {"VARIABLE_COUNT", {"1"}}, {"MESSAGE", {"205"}}}}};
const Command kDelete = {{"JOB", {{"NAME", {"job"}}, {"FILE", {}}}}, {"DELETE", {{"FILE", {"none"}}}}};
const Command kNext = {{"JOB", {{"NAME", {"next"}}}}};

void runCommand(const Command& command) {
  recording::state().command = command;
  try {
    GENOSTAT();
  } catch (const std::runtime_error&) {
    // The host's own, passed on to it.
  }
}

void waitUntilOver(const genostat::test::Campaign& campaign, const char* name, int call) {
  const auto pending = [name] { return getGenoManagerInstance()->isJobPendingOrRunning(name); };
  for (int i = 0; i < 20000 && pending(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  campaign.require(!pending(), "call ", call, ": ", name, " never ends");
}

// The call that throws, counted from 1; how many there were.
int playRound(const genostat::test::Campaign& campaign, int throwing) {
  recording::State& host = recording::state();
  std::atomic<int> calls = 0;
  GenoStatAlgoManagerTestPeer::makeManager();
  host.onEachLine = [&](const std::string& line) {
    // Destructors throw nothing.
    if (!line.starts_with('~') && ++calls == throwing) throw std::runtime_error("the host fails");
  };
  runCommand(kEverything);
  waitUntilOver(campaign, "job", throwing);
  runCommand(kPrint);
  runCommand(kDelete);
  host.onEachLine = nullptr;
  runCommand(kNext);
  waitUntilOver(campaign, "next", throwing);
  delete getGenoManagerInstance();
  recording::takeLines(&recording::State::commandLines);
  const auto lines = recording::takeLines(&recording::State::workerLines);
  const auto ends = [&](const std::string& name) {
    return std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.starts_with("ZorvwMsgEndGenomicProcessing(\"" + name);
    });
  };
  campaign.require(ends("next") == 1, "call ", throwing, ": the next job has no end");
  campaign.require(ends("job") == 1 || (throwing > 0 && ends("job") == 0), "call ", throwing, ": ",
                   ends("job"), " ends of the job");
  return calls;
}

}  // namespace

int main(int argc, char** argv) {
  const genostat::test::Campaign campaign(argc, argv);
  const genostat::test::TemporaryFolder folder;
  genostat::test::useCheapLauncher(folder.path());
  recording::State& host = recording::state();
  host.home = genostat::platform::pathToNarrow(folder.path() / "");
  host.temp = folder.narrow();
  host.commandThread = std::this_thread::get_id();
  // The one that is made on first use; each round has its own.
  delete getGenoManagerInstance();
  const int all = std::max(playRound(campaign, 0), playRound(campaign, 0));
  const auto before = genostat::test::ProcessAccount::now();
  std::vector<int> order(static_cast<std::size_t>(all));
  std::iota(order.begin(), order.end(), 1);
  std::mt19937 random(campaign.seed);
  std::size_t rounds = 0;
  for (; rounds == 0 || campaign.timeLeft(); ++rounds) {
    if (rounds % order.size() == 0) std::shuffle(order.begin(), order.end(), random);
    playRound(campaign, order[rounds % order.size()]);
    campaign.requireNoMore(before);
  }
  std::cout << rounds << " jobs with a call to the host that throws, of " << all << " calls\n";
}
