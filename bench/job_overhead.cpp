// What the module adds to an analysis: the time of a submission (the entry, from call to return), and a
// whole job beside a bare start and wait of the same launcher. The two kinds alternate within one run, so
// that both see the same machine; medians are compared.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <vector>

#include "entry/genostat.h"
#include "jobs/geno_stat_algo_manager.h"
#include "platform/files.h"
#include "platform/process.h"
#include "run/launch_command.h"
#include "standalone/services/current.h"
#include "standalone/services/host_folders.h"
#include "standalone/syntax/command.h"
#include "tests/support/test_host.h"

namespace {

using Clock = std::chrono::steady_clock;
using genostat::test::TestHost;

constexpr int kPairs = 300;
constexpr int kSubmissions = 300;

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

[[noreturn]] void giveUp(const std::string& reason) {
  std::cerr << "job_overhead: " << reason << "\n";
  std::exit(1);
}

template <typename Work>
double milliseconds(const Work& work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The GENOSTAT command of a user, run as often as wanted.
class Submission {
 public:
  explicit Submission(const std::string& subcommands)
      : scan_(genostat::standalone::scanCommands(std::make_shared<genostat::standalone::SourceText>(
            genostat::standalone::SourceText{"bench", "GENOSTAT " + subcommands + "."}))) {}

  void operator()() const {
    const genostat::standalone::CommandScope scope(scan_.items[0].command);
    GENOSTAT();
  }

 private:
  genostat::standalone::ScanResult scan_;
};

// One analysis, started barely and as a job.
struct Analysis {
  std::string label;
  std::string home;     // the launcher's folder, with its separator
  std::string command;  // what follows GENOSTAT
  std::string input;    // the parameter document's last member
};

void measureJobs(TestHost& host, const Analysis& analysis) {
  const std::string result = (host.temp() / "bare.csv").string();
  const std::string document =
      "{\"fastq_data\":[{\"adapter\":\"NONE\",\"custom_sequence\":\"\",\"CSV_Path\":\"" + result + "\"," +
      analysis.input + "}]}";
  const Submission submit(analysis.command);
  // Either kind makes a new file.
  const auto clear = [&host] {
    for (const std::string& file : host.temporaryFiles()) {
      std::filesystem::remove(host.temp() / file);
    }
  };
  std::vector<double> bare;
  std::vector<double> job;
  for (int i = 0; i < kPairs; ++i) {
    bare.push_back(milliseconds([&] {
      const auto process = genostat::platform::ChildProcess::start(
          genostat::launchCommand(analysis.home + "statisticspython3", analysis.home + "genostat.pyc",
                                  genostat::encodeBase64(document)));
      if (!process) giveUp("the launcher does not start");
      const std::uint32_t status = process->wait();
      if (status != 0) giveUp("the launcher ended with " + std::to_string(status));
    }));
    clear();
    const std::size_t ends = host.adapter.ends();
    job.push_back(milliseconds([&] {
      submit();
      if (!host.adapter.waitForEnds(ends + 1)) giveUp("a job does not end");
    }));
    clear();
  }
  std::cout << analysis.label << ": bare " << median(bare) << " ms, job " << median(job) << " ms, ratio "
            << median(job) / median(bare) << "   (medians of " << kPairs << " alternating pairs)\n";
}

// An analysis that ends at once: all that is left is the start of two processes.
void measureEmptyAnalysis() {
  TestHost host;
  host.plan("csv a,b,c\\n1,2,3\\n\nexit 0");
  measureJobs(host,
              {"an analysis that does nothing", host.home().string() + genostat::platform::kPathSeparator,
               "/JOB FOLDER='in' NAME='job'", "\"folder\":\"in\""});
}

// The real launcher and analyser over the examples: the shortest job that a user will see.
void measureRealAnalysis() {
  TestHost host;
  const std::filesystem::path programs = genostat::platform::programFolder();
  genostat::standalone::setHostFolders({host.temp(), programs, {}});
  const std::filesystem::path examples = std::filesystem::current_path() / "examples";
  const std::string control = (examples / "control.fastq").string();
  const std::string treated = (examples / "treated.fastq.gz").string();
  measureJobs(host, {"the two example files", programs.string() + genostat::platform::kPathSeparator,
                     "/JOB FILE='" + control + "' '" + treated + "' NAME='job'",
                     "\"files\":[\"" + control + "\",\"" + treated + "\"]"});
}

void measureSubmission() {
  TestHost host;
  host.plan("wait go\nexit 0");
  const std::size_t before = host.adapter.ends();
  Submission("/JOB FOLDER='in' NAME='held'")();
  const Submission submit("/JOB FOLDER='in' NAME='waiting'");
  std::vector<double> times;
  for (int i = 0; i < kSubmissions; ++i) {
    times.push_back(milliseconds(submit));
    getGenoManagerInstance()->cancellAllJobsPending();
  }
  host.signal("go");
  host.adapter.waitForEnds(before + kSubmissions + 1);
  std::cout << "submission: " << 1000 * median(times) << " us   (median of " << kSubmissions << ")\n";
}

}  // namespace

int main() {
  std::cout << std::fixed << std::setprecision(3);
  measureEmptyAnalysis();
  measureRealAnalysis();
  measureSubmission();
}
