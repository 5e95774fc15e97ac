#include "standalone/procedures/variable_list.h"

#include <algorithm>

#include "common/text/ascii.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/expectation.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

const Column& expectVariable(const Dataset& dataset, TokenCursor& cursor) {
  const Token& token = cursor.peek();
  noteExpected(token, &Expectation::variable);
  const std::string name = cursor.expectName(translated("the name of a variable"));
  if (const Column* column = dataset.find(name)) return *column;
  std::vector<std::string_view> names;
  for (const Column& column : dataset.columns) {
    names.push_back(column.name);
  }
  const auto nearest = nearestKeyword(name, names);
  TokenCursor::fail(translated("the dataset has no variable {1}", {quoteForMessage(name)}), token,
                    nearest ? translated("did you mean {1}?", {*nearest}) : std::string());
}

struct VariableSelection {
  std::vector<const Column*> variables;  // each once
  std::vector<const Column*>
      namedStrings;  // those of them that are string variables and not meant by ALL alone

  void add(const Column& column, bool named) {
    const auto addOnce = [&](std::vector<const Column*>& list) {
      if (std::ranges::find(list, &column) == list.end()) list.push_back(&column);
    };
    addOnce(variables);
    if (named && column.type == Column::Type::String) addOnce(namedStrings);
  }
};

// `first`, or `first TO last` in the dataset's order.
void addVariables(const Dataset& dataset, TokenCursor& cursor, VariableSelection& selection) {
  const Column* first = &expectVariable(dataset, cursor);
  const Column* last = first;
  if (cursor.peek().kind == Token::Kind::Word && common::equalsIgnoreCase(cursor.peek().text, "TO")) {
    cursor.next();
    const Token& token = cursor.peek();
    last = &expectVariable(dataset, cursor);
    if (last < first)
      TokenCursor::fail(translated("{1} comes before {2} in the dataset", {last->name, first->name}), token);
  }
  for (const Column* column = first; column <= last; ++column) {
    selection.add(*column, true);
  }
}

VariableSelection parseSelection(const Dataset& dataset, TokenCursor& cursor, std::string_view stop) {
  const auto atListEnd = [&] {
    const Token& token = cursor.peek();
    return cursor.atSubcommandEnd() ||
           (!stop.empty() && token.kind == Token::Kind::Word && common::equalsIgnoreCase(token.text, stop));
  };
  if (atListEnd()) TokenCursor::fail(translated("the list names no variable"), cursor.peek());
  VariableSelection selection;
  while (!atListEnd()) {
    const Token& token = cursor.peek();
    if (!stop.empty() && !selection.variables.empty()) noteKeywords(token, {&stop, 1});
    // A variable of that name goes before the keyword.
    if (token.kind == Token::Kind::Word && common::equalsIgnoreCase(token.text, "ALL") &&
        dataset.find("ALL") == nullptr) {
      cursor.next();
      for (const Column& column : dataset.columns) {
        selection.add(column, false);
      }
    } else {
      addVariables(dataset, cursor, selection);
    }
    if (cursor.acceptSymbol(',') && atListEnd()) cursor.failExpected(translated("the name of a variable"));
  }
  return selection;
}

}  // namespace

const Dataset& requireActiveDataset(const CommandContext& context) {
  if (const Dataset* dataset = context.datasets.active()) return *dataset;
  TokenCursor::fail(translated("no dataset is active"), context.command.tokens.front());
}

std::vector<const Column*> parseNumericVariables(CommandContext& context, const Dataset& dataset,
                                                 TokenCursor& cursor, std::string_view stop) {
  const Token& begin = cursor.peek();
  VariableSelection selection = parseSelection(dataset, cursor, stop);
  std::erase_if(selection.variables,
                [](const Column* column) { return column->type == Column::Type::String; });
  if (selection.variables.empty()) TokenCursor::fail(translated("the list names no numeric variable"), begin);
  const std::vector<const Column*>& strings = selection.namedStrings;
  if (!strings.empty()) {
    context.warn({Diagnostic::Severity::Warning,
                  translated(strings.size() == 1 ? "a string variable is left out: {1}"
                                                 : "string variables are left out: {1}",
                             {joinedNames(strings)}),
                  tokenNaming(begin, *strings.front()).range,
                  {}});
  }
  return std::move(selection.variables);
}

std::vector<const Column*> parseVariables(const Dataset& dataset, TokenCursor& cursor) {
  return parseSelection(dataset, cursor, {}).variables;
}

std::string joinedNames(const std::vector<const Column*>& variables) {
  std::string names;
  for (const Column* variable : variables) {
    names += (names.empty() ? "" : ", ") + variable->name;
  }
  return names;
}

std::vector<std::span<const double>> valuesOf(const std::vector<const Column*>& variables) {
  std::vector<std::span<const double>> values;
  for (const Column* variable : variables) {
    values.emplace_back(variable->numbers);
  }
  return values;
}

bool atBareVariableList(const Dataset& dataset, const TokenCursor& cursor,
                        TokenCursor::Keywords subcommands) {
  const Token& word = cursor.peek();
  if (word.kind != Token::Kind::Word) return false;
  noteKeywords(word, subcommands);
  if (!matchKeyword(word.text, subcommands)) return true;
  return dataset.find(word.text) != nullptr && !cursor.peek(1).isSymbol('=');
}

const Token& tokenNaming(const Token& first, const Column& variable) {
  // A command's tokens stand in one array that an End token closes.
  for (const Token* token = &first; token->kind != Token::Kind::End && !token->isSymbol('/'); ++token) {
    if (token->kind == Token::Kind::Word && common::equalsIgnoreCase(token->text, variable.name))
      return *token;
  }
  return first;
}

}  // namespace genostat::standalone
