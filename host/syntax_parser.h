// Host syntax parser: a command is described with descriptors, checked by the
// universal parser, and read back through CommandSpec.
//
// Choices of this project (a host may differ): strings and lists are standard
// containers, look-ups return null when a name is absent, getters return true on
// success and leave their argument alone otherwise. All calls are made on the
// host's command thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class ZORV_TokenSequence;

namespace UPSpecTypes {

// How a subcommand is written. Only the form with named parameters is used here.
enum SubComSpec : std::int32_t { SUBCOM_PARAMS = 1 };

// What a parameter's value looks like.
enum ParamSpec : std::int32_t {
  PARAM_SWITCH = 0,           // a keyword that stands alone
  PARAM_QUALIFIER_VALUE = 3,  // a qualifier that carries a value: CUSTOM(acgt)
  PARAM_LITERAL = 4,          // one quoted literal
  PARAM_NAMES = 5,            // a name, a keyword, or a list of them
  PARAM_LITERAL_LIST = 6,     // quoted literals
  PARAM_NUMBER = 7,
  PARAM_NUMBER_LIST = 8,
  PARAM_INTEGER = 9,
  PARAM_KEYWORD_QUALIFIED = 27  // one of the qualifier keywords
};

enum BracketOptions : std::int32_t { BRACKETS_DEFAULT = 0 };

}  // namespace UPSpecTypes

// One parameter of a subcommand, or a qualifier of a parameter.
class ParamDescriptor {
 public:
  // `wordValue`: the value is made of bare words. `takesValue`: false for a switch.
  ParamDescriptor(std::string name, UPSpecTypes::ParamSpec spec, bool wordValue, bool takesValue,
                  UPSpecTypes::BracketOptions brackets);

  // Adds one allowed keyword value; without any, every word is allowed.
  void addStringValue(const std::string& text);
  // Adds one allowed qualifier keyword.
  void addQualifDesc(const std::string& text);
  // Adds a qualifier that carries a value in parentheses.
  void addQualifDesc(const ParamDescriptor& qualifier);

  const std::string& name() const { return name_; }
  UPSpecTypes::ParamSpec spec() const { return spec_; }
  bool takesValue() const { return takesValue_; }
  const std::vector<std::string>& stringValues() const { return stringValues_; }
  const std::vector<ParamDescriptor>& qualifiers() const { return qualifiers_; }

 private:
  std::string name_;
  UPSpecTypes::ParamSpec spec_;
  [[maybe_unused]] bool wordValue_;
  bool takesValue_;
  [[maybe_unused]] UPSpecTypes::BracketOptions brackets_;
  std::vector<std::string> stringValues_;
  std::vector<ParamDescriptor> qualifiers_;
};

class SubComDescriptor {
 public:
  // The two flags are passed on for hosts that give them a meaning; here they have none.
  SubComDescriptor(std::string name, UPSpecTypes::SubComSpec spec, bool flag1, bool flag2);

  void addParamDesc(const ParamDescriptor& param);

  const std::string& name() const { return name_; }
  const std::vector<ParamDescriptor>& params() const { return params_; }

 private:
  std::string name_;
  [[maybe_unused]] UPSpecTypes::SubComSpec spec_;
  [[maybe_unused]] bool flag1_;
  [[maybe_unused]] bool flag2_;
  std::vector<ParamDescriptor> params_;
};

class CommandDescriptor {
 public:
  explicit CommandDescriptor(std::string name);

  void addSubComDesc(const SubComDescriptor& subcommand);

  const std::string& name() const { return name_; }
  const std::vector<SubComDescriptor>& subcommands() const { return subcommands_; }

 private:
  std::string name_;
  std::vector<SubComDescriptor> subcommands_;
};

// The value of one parameter as the user gave it. Keywords come back in the
// descriptor's spelling, names and literals as typed.
class ParamObj {
 public:
  ParamObj() = default;

  // The keyword that was given (for a qualified keyword: the qualifier's name).
  const std::string& getParamName() const { return name_; }

  bool getLiteral(std::string& value) const;
  bool getLiteralList(std::vector<std::string>& values) const;
  bool getStringGeneric(std::string& value) const;
  // The same in upper case.
  bool getUpStringGeneric(std::string& value) const;
  bool getStringList(std::vector<std::string>& values) const;
  bool getNumberValue(double& value) const;
  bool getNumberList(std::vector<double>& values) const;
  bool getIntegerValue(std::int32_t& value) const;
  // Fills `qualifier` with the keyword that was chosen and the value it carries.
  bool getStringAndQual(ParamObj& qualifier) const;

 private:
  friend class UniversalParser;

  std::string name_;
  UPSpecTypes::ParamSpec spec_ = UPSpecTypes::PARAM_SWITCH;
  std::vector<std::string> texts_;  // literals, names or keywords
  std::vector<double> numbers_;
  std::shared_ptr<ParamObj> qualifier_;  // for a qualified keyword
};

class SubComObj {
 public:
  // Null when the command does not give this parameter. Owned by the CommandSpec.
  ParamObj* getParamObj(const std::string& name) const;

 private:
  friend class CommandSpec;
  friend class UniversalParser;

  std::string name_;
  std::vector<std::unique_ptr<ParamObj>> params_;
};

// What a parsed command says.
class CommandSpec {
 public:
  // Null when the command does not give this subcommand. Owned by the CommandSpec.
  SubComObj* getSubComObj(const std::string& name) const;

 private:
  friend class UniversalParser;

  std::vector<std::unique_ptr<SubComObj>> subcommands_;
};

// Checks a command's tokens against a description and fills a CommandSpec.
class UniversalParser {
 public:
  // All three outlive the parser.
  UniversalParser(ZORV_TokenSequence* tokens, CommandSpec& spec, const CommandDescriptor& command);

  // 0 when the command fits its description. Otherwise the error was shown to the user.
  int getCommandSpecifications();

 private:
  class Reader;

  ZORV_TokenSequence* tokens_;
  CommandSpec& spec_;
  const CommandDescriptor& command_;
};

// Shows a command's own errors to the user.
class ParserMessage {
 public:
  void SetCommandName(const std::string& name) { commandName_ = name; }
  void SetProcedureTitle(const std::string& title) { procedureTitle_ = title; }
  // The five insertion texts may be null.
  void GenericError(const char* text, const char* insert1, const char* insert2, const char* insert3,
                    const char* insert4, const char* insert5);

 private:
  std::string commandName_;
  std::string procedureTitle_;
};
