#include "analysis/outputs.h"

#include <iostream>
#include <iterator>
#include <system_error>
#include <utility>

#include "analysis/report/json_text.h"
#include "analysis/report/result_json.h"
#include "common/files/part_file.h"
#include "common/files/path_fault.h"
#include "common/text/printable_text.h"
#include "common/text/spreadsheet_text.h"
#include "platform/path_text.h"
#include "platform/terminal.h"

namespace genostat::analysis {

namespace {

class CsvOutput : public JobOutput {
 public:
  CsvOutput(TextOutput text, bool isSafe) : text_(std::move(text)), isSafe_(isSafe) {
    text_.write(csvHeader());
  }

  void add(const ResultRow& row) override {
    const std::string line = csvLine(row);
    text_.write(isSafe_ ? common::spreadsheetCsv(line) : line);
  }
  void finish() override { text_.finish(); }

 private:
  TextOutput text_;
  const bool isSafe_;
};

class JsonOutput : public JobOutput {
 public:
  JsonOutput(TextOutput text, const Adapter& adapter) : text_(std::move(text)) {
    text_.write(jsonBeginning(adapter));
  }

  void add(const ResultRow& row) override { text_.write(jsonSample(row, std::exchange(isFirst_, false))); }
  void finish() override {
    text_.write(jsonEnd());
    text_.finish();
  }

 private:
  TextOutput text_;
  bool isFirst_ = true;
};

class FastqcOutput : public JobOutput {
 public:
  FastqcOutput(const std::filesystem::path& folder, const std::vector<std::string>& names,
               std::function<void(const std::string&)> warn)
      : folder_(folder, names), warn_(std::move(warn)) {}

  void add(const ResultRow& row) override {
    if (hasFailed_) return;
    try {
      folder_.add(row);
    } catch (const std::exception& error) {
      if (!warn_) throw;
      hasFailed_ = true;
      warn_(error.what());
    }
  }

 private:
  FastqcFolder folder_;
  std::function<void(const std::string&)> warn_;
  bool hasFailed_ = false;
};

class NotReadOutput : public JobOutput {
 public:
  NotReadOutput(std::filesystem::path target, common::PlaceLink link)
      : target_(std::move(target)), link_(link) {}

  void add(const ResultRow& row) override {
    if (!row.notRead.empty()) samples_.push_back({row.sample, row.file, row.notRead});
  }

  void finish() override {
    if (samples_.empty()) return;
    JsonText json;
    json.object([&] {
      json.member("format", "genostat-not-read");
      json.member("version", 1);
      json.arrayMember("samples", samples_, [&](const Reason& one) {
        json.object([&] {
          json.member("name", one.name);
          json.member("file", one.file);
          json.member("reason", one.reason);
        });
      });
    });
    writeOutput(target_, [&] { common::writeFile(target_, json.text() + '\n', link_); });
  }

 private:
  struct Reason {
    std::string name, file, reason;
  };
  const std::filesystem::path target_;
  const common::PlaceLink link_;
  std::vector<Reason> samples_;
};

}  // namespace

void tryOutput(const std::filesystem::path& target, const std::vector<Sample>& samples, ExitCode code,
               common::PlaceLink link) {
  for (const Sample& sample : samples) {
    std::error_code different;
    if (std::filesystem::equivalent(target, sample.path, different)) {
      const std::string path = platform::pathToUtf8(target);
      throw Failure(code, path, common::cannotWrite(path, "this is one of the files to measure"));
    }
  }
  writeOutput(target, [&] { common::OutputFile trial(target, link); });
}

void tryFolder(const std::filesystem::path& folder) {
  writeOutput(folder, [&] { common::tryFolder(folder); });
}

TextOutput::TextOutput(const std::filesystem::path& target, common::PlaceLink link) : target_(target) {
  writeOutput(target_, [&] { file_.emplace(target, link); });
}

void TextOutput::write(std::string_view text) {
  if (file_) {
    writeOutput(target_, [&] { file_->write(text); });
  } else {
    pending_ += text;
  }
}

void TextOutput::finish() {
  if (file_) return writeOutput(target_, [&] { file_->finish(); });
  // Data is exact, but it must not steer a terminal.
  const bool shown = platform::standardOutputTerminal().isTerminal;
  std::cout << (shown ? common::printableText(pending_, common::LineBreaks::Keep) : pending_) << std::flush;
  if (!std::cout) {
    throw Failure(ExitCode::OutputFailed, "standard output", "cannot write to standard output");
  }
}

std::unique_ptr<JobOutput> csvOutput(TextOutput text, bool isSafe) {
  return std::make_unique<CsvOutput>(std::move(text), isSafe);
}

std::unique_ptr<JobOutput> jsonOutput(TextOutput text, const Adapter& adapter) {
  return std::make_unique<JsonOutput>(std::move(text), adapter);
}

std::unique_ptr<JobOutput> fastqcOutput(const std::filesystem::path& folder,
                                        const std::vector<Sample>& samples,
                                        std::function<void(const std::string&)> warn) {
  std::vector<std::string> names;
  std::ranges::transform(samples, std::back_inserter(names), &Sample::name);
  return std::make_unique<FastqcOutput>(folder, names, std::move(warn));
}

std::unique_ptr<JobOutput> notReadOutput(const std::filesystem::path& target, common::PlaceLink link) {
  return std::make_unique<NotReadOutput>(target, link);
}

}  // namespace genostat::analysis
