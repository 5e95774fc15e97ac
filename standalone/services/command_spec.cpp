// The description of a command, and what a command that was parsed by it says. A getter answers only for the
// kinds of parameter that hold such a value, so that a mistaken call shows as a failure and not as an empty
// value.
#include <utility>

#include "common/text/ascii.h"
#include "host/syntax_parser.h"

using enum UPSpecTypes::ParamSpec;

namespace {

template <typename T>
bool getFirst(bool kindFits, const std::vector<T>& values, T& target) {
  if (!kindFits || values.empty()) return false;
  target = values.front();
  return true;
}

template <typename T>
bool getAll(bool kindFits, const std::vector<T>& values, std::vector<T>& target) {
  if (kindFits) target = values;
  return kindFits;
}

}  // namespace

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

bool ParamObj::getLiteral(std::string& value) const {
  return getFirst(spec_ == PARAM_LITERAL, texts_, value);
}

bool ParamObj::getLiteralList(std::vector<std::string>& values) const {
  return getAll(spec_ == PARAM_LITERAL_LIST, texts_, values);
}

bool ParamObj::getStringGeneric(std::string& value) const {
  return getFirst(spec_ == PARAM_NAMES || spec_ == PARAM_QUALIFIER_VALUE, texts_, value);
}

bool ParamObj::getUpStringGeneric(std::string& value) const {
  if (!getStringGeneric(value)) return false;
  value = genostat::common::upperCase(value);
  return true;
}

bool ParamObj::getStringList(std::vector<std::string>& values) const {
  return getAll(spec_ == PARAM_NAMES, texts_, values);
}

bool ParamObj::getNumberValue(double& value) const {
  return getFirst(spec_ == PARAM_NUMBER || spec_ == PARAM_INTEGER, numbers_, value);
}

bool ParamObj::getNumberList(std::vector<double>& values) const {
  return getAll(spec_ == PARAM_NUMBER_LIST, numbers_, values);
}

bool ParamObj::getIntegerValue(std::int32_t& value) const {
  double number = 0;
  if (!getFirst(spec_ == PARAM_INTEGER, numbers_, number)) return false;
  value = static_cast<std::int32_t>(number);  // the parser let only 32-bit integers through
  return true;
}

bool ParamObj::getStringAndQual(ParamObj& qualifier) const {
  if (!qualifier_) return false;
  qualifier = *qualifier_;
  return true;
}

ParamObj* SubComObj::getParamObj(const std::string& name) const {
  for (const auto& param : params_) {
    if (param->getParamName() == name) return param.get();
  }
  return nullptr;
}

SubComObj* CommandSpec::getSubComObj(const std::string& name) const {
  for (const auto& subcommand : subcommands_) {
    if (subcommand->name_ == name) return subcommand.get();
  }
  return nullptr;
}
