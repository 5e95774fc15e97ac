#include "tests/recording_host/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "entry/common_blocks.h"
#include "entry/genostat.h"
#include "entry/record/geno_job_settings.h"
#include "entry/record/genomic_parser_exception.h"
#include "jobs/geno_stat_algo_manager.h"
#include "tests/recording_host/record.h"
#include "tests/support/stub_launcher.h"

class GenoStatAlgoManagerTestPeer {
 public:
  // The module makes one manager and never deletes it; each session has its own.
  static void makeManager() {
    delete GenoStatAlgoManager::getManagerInstance();
    GenoStatAlgoManager::m_pAlgoMgr = new GenoStatAlgoManager;
  }
};

namespace genostat::test {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find(separator, start)) != std::string::npos;
       start = end + separator.size()) {
    parts.push_back(text.substr(start, end - start));
  }
  parts.push_back(text.substr(start));
  return parts;
}

// The first word and the rest.
std::pair<std::string, std::string> cutWord(const std::string& text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  return {text.substr(0, blank), text.substr(std::min(blank + 1, text.size()))};
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::vector<std::string> linesOf(const fs::path& file) {
  std::vector<std::string> lines;
  std::ifstream stream(file, std::ios::binary);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

bool describesCommand(const std::string& line) {
  return line.starts_with("ParamDescriptor") || line.starts_with("SubComDescriptor") ||
         line.starts_with("CommandDescriptor.");
}

// Sorts lines that follow each other and begin so: compilers differ in the order in which arguments are made.
std::vector<std::string> inAnyOrder(std::vector<std::string> lines, const std::string& start) {
  const auto begins = [&start](const std::string& line) { return line.starts_with(start); };
  for (auto end = lines.begin(); end != lines.end();) {
    const auto first = std::find_if(end, lines.end(), begins);
    end = std::find_if_not(first, lines.end(), begins);
    std::sort(first, end);
  }
  return lines;
}

struct HostFailure : std::exception {
  const char* what() const noexcept override { return "the host fails"; }
};

GenoStatAlgoManager& manager() {
  return *GenoStatAlgoManager::getManagerInstance();
}

}  // namespace

Session::Session() : home_(folder_.path() / "home"), temp_(folder_.path() / "temp") {
  fs::create_directory(home_);
  fs::create_directory(temp_);
  writeStubLauncher(home_);
  // For signals while a result is held.
  fs::permissions(home_, fs::perms::all);
  recording::State& host = recording::state();
  host = {};
  host.home = platform::pathToNarrow(home_ / "");
  host.temp = platform::pathToNarrow(temp_);
  host.commandThread = std::this_thread::get_id();
  GenoStatAlgoManagerTestPeer::makeManager();
  testing::internal::CaptureStderr();
}

Session::~Session() {
  testing::internal::GetCapturedStderr();
}

std::string Session::play(const std::string& text) {
  const std::vector<std::string> lines = split(text, "\n");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].starts_with("# ")) out_ += lines[i] + "\n";
    if (!lines[i].starts_with("> ") || lines[i].starts_with(">  ")) continue;
    out_ += lines[i] + "\n";
    std::vector<std::string> below;
    for (; i + 1 < lines.size() && lines[i + 1].starts_with(">   "); ++i) {
      below.push_back(lines[i + 1].substr(4));
      out_ += lines[i + 1] + "\n";
    }
    const auto [action, rest] = cutWord(lines[i - below.size()].substr(2));
    try {
      act(action, rest, below);
    } catch (const HostFailure& failure) {
      recording::write(std::string("throws: ") + failure.what());
    }
    showLines(recording::takeLines(&recording::State::commandLines), "");
  }
  return withoutPlaces(out_);
}

bool Session::prepare(Words action, Words rest) {
  recording::State& host = recording::state();
  if (action == "metadata") {
    host.metadata = rest;
  } else if (action == "datasets") {
    host.datasetManager = rest != "none";
    host.datasets.clear();
    for (const std::string& name : split(rest, ", ")) {
      host.datasets.push_back(name == "-" ? std::nullopt : std::optional(name));
    }
  } else if (action == "taken") {
    host.takenNames = std::stoi(rest);
  } else if (action == "adapter") {
    host.adapter = rest != "none";
    host.interactive = rest != "mute";
  } else if (action == "home") {
    host.home = rest == "none" ? std::nullopt : std::optional(platform::pathToNarrow(home_ / ""));
  } else if (action == "temp") {
    host.temp = rest == "none" ? std::nullopt
                               : std::optional(platform::pathToNarrow(rest == "gone" ? temp_ / "x" : temp_));
  } else if (action == "refuse") {
    host.parseResult = std::stoi(rest);
  } else if (action == "throw") {
    recording::onLine(inPlace(rest), [] { throw HostFailure(); });
  } else if (action == "only") {
    only_ = rest.empty() ? std::vector<std::string>() : split(rest, " | ");
  } else if (action == "describe") {
    described_ = true;
  } else if (action == "plan") {
    std::ofstream(home_ / "plan.txt", std::ios::binary) << replaced(rest, "; ", "\n") << '\n';
  } else if (action == "file") {
    fs::create_directories((home_ / cutWord(rest).first).parent_path());
    std::ofstream(home_ / cutWord(rest).first, std::ios::binary) << cutWord(rest).second;
  } else if (action == "remove") {
    fs::remove(home_ / (rest == "launcher" ? kStubLauncher : rest));
  } else {
    return false;
  }
  return true;
}

void Session::act(Words action, Words rest, const std::vector<std::string>& below) {
  const auto show = [this](bool value) { out_ += recording::shown(value) + "\n"; };
  if (prepare(action, rest)) return;
  if (action == "command") {
    command(below);
  } else if (action == "fill") {
    fill(std::stoi(rest));
  } else if (action == "started") {
    const fs::path arguments = home_ / "arguments.txt";
    waitFor(action, [&] { return linesOf(arguments).size() > shownArguments_; });
    showWorker();
  } else if (action == "signal") {
    std::ofstream(home_ / rest) << '\n';
  } else if (action == "hold") {
    held_.emplace(*fs::directory_iterator(temp_));
  } else if (action == "ended") {
    waitFor(action, [&] { return !manager().isJobPendingOrRunning(rest); });
    held_.reset();
    showWorker();
  } else if (action == "cancel" && rest.starts_with("at ")) {
    const auto [name, line] = cutWord(rest.substr(3));
    recording::onLine(line, [job = name] { manager().cancelJob(job); });
  } else if (action == "cancel" && rest == "all") {
    manager().cancellAllJobsPending();
  } else if (action == "cancel") {
    show(cancelGenoJob(getGenoManagerInstance(), rest.c_str()));
  } else if (action == "find") {
    show(manager().isJobPendingOrRunning(rest));
  } else if (action == "full") {
    show(manager().isQueueFull());
  } else if (action == "nothing") {
    show(cancelGenoJob(nullptr, "running"));
    show(cancelGenoJob(&manager(), nullptr));
    manager().addJobToQueue(nullptr);
    manager().postOutputToDisplay(nullptr, nullptr);
    manager().cleanUpCSVFileCreated(nullptr);
  } else if (action == "texts") {
    for (std::uint32_t code = 0; code <= 23; ++code) {
      out_ += std::string(commandErrorText(static_cast<CommandErrorCode>(code))) + "\n";
    }
    for (std::uint32_t value = 0; value <= 4; ++value) {
      out_ += std::string(adapterKeyword(static_cast<AdapterType>(value))) + " " +
              regressionKeyword(static_cast<RegressionMethod>(value)) + "\n";
    }
  } else if (action == "load") {
    cacheCommonBlocks();
    for (const void* block : commonBlocks()) {
      const auto number = static_cast<const char*>(block) - static_cast<const char*>(commonBlocks()[0]);
      out_ += std::to_string(number) + (block == commonBlocks().back() ? "\n" : " ");
    }
  } else if (action == "end") {
    delete &manager();
    showWorker();
  } else {
    throw std::invalid_argument("no such action: " + action);
  }
}

void Session::command(const std::vector<std::string>& below) {
  recording::state().objects.clear();
  auto& given = recording::state().command;
  given.clear();
  for (const std::string& line : below) {
    const auto [subcommand, rest] = cutWord(line);
    auto& params = given[subcommand];
    if (rest.empty()) continue;
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    std::vector<std::string>& texts = params[rest.substr(0, colon)];
    if (colon < rest.size()) texts = split(inPlace(rest.substr(std::min(colon + 2, rest.size()))), " | ");
  }
  GENOSTAT();
}

void Session::fill(int jobs) {
  for (int i = 1; i <= jobs; ++i) {
    auto job = std::make_unique<GenoJobSettings>();
    job->setJobName("f" + std::to_string(i));
    manager().addJobToQueue(job.release());
  }
}

void Session::waitFor(const std::string& what, const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) throw std::runtime_error("waited in vain: " + what);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

void Session::showWorker() {
  showLines(recording::takeLines(&recording::State::workerLines), "worker: ");
  const std::vector<std::string> arguments = linesOf(home_ / "arguments.txt");
  for (; shownArguments_ < arguments.size(); ++shownArguments_) {
    out_ += "analysis: " + arguments[shownArguments_] + "\n";
  }
  const std::string errors = testing::internal::GetCapturedStderr();
  testing::internal::CaptureStderr();
  if (!errors.empty()) out_ += "stderr: " + errors;
  for (const fs::directory_entry& entry : fs::directory_iterator(temp_)) {
    out_ += "file: <temp>/" + entry.path().filename().string() + "\n";
  }
}

void Session::showLines(const std::vector<std::string>& lines, const std::string& prefix) {
  for (const std::string& line : inAnyOrder(lines, "FacSTDictionary.LookUp")) {
    const auto begins = [&line](const std::string& start) { return line.starts_with(start); };
    if (only_.empty() ? described_ || !describesCommand(line)
                      : std::any_of(only_.begin(), only_.end(), begins)) {
      out_ += prefix + line + "\n";
    }
  }
}

// In the test's own texts.
std::string Session::inPlace(std::string text) const {
  return replaced(replaced(std::move(text), "<home>", platform::pathToNarrow(home_)), "<temp>",
                  platform::pathToNarrow(temp_));
}

// What differs between runs and systems is named.
std::string Session::withoutPlaces(std::string text) const {
  for (const auto& [folder, name] : {std::pair(home_, "<home>"), std::pair(temp_, "<temp>")}) {
    const std::string path = platform::pathToNarrow(folder);
    text = replaced(replaced(std::move(text), replaced(path, "\\", "\\\\"), name), path, name);
  }
  const std::pair<const char*, const char*> patterns[] = {
      {"(<home>|<temp>)[\\\\/]+(scripts[\\\\/])?", "$1/$2"},
      {"scripts\\\\", "scripts/"},
      {"[0-9]{9,}(_[0-9]+)?\\.csv", "RESULT.csv"},
      {"\\|[A-Za-z0-9+/=]+\\|\\{", "|PAYLOAD|{"},
      {"(stderr: [^:\n]*): [^\n]*", "$1: REASON"}};
  for (const auto& [pattern, name] : patterns) {
    text = std::regex_replace(text, std::regex(pattern), name);
  }
  return replaced(std::move(text), "\r", "");
}

}  // namespace genostat::test
