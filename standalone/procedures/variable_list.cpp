#include "standalone/procedures/variable_list.h"

#include <algorithm>
#include <string>
#include <string_view>

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

// Collects variables, each once.
class VariableSelection {
 public:
  void add(const Column& column, bool named) {
    if (std::ranges::find(all_, &column) == all_.end()) all_.push_back(&column);
    if (column.type == Column::Type::Numeric) {
      if (std::ranges::find(numeric_, &column) == numeric_.end()) numeric_.push_back(&column);
    } else if (named && std::ranges::find(strings_, &column) == strings_.end()) {
      strings_.push_back(&column);
    }
  }

  const std::vector<const Column*>& all() const { return all_; }
  const std::vector<const Column*>& numeric() const { return numeric_; }
  const std::vector<const Column*>& strings() const { return strings_; }

  std::string stringsWarning() const {
    std::string names;
    for (const Column* column : strings_) {
      names += (names.empty() ? "" : ", ") + column->name;
    }
    return translated(
        strings_.size() == 1 ? "a string variable is left out: {1}" : "string variables are left out: {1}",
        {names});
  }

 private:
  std::vector<const Column*> all_;
  std::vector<const Column*> numeric_;
  std::vector<const Column*> strings_;
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
      TokenCursor::fail(translated("{1} stands before {2} in the dataset", {last->name, first->name}), token);
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
    if (!stop.empty() && !selection.all().empty()) noteKeywords(token, {&stop, 1});
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
  const VariableSelection selection = parseSelection(dataset, cursor, stop);
  if (selection.numeric().empty()) TokenCursor::fail(translated("the list names no numeric variable"), begin);
  if (!selection.strings().empty()) {
    const Token& place = tokenNaming(begin, *selection.strings().front());
    context.warn({Diagnostic::Severity::Warning, selection.stringsWarning(), place.range, {}});
  }
  return selection.numeric();
}

std::vector<const Column*> parseVariables(const Dataset& dataset, TokenCursor& cursor) {
  return parseSelection(dataset, cursor, {}).all();
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
