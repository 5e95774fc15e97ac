#include "entry/command_grammar.h"

#include <initializer_list>

namespace genostat {

namespace {

using UPSpecTypes::ParamSpec;

// Which of the parser's two flags a parameter sets: (made of bare words, takes a value).
struct Flags {
  bool words;
  bool value;
};
constexpr Flags kSwitch = {false, false};
constexpr Flags kValue = {false, true};
constexpr Flags kWords = {true, true};

ParamDescriptor parameter(const char* name, ParamSpec spec, Flags flags,
                          std::initializer_list<const char*> values = {}) {
  ParamDescriptor descriptor(name, spec, flags.words, flags.value, UPSpecTypes::BRACKETS_DEFAULT);
  for (const char* value : values) {
    descriptor.addStringValue(value);
  }
  return descriptor;
}

ParamDescriptor adapters() {
  ParamDescriptor descriptor = parameter("ADAPTERS", UPSpecTypes::PARAM_KEYWORD_QUALIFIED, kWords);
  for (const char* keyword : {"NONE", "ILLUMINA", "NEXTERA"}) {
    descriptor.addQualifDesc(keyword);
  }
  descriptor.addQualifDesc(parameter("CUSTOM", UPSpecTypes::PARAM_QUALIFIER_VALUE, kValue));
  return descriptor;
}

void addSubcommand(CommandDescriptor& command, const char* name,
                   std::initializer_list<ParamDescriptor> params) {
  SubComDescriptor subcommand(name, UPSpecTypes::SUBCOM_PARAMS, false, false);
  for (const ParamDescriptor& param : params) {
    subcommand.addParamDesc(param);
  }
  command.addSubComDesc(subcommand);
}

}  // namespace

void describeCommand(CommandDescriptor& command) {
  const auto toggle = [](const char* name) { return parameter(name, UPSpecTypes::PARAM_SWITCH, kSwitch); };
  const auto names = [](const char* name, std::initializer_list<const char*> values = {}) {
    return parameter(name, UPSpecTypes::PARAM_NAMES, kWords, values);
  };
  const auto value = [](const char* name, ParamSpec spec) { return parameter(name, spec, kValue); };

  addSubcommand(command, "JOB",
                {value("NAME", UPSpecTypes::PARAM_LITERAL), value("FILE", UPSpecTypes::PARAM_LITERAL_LIST),
                 value("FOLDER", UPSpecTypes::PARAM_LITERAL), adapters()});
  addSubcommand(command, "DESCRIPTIVES", {names("VARIABLES"), toggle("SKEWNESS"), toggle("KURTOSIS")});
  addSubcommand(
      command, "FREQUENCIES",
      {names("VARIABLES"), value("NTILES", UPSpecTypes::PARAM_INTEGER),
       value("PERCENTILES", UPSpecTypes::PARAM_NUMBER_LIST), toggle("HISTOGRAM"), toggle("QUARTILES")});
  addSubcommand(command, "CORRELATIONS",
                {names("VARIABLES"), names("PEARSON", {"TRUE", "FALSE"}), toggle("SPEARMAN"),
                 toggle("KENDALL"), toggle("TWOTAIL"), toggle("ONETAIL")});
  addSubcommand(command, "REGRESSION",
                {names("DEPENDENT"), names("INDEPENDENT"), toggle("NORMALPROBABILITYPLOT"),
                 names("METHOD", {"ENTER", "STEPWISE", "BACKWARD", "FORWARD"}),
                 value("CI", UPSpecTypes::PARAM_NUMBER)});
  addSubcommand(
      command, "PRINT",
      {value("SAMPLE_COUNT", UPSpecTypes::PARAM_INTEGER), value("VARIABLE_COUNT", UPSpecTypes::PARAM_INTEGER),
       value("MESSAGE", UPSpecTypes::PARAM_INTEGER)});
  addSubcommand(command, "DELETE", {value("FILE", UPSpecTypes::PARAM_LITERAL)});
}

}  // namespace genostat
