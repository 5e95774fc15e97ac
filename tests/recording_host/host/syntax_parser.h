#pragma once

#include <memory>

#include "tests/recording_host/host/language.h"
#include "tests/recording_host/record.h"

namespace UPSpecTypes {
enum SubComSpec : std::int32_t { SUBCOM_PARAMS = 1 };
enum ParamSpec : std::int32_t {
  PARAM_SWITCH = 0,
  PARAM_QUALIFIER_VALUE = 3,
  PARAM_LITERAL = 4,
  PARAM_NAMES = 5,
  PARAM_LITERAL_LIST = 6,
  PARAM_NUMBER = 7,
  PARAM_NUMBER_LIST = 8,
  PARAM_INTEGER = 9,
  PARAM_KEYWORD_QUALIFIED = 27
};
enum BracketOptions : std::int32_t { BRACKETS_DEFAULT = 0 };
}  // namespace UPSpecTypes

// What describes a command bears its name instead of a number, so that each command is described alike.
class Descriptor {
 public:
  template <typename... Arguments>
  Descriptor(const char* type, const std::string& name, const Arguments&... arguments)
      : name_(std::string(type) + " " + name) {
    recording::call(type, name, arguments...);
  }
  const std::string& recordedName() const { return name_; }

 private:
  std::string name_;
};

class ParamDescriptor : public Descriptor {
 public:
  ParamDescriptor(const std::string& name, UPSpecTypes::ParamSpec spec, bool flag1, bool flag2,
                  UPSpecTypes::BracketOptions brackets)
      : Descriptor("ParamDescriptor", name, static_cast<int>(spec), flag1, flag2,
                   static_cast<int>(brackets)) {}
  void addStringValue(const std::string& text) { recording::call(recordedName() + ".addStringValue", text); }
  void addQualifDesc(const std::string& text) { recording::call(recordedName() + ".addQualifDesc", text); }
  void addQualifDesc(const ParamDescriptor& given) {
    recording::call(recordedName() + ".addQualifDesc", given);
  }
};

class SubComDescriptor : public Descriptor {
 public:
  SubComDescriptor(const std::string& name, UPSpecTypes::SubComSpec spec, bool flag1, bool flag2)
      : Descriptor("SubComDescriptor", name, static_cast<int>(spec), flag1, flag2) {}
  void addParamDesc(const ParamDescriptor& param) {
    recording::call(recordedName() + ".addParamDesc", param);
  }
};

class CommandDescriptor : public recording::Object {
 public:
  explicit CommandDescriptor(const std::string& name) : Object("CommandDescriptor", name) {}
  void addSubComDesc(const SubComDescriptor& given) {
    recording::call("CommandDescriptor.addSubComDesc", given);
  }
};

class ParamObj {
 public:
  ParamObj() = default;
  ParamObj(const std::string& name, const std::vector<std::string>& texts) : name_(name), texts_(texts) {}

  std::string getParamName() const { return recording::answer(name_, "ParamObj.getParamName"); }
  bool getLiteral(std::string& value) const { return give("getLiteral", value, first()); }
  bool getLiteralList(std::vector<std::string>& values) const {
    return give("getLiteralList", values, texts_);
  }
  bool getStringGeneric(std::string& value) const { return give("getStringGeneric", value, first()); }
  bool getUpStringGeneric(std::string& value) const;
  bool getStringList(std::vector<std::string>& values) const { return give("getStringList", values, texts_); }
  bool getNumberValue(double& value) const {
    return give("getNumberValue", value, std::atof(first().c_str()));
  }
  bool getNumberList(std::vector<double>& values) const;
  bool getIntegerValue(std::int32_t& value) const {
    return give("getIntegerValue", value, std::atoi(first().c_str()));
  }
  bool getStringAndQual(ParamObj& qualifier) const;
  const std::string& recordedName() const { return name_; }

 private:
  std::string first() const { return texts_.empty() ? std::string() : texts_[0]; }
  template <typename Given>
  bool give(const char* getter, Given& value, const Given& given) const {
    const bool readable = first() != "?";
    recording::write(name_ + "." + getter + (readable ? " = " + recording::shown(given) : " failed"));
    if (readable) value = given;
    return readable;
  }

  std::string name_;
  std::vector<std::string> texts_;
};

class SubComObj {
 public:
  explicit SubComObj(const std::string& name) : name_(name) {
    for (const auto& [param, texts] : recording::state().command.at(name)) {
      params_[param] = ParamObj(name + " " + param, texts);
    }
  }
  ParamObj* getParamObj(const std::string& name) const {
    const auto found = params_.find(name);
    return recording::answer(found == params_.end() ? nullptr : &found->second, name_ + ".getParamObj", name);
  }
  const std::string& recordedName() const { return name_; }

 private:
  std::string name_;
  mutable std::map<std::string, ParamObj> params_;
};

class CommandSpec : public recording::Object {
 public:
  CommandSpec() : Object("CommandSpec") {}
  SubComObj* getSubComObj(const std::string& name) const {
    const auto found = subcommands_.find(name);
    SubComObj* subcommand = found == subcommands_.end() ? nullptr : &found->second;
    return recording::answer(subcommand, "CommandSpec.getSubComObj", name);
  }

 private:
  friend class UniversalParser;
  mutable std::map<std::string, SubComObj> subcommands_;
};

class UniversalParser : public recording::Object {
 public:
  UniversalParser(ZORV_TokenSequence* tokens, CommandSpec& spec, const CommandDescriptor& command)
      : Object("UniversalParser", tokens, spec, command), spec_(spec) {}
  int getCommandSpecifications() {
    for (const auto& [name, params] : recording::state().command) {
      spec_.subcommands_.emplace(name, name);
    }
    return recording::answer(recording::state().parseResult, "UniversalParser.getCommandSpecifications");
  }

 private:
  CommandSpec& spec_;
};

class ParserMessage : public recording::Object {
 public:
  ParserMessage() : Object("ParserMessage") {}
  void SetCommandName(const std::string& name) { recording::call("ParserMessage.SetCommandName", name); }
  void SetProcedureTitle(const std::string& title) {
    recording::call("ParserMessage.SetProcedureTitle", title);
  }
  void GenericError(const char* text, const char* insert1, const char* insert2, const char* insert3,
                    const char* insert4, const char* insert5) {
    recording::call("ParserMessage.GenericError", text, insert1, insert2, insert3, insert4, insert5);
  }
};
