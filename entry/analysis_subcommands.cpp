#include "entry/analysis_subcommands.h"

#include <string>
#include <utility>
#include <vector>

#include "results/number_text.h"

namespace genostat {

namespace {

bool isGiven(const SubComObj& subcommand, const char* name) {
  return subcommand.getParamObj(name) != nullptr;
}

// Reads a parameter with one of its getters; false, with `value` untouched, when it is absent or
// cannot be read.
template <typename Value>
bool read(const SubComObj& subcommand, const char* name, bool (ParamObj::*getter)(Value&) const,
          Value& value) {
  const ParamObj* parameter = subcommand.getParamObj(name);
  Value given{};
  if (parameter == nullptr || !(parameter->*getter)(given)) return false;
  value = std::move(given);
  return true;
}

constexpr int kConfidenceDecimals = 6;

}  // namespace

void interpretDescriptives(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* subcommand = spec.getSubComObj("DESCRIPTIVES");
  if (subcommand == nullptr || settings == nullptr) return;
  DescriptivesOptions& options = *settings->descriptives(true);
  read(*subcommand, "VARIABLES", &ParamObj::getStringList, options.variables);
  if (isGiven(*subcommand, "SKEWNESS")) options.skewness = true;
  if (isGiven(*subcommand, "KURTOSIS")) options.kurtosis = true;
}

void interpretFrequencies(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* subcommand = spec.getSubComObj("FREQUENCIES");
  if (subcommand == nullptr || settings == nullptr) return;
  FrequenciesOptions& options = *settings->frequencies(true);
  read(*subcommand, "VARIABLES", &ParamObj::getStringList, options.variables);
  read(*subcommand, "NTILES", &ParamObj::getIntegerValue, options.ntiles);
  read(*subcommand, "PERCENTILES", &ParamObj::getNumberList, options.percentiles);
  if (isGiven(*subcommand, "HISTOGRAM")) options.histogram = true;
  if (isGiven(*subcommand, "QUARTILES")) options.quartiles = true;
}

void interpretCorrelations(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* subcommand = spec.getSubComObj("CORRELATIONS");
  if (subcommand == nullptr || settings == nullptr) return;
  CorrelationsOptions& options = *settings->correlations(true);
  read(*subcommand, "VARIABLES", &ParamObj::getStringList, options.variables);
  std::string pearson;
  if (read(*subcommand, "PEARSON", &ParamObj::getStringGeneric, pearson))
    options.pearson = pearson != "FALSE";
  if (isGiven(*subcommand, "SPEARMAN")) options.spearman = true;
  if (isGiven(*subcommand, "KENDALL")) options.kendall = true;
  if (isGiven(*subcommand, "TWOTAIL")) options.twoTail = true;
  if (isGiven(*subcommand, "ONETAIL")) options.oneTail = true;
}

void interpretRegression(const CommandSpec& spec, GenoJobSettings* settings) {
  const SubComObj* subcommand = spec.getSubComObj("REGRESSION");
  if (subcommand == nullptr || settings == nullptr) return;
  RegressionOptions& options = *settings->regression(true);
  read(*subcommand, "INDEPENDENT", &ParamObj::getStringList, options.independent);
  read(*subcommand, "DEPENDENT", &ParamObj::getStringGeneric, options.dependent);
  std::string method;
  if (read(*subcommand, "METHOD", &ParamObj::getStringGeneric, method)) {
    options.method = regressionMethodFromKeyword(method);
  }
  double level = 0;
  if (read(*subcommand, "CI", &ParamObj::getNumberValue, level)) {
    options.confidenceInterval = fixedText(level, kConfidenceDecimals);
  }
  if (isGiven(*subcommand, "NORMALPROBABILITYPLOT")) options.normalProbabilityPlot = true;
}

}  // namespace genostat
