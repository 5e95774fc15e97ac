// The universal parser: reads a command by its description alone.
//
//   command    := name [["/"] subcommand {"/" subcommand}]
//   subcommand := keyword {parameter}
//   parameter  := keyword                      a switch
//               | keyword ["="] value          one literal, number, or allowed keyword
//               | keyword ["="] value {[","] value}
//               | keyword ["="] qualifier ["(" [value] ")"]
//
// A list ends where no further value stands. A word is never a value of a list of names when it
// is a keyword of the same subcommand, in full or abbreviated, or when an equals sign follows it:
// then it was meant as a keyword, and the error says so.
#include <algorithm>
#include <string_view>
#include <utility>

#include "host/language.h"
#include "host/syntax_parser.h"
#include "standalone/language/translation.h"
#include "standalone/services/current.h"
#include "standalone/syntax/expectation.h"
#include "standalone/syntax/keyword.h"
#include "standalone/syntax/token_cursor.h"

using genostat::standalone::Command;
using genostat::standalone::CommandError;
using genostat::standalone::Expectation;
using genostat::standalone::marked;
using genostat::standalone::matchKeyword;
using genostat::standalone::quoteForMessage;
using genostat::standalone::Token;
using genostat::standalone::TokenCursor;
using genostat::standalone::translated;
using enum UPSpecTypes::ParamSpec;

namespace {

using Names = std::vector<std::string_view>;

template <typename Descriptors>
Names namesOf(const Descriptors& descriptors) {
  Names names;
  names.reserve(descriptors.size());
  for (const auto& descriptor : descriptors)
    names.emplace_back(descriptor.name());
  return names;
}

}  // namespace

struct ZORV_TokenSequence::Contents {
  // Borrowed from the session for the run of the command; null in an empty sequence.
  const Command* command = nullptr;
};

ZORV_TokenSequence::ZORV_TokenSequence(bool current)
    : contents_(
          std::make_unique<Contents>(Contents{current ? genostat::standalone::currentCommand() : nullptr})) {}

ZORV_TokenSequence::~ZORV_TokenSequence() = default;

class UniversalParser::Reader {
 public:
  Reader(const Command& command, const CommandDescriptor& descriptor)
      : cursor_(command), descriptor_(descriptor), subcommandNames_(namesOf(descriptor.subcommands())) {}

  // Throws CommandError at the first fault.
  CommandSpec read();

 private:
  void readCommandName();
  void readSubcommand(const SubComDescriptor& descriptor, SubComObj& subcommand);
  std::size_t readParamKeyword(const SubComDescriptor& descriptor);
  void readParam(const ParamDescriptor& descriptor, ParamObj& param);
  void readValue(const ParamDescriptor& descriptor, ParamObj& param);
  void readNames(const ParamDescriptor& descriptor, ParamObj& param);
  void readQualifier(const ParamDescriptor& descriptor, ParamObj& param);
  std::string readQualifierText(const ParamDescriptor& descriptor);
  template <typename ReadOne>
  void readList(Token::Kind kind, ReadOne readOne);

  TokenCursor cursor_;
  const CommandDescriptor& descriptor_;
  Names subcommandNames_;
  Names paramNames_;  // of the subcommand that is being read
};

CommandSpec UniversalParser::Reader::read() {
  CommandSpec spec;
  readCommandName();
  while (!cursor_.atEnd()) {
    cursor_.acceptSymbol('/');
    const Token& word = cursor_.peek();
    const std::size_t index = cursor_.expectKeyword(subcommandNames_, translated("subcommand"));
    const SubComDescriptor& descriptor = descriptor_.subcommands()[index];
    if (spec.getSubComObj(descriptor.name())) {
      TokenCursor::fail(translated("the subcommand {1} is given twice", {descriptor.name()}), word);
    }
    auto subcommand = std::make_unique<SubComObj>();
    subcommand->name_ = descriptor.name();
    readSubcommand(descriptor, *subcommand);
    spec.subcommands_.push_back(std::move(subcommand));
  }
  return spec;
}

// A command's name may be of several words.
void UniversalParser::Reader::readCommandName() {
  std::string_view rest = descriptor_.name();
  while (!rest.empty()) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    if (!cursor_.acceptKeyword(word))
      cursor_.failExpected(translated("the command {1}", {descriptor_.name()}));
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
  }
}

void UniversalParser::Reader::readSubcommand(const SubComDescriptor& descriptor, SubComObj& subcommand) {
  paramNames_ = namesOf(descriptor.params());
  while (!cursor_.atSubcommandEnd()) {
    const Token& word = cursor_.peek();
    const ParamDescriptor& param = descriptor.params()[readParamKeyword(descriptor)];
    if (subcommand.getParamObj(param.name())) {
      TokenCursor::fail(translated("{1} is given twice in {2}", {param.name(), descriptor.name()}), word);
    }
    auto object = std::make_unique<ParamObj>();
    readParam(param, *object);
    subcommand.params_.push_back(std::move(object));
  }
}

std::size_t UniversalParser::Reader::readParamKeyword(const SubComDescriptor& descriptor) {
  const Token& word = cursor_.peek();
  if (paramNames_.empty()) cursor_.failExpected(translated("\"/\" or the end of the command"));
  // The commonest slip of all: the slash before a subcommand forgotten.
  if (word.kind == Token::Kind::Word && !matchKeyword(word.text, paramNames_)) {
    if (const auto index = matchKeyword(word.text, subcommandNames_)) {
      TokenCursor::fail(
          translated("unknown {1} {2}",
                     {translated("{1} keyword", {descriptor.name()}), quoteForMessage(word.text)}),
          word, translated("a subcommand begins with a slash: /{1}", {subcommandNames_[*index]}));
    }
  }
  return cursor_.expectKeyword(paramNames_, translated("{1} keyword", {descriptor.name()}));
}

void UniversalParser::Reader::readParam(const ParamDescriptor& descriptor, ParamObj& param) {
  param.name_ = descriptor.name();
  param.spec_ = descriptor.spec();
  if (descriptor.takesValue()) {
    cursor_.acceptSymbol('=');
    readValue(descriptor, param);
  } else if (cursor_.peek().isSymbol('=') || cursor_.peek().isSymbol('(')) {
    TokenCursor::fail(translated("{1} takes no value", {descriptor.name()}), cursor_.peek());
  }
}

void UniversalParser::Reader::readValue(const ParamDescriptor& descriptor, ParamObj& param) {
  const auto what = [&](const char* value) { return translated(value, {descriptor.name()}); };
  const auto readText = [&] { param.texts_.push_back(cursor_.expectString(what(marked("a text for {1}")))); };
  const auto readNumber = [&] {
    param.numbers_.push_back(cursor_.expectNumber(what(marked("a number for {1}"))));
  };
  switch (descriptor.spec()) {
    case PARAM_SWITCH:
      return;
    case PARAM_LITERAL:
      return readText();
    case PARAM_LITERAL_LIST:
      return readList(Token::Kind::String, readText);
    case PARAM_NUMBER:
      return readNumber();
    case PARAM_NUMBER_LIST:
      return readList(Token::Kind::Number, readNumber);
    case PARAM_INTEGER:
      param.numbers_.push_back(cursor_.expectInteger(what(marked("a whole number for {1}"))));
      return;
    case PARAM_NAMES:
      return readNames(descriptor, param);
    case PARAM_QUALIFIER_VALUE:
      param.texts_.push_back(readQualifierText(descriptor));
      return;
    case PARAM_KEYWORD_QUALIFIED:
      return readQualifier(descriptor, param);
  }
}

template <typename ReadOne>
void UniversalParser::Reader::readList(Token::Kind kind, ReadOne readOne) {
  do {
    readOne();
  } while (cursor_.acceptSymbol(',') || cursor_.peek().kind == kind);
}

// One of the allowed keywords; or, where any word will do, names.
void UniversalParser::Reader::readNames(const ParamDescriptor& descriptor, ParamObj& param) {
  if (!descriptor.stringValues().empty()) {
    const Names allowed(descriptor.stringValues().begin(), descriptor.stringValues().end());
    param.texts_.emplace_back(
        allowed[cursor_.expectKeyword(allowed, translated("{1} value", {descriptor.name()}))]);
    return;
  }
  const auto atName = [&] {
    return cursor_.peek().kind == Token::Kind::Word && !cursor_.peek(1).isSymbol('=') &&
           !matchKeyword(cursor_.peek().text, paramNames_);
  };
  do {
    genostat::standalone::noteExpected(cursor_.peek(), &Expectation::resultColumn);
    // Behind a name, the list may end.
    if (!param.texts_.empty()) genostat::standalone::noteKeywords(cursor_.peek(), paramNames_);
    if (!atName()) cursor_.failExpected(translated("a name for {1}", {descriptor.name()}));
    param.texts_.push_back(cursor_.next().text);
  } while (cursor_.acceptSymbol(',') || atName());
}

void UniversalParser::Reader::readQualifier(const ParamDescriptor& descriptor, ParamObj& param) {
  const Names names = namesOf(descriptor.qualifiers());
  const auto& chosen =
      descriptor.qualifiers()[cursor_.expectKeyword(names, translated("{1} value", {descriptor.name()}))];
  param.qualifier_ = std::make_shared<ParamObj>();
  param.qualifier_->name_ = chosen.name();
  param.qualifier_->spec_ = chosen.spec();
  if (!cursor_.peek().isSymbol('(')) return;
  if (!chosen.takesValue())
    TokenCursor::fail(translated("{1} takes no value", {chosen.name()}), cursor_.peek());
  cursor_.next();
  if (cursor_.acceptSymbol(')')) {
    param.qualifier_->texts_.emplace_back();
    return;
  }
  readValue(chosen, *param.qualifier_);
  cursor_.expectSymbol(')');
}

// A sequence may be typed bare or in quotes, and need not begin with a letter.
std::string UniversalParser::Reader::readQualifierText(const ParamDescriptor& descriptor) {
  const Token& token = cursor_.peek();
  if (token.kind == Token::Kind::End || token.kind == Token::Kind::Symbol) {
    cursor_.failExpected(translated("a value for {1}", {descriptor.name()}));
  }
  return cursor_.next().text;
}

UniversalParser::UniversalParser(ZORV_TokenSequence* tokens, CommandSpec& spec,
                                 const CommandDescriptor& command)
    : tokens_(tokens), spec_(spec), command_(command) {}

int UniversalParser::getCommandSpecifications() {
  const Command* command = tokens_ ? tokens_->contents().command : nullptr;
  try {
    if (!command) throw CommandError(translated("{1} was called while no command runs", {command_.name()}));
    spec_ = Reader(*command, command_).read();
    return 0;
  } catch (const CommandError& error) {
    genostat::standalone::reportDiagnostic(error.diagnostic());
    return 1;
  }
}
