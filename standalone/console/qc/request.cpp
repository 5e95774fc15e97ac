#include "standalone/console/qc/request.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "common/files/fastq_names.h"
#include "common/files/path_fault.h"
#include "common/text/ascii.h"
#include "platform/launcher_folder.h"
#include "platform/path_text.h"
#include "platform/running_program.h"
#include "standalone/console/session_options.h"
#include "standalone/language/translation.h"
#include "standalone/session/requirements.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void refuseQc(const std::string& message) {
  throw QcRequestError(translated("error: {1}", {message}));
}

// Why a file cannot be analysed.
struct FileFault {
  enum class Kind { None, Mistake, Unreadable, Empty } kind = Kind::None;
  std::string reason{};
};

FileFault faultOfFile(const std::string& name) {
  using enum FileFault::Kind;
  // No string of the command language can hold them.
  if (name.find_first_of("\r\n") != std::string::npos)
    return {Unreadable, translated("its name holds a line break")};
  const fs::path file = platform::pathFromUtf8(name);
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) {
    if (name == "-")
      return {Mistake, translated("a job cannot read standard input; genostat-analysis qc can")};
    // Not every command line fills in the names.
    if (name.find_first_of("*?") != std::string::npos)
      return {Mistake, translated("no such file or folder; name the folder instead of a pattern")};
    return {Mistake, common::nothingThere(name, common::Expected::FileOrFolder, translated)};
  }
  if (!fs::is_regular_file(status)) return {Mistake, translated("it is no regular file")};
  if (!std::ifstream(file, std::ios::binary)) return {Unreadable, translated("it cannot be opened")};
  const auto size = fs::file_size(file, error);
  if (!error && size == 0) return {Empty, translated("it is empty")};
  return {};
}

// Collects what is wrong with the inputs, one line each.
class InputCheck {
 public:
  InputCheck(QcRequest& request, bool stopAtUnread) : request_(request), stopAtUnread_(stopAtUnread) {}

  void addFile(const std::string& file) {
    using enum FileFault::Kind;
    const FileFault fault = faultOfFile(file);
    if (fault.kind == None) {
      request_.files.push_back(file);
    } else if (fault.kind == Mistake || stopAtUnread_) {
      addFault(file, fault.reason);
    } else {
      request_.leftOut.push_back({file, fault.kind == Empty ? std::string() : fault.reason});
    }
  }

  void addFolder(const std::string& folder) {
    std::error_code error;
    const std::vector<std::string> names = common::fastqNamesIn(platform::pathFromUtf8(folder), error);
    if (error) return addFault(folder, translatedReason(error.message()));
    if (names.empty())
      addFault(folder, translated("no FASTQ files (.fastq, .fq, .fastq.gz, .fq.gz) in this folder"));
    const bool ended =
        folder.ends_with('/') || folder.ends_with(static_cast<char>(fs::path::preferred_separator));
    for (const std::string& name : names) {
      addFile(std::string(folder).append(ended ? "" : "/").append(name));
    }
  }

  // With nothing to measure there is no job to go on with.
  const std::string& faults() {
    if (request_.files.empty() && faults_.empty()) {
      for (const QcLeftOut& one : request_.leftOut) {
        addFault(one.file, one.reason.empty() ? translated("it is empty") : one.reason);
      }
    }
    return faults_;
  }

 private:
  void addFault(const std::string& input, const std::string& reason) {
    if (!faults_.empty()) faults_ += '\n';
    faults_ += translated("error: {1}", {common::cannotRead(input, reason, translated)});
  }

  QcRequest& request_;
  const bool stopAtUnread_;
  std::string faults_;
};

void checkInputs(const std::vector<std::string>& inputs, bool stopAtUnread, QcRequest& request) {
  InputCheck check(request, stopAtUnread);
  for (const std::string& input : inputs) {
    std::error_code error;
    if (!fs::is_directory(platform::pathFromUtf8(input), error)) {
      check.addFile(input);
    } else {
      if (inputs.size() == 1) request.folder = input;
      check.addFolder(input);
    }
  }
  if (!check.faults().empty()) throw QcRequestError(check.faults());
  // The analysis looks into the folder itself.
  if (!request.folder.empty()) request.leftOut.clear();
}

std::string adapterKeyword(const std::string& adapter) {
  std::string upper = common::upperCase(adapter);
  for (const char* keyword : {"NONE", "ILLUMINA", "NEXTERA"}) {
    if (upper == keyword) return upper;
  }
  if (upper.find_first_not_of("ACGTN") == std::string::npos) {
    return upper.empty() ? "NONE" : "CUSTOM(" + upper + ")";
  }
  constexpr std::array<std::string_view, 3> kAdapters = {"none", "illumina", "nextera"};
  const std::string choices = translated("none, illumina, nextera or a sequence of A, C, G, T and N");
  refuseQc("--adapter: " + common::describeChoice(choices, adapter, kAdapters, translated));
}

void checkOutputName(const char* option, const std::string& name) {
  if (name == "-") refuseQc(translated("{1}: expected the name of a file, found -", {option}));
  // An unquoted *.fastq after the option would otherwise cost the first of the reads.
  if (common::hasFastqEnding(name))
    refuseQc(translated("{1}: {2} is named like reads, which it would replace", {option, quotedName(name)}));
}

// Where the names are too long for the launcher, the module could only end the job without a word.
void checkLengthOfNames(const QcRequest& request, const RunOptions& session) {
  const std::filesystem::path folder =
      session.homeFolder.empty() ? platform::programFolder() : platform::pathFromUtf8(session.homeFolder);
  if (parameterSize(request.files) + request.adapter.size() <= platform::longestParameters(folder)) return;
  refuseQc(
      translated("the names of {1} files are too long for one job; give it the folder they are "
                 "in, or fewer of them",
                 {std::to_string(request.files.size())}));
}

// The name stands in the syntax that the job sends back, in quotes and without.
std::string checkedName(const std::string& name) {
  if (name.empty()) return "AUTO";
  constexpr std::size_t kLongestJobName = 255;
  if (name.size() > kLongestJobName)
    refuseQc(translated("--name: a job's name has at most {1} bytes", {std::to_string(kLongestJobName)}));
  for (const std::string_view word : {"ALL", "LT", "WITH"}) {
    if (name == word) refuseQc(translated("--name: {1} cannot be the name of a job", {name}));
  }
  const bool fits = std::ranges::all_of(name, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte != 0x7F && std::string_view("'\"/*").find(c) == std::string_view::npos;
  });
  if (!fits) {
    refuseQc(translated(
        "--name: a job's name holds no quotes, slashes, asterisks and control characters, found {1}",
        {quoteForMessage(name)}));
  }
  return name;
}

}  // namespace

QcRequest checkQcOptions(const QcOptions& options) {
  QcRequest request;
  request.adapter = adapterKeyword(options.adapter);
  request.name = checkedName(options.name);
  if (!options.descriptives.empty())
    request.descriptives = parseColumnList("--descriptives", options.descriptives, Wanted::Numbers);
  if (!options.frequencies.empty())
    request.frequencies = parseColumnList("--frequencies", options.frequencies, Wanted::Any);
  if (!options.correlations.empty()) {
    request.correlations = parseColumnList("--correlations", options.correlations, Wanted::Numbers);
    if (options.noPearson && !options.spearman && !options.kendall)
      refuseQc(translated("--no-pearson leaves no coefficient; add --spearman or --kendall"));
    if (request.correlations.size() < 2)
      refuseQc(translated("{1}: expected two columns or more", {"--correlations"}));
  }
  if (!options.regression.empty()) {
    QcFormula formula = parseFormula("--regression", options.regression);
    request.dependent = std::move(formula.dependent);
    request.predictors = std::move(formula.predictors);
  }
  checkOutputName("--csv", options.csvFile);
  checkOutputName("--to", options.session.outputFile);
  checkOutputName("--html", options.session.htmlFile);
  checkOutputName("--events", options.session.eventsFile);
  // A command that is only printed says nothing of files that it leaves out.
  checkInputs(options.inputs, options.stopAtUnread || options.printSyntax, request);
  if (request.folder.empty()) checkLengthOfNames(request, options.session);
  return request;
}

}  // namespace genostat::standalone
