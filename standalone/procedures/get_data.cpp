// GET DATA /TYPE=TXT: reads a delimited text file into a new active dataset.
//
//   GET DATA /TYPE=TXT /FILE='name' [/ENCODING='UTF8'] [/DELIMITERS=","] [/QUALIFIER='"']
//     [/ARRANGEMENT=DELIMITED] [/FIRSTCASE=1] [/DATATYPEMIN PERCENTAGE=95.0]
//     /VARIABLES=name AUTO|Fw.d|Aw ... [/MAP].
//
// /MAP shows an overview of verdicts where the data hold such (imported_data.h).
//
// From its first token on no earlier dataset is active: when the import fails, the commands
// that were written for it must not fall upon another dataset.

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>

#include "common/text/ascii.h"
#include "platform/path_text.h"
#include "standalone/data/dataset.h"
#include "standalone/data/text_import.h"
#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/imported_data.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kMostWarnings = 20;

constexpr std::array<std::string_view, 10> kGetDataSubcommands = {
    "TYPE",        "FILE",      "ENCODING",    "DELIMITERS", "QUALIFIER",
    "ARRANGEMENT", "FIRSTCASE", "DATATYPEMIN", "VARIABLES",  "MAP"};

bool isDigits(std::string_view text) {
  return !text.empty() && text.size() <= 5 && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// AUTO, Fw, Fw.d, A or Aw.
ImportColumn parseColumn(TokenCursor& cursor) {
  ImportColumn column;
  column.name = cursor.expectName(translated("the name of a variable"));
  const Token& token = cursor.peek();
  const std::string type = common::upperCase(cursor.expectName(translated("the type of {1}", {column.name})));
  if (type == "AUTO") return column;
  const std::string_view width = std::string_view(type).substr(1, type.find('.') - 1);
  if (type.front() == 'A' && (type.size() == 1 || (isDigits(width) && width.size() + 1 == type.size()))) {
    column.kind = ImportColumn::Kind::String;
    if (!width.empty()) column.longestText = std::stoul(std::string(width));
    return column;
  }
  const std::size_t point = type.find('.');
  const std::string decimals = point == std::string::npos ? "0" : type.substr(point + 1);
  if (type.front() == 'F' && isDigits(width) && isDigits(decimals)) {
    column.kind = ImportColumn::Kind::Numeric;
    column.decimals = std::stoi(decimals);
    return column;
  }
  TokenCursor::fail(translated("unknown type {1} of {2}", {quoteForMessage(token.text), column.name}), token,
                    translated("expected {1}, a number format such as {2}, or a text format such as {3}",
                               {"AUTO", "F8.2", "A20"}));
}

std::vector<ImportColumn> parseVariables(TokenCursor& cursor) {
  std::vector<ImportColumn> columns;
  std::set<std::string> names;
  while (!cursor.atSubcommandEnd()) {
    const Token& name = cursor.peek();
    columns.push_back(parseColumn(cursor));
    if (!names.insert(common::upperCase(columns.back().name)).second) {
      TokenCursor::fail(translated("the variable {1} is named twice", {quoteForMessage(columns.back().name)}),
                        name);
    }
  }
  if (columns.empty()) cursor.failExpected(translated("the name of a variable"));
  return columns;
}

bool isPlainCharacter(char c) {
  return static_cast<unsigned char>(c) < 0x80 && c != '\n' && c != '\r' && c != '\0';
}

std::string parseDelimiters(TokenCursor& cursor) {
  const Token& token = cursor.peek();
  const std::string text = cursor.expectString(translated("the delimiters"));
  std::string delimiters;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == 't' || text[i + 1] == '\\');
    if (escape) ++i;
    delimiters += escape && text[i] == 't' ? '\t' : text[i];
    if (!isPlainCharacter(text[i]))
      TokenCursor::fail(translated("a delimiter is one ASCII character, or \\t for a tab"), token);
  }
  if (delimiters.empty()) TokenCursor::fail(translated("the delimiters are empty"), token);
  return delimiters;
}

std::optional<char> parseQualifier(TokenCursor& cursor) {
  const Token& token = cursor.peek();
  const std::string text = cursor.expectString(translated("the qualifier"));
  if (text.empty()) return std::nullopt;
  if (text.size() != 1 || !isPlainCharacter(text[0])) {
    TokenCursor::fail(translated("the qualifier is one ASCII character, or empty for none"), token);
  }
  return text[0];
}

void parseEncoding(TokenCursor& cursor) {
  const Token& token = cursor.peek();
  const std::string encoding = common::upperCase(cursor.expectString(translated("the encoding")));
  if (encoding != "UTF8" && encoding != "UTF-8") {
    TokenCursor::fail(translated("the encoding {1} is not supported", {quoteForMessage(token.text)}), token,
                      translated("expected {1}", {"'UTF8'"}));
  }
}

std::size_t parseFirstCase(TokenCursor& cursor) {
  const Token& token = cursor.peek();
  const std::int32_t line = cursor.expectInteger(translated("the line of the first case"));
  if (line < 1) TokenCursor::fail(translated("the lines of a file are counted from 1"), token);
  return static_cast<std::size_t>(line);
}

double parsePercentage(TokenCursor& cursor) {
  static constexpr std::array<std::string_view, 1> kPercentageKeyword = {"PERCENTAGE"};
  cursor.expectKeyword(kPercentageKeyword);
  cursor.expectSymbol('=');
  const Token& token = cursor.peek();
  const double percentage = cursor.expectNumber(translated("a percentage"));
  if (percentage < 0 || percentage > 100)
    TokenCursor::fail(translated("a percentage lies between 0 and 100"), token);
  return percentage;
}

// Generated syntax carries paths in the system's narrow encoding, people write UTF-8.
std::filesystem::path resolveFile(const std::string& text) {
  std::filesystem::path path = platform::pathFromUtf8(text);
  std::error_code ignored;
  if (std::filesystem::exists(path, ignored)) return path;
  std::filesystem::path narrow = platform::pathFromNarrow(text);
  return std::filesystem::exists(narrow, ignored) ? narrow : path;
}

struct ParsedGetData {
  ImportRequest request;
  Token file;
  bool map = false;
};

ParsedGetData parseGetData(const Command& command) {
  static constexpr std::array<std::string_view, 1> kTypes = {"TXT"};
  static constexpr std::array<std::string_view, 1> kArrangements = {"DELIMITED"};
  TokenCursor cursor(command);
  const Token& get = cursor.next();
  cursor.next();
  ParsedGetData parsed;
  ImportRequest& request = parsed.request;
  std::set<std::string_view> seen;
  while (true) {
    const Token& keyword = cursor.peek(cursor.peek().isSymbol('/') ? 1 : 0);
    const auto subcommand = cursor.nextSubcommand(kGetDataSubcommands);
    if (!subcommand) break;
    const std::string_view name = kGetDataSubcommands[*subcommand];
    if (!seen.insert(name).second) TokenCursor::fail(translated("/{1} is given twice", {name}), keyword);
    if (name == "TYPE") cursor.expectKeyword(kTypes, translated("type of file"));
    if (name == "FILE") {
      parsed.file = cursor.peek();
      request.file = resolveFile(cursor.expectString(translated("the name of a file")));
    }
    if (name == "ENCODING") parseEncoding(cursor);
    if (name == "DELIMITERS") request.format.delimiters = parseDelimiters(cursor);
    if (name == "QUALIFIER") request.format.qualifier = parseQualifier(cursor);
    if (name == "ARRANGEMENT") cursor.expectKeyword(kArrangements, translated("arrangement"));
    if (name == "FIRSTCASE") request.firstCase = parseFirstCase(cursor);
    if (name == "DATATYPEMIN") request.percentage = parsePercentage(cursor);
    if (name == "VARIABLES") request.columns = parseVariables(cursor);
    if (name == "MAP") parsed.map = true;
  }
  for (const std::string_view required : {"TYPE", "FILE", "VARIABLES"}) {
    if (!seen.contains(required))
      TokenCursor::fail(translated("{1} needs /{2}", {"GET DATA", required}), get);
  }
  return parsed;
}

void showWarnings(CommandContext& context, const std::string& file,
                  const std::vector<std::string>& warnings) {
  const auto warn = [&](const std::string& text) {
    context.warn({Diagnostic::Severity::Warning, file + ": " + text, {}, {}});
  };
  for (std::size_t i = 0; i < std::min(warnings.size(), kMostWarnings); ++i) {
    warn(warnings[i]);
  }
  if (warnings.size() > kMostWarnings)
    warn(translated("{1} more warnings", {std::to_string(warnings.size() - kMostWarnings)}));
}

}  // namespace

void runGetData(CommandContext& context) {
  context.datasets.deactivate();
  ParsedGetData parsed = parseGetData(context.command);
  parsed.request.decimal = context.settings.decimal;
  const std::string file = platform::pathToUtf8(parsed.request.file);
  ImportResult result;
  try {
    result = importText(parsed.request);
  } catch (const ImportError& error) {
    TokenCursor::fail(translated("cannot import {1}: {2}", {quotedName(file), error.what()}), parsed.file);
  }
  showWarnings(context, file, result.warnings);
  const Dataset& dataset = context.datasets.add(std::move(result.dataset));
  context.output.addTable("GET DATA", importedDataTable(dataset, file));
  if (!parsed.map) return;
  if (const auto overview = verdictOverview(dataset)) context.output.addChart("GET DATA", *overview);
}

}  // namespace genostat::standalone
