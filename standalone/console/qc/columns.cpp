// The columns that people name on the command line.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/quality/checks.h"
#include "common/text/ascii.h"
#include "standalone/console/qc/request.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/diagnostic.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

using Kind = common::ResultColumn::Kind;

// Walks over the words of an option's value.
class ValueReader {
 public:
  ValueReader(std::string_view option, const std::string& text, std::string_view separators)
      : source_(std::make_shared<const SourceText>(SourceText{std::string(option), text})),
        separators_(separators) {
    next();
  }

  const std::string& word() const { return word_; }
  bool atEnd() const { return word_.empty(); }

  // A word, or one of ~ and +; empty at the end.
  void next() {
    const std::string& text = source_->text;
    begin_ = std::min(text.find_first_not_of(separators_, begin_ + word_.size()), text.size());
    std::size_t end = std::min(text.find_first_of(separators_, begin_), text.size());
    if (isSign(begin_)) {
      end = begin_ + 1;
    } else {
      end = std::min(end, text.find_first_of(kSigns, begin_));
    }
    word_ = text.substr(begin_, end - begin_);
  }

  [[noreturn]] void fail(std::string message, std::string hint = {}) const {
    throw QcRequestError(renderDiagnostic(
        {{}, std::move(message), SourceRange{source_, begin_, begin_ + word_.size()}, std::move(hint)}));
  }

  // The column that the word names.
  const common::ResultColumn& column(Wanted wanted) const {
    if (atEnd() || isSign(begin_)) fail(translated("expected the name of a column"));
    std::vector<std::string_view> usable;
    for (const common::ResultColumn& column : common::kResultColumns) {
      const bool fits = wanted == Wanted::Any || column.kind == Kind::Number;
      if (common::equalsIgnoreCase(column.name, word_)) {
        if (fits) return column;
        fail(translated(column.kind == Kind::Verdict ? "{1} holds verdicts, no numbers"
                                                     : "{1} holds texts, no numbers",
                        {column.name}),
             column.name == "Sequence_length" ? translated("did you mean {1}?", {"avg_sequence_length"})
                                              : translated("{1} takes it", {"--frequencies"}));
      }
      if (fits) usable.push_back(column.name);
    }
    const auto nearest = nearestKeyword(word_, usable);
    fail(translated("no column is called {1}", {quoteForMessage(word_)}),
         nearest ? translated("did you mean {1}?", {*nearest})
                 : translated("{1} lists them", {"genostat qc --help"}));
  }

 private:
  static constexpr std::string_view kSigns = "~+";

  bool isSign(std::size_t place) const {
    return place < source_->text.size() && kSigns.find(source_->text[place]) != std::string_view::npos;
  }

  SourcePtr source_;
  std::string_view separators_;
  std::size_t begin_ = 0;
  std::string word_;
};

void addOnce(std::vector<std::string>& names, std::string_view name) {
  if (std::ranges::find(names, name) == names.end()) names.emplace_back(name);
}

}  // namespace

std::vector<std::string> parseColumnList(std::string_view option, const std::string& text, Wanted wanted) {
  std::vector<std::string> names;
  ValueReader reader(option, text, " \t,");
  do {
    if (common::equalsIgnoreCase(reader.word(), "ALL")) {
      for (const common::ResultColumn& column : common::kResultColumns) {
        const bool fits = wanted == Wanted::Any ? column.name != "Sample" : column.kind == Kind::Number;
        if (fits) addOnce(names, column.name);
      }
    } else {
      addOnce(names, reader.column(wanted).name);
    }
    reader.next();
  } while (!reader.atEnd());
  return names;
}

QcFormula parseFormula(std::string_view option, const std::string& text) {
  ValueReader reader(option, text, " \t");
  QcFormula formula;
  formula.dependent = reader.column(Wanted::Numbers).name;
  reader.next();
  if (reader.word() != "~")
    reader.fail(translated("expected {1} after the dependent column", {"~"}),
                translated("as in {1}", {"'qc_score ~ GC'"}));
  do {
    reader.next();
    const common::ResultColumn& column = reader.column(Wanted::Numbers);
    if (column.name == formula.dependent)
      reader.fail(translated("{1} is on both sides", {formula.dependent}));
    if (std::ranges::find(formula.predictors, column.name) != formula.predictors.end())
      reader.fail(translated("{1} is named twice", {column.name}));
    formula.predictors.emplace_back(column.name);
    reader.next();
  } while (reader.word() == "+");
  if (!reader.atEnd()) reader.fail(translated("expected {1} between columns", {"+"}));
  return formula;
}

}  // namespace genostat::standalone
