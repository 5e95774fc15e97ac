#include <string_view>
#include <vector>

#include "common/text/ascii.h"
#include "common/text/number_text.h"
#include "common/text/utf8.h"
#include "standalone/console/qc/request.h"

namespace genostat::standalone {

namespace {

constexpr int kLineWidth = 80;

std::string quotedLiteral(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += c;
    quoted += c;
  }
  return quoted + '\'';
}

// Writes a subcommand: its keywords stand below the first one, and so do the values of a list.
class SubcommandWriter {
 public:
  explicit SubcommandWriter(std::string_view name) : text_("\n  /" + std::string(name) + ' ') {
    indent_ = text_.size() - 1;
  }

  void add(const std::string& keyword) {
    if (!first_) breakLine(indent_);
    first_ = false;
    text_ += keyword;
  }

  void addIf(bool wanted, const char* keyword) {
    if (wanted) add(keyword);
  }

  void addList(const std::string& keyword, const std::vector<std::string>& values, bool oneALine = false) {
    add(keyword + '=');
    const std::size_t column = indent_ + keyword.size() + 1;
    int used = static_cast<int>(column);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const int width = common::displayWidth(values[i]) + 1;
      if (i > 0 && (oneALine || used + width >= kLineWidth)) {
        breakLine(column);
        used = static_cast<int>(column);
      } else if (i > 0) {
        text_ += ' ';
      }
      text_ += values[i];
      used += width;
    }
  }

  const std::string& text() const { return text_; }

 private:
  void breakLine(std::size_t indent) { text_ += '\n' + std::string(indent, ' '); }

  std::string text_;
  std::size_t indent_ = 0;
  bool first_ = true;
};

std::string jobSubcommand(const QcRequest& request) {
  SubcommandWriter job("JOB");
  job.add("NAME=" + quotedLiteral(request.name));
  if (!request.folder.empty()) {
    job.add("FOLDER=" + quotedLiteral(request.folder));
  } else {
    std::vector<std::string> files;
    for (const std::string& file : request.files) {
      files.push_back(quotedLiteral(file));
    }
    job.addList("FILE", files, true);
  }
  job.add("ADAPTERS=" + request.adapter);
  return job.text();
}

std::string descriptivesSubcommand(const QcRequest& request, const QcOptions& options) {
  if (request.descriptives.empty()) return {};
  SubcommandWriter writer("DESCRIPTIVES");
  writer.addList("VARIABLES", request.descriptives);
  writer.addIf(options.skewness, "SKEWNESS");
  writer.addIf(options.kurtosis, "KURTOSIS");
  return writer.text();
}

std::string frequenciesSubcommand(const QcRequest& request, const QcOptions& options) {
  if (request.frequencies.empty()) return {};
  SubcommandWriter writer("FREQUENCIES");
  writer.addList("VARIABLES", request.frequencies);
  if (options.tiles > 0) writer.add("NTILES=" + std::to_string(options.tiles));
  std::vector<std::string> percentiles;
  for (const double percent : options.percentiles) {
    percentiles.push_back(common::shortestText(percent));
  }
  if (!percentiles.empty()) writer.addList("PERCENTILES", percentiles);
  writer.addIf(options.quartiles, "QUARTILES");
  writer.addIf(options.histogram, "HISTOGRAM");
  return writer.text();
}

std::string correlationsSubcommand(const QcRequest& request, const QcOptions& options) {
  if (request.correlations.empty()) return {};
  SubcommandWriter writer("CORRELATIONS");
  writer.addList("VARIABLES", request.correlations);
  writer.addIf(options.noPearson, "PEARSON=FALSE");
  writer.addIf(options.spearman, "SPEARMAN");
  writer.addIf(options.kendall, "KENDALL");
  writer.addIf(options.oneTailed, "ONETAIL");
  return writer.text();
}

std::string regressionSubcommand(const QcRequest& request, const QcOptions& options) {
  if (request.dependent.empty()) return {};
  SubcommandWriter writer("REGRESSION");
  writer.add("DEPENDENT=" + request.dependent);
  writer.addList("INDEPENDENT", request.predictors);
  if (!options.method.empty()) writer.add("METHOD=" + common::upperCase(options.method));
  if (options.confidence > 0) writer.add("CI=" + common::shortestText(options.confidence));
  writer.addIf(options.normalPlot, "NORMALPROBABILITYPLOT");
  return writer.text();
}

}  // namespace

std::string qcCommand(const QcRequest& request, const QcOptions& options) {
  return "GENOSTAT" + jobSubcommand(request) + descriptivesSubcommand(request, options) +
         frequenciesSubcommand(request, options) + correlationsSubcommand(request, options) +
         regressionSubcommand(request, options) + ".\n";
}

}  // namespace genostat::standalone
