// A whole job (submitted, run, shown, deleted) again and again, each time with another failure: its n-th
// allocation, or its n-th message, for every n. Afterwards the next job must run, and nothing may be left.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <numeric>
#include <random>
#include <system_error>
#include <thread>
#include <vector>

#include "entry/genostat.h"
#include "jobs/geno_stat_algo_manager.h"
#include "standalone/output/output_document.h"
#include "standalone/services/current.h"
#include "tests/soak/campaign.h"
#include "tests/support/test_host.h"

namespace {

// The allocation that fails, counted from when it was set; 0: none.
std::atomic<long> failing = 0;
std::atomic<long> allocations = 0;

void* allocate(std::size_t size) noexcept {
  if (failing != 0 && ++allocations == failing) return nullptr;
  return std::malloc(std::max<std::size_t>(size, 1));
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* memory = allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
// After a constructor that threw.
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

namespace {

using genostat::test::Campaign;
using genostat::test::ProcessAccount;

constexpr long kNever = 1'000'000'000;
constexpr char kAnalyses[] =
    " ADAPTERS=CUSTOM(ACGT) /DESCRIPTIVES VARIABLES=GC qc_score SKEWNESS /FREQUENCIES VARIABLES=GC NTILES=4"
    " /CORRELATIONS VARIABLES=GC qc_score KENDALL /REGRESSION DEPENDENT=GC INDEPENDENT=qc_score CI=95.";
constexpr char kEnded[] = "GENOSTAT /JOB FILE='' NAME='job' ADAPTERS=NONE ";

struct HostFailure : std::exception {};

// Has the module run a command; what is said of it.
std::string runCommand(const std::string& text) {
  namespace standalone = genostat::standalone;
  std::string said;
  standalone::OutputDocument output;
  const standalone::SessionScope session(
      {nullptr, &output, [&said](const standalone::Diagnostic& diagnostic) { said += diagnostic.message; }});
  const auto source = std::make_shared<standalone::SourceText>(standalone::SourceText{"soak", text});
  const auto command = standalone::CommandScanner(source).next();
  const standalone::CommandScope scope(command->command);
  standalone::setJobMetadata(1, 2);
  GENOSTAT();
  return said;
}

// One life of the host. What fails is counted from 1.
class Round {
 public:
  explicit Round(const Campaign& campaign) : campaign_(campaign) {
    genostat::test::useCheapLauncher(host_.home());
  }

  void run(long allocation, long message) {
    const std::string fault =
        "allocation " + std::to_string(allocation) + ", message " + std::to_string(message) + ": ";
    host_.adapter.onMessage = [this, message](const std::string&) {
      if (++messages == message) throw HostFailure();
    };
    const std::string reads = " FOLDER='" + host_.home().string() + "'";
    allocations = 0;
    failing = allocation;
    attempt([&] { return "GENOSTAT /JOB NAME='job'" + reads + kAnalyses; });
    waitUntilOver("job", fault);
    attempt([] { return std::string(kEnded) + "/PRINT SAMPLE_COUNT=1 VARIABLE_COUNT=1 MESSAGE=205."; });
    failing = 0;
    const auto files = host_.temporaryFiles();
    const std::string csv = host_.temp() / (files.empty() ? "none" : files[0]);
    failing = allocation;
    attempt([&] { return kEnded + ("/DELETE FILE='" + csv + "'."); });
    failing = 0;
    host_.adapter.onMessage = nullptr;
    for (const char* kind : {"start job queued", "start job running", "end job"}) {
      campaign_.require(count(kind) <= 1, fault, "more than one message: ", kind);
    }
    const bool whole = allocation == kNever && message == kNever;
    campaign_.require(!whole || count("end job") == 1, fault, "the job has no end: ", said_);
    campaign_.require(runCommand("GENOSTAT /JOB NAME='next'" + reads + ".").empty(), fault,
                      "the next is refused");
    waitUntilOver("next", fault);
    campaign_.require(count("end next") == 1, fault, "the next job has no end");
  }

  std::atomic<long> messages = 0;

 private:
  template <typename MakeCommand>
  void attempt(MakeCommand makeCommand) {
    try {
      said_ += runCommand(makeCommand());
    } catch (const std::bad_alloc&) {
    } catch (const HostFailure&) {
    } catch (const std::system_error&) {
      // No thread could be had.
    }
  }

  void waitUntilOver(const char* name, const std::string& fault) const {
    for (int i = 0; i < 20000 && getGenoManagerInstance()->isJobPendingOrRunning(name); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    campaign_.require(!getGenoManagerInstance()->isJobPendingOrRunning(name), fault, name, " never ends");
  }

  std::ptrdiff_t count(std::string_view kind) const {
    const auto all = host_.adapter.messages();
    return std::count_if(all.begin(), all.end(),
                         [&](const std::string& text) { return text.starts_with(kind); });
  }

  const Campaign& campaign_;
  std::string said_;
  genostat::test::TestHost host_;
};

}  // namespace

int main(int argc, char** argv) {
  const Campaign campaign(argc, argv);
  // How many there are. The launcher's ways differ a little.
  long most = 0;
  long messages = 0;
  for (int i = 0; i < 8; ++i) {
    Round round(campaign);
    round.run(kNever, kNever);
    most = std::max<long>(most, allocations);
    messages = std::max<long>(messages, round.messages);
  }
  const ProcessAccount before = ProcessAccount::now();
  std::vector<long> order(static_cast<std::size_t>(most + messages));
  std::iota(order.begin(), order.end(), 1);
  std::mt19937 random(campaign.seed);
  std::size_t rounds = 0;
  for (std::size_t at = 0; at == 0 || campaign.timeLeft(); ++rounds, at = (at + 1) % order.size()) {
    if (at == 0) std::shuffle(order.begin(), order.end(), random);
    Round round(campaign);
    const bool inMessage = order[at] > most;
    round.run(inMessage ? kNever : order[at], inMessage ? order[at] - most : kNever);
  }
  campaign.requireNoMore(before);
  std::cout << rounds << " jobs with a failure, of " << most << " allocations and " << messages
            << " messages that can fail\n";
}
