#include <utility>

#include "host/syntax_parser.h"

ParamDescriptor::ParamDescriptor(std::string name, UPSpecTypes::ParamSpec spec, bool wordValue,
                                 bool takesValue, UPSpecTypes::BracketOptions brackets)
    : name_(std::move(name)),
      spec_(spec),
      wordValue_(wordValue),
      takesValue_(takesValue),
      brackets_(brackets) {}

void ParamDescriptor::addStringValue(const std::string& text) {
  stringValues_.push_back(text);
}

void ParamDescriptor::addQualifDesc(const std::string& text) {
  addQualifDesc({text, UPSpecTypes::PARAM_SWITCH, false, false, UPSpecTypes::BRACKETS_DEFAULT});
}

void ParamDescriptor::addQualifDesc(const ParamDescriptor& qualifier) {
  qualifiers_.push_back(qualifier);
}

SubComDescriptor::SubComDescriptor(std::string name, UPSpecTypes::SubComSpec spec, bool flag1, bool flag2)
    : name_(std::move(name)), spec_(spec), flag1_(flag1), flag2_(flag2) {}

void SubComDescriptor::addParamDesc(const ParamDescriptor& param) {
  params_.push_back(param);
}

CommandDescriptor::CommandDescriptor(std::string name) : name_(std::move(name)) {}

void CommandDescriptor::addSubComDesc(const SubComDescriptor& subcommand) {
  subcommands_.push_back(subcommand);
}
